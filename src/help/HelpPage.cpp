#include "HelpPage.h"

#include "HelpBook.h"

#include <QRegularExpression>
#include <QTextBlock>

using namespace Qt::StringLiterals;

HelpPage::HelpPage(const HelpBook& book)
    : m_book(book) {
    constexpr qreal margin = 12;
    document()->setDocumentMargin(margin);
}

void HelpPage::showPage(const QString& page) {
    setSource(QUrl(u"help:"_s + page));
}

QVariant HelpPage::loadResource(int type, const QUrl& name) {
    const QByteArray bytes = m_book.file(name.path());
    if (type == QTextDocument::HtmlResource && bytes.isNull())
        return u"<h1>This page is missing</h1><p>The help has no page <code>%1</code>.</p>"_s.arg(
            name.path().toHtmlEscaped());
    return type == QTextDocument::ImageResource ? QVariant(bytes)
                                                : QVariant(QString::fromUtf8(bytes));
}

void HelpPage::markWords(const QString& text) {
    QList<ExtraSelection> marks;
    const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    for (const QString& word : words) {
        const QRegularExpression pattern(u"(?<!\\w)"_s + QRegularExpression::escape(word),
                                         QRegularExpression::UseUnicodePropertiesOption);
        QTextCursor place = document()->find(pattern, 0);
        while (!place.isNull()) {
            ExtraSelection mark;
            mark.cursor = place;
            mark.format.setBackground(QColor(0xff, 0xe0, 0x7a));
            mark.format.setForeground(Qt::black);
            marks << mark;
            place = document()->find(pattern, place);
        }
    }
    setExtraSelections(marks);
}
