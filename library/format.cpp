#include "library/format.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>

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
    PutLE(out, static_cast<uint32_t>(r.index), 4);
    PutLE(out, static_cast<uint32_t>(r.parent), 4);
    PutLE(out, r.new_branch ? 0xFFFFu : 0u, 2);
    PutString(out, r.description);
    PutString(out, r.remarks);
    std::string_view layout = r.BoardLayout;
    layout = layout.substr(0, std::min(layout.size(), kLayoutBytes));
    out.append(layout);
    out.append(kLayoutBytes - layout.size(), ' ');
}

bool LibraryReader::Open(const std::string& path) {
    // Only a plain file is a library: a folder or a device is not, and the
    // size a file claims is only a hint; the bytes are read to their end.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    struct stat st{};
    bool ok = ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode);
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

namespace {

constexpr size_t kWriteBlock = 1u << 20;

std::string FolderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

bool LibraryWriter::Fail(int error) {
    if (error_ == 0) error_ = error != 0 ? error : EIO;
    return false;
}

bool LibraryWriter::Open(const std::string& path) {
    Abandon();
    error_ = 0;
    buffer_.clear();
    struct stat st{};
    if (::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) return Fail(EISDIR);
    // A hidden name beside the library, unique to this process and call.
    static unsigned serial = 0;
    const std::string folder = FolderOf(path);
    const std::string name = path.substr(path.rfind('/') + 1);  // no slash: npos + 1 is 0
    for (int attempt = 0; attempt < 100; ++attempt) {
        temporary_ = folder + "/." + name + "." + std::to_string(::getpid()) + "-" + std::to_string(++serial) + ".tmp";
        fd_ = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd_ >= 0) break;
        if (errno != EEXIST) break;
    }
    if (fd_ < 0) {
        temporary_.clear();
        return Fail(errno);
    }
    path_ = path;
    buffer_.reserve(kWriteBlock + 4096);
    return true;
}

bool LibraryWriter::Flush() {
    if (fd_ < 0) return false;
    const char* p = buffer_.data();
    size_t left = buffer_.size();
    while (left > 0 && error_ == 0) {
        const ssize_t n = ::write(fd_, p, left);
        if (n < 0) {
            if (errno == EINTR) continue;
            Fail(errno);
        } else {
            p += n;
            left -= static_cast<size_t>(n);
        }
    }
    buffer_.clear();
    return error_ == 0;
}

bool LibraryWriter::WriteHeader(const LibraryHeader& header) {
    if (fd_ < 0) return false;
    EncodeHeader(header, buffer_);
    return error_ == 0;
}

bool LibraryWriter::WriteRecord(const LibraryNodeRecord& record) {
    if (fd_ < 0) return false;
    EncodeRecord(record, buffer_);
    if (buffer_.size() >= kWriteBlock) return Flush();
    return error_ == 0;
}

bool LibraryWriter::Close() {
    if (fd_ < 0) return false;
    Flush();
    if (error_ == 0 && ::fsync(fd_) != 0) Fail(errno);
    if (::close(fd_) != 0) Fail(errno);
    fd_ = -1;
    if (error_ == 0 && ::rename(temporary_.c_str(), path_.c_str()) != 0) Fail(errno);
    if (error_ != 0) {
        ::unlink(temporary_.c_str());
        temporary_.clear();
        return false;
    }
    temporary_.clear();
    // The new name reaches the disk with the folder.
    const int folder = ::open(FolderOf(path_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
    return true;
}

void LibraryWriter::Abandon() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
    temporary_.clear();
    buffer_.clear();
}

}  // namespace vantrel::library
