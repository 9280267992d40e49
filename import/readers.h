// The game readers: the import file's lines, the state that lasts from game
// to game, and one call per game for PGN and for plain SAN.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "import/game_record.h"

struct archive;

namespace vantrel::import {

// The import file, read line by line. Lines end in CR LF, LF or CR; a line
// comes back without its end and in Windows-1252, whether the file was
// written in UTF-8 (with or without a byte-order mark) or in 1252.
//
// The file may also be compressed (gzip, bzip2, xz, zstd) or a zip archive,
// as its first bytes tell, whatever its name. It is then unpacked as it is
// read, and the entries of a zip follow one another in the archive's order,
// each read as a file of its own would be: a byte-order mark comes off its
// start, and its last line ends with it.
class LineSource {
public:
    LineSource() = default;
    LineSource(const LineSource&) = delete;
    LineSource& operator=(const LineSource&) = delete;
    ~LineSource();

    // False if the file can't be opened or is no plain file. A read that fails
    // later, a damaged archive among them, throws Error naming the file
    // and the cause.
    bool Open(const std::string& path);
    void OpenText(std::string text);  // from memory (tests, fuzzing)
    void Close();
    bool IsOpen() const;

    // The next line. Throws Error (number 62, "Input past end of
    // file") when no line is left.
    std::string ReadLine();
    // The same into a string that the caller keeps, so that its room is reused.
    void ReadLine(std::string& line);
    // The same as a view, valid until the next call of anything here: where
    // it can be, a view of the block read, with no copy.
    std::string_view NextLine();
    // True as soon as the last line has been read (at once for an empty file).
    // A line end at the very end of the file makes no extra empty line.
    bool Eof() { return bomChecked_ && pos_ < buffer_.size() ? false : AtEnd(); }
    // How many lines have been handed out: the number of the last one.
    int64_t LineNumber() const { return lines_; }
    // How much of the file on disk has been read so far, in bytes: of a
    // compressed file or an archive its packed bytes, which may run a block
    // ahead of the lines handed out. The directory at the end of a zip is
    // never read, so there the count stops short of the file's size.
    int64_t BytesRead() const;

private:
    bool Fill();
    bool AtEnd();
    void CheckBom();
    size_t ReadPacked(char* out, size_t room);
    [[noreturn]] void ThrowPackedError();

    static constexpr size_t kBlock = 64 * 1024;

    std::FILE* file_ = nullptr;
    int64_t bytesRead_ = 0;  // of a plain file
    // A packed file: libarchive's reader, opened at the first read.
    bool packed_ = false;
    struct ::archive* archive_ = nullptr;
    bool inEntry_ = false;        // between an entry's header and the end of its data
    bool entryFresh_ = false;     // no byte of the entry handed on yet
    bool bomPending_ = false;     // the entry's start not yet looked at for a byte-order mark
    bool lineEndOwed_ = false;    // the entry before ended without a line end
    bool packedAtEnd_ = false;
    std::unique_ptr<char[]> block_;  // what one read brings
    std::string buffer_;  // bytes read but not yet handed out start at pos_
    size_t pos_ = 0;
    bool memory_ = false;
    bool bomChecked_ = false;
    std::string raw_;  // the line's bytes as they stand in the file
    std::string line_;  // NextLine's line, where it isn't in the block
    std::string path_;
    int64_t lines_ = 0;
};

// The import state that lives from game to game.
struct ImportState {
    LineSource* ImportFile = nullptr;
    bool ImportAtEnd = false;
    bool ImportFirstGame = true;
    std::string ImportLine;
    std::string ImportRemarks;
    int16_t PlyLimit = 0;  // plies kept of each game; 0 keeps them all (see MoveWalker::SetPlyLimit)
};

// The tags chosen to make a game's name: chkTag(0..6) are Event, Site, Date,
// Round, White, Black, Result.
struct PgnTagChoice {
    std::array<bool, 7> chkTag{};
    bool chkIgnoreQuestion = true;
    // Tags of any name, in the order in which their values make up the name;
    // when there are any they take the place of chkTag. A name matches the
    // tag's whole name in any case, and the value is the text between the
    // quotes.
    std::vector<std::string> byName;
};

// Each returns LastPly: the number of plies, 0 for a game with a name and no
// move, -1 if no game was found. Failures throw Error.
int16_t ReadPgnGame(ImportState& state, GameRecord& game, const PgnTagChoice& tags);
int16_t ReadSanGame(ImportState& state, GameRecord& game, const std::string& commentStart,
                    const std::string& commentEnd);

}  // namespace vantrel::import
