// vantrel-gen-games OUT.pgn N [SEED] [--book ECO.pgn [--shared]]: writes N
// made-up games as PGN, the kind of file the import benchmarks read: legal
// moves, 60 to 80 plies each, some comments, marks and NAGs, and a result
// token behind every game.
//
// With --book, each game opens with a line of ECO.pgn (such as pgn-extract's
// eco.pgn), drawn by a Zipf law over the lines in a shuffled order, so that
// openings are shared as in a real database: a few lines are played by many
// games, most by few. The games go on with made-up legal moves to 30 to 50
// plies, have a Result tag and come from 400 players at 50 events.
//
// With --shared as well, the games are a database's as an importer meets
// them: after the book line come 1 to 6 plies of the likeliest moves, shared
// between games as the book is, with no comments; most moves of the file walk
// down lines that earlier games played.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tools/random_games.h"

int main(int argc, char** argv) {
    std::vector<std::string> args;
    std::string book;
    bool shared = false;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--book" && i + 1 < argc)
            book = argv[++i];
        else if (arg == "--shared")
            shared = true;
        else
            args.push_back(arg);
    }
    if (args.size() < 2 || args.size() > 3 || (shared && book.empty())) {
        std::fprintf(stderr, "usage: vantrel-gen-games OUT.pgn N [SEED] [--book ECO.pgn [--shared]]\n");
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
        if (book.empty()) {
            const gen::Game game = gen::PlayGame(rng, 60 + static_cast<int>(rng.Below(21)));
            gen::AppendPgn(text, "Game " + std::to_string(g), "Player " + std::to_string(rng.Below(500)),
                           "Player " + std::to_string(rng.Below(500)), game, rng, true);
            // AppendPgn ends the move text with a blank line; the result goes before it.
            text.resize(text.size() - 2);
            text += ' ';
            text += kResults[g % 4];
            text += "\n\n";
        } else {
            // Database games have fewer tags and comments than the plain
            // ones, and their move text is shorter, as the opening is what counts.
            const gen::Game game = shared ? lines.PlayShared(rng) : lines.Play(rng, 30 + static_cast<int>(rng.Below(21)));
            gen::AppendDatabaseGame(text, g, game, rng, !shared);
        }
        if (std::fwrite(text.data(), 1, text.size(), out) != text.size()) break;
        text.clear();
    }
    if (std::fclose(out) != 0 || !text.empty()) {
        std::perror(args[0].c_str());
        return 1;
    }
    return 0;
}
