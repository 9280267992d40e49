// vantrel-gen-games OUT.pgn N [SEED]: writes N made-up games as PGN, the
// kind of file the import benchmarks read: legal moves, 60 to 80 plies each,
// some comments, marks and NAGs, and a result token behind every game.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tools/random_games.h"

int main(int argc, char** argv) {
    using namespace vantrel;
    if (argc < 3 || argc > 4) {
        std::fprintf(stderr, "usage: vantrel-gen-games OUT.pgn N [SEED]\n");
        return 2;
    }
    const long games = std::strtol(argv[2], nullptr, 10);
    const uint64_t seed = argc == 4 ? std::strtoull(argv[3], nullptr, 10) : 12345;
    if (games < 1) {
        std::fprintf(stderr, "vantrel-gen-games: N must be a whole number above 0\n");
        return 2;
    }
    std::FILE* out = std::fopen(argv[1], "wb");
    if (!out) {
        std::perror(argv[1]);
        return 1;
    }
    static constexpr const char* kResults[] = {"1-0", "0-1", "1/2-1/2", "*"};
    gen::Rng rng(seed);
    std::string text = "Made-up games for the import benchmark.\n\n";
    for (long g = 1; g <= games; ++g) {
        const gen::Game game = gen::PlayGame(rng, 60 + static_cast<int>(rng.Below(21)));
        gen::AppendPgn(text, "Game " + std::to_string(g), "Player " + std::to_string(rng.Below(500)),
                       "Player " + std::to_string(rng.Below(500)), game, rng, true);
        // AppendPgn ends the move text with a blank line; the result goes before it.
        text.resize(text.size() - 2);
        text += ' ';
        text += kResults[g % 4];
        text += "\n\n";
        if (std::fwrite(text.data(), 1, text.size(), out) != text.size()) break;
        text.clear();
    }
    if (std::fclose(out) != 0 || !text.empty()) {
        std::perror(argv[1]);
        return 1;
    }
    return 0;
}
