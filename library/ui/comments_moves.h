// frmComments ("Game Comments") and frmMoves ("Moves List").
#pragma once

#include <QPoint>
#include <QStringList>
#include <QWidget>
#include <string>

class QListWidget;
class QPlainTextEdit;

class frmComments : public QWidget {
    Q_OBJECT
public:
    explicit frmComments(QWidget* parent = nullptr);
    QString Text() const;
    void SetText(const QString& text);
    QPlainTextEdit* txtComments = nullptr;

signals:
    // Closed by the user: out of sight, still loaded.
    void hiddenByUser();
    // The right button while the two windows share one place: the menu
    // that brings up the one behind.
    void otherWindowRequested(QPoint globalPos);

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
};

class frmMoves : public QWidget {
    Q_OBJECT
public:
    explicit frmMoves(QWidget* parent = nullptr);
    // szFullpath: a node's FullPath in library text (Windows-1252).
    void SetMovelist(const std::string& szFullpath);
    void Clear();
    QStringList Lines() const;
    QListWidget* lstMoves = nullptr;

signals:
    void hiddenByUser();
    void otherWindowRequested(QPoint globalPos);

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
};

namespace vantrel::forms {
// The comments and moves windows of the run, made on first use.
frmComments& Comments();
frmMoves& Moves();
}  // namespace vantrel::forms
