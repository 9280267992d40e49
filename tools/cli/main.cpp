// vantrel-cli: the import without windows, and a look into a library.
//
//   vantrel-cli import FILE --name NAME [options]   a game file into a library
//   vantrel-cli info LIB [--nodes]                  what a library holds
//   vantrel-cli export LIB [-o FILE.pgn]            the library as PGN
//   vantrel-cli find LIB (--fen FEN | --layout L)   the nodes of a position
//   vantrel-cli print LIB --node N [-o FILE.txt]    the printed moves list
//   vantrel-cli --version
//
// Each command reads its arguments through CLI11 (see common.h) and reads a
// library file once. Nothing ever waits for an answer.
#include <algorithm>
#include <cstdio>
#include <string>

#include "tools/cli/common.h"

namespace {

constexpr const char* kHelp =
    "usage: vantrel-cli COMMAND ...\n"
    "\n"
    "  import FILE --name NAME [options]    import a PGN or SAN game file into a library\n"
    "  info LIB [--nodes]                   describe a library, or list every node\n"
    "  export LIB [-o FILE.pgn]             the library as PGN\n"
    "  find LIB (--fen FEN | --layout L)    the nodes that hold a position\n"
    "  print LIB --node N [-o FILE.txt]     the printed moves list of a node\n"
    "\n"
    "vantrel-cli COMMAND --help tells more. Results go to stdout, messages to stderr;\n"
    "the exit status is 0 on success, 1 on failure, 2 on a usage error.\n";

struct Command {
    const char* name;
    int (*run)(int argc, char** argv);
};

constexpr Command kCommands[] = {
    {"import", vantrel::cli::Import}, {"info", vantrel::cli::Info},   {"export", vantrel::cli::Export},
    {"find", vantrel::cli::Find},     {"print", vantrel::cli::Print},
};

}  // namespace

int main(int argc, char** argv) {
    using namespace vantrel::cli;
    if (argc < 2) return Usage();
    const std::string command = argv[1];
    if (command == "--help" || command == "-h" || command == "help") {
        std::fputs(kHelp, stdout);
        return 0;
    }
    if (command == "--version") {
        std::printf("vantrel-cli %s\n", VANTREL_VERSION);
        return 0;
    }
    for (const Command& c : kCommands) {
        if (command != c.name) continue;
        const int status = c.run(argc - 1, argv + 1);
        // What went to stdout must have arrived there, or the run failed.
        return FinishOutput() ? status : std::max(status, 1);
    }
    return UsageError("unknown command '" + command + "'");
}
