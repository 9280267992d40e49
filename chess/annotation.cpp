#include "chess/annotation.h"

#include "library/text.h"

#include <array>
#include <cstddef>

namespace vantrel::chess {
namespace {

// Texts of the numeric annotation codes $1 to $139; slot 0 stays empty.
constexpr std::array<const char*, 140> kNagTexts = {
    "",
    "good Move",  // 1
    "poor Move",  // 2
    "very good move",  // 3
    "very poor move",  // 4
    "speculative Move",  // 5
    "questionable Move",  // 6
    "forced move (all others lose quickly)",  // 7
    "singular move (no reasonable alternatives)",  // 8
    "worst Move",  // 9
    "drawish position",  // 10
    "equal chances, quiet position",  // 11
    "equal chances, active position",  // 12
    "unclear position",  // 13
    "White has a slight advantage",  // 14
    "Black has a slight advantage",  // 15
    "White has a moderate advantage",  // 16
    "Black has a moderate advantage",  // 17
    "White has a decisive advantage",  // 18
    "Black has a decisive advantage",  // 19
    "White has a crushing advantage (Black should resign)",  // 20
    "Black has a crushing advantage (White should resign)",  // 21
    "White is in zugzwang",  // 22
    "Black is in zugzwang",  // 23
    "White has a slight space advantage",  // 24
    "Black has a slight space advantage",  // 25
    "White has a moderate space advantage",  // 26
    "Black has a moderate space advantage",  // 27
    "White has a decisive space advantage",  // 28
    "Black has a decisive space advantage",  // 29
    "White has a slight time (development) advantage",  // 30
    "Black has a slight time (development) advantage",  // 31
    "White has a moderate time (development) advantage",  // 32
    "Black has a moderate time (development) advantage",  // 33
    "White has a decisive time (development) advantage",  // 34
    "Black has a decisive time (development) advantage",  // 35
    "White has the initiative",  // 36
    "Black has the initiative",  // 37
    "White has a lasting initiative",  // 38
    "Black has a lasting initiative",  // 39
    "White has the attack",  // 40
    "Black has the attack",  // 41
    "White has insufficient compensation for material deficit",  // 42
    "Black has insufficient compensation for material deficit",  // 43
    "White has sufficient compensation for material deficit",  // 44
    "Black has sufficient compensation for material deficit",  // 45
    "White has more than adequate compensation for material deficit",  // 46
    "Black has more than adequate compensation for material deficit",  // 47
    "White has a slight center control advantage",  // 48
    "Black has a slight center control advantage",  // 49
    "White has a moderate center control advantage",  // 50
    "Black has a moderate center control advantage",  // 51
    "White has a decisive center control advantage",  // 52
    "Black has a decisive center control advantage",  // 53
    "White has a slight kingside control advantage",  // 54
    "Black has a slight kingside control advantage",  // 55
    "White has a moderate kingside control advantage",  // 56
    "Black has a moderate kingside control advantage",  // 57
    "White has a decisive kingside control advantage",  // 58
    "Black has a decisive kingside control advantage",  // 59
    "White has a slight queenside control advantage",  // 60
    "Black has a slight queenside control advantage",  // 61
    "White has a moderate queenside control advantage",  // 62
    "Black has a moderate queenside control advantage",  // 63
    "White has a decisive queenside control advantage",  // 64
    "Black has a decisive queenside control advantage",  // 65
    "White has a vulnerable first rank",  // 66
    "Black has a vulnerable first rank",  // 67
    "White has a well protected first rank",  // 68
    "Black has a well protected first rank",  // 69
    "White has a poorly protected king",  // 70
    "Black has a poorly protected king",  // 71
    "White has a well protected king",  // 72
    "Black has a well protected king",  // 73
    "White has a poorly placed king",  // 74
    "Black has a poorly placed king",  // 75
    "White has a well placed king",  // 76
    "Black has a well placed king",  // 77
    "White has a very weak pawn structure",  // 78
    "Black has a very weak pawn structure",  // 79
    "White has a moderately weak pawn structure",  // 80
    "Black has a moderately weak pawn structure",  // 81
    "White has a moderately strong pawn structure",  // 82
    "Black has a moderately strong pawn structure",  // 83
    "White has a very strong pawn structure",  // 84
    "Black has a very strong pawn structure",  // 85
    "White has poor knight placement",  // 86
    "Black has poor knight placement",  // 87
    "White has good knight placement",  // 88
    "Black has good knight placement",  // 89
    "White has poor bishop placement",  // 90
    "Black has poor bishop placement",  // 91
    "White has good bishop placement",  // 92
    "Black has good bishop placement",  // 93
    "White has poor rook placement",  // 94
    "Black has poor rook placement",  // 95
    "White has good rook placement",  // 96
    "Black has good rook placement",  // 97
    "White has poor queen placement",  // 98
    "Black has poor queen placement",  // 99
    "White has good queen placement",  // 100
    "Black has good queen placement",  // 101
    "White has poor piece coordination",  // 102
    "Black has poor piece coordination",  // 103
    "White has good piece coordination",  // 104
    "Black has good piece coordination",  // 105
    "White has played the opening very poorly",  // 106
    "Black has played the opening very poorly",  // 107
    "White has played the opening poorly",  // 108
    "Black has played the opening poorly",  // 109
    "White has played the opening well",  // 110
    "Black has played the opening well",  // 111
    "White has played the opening very well",  // 112
    "Black has played the opening very well",  // 113
    "White has played the middlegame very poorly",  // 114
    "Black has played the middlegame very poorly",  // 115
    "White has played the middlegame poorly",  // 116
    "Black has played the middlegame poorly",  // 117
    "White has played the middlegame well",  // 118
    "Black has played the middlegame well",  // 119
    "White has played the middlegame very well",  // 120
    "Black has played the middlegame very well",  // 121
    "White has played the ending very poorly",  // 122
    "Black has played the ending very poorly",  // 123
    "White has played the ending poorly",  // 124
    "Black has played the ending poorly",  // 125
    "White has played the ending well",  // 126
    "Black has played the ending well",  // 127
    "White has played the ending very well",  // 128
    "Black has played the ending very well",  // 129
    "White has slight counterplay",  // 130
    "Black has slight counterplay",  // 131
    "White has moderate counterplay",  // 132
    "Black has moderate counterplay",  // 133
    "White has decisive counterplay",  // 134
    "Black has decisive counterplay",  // 135
    "White has moderate time control pressure",  // 136
    "Black has moderate time control pressure",  // 137
    "White has severe time control pressure",  // 138
    "Black has severe time control pressure",  // 139
};

struct Mark {
    std::string_view text;
    const char* note;
};

// Tokens that are nothing but a mark or a result.
constexpr Mark kWholeMarks[] = {
    {"!", "A good move"},
    {"?", "A weak move!"},
    {"+", "Check"},
    {"#", "Checkmate"},
    {"=", "Both sides are considered equal here"},
    {"*", "Result of game is unknown"},
    {"++", "Checkmate"},
    {"!?", "An interesting move"},
    {"?!", "A dubious move"},
    {"??", "A blunder!"},
    {"1-0", "White wins"},
    {"1:0", "White wins"},
    {"0-1", "Black wins"},
    {"0:1", "Black wins"},
    {"+-+", "Draw"},
    {"+/=", "White has a slight advantage"},
    {"=/+", "Black has a slight advantage"},
    {"+/-", "White has a clear advantage"},
    {"-/+", "Black has a clear advantage"},
    {".5-.5", "Draw"},
    {"1/2-1/2", "Draw"},
    {"1/2:1/2", "Draw"},
};

// Marks behind a move, longest first; the first that fits is taken.
constexpr Mark kSuffixMarks[] = {
    {"+-+", "Draw"},
    {"+/=", "White has a slight advantage"},
    {"=/+", "Black has a slight advantage"},
    {"+/-", "White has a clear advantage"},
    {"-/+", "Black has a clear advantage"},
    {"++", "Checkmate"},
    {"!?", "An interesting move"},
    {"?!", "A dubious move"},
    {"??", "A blunder!"},
    {"!", "A good move"},
    {"+", "Check"},
    {"#", "Checkmate"},
    {"?", "A weak move"},
    {"=", "Both sides are considered equal here"},
    {"*", "Result of game is unknown"},
};

// Forms that start like a move number but are castling or a result.
constexpr std::string_view kProtectedWhole[] = {"1-0", "1:0", "0-1", "0:1", ".5-.5", "1/2:1/2", "1/2-1/2"};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsProtected(std::string_view s) {
    // Every protected token starts with one of these.
    if (s.front() != '0' && s.front() != '1' && s.front() != '.') return false;
    if (s.starts_with("00") || s.starts_with("0-0")) return true;
    for (std::string_view p : kProtectedWhole)
        if (s == p) return true;
    return false;
}

}  // namespace

bool ParseToken(std::string_view token, std::string& move, std::string& note) {
    move.clear();
    note.clear();
    std::string_view s = text::TrimBlanks(token);
    if (s.empty()) return false;
    if (s.front() == '$') {
        NagText(s, note);
        return false;
    }
    if (!IsProtected(s)) {
        // A move number in front, with or without its dots.
        if (IsDigit(s.front())) {
            while (!s.empty() && IsDigit(s.front())) s.remove_prefix(1);
            if (s.empty()) return false;
        }
        if (s.front() == '.') {
            while (!s.empty() && s.front() == '.') s.remove_prefix(1);
            if (s.empty()) return false;
        }
    }
    // Every whole mark starts with one of these and every mark behind a move
    // ends with one of these; a plain move ("Nf3", "exd5", "o-o") passes
    // both tests in a glance.
    constexpr std::string_view kWholeFirst = "!?+#=*10-.";
    constexpr std::string_view kSuffixLast = "!?+#=*-";
    if (kWholeFirst.find(s.front()) != std::string_view::npos) {
        for (const Mark& m : kWholeMarks) {
            if (s == m.text) {
                note = m.note;
                return false;
            }
        }
    }
    if (s.size() == 1) return false;
    std::string_view bare = s;
    if (kSuffixLast.find(s.back()) != std::string_view::npos) {
        for (const Mark& m : kSuffixMarks) {
            if (s.ends_with(m.text)) {
                note = m.note;
                bare = s.substr(0, s.size() - m.text.size());
                break;
            }
        }
    }
    if (bare.size() < 2 || bare.size() > 6) return false;
    move.assign(bare);
    return true;
}

void NagText(std::string_view token, std::string& note) {
    note.clear();
    if (token.empty()) return;
    std::string_view digits = token.substr(1);
    if (digits.empty()) return;
    int n = 0;
    for (char c : digits) {
        if (!IsDigit(c)) return;
        if (n < 1000) n = n * 10 + (c - '0');  // anything this large is out of range anyway
    }
    if (n >= 1 && n <= 139) note = kNagTexts[static_cast<size_t>(n)];
}

}  // namespace vantrel::chess
