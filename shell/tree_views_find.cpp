// Find and Find Next of the register: which library is searched, and the
// setup window that gives the position.
#include <QMdiArea>
#include <QMdiSubWindow>

#include "board/search_window.h"
#include "library/ui/tree_window.h"
#include "widgets/dialogs.h"
#include "widgets/forms.h"
#include "shell/main_frame.h"
#include "shell/tree_views.h"

using namespace vantrel;

namespace {

void NoOpenLibraries() { ui::MsgBox(QStringLiteral("No open libraries")); }

// Brings a library window to the front of the frame and gives its tree the
// focus.
void FocusLibrary(MDIVantrel& frame, frmTreeView* form) {
    if (QMdiSubWindow* sub = form->SubWindow()) frame.MdiArea()->setActiveSubWindow(sub);
    form->FocusTree();
}

}  // namespace

void cTreeView::Find() {
    if (ActiveKey.isEmpty()) {
        NoOpenLibraries();
        return;
    }
    m_SearchCancelled = false;
    {
        // The user may make another library the active one in the dialog.
        FrmSearchTree dialog(*this, &frame_);
        dialog.Form_Load();
        ui::ExecModal(dialog);
    }
    if (m_SearchCancelled) return;
    frmTreeView* form = Active();
    if (!form) return;
    FocusLibrary(frame_, form);
    form->Find(m_SearchBoard);
}

void cTreeView::FindNext() {
    if (ActiveKey.isEmpty()) {
        NoOpenLibraries();
        return;
    }
    frmTreeView* form = Active();
    if (form && form->CurrentSearch()) {
        form->FindNext();
    } else {
        Find();
    }
}
