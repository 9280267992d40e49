// Loading a library of 32,767 nodes (the most a tree window shows): file
// read, record parsing and the tree with its keyed parent lookup.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "chess/board.h"
#include "library/format.h"
#include "library/loader.h"

using namespace vantrel::library;

namespace {

// A tree shaped like an imported library: games of 20 to 60 plies branching
// off earlier games, a name on each branch node and comments here and there.
std::string MakeLibrary(int nodes) {
    std::mt19937 rng(12345);
    std::string out;
    EncodeHeader({1, -1, "Benchmark", nodes, 1, nodes, "Generated for the load benchmark."}, out);
    std::string layout(vantrel::chess::kInitialLayout);
    static const char* kMoves[] = {"e4", "d4", "Nf3", "c4", "e5", "c5", "Nc6", "Bb5", "a6", "Ba4", "Nf6", "O-O",
                                   "Be7", "Re1", "b5", "Bb3", "d6", "c3", "o-o", "h3", "Nb8", "d3", "Nbd7"};
    int index = 0;
    std::vector<int> line;  // indexes of the current game's path
    while (index < nodes) {
        // Branch off somewhere along the last game.
        size_t keep = line.empty() ? 0 : rng() % line.size();
        line.resize(keep);
        int plies = 20 + static_cast<int>(rng() % 40);
        bool first = true;
        for (int p = 0; p < plies && index < nodes; ++p) {
            ++index;
            LibraryNodeRecord r;
            r.index = index;
            r.parent = line.empty() ? 0 : line.back();
            r.new_branch = first;
            r.description = kMoves[rng() % std::size(kMoves)];
            if (first) r.description.append(": Game ").append(std::to_string(index));
            if (rng() % 8 == 0) r.remarks = "A comment on this move, long enough to be realistic.";
            layout[rng() % 64] = "PNBRQK0pnbrqk"[rng() % 13];
            r.BoardLayout = layout;
            EncodeRecord(r, out);
            line.push_back(index);
            first = false;
        }
    }
    return out;
}

const std::string& LibraryFile() {
    static const std::string path = [] {
        auto p = std::filesystem::temp_directory_path() / "vantrel_bench_32767.vnb";
        std::ofstream(p, std::ios::binary) << MakeLibrary(TreeModel::kMaxNodes);
        return p.string();
    }();
    return path;
}

void BM_LoadLibrary32767(benchmark::State& state) {
    const std::string& path = LibraryFile();
    for (auto _ : state) {
        LibraryContents contents;
        LoadResult r = LoadLibrary(path, contents);
        if (r != LoadResult::Ok || contents.tree.Count() != TreeModel::kMaxNodes) state.SkipWithError("load failed");
        benchmark::DoNotOptimize(contents);
    }
    state.counters["nodes/s"] =
        benchmark::Counter(static_cast<double>(TreeModel::kMaxNodes), benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_LoadLibrary32767)->Unit(benchmark::kMillisecond);

}  // namespace
