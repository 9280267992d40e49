#include "shell/tree_views.h"

#include <QMdiArea>
#include <QMdiSubWindow>

#include "board/board_window.h"
#include "library/ui/comments_moves.h"
#include "library/ui/tree_window.h"
#include "widgets/dialogs.h"
#include "widgets/forms.h"
#include "print/ui/print_move_list.h"
#include "shell/main_frame.h"

using namespace vantrel;

namespace {

// Places a library window (its sub-window in the frame) in twips. A size
// that comes to nothing keeps one pixel, so the window stays a window.
void Place(frmTreeView* form, const Placement& p) {
    QWidget* outer = forms::OuterWindow(form);
    if (outer->isMinimized()) outer->showNormal();
    outer->setGeometry(TwipsToPixels(p.left), TwipsToPixels(p.top), std::max(1, TwipsToPixels(p.width)),
                       std::max(1, TwipsToPixels(p.height)));
    form->show();
    outer->show();
    outer->raise();
}

int BoardWidthTwips() { return PixelsToTwips(forms::OuterWindow(&forms::Board())->width()); }

}  // namespace

void cTreeView::ExpandNode() {
    if (frmTreeView* form = Active()) form->ExpandNode();
}

void cTreeView::CollapseAll() {
    if (frmTreeView* form = Active()) form->ExpandTree(false);
}

void cTreeView::ExpandAll() {
    if (frmTreeView* form = Active()) form->ExpandTree(true);
}

void cTreeView::PrintMoveList() {
    if (frmTreeView* form = Active()) print::PrintMoveList(form->Contents(), form->CurrentNode);
}

int16_t cTreeView::GetAllLibraries(QStringList& szLibArray, QStringList& szTagArray) const {
    szLibArray.clear();
    szTagArray.clear();
    const int16_t count = Count();
    // With one library or none there is nothing to choose from.
    if (count < 2) return count;
    for (frmTreeView* form : Libraries) {
        szLibArray << form->Caption();
        szTagArray << form->Tag;
    }
    return count;
}

std::string cTreeView::CurrentBoard() const {
    if (frmTreeView* form = Active()) return form->CurrentBoard();
    return std::string();
}

void cTreeView::OpenLib(const QString& szLibPath) {
    const QString key = NewTreeView();
    if (key.isEmpty()) return;
    ShowTreeView(key);
    // A load that fails has taken its window away by itself.
    if (frmTreeView* form = Item(key)) form->OpenLibrary(szLibPath);
}

void cTreeView::ArrangeWindows() { PlaceAll(false); }

void cTreeView::LayerWindows() { PlaceAll(true); }

void cTreeView::PlaceAll(bool layered) {
    if (Libraries.isEmpty()) return;
    const auto plan = PlanLibraryWindows(Count(), frame_.ScaleWidth(), frame_.ScaleHeight(), BoardWidthTwips(), layered);
    // In the order of opening, so that the newest ends in front.
    for (int i = 0; i < Libraries.size(); ++i) Place(Libraries[i], plan[i]);
}

void cTreeView::Remove(frmTreeView* fTreeView) {
    if (!fTreeView) return;
    const QString key = fTreeView->Tag;
    for (int i = 0; i < Libraries.size(); ++i) {
        if (Libraries[i]->Tag == key) {
            Libraries.removeAt(i);
            break;
        }
    }
    if (key != ActiveKey) return;
    if (Libraries.isEmpty()) {
        // The shared windows go back to how they are at the start.
        ActiveKey.clear();
        forms::Comments().SetText(QString());
        forms::Moves().Clear();
        frame_.m_reset_board_Click();
        return;
    }
    // The library opened most recently of those left.
    ActiveKey = Libraries.last()->Tag;
}

void cTreeView::SetAsActive(frmTreeView* fTreeView) {
    if (fTreeView) ActiveKey = fTreeView->Tag;
}

QString cTreeView::LibRemarks() const {
    if (frmTreeView* form = Active()) return form->LibRemarks();
    return QStringLiteral("No open libraries");
}

frmTreeView* cTreeView::Item(const QString& key) const {
    if (key.isEmpty()) return nullptr;
    for (frmTreeView* form : Libraries)
        if (form->Tag == key) return form;
    return nullptr;
}

void cTreeView::Forget(frmTreeView* fTreeView) {
    Libraries.removeAll(fTreeView);
    if (!Item(ActiveKey)) ActiveKey = Libraries.isEmpty() ? QString() : Libraries.last()->Tag;
}

QString cTreeView::NewTreeView() {
    // Keys are never reused in one run; the counter is a 16-bit number.
    if (m_WindowCounter >= INT16_MAX) {
        ui::MsgBox(QStringLiteral("Vantrel cannot open any more library windows in this session.\n\n"
                                  "Please close Vantrel and start it again."),
                   ui::Buttons::Ok, ui::Icon::Exclamation);
        return QString();
    }
    ++m_WindowCounter;
    const QString key = vantrel::forms::WindowKey(m_WindowCounter);
    auto* form = new frmTreeView();
    form->Tag = key;
    Libraries.append(form);
    frame_.AdoptLibraryWindow(form);
    SetActive(key);
    return key;
}

void cTreeView::ShowTreeView(const QString& key) {
    frmTreeView* form = Item(key);
    if (!form) return;
    QWidget* board = forms::OuterWindow(&forms::Board());
    const bool boardShown = board->isVisible() && !forms::Board().isHidden();
    const int innerW = frame_.ScaleWidth();
    const int width = boardShown ? innerW - PixelsToTwips(board->width()) : innerW;
    Place(form, Placement{0, 0, width, frame_.ScaleHeight()});
}
