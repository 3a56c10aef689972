#pragma once

#include "Sitemap.h"

#include <QByteArray>
#include <QHash>

#include <memory>

class ChmFile;

// A help book: its pages, contents, index and the search in them. Pages are named from the root, as
// "/pages/editor.htm".
class HelpBook {
public:
    // Null when the file is missing, damaged or no book.
    static std::unique_ptr<HelpBook> open(const QString& path);
    ~HelpBook();

    const QString& firstPage() const { return m_firstPage; }
    const std::vector<HelpEntry>& contents() const { return m_contents; }
    // By title, ignoring case.
    const std::vector<HelpEntry>& index() const { return m_index; }

    // The bytes of a page, style sheet or picture; null when there is none.
    QByteArray file(const QString& name) const;

    struct Match {
        QString title;
        QString page;
        QString excerpt; // plain text around the first place
    };
    // The pages of the contents that hold every word of the text, each as the beginning of a word
    // and ignoring case; those with a word in their title first, then by the number of places.
    std::vector<Match> search(const QString& text) const;

private:
    struct PageText {
        QString title;
        QString page;
        QString text;
    };

    explicit HelpBook(std::unique_ptr<ChmFile> file);
    const std::vector<PageText>& texts() const;

    std::unique_ptr<ChmFile> m_file;
    QString m_firstPage;
    std::vector<HelpEntry> m_contents;
    std::vector<HelpEntry> m_index;
    mutable std::vector<PageText> m_texts; // read at the first search
};

// What a person reads of a page, on one line.
QString plainText(const QString& html);
