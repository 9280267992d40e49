// vantrel-cli as a user runs it: import with --repair and --plies, export and
// import again, find, print, and the exit status of each. Where the program
// keeps its files: beside itself when it may write there, otherwise in the
// user's folder, with the working database copied in once.
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include <cstdio>
#include <string_view>

#include "import/program_dir.h"
#include "library/loader.h"
#include "library/text.h"
#include "store_test_support.h"

namespace vantrel::storetest {
namespace {

struct Ran { int status; std::string out, err; };

class CliTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(import::CreateDatabaseFromSchema(dir / "Tessimo.mdb", VANTREL_SCHEMA, &error)) << error;
    }
    Ran Cli(const std::string& args, const std::string& program = VANTREL_CLI) {
        Ran ran{-1, {}, {}};
        FILE* pipe = ::popen((program + " " + args + " 2>" + (dir / "err")).c_str(), "r");
        char buffer[4096];
        for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) ran.out.append(buffer, n);
        const int wait = ::pclose(pipe);
        ran.status = WIFEXITED(wait) ? WEXITSTATUS(wait) : -1;
        ran.err = ReadFile(dir / "err");
        return ran;
    }
    // Imports the text into NAME.vnb in the test's folder.
    Ran Import(const std::string& name, const std::string& text, const std::string& options = "") {
        WriteFile(dir / (name + ".pgn"), text);
        return Cli("import " + (dir / (name + ".pgn")) + " --name " + name + " --out-dir " + dir.str() + " --db " +
                   (dir / "Tessimo.mdb") + " --overwrite " + options);
    }
    std::string Lib(const std::string& name) { return dir / (name + ".vnb"); }
    // info --nodes without the comments.
    std::string Nodes(const std::string& name) {
        std::string out;
        std::istringstream lines(Cli("info " + Lib(name) + " --nodes").out);
        for (std::string line; std::getline(lines, line);) out += line.substr(0, line.rfind('\t')) + "\n";
        return out;
    }
    TempDir dir;
};

TEST_F(CliTest, ExportOfTheSampleAndOfManyGamesPerBranchImportsToTheSameTree) {
    std::string pgn = ReadFile((fs::path(VANTREL_SCHEMA).parent_path() / "sample-openings.pgn").string());
    gen::Rng rng(11);
    std::vector<gen::Game> games;
    for (int g = 1; g <= 80; ++g) {
        games.push_back(gen::PlayGame(rng, 10 + static_cast<int>(rng.Below(30))));
        gen::AppendPgn(pgn, "Game " + std::to_string(g), "W", "B", games.back(), rng, true);
    }
    gen::AppendPgn(pgn, "Again", "W", "B", games.front(), rng, false);  // adds nothing
    const gen::Game longer = gen::PlayGame(rng, 40);  // a game that goes on where the one before ends
    gen::Game shorter = longer;
    shorter.moves.resize(20);
    gen::AppendPgn(pgn, "Shorter", "W", "B", shorter, rng, false);
    gen::AppendPgn(pgn, "Longer", "W", "B", longer, rng, false);
    ASSERT_EQ(Import("Made", pgn).status, 0);
    ASSERT_EQ(Cli("export " + Lib("Made") + " -o " + (dir / "export.pgn")).status, 0);
    ASSERT_EQ(Import("Back", ReadFile(dir / "export.pgn"), "--tags Event").status, 0);
    const std::string nodes = Nodes("Made");
    EXPECT_EQ(Nodes("Back"), nodes);
    EXPECT_GT(std::count(nodes.begin(), nodes.end(), '\n'), 1000);
}

TEST_F(CliTest, RepairStoresTheMoveTheRulesAllow) {
    const std::string game = "[Event \"French\"]\n\n1. e4 e6 2. d4 d5 3. Nc3 Bb4 4. Ne2 dxe4 5. a3 Bxc3+!? 6. Nxc3\n";
    Ran ran = Import("Plain", game);
    EXPECT_EQ(ran.err, "game 1 (French), ply 7, move Ne2: ambiguous; rest of the game skipped\n");
    EXPECT_NE(ran.out.find("6 records from 1 games; unresolved moves: 1\n"), std::string::npos) << ran.out;
    ran = Import("Mended", game, "--repair");
    EXPECT_EQ(ran.err, "");
    EXPECT_NE(ran.out.find("11 records from 1 games; unresolved moves: 0; repaired moves: 2\n"), std::string::npos);
    const std::string nodes = Nodes("Mended");
    EXPECT_NE(nodes.find("\tNge2\t"), std::string::npos);
    EXPECT_NE(nodes.find("\tBxc3\t"), std::string::npos);
}

