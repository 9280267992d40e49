// Find and Find Next of a library window: the walk over the node numbers and
// the showing of the node it ends on.
#include "library/find.h"
#include "library/ui/tree_window.h"
#include "widgets/dialogs.h"

using namespace vantrel;

namespace {

void NoMatch() { ui::MsgBox(QStringLiteral("No match found")); }

}  // namespace

void frmTreeView::Find(const std::string& szBoard) {
    szSearchBoard = szBoard;
    iSearchStart = static_cast<int16_t>(GetSelectedIndex());
    // From the node after the selected one to the last, then from the first
    // up to the selected node itself, which is tried last.
    int node = library::FindFromStart(contents_.tree, szSearchBoard, iSearchStart);
    if (node <= 0) {
        NoMatch();
        node = iSearchStart;
    }
    ShowNode(node);
}

void frmTreeView::FindNext() {
    // The search goes on from wherever the selection stands now and ends at
    // the node where it began.
    const int c = GetSelectedIndex();
    int node = library::FindNextFrom(contents_.tree, szSearchBoard, c, iSearchStart);
    if (node <= 0) {
        NoMatch();
        node = c;
    }
    ShowNode(node);
}

void frmTreeView::ShowNode(int node) {
    // A tree still loading may not hold the node yet.
    if (!contents_.tree.Exists(node)) return;
    SelectNode(node);
    tvTreeView_NodeClick(node);
    FocusTree();
}
