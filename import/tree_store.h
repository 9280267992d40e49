// From a text file of games to the table Moves (BuildTree), and from the
// table to a library file (WriteLibrary). Windows reach the user only
// through ImportHost, so the same code serves the wizard and the command line.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "chess/board.h"
#include "import/game_feed.h"
#include "import/game_record.h"

namespace vantrel::import {

// The parameters of one import: what the wizard's controls hold.
struct ImportOptions {
    std::string programDir;  // Tessimo.mdb is read and the library written here
    std::string inFile;      // txtInFile (trimmed by the store)
    std::string bookName;    // txtBookName in library text (trimmed by the store)
    // The same name as the file system spells it (UTF-8), for a name with
    // characters that library text has no place for; empty: bookName's.
    std::string libraryFile;
    bool pgn = true;         // optImportType(0)
    std::string commentStart = "//";  // txtCommentStart, untrimmed (SAN only)
    std::string commentEnd = "//";    // txtCommentEnd, untrimmed (SAN only)
    std::array<bool, 7> tags{};       // chkTag(0..6): Event Site Date Round White Black Result
    // Tags of any name that make the name in their order, in place of tags
    // (see PgnTagChoice::byName); the wizard leaves it empty.
    std::vector<std::string> tagNames;
    bool ignoreQuestion = true;       // chkIgnoreQuestion
    // The working database; empty means programDir + "/Tessimo.mdb".
    std::string databasePath;
    // Plies kept of each game (1..250); 0 keeps all, and a game of more
    // than 250 plies then fails the import.
    int16_t plyLimit = 0;
    // Games read on a thread of their own while the ones before them are
    // played (the command line); the window reads on its one thread.
    bool readAhead = false;
    // The library's records are also encoded as they are added, so that
    // WriteLibrary copies them instead of reading the table back (the
    // command line).
    bool spoolRecords = false;
    // The records reach the table on a thread of their own, a batch at a
    // time, while the next batch is played (the command line).
    bool writeBehind = false;
};

enum FixMoveAction : int16_t { kFixCancel = 3, kFixAccept = 4, kFixSkip = 5 };

// What the store needs of the window (or tool) that runs it.
class ImportHost {
public:
    virtual ~ImportHost() = default;
    // lblCount.
    virtual void ShowCount(const std::string& text) = 0;
    // False for a host with no counter to show: the text is then not made.
    virtual bool ShowsCount() const { return true; }
    // Let pending events run (a click on Cancel comes in here).
    virtual void Yield() {}
    // ImportRunning: false once the user has cancelled.
    virtual bool Running() const = 0;
    // The repair dialog: ply and last ply of the game, the resolver's result,
    // the game (GameMoves(ply) is rewritten on accept) and the board ahead of
    // the bad move. Returns a FixMoveAction.
    virtual FixMoveAction AskFixMove(int16_t ply, int16_t lastPly, int16_t errorCode, GameRecord& game,
                               const chess::ImportBoard& board) = 0;
    // name + ".vnb already exists.  OK to overwrite?" with OK and Cancel.
    virtual bool AskOverwrite(const std::string& text) = 0;
    // A message box with OK; an empty title means the program's name.
    virtual void Message(const std::string& text, const std::string& title) = 0;
    // The program's error dialog.
    virtual void ShowError(const std::string& description, int number) = 0;
    // A reader has just delivered game number `number` (from 1) with
    // `lastPly` plies; the moves are about to be played. Nothing to do for
    // the wizard; the command line uses it to name games in its reports.
    virtual void GameRead(int32_t /*number*/, int16_t /*lastPly*/, const GameRecord& /*game*/) {}
    // After each game: how many bytes of the file (as it lies on disk,
    // packed or not) have been read so far.
    virtual void ReadProgress(int64_t /*bytesRead*/) {}
    // The import fails while game `number` is being read or played, at line
    // `line` of the file; `game` holds what was read of it. Comes before the
    // failure is told.
    virtual void FailedInGame(int32_t /*number*/, int64_t /*line*/, const GameRecord& /*game*/) {}
    // Whether a write of the library that is cancelled puts in place the
    // records so far (a library that loads), as the wizard does; otherwise
    // it leaves the library that stood there, as an interrupted command does.
    virtual bool KeepCancelledLibrary() const { return true; }
    // Something the user may want to know that changes nothing of the run,
    // such as a text cut to the 65,535 bytes a library can hold. The window
    // keeps quiet; the command line says it on stderr.
    virtual void Notice(const std::string& /*text*/) {}
    // WriteLibrary has just written the record `index` under `parent`. The
    // command line counts the tree's depths with it.
    virtual void RecordWritten(int32_t /*index*/, int32_t /*parent*/) {}
};

class ImportLock;
class RecordSpool;

// State that lives from BuildTree on into WriteLibrary.
struct ImportSession {
    std::string ImportRemarks;  // text ahead of the first game: the library's remarks
    int32_t recordCount = 0;    // records added by BuildTree
    std::string book;           // the library name they carry
    // The hold on the working database from a BuildTree that succeeded to
    // the end of WriteLibrary.
    std::shared_ptr<ImportLock> hold;
    // The records as BuildTree encoded them, when it was asked to and could.
    std::shared_ptr<RecordSpool> spool;
};

// Plays every game of the file and merges it into the table Moves of
// programDir/Tessimo.mdb. True if the table now holds what a library can be
// made of.
bool BuildTree(const ImportOptions& options, ImportHost& host, ImportSession& session);

// Dumps the table into programDir/<name>.vnb. True if the whole table
// stands in the file. Ends the session's hold on the working database.
bool WriteLibrary(const ImportOptions& options, ImportHost& host, ImportSession& session);

// The import file or the library file couldn't be opened.
struct FileNotOpened {};

// Whether the library of `options` may be written: its name is one (else the
// host is told why), and a library of that name is replaced only if the
// host agrees.
bool MayWriteLibrary(const ImportOptions& options, ImportHost& host);

// Throws the Error the user is told for a failed write of the file
// `fileName`, by the writer's errno: "Disk full", or the cause.
[[noreturn]] void ThrowWriteError(int error, const std::string& fileName);

// The one handler of a whole operation, called while its failure is being
// handled: tells the user what went wrong. `fileText` is the "Couldn't open
// ..." text for a FileNotOpened.
void Report(ImportHost& host, const std::string& fileText);

// Why `name` (trimmed, as the file system spells it) can't name a library,
// or "" when it can. A library is a file in the program's folder: its name
// holds no "/", is not made of dots alone, and fits a file name with ".vnb".
std::string LibraryNameProblem(const std::string& name);

// The path WriteLibrary writes to: programDir + "/" + the trimmed name + ".vnb",
// the name as libraryFile spells it, if given.
std::string LibraryPath(const ImportOptions& options);

// The working database both of them open.
std::string DatabasePath(const ImportOptions& options);

// The reader of one game that the options ask for: PGN with the chosen tags,
// or SAN with the two comment indicators.
GameFeed::Reader GameReader(const ImportOptions& options);

}  // namespace vantrel::import
