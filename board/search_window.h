// FrmSearchTree: "Vantrel - Setup board position to search....", the modal
// dialog in which the user sets up the position that Find looks for.
//
// The position under edit lives in a SetupBoard model (square pictures and
// tags); this window draws it on a BoardView and turns drag-and-drop events
// into the model's drops. Pieces come from a palette of 12, go between the
// squares, and leave the board through the trash.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QStringList>
#include <array>
#include <cstdint>
#include <string>

#include "chess/setup_board.h"

class BoardView;
class QComboBox;
class QPushButton;


namespace vantrel::board {
// What the setup window reads of the open libraries and what it tells them:
// the board of the active one, the list to choose from (captions and keys,
// both empty with fewer than two), the library chosen, and how the dialog
// ended.
class SearchLibraries {
public:
    virtual ~SearchLibraries() = default;
    virtual std::string CurrentBoard() const = 0;
    virtual int16_t GetAllLibraries(QStringList& captions, QStringList& keys) const = 0;
    virtual void SetActive(const QString& key) = 0;
    virtual void SetSearchBoard(const std::string& board) = 0;
    virtual void SetSearchCancelled(bool cancelled) = 0;
};
}  // namespace vantrel::board

class FrmSearchTree : public QDialog {
    Q_OBJECT
public:
    explicit FrmSearchTree(vantrel::board::SearchLibraries& libraries, QWidget* parent = nullptr);
    ~FrmSearchTree() override;

    // The position the dialog draws when it opens or when a button replaces
    // the board, in layout order. One for the whole run: empty at the start,
    // and closing the dialog does not clear it.
    static inline std::string szSetupBoard;

    // Opening: Initialize, SetLabels, the tree's current board, that board
    // into szSetupBoard if it is still empty, DisplayBoard.
    void Form_Load();

    void Initialize();       // the palette's pictures, the library selector
    void LoadLibraryList();  // shown only with two libraries or more
    void SetLabels();
    void DisplayBoard();  // szSetupBoard onto the squares and their tags
    void ResetBoard();    // the start position into szSetupBoard
    void ClearBoard();    // 64 empty squares into szSetupBoard
    void ReadBoard();     // szSetupBoard from the 64 square tags

    void cmdCurrent_Click();
    void cmdReset_Click();
    void cmdClear_Click();
    void cmdSearch_Click();
    void cmdCancel_Click();
    void cboLibSelect_Click();

    // A drop on square Index, and a drop on the trash.
    void Image2_DragDrop(int Index, vantrel::board::DragSource Source);
    void imgTrash_DragDrop(vantrel::board::DragSource Source);

    const vantrel::board::SetupBoard& Squares() const { return squares_; }
    BoardView* Board() const { return board_; }

    // Controls, by their names.
    std::array<QLabel*, vantrel::board::kPaletteSize> Palette{};  // imgWP .. imgBK
    QLabel* imgTrash = nullptr;
    QLabel* lblLibSelect = nullptr;
    QComboBox* cboLibSelect = nullptr;
    QPushButton* cmdReset = nullptr;
    QPushButton* cmdCurrent = nullptr;
    QPushButton* cmdClear = nullptr;
    QPushButton* cmdSearch = nullptr;
    QPushButton* cmdCancel = nullptr;

    // The drag-and-drop payload of a piece that leaves this dialog, and its
    // reading back: only drags that began in this dialog are taken.
    static constexpr const char* kMimeType = "application/x-vantrel-setup-piece";
    QByteArray DragPayload(vantrel::board::DragSource source) const;
    bool ReadPayload(const QByteArray& payload, vantrel::board::DragSource& source) const;

    // The picture a drag carries, sized for the squares.
    QPixmap DragPixmap(char layoutChar) const;

protected:
    // The close box counts as Cancel. Esc does nothing: no button of the
    // dialog is its cancel button.
    void reject() override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void SyncSquares();  // the view's pictures from the model

    vantrel::board::SearchLibraries& libraries_;
    vantrel::board::SetupBoard squares_;
    BoardView* board_ = nullptr;
};

namespace vantrel::board {
// The waste-bin picture of the trash, transparent around the bin.
QPixmap TrashPixmap(int logicalSize, qreal devicePixelRatio = 1.0);
}  // namespace vantrel::board
