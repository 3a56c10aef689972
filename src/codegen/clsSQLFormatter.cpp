#include "clsSQLFormatter.h"

#include "ClauseLines.h"
#include "Host.h"
#include "Text.h"

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int spareLines = 25; // take what is pushed down by cutting at words

// Where a character stands in a text.
class Marks {
public:
    Marks(QStringView text, QChar mark) {
        for (qsizetype at = text.indexOf(mark); at >= 0; at = text.indexOf(mark, at + 1))
            m_places.push_back(at);
    }
    // How many stand before the place.
    qsizetype countBefore(qsizetype place) const {
        return std::lower_bound(m_places.begin(), m_places.end(), place) - m_places.begin();
    }
    qsizetype place(qsizetype number) const { return m_places[size_t(number)]; }

private:
    std::vector<qsizetype> m_places;
};

// The lines are stretches of the SQL one behind the other, so that cutting moves their ends only: a
// script of megabytes has as many characters pushed down from line to line.
class LineCutter {
public:
    LineCutter(const QString& sql, qint32 width)
        : m_sql(sql)
        , m_width(width)
        , m_lines(roundHalfEven(double(sql.size()) / width + 1) + 1 + spareLines)
        , m_blanks(sql, u' ')
        , m_commas(sql, u',') {}

    QStringList cutAtWords() const {
        QStringList lines;
        qsizetype begin = 0;
        qsizetype line = 0;
        for (; line + 1 < m_lines && !isLast(line, begin); ++line) {
            const qsizetype kept = cutOf(begin, pieceEnd(line));
            lines << m_sql.mid(begin, kept);
            begin += kept;
        }
        for (; line < m_lines; begin = pieceEnd(line), ++line)
            lines << m_sql.mid(begin, pieceEnd(line) - begin);
        return lines;
    }

private:
    // Before any cutting.
    qsizetype pieceEnd(qsizetype line) const {
        return std::min((line + 1) * m_width, m_sql.size());
    }

    bool isLast(qsizetype line, qsizetype begin) const {
        const qsizetype end = pieceEnd(line);
        const QStringView next = QStringView(m_sql).sliced(end, pieceEnd(line + 1) - end);
        return end - begin < m_width && trimBlanks(next).isEmpty();
    }

    // How many characters of the line stay on it: up to its last blank or comma that is not its
    // last character. While one of the two is too far right both step back, also the one that is
    // near enough already.
    qsizetype cutOf(qsizetype begin, qsizetype end) const {
        const qsizetype last = std::max(begin, end - 1);
        const qsizetype nearEnd = std::min(begin + m_width, last);
        const auto tooFar = [&](const Marks& marks) {
            return marks.countBefore(last) - marks.countBefore(nearEnd);
        };
        const qsizetype steps = std::max(tooFar(m_blanks), tooFar(m_commas));
        const auto keptBy = [&](const Marks& marks) {
            const qsizetype mark = marks.countBefore(last) - 1 - steps;
            return mark < marks.countBefore(begin) ? 0 : marks.place(mark) + 1 - begin;
        };
        return std::max(keptBy(m_blanks), keptBy(m_commas));
    }

    const QString& m_sql;
    qsizetype m_width;
    qsizetype m_lines;
    Marks m_blanks;
    Marks m_commas;
};

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

    QStringList lines = LineCutter(SQL, width).cutAtWords();
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
