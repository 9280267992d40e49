// WriteLibrary: the table Moves dumped into a library file; and from a game
// file to a library and back, with the right positions throughout.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "library/format.h"
#include "library/loader.h"
#include "store_test_support.h"

namespace vantrel::storetest {
namespace {

class WriteLibraryTest : public StoreTest {
protected:
    static Row MakeRow(int64_t index, int64_t parent, const std::string& move, const std::string& book = "Demo") {
        return {index, parent, move, book, move, 0, "", false, std::string(chess::kInitialLayout)};
    }
    void Insert(const std::vector<Row>& rows) {
        Db db(DbPath());
        for (const auto& r : rows) db.Insert(r);
    }
    std::string Path() const { return dir / "Demo.vnb"; }

    struct FileContents {
        library::LibraryHeader header;
        std::vector<library::LibraryNodeRecord> records;
    };
    static FileContents ReadBack(const std::string& path) {
        FileContents c;
        library::LibraryReader reader;
        EXPECT_TRUE(reader.Open(path)) << path;
        reader.ReadHeader(c.header);
        for (library::LibraryNodeRecord r; reader.ReadRecord(r);) c.records.push_back(r);
        return c;
    }
};

TEST_F(WriteLibraryTest, TheTableGoesIntoTheFileAsTheFormatWantsIt) {
    std::vector<Row> rows = {MakeRow(1, 0, "e4"), MakeRow(2, 1, "e5"), MakeRow(3, 2, "Nf3"), MakeRow(4, 3, "Nc6")};
    rows[0].newBranch = -1;
    rows[0].description = "e4: a game";
    rows[0].remarksNull = true;                                     // NULL remarks
    rows[1].newBranch = 1;                                          // only -1 is true
    rows[1].layout = "RNB";                                         // short: blanks behind
    rows[1].remarks = std::string(library::kMaxStringBytes, 'a');  // just fits
    rows[2].remarks = "two\r\nlines";
    rows[2].layout = std::string(70, 'q');  // long: cut at 64
    rows[3].remarks = std::string(70000, 'c');
    // Added out of order, and with a record of another library among them.
    Insert({rows[2], rows[0], MakeRow(5, 0, "d4", "Other"), rows[1], rows[3]});
    session.ImportRemarks = std::string(library::kMaxStringBytes + 1, 'r');
    ASSERT_TRUE(Write());
    EXPECT_TRUE(host.Silent() && host.overwriteQuestions.empty());
    const std::string cut = " bytes: cut to the 65535 that a library can hold";
    EXPECT_EQ(host.notices,
              (Strings{"The library's remarks has 65536" + cut, "The comment of record 4 has 70000" + cut}));
    // The counter starts at 1, with a blank in front of the digits.
    EXPECT_EQ(host.counts, (Strings{" 1", " 2", " 3", " 4"}));
    EXPECT_EQ(host.yields, 4);
    const auto c = ReadBack(Path());
    const auto& h = c.header;
    // Version, flag, book; RecCount of this library's records; MinIndex and MaxIndex over the whole table.
    EXPECT_EQ(std::to_string(h.version) + " " + std::to_string(h.flag) + " " + h.book + " " +
                  std::to_string(h.RecCount) + " " + std::to_string(h.MinIndex) + " " + std::to_string(h.MaxIndex),
              "1 -1 Demo 4 1 5");
    EXPECT_EQ(h.LibRemarks, std::string(library::kMaxStringBytes, 'r'));
    Strings records;  // each with its remarks behind a "|", long ones as their first character and size
    for (const auto& r : c.records)
        records.push_back(std::to_string(r.index) + "<" + std::to_string(r.parent) + " " + r.description +
                          (r.new_branch ? " *|" : "|") +
                          (r.remarks.size() > 20 ? r.remarks[0] + std::to_string(r.remarks.size()) : r.remarks));
    EXPECT_EQ(records, (Strings{"1<0 e4: a game *|", "2<1 e5|a65535", "3<2 Nf3|two\r\nlines", "4<3 Nc6|c65535"}));
    EXPECT_EQ(c.records[1].BoardLayout, "RNB" + std::string(61, ' '));
    EXPECT_EQ(c.records[2].BoardLayout, std::string(64, 'q'));
    // Every record holds 78 bytes plus its two texts; the header is 20, "Demo" and its remarks.
    size_t expected = 20 + 4 + h.LibRemarks.size();
    for (const auto& r : c.records) expected += 78 + r.description.size() + r.remarks.size();
    EXPECT_EQ(fs::file_size(Path()), expected);
}

TEST_F(WriteLibraryTest, AnExistingLibraryIsReplacedOnlyWhenTheUserAgrees) {
    // An empty file of that name is written over without asking.
    Insert({MakeRow(1, 0, "e4")});
    WriteFile(Path(), "");
    ASSERT_TRUE(Write());
    EXPECT_TRUE(host.overwriteQuestions.empty());
    EXPECT_EQ(ReadBack(Path()).records.size(), 1u);
    // Refused: nothing is touched, not even the database.
    WriteFile(Path(), "old library");
    fs::rename(DbPath(), dir / "aside.mdb");
    host = RecordingHost{};
    host.overwriteAnswer = false;
    EXPECT_FALSE(Write());
    EXPECT_EQ(host.overwriteQuestions, Strings{"Demo.vnb already exists.  OK to overwrite?"});
    EXPECT_TRUE(host.Silent());
    EXPECT_EQ(ReadFile(Path()), "old library");
    // Agreed: the new library takes the old one's place.
    fs::rename(dir / "aside.mdb", DbPath());
    host = RecordingHost{};
    ASSERT_TRUE(Write());
    EXPECT_EQ(host.overwriteQuestions.size(), 1u);
    EXPECT_EQ(ReadBack(Path()).records.size(), 1u);
    // Agreed, but the table is empty and the write fails (no smallest index to read): the
    // older library stays byte for byte, and no temporary file is left beside it.
    const std::string before = ReadFile(Path());
    Db(DbPath()).Clear();
    host = RecordingHost{};
    EXPECT_FALSE(Write());
    EXPECT_EQ(host.messages, Messages{});
    EXPECT_EQ(host.errors, (Errors{{"Invalid use of Null", 94}}));
    EXPECT_EQ(ReadFile(Path()), before);
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.str()), fs::directory_iterator()), 2);  // library, database
    // A file that can't be created is named.
    host = RecordingHost{};
    Insert({MakeRow(1, 0, "e4")});
    options.databasePath = DbPath();
    options.programDir = dir / "no-such-directory";
    EXPECT_FALSE(Write());
    EXPECT_EQ(host.messages, (Messages{{"Couldn't open Demo.vnb", ""}}));
    EXPECT_EQ(host.errors, Errors{});
}

