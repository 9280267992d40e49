// Small text helpers every part shares: blanks off the ends of a name or a
// line, and the parts of a node's text. Header-only, so that the chess code
// below the library may use them too.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace vantrel::text {

// Blanks off both ends, and nothing else: a tab or any other character stays,
// as the wizard's text boxes are trimmed.
inline std::string_view TrimBlanks(std::string_view s) {
    size_t b = 0, e = s.size();
    while (b < e && s[b] == ' ') ++b;
    while (e > b && s[e - 1] == ' ') --e;
    return s.substr(b, e - b);
}

inline void TrimBlanksInPlace(std::string& s) {
    size_t e = s.size();
    while (e > 0 && s[e - 1] == ' ') --e;
    if (e != s.size()) s.resize(e);
    size_t b = 0;
    while (b < s.size() && s[b] == ' ') ++b;
    if (b != 0) s.erase(0, b);
}

// Empty, or blanks only.
inline bool IsBlank(std::string_view s) {
    return std::all_of(s.begin(), s.end(), [](char c) { return c == ' '; });
}

// A node's text is its move; the node that opens a game's own line adds
// ": " and the game's name.
inline constexpr std::string_view kNameSeparator = ": ";

struct NodeTextParts {
    std::string_view move;  // up to the first colon, or the whole text
    std::string_view rest;  // behind the colon, its blank included; empty without a colon
    bool named = false;     // the text holds a colon

    // The game's name: what follows the colon and the one character after it.
    std::string_view name() const { return rest.substr(std::min<size_t>(1, rest.size())); }
};

inline NodeTextParts SplitNodeText(std::string_view text) {
    const size_t colon = text.find(':');
    if (colon == std::string_view::npos) return {text, {}, false};
    return {text.substr(0, colon), text.substr(colon + 1), true};
}

}  // namespace vantrel::text
