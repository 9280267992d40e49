// frmBoard: "Current Board", the one board of the program.
#pragma once

#include <QPoint>
#include <QWidget>
#include <string>

class BoardView;

class frmBoard : public QWidget {
    Q_OBJECT
public:
    explicit frmBoard(QWidget* parent = nullptr);

    const std::string& Board() const { return m_Board; }
    void SetBoard(const std::string& szBoard) { m_Board = szBoard; }  // draws nothing
    void ResetBoard();    // the start position into Board and the square table
    void DisplayBoard();  // Board onto the 64 squares
    void SetLabels();     // the 16 captions for bReverseSides

    BoardView* View() const { return view_; }

signals:
    // The right button on a square, for the Board menu.
    void menuRequested(QPoint globalPos);
    // Closed by the user: out of sight, still loaded.
    void hiddenByUser();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    std::string m_Board;
    BoardView* view_ = nullptr;
};

namespace vantrel::forms {
// The board window of the run, made on first use.
frmBoard& Board();
}  // namespace vantrel::forms
