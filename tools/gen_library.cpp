// vantrel-gen-library OUT.vnb N [SEED]: writes a made-up but well-formed
// library of exactly N nodes. The tree is grown the way an import grows it:
// made-up games are walked down the tree and branch off at their first new
// move, which gets the game's name; some moves carry comments. Every node
// holds the real position after its move.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unordered_map>

#include "library/format.h"
#include "tools/random_games.h"

namespace {

constexpr const char* kOpenings[] = {"Ruy Lopez",     "Italian Game",  "Sicilian",         "French Defence",
                                     "Caro-Kann",     "Queen's Gambit", "Slav",            "King's Indian",
                                     "Nimzo-Indian",  "English",        "London System",   "Scandinavian",
                                     "Pirc Defence",  "Dutch Defence",  "Grunfeld",        "Catalan"};
constexpr const char* kComments[] = {"The main line.",
                                     "Playable, but it gives up the centre.",
                                     "White keeps a small edge.",
                                     "Black equalises comfortably.",
                                     "A sharp try; both sides must know the theory.",
                                     "Threatens to win a pawn.",
                                     "The quiet move is best here.",
                                     "An old idea that has come back into fashion."};

int Usage() {
    std::fprintf(stderr, "usage: vantrel-gen-library OUT.vnb N [SEED]\n");
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace vantrel;
    if (argc < 3 || argc > 4) return Usage();
    const std::string out = argv[1];
    char* end = nullptr;
    const long long wanted = std::strtoll(argv[2], &end, 10);
    if (!end || *end || wanted < 0 || wanted > INT32_MAX) return Usage();
    const uint64_t seed = argc == 4 ? std::strtoull(argv[3], nullptr, 10) : 20240101u;
    const auto n = static_cast<int32_t>(wanted);

    library::LibraryWriter writer;
    if (!writer.Open(out)) {
        std::fprintf(stderr, "vantrel-gen-library: can't create %s\n", out.c_str());
        return 1;
    }
    library::LibraryHeader header;
    header.version = 1;
    header.flag = -1;
    header.book = std::filesystem::path(out).stem().string();
    header.RecCount = n;
    header.MinIndex = n > 0 ? 1 : 0;
    header.MaxIndex = n;
    header.LibRemarks = "A made-up library of " + std::to_string(n) + " nodes.\r\nGames played by a program.";
    writer.WriteHeader(header);

    gen::Rng rng(seed);
    // (parent, move) -> index, as the import's table lookup.
    std::unordered_map<std::string, int32_t> children;
    children.reserve(static_cast<size_t>(n));
    int32_t count = 0;
    library::LibraryNodeRecord record;
    for (int gameNo = 1; count < n; ++gameNo) {
        const gen::Game game = gen::PlayGame(rng, 40 + static_cast<int>(rng.Below(41)));
        const std::string name = std::string(kOpenings[rng.Below(std::size(kOpenings))]) + " game " +
                                 std::to_string(gameNo);
        int32_t parent = 0;
        bool branched = false;
        for (size_t i = 0; i < game.moves.size() && count < n; ++i) {
            const std::string& move = game.moves[i];
            if (!branched) {
                std::string key = std::to_string(parent) + '\t' + move;
                auto it = children.find(key);
                if (it != children.end()) {
                    parent = it->second;
                    continue;
                }
                branched = true;
                children.emplace(std::move(key), count + 1);
                record.new_branch = true;
                record.description = move + ": " + name;
                record.remarks = rng.Chance(30) ? "Played in a made-up event.\r\n" : "";
            } else {
                children.emplace(std::to_string(parent) + '\t' + move, count + 1);
                record.new_branch = false;
                record.description = move;
                record.remarks.clear();
            }
            if (rng.Chance(15)) record.remarks += kComments[rng.Below(std::size(kComments))];
            ++count;
            record.index = count;
            record.parent = parent;
            record.BoardLayout = game.layouts[i];
            if (!writer.WriteRecord(record)) break;
            parent = count;
        }
    }
    if (!writer.Close()) {
        std::fprintf(stderr, "vantrel-gen-library: writing %s failed\n", out.c_str());
        return 1;
    }
    return 0;
}
