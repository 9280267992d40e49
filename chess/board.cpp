#include "chess/board.h"

#include <cctype>
#include <cstring>

namespace vantrel::chess {

ImportBoard::ImportBoard(int) {
    for (auto& row : squares_)
        for (auto& sq : row) {
            sq[0] = 'n';
            sq[1] = 'o';
        }
}

ImportBoard::ImportBoard() : ImportBoard(0) { ResetImportBoard(); }

std::string ImportBoard::Code(int rank, int file) const {
    if (!OnBoard(rank, file)) return "no";
    return std::string(squares_[rank][file], 2);
}

void ImportBoard::SetCode(int rank, int file, std::string_view code) {
    if (!OnBoard(rank, file) || code.size() != 2) return;
    Put(rank, file, code[0], code[1]);
}

void ImportBoard::ResetImportBoard() {
    // Every game starts here: the squares are copied from a board set up once.
    static const ImportBoard kInitial = [] {
        ImportBoard board(0);
        const std::string_view kBack = kInitialLayout.substr(56);  // Black's back rank, the letters in lower case
        for (int file = 1; file <= 8; ++file) {
            for (int rank = 1; rank <= 8; ++rank) {
                if (rank == 1 || rank == 8)
                    board.Put(rank, file, rank == 1 ? 'w' : 'b', kBack[file - 1]);
                else if (rank == 2 || rank == 7)
                    board.Put(rank, file, rank == 2 ? 'w' : 'b', 'p');
                else
                    board.Put(rank, file, 'n', 'o');
            }
        }
        return board;
    }();
    std::memcpy(squares_, kInitial.squares_, sizeof squares_);
    std::memcpy(layout_, kInitial.layout_, sizeof layout_);
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
