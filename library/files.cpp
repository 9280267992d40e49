#include "library/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fstream>

namespace vantrel::library {
namespace {

constexpr size_t kWriteBlock = 1 << 16;

// Temporary files are named ".vantrel.<pid>-<serial>.tmp"; older versions
// named them after the library, ".<name>.vnb.<pid>-<serial>.tmp".
constexpr std::string_view kTemporaryPrefix = ".vantrel.";
constexpr std::string_view kTemporarySuffix = ".tmp";

bool AllDigits(std::string_view s) {
    if (s.empty()) return false;
    for (const char c : s)
        if (c < '0' || c > '9') return false;
    return true;
}

// The process that wrote a temporary file of ours, or 0 for a name that
// isn't one.
pid_t WriterOf(std::string_view name) {
    if (name.size() < 2 || name[0] != '.' || !name.ends_with(kTemporarySuffix)) return 0;
    name.remove_suffix(kTemporarySuffix.size());
    const size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) return 0;
    const std::string_view owner = name.substr(0, dot + 1);
    if (owner != kTemporaryPrefix && !owner.ends_with(".vnb.")) return 0;
    const std::string_view numbers = name.substr(dot + 1);
    const size_t dash = numbers.find('-');
    if (dash == std::string_view::npos || !AllDigits(numbers.substr(0, dash)) || !AllDigits(numbers.substr(dash + 1)))
        return 0;
    if (dash > 9) return 0;
    return static_cast<pid_t>(std::atol(std::string(numbers.substr(0, dash)).c_str()));
}

// The path with symbolic links in its last part followed, so that a link
// keeps pointing where it did once its target has been replaced.
std::string FollowLinks(std::string path) {
    for (int hops = 0; hops < 40; ++hops) {
        struct stat st{};
        if (::lstat(path.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) break;
        char link[PATH_MAX];
        const ssize_t n = ::readlink(path.c_str(), link, sizeof link - 1);
        if (n <= 0) break;
        const std::string to(link, static_cast<size_t>(n));
        path = to[0] == '/' ? to : FolderOf(path) + "/" + to;
    }
    return path;
}

// Whether the user may write the file: its permissions say so even for the
// superuser, who could write it all the same.
bool MayWrite(const std::string& path, const struct stat& st) {
    if (::geteuid() == 0) return (st.st_mode & 0222) != 0;
    return ::access(path.c_str(), W_OK) == 0;
}

}  // namespace

std::string FolderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

int CanReplace(const std::string& path) {
    const std::string target = FollowLinks(path);
    struct stat st{};
    if (::stat(target.c_str(), &st) != 0) return 0;
    if (S_ISDIR(st.st_mode)) return EISDIR;
    if (!S_ISREG(st.st_mode)) return EINVAL;
    return MayWrite(target, st) ? 0 : EACCES;
}

int OpenPlainFile(const std::string& path) {
    // Without O_NONBLOCK the open of a FIFO waits for a writer.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) return -1;
    struct stat st{};
    int error = 0;
    if (::fstat(fd, &st) != 0)
        error = errno;
    else if (S_ISDIR(st.st_mode))
        error = EISDIR;
    else if (!S_ISREG(st.st_mode))
        error = EINVAL;
    else if (::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK) != 0)
        error = errno;
    if (error != 0) {
        ::close(fd);
        errno = error;
        return -1;
    }
    return fd;
}

void RemoveStaleTemporaries(const std::string& folder) {
    DIR* dir = ::opendir(folder.c_str());
    if (!dir) return;
    while (const dirent* entry = ::readdir(dir)) {
        const pid_t writer = WriterOf(entry->d_name);
        if (writer <= 0 || writer == ::getpid()) continue;
        if (::kill(writer, 0) == 0 || errno != ESRCH) continue;  // still running, or not ours to ask
        ::unlinkat(::dirfd(dir), entry->d_name, 0);
    }
    ::closedir(dir);
}

AtomicFile::~AtomicFile() { Abandon(); }

bool AtomicFile::Fail(int error) {
    if (error_ == 0) error_ = error != 0 ? error : EIO;
    return false;
}

bool AtomicFile::Open(const std::string& path) { return Open(path, -1); }

namespace {

// The process's umask, as the system tells it; -1 where it doesn't.
int ProcessUmask() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.starts_with("Umask:")) return static_cast<int>(std::strtol(line.c_str() + 6, nullptr, 8));
    return -1;
}

}  // namespace

