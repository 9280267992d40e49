// The records of a library, encoded as the tree store adds them, in a file
// with no name in the library's folder. The writer then copies them behind
// the header instead of reading the table back. Whatever fails here only
// sends the writer back to the table.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
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
    // The next record: indexes come as 1, 2, 3, ...
    void Add(int32_t index, int32_t parent, bool newBranch, std::string_view description, std::string_view remarks,
             std::string_view layout);
    // Writes what is held back. True if every record added stands in the file.
    bool Finish();

    int32_t Count() const { return static_cast<int32_t>(parents_.size()); }
    int32_t ParentOf(int32_t index) const { return parents_[static_cast<size_t>(index) - 1]; }
    // The bytes of records 1 to `index`.
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
    std::string buffer_;
    uint64_t written_ = 0;
    std::vector<int32_t> parents_;
    std::vector<uint64_t> ends_;
    std::vector<Cut> cuts_;
};

}  // namespace vantrel::import