TEST_F(CliTest, PliesKeepTheStartOfALongGameAndTellTheDepthThatFitsAWindow) {
    std::string moves;
    for (int i = 1; i <= 150; i += 2) moves += std::to_string(i) + ". Nf3 Nf6 " + std::to_string(i + 1) + ". Ng1 Ng8 ";
    const std::string game = "[Event \"Long\"]\n\n" + moves + "{after the cut} 1-0\n";
    Ran ran = Import("Long", game);
    EXPECT_EQ(ran.status, 1);
    EXPECT_NE(ran.err.find("Subscript out of range"), std::string::npos);
    ran = Import("Long", game, "--plies 40");
    EXPECT_EQ(ran.status, 0);
    EXPECT_NE(ran.out.find("40 records from 1 games; unresolved moves: 0\nFits a window: 40 nodes"), std::string::npos);
    const std::string last = Cli("info " + Lib("Long") + " --nodes").out;
    EXPECT_EQ(last.substr(last.rfind("\n", last.size() - 2) + 1),  // a position after Ng8, and no comment
              "40\t39\tpawn\tNg8\t" + std::string(chess::kInitialLayout) + "\t\n");
    EXPECT_EQ(Import("Long", game, "--plies 251").status, 2);
    gen::Rng rng(5);
    std::string pgn;
    for (int g = 1; g <= 420; ++g)
        gen::AppendPgn(pgn, "G" + std::to_string(g), "W", "B", gen::PlayGame(rng, 100), rng, false);
    ran = Import("Big", pgn, "--plies 100");
    ASSERT_EQ(ran.status, 0) << ran.err;
    const size_t at = ran.out.find("--plies ");
    ASSERT_NE(at, std::string::npos) << ran.out;
    const int fits = std::stoi(ran.out.substr(at + 8));
    EXPECT_NE(Import("Big", pgn, "--plies " + std::to_string(fits)).out.find("Fits a window"), std::string::npos);
    EXPECT_NE(Import("Big", pgn, "--plies " + std::to_string(fits + 1)).out.find("Too large"), std::string::npos);
}

TEST_F(CliTest, EveryPackingGivesTheSameLibraryAndADamagedOneFailsByName) {
    gen::Rng rng(17);
    std::string first, second;  // the halves of the file, for the entries of a zip
    for (int g = 1; g <= 60; ++g)
        gen::AppendPgn(g <= 30 ? first : second, "G" + std::to_string(g), "W", "B", gen::PlayGame(rng, 30), rng, true);
    const std::string file = dir / "games";
    const auto import = [&] {
        return Cli("import " + file + " --name Packed --out-dir " + dir.str() + " --db " + (dir / "Tessimo.mdb") +
                   " --overwrite");
    };
    WritePacked(file, "", {first + second});
    ASSERT_EQ(import().status, 0);
    const std::string library = ReadFile(Lib("Packed"));
    for (const char* how : {"gzip", "bzip2", "xz", "zstd", "zip"}) {
        WritePacked(file, how, how == std::string("zip") ? Strings{first, second} : Strings{first + second});
        EXPECT_EQ(import().status, 0) << how;
        EXPECT_EQ(ReadFile(Lib("Packed")), library) << how;
    }
    // Cut short, an archive fails the import, named; the library stays as it was.
    for (const char* how : {"gzip", "zip"}) {
        WritePacked(file, how, {first + second});
        WriteFile(file, ReadFile(file).substr(0, first.size() / 2));
        const Ran ran = import();
        EXPECT_EQ(ran.status, 1) << how;
        EXPECT_NE(ran.err.find("Couldn't read " + file + ": "), std::string::npos) << ran.err;
        EXPECT_EQ(ReadFile(Lib("Packed")), library) << how;
    }
}

