// Any text and any pair of comment indicators given to the SAN reader. The
// input starts with the two indicators, each as a byte whose low two bits
// give its length (0 to 3) and then its characters; the rest is the file.
#include <cstdint>
#include <string>

#include "fuzz/reader_checks.h"

namespace {

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
    const std::string start = TakeIndicator(data, size);
    const std::string end = TakeIndicator(data, size);
    vantrel::fuzz::ReadAllGames(std::string(reinterpret_cast<const char*>(data), size),
                                [&](ImportState& state, GameRecord& game) {
                                    return ReadSanGame(state, game, start, end);
                                });
    return 0;
}
