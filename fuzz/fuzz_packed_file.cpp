// Any bytes as an import file on disk, so that the reader's look at the
// first bytes sends gzip, bzip2, xz, zstd and zip through the unpacking:
// damaged, cut or crafted, a file is read to its end or fails with the
// reader's error, and nothing else happens.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "import/game_record.h"
#include "import/readers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace vantrel::import;
    static const std::string path = "/tmp/vantrel-fuzz-packed-" + std::to_string(::getpid());
    std::FILE* out = std::fopen(path.c_str(), "wb");
    if (!out) return 0;
    std::fwrite(data, 1, size, out);
    std::fclose(out);
    LineSource file;
    if (!file.Open(path)) return 0;
    // A small file may unpack to a great deal: a few megabytes are enough.
    size_t read = 0;
    try {
        std::string line;
        while (!file.Eof() && read < (size_t{4} << 20)) {
            file.ReadLine(line);
            read += line.size() + 1;
        }
    } catch (const vantrel::Error&) {
    }
    return 0;
}
