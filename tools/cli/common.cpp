#include "tools/cli/common.h"

#include <cstdio>
#include <fstream>
#include <memory>

#include "library/text_codec.h"

namespace vantrel::cli {
namespace {

// The command's help as it is written, in place of the one CLI11 would make.
class FixedHelp : public CLI::FormatterBase {
public:
    explicit FixedHelp(const char* text) : text_(text) {}
    std::string make_help(const CLI::App*, std::string, CLI::AppFormatMode) const override { return text_; }

private:
    const char* text_;
};

}  // namespace

std::string Out(const std::string& cp1252) { return text::Cp1252ToUtf8(cp1252); }

int Usage() {
    std::fprintf(stderr,
                 "usage:\n"
                 "  vantrel-cli import FILE --name NAME [--san [--start S] [--end E]]\n"
                 "              [--tags TAG,...]\n"
                 "              [--keep-question-marks] [--out-dir DIR] [--db PATH] [--overwrite]\n"
                 "              [--repair] [--plies N]\n"
                 "  vantrel-cli info LIB [--nodes]\n"
                 "  vantrel-cli export LIB [-o FILE.pgn]\n"
                 "  vantrel-cli find LIB (--fen FEN | --layout LAYOUT)\n"
                 "  vantrel-cli print LIB --node N [-o FILE.txt]\n"
                 "Each command tells more with --help.\n");
    return 2;
}

int UsageError(const std::string& cause) {
    std::fprintf(stderr, "vantrel-cli: %s\n", cause.c_str());
    return Usage();
}

Arguments::Arguments(const char* help) {
    app_.formatter(std::make_shared<FixedHelp>(help));
    app_.allow_extras();
    app_.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
}

std::optional<int> Arguments::Parse(int argc, char** argv) {
    try {
        app_.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::fputs(app_.help().c_str(), stdout);
        return 0;
    } catch (const CLI::ArgumentMismatch&) {
        // An option takes the argument after it whatever that is, so one
        // without its value is the last argument.
        const std::string last = argv[argc - 1];
        return UsageError(last.substr(0, last.find('=')) + " needs a value");
    } catch (const CLI::ParseError& e) {
        return UsageError(e.what());
    }
    const std::vector<std::string> extra = app_.remaining();
    if (extra.empty()) return std::nullopt;
    if (extra.front().size() > 1 && extra.front()[0] == '-') return UsageError("unknown option " + extra.front());
    return Usage();
}

bool WriteResult(const std::string& text, const std::string& outPath) {
    if (outPath.empty()) {
        if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) return true;
        std::fprintf(stderr, "vantrel-cli: couldn't write the result to stdout\n");
        return false;
    }
    std::ofstream out(outPath, std::ios::binary | std::ios::trunc);
    out << text;
    out.close();
    if (out) return true;
    std::fprintf(stderr, "vantrel-cli: couldn't write %s\n", outPath.c_str());
    return false;
}

bool Load(const std::string& path, library::LibraryContents& contents, library::LoadObserver* observer) {
    switch (library::LoadLibrary(path, contents, observer)) {
        case library::LoadResult::Ok:
            return true;
        case library::LoadResult::NotValid:
            std::fprintf(stderr, "Not a valid Vantrel library\n");
            return false;
        case library::LoadResult::Problem:
            break;
    }
    std::fprintf(stderr, "Problem loading library %s\n", path.c_str());
    return false;
}

}  // namespace vantrel::cli
