#include "import/record_spool.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "library/format.h"

namespace vantrel::import {

namespace {
constexpr size_t kBlock = size_t{1} << 20;
}

RecordSpool::~RecordSpool() {
    if (syncer_.joinable()) syncer_.join();
    if (fd_ >= 0) ::close(fd_);
}

bool RecordSpool::Open(const std::string& folder) {
    fd_ = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (fd_ < 0) return false;
    buffer_.reserve(kBlock + 4096);
    return true;
}

void RecordSpool::Reserve(uint64_t bytes) {
    if (failed_ || Count() > 0 || room_ == bytes) return;
    room_ = bytes;
    if (::lseek(fd_, static_cast<off_t>(room_), SEEK_SET) < 0) failed_ = true;
}

void RecordSpool::Add(int32_t index, int32_t parent, bool newBranch, std::string_view description,
                      std::string_view remarks, std::string_view layout) {
    if (failed_) return;
    if (index != Count() + 1) {
        failed_ = true;
        return;
    }
    library::EncodeRecord(index, parent, newBranch, description, remarks, layout, buffer_);
    if (description.size() > library::kMaxStringBytes) cuts_.push_back({index, false, description.size()});
    if (remarks.size() > library::kMaxStringBytes) cuts_.push_back({index, true, remarks.size()});
    parents_.push_back(parent);
    ends_.push_back(written_ + buffer_.size());
    if (buffer_.size() >= kBlock) WriteOut();
}

bool RecordSpool::WriteOut() {
    const char* p = buffer_.data();
    size_t left = buffer_.size();
    while (left > 0) {
        const ssize_t n = ::write(fd_, p, left);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            failed_ = true;
            break;
        }
        p += n;
        left -= static_cast<size_t>(n);
    }
    // Sent on its way to the disk now, not waited for.
    const uint64_t done = buffer_.size() - left;
    if (done > 0)
        ::sync_file_range(fd_, static_cast<off64_t>(room_ + written_), static_cast<off64_t>(done), SYNC_FILE_RANGE_WRITE);
    written_ += done;
    buffer_.clear();
    return !failed_;
}

void RecordSpool::SyncAhead() {
    if (fd_ < 0 || failed_ || syncer_.joinable() || !WriteOut()) return;
    // An error the sync meets is told to it alone, not to a sync after it:
    // it is kept here.
    try {
        syncer_ = std::thread([this] { syncFailed_ = ::fdatasync(fd_) != 0; });
    } catch (const std::system_error&) {
        // No thread to be had: the writer's own sync does it all.
    }
}

bool RecordSpool::Finish() {
    if (syncer_.joinable()) syncer_.join();
    return fd_ >= 0 && !failed_ && WriteOut() && !syncFailed_;
}

}  // namespace vantrel::import
