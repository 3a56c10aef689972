#include "SqlDocument.h"

#include "KeywordTables.h"

using namespace Qt::StringLiterals;

namespace {

// The second grey is listed and never used.
const QString header = u"{\\rtf1\\ansi\\deff0\\adeflang1025{\\colortbl;\\red128\\green128\\blue128;"
                       "\\red0\\green0\\blue255;\\red255\\green0\\blue0;\\red0\\green174\\blue0;"
                       "\\red128\\green128\\blue128;}"_s;
const QString paragraphMark = u"\\par "_s;

void escapeForRtf(QString& text) {
    for (const QChar special : {u'\\', u'{', u'}'})
        text.replace(special, u"\\"_s + special);
}

QString group(SqlColour colour, const QString& content) {
    return u"{\\cf"_s + QString::number(int(colour)) + u' ' + content + u'}';
}

void pass(QString& document, const QString& search, const QString& replacement) {
    if (!search.isEmpty())
        document.replace(search, replacement, Qt::CaseInsensitive);
}

} // namespace

QString Build_Document(const QString& text, int breaksPerTilde) {
    const bool tildeEnds = breaksPerTilde == 1 && text.endsWith(u'~');
    const bool lastLineEmpty = tildeEnds || text.endsWith("\r\n"_L1);
    QString body = text;
    escapeForRtf(body);
    body.replace(u'\r', paragraphMark);
    if (breaksPerTilde > 0)
        body.replace(u'~', paragraphMark.repeated(breaksPerTilde));
    if (lastLineEmpty)
        body += paragraphMark;
    return header + u"{\\cf0 "_s + body + u"}}"_s;
}

QString Colour_Document(const QString& document) {
    QString coloured = document;
    for (const KeywordTable& table : keywordTables())
        for (const KeywordSlot& slot : table.words)
            pass(coloured, slot.search, group(table.colour, slot.display[0] + u' '));
    for (const QString& text : operatorTexts())
        pass(coloured, text, group(SqlColour::Operator, text));
    return coloured;
}
