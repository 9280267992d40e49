#include "widgets/help_window.h"

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMetaMethod>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QScrollBar>
#include <QSplitter>
#include <QTabWidget>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "widgets/dialogs.h"
#include "widgets/forms.h"

namespace {

QPointer<HelpWindow>& instance() {
    static QPointer<HelpWindow> window;
    return window;
}

QString HelpFilePath() { return vantrel::DataDir() + QStringLiteral("/vantrel.HLP"); }

constexpr int kTopicRole = Qt::UserRole + 1;

}  // namespace

HelpWindow::HelpWindow(QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName(QStringLiteral("HelpWindow"));
    setWindowTitle(QStringLiteral("Vantrel Help"));
    setAttribute(Qt::WA_DeleteOnClose, false);

    contents = new QTreeWidget;
    contents->setObjectName(QStringLiteral("contents"));
    contents->setHeaderHidden(true);
    contents->setRootIsDecorated(true);
    contents->setUniformRowHeights(true);

    keyword = new QLineEdit;
    keyword->setObjectName(QStringLiteral("keyword"));
    keyword->setPlaceholderText(QStringLiteral("Type a word to look for"));
    keyword->setClearButtonEnabled(true);
    results = new QListWidget;
    results->setObjectName(QStringLiteral("results"));
    auto* searchPage = new QWidget;
    auto* searchLayout = new QVBoxLayout(searchPage);
    searchLayout->setContentsMargins(6, 6, 6, 6);
    auto* prompt = new QLabel(QStringLiteral("&Type the word(s) you want to find:"));
    prompt->setBuddy(keyword);
    searchLayout->addWidget(prompt);
    searchLayout->addWidget(keyword);
    auto* found = new QLabel(QStringLiteral("&Select a topic to display:"));
    found->setBuddy(results);
    searchLayout->addWidget(found);
    searchLayout->addWidget(results, 1);

    tabs = new QTabWidget;
    tabs->setObjectName(QStringLiteral("tabs"));
    tabs->addTab(contents, QStringLiteral("&Contents"));
    tabs->addTab(searchPage, QStringLiteral("&Search"));

    browser = new QTextBrowser;
    browser->setObjectName(QStringLiteral("browser"));
    browser->setOpenExternalLinks(false);
    browser->setOpenLinks(true);

    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(tabs);
    splitter->addWidget(browser);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({250, 560});
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(splitter);
    resize(840, 580);

    connect(contents, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        if (item && !navigating_) ShowTopic(item->data(0, kTopicRole).toInt());
    });
    connect(keyword, &QLineEdit::textChanged, this, [this](const QString& text) { Search(text); });
    connect(keyword, &QLineEdit::returnPressed, this, [this] {
        if (results->count() > 0) results->setCurrentRow(0);
    });
    connect(results, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
        if (!item) return;
        ShowTopic(item->data(kTopicRole).toInt());
        // Mark the first place of the first word within the topic.
        const QString word = keyword->text().split(QLatin1Char(' '), Qt::SkipEmptyParts).value(0);
        if (!word.isEmpty() && current_ >= 0) {
            QTextCursor at(browser->document());
            at.setPosition(topics_[current_].start);
            const QTextCursor hit = browser->document()->find(word, at);
            if (!hit.isNull() && hit.selectionStart() < topics_[current_].end) {
                navigating_ = true;
                browser->setTextCursor(hit);
                navigating_ = false;
            }
        }
    });
    connect(browser->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { FollowScroll(); });
}

HelpWindow* HelpWindow::Instance() { return instance().data(); }

