// The library file (.vnb): one LibraryHeader, then LibraryNodeRecords up to
// the end of the file. Little-endian, no padding, single-byte text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "library/files.h"

namespace vantrel::library {

struct LibraryHeader {
    int16_t version = 0;  // 1 is the only version there is
    int16_t flag = -1;    // written as -1, never read
    std::string book;     // the library's name
    int32_t RecCount = 0;
    int32_t MinIndex = 0;
    int32_t MaxIndex = 0;
    std::string LibRemarks;
};

struct LibraryNodeRecord {
    int32_t index = 0;   // never 0, unique in a file
    int32_t parent = 0;  // index of the parent; 0 on a top-level node
    bool new_branch = false;
    std::string description;  // the move, or "move: game name"
    std::string remarks;
    std::string BoardLayout;  // 64 characters on disk
};

inline constexpr size_t kLayoutBytes = 64;
inline constexpr size_t kMaxStringBytes = 0xFFFF;

// Serialises into `out` (appended). A string longer than the format can hold
// is cut at 65,535 bytes; a layout is blank-filled or cut to 64 bytes.
void EncodeHeader(const LibraryHeader& header, std::string& out);
void EncodeRecord(const LibraryNodeRecord& record, std::string& out);
// The same from the fields, for a writer that holds no record.
void EncodeRecord(int32_t index, int32_t parent, bool newBranch, std::string_view description,
                  std::string_view remarks, std::string_view layout, std::string& out);

// Reads a library front to back. The whole file is read into memory when it
// is opened and closed at once, so the file is free again during the load.
class LibraryReader {
public:
    // False if the file does not exist or cannot be read.
    bool Open(const std::string& path);
    // Reads from bytes already in memory (tests, fuzzing).
    void OpenBytes(std::string bytes);

    // Reads the header. A file that ends inside it leaves the remaining
    // fields at their defaults (an empty file gives version 0). Returns false
    // if the header was not complete.
    bool ReadHeader(LibraryHeader& header);

    // Reads the next whole record. False at the end of the file, which is the
    // first read that cannot deliver a complete record; a partial record at
    // the end is dropped.
    bool ReadRecord(LibraryNodeRecord& record);

    size_t Size() const { return data_.size(); }

private:
    bool Take(void* dst, size_t n);
    bool TakeString(std::string& s);

    std::string data_;
    size_t pos_ = 0;
};

// Writes a library in one pass through an AtomicFile: a library replaces
// the file at its path only when it is whole, and a failure, an Abandon or a
// writer that goes out of scope open leaves whatever stood there as it was.
class LibraryWriter {
public:
    LibraryWriter() = default;
    LibraryWriter(const LibraryWriter&) = delete;
    LibraryWriter& operator=(const LibraryWriter&) = delete;
    ~LibraryWriter();

    // False (with Error() set) if the temporary file can't be made, or the
    // path names a folder, something else than a plain file, or a library
    // the user may not write.
    bool Open(const std::string& path);
    // The same onto records encoded beforehand into the unnamed file
    // `unnamed`, behind room left for the header (see AtomicFile::Open):
    // where Adopted, the header is written over that room, and Truncate
    // ends the file behind the records kept.
    bool Open(const std::string& path, int unnamed);
    bool Adopted() const { return file_.Adopted(); }
    bool Truncate(uint64_t length) { return file_.Truncate(length); }
    bool WriteHeader(const LibraryHeader& header);
    bool WriteRecord(const LibraryNodeRecord& record);
    // Records encoded beforehand: `length` bytes of the file `fd` from `from` on.
    bool WriteEncoded(int fd, uint64_t from, uint64_t length);
    // Writes what is left and syncs it (see AtomicFile::Sync).
    bool Sync() { return file_.Sync(); }
    // Writes what is left, syncs, and puts the file in place; false if
    // anything failed on the way.
    bool Close();
    // Drops the temporary file.
    void Abandon();
    bool IsOpen() const { return file_.IsOpen(); }
    // The errno of the first failure, 0 for none.
    int Error() const { return file_.Error(); }

private:
    AtomicFile file_;
    std::string buffer_;
};

}  // namespace vantrel::library
