// vantrel-cli: the import without windows, and a look into a library.
//
//   vantrel-cli import FILE --name NAME [--san [--start S] [--end E]]
//               [--tags Event,Site,Date,Round,White,Black,Result]
//               [--keep-question-marks] [--out-dir DIR] [--db PATH] [--overwrite]
//   vantrel-cli info LIB
//
// A move that can't be resolved is reported on stderr and the rest of its
// game is skipped; nothing ever waits for an answer.
#include <unistd.h>

#include <array>
#include <cctype>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "chess/resolver.h"
#include "import/program_dir.h"
#include "import/tree_store.h"
#include "library/format.h"
#include "library/loader.h"
#include "library/text_codec.h"

namespace {

using namespace vantrel;
namespace fs = std::filesystem;

volatile std::sig_atomic_t gInterrupted = 0;

void OnInterrupt(int) { gInterrupted = 1; }

// Library text is Windows-1252; the terminal wants UTF-8.
std::string Out(const std::string& cp1252) { return text::Cp1252ToUtf8(cp1252); }

int Usage() {
    std::fprintf(stderr,
                 "usage:\n"
                 "  vantrel-cli import FILE --name NAME [--san [--start S] [--end E]]\n"
                 "              [--tags Event,Site,Date,Round,White,Black,Result]\n"
                 "              [--keep-question-marks] [--out-dir DIR] [--db PATH] [--overwrite]\n"
                 "  vantrel-cli info LIB\n");
    return 2;
}

const char* ReasonText(int16_t code) {
    switch (code) {
        case chess::kAmbiguous: return "ambiguous";
        case chess::kIllegal: return "illegal";
        default: return "can't parse";
    }
}

class CliHost : public import::ImportHost {
public:
    explicit CliHost(bool overwrite) : overwrite_(overwrite) {}

    void ShowCount(const std::string&) override {}
    bool Running() const override { return gInterrupted == 0; }

    void GameRead(int32_t number, int16_t, const import::GameRecord& game) override {
        gameNumber_ = number;
        gameName_ = game.GameMoves[0];
    }

    int16_t AskFixMove(int16_t ply, int16_t, int16_t errorCode, import::GameRecord& game,
                       const chess::ImportBoard&) override {
        ++unresolved_;
        std::fprintf(stderr, "game %d (%s), ply %d, move %s: %s; rest of the game skipped\n", gameNumber_,
                     Out(gameName_).c_str(), ply, Out(game.GameMoves[ply]).c_str(), ReasonText(errorCode));
        return import::kFixSkip;
    }

    bool AskOverwrite(const std::string& text) override {
        if (!overwrite_) std::fprintf(stderr, "%s  Not overwritten (use --overwrite).\n", Out(text).c_str());
        return overwrite_;
    }

    void Message(const std::string& text, const std::string& title) override {
        if (title.empty())
            std::fprintf(stderr, "%s\n", Out(text).c_str());
        else
            std::fprintf(stderr, "%s: %s\n", Out(title).c_str(), Out(text).c_str());
    }

    void ShowError(const std::string& description, int number) override {
        std::fprintf(stderr, "The following Error occurred: %s (Number: %d)\n", Out(description).c_str(), number);
    }

    void Notice(const std::string& text) override { std::fprintf(stderr, "%s\n", Out(text).c_str()); }

