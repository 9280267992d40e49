// The import file, handed out line by line in Windows-1252. A file is read
// in blocks, so that only the current block and the line being cut stay in
// memory, however long the file is. A compressed file or a zip archive is
// unpacked block by block on the way, by libarchive; a plain file never
// meets it.
#include <archive.h>
#include <unistd.h>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>

#include "import/readers.h"
#include "library/files.h"
#include "library/text_codec.h"

namespace vantrel::import {
namespace {

bool HasHighBytes(std::string_view s) {
    // Eight bytes at a time, then the rest.
    size_t i = 0;
    for (; i + 8 <= s.size(); i += 8) {
        uint64_t word;
        std::memcpy(&word, s.data() + i, 8);
        if (word & 0x8080808080808080ull) return true;
    }
    for (; i < s.size(); ++i)
        if (static_cast<unsigned char>(s[i]) >= 0x80) return true;
    return false;
}

// The first CR or LF in [p, stop), or stop; `high` is raised if a byte of
// 0x80 or more comes ahead of it. Sixteen bytes at a time where the machine
// can, then byte by byte.
const char* FindLineEnd(const char* p, const char* stop, bool& high) {
    unsigned highBits = 0;
#ifdef __SSE2__
    const __m128i lf = _mm_set1_epi8('\n');
    const __m128i cr = _mm_set1_epi8('\r');
    for (; stop - p >= 16; p += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const auto ends = static_cast<unsigned>(
            _mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(bytes, lf), _mm_cmpeq_epi8(bytes, cr))));
        const auto highs = static_cast<unsigned>(_mm_movemask_epi8(bytes));
        if (ends != 0) {
            const int at = __builtin_ctz(ends);
            high = (highBits | (highs & ((1u << at) - 1))) != 0;
            return p + at;
        }
        highBits |= highs;
    }
#endif
    for (; p < stop && *p != '\n' && *p != '\r'; ++p) highBits |= static_cast<unsigned char>(*p) & 0x80u;
    high = highBits != 0;
    return p;
}

// Whether the file starts as a compressed stream or a zip archive does (a
// local header, an empty archive's end record, or the mark of a split one).
// Text never starts with these bytes, and bzip2's "BZh" must be followed by
// the block size and the magic of a block or of the stream's end.
bool LooksPacked(std::string_view head) {
    static constexpr std::string_view kMagic[] = {
        {"\x1F\x8B", 2},                      // gzip
        {"\xFD" "7zXZ\0", 6},                // xz
        {"\x28\xB5\x2F\xFD", 4},             // zstd
        {"PK\x03\x04", 4}, {"PK\x05\x06", 4}, {"PK\x07\x08", 4},  // zip
    };
    for (std::string_view magic : kMagic)
        if (head.starts_with(magic)) return true;
    return head.size() >= 10 && head.starts_with("BZh") && head[3] >= '1' && head[3] <= '9' &&
           (head.substr(4, 6) == "\x31\x41\x59\x26\x53\x59" || head.substr(4, 6) == "\x17\x72\x45\x38\x50\x90");
}

}  // namespace

LineSource::~LineSource() { Close(); }

bool LineSource::Open(const std::string& path) {
    Close();
    // A folder, a FIFO or a device holds no games to import; the open
    // doesn't wait on a FIFO for its writer.
    const int fd = library::OpenPlainFile(path);
    if (fd < 0) return false;
    file_ = ::fdopen(fd, "rb");
    if (!file_) {
        ::close(fd);
        return false;
    }
    path_ = path;
    char head[10];
    const ssize_t got = ::pread(fd, head, sizeof head, 0);
    packed_ = got > 0 && LooksPacked(std::string_view(head, static_cast<size_t>(got)));
    return true;
}

void LineSource::OpenText(std::string text) {
    Close();
    buffer_ = std::move(text);
    memory_ = true;
}

void LineSource::Close() {
    if (archive_) archive_read_free(archive_);
    archive_ = nullptr;
    packed_ = inEntry_ = entryFresh_ = bomPending_ = lineEndOwed_ = packedAtEnd_ = false;
    if (file_) std::fclose(file_);
    file_ = nullptr;
    bytesRead_ = 0;
    buffer_.clear();
    pos_ = 0;
    memory_ = false;
    bomChecked_ = false;
    path_.clear();
    lines_ = 0;
}

bool LineSource::IsOpen() const { return file_ != nullptr || memory_; }

int64_t LineSource::BytesRead() const { return archive_ ? archive_filter_bytes(archive_, -1) : bytesRead_; }

// Drops what has been handed out and appends the next block of the file.
// False if the file has nothing more.
bool LineSource::Fill() {
    if (!file_) return false;
    if (pos_ > 0) {
        buffer_.erase(0, pos_);
        pos_ = 0;
    }
    // Read into a block of its own and appended: the buffer's room is then
    // never cleared for bytes that overwrite it at once.
    if (!block_) block_ = std::make_unique<char[]>(kBlock);
    size_t got = 0;
    if (packed_) {
        got = ReadPacked(block_.get(), kBlock);
    } else {
        got = std::fread(block_.get(), 1, kBlock, file_);
        bytesRead_ += static_cast<int64_t>(got);
        if (got == 0 && std::ferror(file_)) {
            // A file that can't be read on is an error, not the end of the games.
            const int error = errno;
            throw Error("Couldn't read " + text::AnyToCp1252(path_) + ": " + std::strerror(error),
                        errors::kDeviceIoError);
        }
    }
    buffer_.append(block_.get(), got);
    return got > 0;
}

