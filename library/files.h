// Opening files to read without being stuck on a pipe or a device, and
// writing a file so that it replaces what stood there only when it is whole.
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

namespace vantrel::library {

// Opens a plain file for reading. A FIFO or a device is refused before any
// read could wait for a writer, a folder too. Returns the descriptor (to be
// closed by the caller), or -1 with errno set (EISDIR for a folder, EINVAL
// for anything else that is no plain file).
int OpenPlainFile(const std::string& path);

// Writes a file in one pass. The bytes go to a hidden temporary file in the
// target's folder, which takes the target's place at Close, after it has
// reached the disk. A failure, an Abandon or a writer that goes out of scope
// open leaves whatever stood at the target as it was, and no temporary file
// behind.
//
// The target is the path as given, or, where that is a symbolic link, the
// file the link points to: the link stays a link. A file that stands there
// already keeps its permissions; one the user may not write is refused
// (EACCES), and so is a folder (EISDIR).
class AtomicFile {
public:
    AtomicFile() = default;
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;
    ~AtomicFile();

    // False (with Error() set) if the target can't be written or the
    // temporary file can't be made. Temporary files that processes which no
    // longer run left in that folder are removed first.
    bool Open(const std::string& path);
    // The same, but the temporary file is, where it can be, the unnamed file
    // `unnamed` (made with O_TMPFILE in the target's folder) given a name:
    // its bytes are then already there, and writing starts over them at
    // its front. Where it can't be, an empty file is made as Open makes it;
    // Adopted tells which.
    bool Open(const std::string& path, int unnamed);
    bool Adopted() const { return adopted_; }
    // Appends bytes; they reach the file in large blocks.
    bool Write(std::string_view bytes);
    // Appends `length` bytes of the file `fd` from `from` on, which it must hold.
    bool CopyFrom(int fd, uint64_t from, uint64_t length);
    // Ends the file after its first `length` bytes.
    bool Truncate(uint64_t length);
    // Writes what is left and syncs it, so that Close only has to put the
    // file in place; false if anything failed on the way.
    bool Sync();
    // Writes what is left, syncs, and puts the file in place; false if
    // anything failed on the way.
    bool Close();
    // Drops the temporary file.
    void Abandon();
    bool IsOpen() const { return fd_ >= 0; }
    // The errno of the first failure, 0 for none.
    int Error() const { return error_; }
    // The file that Close replaces: the path given, with a link followed.
    const std::string& Target() const { return target_; }

private:
    bool Flush();
    bool Fail(int error);

    int Name(int unnamed, const struct ::stat* replaced);

    int fd_ = -1;
    bool adopted_ = false;
    bool synced_ = false;  // nothing written since the last sync
    std::string target_;
    std::string temporary_;
    std::string buffer_;
    int error_ = 0;
};

// Whether AtomicFile may put a file at `path`: 0 when it may (nothing stands
// there, or a plain file the user may write), else the errno Open would
// give: EISDIR, EINVAL for something else than a plain file, EACCES.
int CanReplace(const std::string& path);

// The folder part of a path: "." for a bare name, "/" for a name at the root.
std::string FolderOf(const std::string& path);

// Removes the temporary files that a writer of a process that no longer runs
// left in `folder`. What belongs to a running process stays.
void RemoveStaleTemporaries(const std::string& folder);

}  // namespace vantrel::library