HelpWindow* HelpWindow::Open() {
    const QString path = HelpFilePath();
    if (!QFileInfo(path).isFile()) {
        vantrel::ui::MsgBox(QStringLiteral("The help file ") + QDir::toNativeSeparators(path) +
                                QStringLiteral(" could not be found."),
                            vantrel::ui::Buttons::Ok, vantrel::ui::Icon::Exclamation);
        return nullptr;
    }
    HelpWindow* window = instance().data();
    if (!window) {
        window = new HelpWindow(vantrel::forms::FrameWindow());
        instance() = window;
    }
    if (window->FilePath() != path || window->Topics().isEmpty()) {
        if (!window->Load(path)) {
            vantrel::ui::MsgBox(QStringLiteral("The help file ") + QDir::toNativeSeparators(path) +
                                    QStringLiteral(" could not be read."),
                                vantrel::ui::Buttons::Ok, vantrel::ui::Icon::Exclamation);
            return nullptr;
        }
    }
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

bool HelpWindow::Load(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return false;
    const QString html = QString::fromUtf8(file.readAll());
    path_ = path;
    navigating_ = true;
    browser->setHtml(html);
    navigating_ = false;
    BuildTopics();
    keyword->clear();
    results->clear();
    return true;
}

void HelpWindow::BuildTopics() {
    topics_.clear();
    QTextDocument* doc = browser->document();
    for (QTextBlock block = doc->begin(); block.isValid(); block = block.next()) {
        const int level = block.blockFormat().headingLevel();
        if (level < 1 || level > 3 || block.text().trimmed().isEmpty()) continue;
        Topic topic;
        topic.title = block.text().trimmed();
        topic.level = level;
        topic.start = block.position();
        for (auto it = block.begin(); !it.atEnd() && topic.anchor.isEmpty(); ++it) {
            const QStringList names = it.fragment().charFormat().anchorNames();
            if (!names.isEmpty()) topic.anchor = names.first();
        }
        topics_.push_back(topic);
    }
    const int documentEnd = doc->characterCount();
    for (int i = 0; i < topics_.size(); ++i)
        topics_[i].end = i + 1 < topics_.size() ? topics_[i + 1].start : documentEnd;

    // The contents: the main topics at the top, their sections beneath.
    navigating_ = true;
    contents->clear();
    QTreeWidgetItem* parentItem = nullptr;
    for (int i = 0; i < topics_.size(); ++i) {
        auto* item = new QTreeWidgetItem(QStringList(topics_[i].title));
        item->setData(0, kTopicRole, i);
        if (topics_[i].level == 3 && parentItem) {
            parentItem->addChild(item);
        } else {
            contents->addTopLevelItem(item);
            parentItem = item;
        }
    }
    contents->expandAll();
    navigating_ = false;
    current_ = topics_.isEmpty() ? -1 : 0;
}

QStringList HelpWindow::TopicTitles() const {
    QStringList titles;
    for (const Topic& t : topics_) titles << t.title;
    return titles;
}

QString HelpWindow::TopicText(int index) const {
    if (index < 0 || index >= topics_.size()) return QString();
    QTextCursor range(browser->document());
    range.setPosition(topics_[index].start);
    range.setPosition(std::min(topics_[index].end, browser->document()->characterCount() - 1),
                      QTextCursor::KeepAnchor);
    return range.selectedText();
}

void HelpWindow::ShowContents() {
    tabs->setCurrentIndex(0);
    if (!topics_.isEmpty()) ShowTopic(0);
    contents->setFocus();
}

void HelpWindow::ShowSearch() {
    tabs->setCurrentIndex(1);
    keyword->setFocus();
    keyword->selectAll();
}

bool HelpWindow::ShowAnchor(const QString& anchor) {
    for (int i = 0; i < topics_.size(); ++i) {
        if (!anchor.isEmpty() && topics_[i].anchor == anchor) {
            tabs->setCurrentIndex(0);
            ShowTopic(i);
            return true;
        }
    }
    return false;
}

void HelpWindow::ShowTopic(int index) {
    if (index < 0 || index >= topics_.size()) return;
    navigating_ = true;
    current_ = index;
    QTextCursor at(browser->document());
    at.setPosition(topics_[index].start);
    browser->setTextCursor(at);
    // The heading at the top of the text.
    const QTextBlock block = browser->document()->findBlock(topics_[index].start);
    const QRectF box = browser->document()->documentLayout()->blockBoundingRect(block);
    browser->verticalScrollBar()->setValue(static_cast<int>(box.top()));
    SelectInContents(index);
    navigating_ = false;
}

void HelpWindow::SelectInContents(int index) {
    const bool was = navigating_;
    navigating_ = true;
    for (QTreeWidgetItemIterator it(contents); *it; ++it) {
        if ((*it)->data(0, kTopicRole).toInt() == index) {
            contents->setCurrentItem(*it);
            break;
        }
    }
    navigating_ = was;
}

void HelpWindow::FollowScroll() {
    if (navigating_ || topics_.isEmpty()) return;
    // The topic whose text stands at the top of the view.
    const int position = browser->cursorForPosition(QPoint(4, 4)).position();
    int index = 0;
    for (int i = 0; i < topics_.size(); ++i)
        if (topics_[i].start <= position) index = i;
    current_ = index;
    SelectInContents(index);
}

QString HelpWindow::CurrentTopic() const {
    return current_ >= 0 && current_ < topics_.size() ? topics_[current_].title : QString();
}

QStringList HelpWindow::Search(const QString& keywords) {
    const QStringList words = keywords.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    struct Hit {
        int index;
        int score;
    };
    QList<Hit> hits;
    if (!words.isEmpty()) {
        for (int i = 0; i < topics_.size(); ++i) {
            const QString text = TopicText(i);
            int score = 0;
            bool all = true;
            for (const QString& word : words) {
                const int inText = text.count(word, Qt::CaseInsensitive);
                if (inText == 0) {
                    all = false;
                    break;
                }
                score += inText + 100 * topics_[i].title.count(word, Qt::CaseInsensitive);
            }
            if (all) hits.push_back({i, score});
        }
        std::stable_sort(hits.begin(), hits.end(), [](const Hit& a, const Hit& b) { return a.score > b.score; });
    }

    QSignalBlocker block(results);
    results->clear();
    QStringList titles;
    for (const Hit& hit : hits) {
        auto* item = new QListWidgetItem(topics_[hit.index].title);
        item->setData(kTopicRole, hit.index);
        results->addItem(item);
        titles << topics_[hit.index].title;
    }
    return titles;
}

void ShowHelpContents() {
    if (HelpWindow* window = HelpWindow::Open()) window->ShowContents();
}

void ShowHelpSearch() {
    if (HelpWindow* window = HelpWindow::Open()) window->ShowSearch();
}

namespace {

// The topic of the nearest window around `w` that has one: > 0 a topic, < 0
// no help now, 0 the contents.
int HelpContextOf(QWidget* w) {
    for (; w; w = w->parentWidget()) {
        const QMetaObject* meta = w->metaObject();
        const int index = meta->indexOfMethod("HelpContext()");
        if (index < 0) continue;
        int id = 0;
        meta->method(index).invoke(w, Qt::DirectConnection, Q_RETURN_ARG(int, id));
        return id;
    }
    return 0;
}

class HelpKey : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier) return false;
        const int id = HelpContextOf(static_cast<QWidget*>(watched));
        if (id > 0)
            ShowHelpContext(id);
        else if (id == 0)
            ShowHelpContents();
        return true;
    }
};

}  // namespace

void InstallHelpKey(QObject* owner) { QCoreApplication::instance()->installEventFilter(new HelpKey(owner)); }

void ShowHelpContext(int id) {
    HelpWindow* window = HelpWindow::Open();
    if (!window) return;
    if (!window->ShowAnchor(QStringLiteral("ctx") + QString::number(id))) window->ShowContents();
}
