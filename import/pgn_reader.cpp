// The PGN game reader: the tag section, the game's name made of the chosen
// tags, and the move text up to the next tag line or the end of the file.
// It goes by the first character of each trimmed line and by fixed columns
// of the tag lines, not by the full PGN grammar; only tags chosen by name
// are taken apart at their quotes.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "import/readers.h"
#include "import/walk.h"

namespace vantrel::import {
namespace {

struct TagColumn {
    std::string_view front;  // what the line begins with, in upper case
    size_t valueStart;       // 1-based: after the bracket, the name, a blank and the quote
};

constexpr std::array<TagColumn, 7> kTags = {{
    {"[EVENT", 9},
    {"[SITE", 8},
    {"[DATE", 8},
    {"[ROUND", 9},
    {"[WHITE", 9},
    {"[BLACK", 9},
    {"[RESULT", 10},
}};

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// A tag line's front: its bracket, then a tag's name in capitals, which a
// letter matches in either case. A line of eight bytes or more is matched
// in one go against the front's bytes, with the bit of the case masked out
// behind the bracket.
struct TagFront {
    std::string_view upper;
    uint64_t mask = 0;
    uint64_t value = 0;
};

std::array<TagFront, 7> MakeFronts() {
    std::array<TagFront, 7> fronts;
    for (size_t t = 0; t < kTags.size(); ++t) {
        char mask[8] = {};
        char value[8] = {};
        const std::string_view upper = kTags[t].front;
        for (size_t k = 0; k < upper.size(); ++k) {
            mask[k] = static_cast<char>(k == 0 ? 0xFF : ~0x20);
            value[k] = upper[k];
        }
        fronts[t].upper = upper;
        std::memcpy(&fronts[t].mask, mask, 8);
        std::memcpy(&fronts[t].value, value, 8);
    }
    return fronts;
}

const std::array<TagFront, 7> kFronts = MakeFronts();

bool FrontIs(std::string_view line, const TagFront& front) {
    if (line.size() >= 8) {
        uint64_t word;
        std::memcpy(&word, line.data(), 8);
        return (word & front.mask) == front.value;
    }
    const std::string_view upper = front.upper;
    if (line.size() < upper.size() || line[0] != upper[0]) return false;
    for (size_t k = 1; k < upper.size(); ++k)
        if ((line[k] & ~0x20) != upper[k]) return false;
    return true;
}

bool SameInAnyCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t k = 0; k < a.size(); ++k)
        if (Upper(a[k]) != Upper(b[k])) return false;
    return true;
}

// Where a tag's value stands in the text of the tag section.
struct Span {
    size_t at = 0;
    size_t size = 0;
};

// Notes where the value of a tag line stands if the line is one of the
// seven tags and the name wants it; `lineAt` is where the line stands in
// the section's text. The value runs from its fixed start up to the
// character in front of the first "]" at or after column 5, which is taken
// to be the closing quote; a line too short for that fails, wanted or not.
void TakeTag(std::string_view line, size_t lineAt, std::array<Span, 7>& values, const std::array<bool, 7>& wanted) {
    // The letter behind the bracket tells the one tag it may be; only R has
    // two.
    if (line.size() < 2) return;
    size_t k = 0;
    switch (Upper(line[1])) {
    case 'E': k = 0; break;
    case 'S': k = 1; break;
    case 'D': k = 2; break;
    case 'R': k = FrontIs(line, kFronts[3]) ? 3 : 6; break;
    case 'W': k = 4; break;
    case 'B': k = 5; break;
    default: return;
    }
    if (!FrontIs(line, kFronts[k])) return;
    size_t found = line.size() >= 5 ? line.find(']', 4) : std::string_view::npos;
    long p = found == std::string_view::npos ? 0 : static_cast<long>(found) + 1;
    long start = static_cast<long>(kTags[k].valueStart);
    long length = p - start - 1;
    if (length < 0) throw Error("Invalid procedure call or argument", errors::kInvalidProcedureCall);
    if (wanted[k]) values[k] = {lineAt + static_cast<size_t>(start - 1), static_cast<size_t>(length)};
}

// Takes the value of a tag chosen by name: the line's tag name runs from
// behind the bracket up to a blank or a quote, and its value from the first
// quote to the last. A line without two quotes gives nothing.
void TakeNamedTag(std::string_view line, const std::vector<std::string>& names, std::vector<std::string>& values) {
    const size_t nameEnd = line.find_first_of(" \t\"", 1);
    const size_t open = line.find('"', 1);
    const size_t close = line.rfind('"');
    if (nameEnd == std::string_view::npos || close == open) return;
    const std::string_view name = line.substr(1, nameEnd - 1);
    for (size_t k = 0; k < names.size(); ++k)
        if (SameInAnyCase(name, names[k])) values[k].assign(line.substr(open + 1, close - open - 1));
}

// "1999.??.??" keeps "1999", "a.?.b" becomes "ab": a question mark goes
// together with a dot beside it.
void RemoveQuestionMarks(std::string& name) {
    for (size_t p = name.find('?'); p != std::string::npos; p = name.find('?')) {
        if (p == 0)
            name.erase(0, 1);
        else if (name.compare(p - 1, 3, ".?.") == 0)
            name.erase(p - 1, 3);
        else if (name[p - 1] == '.')
            name.erase(p - 1, 2);
        else if (p + 1 < name.size() && name[p + 1] == '.')
            name.erase(p, 2);
        else
            name.erase(p, 1);
    }
}

