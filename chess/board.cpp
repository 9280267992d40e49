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

void ImportBoard::Put(int rank, int file, char colour, char piece) {
    squares_[rank][file][0] = colour;
    squares_[rank][file][1] = piece;
    // As CodeToLayoutChar, without the string view and the locale.
    char c = piece;
    if (colour == 'n' && piece == 'o')
        c = '0';
    else if (colour == 'w' && piece >= 'a' && piece <= 'z')
        c = static_cast<char>(piece - 'a' + 'A');
    layout_[(rank - 1) * 8 + (file - 1)] = c;
}

std::string ImportBoard::Code(int rank, int file) const {
    if (!OnBoard(rank, file)) return "no";
    return std::string(squares_[rank][file], 2);
}

void ImportBoard::SetCode(int rank, int file, std::string_view code) {
    if (!OnBoard(rank, file) || code.size() != 2) return;
    Put(rank, file, code[0], code[1]);
}

void ImportBoard::ResetImportBoard() {
    const std::string_view kBack = kInitialLayout.substr(56);  // Black's back rank, the letters in lower case
    for (int file = 1; file <= 8; ++file) {
        for (int rank = 1; rank <= 8; ++rank) {
            if (rank == 1 || rank == 8)
                Put(rank, file, rank == 1 ? 'w' : 'b', kBack[file - 1]);
            else if (rank == 2 || rank == 7)
                Put(rank, file, rank == 2 ? 'w' : 'b', 'p');
            else
                Put(rank, file, 'n', 'o');
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

}  // namespace vantrel::chess
