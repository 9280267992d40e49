// Builds library files for window tests: a header and records, written to a
// file with the library's own encoder.
#pragma once

#include <QFile>
#include <QString>
#include <string>
#include <vector>

#include "chess/board.h"
#include "library/format.h"

namespace vantrel::testing {

class LibraryBuilder {
public:
    explicit LibraryBuilder(std::string book = "Test Library") { header.book = std::move(book); }

    // A record; `layout` defaults to the start position.
    LibraryBuilder& Add(int32_t index, int32_t parent, std::string description, std::string remarks = "",
                        bool newBranch = false, std::string layout = std::string(chess::kInitialLayout)) {
        records.push_back({index, parent, newBranch, std::move(description), std::move(remarks), std::move(layout)});
        return *this;
    }
    // A record that opens a game: "move: name" with new_branch set.
    LibraryBuilder& Game(int32_t index, int32_t parent, const std::string& move, const std::string& name,
                         std::string remarks = "", std::string layout = std::string(chess::kInitialLayout)) {
        return Add(index, parent, move + ": " + name, std::move(remarks), true, std::move(layout));
    }
    LibraryBuilder& Remarks(std::string remarks) {
        header.LibRemarks = std::move(remarks);
        return *this;
    }

    // Writes the library to `path` and returns the path.
    QString WriteTo(const QString& path) const {
        library::LibraryHeader h = header;
        h.RecCount = static_cast<int32_t>(records.size());
        std::string bytes;
        library::EncodeHeader(h, bytes);
        for (const auto& r : records) library::EncodeRecord(r, bytes);
        QFile file(path);
        if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) file.write(bytes.data(), qint64(bytes.size()));
        return path;
    }

    library::LibraryHeader header{1, -1, "", 0, 0, 0, ""};
    std::vector<library::LibraryNodeRecord> records;
};

// A chain of `count` nodes, each the child of the one before.
inline LibraryBuilder Chain(int count, const std::string& book = "Chain") {
    LibraryBuilder lib(book);
    for (int i = 1; i <= count; ++i) lib.Add(i, i - 1, "m" + std::to_string(i));
    return lib;
}

}  // namespace vantrel::testing
