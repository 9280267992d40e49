// A full walk of Find over the largest tree a library can hold, with no node
// matching: every one of the 32,767 tags is compared.
#include <benchmark/benchmark.h>

#include <string>

#include "library/find.h"

namespace {

vantrel::library::TreeModel MakeFullTree() {
    using vantrel::library::NodeImage;
    vantrel::library::TreeModel tree;
    const std::string base = "RNBQKBNRPPPPPPPP00000000000000000000000000000000pppppppprnbqkbnr";
    for (int i = 1; i <= vantrel::library::TreeModel::kMaxNodes; ++i) {
        // Positions that differ late in the string, so each comparison reads far.
        std::string tag = base;
        tag[60] = static_cast<char>('a' + i % 20);
        const int parent = i <= 20 ? 0 : i - 20;  // twenty lines side by side
        tree.Add(parent, i, "m" + std::to_string(i), NodeImage::Pawn, tag);
    }
    return tree;
}

void BM_FindInRangeFullWalkNoMatch(benchmark::State& state) {
    const vantrel::library::TreeModel tree = MakeFullTree();
    std::string search = "RNBQKBNRPPPPPPPP00000000000000000000000000000000pppppppprnbqkbnr";
    search[63] = 'x';  // no tag has an x on h8
    for (auto _ : state) {
        int found = vantrel::library::FindInRange(tree, search, 1, tree.Count());
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * tree.Count());
}
BENCHMARK(BM_FindInRangeFullWalkNoMatch)->Unit(benchmark::kMillisecond);

}  // namespace
