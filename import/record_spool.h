// The records of a library, encoded as the tree store adds them, in a file
// with no name in the library's folder, behind room left for the header.
// The writer then gives that file the library's name once the header stands
// in its room, or, where it can't, copies the records behind the header,
// instead of reading the table back. Whatever fails here only sends the
// writer back to the table. The records go on to the disk as they come, so
// that little is left to wait for when the library is synced.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace vantrel::import {

class RecordSpool {
public:
    RecordSpool() = default;
    RecordSpool(const RecordSpool&) = delete;
    RecordSpool& operator=(const RecordSpool&) = delete;
    ~RecordSpool();

    // False if no such file can be made in `folder`.
    bool Open(const std::string& folder);
    // Leaves the first `bytes` of the file for the header; before the first
    // record only.
    void Reserve(uint64_t bytes);
    uint64_t HeaderRoom() const { return room_; }
    // The next record: indexes come as 1, 2, 3, ...
    void Add(int32_t index, int32_t parent, bool newBranch, std::string_view description, std::string_view remarks,
             std::string_view layout);
    // Writes what is held back and sends the file to the disk on a thread of
    // its own, while the caller goes on: the writer's own sync then finds
    // little left to do. No record may follow.
    void SyncAhead();
    // Writes what is held back, and waits for the sync ahead. True if every
    // record added stands in the file, and on the disk if it was sent there.
    bool Finish();

    int32_t Count() const { return static_cast<int32_t>(parents_.size()); }
    int32_t ParentOf(int32_t index) const { return parents_[static_cast<size_t>(index) - 1]; }
    // The bytes of records 1 to `index`, which begin at HeaderRoom().
    uint64_t BytesUpTo(int32_t index) const { return index > 0 ? ends_[static_cast<size_t>(index) - 1] : 0; }
    int Fd() const { return fd_; }

    // A text longer than a library holds, which the writer will cut.
    struct Cut {
        int32_t index;
        bool remarks;  // else the description
        size_t bytes;
    };
    const std::vector<Cut>& Cuts() const { return cuts_; }

private:
    bool WriteOut();

    int fd_ = -1;
    bool failed_ = false;
    std::thread syncer_;
    bool syncFailed_ = false;  // the syncer's, read once it is joined
    std::string buffer_;
    uint64_t room_ = 0;
    uint64_t written_ = 0;  // record bytes in the file
    std::vector<int32_t> parents_;
    std::vector<uint64_t> ends_;
    std::vector<Cut> cuts_;
};

}  // namespace vantrel::import
