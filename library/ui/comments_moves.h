// frmComments ("Game Comments") and frmMoves ("Moves List").
#pragma once

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

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
};
