// Any text given to the PGN reader as an import file ends in games, a clean
// end of the file or an ImportError, and every call makes progress. The first
// byte of the input picks the tags of the name (bit k for tag k) and bit 7
// the removal of question marks; the rest is the file.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "import/readers.h"

namespace {

void CheckGame(int16_t last, const vantrel::import::GameRecord& g) {
    using vantrel::import::kMaxPly;
    if (last < -1 || last > kMaxPly) std::abort();
    for (int i = 1; i <= kMaxPly; ++i) {
        const std::string& move = g.GameMoves[static_cast<size_t>(i)];
        if (i <= last ? (move.size() < 2 || move.size() > 6) : !move.empty()) std::abort();
        if (i > last && last >= 0 && !g.GameComments[static_cast<size_t>(i)].empty()) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace vantrel::import;
    if (size == 0) return 0;
    PgnTagChoice tags;
    for (size_t k = 0; k < 7; ++k) tags.chkTag[k] = (data[0] >> k) & 1;
    tags.chkIgnoreQuestion = (data[0] >> 7) & 1;
    std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);

    LineSource src;
    src.OpenText(text);
    ImportState state;
    state.ImportFile = &src;
    GameRecord game;
    // Each call reads at least one line, so the file's line count bounds the calls.
    size_t bound = 2;
    for (char c : text) bound += (c == '\n' || c == '\r');
    try {
        for (size_t calls = 0; !state.ImportAtEnd; ++calls) {
            if (calls > bound) std::abort();
            int16_t last = ReadPgnGame(state, game, tags);
            CheckGame(last, game);
            if (last == -1 && !state.ImportAtEnd) std::abort();
        }
    } catch (const ImportError&) {
    }
    return 0;
}