TEST_F(WriteLibraryTest, StopDuringWritingLeavesALoadablePartialFile) {
    for (int k = 1; k <= 5; ++k) Insert({MakeRow(k, k - 1, "m" + std::to_string(k))});
    host.cancelAtCount = 3;
    EXPECT_FALSE(Write());
    EXPECT_TRUE(host.Silent());
    const auto c = ReadBack(Path());
    EXPECT_EQ(std::to_string(c.header.RecCount) + " " + std::to_string(c.records.size()), "5 2");  // the table's count
    library::LibraryContents contents;
    EXPECT_EQ(library::LoadLibrary(Path(), contents), library::LoadResult::Ok);
    // A host that keeps nothing of a cancelled write, as the command line:
    // the library that stood there stays, whether the records come from the
    // table or were encoded on the way into the file that would have
    // become the library, and no temporary file is left.
    const std::string before = ReadFile(Path());
    for (const bool spool : {false, true}) {
        options.spoolRecords = spool;
        host = RecordingHost{};
        ASSERT_TRUE(Build("[Event \"a\"]\n\ne4 e5 Nf3 Nc6 Bb5\n"));
        host.keepCancelled = false;
        host.cancelAtCount = static_cast<int>(host.counts.size()) + 3;
        EXPECT_FALSE(Write());
        EXPECT_TRUE(host.Silent());
        EXPECT_EQ(ReadFile(Path()), before) << spool;
        for (const auto& entry : fs::directory_iterator(dir.str()))
            EXPECT_FALSE(entry.path().filename().string().starts_with(".vantrel.")) << entry.path();
    }
}

