// The machine under an import: another program holding the working
// database, a full disk, folders where files should be, a library name
// outside the code page. Real SQLite and the real file system throughout.
#include <sqlite3.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

#include "library/loader.h"
#include "store_test_support.h"

namespace vantrel::storetest {
namespace {

std::string ManyGames(int games) {
    gen::Rng rng(7);
    std::string text;
    for (int g = 1; g <= games; ++g)
        gen::AppendPgn(text, "Game " + std::to_string(g), "W", "B", gen::PlayGame(rng, 60), rng, false);
    return text;
}

class StoreFaultTest : public StoreTest {
protected:
    bool Import(const std::string& text) {
        host = RecordingHost{};
        return Build(text) && Write();
    }
    size_t FilesIn(const std::string& folder) { return std::distance(fs::directory_iterator(folder), {}); }
};

// A tmpfs of 512 KB mounted on a folder; Fill leaves about `room` bytes free.
struct SmallDisk {
    explicit SmallDisk(const std::string& path, const char* size = "size=512k") : path(path) {
        fs::create_directories(path);
        mounted = ::mount("tmpfs", path.c_str(), "tmpfs", 0, size) == 0;
    }
    ~SmallDisk() {
        if (mounted) ::umount2(path.c_str(), MNT_DETACH);
    }
    void Fill(size_t room) {
        const size_t free = fs::space(path).available;
        WriteFile(path + "/filler", std::string(free > room ? free - room : 0, 'x'));
    }
    std::string path;
    bool mounted = false;
};

TEST_F(StoreFaultTest, ACommitThatFailsEndsTheImportWithTheEnginesMessage) {
    const auto fresh = fs::file_size(DbPath());
    ASSERT_TRUE(Import("[Event \"first\"]\n\ne4 e5\n"));
    const std::string before = ReadFile(import::LibraryPath(options));
    // Another program starts reading the database while the import runs, so
    // the import can't commit: it fails, and claims no records.
    sqlite3* reader = nullptr;
    host = RecordingHost{};
    host.onGame = [&](int32_t number) {
        if (number == 1) {
            ASSERT_EQ(sqlite3_open(DbPath().c_str(), &reader), SQLITE_OK);
            ASSERT_EQ(sqlite3_exec(reader, "BEGIN; SELECT COUNT(*) FROM Moves;", nullptr, nullptr, nullptr), SQLITE_OK);
        }
    };
    EXPECT_FALSE(Build("[Event \"second\"]\n\nd4 d5 c4\n"));
    EXPECT_EQ(host.errors, (Errors{{"database is locked", SQLITE_BUSY}}));
    sqlite3_exec(reader, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(reader);
    EXPECT_EQ(ReadFile(import::LibraryPath(options)), before);
    // The database is usable again at once, and holds no more room than
    // the last import needs.
    ASSERT_TRUE(Import(ManyGames(40)));
    ASSERT_GT(fs::file_size(DbPath()), fresh);
    ASSERT_TRUE(Import("[Event \"third\"]\n\nc4\n"));
    EXPECT_EQ(Briefs(Rows()), (Strings{"1<0 c4 (c4: third) *"}));
    EXPECT_EQ(fs::file_size(DbPath()), fresh);
}

// Batches written behind on a thread of their own fail after the game that
// handed them over has been played: the failure is told as it is when the
// batch is written in place, in that game.
TEST_F(StoreFaultTest, ABatchThatFailsBehindIsToldInTheGameThatHandedItOver) {
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(DbPath().c_str(), &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db,
                           "CREATE TRIGGER Full BEFORE INSERT ON Moves WHEN NEW.\"index\" = 9000 "
                           "BEGIN SELECT RAISE(ABORT, 'no room for 9000'); END",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(db);
    const std::string games = ManyGames(400);  // more than two batches of records
    std::vector<std::string> told;
    for (const bool behind : {false, true}) {
        options.writeBehind = options.readAhead = behind;
        host = RecordingHost{};
        EXPECT_FALSE(Build(games));
        ASSERT_EQ(host.errors.size(), 1u);
        EXPECT_EQ(host.errors[0].first, "no room for 9000");
        told.push_back(host.failedIn);
    }
    EXPECT_NE(told[0], "");
    EXPECT_EQ(told[1], told[0]);
}

TEST_F(StoreFaultTest, AFullDiskIsToldAsDiskFullAndTheOlderLibraryStays) {
    SmallDisk disk(dir / "disk");
    // Root (as in CI) can always mount one; anyone else can't.
    if (!disk.mounted && ::geteuid() != 0) GTEST_SKIP() << "mounting a tmpfs needs root";
    ASSERT_TRUE(disk.mounted) << "no tmpfs could be mounted";
    // The library doesn't fit: the one that stood there before stays whole.
    options.databasePath = DbPath();
    options.programDir = dir / "disk";
    ASSERT_TRUE(Import("[Event \"old\"]\n\ne4 e5\n"));
    const std::string path = import::LibraryPath(options);
    const std::string before = ReadFile(path);
    disk.Fill(16 * 1024);
    EXPECT_FALSE(Import(ManyGames(8)));
    EXPECT_EQ(host.errors, (Errors{{"Disk full", 61}}));
    EXPECT_EQ(ReadFile(path), before);
    EXPECT_EQ(FilesIn(dir / "disk"), 2u);  // the library and the filler: no temporary file
    // The working database can't grow: the import ends the same way.
    fs::remove(dir / "disk/filler");
    fs::copy_file(DbPath(), dir / "disk/Tessimo.mdb");
    options.databasePath = dir / "disk/Tessimo.mdb";
    disk.Fill(8 * 1024);
    EXPECT_FALSE(Import(ManyGames(8)));
    EXPECT_EQ(host.errors, (Errors{{"Disk full", 61}}));
}

TEST_F(StoreFaultTest, TwoImportsOnOneDatabaseAndAProgramThatHoldsIt) {
    // The first import holds the database from its emptying to its library's
    // last record: a second one in between is refused as busy and changes
    // nothing, and the first writes its own tree.
    ASSERT_TRUE(Build("[Event \"first\"]\n\ne4 e5\n"));
    {
        RecordingHost other;
        import::ImportSession second;
        import::ImportOptions secondOptions = options;
        secondOptions.bookName = "Other";
        EXPECT_FALSE(import::BuildTree(secondOptions, other, second));
        EXPECT_EQ(other.errors, (Errors{{"database is locked", SQLITE_BUSY}}));
        EXPECT_FALSE(import::WriteLibrary(secondOptions, other, second));
        EXPECT_FALSE(fs::exists(dir / "Other.vnb"));
    }
    ASSERT_TRUE(Write());
    library::LibraryContents contents;
    ASSERT_EQ(library::LoadLibrary(import::LibraryPath(options), contents), library::LoadResult::Ok);
    EXPECT_EQ(contents.tree.FullPath(2), "e4: first\\e5");
    // Another program that holds the file: the engine's own words, not
    // those of a missing database.
    sqlite3* holder = nullptr;
    ASSERT_EQ(sqlite3_open(DbPath().c_str(), &holder), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(holder, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    host = RecordingHost{};
    EXPECT_FALSE(Build("[Event \"x\"]\n\nd4\n"));
    EXPECT_EQ(host.errors, (Errors{{"database is locked", SQLITE_BUSY}}));
    EXPECT_EQ(host.messages, Messages{});
    sqlite3_close(holder);
}

TEST_F(StoreFaultTest, EmptyingNeedsRoomOnlyForWhatStaysAndSurvivesAKillAtAnyMoment) {
    SmallDisk disk(dir / "disk", "size=4m");
    if (!disk.mounted && ::geteuid() != 0) GTEST_SKIP() << "mounting a tmpfs needs root";
    ASSERT_TRUE(disk.mounted) << "no tmpfs could be mounted";
    options.databasePath = dir / "disk/Tessimo.mdb";
    fs::copy_file(DbPath(), options.databasePath);
    const auto fresh = fs::file_size(options.databasePath);
    ASSERT_TRUE(Import(ManyGames(150)));
    ASSERT_GT(fs::file_size(options.databasePath), 4 * fresh);
    disk.Fill(fresh + 64 * 1024);
    EXPECT_TRUE(Import("[Event \"small\"]\n\ne4\n")) << (host.errors.empty() ? "" : host.errors[0].first);
    EXPECT_EQ(fs::file_size(options.databasePath), fresh);
    fs::remove(dir / "disk/filler");
    // Killed at random moments of the import, the database stays sound and
    // the next import runs.
    std::mt19937 random(5);
    for (int round = 0; round < 12; ++round) {
        WriteFile(options.inFile, ManyGames(60));
        const pid_t child = ::fork();
        if (child == 0) {
            RecordingHost quiet;
            import::ImportSession own;
            ::_exit(import::BuildTree(options, quiet, own) && import::WriteLibrary(options, quiet, own) ? 0 : 1);
        }
        ::usleep(std::uniform_int_distribution<unsigned>(0, 60000)(random));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        sqlite3* check = nullptr;
        ASSERT_EQ(sqlite3_open(options.databasePath.c_str(), &check), SQLITE_OK);
        std::string verdict;
        sqlite3_exec(check, "PRAGMA integrity_check", [](void* out, int, char** values, char**) {
            *static_cast<std::string*>(out) += values[0] ? values[0] : "";
            return 0;
        }, &verdict, nullptr);
        sqlite3_close(check);
        ASSERT_EQ(verdict, "ok") << "round " << round;
    }
    EXPECT_TRUE(Import("[Event \"after\"]\n\nc4\n"));
    EXPECT_EQ(Briefs(Db(options.databasePath).Rows()), (Strings{"1<0 c4 (c4: after) *"}));
}

TEST_F(StoreFaultTest, AReplacedFileFollowsItsLinkKeepsWhatMayNotBeWrittenAndLeavesNoTemporaryBehind) {
    const auto replace = [](const std::string& path, const std::string& text) {
        library::AtomicFile file;
        return file.Open(path) && file.Write(text) && file.Close();
    };
    WriteFile(dir / "target", "old");
    fs::create_symlink("target", dir / "link");
    ASSERT_TRUE(replace(dir / "link", "new"));
    EXPECT_TRUE(fs::is_symlink(dir / "link"));
    EXPECT_EQ(ReadFile(dir / "target"), "new");
    fs::permissions(dir / "target", fs::perms::owner_read);
    library::AtomicFile refused;
    EXPECT_FALSE(refused.Open(dir / "link"));
    EXPECT_EQ(refused.Error(), EACCES);
    EXPECT_EQ(ReadFile(dir / "target"), "new");
    // Temporary files of writers that died go; a running writer's stay, and
    // so do files that only look alike. A name as long as a file name may
    // be still gets a temporary file.
    const pid_t dead = ::fork();
    if (dead == 0) ::_exit(0);
    ::waitpid(dead, nullptr, 0);
    const std::string d = std::to_string(dead);
    const Strings left = {".vantrel." + d + "-1.tmp", ".L.vnb." + d + "-2.tmp", ".vantrel.1-1.tmp",
                          ".notes." + d + "-1.tmp", "L.vnb"};
    for (const std::string& name : left) WriteFile(dir / name, "x");
    ASSERT_TRUE(replace(dir / std::string(255, 'n'), "long"));
    Strings names;
    for (const auto& entry : fs::directory_iterator(dir.str())) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (Strings{".notes." + d + "-1.tmp", ".vantrel.1-1.tmp", "L.vnb", "Tessimo.mdb", "link",
                              std::string(255, 'n'), "target"}));
}

TEST_F(StoreFaultTest, FoldersWhereFilesShouldBe) {
    // As a library to open, and as the file to import.
    library::LibraryContents contents;
    EXPECT_EQ(library::LoadLibrary(dir.str(), contents), library::LoadResult::Problem);
    EXPECT_EQ(library::LoadLibrary("/dev/zero", contents), library::LoadResult::Problem);
    // A FIFO no program writes is refused at once, as a library and as games.
    ASSERT_EQ(::mkfifo((dir / "fifo").c_str(), 0600), 0);
    EXPECT_EQ(library::LoadLibrary(dir / "fifo", contents), library::LoadResult::Problem);
    options.inFile = dir / "fifo";
    EXPECT_FALSE(import::BuildTree(options, host, session));
    options.inFile = dir / "games.pgn";
    fs::create_directories(options.inFile);
    EXPECT_FALSE(import::BuildTree(options, host, session));
    EXPECT_EQ(host.messages,
              (Messages{{"Couldn't open " + dir / "fifo", ""}, {"Couldn't open " + options.inFile, ""}}));
    // Where the library would go: the folder stays, and the user is told why.
    fs::remove(options.inFile);
    fs::create_directories(dir / "Demo.vnb");
    EXPECT_FALSE(Import("[Event \"a\"]\n\ne4\n"));
    EXPECT_EQ(host.messages, Messages{});
    EXPECT_EQ(host.errors, (Errors{{"Couldn't write Demo.vnb: Is a directory", 75}}));
    EXPECT_TRUE(fs::is_directory(dir / "Demo.vnb"));
}

TEST_F(StoreFaultTest, LibraryNamesAreTrimmedAndTheFileNameKeepsTheirSpelling) {
    // An apostrophe passes; a name from the wizard in Windows-1252 stays so in the file and is UTF-8 in
    // the file name; two names alike once cut down to Windows-1252 still make two files.
    const std::tuple<const char*, const char*, const char*, const char*> names[] = {
        {"", "  O'Kelly's lines  ", "O'Kelly's lines", "O'Kelly's lines"}, {"", "Caf\xE9", "Caf\xC3\xA9", "Caf\xE9"},
        {"", " \tTabs stay\t ", "\tTabs stay\t", "\tTabs stay\t"},  // blanks only are trimmed
        {"Дебюты Ωmega", "?????? ?mega", "Дебюты Ωmega", "?????? ?mega"},
        {"Партии Ωmega", "?????? ?mega", "Партии Ωmega", "?????? ?mega"}};
    for (const auto& [file, name, fileName, book] : names) {
        options.libraryFile = file;
        options.bookName = name;
        ASSERT_TRUE(Import("[Event \"a\"]\n\ne4 e5\n"));
        EXPECT_EQ(import::LibraryPath(options), dir / (std::string(fileName) + ".vnb"));
        library::LibraryContents contents;
        ASSERT_EQ(library::LoadLibrary(import::LibraryPath(options), contents), library::LoadResult::Ok);
        EXPECT_EQ(contents.header.book + "|" + std::to_string(contents.tree.Count()), book + std::string("|2"));
    }
    EXPECT_EQ(FilesIn(dir.str()), 7u);  // database, game file, five libraries
    // A name is a file's in the program's folder, never a path, nor made of
    // dots alone, and it fits a file name.
    for (const std::string& bad : Strings{"sub/L", "../escaped", ".", "...", std::string(252, 'n')}) {
        options.libraryFile = options.bookName = bad;
        host = RecordingHost{};
        EXPECT_TRUE(Build("[Event \"a\"]\n\ne4\n"));
        EXPECT_FALSE(Write());
        EXPECT_EQ(host.messages.size(), 1u) << bad;
    }
    EXPECT_EQ(FilesIn(dir.str()), 7u);
    EXPECT_EQ(import::LibraryNameProblem(std::string(251, 'n')), "");
}

}  // namespace
}  // namespace vantrel::storetest
