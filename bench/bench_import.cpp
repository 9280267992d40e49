// The whole import, end to end: BuildTree over a PGN file of made-up games
// (legal moves, 60 to 80 plies each, some comments and marks), then
// WriteLibrary. Reports plies per second and the peak resident memory.
// BM_ImportBookGames does the same over a game database as the command line
// reads it (on two threads): games that open with lines of pgn-extract's
// eco.pgn drawn by a Zipf law and go on a few plies as other games did
// (vantrel-gen-games --book --shared), so that most moves walk down nodes
// the tree has already.
//
//   bench_import --benchmark_counters_tabular=true
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <map>
#include <string>

#include "import/moves_table.h"
#include "import/tree_store.h"
#include "tools/random_games.h"

namespace {

namespace fs = std::filesystem;
using namespace vantrel;

class QuietHost : public import::ImportHost {
public:
    void ShowCount(const std::string&) override {}
    bool ShowsCount() const override { return false; }
    bool Running() const override { return true; }
    import::FixMoveAction AskFixMove(int16_t, int16_t, int16_t, import::GameRecord&, const chess::ImportBoard&) override {
        ++unresolved;
        return import::kFixSkip;
    }
    bool AskOverwrite(const std::string&) override { return true; }
    void Message(const std::string& text, const std::string&) override { failure = text; }
    void ShowError(const std::string& description, int) override { failure = description; }

    int unresolved = 0;
    std::string failure;
};

// A program directory with its database and a game file of `games` games,
// made once per size and removed when the run ends.
struct Workload {
    std::string dir;
    std::string pgn;
    int64_t plies = 0;
    int64_t bytes = 0;
};

struct Workloads : std::map<int, Workload> {
    ~Workloads() {
        std::error_code ec;
        for (auto& [games, w] : *this) fs::remove_all(w.dir, ec);
    }
};

double CpuSeconds() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

constexpr const char* kBook = "/usr/share/pgn-extract/eco.pgn";

// Games of a size; a negative size asks for games that open with book lines.
const Workload& MakeWorkload(int games) {
    static Workloads made;
    auto it = made.find(games);
    if (it != made.end()) return it->second;
    const bool book = games < 0;
    games = book ? -games : games;

    Workload w;
    w.dir = (fs::temp_directory_path() / ("vantrel-bench-import-" + std::to_string(::getpid()) + "-" +
                                          std::to_string(games)))
                .string();
    fs::create_directories(w.dir);
    std::string error;
    if (!import::CreateDatabaseFromSchema(w.dir + "/Tessimo.mdb", VANTREL_SCHEMA, &error)) {
        std::fprintf(stderr, "bench_import: %s\n", error.c_str());
        std::abort();
    }
    w.pgn = w.dir + "/games.pgn";
    std::FILE* out = std::fopen(w.pgn.c_str(), "wb");
    gen::Rng rng(12345);
    gen::Book lines;
    if (book && !lines.Read(kBook, rng)) {
        std::fprintf(stderr, "bench_import: no book lines in %s (Debian's pgn-extract has it)\n", kBook);
        std::abort();
    }
    std::string text = book ? "" : "Made-up games for the import benchmark.\n\n";
    for (int g = 1; g <= games; ++g) {
        const gen::Game game = book ? lines.PlayShared(rng) : gen::PlayGame(rng, 60 + static_cast<int>(rng.Below(21)));
        w.plies += static_cast<int64_t>(game.moves.size());
        if (book)
            gen::AppendDatabaseGame(text, g, game, rng, false);
        else
            gen::AppendPgn(text, "Game " + std::to_string(g), "Player " + std::to_string(rng.Below(500)),
                           "Player " + std::to_string(rng.Below(500)), game, rng, true);
        std::fwrite(text.data(), 1, text.size(), out);
        w.bytes += static_cast<int64_t>(text.size());
        text.clear();
    }
    std::fclose(out);
    return made.emplace(book ? -games : games, std::move(w)).first->second;
}

double PeakRssMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void BM_ImportEndToEnd(benchmark::State& state) {
    const Workload& w = MakeWorkload(static_cast<int>(state.range(0)));
    import::ImportOptions options;
    options.programDir = w.dir;
    options.inFile = w.pgn;
    options.bookName = "Bench";
    options.tags = {true, false, false, false, true, true, false};
    // A game database is imported as the command line does it, reading
    // ahead on a second thread; the plain games as the window does.
    options.readAhead = state.range(0) < 0;

    int32_t records = 0;
    int unresolved = 0;
    const double cpuStart = CpuSeconds();
    for (auto _ : state) {
        QuietHost host;
        import::ImportSession session;
        const bool built = import::BuildTree(options, host, session);
        const bool written = built && import::WriteLibrary(options, host, session);
        if (!written) {
            state.SkipWithError(("import failed: " + host.failure).c_str());
            return;
        }
        records = session.recordCount;
        unresolved = host.unresolved;
    }
    const double cpu = (CpuSeconds() - cpuStart) / static_cast<double>(state.iterations());
    // Per second of wall-clock time, and per second of this process's CPU
    // time (the same on an idle machine; apart when other work shares it).
    state.counters["plies/s"] =
        benchmark::Counter(static_cast<double>(w.plies), benchmark::Counter::kIsIterationInvariantRate);
    state.counters["plies/s_cpu"] = static_cast<double>(w.plies) / cpu;
    state.counters["plies"] = static_cast<double>(w.plies);
    state.counters["records"] = records;
    state.counters["unresolved"] = unresolved;
    state.counters["file_MB"] = static_cast<double>(w.bytes) / (1024.0 * 1024.0);
    state.counters["peak_RSS_MB"] = PeakRssMegabytes();
}

BENCHMARK(BM_ImportEndToEnd)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

// A database of 100,000 games (the argument's sign asks for book openings).
void BM_ImportBookGames(benchmark::State& state) { BM_ImportEndToEnd(state); }
BENCHMARK(BM_ImportBookGames)->Arg(-100000)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

}  // namespace