TEST_F(CliTest, TagsOfAnyNameMakeTheNamesInTheListsOrder) {
    const std::string games =
        "[ECO \"B90\"]\n[Opening \"Sicilian\"]\n[Variation \"Najdorf\"]\n\n1. e4 c5 *\n\n"
        "[eco \"C00\"]\n[OPENING \"French defence\"]\n\n1. e4 e6 *\n\n[White \"W\"]\n[Event \"E\"]\n[ECO \"A00\"]\n\n1. b4 *\n";
    // The seven alone keep the wizard's order.
    for (const auto& [tags, names] : {std::pair{"ECO,Opening,Variation", "B90 Sicilian Najdorf|C00 French defence|A00"},
                                      {"Variation,eco", "Najdorf B90|C00|A00"}, {"White,Event", "||E W"},
                                      {"White,Event,ECO", "B90|C00|W E A00"}}) {
        ASSERT_EQ(Import("Eco", games, std::string("--tags ") + tags).status, 0) << tags;
        std::string got = "-";
        std::istringstream lines(Nodes("Eco"));
        for (std::string line; std::getline(lines, line);) {  // index, parent, picture, text, layout
            std::istringstream fields(line);
            std::string field;
            for (int i = 0; i < 4; ++i) std::getline(fields, field, '\t');
            if (field != "c5") got += "|" + std::string(text::SplitNodeText(field).name());
        }
        EXPECT_EQ(got, "-|" + std::string(names)) << tags;
    }
    EXPECT_EQ(Import("Eco", games, "--tags ECO,,Opening").status, 2);
}

TEST_F(CliTest, FindListsEveryNodeOfAPosition) {
    ASSERT_EQ(Import("Two", "[Event \"a\"]\n\n1. e4 e5 2. Nf3 Nc6\n\n[Event \"b\"]\n\n1. Nf3 Nc6 2. e4 e5\n").status,
              0);
    const std::string find = "find " + Lib("Two"), both = "4 e4 e5 Nf3 Nc6\n8 Nf3 Nc6 e4 e5\n";
    EXPECT_EQ(Cli(find + " --fen \"r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq - 2 3\"").out, both);
    EXPECT_EQ(Cli(find + " --layout RNBQKB0RPPPP0PPP00000N000000P0000000p00000n00000pppp0pppr0bqkbnr").out, both);
    const Ran none = Cli(find + " --fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR");
    EXPECT_EQ(std::to_string(none.status) + " " + none.err, "1 No match found\n");
    const Ran bad = Cli(find + " --fen rnbqkbnr/ppp");
    EXPECT_EQ(bad.status, 2);
    EXPECT_EQ(bad.err.rfind("vantrel-cli: not a FEN position: rank 7 doesn't hold 8 squares\n", 0), 0u);
}

TEST_F(CliTest, PrintGivesThePagesOfTheMovesList) {
    std::string comment;
    for (int i = 0; i < 120; ++i) comment += "a comment long enough to be wrapped ";
    ASSERT_EQ(Import("Line", "[Event \"Italian\"]\n\n1. e4 e5 2. Nf3 {" + comment + "} Nc6\n", "--tags Event").status,
              0);
    const Ran ran = Cli("print " + Lib("Line") + " --node 4");
    EXPECT_EQ(ran.status, 0);
    const std::string head = "Vantrel - Print Moves List           Page ";
    const std::string start = head + "1\n" + std::string(56, '=') +
                              "\n\n\n Italian\n\n  1. e4              : Italian\n\n\n[Event \"Italian\"]\n\n\n"
                              "  1. .....   e5   \n  2. Nf3  \n\na comment long enough to be wrapped a comment long enough to be\n";
    EXPECT_EQ(ran.out.substr(0, start.size()), start);
    EXPECT_EQ(std::count(ran.out.begin(), ran.out.end(), '\f'), 1);
    EXPECT_EQ(ran.out.substr(ran.out.find('\f') + 1, head.size() + 2), head + "2\n");
    EXPECT_EQ(ran.out.substr(ran.out.size() - 21), "\n\n  2. .....   Nc6  \n");
    EXPECT_EQ(Cli("print " + Lib("Line") + " --node 5").status, 1);
    // Usage errors, help and unreadable libraries.
    for (const auto& [args, status] : {std::pair{"", 2}, {"bogus", 2}, {"find x.vnb", 2}, {"print x.vnb --node none", 2},
                                       {"export x.vnb -x y", 2}, {"--help", 0}, {"import --help", 0}})
        EXPECT_EQ(Cli(args).status, status) << args;
    const Ran missing = Cli("export " + Lib("missing"));
    EXPECT_EQ(std::to_string(missing.status) + " " + missing.err, "1 Problem loading library " + Lib("missing") + "\n");
}

