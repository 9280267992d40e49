// Any text given to the PGN reader as an import file. The first byte of the
// input picks the tags of the name (bit k for tag k) and bit 7 the removal of
// question marks; the rest is the file.
#include <cstdint>
#include <string>

#include "fuzz/reader_checks.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace vantrel::import;
    if (size == 0) return 0;
    PgnTagChoice tags;
    for (size_t k = 0; k < 7; ++k) tags.chkTag[k] = (data[0] >> k) & 1;
    tags.chkIgnoreQuestion = (data[0] >> 7) & 1;
    vantrel::fuzz::ReadAllGames(std::string(reinterpret_cast<const char*>(data) + 1, size - 1),
                                [&](ImportState& state, GameRecord& game) { return ReadPgnGame(state, game, tags); });
    return 0;
}
