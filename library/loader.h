// Reading a library file into a TreeModel: the window-free heart of
// frmTreeView.OpenLibrary.
#pragma once

#include <string>
#include <vector>

#include "library/format.h"
#include "library/text.h"
#include "library/tree_model.h"

namespace vantrel::library {

enum class LoadResult {
    Ok,
    NotValid,  // version is not 1: "Not a valid Vantrel library"
    Problem,   // anything else: "Problem loading library " + path
};

struct GameEntry {
    std::string name;  // the text behind the colon and its blank
    int node = 0;      // node number
};

struct LibraryContents {
    LibraryHeader header;
    TreeModel tree;
    // Comment of each node by node number; slot 0 unused. "No comments" where
    // the record's remarks are empty or blank.
    std::vector<std::string> NodeComments;
    // The "Go To Game:" entries, in file order (the list sorts them itself).
    std::vector<GameEntry> games;
};

// Hooks for the window that drives a load.
class LoadObserver {
public:
    virtual ~LoadObserver() = default;
    // The header has been read and is valid; the records follow.
    virtual void OnHeader(const LibraryHeader&) {}
    // Every 101 records: the share of RecCount read so far, in percent.
    virtual void OnProgress(double /*percent*/) {}
    // A record has just been read, before the loader looks at it: every
    // record the load reads comes here, also the one a failed load stops at.
    virtual void OnRecord(const LibraryNodeRecord&) {}
};

inline constexpr const char* kNoComments = "No comments";

// The picture of a node: "board" where the description holds a colon and the
// record opens a new branch, "pawn" otherwise.
NodeImage ChooseImage(const LibraryNodeRecord& record);

// Reads the file at `path` into `out`, which must be empty. All or nothing:
// on any result but Ok the contents are to be thrown away.
LoadResult LoadLibrary(const std::string& path, LibraryContents& out, LoadObserver* observer = nullptr);

// The same from a reader already open. The reader is left where the load
// stopped, so that a caller can read on past a failure.
LoadResult LoadLibrary(LibraryReader& reader, LibraryContents& out, LoadObserver* observer = nullptr);

// The same from bytes in memory.
LoadResult LoadLibraryBytes(std::string bytes, LibraryContents& out, LoadObserver* observer = nullptr);

// What the window and the command line tell of a load that failed: "Not a
// valid Vantrel library", or "Problem loading library " and the path.
std::string LoadFailureMessage(LoadResult result, std::string_view path);

using text::IsBlank;

}  // namespace vantrel::library
