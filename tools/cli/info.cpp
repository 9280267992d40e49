// vantrel-cli info: what a library holds, from one reading of the file.
#include <cstdio>
#include <vector>

#include "library/export_pgn.h"
#include "tools/cli/common.h"

namespace vantrel::cli {
namespace {

constexpr const char* kInfoHelp =
    "usage: vantrel-cli info LIB [--nodes]\n"
    "\n"
    "Without --nodes: the header of the library, its counts, whether it opens in\n"
    "Vantrel, and its first nodes.\n"
    "\n"
    "  --nodes   every node in load order, one line each, through the loader of the\n"
    "            window, tab-separated: node number, parent's node number (0 at the\n"
    "            top), picture (board or pawn), text, 64-character layout, comment.\n"
    "            In text and comment a line break is written \\n, a lone CR \\r, a tab\n"
    "            \\t and a backslash \\\\; a node without a comment has an empty field.\n"
    "\n"
    "Exit status: 0 on success; 1 for a file that isn't a library and, with\n"
    "--nodes, for a library the window can't show (with the window's message);\n"
    "2 on a usage error.\n";

// The counts of every record in the file, and the first few records.
class RecordCounts : public library::LoadObserver {
public:
    static constexpr size_t kShown = 12;

    void OnRecord(const library::LibraryNodeRecord& record) override {
        ++nodes;
        if (library::ChooseImage(record) == library::NodeImage::Board) ++games;
        if (record.parent == 0) ++topLevel;
        if (first.size() < kShown) first.push_back(record);
    }

    int64_t nodes = 0, games = 0, topLevel = 0;
    std::vector<library::LibraryNodeRecord> first;
};

std::string FirstLine(const std::string& s) {
    const size_t cut = s.find_first_of("\r\n");
    return cut == std::string::npos ? s : s.substr(0, cut) + " ...";
}

}  // namespace

int Info(int argc, char** argv) {
    std::string path;
    bool listNodes = false;
    Arguments args(kInfoHelp);
    args.Value("LIB", path);
    args.Flag("--nodes", listNodes);
    if (const auto status = args.Parse(argc, argv)) return *status;
    if (path == "-") return UsageError("unknown option -");
    if (path.empty()) return Usage();

    if (listNodes) {
        library::LibraryContents contents;
        if (!Load(path, contents)) return 1;
        std::string text;
        for (int n = 1; n <= contents.tree.Count(); ++n) text += library::NodeListingLine(contents, n) + "\n";
        return WriteResult(Out(text), "") ? 0 : 1;
    }

    library::LibraryReader reader;
    if (!reader.Open(path)) {
        std::fprintf(stderr, "%s\n", library::LoadFailureMessage(library::LoadResult::Problem, path).c_str());
        return 1;
    }
    // The loader tells whether the window opens the library; the counts take
    // in every record, also those behind the one a failed load stopped at.
    RecordCounts counts;
    library::LibraryContents contents;
    const library::LoadResult loaded = library::LoadLibrary(reader, contents, &counts);
    const library::LibraryHeader& header = contents.header;
    if (header.version != 1) {
        std::fprintf(stderr, "%s\n", library::LoadFailureMessage(library::LoadResult::NotValid, path).c_str());
        return 1;
    }
    for (library::LibraryNodeRecord record; reader.ReadRecord(record);) counts.OnRecord(record);

    std::printf("Library:    %s\n", Out(header.book).c_str());
    std::printf("Version:    %d\n", header.version);
    std::printf("RecCount:   %d\n", header.RecCount);
    std::printf("MinIndex:   %d\n", header.MinIndex);
    std::printf("MaxIndex:   %d\n", header.MaxIndex);
    std::printf("Remarks:    %s\n", Out(FirstLine(header.LibRemarks)).c_str());
    std::printf("Nodes:      %lld\n", static_cast<long long>(counts.nodes));
    std::printf("Games:      %lld\n", static_cast<long long>(counts.games));
    std::printf("First moves: %lld\n", static_cast<long long>(counts.topLevel));
    std::printf("Opens in Vantrel: %s\n", loaded == library::LoadResult::Ok ? "yes" : "no");
    std::printf("First nodes:\n");
    for (const auto& r : counts.first) {
        std::printf("  %6d  parent %6d  %s  %-28s %s\n", r.index, r.parent, r.BoardLayout.c_str(),
                    Out(r.description).c_str(), Out(FirstLine(r.remarks)).c_str());
    }
    return 0;
}

}  // namespace vantrel::cli