TEST_F(CliTest, VersionAndAMissingValue) {
    EXPECT_EQ(Cli("--version").out, "vantrel-cli " VANTREL_VERSION "\n");
#ifdef VANTREL_PROGRAM
    EXPECT_EQ(Cli("--version", VANTREL_PROGRAM).out, "vantrel " VANTREL_VERSION "\n");
#endif
    const Ran ran = Cli("import x.pgn --name");
    EXPECT_EQ(std::to_string(ran.status) + " " + ran.err.substr(0, ran.err.find('\n')),
              "2 vantrel-cli: --name needs a value");
}

TEST_F(CliTest, FaultsLeaveTheUsersFilesAndSayWhatHappened) {
    const std::string games = "[Event \"a\"]\n\n1. e4 e5\n";
    ASSERT_EQ(Import("Old", games).status, 0);
    const std::string old = ReadFile(Lib("Old"));
    // Output that can't be what it says fails, and the library stays.
    EXPECT_EQ(Cli("export " + Lib("Old") + " -o " + Lib("Old")).status, 1);
    EXPECT_EQ(Cli("info " + Lib("Old") + " >/dev/full").status, 1);
    EXPECT_EQ(ReadFile(Lib("Old")), old);
    // A FIFO no one writes is refused at once, as library and as games.
    ASSERT_EQ(::mkfifo((dir / "fifo").c_str(), 0600), 0);
    EXPECT_EQ(Cli("info " + dir / "fifo").status, 1);
    const Ran fifo = Cli("import " + dir / "fifo" + " --name F --out-dir " + dir.str() + " --db " + dir / "Tessimo.mdb");
    EXPECT_EQ(std::to_string(fifo.status) + " " + fifo.err, "1 Couldn't open " + dir / "fifo" + ": not a plain file\n");
    // Names that would be paths or hidden files.
    for (const char* name : {"sub/L", "../L", ".", "..."}) EXPECT_EQ(Import(name, games).status, 2) << name;
    // --overwrite refuses a library the user may not write (a link is followed: see the store's tests).
    fs::permissions(Lib("Old"), fs::perms::owner_read);
    EXPECT_EQ(Import("Old", "[Event \"b\"]\n\n1. d4\n").status, 1);
    EXPECT_EQ(ReadFile(Lib("Old")), old);
    fs::permissions(Lib("Old"), fs::perms::owner_all);
    // An interrupt while the games are read, and one once the new library
    // is being written: the older library stays, and no temporary file.
    gen::Rng rng(9);
    std::string many;
    for (int g = 1; g <= 2000; ++g) gen::AppendPgn(many, "G" + std::to_string(g), "W", "B", gen::PlayGame(rng, 70), rng, false);
    WriteFile(dir / "many.pgn", many);
    // What an import that no interrupt stops writes, in a folder of its own.
    fs::create_directories(dir / "whole");
    ASSERT_EQ(Cli("import " + dir / "many.pgn" + " --name Old --out-dir " + dir / "whole" + " --db " +
                  dir / "Tessimo.mdb").status,
              0);
    const std::string whole = ReadFile(dir / "whole/Old.vnb");
    const auto writing = [&] {
        for (const auto& entry : fs::directory_iterator(dir.str()))
            if (entry.path().filename().string().starts_with(".vantrel.")) return true;
        return false;
    };
    // The new library's temporary file is seen the moment it gets its name,
    // however briefly it stands: the write takes only milliseconds.
    const auto writeBegins = [&](int watch) {
        alignas(inotify_event) char events[4096];
        for (;;) {
            pollfd ready{watch, POLLIN, 0};
            if (::poll(&ready, 1, 20000) != 1) return false;
            const ssize_t got = ::read(watch, events, sizeof events);
            for (ssize_t at = 0; at < got;) {
                const auto* event = reinterpret_cast<const inotify_event*>(events + at);
                if (event->len > 0 && std::string_view(event->name).starts_with(".vantrel.")) return true;
                at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            }
        }
    };
    for (const bool atTheWrite : {false, true}) {
        const int watch = ::inotify_init1(IN_CLOEXEC);
        ASSERT_GE(::inotify_add_watch(watch, dir.str().c_str(), IN_CREATE | IN_MOVED_TO), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            ::freopen("/dev/null", "w", stderr);
            ::execl(VANTREL_CLI, VANTREL_CLI, "import", (dir / "many.pgn").c_str(), "--name", "Old", "--out-dir",
                    dir.str().c_str(), "--db", (dir / "Tessimo.mdb").c_str(), "--overwrite", nullptr);
            ::_exit(127);
        }
        if (atTheWrite)
            EXPECT_TRUE(writeBegins(watch));
        else
            ::usleep(100000);
        ::close(watch);
        ::kill(child, SIGINT);
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_FALSE(writing());
        // The write takes milliseconds: on a busy machine the interrupt may
        // come only once the new library is in place, and then it stands
        // whole. Otherwise the older one stays.
        if (atTheWrite && WIFEXITED(status) && WEXITSTATUS(status) == 0) {
            EXPECT_EQ(ReadFile(Lib("Old")), whole);
            continue;
        }
        EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 1) << status;
        EXPECT_EQ(ReadFile(Lib("Old")), old) << atTheWrite;
    }
}

