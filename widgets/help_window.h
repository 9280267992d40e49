// The program's help: the contents, the search, and a topic by its number.
//
// The help file is vantrel.HLP in DataDir() (the install, or the program's
// folder): an HTML document whose headings (h1..h3) are its topics. A topic
// reached by a context number carries the id "ctx" and that number, as ctx144.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QWidget>

void ShowHelpContents();
void ShowHelpSearch();
void ShowHelpContext(int id);

class QObject;

// F1 anywhere in the program: the help window at the topic of the window
// that has the focus, at the contents where that window has no topic. A
// window names its topic by a method `int HelpContext()` marked
// Q_INVOKABLE; a number below 0 there means no help just now. The key stays
// with the program while `owner` lives.
void InstallHelpKey(QObject* owner);

class QLineEdit;
class QListWidget;
class QTabWidget;
class QTextBrowser;
class QTreeWidget;

// The help window: a contents tree and a keyword search on the left, the
// text on the right. One window for the whole program, not modal.
class HelpWindow : public QWidget {
    Q_OBJECT
public:
    struct Topic {
        QString title;
        QString anchor;  // the heading's id, may be empty
        int level = 0;   // 1..3, from the heading
        int start = 0;   // document position of the heading
        int end = 0;     // where the next topic starts
    };

    explicit HelpWindow(QWidget* parent = nullptr);

    // The window while one exists, else null.
    static HelpWindow* Instance();
    // The one window, made if need be, with the help file loaded; null (after
    // telling the user) when the help file can't be read.
    static HelpWindow* Open();

    // Reads a help file; false when it can't be read.
    bool Load(const QString& path);
    QString FilePath() const { return path_; }

    const QList<Topic>& Topics() const { return topics_; }
    QStringList TopicTitles() const;

    // The contents page on the first topic; the search page with the focus
    // in the keyword box.
    void ShowContents();
    void ShowSearch();
    // Shows the topic with that heading id; false if there is none.
    bool ShowAnchor(const QString& anchor);
    void ShowTopic(int index);

    // Lists the topics that hold every word of `keywords` (in any case),
    // those with the words in their title first; returns their titles.
    QStringList Search(const QString& keywords);

    // The topic shown at the top of the text.
    int CurrentTopicIndex() const { return current_; }
    QString CurrentTopic() const;

    QTabWidget* tabs = nullptr;
    QTreeWidget* contents = nullptr;
    QLineEdit* keyword = nullptr;
    QListWidget* results = nullptr;
    QTextBrowser* browser = nullptr;

private:
    void BuildTopics();
    void FollowScroll();
    void SelectInContents(int index);
    QString TopicText(int index) const;

    QString path_;
    QList<Topic> topics_;
    int current_ = -1;
    bool navigating_ = false;
};
