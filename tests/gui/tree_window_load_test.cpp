// Loading a library into its window: what the window holds afterwards, and
// the ways a load fails.
#include "gui_test_support.h"

namespace {

std::string Layout(char c, int square = 28) {
    std::string s = kStart;
    s[static_cast<size_t>(square)] = c;
    return s;
}

// The game list's entries, each as "name=node".
QStringList ListEntries(const frmTreeView& form) {
    QStringList entries;
    for (int i = 0; i < form.cboListGames->count(); ++i)
        entries << form.cboListGames->itemText(i) + "=" + form.cboListGames->itemData(i).toString();
    return entries;
}

QString ImageKey(const frmTreeView& form, int node) {
    auto* model = static_cast<library::TreeItemModel*>(form.tvTreeView->model());
    return model->data(model->IndexOf(node), library::TreeItemModel::ImageKeyRole).toString();
}

class LoadTest : public FrameTest {
protected:
    // A library that is open already, which no failure may disturb.
    frmTreeView* OpenBystander() {
        LibraryBuilder lib("Bystander");
        lib.Add(1, 0, "d4", "bystander", false, Layout('Q'));
        return Open(lib, "bystander.vnb");
    }
};

}  // namespace

TEST_F(LoadTest, ALoadedLibraryShowsItsFirstNodeEverywhere) {
    StartFrame();
    LibraryBuilder lib("Open \x96 Games");  // text outside ASCII is Windows-1252
    lib.Game(1, 0, "e4", "King's pawn", "  The \x80 move.  ", Layout('P'))
        .Add(2, 1, "e5", "", false, Layout('p', 36))
        .Game(3, 1, "c5", "Sicilian", "   ")
        .Add(4, 2, "Nf3: no game here", "", false)
        .Game(5, 0, "d4", "zebra")
        .Game(6, 0, "c4", "English")
        .Game(7, 5, "d5", "english")
        .Game(8, 5, "Nf6", "Alpha")
        .Add(9, 8, "Bg5: ", "", true)  // one character after the colon: an empty name
        .Game(10, 0, "Nf3", "R\xe9ti")
        .Game(11, 10, "d5", "Ruy");
    frmTreeView* form = Open(lib);
    ASSERT_NE(form, nullptr);
    EXPECT_TRUE(messages.messages.empty());
    EXPECT_EQ(form->SubWindow()->windowTitle(), QString::fromUtf8("Open – Games"));
    EXPECT_FALSE(form->IsLoading);
    EXPECT_EQ(form->Contents().tree.Count(), 11);
    // The list sorts by name by the locale's letters, without regard to case;
    // equal names keep the order in which they came; each entry carries its
    // node number.
    EXPECT_EQ(ListEntries(*form), (QStringList{"=9", "Alpha=8", "English=6", "english=7", "King's pawn=1", "R\u00e9ti=10",
                                               "Ruy=11", "Sicilian=3", "zebra=5"}));
    EXPECT_EQ(form->cboListGames->currentIndex(), -1) << "nothing is chosen after a load";
    EXPECT_EQ(ImageKey(*form, 1), "board");
    EXPECT_EQ(ImageKey(*form, 4), "pawn") << "a colon without a new branch is no game";
    // Node 1 is selected and shown; nothing is expanded.
    EXPECT_EQ(std::tuple(form->GetSelectedIndex(), form->CurrentNode), std::tuple(1, 1));
    EXPECT_EQ(forms::Board().Board(), Layout('P'));
    EXPECT_EQ(forms::Moves().Lines(), QStringList{"  1. e4"});
    EXPECT_EQ(forms::Comments().Text(), QString::fromUtf8("  The € move.  "));
    EXPECT_EQ(form->tvTreeView->model()->rowCount(), 4) << "four top-level nodes";
    EXPECT_EQ(form->tvTreeView->currentIndex().data().toString(), "e4: King's pawn");
    for (int n = 1; n <= 11; ++n) EXPECT_FALSE(form->Contents().tree.Node(n).Expanded) << n;
    EXPECT_FALSE(form->tvTreeView->isExpanded(form->tvTreeView->currentIndex()));
    EXPECT_FALSE(forms::StatusLoaded()) << "the bar goes when the tree is built";
    EXPECT_TRUE(modals.empty()) << "blank remarks open no window";
}

