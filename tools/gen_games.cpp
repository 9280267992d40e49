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
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tools/random_games.h"

namespace {

using namespace vantrel;

std::string Plain(std::string s) {
    std::string out;
    for (const char c : s)
        if (c != '+' && c != '#' && c != 'x' && c != '=' && c != '!' && c != '?') out += c;
    return out;
}

// The move of `pos` that the token names, or false.
bool FindMove(const chess::Position& pos, const std::string& token, chess::Move& found) {
    std::vector<chess::Move> legal;
    pos.LegalMoves(legal);
    const std::string want = Plain(token);
    int matches = 0;
    for (const chess::Move& m : legal) {
        std::string san = Plain(pos.San(m));
        // The writer names a source wherever the resolver wants one; the book may not.
        if (san == want || (san.size() == want.size() + 1 && san[0] == want[0] && std::isupper(san[0]) &&
                            san.substr(2) == want.substr(1))) {
            found = m;
            ++matches;
        }
    }
    return matches == 1;
}

// Every line of moves of the book that can be played out, as positions and
// the moves written as the import reads them.
std::vector<gen::Game> ReadBook(const char* path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream all;
    all << in.rdbuf();
    std::vector<gen::Game> lines;
    std::string text = all.str(), moves;
    auto finish = [&] {
        std::istringstream tokens(moves);
        chess::Position pos;
        gen::Game game;
        for (std::string t; tokens >> t;) {
            if (t == "*" || std::isdigit(static_cast<unsigned char>(t[0]))) continue;
            chess::Move m;
            if (!FindMove(pos, t, m)) return;
            game.moves.push_back(pos.San(m));
            pos.Apply(m);
            game.layouts.push_back(pos.Layout());
        }
        if (!game.moves.empty()) lines.push_back(game);
    };
    std::istringstream rows(text);
    int depth = 0;  // inside braces
    for (std::string row; std::getline(rows, row);) {
        for (const char c : row) depth += c == '{' ? 1 : c == '}' ? -1 : 0;
        if (depth > 0 || row.find('}') != std::string::npos) continue;
        if (row.starts_with("[")) {
            if (!moves.empty()) finish();
            moves.clear();
        } else {
            moves += " " + row;
        }
    }
    if (!moves.empty()) finish();
    return lines;
}

}  // namespace

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
    std::vector<gen::Game> lines;
    std::vector<double> cumulative;  // Zipf weights 1/r of the shuffled lines
    gen::Rng rng(seed);
    if (!book.empty()) {
        lines = ReadBook(book.c_str());
        if (lines.empty()) {
            std::fprintf(stderr, "vantrel-gen-games: no line of moves in %s\n", book.c_str());
            return 1;
        }
        for (size_t i = lines.size(); i > 1; --i) std::swap(lines[i - 1], lines[rng.Below(static_cast<uint32_t>(i))]);
        double sum = 0;
        for (size_t r = 1; r <= lines.size(); ++r) cumulative.push_back(sum += 1.0 / static_cast<double>(r));
    }
    std::FILE* out = std::fopen(args[0].c_str(), "wb");
    if (!out) {
        std::perror(args[0].c_str());
        return 1;
    }
    static constexpr const char* kResults[] = {"1-0", "0-1", "1/2-1/2", "*"};
    std::string text = "Made-up games for the import benchmark.\n\n";
    for (long g = 1; g <= games; ++g) {
        // Database games are written with fewer tags and comments than the
        // plain ones; their move text is shorter too, as the opening is what counts.
        const int plies = book.empty() ? 60 + static_cast<int>(rng.Below(21)) : 30 + static_cast<int>(rng.Below(21));
        gen::Game game;
        std::string result = kResults[g % 4];
        if (book.empty()) {
            game = gen::PlayGame(rng, plies);
        } else {
            const double draw = static_cast<double>(rng.Next() % 1000000) / 1000000.0 * cumulative.back();
            const size_t pick = static_cast<size_t>(
                std::lower_bound(cumulative.begin(), cumulative.end(), draw) - cumulative.begin());
            game = lines[std::min(pick, lines.size() - 1)];
            chess::Position pos;
            std::vector<chess::Move> legal;
            for (size_t i = 0; i < game.moves.size(); ++i) {
                chess::Move m;
                FindMove(pos, game.moves[i], m);
                pos.Apply(m);
            }
            gen::PlayOn(rng, pos, static_cast<int>(game.moves.size()), plies, game);
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