    int32_t Games() const { return gameNumber_; }
    int Unresolved() const { return unresolved_; }

private:
    bool overwrite_;
    int32_t gameNumber_ = 0;
    std::string gameName_;
    int unresolved_ = 0;
};

bool ParseTags(const std::string& list, std::array<bool, 7>& tags) {
    static constexpr const char* kNames[7] = {"event", "site", "date", "round", "white", "black", "result"};
    tags.fill(false);
    size_t start = 0;
    while (start <= list.size()) {
        size_t comma = list.find(',', start);
        if (comma == std::string::npos) comma = list.size();
        std::string name = list.substr(start, comma - start);
        for (auto& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        bool known = false;
        for (int i = 0; i < 7; ++i)
            if (name == kNames[i]) tags[i] = known = true;
        if (!known) {
            std::fprintf(stderr, "vantrel-cli: unknown tag '%s'\n", name.c_str());
            return false;
        }
        start = comma + 1;
    }
    return true;
}

int Import(const std::vector<std::string>& args) {
    import::ImportOptions options;
    options.tags = {true, false, false, false, true, true, false};  // Event, White, Black
    bool overwrite = false;
    std::string outDir, dbPath;
    bool haveName = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        auto value = [&](std::string& into) {
            if (i + 1 >= args.size()) return false;
            into = args[++i];
            return true;
        };
        if (a == "--name") {
            if (!value(options.bookName)) return Usage();
            haveName = true;
        } else if (a == "--san") {
            options.pgn = false;
        } else if (a == "--start") {
            if (!value(options.commentStart)) return Usage();
        } else if (a == "--end") {
            if (!value(options.commentEnd)) return Usage();
        } else if (a == "--tags") {
            std::string list;
            if (!value(list) || !ParseTags(list, options.tags)) return Usage();
        } else if (a == "--keep-question-marks") {
            options.ignoreQuestion = false;
        } else if (a == "--out-dir") {
            if (!value(outDir)) return Usage();
        } else if (a == "--db") {
            if (!value(dbPath)) return Usage();
        } else if (a == "--overwrite") {
            overwrite = true;
        } else if (!a.empty() && a[0] == '-') {
            std::fprintf(stderr, "vantrel-cli: unknown option %s\n", a.c_str());
            return Usage();
        } else if (options.inFile.empty()) {
            options.inFile = a;
        } else {
            return Usage();
        }
    }
    if (options.inFile.empty() || !haveName) return Usage();
    if (options.pgn && options.commentStart == "//" && options.commentEnd == "//") {
        options.commentStart = "{";
        options.commentEnd = "}";
    }

    // Names on the command line come as UTF-8: the file keeps the name as
    // given, the library its 1252 form.
    options.libraryFile = options.bookName;
    options.bookName = text::AnyToCp1252(options.bookName);
    // The program's folder: beside the executable, or the user's own when installed.
    const install::ProgramFolders folders = install::ResolveProgramFolders();
    if (!folders.error.empty() && (outDir.empty() || dbPath.empty())) {
        std::fprintf(stderr, "vantrel-cli: %s\n", folders.error.c_str());
        return 1;
    }
    options.programDir = outDir.empty() ? folders.programDir : outDir;
    options.databasePath = dbPath.empty() ? folders.programDir + "/Tessimo.mdb" : dbPath;

    std::signal(SIGINT, OnInterrupt);
    CliHost host(overwrite);
    import::ImportSession session;
    if (!import::BuildTree(options, host, session)) {
        std::fprintf(stderr, "%s\n", gInterrupted ? "Import cancelled by user" : "Couldn't parse moves list");
        return 1;
    }
    if (!import::WriteLibrary(options, host, session)) {
        std::string name = options.bookName;
        std::fprintf(stderr, "Couldn't create library '%s.vnb'\n", Out(name).c_str());
        return 1;
    }
    std::printf("%s\n%d records from %d games; unresolved moves: %d\n", import::LibraryPath(options).c_str(),
                session.recordCount, host.Games(), host.Unresolved());
    return 0;
}

std::string FirstLine(const std::string& s) {
    const size_t cut = s.find_first_of("\r\n");
    return cut == std::string::npos ? s : s.substr(0, cut) + " ...";
}

int Info(const std::string& path) {
    library::LibraryReader reader;
    if (!reader.Open(path)) {
        std::fprintf(stderr, "Problem loading library %s\n", path.c_str());
        return 1;
    }
    library::LibraryHeader header;
    reader.ReadHeader(header);
    if (header.version != 1) {
        std::fprintf(stderr, "Not a valid Vantrel library\n");
        return 1;
    }
    std::printf("Library:    %s\n", Out(header.book).c_str());
    std::printf("Version:    %d\n", header.version);
    std::printf("RecCount:   %d\n", header.RecCount);
    std::printf("MinIndex:   %d\n", header.MinIndex);
    std::printf("MaxIndex:   %d\n", header.MaxIndex);
    std::printf("Remarks:    %s\n", Out(FirstLine(header.LibRemarks)).c_str());

    constexpr int kShown = 12;
    int64_t nodes = 0, games = 0, topLevel = 0;
    std::vector<library::LibraryNodeRecord> first;
    library::LibraryNodeRecord record;
    while (reader.ReadRecord(record)) {
        ++nodes;
        if (library::ChooseImage(record) == library::NodeImage::Board) ++games;
        if (record.parent == 0) ++topLevel;
        if (first.size() < kShown) first.push_back(record);
    }
    std::printf("Nodes:      %lld\n", static_cast<long long>(nodes));
    std::printf("Games:      %lld\n", static_cast<long long>(games));
    std::printf("First moves: %lld\n", static_cast<long long>(topLevel));

    library::LibraryContents contents;
    const library::LoadResult loaded = library::LoadLibrary(path, contents);
    std::printf("Opens in Vantrel: %s\n", loaded == library::LoadResult::Ok ? "yes" : "no");

    std::printf("First nodes:\n");
    for (const auto& r : first) {
        std::printf("  %6d  parent %6d  %s  %-28s %s\n", r.index, r.parent, r.BoardLayout.c_str(),
                    Out(r.description).c_str(), Out(FirstLine(r.remarks)).c_str());
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return Usage();
    const std::string command = argv[1];
    std::vector<std::string> args(argv + 2, argv + argc);
    if (command == "import") return Import(args);
    if (command == "info" && args.size() == 1) return Info(args[0]);
    return Usage();
}
