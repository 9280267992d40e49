#include "tools/cli/common.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "library/files.h"
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

namespace {

bool SameFile(const std::string& a, const std::string& b) {
    struct stat x{}, y{};
    return ::stat(a.c_str(), &x) == 0 && ::stat(b.c_str(), &y) == 0 && x.st_dev == y.st_dev && x.st_ino == y.st_ino;
}

bool CantWrite(const std::string& outPath, int error) {
    std::fprintf(stderr, "vantrel-cli: couldn't write %s: %s\n", outPath.c_str(), std::strerror(error));
    return false;
}

}  // namespace

bool WriteResult(const std::string& text, const std::string& outPath, const std::string& library) {
    if (outPath.empty()) {
        if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) return true;
        std::fprintf(stderr, "vantrel-cli: couldn't write the result to stdout: %s\n", std::strerror(errno));
        return false;
    }
    if (!library.empty() && SameFile(outPath, library)) {
        std::fprintf(stderr, "vantrel-cli: %s is the library itself; it is not written over\n", outPath.c_str());
        return false;
    }
    struct stat st{};
    if (::stat(outPath.c_str(), &st) == 0 && !S_ISREG(st.st_mode) && !S_ISDIR(st.st_mode)) {
        std::FILE* out = std::fopen(outPath.c_str(), "wb");
        if (!out) return CantWrite(outPath, errno);
        const bool ok = std::fwrite(text.data(), 1, text.size(), out) == text.size();
        const int error = errno;
        if (std::fclose(out) != 0 || !ok) return CantWrite(outPath, ok ? errno : error);
        return true;
    }
    library::AtomicFile file;
    if (!file.Open(outPath) || !file.Write(text) || !file.Close()) return CantWrite(outPath, file.Error());
    return true;
}

bool FinishOutput() {
    const bool ok = std::fflush(stdout) == 0 && !std::ferror(stdout);
    const int error = errno;
    if (std::fclose(stdout) == 0 && ok) return true;
    std::fprintf(stderr, "vantrel-cli: couldn't write to stdout: %s\n", std::strerror(ok ? errno : error));
    return false;
}

bool Load(const std::string& path, library::LibraryContents& contents, library::LoadObserver* observer) {
    const library::LoadResult result = library::LoadLibrary(path, contents, observer);
    if (result == library::LoadResult::Ok) return true;
    std::fprintf(stderr, "%s\n", library::LoadFailureMessage(result, path).c_str());
    return false;
}

}  // namespace vantrel::cli
