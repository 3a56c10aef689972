#pragma once

#include <QTextBrowser>

class HelpBook;

// Shows the pages of a book; pages, styles and pictures come out of the book.
class HelpPage : public QTextBrowser {
    Q_OBJECT
public:
    // book is not owned and outlives the page.
    explicit HelpPage(const HelpBook& book);

    // As the book names it; an anchor may follow.
    void showPage(const QString& page);
    // As the book names it, without the anchor.
    QString page() const { return source().path(); }
    // Marks every place at which one of the words begins; none for an empty text.
    void markWords(const QString& text);

    QVariant loadResource(int type, const QUrl& name) override;

private:
    const HelpBook& m_book;
};
