// The import file, handed out line by line in Windows-1252. A file is read
// in blocks, so that only the current block and the line being cut stay in
// memory, however long the file is.
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "import/readers.h"
#include "library/files.h"
#include "library/text_codec.h"

namespace vantrel::import {
namespace {

bool HasHighBytes(const std::string& s) {
    for (char c : s)
        if (static_cast<unsigned char>(c) >= 0x80) return true;
    return false;
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
    return true;
}

void LineSource::OpenText(std::string text) {
    Close();
    buffer_ = std::move(text);
    memory_ = true;
}

void LineSource::Close() {
    if (file_) std::fclose(file_);
    file_ = nullptr;
    buffer_.clear();
    pos_ = 0;
    memory_ = false;
    bomChecked_ = false;
    path_.clear();
    lines_ = 0;
}

bool LineSource::IsOpen() const { return file_ != nullptr || memory_; }

// Drops what has been handed out and appends the next block of the file.
// False if the file has nothing more.
bool LineSource::Fill() {
    if (!file_) return false;
    if (pos_ > 0) {
        buffer_.erase(0, pos_);
        pos_ = 0;
    }
    size_t had = buffer_.size();
    buffer_.resize(had + kBlock);
    size_t got = std::fread(buffer_.data() + had, 1, kBlock, file_);
    buffer_.resize(had + got);
    if (got == 0 && std::ferror(file_)) {
        // A file that can't be read on is an error, not the end of the games.
        const int error = errno;
        throw ImportError("Couldn't read " + text::AnyToCp1252(path_) + ": " + std::strerror(error), kReadErrorNumber);
    }
    return got > 0;
}

// A UTF-8 byte-order mark is taken off the start of the file.
void LineSource::CheckBom() {
    if (bomChecked_) return;
    bomChecked_ = true;
    while (buffer_.size() - pos_ < 3 && Fill()) {
    }
    if (buffer_.compare(pos_, 3, "\xEF\xBB\xBF") == 0) pos_ += 3;
}

bool LineSource::Eof() {
    CheckBom();
    while (pos_ >= buffer_.size()) {
        if (!Fill()) return true;
    }
    return false;
}

void LineSource::ReadLine(std::string& line) {
    if (Eof()) throw ImportError("Input past end of file", 62);
    ++lines_;
    raw_.clear();
    for (;;) {
        const char* begin = buffer_.data() + pos_;
        size_t left = buffer_.size() - pos_;
        const char* end = begin;
        const char* stop = begin + left;
        while (end < stop && *end != '\n' && *end != '\r') ++end;
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

std::string LineSource::ReadLine() {
    std::string line;
    ReadLine(line);
    return line;
}

}  // namespace vantrel::import