// Gives the unnamed file the temporary name, with the mode Open would give
// the file it makes. 0 when it has, EEXIST when the name is taken, another
// errno when the file can't be named.
int AtomicFile::Name(int unnamed, const struct stat* replaced) {
    int mode = 0;
    if (replaced != nullptr) {
        mode = static_cast<int>(replaced->st_mode & 07777);
    } else {
        const int mask = ProcessUmask();
        if (mask < 0) return ENOTSUP;
        mode = 0666 & ~mask;
    }
    const std::string proc = "/proc/self/fd/" + std::to_string(unnamed);
    if (::linkat(AT_FDCWD, proc.c_str(), AT_FDCWD, temporary_.c_str(), AT_SYMLINK_FOLLOW) != 0) return errno;
    fd_ = ::open(temporary_.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd_ < 0 || ::fchmod(fd_, static_cast<mode_t>(mode)) != 0) {
        if (fd_ >= 0) ::close(fd_);
        fd_ = -1;
        ::unlink(temporary_.c_str());
        return EPERM;
    }
    return 0;
}

bool AtomicFile::Open(const std::string& path, int unnamed) {
    Abandon();
    adopted_ = synced_ = false;
    error_ = 0;
    buffer_.clear();
    target_ = FollowLinks(path);
    if (const int refused = CanReplace(target_)) return Fail(refused);
    struct stat st{};
    const bool replaces = ::stat(target_.c_str(), &st) == 0;
    const std::string folder = FolderOf(target_);
    RemoveStaleTemporaries(folder);
    // A short hidden name, unique to this process and call, that fits the
    // folder whatever the length of the target's name.
    static unsigned serial = 0;
    for (int attempt = 0; attempt < 100; ++attempt) {
        temporary_ = folder + "/" + std::string(kTemporaryPrefix) + std::to_string(::getpid()) + "-" +
                     std::to_string(++serial) + std::string(kTemporarySuffix);
        if (unnamed >= 0) {
            const int named = Name(unnamed, replaces ? &st : nullptr);
            adopted_ = named == 0;
            if (adopted_) break;
            if (named == EEXIST) continue;
            unnamed = -1;  // made as Open makes it, from here on
        }
        fd_ = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd_ >= 0 || errno != EEXIST) break;
    }
    if (adopted_) {
        buffer_.reserve(kWriteBlock + 4096);
        return true;
    }
    if (fd_ < 0) {
        temporary_.clear();
        return Fail(errno);
    }
    if (replaces) ::fchmod(fd_, st.st_mode & 07777);
    buffer_.reserve(kWriteBlock + 4096);
    return true;
}

bool AtomicFile::Flush() {
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

bool AtomicFile::Write(std::string_view bytes) {
    if (fd_ < 0) return false;
    synced_ = false;
    buffer_.append(bytes);
    if (buffer_.size() >= kWriteBlock) return Flush();
    return error_ == 0;
}

bool AtomicFile::CopyFrom(int fd, uint64_t start, uint64_t length) {
    if (!Flush()) return false;
    synced_ = false;
    // In the kernel where it can; by reading and writing where it can't.
    length += start;
    auto from = static_cast<loff_t>(start);
    bool inKernel = true;
    std::string block;
    while (from < static_cast<loff_t>(length) && error_ == 0) {
        const size_t want = static_cast<size_t>(std::min<uint64_t>(length - static_cast<uint64_t>(from), 1u << 20));
        ssize_t n = -1;
        if (inKernel) {
            n = ::copy_file_range(fd, &from, fd_, nullptr, want, 0);
            if (n < 0 && (errno == EXDEV || errno == ENOSYS || errno == EINVAL || errno == EOPNOTSUPP)) {
                inKernel = false;
                continue;
            }
        } else {
            block.resize(want);
            n = ::pread(fd, block.data(), want, from);
            if (n > 0) {
                buffer_.assign(block.data(), static_cast<size_t>(n));
                if (!Flush()) return false;
                from += n;
            }
        }
        if (n < 0) {
            if (errno == EINTR) continue;
            return Fail(errno);
        }
        if (n == 0) return Fail(EIO);  // the file holds less than it should
    }
    return error_ == 0;
}

bool AtomicFile::Truncate(uint64_t length) {
    if (!Flush()) return false;
    synced_ = false;
    if (::ftruncate(fd_, static_cast<off_t>(length)) != 0) return Fail(errno);
    return true;
}

bool AtomicFile::Sync() {
    if (fd_ < 0 || !Flush()) return false;
    if (::fsync(fd_) != 0) return Fail(errno);
    synced_ = true;
    return true;
}

bool AtomicFile::Close() {
    if (fd_ < 0) return false;
    if (!synced_) {
        Flush();
        if (error_ == 0 && ::fsync(fd_) != 0) Fail(errno);
    }
    if (::close(fd_) != 0) Fail(errno);
    fd_ = -1;
    if (error_ == 0 && ::rename(temporary_.c_str(), target_.c_str()) != 0) Fail(errno);
    if (error_ != 0) {
        ::unlink(temporary_.c_str());
        temporary_.clear();
        return false;
    }
    temporary_.clear();
    // The new name reaches the disk with the folder.
    const int folder = ::open(FolderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
    return true;
}

void AtomicFile::Abandon() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
    temporary_.clear();
    buffer_.clear();
}

}  // namespace vantrel::library
