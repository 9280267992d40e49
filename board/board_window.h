// frmBoard: "Current Board", the one board of the program.
#pragma once

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

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    std::string m_Board;
    BoardView* view_ = nullptr;
};
