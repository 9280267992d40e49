// Library text is single-byte Windows-1252. Import files may come as UTF-8
// or Windows-1252; these helpers convert between the two.
#pragma once

#include <string>
#include <string_view>

namespace vantrel::text {

// True if the bytes are well-formed UTF-8 and hold at least one non-ASCII
// character: the sign that a line was written as UTF-8 rather than 1252.
bool LooksLikeUtf8(std::string_view bytes);

// UTF-8 to Windows-1252. Characters with no place in 1252 become '?'.
// Malformed sequences are taken byte by byte as 1252.
std::string Utf8ToCp1252(std::string_view utf8);

// Windows-1252 to UTF-8. The five undefined bytes (81 8D 8F 90 9D) map to
// the C1 controls of the same value, so nothing is lost on the way.
std::string Cp1252ToUtf8(std::string_view cp1252);

// A line of an import file, whatever it came as, in Windows-1252.
inline std::string AnyToCp1252(std::string_view bytes) {
    return LooksLikeUtf8(bytes) ? Utf8ToCp1252(bytes) : std::string(bytes);
}

}  // namespace vantrel::text