// The records encoded on the way give the file the table gives, cut texts,
// counts and a stop on the way included.
TEST_F(WriteLibraryTest, RecordsEncodedOnTheWayGiveTheFileOfTheTable) {
    const std::string pgn = "[Event \"a\"]\n\ne4 {" + std::string(70000, 'c') + "} e5 Nf3\n\n[Event \"b\"]\n\nd4 d5\n";
    std::string bytes[2][2];
    Strings notices[2];
    mode_t modes[2][2] = {};
    // The spooled file becomes the library: with the mode a new file gets,
    // or the one of the library it replaces.
    const mode_t mask = ::umask(027);
    for (int spool = 0; spool < 2; ++spool) {
        options.spoolRecords = spool == 1;
        for (int stop = 0; stop < 2; ++stop) {
            fs::remove(Path());
            host = RecordingHost{};
            ASSERT_TRUE(Build(pgn));
            host.cancelAtCount = stop ? static_cast<int>(host.counts.size()) + 3 : 0;
            ASSERT_EQ(session.spool != nullptr, spool == 1);
            ASSERT_EQ(Write(), stop == 0);
            bytes[spool][stop] = ReadFile(Path());
            if (!stop) notices[spool] = host.notices;
            struct stat st {};
            ::stat(Path().c_str(), &st);
            modes[spool][stop] = st.st_mode & 07777;
            if (stop) {
                ::chmod(Path().c_str(), 0604);
                host = RecordingHost{};
                ASSERT_TRUE(Build(pgn) && Write());
                ::stat(Path().c_str(), &st);
                EXPECT_EQ(st.st_mode & 07777, 0604u);
            }
        }
    }
    ::umask(mask);
    EXPECT_EQ(modes[1][0], 0640u);
    EXPECT_EQ(modes[0][0], modes[1][0]);
    for (const auto& entry : fs::directory_iterator(dir.str()))
        EXPECT_FALSE(entry.path().filename().string().starts_with(".vantrel.")) << entry.path();
    EXPECT_EQ(notices[1], (Strings{"The comment of record 1 has 70015 bytes: cut to the 65535 that a library can hold"}));
    EXPECT_EQ(notices[0], notices[1]);
    EXPECT_EQ(bytes[0][0], bytes[1][0]);
    EXPECT_EQ(bytes[0][1], bytes[1][1]);
    EXPECT_LT(bytes[1][1].size(), bytes[1][0].size());
}

// From a game file to a library and back: the loaded tree holds a node for
// each record, and every position the generator played.
TEST_F(WriteLibraryTest, MadeUpGamesRoundTripWithEveryPosition) {
    // Long games with castling, promotions, en passant and disambiguated
    // moves, comments, marks and codes.
    gen::Rng rng(7);
    std::string pgn = "Made-up games.\n\n";
    std::vector<gen::Game> games;
    for (int g = 1; g <= 120; ++g) {
        games.push_back(gen::PlayGame(rng, 60 + static_cast<int>(rng.Below(60))));
        gen::AppendPgn(pgn, "Game " + std::to_string(g), "W", "B", games.back(), rng, true);
    }
    ASSERT_TRUE(Build(pgn) && Write());
    ASSERT_TRUE(host.Silent() && host.fixCalls.empty());
    library::LibraryContents contents;
    ASSERT_EQ(library::LoadLibrary(Path(), contents), library::LoadResult::Ok);
    EXPECT_EQ(contents.header.LibRemarks, "Made-up games.\r\n\r\n");
    ASSERT_EQ(contents.tree.Count(), static_cast<int>(Rows().size()));
    EXPECT_EQ(contents.header.RecCount, contents.tree.Count());
    // Each game's line runs down the tree, every node with the generator's position.
    for (size_t g = 0; g < games.size(); ++g) {
        const std::vector<int>* level = &contents.tree.TopLevel();
        for (size_t i = 0; i < games[g].moves.size(); ++i) {
            std::string move = games[g].moves[i];
            while (!move.empty() && (move.back() == '+' || move.back() == '#')) move.pop_back();
            if (move == "O-O" || move == "O-O-O") move = move == "O-O" ? "o-o" : "o-o-o";
            const auto found = std::find_if(level->begin(), level->end(), [&](int child) {
                const std::string& text = contents.tree.Node(child).Text;
                return text == move || text.rfind(move + ": ", 0) == 0;
            });
            ASSERT_NE(found, level->end()) << "game " << g + 1 << ": ply " << i + 1 << " " << move;
            ASSERT_EQ(contents.tree.Node(*found).Tag, games[g].layouts[i]) << "game " << g + 1 << ": ply " << i + 1;
            level = &contents.tree.Node(*found).children;
        }
    }
}

}  // namespace
}  // namespace vantrel::storetest
