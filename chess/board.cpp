#include "chess/board.h"

#include <cctype>

namespace vantrel::chess {

ImportBoard::ImportBoard() {
    for (auto& row : squares_)
        for (auto& sq : row) {
            sq[0] = 'n';
            sq[1] = 'o';
        }
    ResetImportBoard();
}

std::string ImportBoard::Code(int rank, int file) const {
    if (!OnBoard(rank, file)) return "no";
    return std::string(squares_[rank][file], 2);
}

void ImportBoard::SetCode(int rank, int file, std::string_view code) {
    if (!OnBoard(rank, file) || code.size() != 2) return;
    squares_[rank][file][0] = code[0];
    squares_[rank][file][1] = code[1];
}

void ImportBoard::ResetImportBoard() {
    static constexpr char kBack[] = "rnbqkbnr";
    for (int file = 1; file <= 8; ++file) {
        for (int rank = 1; rank <= 8; ++rank) {
            char* sq = squares_[rank][file];
            if (rank == 1 || rank == 8) {
                sq[0] = rank == 1 ? 'w' : 'b';
                sq[1] = kBack[file - 1];
            } else if (rank == 2 || rank == 7) {
                sq[0] = rank == 2 ? 'w' : 'b';
                sq[1] = 'p';
            } else {
                sq[0] = 'n';
                sq[1] = 'o';
            }
        }
    }
}

char CodeToLayoutChar(std::string_view code) {
    if (code.size() != 2 || code == "no") return '0';
    if (code[0] == 'w') return static_cast<char>(std::toupper(static_cast<unsigned char>(code[1])));
    return code[1];
}

std::string ImportBoard::BoardToLayout() const {
    std::string layout;
    BoardToLayout(layout);
    return layout;
}

void ImportBoard::BoardToLayout(std::string& layout) const {
    layout.resize(64);
    char* out = layout.data();
    for (int rank = 1; rank <= 8; ++rank)
        for (int file = 1; file <= 8; ++file) {
            // As CodeToLayoutChar, without the string view and the locale.
            const char colour = squares_[rank][file][0];
            const char piece = squares_[rank][file][1];
            if (colour == 'n' && piece == 'o')
                *out++ = '0';
            else if (colour == 'w' && piece >= 'a' && piece <= 'z')
                *out++ = static_cast<char>(piece - 'a' + 'A');
            else
                *out++ = piece;
        }
}

}  // namespace vantrel::chess
