// Shared by the tree store, library writer and command line tests: a
// temporary program directory with its own Tessimo.mdb, a host that records
// what the store tells the user and answers the repair dialog from a script,
// and direct access to the table Moves.
#pragma once

#include <archive.h>
#include <archive_entry.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

#include "chess/board.h"
#include "import/moves_table.h"
#include "import/tree_store.h"
#include "tools/random_games.h"

namespace vantrel::storetest {

namespace fs = std::filesystem;
using import::ImportHost;
using Messages = std::vector<std::pair<std::string, std::string>>;
using Errors = std::vector<std::pair<std::string, int>>;
using Strings = std::vector<std::string>;

inline std::string ReadFile(const std::string& path) {
    return (std::ostringstream() << std::ifstream(path, std::ios::binary).rdbuf()).str();
}
inline void WriteFile(const std::string& path, const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }

// Writes a file as libarchive packs it: "zip" makes an archive of the
// entries, a compression ("gzip", "bzip2", "xz", "zstd") one compressed
// stream of the single entry, and "" the entry as it stands.
inline void WritePacked(const std::string& path, const std::string& how, const std::vector<std::string>& entries) {
    if (how.empty()) return WriteFile(path, entries.at(0));
    archive* a = archive_write_new();
    const bool zip = how == "zip";
    ASSERT_EQ(zip ? archive_write_set_format_zip(a) : archive_write_set_format_raw(a), ARCHIVE_OK);
    if (!zip) {
        ASSERT_EQ(archive_write_add_filter_by_name(a, how.c_str()), ARCHIVE_OK) << how;
    }
    ASSERT_EQ(archive_write_open_filename(a, path.c_str()), ARCHIVE_OK);
    for (size_t i = 0; i < entries.size(); ++i) {
        archive_entry* entry = archive_entry_new();
        archive_entry_set_pathname(entry, ("part" + std::to_string(i) + ".pgn").c_str());
        archive_entry_set_filetype(entry, AE_IFREG);
        archive_entry_set_perm(entry, 0644);
        archive_entry_set_size(entry, static_cast<la_int64_t>(entries[i].size()));
        ASSERT_EQ(archive_write_header(a, entry), ARCHIVE_OK);
        ASSERT_EQ(archive_write_data(a, entries[i].data(), entries[i].size()), static_cast<la_ssize_t>(entries[i].size()));
        archive_entry_free(entry);
    }
    ASSERT_EQ(archive_write_close(a), ARCHIVE_OK);
    archive_write_free(a);
}

// A fresh directory that is removed again at the end of the test.
class TempDir {
public:
    TempDir() : path_(fs::temp_directory_path() / ("vantrel-store-" + std::to_string(::getpid()) + "-" + Next())) {
        fs::remove_all(path_);
        fs::create_directories(path_);
    }
    ~TempDir() { std::error_code ec; fs::remove_all(path_, ec); }
    std::string str() const { return path_.string(); }
    std::string operator/(const std::string& name) const { return (path_ / name).string(); }

private:
    static std::string Next() { static std::atomic<int> counter{0}; return std::to_string(counter++); }
    fs::path path_;
};

class RecordingHost : public ImportHost {
public:
    void ShowCount(const std::string& text) override { counts.push_back(text); }
    void Yield() override {
        ++yields;
        if (cancelAtCount > 0 && static_cast<int>(counts.size()) == cancelAtCount) running = false;
    }
    bool Running() const override { return running; }
    bool KeepCancelledLibrary() const override { return keepCancelled; }
    // Answers from the script: an action, and for "accept" the move typed in.
    import::FixMoveAction AskFixMove(int16_t ply, int16_t lastPly, int16_t code, import::GameRecord& game,
                       const chess::ImportBoard& board) override {
        fixCalls.push_back(std::to_string(ply) + " " + std::to_string(lastPly) + " " + std::to_string(code) + " " +
                           game.GameMoves[ply].str());
        fixBoards.push_back(board.BoardToLayout());
        if (answers.empty()) {
            ADD_FAILURE() << "unexpected repair request for ply " << ply << " move " << game.GameMoves[ply];
            return import::kFixCancel;
        }
        const auto [action, replacement] = answers.front();
        answers.pop_front();
        if (action == import::kFixAccept) game.GameMoves[ply] = replacement;
        return action;
    }
    bool AskOverwrite(const std::string& text) override {
        overwriteQuestions.push_back(text);
        return overwriteAnswer;
    }
    void Message(const std::string& text, const std::string& title) override { messages.push_back({text, title}); }
    void ShowError(const std::string& description, int number) override { errors.push_back({description, number}); }
    void Notice(const std::string& text) override { notices.push_back(text); }
    void GameRead(int32_t number, int16_t lastPly, const import::GameRecord& game) override {
        games.push_back(std::to_string(number) + " " + game.GameMoves[0].str() + " " + std::to_string(lastPly));
        if (onGame) onGame(number);
    }

