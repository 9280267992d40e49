#include "library/format.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>

#include "library/files.h"

namespace vantrel::library {
namespace {

void PutLE(std::string& out, uint32_t v, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
}

void PutString(std::string& out, std::string_view s) {
    size_t n = std::min(s.size(), kMaxStringBytes);
    PutLE(out, static_cast<uint32_t>(n), 2);
    out.append(s.data(), n);
}

}  // namespace

void EncodeHeader(const LibraryHeader& h, std::string& out) {
    PutLE(out, static_cast<uint16_t>(h.version), 2);
    PutLE(out, static_cast<uint16_t>(h.flag), 2);
    PutString(out, h.book);
    PutLE(out, static_cast<uint32_t>(h.RecCount), 4);
    PutLE(out, static_cast<uint32_t>(h.MinIndex), 4);
    PutLE(out, static_cast<uint32_t>(h.MaxIndex), 4);
    PutString(out, h.LibRemarks);
}

void EncodeRecord(const LibraryNodeRecord& r, std::string& out) {
    EncodeRecord(r.index, r.parent, r.new_branch, r.description, r.remarks, r.BoardLayout, out);
}

void EncodeRecord(int32_t index, int32_t parent, bool newBranch, std::string_view description,
                  std::string_view remarks, std::string_view layout, std::string& out) {
    // The record's size is known: the room is made once and filled in place.
    description = description.substr(0, std::min(description.size(), kMaxStringBytes));
    remarks = remarks.substr(0, std::min(remarks.size(), kMaxStringBytes));
    layout = layout.substr(0, std::min(layout.size(), kLayoutBytes));
    const size_t start = out.size();
    out.resize(start + 14 + description.size() + remarks.size() + kLayoutBytes, ' ');
    char* at = out.data() + start;
    const auto put = [&at](uint32_t v, int bytes) {
        for (int i = 0; i < bytes; ++i) *at++ = static_cast<char>((v >> (8 * i)) & 0xFF);
    };
    const auto text = [&](std::string_view s) {
        put(static_cast<uint32_t>(s.size()), 2);
        if (!s.empty()) std::memcpy(at, s.data(), s.size());
        at += s.size();
    };
    put(static_cast<uint32_t>(index), 4);
    put(static_cast<uint32_t>(parent), 4);
    put(newBranch ? 0xFFFFu : 0u, 2);
    text(description);
    text(remarks);
    if (!layout.empty()) std::memcpy(at, layout.data(), layout.size());  // the rest stays blank
}

bool LibraryReader::Open(const std::string& path) {
    // Only a plain file is a library: a folder, a FIFO or a device is not,
    // and the size a file claims is only a hint; the bytes are read to their
    // end.
    const int fd = OpenPlainFile(path);
    if (fd < 0) return false;
    struct stat st{};
    bool ok = ::fstat(fd, &st) == 0;
    std::string bytes;
    try {
        if (ok && st.st_size > 0) bytes.reserve(static_cast<size_t>(st.st_size));
        char block[1 << 16];
        while (ok) {
            const ssize_t n = ::read(fd, block, sizeof block);
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) {
                ok = n == 0;
                break;
            }
            bytes.append(block, static_cast<size_t>(n));
        }
    } catch (const std::exception&) {
        ok = false;  // more than memory holds
    }
    ::close(fd);
    if (ok) OpenBytes(std::move(bytes));
    return ok;
}

void LibraryReader::OpenBytes(std::string bytes) {
    data_ = std::move(bytes);
    pos_ = 0;
}

bool LibraryReader::Take(void* dst, size_t n) {
    if (data_.size() - pos_ < n) return false;
    std::memcpy(dst, data_.data() + pos_, n);
    pos_ += n;
    return true;
}

bool LibraryReader::TakeString(std::string& s) {
    if (data_.size() - pos_ < 2) return false;
    size_t n = static_cast<unsigned char>(data_[pos_]) | (static_cast<unsigned char>(data_[pos_ + 1]) << 8);
    if (data_.size() - pos_ - 2 < n) return false;
    s.assign(data_, pos_ + 2, n);
    pos_ += 2 + n;
    return true;
}

namespace {
template <typename T>
T FromLE(const unsigned char* p) {
    uint32_t v = 0;
    for (size_t i = 0; i < sizeof(T); ++i) v |= static_cast<uint32_t>(p[i]) << (8 * i);
    return static_cast<T>(v);
}
}  // namespace

bool LibraryReader::ReadHeader(LibraryHeader& h) {
    h = LibraryHeader{};
    h.flag = 0;
    unsigned char b[4];
    if (!Take(b, 2)) return false;
    h.version = FromLE<int16_t>(b);
    if (!Take(b, 2)) return false;
    h.flag = FromLE<int16_t>(b);
    if (!TakeString(h.book)) return false;
    if (!Take(b, 4)) return false;
    h.RecCount = FromLE<int32_t>(b);
    if (!Take(b, 4)) return false;
    h.MinIndex = FromLE<int32_t>(b);
    if (!Take(b, 4)) return false;
    h.MaxIndex = FromLE<int32_t>(b);
    return TakeString(h.LibRemarks);
}

bool LibraryReader::ReadRecord(LibraryNodeRecord& r) {
    size_t start = pos_;
    unsigned char b[4];
    bool ok = Take(b, 4);
    if (ok) r.index = FromLE<int32_t>(b);
    ok = ok && Take(b, 4);
    if (ok) r.parent = FromLE<int32_t>(b);
    ok = ok && Take(b, 2);
    if (ok) r.new_branch = FromLE<int16_t>(b) != 0;
    ok = ok && TakeString(r.description) && TakeString(r.remarks);
    if (ok && data_.size() - pos_ >= kLayoutBytes) {
        r.BoardLayout.assign(data_, pos_, kLayoutBytes);
        pos_ += kLayoutBytes;
        return true;
    }
    // A partial record at the end of the file is no record.
    pos_ = start;
    return false;
}

LibraryWriter::~LibraryWriter() { Abandon(); }

bool LibraryWriter::Open(const std::string& path) {
    buffer_.clear();
    return file_.Open(path);
}

bool LibraryWriter::Open(const std::string& path, int unnamed) {
    buffer_.clear();
    return file_.Open(path, unnamed);
}

bool LibraryWriter::WriteHeader(const LibraryHeader& header) {
    if (!file_.IsOpen()) return false;
    buffer_.clear();
    EncodeHeader(header, buffer_);
    return file_.Write(buffer_);
}

bool LibraryWriter::WriteRecord(const LibraryNodeRecord& record) {
    if (!file_.IsOpen()) return false;
    buffer_.clear();
    EncodeRecord(record, buffer_);
    return file_.Write(buffer_);
}

bool LibraryWriter::WriteEncoded(int fd, uint64_t from, uint64_t length) { return file_.CopyFrom(fd, from, length); }

bool LibraryWriter::Close() { return file_.Close(); }

void LibraryWriter::Abandon() {
    file_.Abandon();
    buffer_.clear();
}

}  // namespace vantrel::library
