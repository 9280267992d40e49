// vantrel-gen-games OUT.pgn N [SEED] [--book ECO.pgn]: writes N made-up games
// as PGN, the kind of file the import benchmarks read: legal moves, 60 to 80
// plies each, some comments, marks and NAGs, and a result token behind every
// game.
//
// With --book, each game opens with a line of ECO.pgn (such as pgn-extract's
// eco.pgn), drawn by a Zipf law over the lines in a shuffled order, so that
// openings are shared as in a real database: a few lines are played by many
// games, most by few. The games go on with made-up legal moves to 30 to 50
// plies, have a Result tag and come from 400 players at 50 events.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tools/random_games.h"

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    std::string book;
    for (size_t i = 0; i + 1 < args.size(); ++i) {
        if (args[i] == "--book") {
            book = args[i + 1];
            args.erase(args.begin() + static_cast<long>(i), args.begin() + static_cast<long>(i) + 2);
            break;
        }
    }
    if (args.size() < 2 || args.size() > 3) {
        std::fprintf(stderr, "usage: vantrel-gen-games OUT.pgn N [SEED] [--book ECO.pgn]\n");
        return 2;
    }
    const long games = std::strtol(args[1].c_str(), nullptr, 10);
    const uint64_t seed = args.size() == 3 ? std::strtoull(args[2].c_str(), nullptr, 10) : 12345;
    if (games < 1) {
        std::fprintf(stderr, "vantrel-gen-games: N must be a whole number above 0\n");
        return 2;
    }
    using namespace vantrel;
    gen::Rng rng(seed);
    gen::Book lines;
    if (!book.empty() && !lines.Read(book, rng)) {
        std::fprintf(stderr, "vantrel-gen-games: no line of moves in %s\n", book.c_str());
        return 1;
    }
    std::FILE* out = std::fopen(args[0].c_str(), "wb");
    if (!out) {
        std::perror(args[0].c_str());
        return 1;
    }
    static constexpr const char* kResults[] = {"1-0", "0-1", "1/2-1/2", "*"};
    // Remarks ahead of the games, which a database has not.
    std::string text = book.empty() ? "Made-up games for the import benchmark.\n\n" : "";
    for (long g = 1; g <= games; ++g) {
        // Database games are written with fewer tags and comments than the
        // plain ones; their move text is shorter too, as the opening is what counts.
        const int plies = book.empty() ? 60 + static_cast<int>(rng.Below(21)) : 30 + static_cast<int>(rng.Below(21));
        gen::Game game;
        std::string result = kResults[g % 4];
        if (book.empty()) {
            game = gen::PlayGame(rng, plies);
        } else {
            game = lines.Play(rng, plies);
            const uint32_t roll = rng.Below(100);
            result = roll < 38 ? "1-0" : roll < 66 ? "1/2-1/2" : roll < 96 ? "0-1" : "*";
        }
        const std::string event = book.empty() ? "Game " + std::to_string(g) : "Event " + std::to_string(g % 50);
        gen::AppendPgn(text, event, "Player " + std::to_string(rng.Below(book.empty() ? 500 : 400)),
                       "Player " + std::to_string(rng.Below(book.empty() ? 500 : 400)), game, rng, true);
        // AppendPgn ends the move text with a blank line; the result goes before it.
        text.resize(text.size() - 2);
        if (!book.empty()) text.insert(text.find("\n\n", text.rfind("[Black")) + 1, "[Result \"" + result + "\"]\n");
        text += ' ';
        text += result;
        text += "\n\n";
        if (std::fwrite(text.data(), 1, text.size(), out) != text.size()) break;
        text.clear();
    }
    if (std::fclose(out) != 0 || !text.empty()) {
        std::perror(args[0].c_str());
        return 1;
    }
    return 0;
}
