// The game readers: the import file's lines, the state that lasts from game
// to game, and one call per game for PGN and for plain SAN.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>

#include "import/game_record.h"

namespace vantrel::import {

// The import file, read line by line. Lines end in CR LF, LF or CR; a line
// comes back without its end and in Windows-1252, whether the file was
// written in UTF-8 (with or without a byte-order mark) or in 1252.
class LineSource {
public:
    LineSource() = default;
    LineSource(const LineSource&) = delete;
    LineSource& operator=(const LineSource&) = delete;
    ~LineSource();

    // False if the file can't be opened or is no plain file. A read that fails
    // later throws ImportError naming the file and the cause.
    bool Open(const std::string& path);
    void OpenText(std::string text);  // from memory (tests, fuzzing)
    void Close();
    bool IsOpen() const;

    // The next line. Throws ImportError (number 62, "Input past end of
    // file") when no line is left.
    std::string ReadLine();
    // The same into a string that the caller keeps, so that its room is reused.
    void ReadLine(std::string& line);
    // True as soon as the last line has been read (at once for an empty file).
    // A line end at the very end of the file makes no extra empty line.
    bool Eof();
    // How many lines have been handed out: the number of the last one.
    int64_t LineNumber() const { return lines_; }

private:
    bool Fill();
    void CheckBom();

    static constexpr size_t kBlock = 64 * 1024;
    static constexpr int kReadErrorNumber = 57;  // "Device I/O error"

    std::FILE* file_ = nullptr;
    std::string buffer_;  // bytes read but not yet handed out start at pos_
    size_t pos_ = 0;
    bool memory_ = false;
    bool bomChecked_ = false;
    std::string raw_;  // the line's bytes as they stand in the file
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
};

// Each returns LastPly: the number of plies, 0 for a game with a name and no
// move, -1 if no game was found. Failures throw ImportError.
int16_t ReadPgnGame(ImportState& state, GameRecord& game, const PgnTagChoice& tags);
int16_t ReadSanGame(ImportState& state, GameRecord& game, const std::string& commentStart,
                    const std::string& commentEnd);

}  // namespace vantrel::import
