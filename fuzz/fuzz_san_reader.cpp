// Any text and any pair of comment indicators given to the SAN reader end in
// games, a clean end of the file or an ImportError, and every call makes
// progress. The input starts with the two indicators, each as a byte whose
// low two bits give its length (0 to 3) and then its characters; the rest is
// the file.
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

// Takes an indicator of 0 to 3 characters off the front of the input.
std::string TakeIndicator(const uint8_t*& data, size_t& size) {
    if (size == 0) return {};
    size_t n = data[0] & 3;
    ++data, --size;
    if (n > size) n = size;
    std::string s(reinterpret_cast<const char*>(data), n);
    data += n, size -= n;
    return s;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace vantrel::import;
    std::string start = TakeIndicator(data, size);
    std::string end = TakeIndicator(data, size);
    std::string text(reinterpret_cast<const char*>(data), size);

    LineSource src;
    src.OpenText(text);
    ImportState state;
    state.ImportFile = &src;
    GameRecord game;
    size_t bound = 2;
    for (char c : text) bound += (c == '\n' || c == '\r');
    try {
        for (size_t calls = 0; !state.ImportAtEnd; ++calls) {
            if (calls > bound) std::abort();
            int16_t last = ReadSanGame(state, game, start, end);
            CheckGame(last, game);
            if (last == -1 && !state.ImportAtEnd) std::abort();
        }
    } catch (const ImportError&) {
    }
    return 0;
}
