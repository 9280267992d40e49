#include "library/text_codec.h"

#include <cstdint>

namespace vantrel::text {
namespace {

// Unicode code points of the bytes 0x80..0x9F in Windows-1252; 0 marks the
// five bytes that the code page leaves undefined.
constexpr char16_t kHigh[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

char32_t ByteToCodePoint(unsigned char b) {
    if (b < 0x80 || b >= 0xA0) return b;
    char16_t cp = kHigh[b - 0x80];
    return cp ? cp : b;
}

char CodePointToByte(char32_t cp) {
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<char>(cp);
    for (int i = 0; i < 32; ++i)
        if (kHigh[i] == cp) return static_cast<char>(0x80 + i);
    // The C1 controls that 1252 leaves undefined travel as themselves.
    if (cp == 0x81 || cp == 0x8D || cp == 0x8F || cp == 0x90 || cp == 0x9D) return static_cast<char>(cp);
    return '?';
}

// Decodes one UTF-8 sequence at s[i]; returns its length, or 0 if malformed.
size_t DecodeOne(std::string_view s, size_t i, char32_t& cp) {
    auto c0 = static_cast<unsigned char>(s[i]);
    size_t len;
    char32_t min;
    if (c0 < 0x80) {
        cp = c0;
        return 1;
    } else if ((c0 & 0xE0) == 0xC0) {
        len = 2, cp = c0 & 0x1F, min = 0x80;
    } else if ((c0 & 0xF0) == 0xE0) {
        len = 3, cp = c0 & 0x0F, min = 0x800;
    } else if ((c0 & 0xF8) == 0xF0) {
        len = 4, cp = c0 & 0x07, min = 0x10000;
    } else {
        return 0;
    }
    if (i + len > s.size()) return 0;
    for (size_t k = 1; k < len; ++k) {
        auto c = static_cast<unsigned char>(s[i + k]);
        if ((c & 0xC0) != 0x80) return 0;
        cp = (cp << 6) | (c & 0x3F);
    }
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
    return len;
}

}  // namespace

bool LooksLikeUtf8(std::string_view bytes) {
    bool high = false;
    for (size_t i = 0; i < bytes.size();) {
        char32_t cp;
        size_t n = DecodeOne(bytes, i, cp);
        if (n == 0) return false;
        high |= n > 1;
        i += n;
    }
    return high;
}

std::string Utf8ToCp1252(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (size_t i = 0; i < utf8.size();) {
        char32_t cp;
        size_t n = DecodeOne(utf8, i, cp);
        if (n == 0) {
            out.push_back(utf8[i]);
            ++i;
            continue;
        }
        if (cp != 0xFEFF) out.push_back(CodePointToByte(cp));  // a stray BOM is dropped
        i += n;
    }
    return out;
}

std::string Cp1252ToUtf8(std::string_view cp1252) {
    std::string out;
    out.reserve(cp1252.size() + cp1252.size() / 8);
    for (char ch : cp1252) {
        char32_t cp = ByteToCodePoint(static_cast<unsigned char>(ch));
        if (cp < 0x80) {
            out.push_back(static_cast<char>(cp));
        } else if (cp < 0x800) {
            out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        }
    }
    return out;
}

}  // namespace vantrel::text
