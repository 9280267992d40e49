#include "import/walk.h"

#include "chess/annotation.h"

namespace vantrel::import {

bool ReadRemarks(ImportState& state, char head, bool skipLeadingBlanks) {
    state.ImportFirstGame = false;
    std::string& line = state.ImportLine;
    for (;;) {
        state.ImportFile->ReadLine(line);
        TrimBlanksInPlace(line);
        if (state.ImportFile->Eof()) {
            state.ImportAtEnd = true;
            return false;
        }
        if (line.starts_with(head)) return true;
        if (!skipLeadingBlanks || !line.empty() || !state.ImportRemarks.empty()) {
            state.ImportRemarks += line;
            state.ImportRemarks += "\r\n";
        }
    }
}

void MoveWalker::Start(GameRecord& game) {
    game_ = &game;
    UsePgnRules();
    ply_ = -1;
    plyLimit_ = 0;
    cut_ = false;
    line_.clear();
    token_.clear();
    pending_.clear();
    move_.clear();
    note_.clear();
    inComment_ = inVariation_ = false;
    depth_ = 0;
}

void MoveWalker::UsePgnRules() {
    if (braces_) return;
    pgn_ = true;
    open_ = "{";
    close_ = "}";
    SetStops();
}

void MoveWalker::UseSanRules(std::string_view commentStart, std::string_view commentEnd) {
    pgn_ = false;
    open_.assign(commentStart);
    close_.assign(commentEnd);
    SetStops();
}

void MoveWalker::SetStops() {
    braces_ = pgn_ && open_ == "{";
    stops_.fill(false);
    stops_[' '] = true;
    if (open_.size() == 1 || open_.size() == 2) stops_[static_cast<unsigned char>(open_[0])] = true;
    if (pgn_) stops_['('] = stops_[';'] = true;
}

// How many characters the mark covers if it stands at i, else 0.
size_t MoveWalker::Matches(const std::string& mark, size_t i) const {
    if (mark.size() == 1) return line_[i] == mark[0] ? 1 : 0;
    if (mark.size() == 2 && i + 1 < line_.size() && line_[i] == mark[0] && line_[i + 1] == mark[1]) return 2;
    return 0;
}

namespace {

// What a character tells of a token that it starts or ends.
enum : uint8_t { kLetter = 1, kDigit = 2, kMarkBehind = 4 };
constexpr std::array<uint8_t, 256> kCharClass = [] {
    std::array<uint8_t, 256> classes{};
    for (int c = 'a'; c <= 'z'; ++c) classes[static_cast<size_t>(c)] |= kLetter;
    for (int c = 'A'; c <= 'Z'; ++c) classes[static_cast<size_t>(c)] |= kLetter;
    for (int c = '0'; c <= '9'; ++c) classes[static_cast<size_t>(c)] |= kDigit;
    for (const char c : std::string_view("!?+#=*-")) classes[static_cast<unsigned char>(c)] |= kMarkBehind;
    return classes;
}();

uint8_t ClassOf(char c) { return kCharClass[static_cast<unsigned char>(c)]; }

// A token that ParseToken would take as it stands for a move with no mark:
// a letter first, a length a move can have (2 to 6), and no mark behind it.
inline bool IsPlainMove(std::string_view token) {
    return token.size() - 2 <= 4 && (ClassOf(token.front()) & kLetter) != 0 &&
           (ClassOf(token.back()) & kMarkBehind) == 0;
}

// A move number, such as "12." or "12...": digits and dots and nothing
// else. "00..." is castling, not a number.
inline bool IsMoveNumber(std::string_view token) {
    if (token.empty() || (ClassOf(token.front()) & kDigit) == 0 || token.starts_with("00")) return false;
    size_t i = 1;
    while (i < token.size() && (ClassOf(token[i]) & kDigit) != 0) ++i;
    while (i < token.size() && token[i] == '.') ++i;
    return i == token.size();
}

// The results that end nearly every game, with the notes ParseToken gives
// them: worked out once.
struct KnownNote {
    std::string_view token;
    std::string note;
};
const std::array<KnownNote, 4>& Results() {
    static const std::array<KnownNote, 4> results = [] {
        std::array<KnownNote, 4> known{{{"1-0", {}}, {"0-1", {}}, {"1/2-1/2", {}}, {"*", {}}}};
        std::string move;
        for (KnownNote& k : known) chess::ParseToken(k.token, move, k.note);
        return known;
    }();
    return results;
}

// The result a token is, if it is one of them.
const KnownNote* KnownResult(std::string_view token) {
    const auto& results = Results();
    switch (token.size()) {
    case 1: return token[0] == '*' ? &results[3] : nullptr;
    case 3:
        if (token[1] != '-') return nullptr;
        if (token[0] == '1' && token[2] == '0') return &results[0];
        if (token[0] == '0' && token[2] == '1') return &results[1];
        return nullptr;
    case 7: return token == "1/2-1/2" ? &results[2] : nullptr;
    default: return nullptr;
    }
}

}  // namespace

size_t MoveWalker::WalkPlain(std::string_view text) {
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const char* p = begin;
    while (p < end) {
        if (*p == ' ') {
            ++p;
            continue;
        }
        const char* q = p + 1;
        while (q < end && !MayStop(*q)) ++q;
        if (q < end && *q != ' ') break;  // a comment or a variation opens
        const std::string_view token(p, static_cast<size_t>(q - p));
        if ((ClassOf(*p) & kLetter) != 0) {
            if (!IsPlainMove(token) || ply_ >= kMaxPly) break;
            game_->GameMoves[++ply_].AssignShort(p, token.size());
            p = q;
            continue;
        }
        if (IsMoveNumber(token)) {
            p = q;
            continue;
        }
        // A result: its note replaces the comment of the last ply.
        const KnownNote* result = KnownResult(token);
        if (result == nullptr || ply_ < 0) break;
        game_->GameComments[ply_].assign(result->note);
        p = q;
    }
    return static_cast<size_t>(p - begin);
}

void MoveWalker::WalkLine(std::string_view text) {
    // Past the plies kept nothing of the game is stored any more: its lines
    // need no walk.
    if (cut_) return;
    // The blank behind the line ends a token standing at its end, and every
    // line of a comment ends in a blank.
    if (!inComment_ && !inVariation_ && braces_) {
        // Plain move text, the usual line, is cut at its blanks where it
        // stands; the walk below takes over at the first character that
        // opens a comment or a variation.
        size_t i = 0;
        while (i < text.size()) {
            // While nothing is pending, the tight walk goes as far as it
            // can; the rest here takes the token it stops at.
            if (token_.empty() && pending_.empty() && plyLimit_ == 0) {
                i += WalkPlain(text.substr(i));
                if (i == text.size()) return;
            }
            const char c = text[i];
            if (c == ' ') {
                EndToken();
                if (cut_) return;
                ++i;
                continue;
            }
            if (MayStop(c)) break;  // a comment or a variation opens
            size_t end = i + 1;
            while (end < text.size() && !MayStop(text[end])) ++end;
            if (token_.empty() && (end == text.size() || text[end] == ' ')) {
                // A whole token, ended by its blank or the one behind the
                // line: taken where it stands.
                EndToken(text.substr(i, end - i));
                if (cut_ || end == text.size()) return;
                i = end + 1;
                continue;
            }
            token_.append(text.data() + i, end - i);
            i = end;
        }
        if (i == text.size()) {
            EndToken();  // the blank behind the line
            return;
        }
        text.remove_prefix(i);
    }
    line_.assign(text);
    line_.push_back(' ');
    const size_t last = line_.size() - 1;
    if ((inComment_ || inVariation_) && !IsBlank(pending_)) pending_.push_back(' ');

    for (size_t i = 0; i <= last; ++i) {
        const char c = line_[i];
        if (inComment_) {
            if (size_t n = Matches(close_, i)) {
                inComment_ = false;
                Attach(pending_);
                pending_.clear();
                i += n - 1;
            } else {
                pending_.push_back(c);
                if (i == last) pending_ += "\r\n";
            }
            continue;
        }
        if (inVariation_) {
            if (c == '(') {
                ++depth_;
                pending_.push_back(c);
            } else if (c == ')') {
                --depth_;
                pending_.push_back(c);
                if (depth_ < 1) {
                    inVariation_ = false;
                    Attach(pending_);
                    pending_.clear();
                }
            } else {
                pending_.push_back(c);
                if (i == last) pending_ += "\r\n";
            }
            continue;
        }
        if (size_t n = c == open_[0] ? Matches(open_, i) : 0) {
            inComment_ = true;
            i += n - 1;
            continue;
        }
        if (pgn_ && c == '(') {
            ++depth_;
            inVariation_ = true;
            pending_.assign("(");
            continue;
        }
        if (pgn_ && c == ';') {
            // The rest of the line, with its closing blank, is a comment. An
            // open token stays open and goes on on the next line.
            Attach(std::string_view(line_).substr(i + 1));
            return;
        }
        if (c == ' ') {
            EndToken();
            if (cut_) return;
            continue;
        }
        // The token runs on up to the next character that may end it or
        // open a comment or a variation.
        size_t end = i + 1;
        while (end <= last && !MayStop(line_[end])) ++end;
        token_.append(line_, i, end - i);
        i = end - 1;
    }
}

void MoveWalker::EndToken() {
    EndToken(token_);
    token_.clear();
}

void MoveWalker::EndToken(std::string_view token) {
    if (!token.empty()) {  // a token never holds a blank
        // A plain move is its own text and a move number nothing; anything
        // else goes through ParseToken.
        const bool plain = IsPlainMove(token);
        bool isMove = plain;
        if (plain || IsMoveNumber(token))
            note_.clear();
        else
            isMove = Parse(token);
        if (isMove) {
            if (plyLimit_ > 0 && ply_ >= plyLimit_) {
                cut_ = true;  // past the plies kept: this move and all that follows go
            } else {
                if (ply_ >= kMaxPly) throw Error("Subscript out of range", errors::kSubscriptOutOfRange);
                ++ply_;
                game_->GameMoves[ply_] = plain ? token : std::string_view(move_);
            }
        }
        if (cut_) {
            pending_.clear();
            return;
        }
        if (!note_.empty()) pending_ += note_;
    }
    if (!pending_.empty()) {
        // A note replaces what the ply's comment held.
        game_->GameComments[ply_].swap(pending_);
        pending_.clear();
    }
}

// ParseToken, into move_ and note_.
bool MoveWalker::Parse(std::string_view token) {
    for (const Parsed& known : parsed_) {
        if (known.token == token) {
            move_.clear();
            note_ = known.note;
            return false;
        }
    }
    if (chess::ParseToken(token, move_, note_)) return true;
    Parsed& noted = parsed_[nextParsed_++ % parsed_.size()];
    noted.token.assign(token);
    noted.note = note_;
    return false;
}

void MoveWalker::Attach(std::string_view text) {
    if (cut_) return;
    std::string& slot = game_->GameComments[ply_];
    if (!slot.empty()) slot += "\r\n";
    slot += text;
}

int16_t MoveWalker::EndGame() {
    if (ply_ >= 0 && !cut_ && !IsBlank(pending_)) game_->GameComments[ply_] = pending_;
    game_->used = ply_ > 0 ? ply_ : int16_t{0};
    pending_.clear();
    token_.clear();
    inComment_ = inVariation_ = false;
    depth_ = 0;
    return ply_;
}

}  // namespace vantrel::import