// The next bytes unpacked, at most `room` of them and none only at the end of
// the last entry. An entry's byte-order mark is dropped, and a line end is
// put between an entry that lacks one at its end and the next entry's text.
size_t LineSource::ReadPacked(char* out, size_t room) {
    if (!archive_) {
        archive_ = archive_read_new();
        if (!archive_) throw std::bad_alloc();
        archive_read_support_filter_all(archive_);
        archive_read_support_format_raw(archive_);  // a single compressed file
        archive_read_support_format_zip(archive_);
        archive_read_support_format_empty(archive_);  // a compressed empty file
        if (archive_read_open_fd(archive_, ::fileno(file_), kBlock) != ARCHIVE_OK) ThrowPackedError();
    }
    while (!packedAtEnd_) {
        if (!inEntry_) {
            archive_entry* entry = nullptr;
            const int status = archive_read_next_header(archive_, &entry);
            if (status == ARCHIVE_EOF) {
                packedAtEnd_ = true;
                break;
            }
            if (status < ARCHIVE_WARN) ThrowPackedError();
            inEntry_ = entryFresh_ = bomPending_ = true;
        }
        const size_t lead = entryFresh_ && lineEndOwed_ ? 1 : 0;
        char* data = out + lead;
        size_t got = 0;
        bool ended = false;
        // The entry's first read goes on until there are bytes enough to
        // tell a byte-order mark.
        for (;;) {
            const la_ssize_t n = archive_read_data(archive_, data + got, room - lead - got);
            if (n < 0) ThrowPackedError();
            got += static_cast<size_t>(n);
            ended = n == 0;
            if (ended || !bomPending_ || got >= 3) break;
        }
        if (bomPending_ && got >= 3 && std::memcmp(data, "\xEF\xBB\xBF", 3) == 0) {
            std::memmove(data, data + 3, got - 3);
            got -= 3;
        }
        bomPending_ = false;
        if (got == 0) {
            if (ended) inEntry_ = false;
            continue;
        }
        if (lead) out[0] = '\n';
        entryFresh_ = false;
        lineEndOwed_ = data[got - 1] != '\n' && data[got - 1] != '\r';
        return lead + got;
    }
    return 0;
}

void LineSource::ThrowPackedError() {
    const char* why = archive_error_string(archive_);
    throw Error("Couldn't read " + text::AnyToCp1252(path_) + ": " + (why ? why : "damaged archive"),
                      errors::kDeviceIoError);
}

// A UTF-8 byte-order mark is taken off the start of the file.
void LineSource::CheckBom() {
    if (bomChecked_) return;
    bomChecked_ = true;
    while (buffer_.size() - pos_ < 3 && Fill()) {
    }
    if (buffer_.compare(pos_, 3, "\xEF\xBB\xBF") == 0) pos_ += 3;
}

bool LineSource::AtEnd() {
    CheckBom();
    while (pos_ >= buffer_.size()) {
        if (!Fill()) return true;
    }
    return false;
}

void LineSource::ReadLine(std::string& line) {
    if (Eof()) throw Error("Input past end of file", errors::kInputPastEnd);
    ++lines_;
    raw_.clear();
    for (;;) {
        const char* begin = buffer_.data() + pos_;
        size_t left = buffer_.size() - pos_;
        const char* stop = begin + left;
        // The first LF, then the first CR ahead of it.
        const auto* lf = static_cast<const char*>(std::memchr(begin, '\n', left));
        const char* end = lf != nullptr ? lf : stop;
        if (const auto* cr = static_cast<const char*>(std::memchr(begin, '\r', static_cast<size_t>(end - begin))))
            end = cr;
        raw_.append(begin, end);
        pos_ += static_cast<size_t>(end - begin);
        if (end < stop) {
            char c = *end;
            ++pos_;
            // CR LF is one line end, even when a block boundary parts them.
            if (c == '\r' && (pos_ < buffer_.size() || Fill()) && buffer_[pos_] == '\n') ++pos_;
            break;
        }
        if (!Fill()) break;  // the last line has no line end
    }
    if (HasHighBytes(raw_) && text::LooksLikeUtf8(raw_))
        line = text::Utf8ToCp1252(raw_);
    else
        line.swap(raw_);
}

std::string_view LineSource::NextLine() {
    if (!Eof()) {
        // A line that ends in the block ahead of its last byte, so that the
        // block stays where it is until the next call: ended by LF, or by
        // CR LF, or by a CR with an LF somewhere behind it in the block.
        const char* begin = buffer_.data() + pos_;
        const char* stop = buffer_.data() + buffer_.size();
        bool high = false;
        const char* end = FindLineEnd(begin, stop, high);
        const char* after = end + 1;  // the next line's start
        bool whole = false;
        if (end < stop && *end == '\n') {
            whole = after < stop;
        } else if (end < stop) {  // a CR
            if (after < stop && *after == '\n') ++after;
            const auto* lf = static_cast<const char*>(std::memchr(end, '\n', static_cast<size_t>(stop - end)));
            whole = lf != nullptr && lf + 1 < stop;
        }
        if (whole) {
            ++lines_;
            pos_ = static_cast<size_t>(after - buffer_.data());
            const std::string_view raw(begin, static_cast<size_t>(end - begin));
            if (!high || !text::LooksLikeUtf8(raw)) return raw;
            line_ = text::Utf8ToCp1252(raw);
            return line_;
        }
    }
    ReadLine(line_);
    return line_;
}

std::string LineSource::ReadLine() {
    std::string line;
    ReadLine(line);
    return line;
}

}  // namespace vantrel::import
