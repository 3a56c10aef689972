#pragma once

#include <QWidget>

#include <memory>

class HelpBook;
class HelpPage;
class QLabel;
class QLineEdit;
class QListWidget;
class QTabWidget;
class QToolBar;
class QTreeWidget;

// The help window: contents, index and search on the left, the page on the right.
class frmHelp : public QWidget {
    Q_OBJECT
public:
    explicit frmHelp(std::unique_ptr<HelpBook> book, QWidget* parent = nullptr);
    ~frmHelp() override;

    // page: as the book names it; empty: the first page.
    void showPage(const QString& page);
    void showSearch();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* contentsTab();
    QWidget* indexTab();
    QWidget* searchTab();
    QToolBar* makeBar();
    void wire();
    void followPage(const QUrl& source);
    void filterIndex(const QString& text);
    void search();
    void findInPage(bool backward);

    std::unique_ptr<HelpBook> m_book;
    HelpPage* txtPage;
    QTabWidget* tabHelp;
    QTreeWidget* trvContents;
    QLineEdit* txtIndex;
    QListWidget* lstIndex;
    QLineEdit* txtSearch;
    QListWidget* lstResults;
    QLabel* lblResults;
    QLineEdit* txtFind;
    QString m_searched;
};
