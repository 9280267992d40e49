// Loading a library into its window: what the window holds afterwards, and
// the ways a load fails.
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMdiArea>
#include <QProgressBar>
#include <QTreeView>

#include "chess/board.h"
#include "library/ui/tree_item_model.h"
#include "shell/status_window.h"
#include "shell_fixture.h"

using namespace vantrel;
using namespace vantrel::testing;

namespace {

const std::string kStart(chess::kInitialLayout);

std::string Layout(char c, int square = 28) {
    std::string s = kStart;
    s[static_cast<size_t>(square)] = c;
    return s;
}

QStringList ListEntries(const frmTreeView& form) {
    QStringList entries;
    for (int i = 0; i < form.cboListGames->count(); ++i) entries << form.cboListGames->itemText(i);
    return entries;
}

QList<int> ListNodes(const frmTreeView& form) {
    QList<int> nodes;
    for (int i = 0; i < form.cboListGames->count(); ++i) nodes << form.cboListGames->itemData(i).toInt();
    return nodes;
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
    LibraryBuilder lib("Open Games");
    lib.Game(1, 0, "e4", "King's pawn", "  The most popular first move.  ", Layout('P'))
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
    EXPECT_EQ(form->SubWindow()->windowTitle(), "Open Games");
    EXPECT_FALSE(form->IsLoading);
    EXPECT_EQ(form->Contents().tree.Count(), 11);
    // The list sorts by name by the locale's letters, without regard to case;
    // equal names keep the order in which they came; each entry carries its
    // node number.
    EXPECT_EQ(ListEntries(*form), (QStringList{"", "Alpha", "English", "english", "King's pawn", "R\u00e9ti", "Ruy",
                                               "Sicilian", "zebra"}));
    EXPECT_EQ(ListNodes(*form), (QList<int>{9, 8, 6, 7, 1, 10, 11, 3, 5}));
    EXPECT_EQ(form->cboListGames->currentIndex(), -1) << "nothing is chosen after a load";
    EXPECT_EQ(ImageKey(*form, 1), "board");
    EXPECT_EQ(ImageKey(*form, 4), "pawn") << "a colon without a new branch is no game";
    // Node 1 is selected and shown; nothing is expanded.
    EXPECT_EQ(form->GetSelectedIndex(), 1);
    EXPECT_EQ(form->CurrentNode, 1);
    EXPECT_EQ(forms::Board().Board(), Layout('P'));
    EXPECT_EQ(forms::Moves().Lines(), QStringList{"  1. e4"});
    EXPECT_EQ(forms::Comments().Text(), "  The most popular first move.  ");
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
    onModal = [&](QDialog&) {
        loadingWhileShown = forms::TreeViews().Active()->IsLoading;
        return static_cast<int>(QDialog::Accepted);
    };
    frmTreeView* form = Open(lib);
    ASSERT_NE(form, nullptr);
    ASSERT_EQ(modals.size(), 1u);
    EXPECT_EQ(modals[0].title, "Library Remarks");
    EXPECT_EQ(modals[0].remarks, "Collected from the 1990s.");
    EXPECT_TRUE(loadingWhileShown) << "the load waits for the remarks window";
    EXPECT_FALSE(form->IsLoading);
}

TEST_F(LoadTest, TextOutsideAsciiIsShownFromWindows1252) {
    StartFrame();
    LibraryBuilder named("R\xE9ti \x96 Openings");
    frmTreeView* form = Open(named.Game(1, 0, "Nf3", "R\xE9ti", "Caf\xE9 comment"), "named.vnb");
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(form->Caption(), QString::fromUtf8("Réti – Openings"));
    EXPECT_EQ(ListEntries(*form), QStringList{QString::fromUtf8("Réti")});
    EXPECT_EQ(forms::Comments().Text(), QString::fromUtf8("Café comment"));
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
    forms::TreeViews().OpenLib(path);
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
    EXPECT_EQ(m.buttons, ui::Buttons::Ok);
    EXPECT_TRUE(m.title.isEmpty()) << "the program's own title";
    EXPECT_EQ(forms::TreeViews().Count(), 1);
    EXPECT_EQ(forms::TreeViews().GetActiveKey(), bystander->Tag);
    EXPECT_EQ(forms::TreeViews().WindowCounter(), 2) << "the failed window had its key";
    EXPECT_EQ(frame->MdiArea()->subWindowList().size(), 4) << "board, comments, moves and the bystander";
    EXPECT_EQ(bystander->Contents().tree.Count(), 1);
    EXPECT_FALSE(forms::StatusLoaded());
    EXPECT_FALSE(AppClosing);
}

namespace {

void WriteBytes(const QString& path, const std::string& bytes) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes.data(), static_cast<qint64>(bytes.size()));
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Failures, LoadFailureTest,
    ::testing::Values(
        FailureCase{"MissingFile", [](const QString&) {}, false},
        FailureCase{"Folder", [](const QString& p) { QDir().mkpath(p); }, false},
        FailureCase{"EmptyFile", [](const QString& p) { WriteBytes(p, std::string()); }, true},
        // Past the first bar update, so that a half-built tree was on show.
        FailureCase{"ParentMissingAfterTheFirstUpdate",
                    [](const QString& p) { Chain(150).Add(151, 999, "e5").WriteTo(p); }, false}),
    [](const ::testing::TestParamInfo<FailureCase>& info) { return std::string(info.param.name); });

TEST_F(LoadTest, ClosingAWindowWhileItLoadsIsRefusedAndTheLoadGoesOn) {
    StartFrame();
    LibraryBuilder lib = Chain(450, "Long");
    bool tried = false, closed = true, loadingSeen = false;
    // Runs at the first point at which the load lets events run.
    QMetaObject::invokeMethod(
        qApp,
        [&] {
            frmTreeView* loading = forms::TreeViews().Active();
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
    EXPECT_EQ(form->Contents().tree.Count(), 450);
    EXPECT_EQ(forms::TreeViews().Count(), 1);
    // After the load the window goes through its unload.
    EXPECT_TRUE(CloseByUser(form));
    EXPECT_EQ(forms::TreeViews().Count(), 0);
}
