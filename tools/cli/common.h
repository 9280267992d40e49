// What the commands of vantrel-cli share: the usage and its errors, the
// parsing of a command's arguments, and the way a library comes in and a
// result goes out.
//
// Results go to stdout, messages to stderr; the exit status is 0 on success,
// 1 on failure and 2 on a usage error.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "library/loader.h"

namespace vantrel::cli {

// The commands. argv[0] is the command's name, the rest its arguments.
int Import(int argc, char** argv);
int Info(int argc, char** argv);
int Export(int argc, char** argv);
int Find(int argc, char** argv);
int Print(int argc, char** argv);

// Library text is Windows-1252; the terminal wants UTF-8.
std::string Out(const std::string& cp1252);

// The usage of every command, on stderr; returns 2.
int Usage();
// A usage error with its cause; returns 2.
int UsageError(const std::string& cause);

// A command's arguments, read by CLI11. --help and -h show the command's
// own text; an option repeated keeps its last value; the arguments a
// command doesn't take are sorted out by Parse.
class Arguments {
public:
    explicit Arguments(const char* help);

    // Options with a value and flags; a name without dashes is the
    // positional argument.
    CLI::Option* Value(const std::string& name, std::string& into) { return app_.add_option(name, into); }
    CLI::Option* Flag(const std::string& name, bool& into) { return app_.add_flag(name, into); }

    // Nothing when the command is to go on; otherwise its exit status, with
    // the help shown or the usage error told. An option it doesn't know is
    // "unknown option", an option that stands last without its value "needs
    // a value", and an argument too many the usage alone.
    std::optional<int> Parse(int argc, char** argv);

private:
    CLI::App app_;
};

// Writes a result to stdout, or to the file named, which then takes the
// place of what stood there only once it is whole; a device or a FIFO is
// written as it is. `library` is the file the result was made of, which is
// never written over. False, with the cause told, if it couldn't be written.
bool WriteResult(const std::string& text, const std::string& outPath, const std::string& library = "");

// The last of the output: stdout flushed and closed. False, with the cause
// told, if anything written there was lost (a full disk, a closed pipe).
bool FinishOutput();

// Loads a library through the window's loader; false, with the window's
// message on stderr, if the window couldn't show it.
bool Load(const std::string& path, library::LibraryContents& contents, library::LoadObserver* observer = nullptr);

}  // namespace vantrel::cli
