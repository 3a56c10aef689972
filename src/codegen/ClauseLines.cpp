#include "ClauseLines.h"

using namespace Qt::StringLiterals;

namespace {

const QString from = u"from "_s;
const QString where = u"where "_s;

bool beginsClause(const QString& line) {
    return line.startsWith(from, Qt::CaseInsensitive) ||
           line.startsWith(where, Qt::CaseInsensitive);
}

void joinShortLines(QStringList& lines, qint32 width) {
    for (qsizetype i = lines.size() - 2; i >= 1; --i) {
        const bool joins = !lines[i].isEmpty() && !beginsClause(lines[i]) &&
                           !beginsClause(lines[i - 1]) &&
                           lines[i - 1].size() + lines[i].size() < width;
        if (joins)
            lines[i - 1] += lines.takeAt(i);
    }
}

void beginLinesWith(const QString& clause, QStringList& lines) {
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const qsizetype at = lines[i].indexOf(clause, 1, Qt::CaseInsensitive);
        if (at < 0)
            continue;
        lines.insert(i + 1, lines[i].sliced(at));
        lines[i].truncate(at);
    }
}

} // namespace

void breakAtClauses(QStringList& lines, qint32 width) {
    joinShortLines(lines, width);
    beginLinesWith(from, lines);
    beginLinesWith(where, lines);
}
