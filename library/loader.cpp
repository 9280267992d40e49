#include "library/loader.h"

#include "library/text.h"

#include <algorithm>

namespace vantrel::library {

NodeImage ChooseImage(const LibraryNodeRecord& record) {
    return record.new_branch && text::SplitNodeText(record.description).named ? NodeImage::Board : NodeImage::Pawn;
}

namespace {

LoadResult Load(LibraryReader& reader, LibraryContents& out, LoadObserver* observer) {
    const bool wholeHeader = reader.ReadHeader(out.header);
    if (out.header.version != 1) return LoadResult::NotValid;
    if (observer) observer->OnHeader(out.header);
    // A file that ends inside its header has no records after it: what
    // bytes are left belong to the header's last string, not to a node.
    if (!wholeHeader) return LoadResult::Problem;

    // The comment table is sized from RecCount; a file with more than
    // RecCount + 1 records overruns it and fails the load.
    const int64_t limit = static_cast<int64_t>(out.header.RecCount) + 1;
    if (limit < 0) return LoadResult::Problem;
    out.NodeComments.assign(1, std::string());
    out.NodeComments.reserve(static_cast<size_t>(std::min<int64_t>(limit + 1, TreeModel::kMaxNodes + 1)));

    int counter = 0;
    int64_t total = 0;
    LibraryNodeRecord record;
    try {
        while (reader.ReadRecord(record)) {
            if (observer) observer->OnRecord(record);
            if (++counter > 100) {
                total += counter;
                counter = 0;
                if (out.header.RecCount == 0) return LoadResult::Problem;  // division by zero
                if (observer) observer->OnProgress(static_cast<double>(total) / out.header.RecCount * 100.0);
            }
            const NodeImage image = ChooseImage(record);
            const int number = out.tree.Count() + 1;
            if (number > limit) return LoadResult::Problem;
            std::string gameName;
            if (image == NodeImage::Board) {
                const text::NodeTextParts parts = text::SplitNodeText(record.description);
                if (parts.rest.empty()) return LoadResult::Problem;
                gameName = parts.name();
            }
            out.tree.Add(record.parent, record.index, std::move(record.description), image,
                         std::move(record.BoardLayout));
            if (image == NodeImage::Board) out.games.push_back({std::move(gameName), number});
            out.NodeComments.push_back(text::IsBlank(record.remarks) ? std::string(kNoComments) : std::move(record.remarks));
            record = LibraryNodeRecord{};
        }
    } catch (const Error&) {
        return LoadResult::Problem;
    }
    if (out.tree.Count() == 0) return LoadResult::Problem;  // no node 1 to show
    return LoadResult::Ok;
}

// Whatever goes wrong on the way (memory, a file the tree can't take) is a
// problem with the library, never the end of the program.
LoadResult LoadGuarded(LibraryReader& reader, LibraryContents& out, LoadObserver* observer) {
    try {
        return Load(reader, out, observer);
    } catch (const std::exception&) {
        return LoadResult::Problem;
    }
}

}  // namespace

LoadResult LoadLibrary(const std::string& path, LibraryContents& out, LoadObserver* observer) {
    LibraryReader reader;
    if (!reader.Open(path)) return LoadResult::Problem;
    return LoadGuarded(reader, out, observer);
}

LoadResult LoadLibrary(LibraryReader& reader, LibraryContents& out, LoadObserver* observer) {
    return LoadGuarded(reader, out, observer);
}

LoadResult LoadLibraryBytes(std::string bytes, LibraryContents& out, LoadObserver* observer) {
    LibraryReader reader;
    reader.OpenBytes(std::move(bytes));
    return LoadGuarded(reader, out, observer);
}

std::string LoadFailureMessage(LoadResult result, std::string_view path) {
    if (result == LoadResult::NotValid) return "Not a valid Vantrel library";
    return "Problem loading library " + std::string(path);
}

}  // namespace vantrel::library