TEST_F(LoadTest, RemarksThatHoldTextOpenTheRemarksWindowAfterTheLoad) {
    StartFrame();
    LibraryBuilder lib("With remarks");
    lib.Remarks("Collected from the 1990s.").Add(1, 0, "e4");
    bool loadingWhileShown = false;
    onModal = [&](QDialog&) { return loadingWhileShown = frame->TreeViews().Active()->IsLoading, int(QDialog::Accepted); };
    frmTreeView* form = Open(lib);
    ASSERT_TRUE(form && modals.size() == 1u);
    EXPECT_EQ((QStringList{modals[0].title, modals[0].remarks}), (QStringList{"Library Remarks", "Collected from the 1990s."}));
    EXPECT_TRUE(loadingWhileShown && !form->IsLoading) << "the load waits for the remarks window";
}

// What a failed load leaves: the exact message, no new library, and the
// libraries already open untouched. The kinds of damage are the loader's.
struct FailureCase {
    const char* name;
    std::function<void(const QString& path)> make;
    bool notValid;  // "Not a valid Vantrel library" rather than "Problem loading library "
};

// Names the case in test listings instead of dumping its bytes.
void PrintTo(const FailureCase& c, std::ostream* os) { *os << c.name; }

class LoadFailureTest : public LoadTest, public ::testing::WithParamInterface<FailureCase> {};

TEST_P(LoadFailureTest, TellsTheUserAndLeavesNoWindow) {
    StartFrame();
    frmTreeView* bystander = OpenBystander();
    ASSERT_NE(bystander, nullptr);
    bystander->SelectNode(1);
    const QString path = dir.file(QStringLiteral("broken.vnb"));
    GetParam().make(path);
    messages.messages.clear();
    forms::Board().SetBoard(Layout('K', 40));
    bool statusUpAtMessage = true;
    messages.AnswerBy([&](const ui::MessageRequest&) {
        statusUpAtMessage = forms::StatusLoaded();
        return ui::Answer::Ok;
    });
    frame->TreeViews().OpenLib(path);
    FlushDeletes();
    ASSERT_EQ(messages.messages.size(), 1u);
    const ui::MessageRequest& m = messages.messages[0];
    if (GetParam().notValid) {
        EXPECT_EQ(m.text, "Not a valid Vantrel library");
        EXPECT_EQ(forms::Board().Board(), Layout('K', 40)) << "the board is not reset for a file that is no library";
    } else {
        EXPECT_EQ(m.text, "Problem loading library " + path);
        EXPECT_FALSE(statusUpAtMessage) << "the bar goes before the message";
    }
    EXPECT_EQ(std::tuple(m.buttons, m.title), std::tuple(ui::Buttons::Ok, QString())) << "the program's own title";
    EXPECT_EQ(frame->TreeViews().Count(), 1);
    EXPECT_EQ(frame->TreeViews().GetActiveKey(), bystander->Tag);
    EXPECT_EQ(frame->TreeViews().WindowCounter(), 2) << "the failed window had its key";
    EXPECT_EQ(frame->MdiArea()->subWindowList().size(), 4) << "board, comments, moves and the bystander";
    EXPECT_EQ(bystander->Contents().tree.Count(), 1);
    EXPECT_FALSE(forms::StatusLoaded());
    EXPECT_FALSE(AppClosing);
}

INSTANTIATE_TEST_SUITE_P(
    Failures, LoadFailureTest,
    ::testing::Values(
        FailureCase{"MissingFile", [](const QString&) {}, false},
        FailureCase{"EmptyFile", [](const QString& p) { QFile(p).open(QIODevice::WriteOnly); }, true},
        // Past the first bar update, so that a half-built tree was on show.
        FailureCase{"ParentMissingAfterTheFirstUpdate",
                    [](const QString& p) { Chain(150).Add(151, 999, "e5").WriteTo(p); }, false}),
    [](const ::testing::TestParamInfo<FailureCase>& info) { return std::string(info.param.name); });

TEST_F(LoadTest, ClosingAWindowWhileItLoadsIsRefusedAndTheLoadGoesOn) {
    StartFrame();
    LibraryBuilder lib = Chain(250, "Long");
    bool tried = false, closed = true, loadingSeen = false;
    // Runs at the first point at which the load lets events run.
    QMetaObject::invokeMethod(
        qApp,
        [&] {
            frmTreeView* loading = frame->TreeViews().Active();
            loadingSeen = loading && loading->IsLoading;
            tried = true;
            closed = loading && forms::OuterWindow(loading)->close();
        },
        Qt::QueuedConnection);
    frmTreeView* form = Open(lib);
    ASSERT_TRUE(tried);
    EXPECT_TRUE(loadingSeen);
    EXPECT_FALSE(closed);
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(form->Contents().tree.Count(), 250);
    EXPECT_EQ(frame->TreeViews().Count(), 1);
    // After the load the window goes through its unload.
    EXPECT_TRUE(CloseByUser(form));
    EXPECT_EQ(frame->TreeViews().Count(), 0);
}