// Whether two blanks stand side by side: eight pairs at a time.
bool HasDoubleBlank(std::string_view s) {
    constexpr uint64_t kBlanks = 0x2020202020202020ull;
    constexpr uint64_t kOnes = 0x0101010101010101ull;
    constexpr uint64_t kHighs = 0x8080808080808080ull;
    size_t i = 0;
    for (; i + 9 <= s.size(); i += 8) {
        uint64_t here, next;
        std::memcpy(&here, s.data() + i, 8);
        std::memcpy(&next, s.data() + i + 1, 8);
        const uint64_t both = (here ^ kBlanks) | (next ^ kBlanks);  // a zero byte where both are blanks
        if (((both - kOnes) & ~both & kHighs) != 0) return true;
    }
    for (; i + 1 < s.size(); ++i)
        if (s[i] == ' ' && s[i + 1] == ' ') return true;
    return false;
}

void CollapseBlanks(std::string& s) {
    // Most names have no two blanks in a row: nothing to move.
    if (!HasDoubleBlank(s)) return;
    size_t first = 1;
    while (first < s.size() && !(s[first] == ' ' && s[first - 1] == ' ')) ++first;
    if (first >= s.size()) return;
    size_t out = first;
    for (size_t i = first; i < s.size(); ++i) {
        if (s[i] == ' ' && out > 0 && s[out - 1] == ' ') continue;
        s[out++] = s[i];
    }
    s.resize(out);
}

// The tag section's lines, each behind a line end, gathered with a copy
// each and handed to the game's comment in one go.
class TagText {
public:
    void Clear() { size_ = 0; }
    void Add(std::string_view line) {
        const size_t need = size_ + 2 + line.size();
        if (need > room_) Grow(need);
        char* at = data_.get() + size_;
        at[0] = '\r';
        at[1] = '\n';
        std::memcpy(at + 2, line.data(), line.size());
        size_ = need;
    }
    std::string_view View() const { return {data_.get(), size_}; }
    // Where the next line added will stand.
    size_t NextAt() const { return size_ + 2; }

private:
    void Grow(size_t need) {
        const size_t room = std::max(need, room_ * 2);
        auto data = std::make_unique<char[]>(room);
        if (size_ > 0) std::memcpy(data.get(), data_.get(), size_);
        data_ = std::move(data);
        room_ = room;
    }
    std::unique_ptr<char[]> data_;
    size_t size_ = 0;
    size_t room_ = 0;
};

void MakeName(const std::array<Span, 7>& spans, std::string_view section, const std::vector<std::string>& named,
              const PgnTagChoice& tags, std::string& name) {
    const auto value = [&](size_t k) { return section.substr(spans[k].at, spans[k].size); };
    name.clear();
    if (!tags.byName.empty()) {
        for (const std::string& value : named) {
            if (value.empty()) continue;
            if (!name.empty()) name += ' ';
            name += value;
        }
    } else {
        if (tags.chkTag[0]) name.assign(value(0));
        for (size_t i = 1; i < spans.size(); ++i) {
            if (tags.chkTag[i] && spans[i].size > 0) {
                name += ' ';
                name += value(i);
            }
        }
    }
    if (tags.chkIgnoreQuestion) RemoveQuestionMarks(name);
    TrimBlanksInPlace(name);
    CollapseBlanks(name);
}

}  // namespace

int16_t ReadPgnGame(ImportState& state, GameRecord& game, const PgnTagChoice& tags) {
    game.Clear();
    // The walker and the line keep their room from game to game.
    static thread_local MoveWalker walk;
    walk.Start(game);  // with the PGN rules
    walk.SetPlyLimit(state.PlyLimit);
    TrimBlanksInPlace(state.ImportLine);
    LineSource& in = *state.ImportFile;

    // Text ahead of the first tag section is the library's remarks; blank
    // lines at the top of the file are skipped.
    if (state.ImportFirstGame && !ReadRemarks(state, '[', true)) return -1;

    // The tag section. Every line of it goes into the game's comment; the
    // line that ends it is dropped.
    // Where the seven tags' values stand, kept only for a name made of them.
    std::array<Span, 7> values{};
    std::array<bool, 7> wanted = tags.chkTag;
    if (!tags.byName.empty()) wanted.fill(false);
    std::vector<std::string> named(tags.byName.size());
    static thread_local TagText tagText;
    tagText.Clear();
    std::string_view line = state.ImportLine;
    for (;;) {
        TakeTag(line, tagText.NextAt(), values, wanted);
        if (!named.empty()) TakeNamedTag(line, tags.byName, named);
        tagText.Add(line);
        line = TrimBlanks(in.NextLine());
        if (in.Eof()) {
            state.ImportAtEnd = true;
            break;
        }
        if (!line.starts_with('[')) break;
    }
    // Made in room kept from game to game.
    static thread_local std::string name;
    MakeName(values, tagText.View(), named, tags, name);
    if (state.ImportAtEnd) return -1;

    walk.SetPly(0);
    game.GameMoves[0] = name;
    game.GameComments[0].assign(tagText.View());  // the slot was empty

    // The move text, up to the next tag line or the end of the file.
    while (!state.ImportAtEnd) {
        line = TrimBlanks(in.NextLine());
        if (in.Eof()) state.ImportAtEnd = true;
        if (line.starts_with('%')) continue;
        if (line.starts_with('[')) {
            state.ImportLine.assign(line);
            break;
        }
        walk.WalkLine(line);
    }
    return walk.EndGame();
}

}  // namespace vantrel::import