    void FailedInGame(int32_t number, int64_t line, const import::GameRecord& game) override {
        failedIn = std::to_string(number) + " " + game.GameMoves[0].str() + " " + std::to_string(line);
    }
    // Nothing was told to the user.
    bool Silent() const { return messages.empty() && errors.empty(); }
    Strings counts, notices, overwriteQuestions;
    Strings games;  // "number name lastPly" of each game read
    std::string failedIn;  // "number name line" of the game the import failed in
    int yields = 0;
    bool running = true;
    int cancelAtCount = 0;  // Running() turns false at the yield after this count
    bool keepCancelled = true;  // as the wizard; the command line keeps nothing
    std::deque<std::pair<import::FixMoveAction, std::string>> answers;
    Strings fixCalls;   // what the repair dialog was shown: "ply lastPly code move", as GameMoves(ply) holds it
    Strings fixBoards;  // and the board ahead of the bad move
    bool overwriteAnswer = true;
    Messages messages;
    Errors errors;
    std::function<void(int32_t)> onGame;  // runs as each game has been read
};

// One record of Moves, read straight from the database.
struct Row {
    int64_t index = 0, parent = 0;
    std::string move, book, description;
    int64_t newBranch = 0;
    std::string remarks;
    bool remarksNull = false;
    std::string layout;
};

// A record in short: "index<parent move", the description in brackets where
// it is more than the move, and " *" for a new branch (" !n" for any other
// value but 0).
inline std::string Brief(const Row& r) {
    std::string out = std::to_string(r.index) + "<" + std::to_string(r.parent) + " " + r.move;
    if (r.description != r.move) out += " (" + r.description + ")";
    if (r.newBranch != 0) out += r.newBranch == -1 ? " *" : " !" + std::to_string(r.newBranch);
    return out;
}
inline Strings Briefs(const std::vector<Row>& rows) {
    Strings out;
    for (const Row& r : rows) out.push_back(Brief(r));
    return out;
}

// The table Moves read and written straight, past the tree store.
class Db {
public:
    explicit Db(const std::string& path) { db_.Open(path); }

    std::vector<Row> Rows() {
        import::Statement s = db_.Prepare(R"(SELECT "index", "parent", "move", "book", "description", "new_branch", )"
                                          R"("remarks", "BoardLayout" FROM Moves ORDER BY "index")");
        std::vector<Row> rows;
        auto text = [&](int column) { return std::string(s.TextView(column)); };
        while (s.Step())
            rows.push_back({s.Int(0), s.Int(1), text(2), text(3), text(4), s.Int(5), text(6), s.IsNull(6), text(7)});
        return rows;
    }

    void Insert(const Row& r) {
        import::Statement s = db_.Prepare(R"(INSERT INTO Moves ("index", "parent", "move", "book", "description", )"
                                          R"("new_branch", "remarks", "BoardLayout") VALUES (?, ?, ?, ?, ?, ?, ?, ?))");
        s.Bind(1, r.index), s.Bind(2, r.parent), s.Bind(3, r.move), s.Bind(4, r.book), s.Bind(5, r.description);
        s.Bind(6, r.newBranch), s.Bind(8, r.layout), r.remarksNull ? s.BindNull(7) : s.Bind(7, r.remarks);
        s.Step();
    }

    void Clear() { db_.Execute("DELETE FROM Moves"); }

private:
    import::WorkingDatabase db_;
};

// The position after a line of moves in plain notation, worked out by the
// test's own move generator rather than by the resolver.
inline std::string LayoutAfter(const Strings& moves) {
    gen::Position pos;
    std::vector<gen::Move> legal;
    for (const std::string& m : moves) {
        pos.LegalMoves(legal);
        const auto it = std::find_if(legal.begin(), legal.end(), [&](const gen::Move& g) { return pos.San(g) == m; });
        EXPECT_TRUE(it != legal.end()) << "test line has an impossible move " << m;
        if (it == legal.end()) return {};
        pos.Apply(*it);
    }
    return pos.Layout();
}

// The message of a working database that is missing or unfit.
inline const Messages kTrouble = {{"Trouble with 'Tessimo.Mdb'", "Couldn't parse book"}};

// A program directory with a fresh Tessimo.mdb, and the options of an import
// into it.
class StoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(import::CreateDatabaseFromSchema(DbPath(), VANTREL_SCHEMA, &error)) << error;
        options.programDir = dir.str();
        options.inFile = dir / "games.pgn";
        options.bookName = "Demo";
        options.tags = {true, false, false, false, false, false, false};  // Event
    }

    std::string DbPath() const { return dir / "Tessimo.mdb"; }

    // Writes the import file and runs BuildTree on it.
    bool Build(const std::string& text) {
        WriteFile(options.inFile, text);
        return import::BuildTree(options, host, session);
    }
    bool Write() { return import::WriteLibrary(options, host, session); }
    std::vector<Row> Rows() { return Db(DbPath()).Rows(); }

    // The ways a working database can be unusable: not there (and then it
    // must not be created), empty, not a database, without the table Moves.
    static constexpr int kSpoiledDatabases = 4;
    void SpoilDatabase(int way) {
        fs::remove(DbPath());
        if (way == 1) WriteFile(DbPath(), "");
        if (way == 2) WriteFile(DbPath(), "this is not a database, just text and long enough for a header");
        sqlite3* db = nullptr;
        if (way == 3 && sqlite3_open(DbPath().c_str(), &db) == SQLITE_OK)
            sqlite3_exec(db, "CREATE TABLE Other (x INTEGER)", nullptr, nullptr, nullptr), sqlite3_close(db);
    }

    TempDir dir;
    import::ImportOptions options;
    RecordingHost host;
    import::ImportSession session;
};

}  // namespace vantrel::storetest
