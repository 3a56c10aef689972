#include "clsSQLFormatter.h"

#include "ClauseLines.h"
#include "Host.h"
#include "Text.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int spareLines = 25; // take what is pushed down by cutting at words

// Positions count from 1; 0: there is none.
qsizetype lastBefore(QStringView text, QChar c, qsizetype position) {
    return position <= 1 ? 0 : text.left(position - 1).lastIndexOf(c) + 1;
}

// How many characters of the line stay on it. Both marks step back together, also the one that is
// near enough already.
qsizetype cutOf(QStringView line, qint32 width) {
    qsizetype blank = lastBefore(line, u' ', line.size());
    qsizetype comma = lastBefore(line, u',', line.size());
    while (std::max(blank, comma) > width) {
        blank = lastBefore(line, u' ', blank);
        comma = lastBefore(line, u',', comma);
    }
    return std::max(blank, comma);
}

QStringList pieces(const QString& sql, qint32 width) {
    const qint32 count = roundHalfEven(double(sql.size()) / width + 1);
    QStringList lines;
    for (qint32 i = 0; i <= count; ++i)
        lines << sql.mid(qsizetype(i) * width, width);
    for (int i = 0; i < spareLines; ++i)
        lines << QString();
    return lines;
}

void cutAtWords(QStringList& lines, qint32 width) {
    for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
        if (lines[i].size() < width && trimBlanks(lines[i + 1]).isEmpty())
            return;
        const qsizetype kept = cutOf(lines[i], width);
        lines[i + 1].prepend(QStringView(lines[i]).sliced(kept));
        lines[i].truncate(kept);
    }
}

QString declaration(const QString& variableName) {
    return u"Dim "_s + variableName + u" As String \r\n\r\n"_s;
}

} // namespace

QString clsSQLFormatter::FormatSQL(const QString& SQL, qint32 width, bool lineContinuations,
                                   const QString& variableName, bool declareVariable,
                                   bool breakAtFromAndWhere) {
    const QString begin = variableName + u" = "_s;
    if (SQL.size() < width)
        return declareVariable ? declaration(variableName) + begin + u'"' + SQL + u'"' : SQL;

    QStringList lines = pieces(SQL, width);
    cutAtWords(lines, width);
    if (breakAtFromAndWhere)
        breakAtClauses(lines, width);

    const QString lineEnd = lineContinuations ? u"\" _\r\n"_s : u"\" \r\n"_s;
    QString laterBegin = begin + variableName + u" & "_s;
    if (lineContinuations)
        laterBegin = QString(variableName.size() + 1, u' ') + u"& "_s;
    QString code = declareVariable ? declaration(variableName) : QString();
    code += begin + u'"' + lines.takeFirst() + lineEnd;
    for (const QString& line : lines)
        if (!trimBlanks(line).isEmpty())
            code += laterBegin + u'"' + line + lineEnd;
    constexpr int lastLineEnd = 5; // with a continuation; without one it takes a character of SQL
    code.chop(lastLineEnd);
    code += u'"';
    m_host.setClipboardText(code);
    return code;
}