std::string Put(const std::string& file, const std::string& text = "empty") {
    fs::create_directories(fs::path(file).parent_path());
    WriteFile(file, text);
    return file;
}

TEST(ProgramFolders, BesideTheProgramOrInTheUsersFolder) {
    TempDir t;
    Put(t / "build/bin/Tessimo.mdb");
    Put(t / "usr/share/vantrel/Tessimo.mdb");
    const std::string home = t / "home", user = home + "/.local/share/Vantrel";
    const auto resolve = [&](const std::string& exe, const std::string& xdg, const std::string& h) {
        const install::ProgramFolders f = install::ResolveProgramFolders(t / exe, xdg, h);
        return f.programDir + "|" + f.dataDir + "|" + f.error;
    };
    EXPECT_EQ(resolve("build/bin", "", home), t / "build/bin|" + t / "build/bin|");
    EXPECT_EQ(resolve("usr/bin", "", home), user + "|" + t / "usr/share/vantrel|");
    EXPECT_EQ(ReadFile(user + "/Tessimo.mdb"), "empty");
    Put(user + "/Tessimo.mdb", "used");
    EXPECT_EQ(resolve("usr/bin", "relative", home), user + "|" + t / "usr/share/vantrel|");
    EXPECT_EQ(ReadFile(user + "/Tessimo.mdb"), "used") << "the user's copy stays";
    EXPECT_EQ(resolve("usr/bin", t / "xdg", home), t / "xdg/Vantrel|" + t / "usr/share/vantrel|");
    EXPECT_EQ(resolve("usr/bin", "", Put(t / "file")),
              t / "file/.local/share/Vantrel|" + t / "usr/share/vantrel|The folder " + t / "file/.local/share/Vantrel" +
                  " could not be made: Not a directory.");
    fs::create_directories(t / "broken/share/vantrel/Tessimo.mdb");  // not a file: the copy fails
    EXPECT_NE(resolve("broken/bin", "", t / "h2").find("|The working database could not be copied from " +
                                                       t / "broken/share/vantrel/Tessimo.mdb to "),
              std::string::npos);
}

}  // namespace
}  // namespace vantrel::storetest
