#include "QueryBatch.h"

using namespace Qt::StringLiterals;

namespace {

// Blanks only: a tab or another white space stays.
QStringView withoutOuterBlanks(QStringView text) {
    while (text.startsWith(u' '))
        text = text.sliced(1);
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

QStringView takeUpTo(QStringView& rest, char16_t mark) {
    const qsizetype at = rest.indexOf(mark);
    const QStringView head = at < 0 ? rest : rest.first(at);
    rest = at < 0 ? QStringView() : rest.sliced(at + 1);
    return head;
}

void appendLine(QString& result, QStringView rawLine) {
    const QString line = rawLine.toString().remove(u'\n');
    const QStringView trimmed = withoutOuterBlanks(line);
    result += u' ';
    if (!trimmed.startsWith("--"_L1))
        result += trimmed;
}

void addStatement(colQueries& batch, QStringView statement) {
    batch.Add(Get_Query_Type(statement), statement.toString(), true);
}

} // namespace

QString Strip_Comments(QStringView text) {
    QString result;
    result.reserve(text.size() + 1);
    const qsizetype lines = text.count(u'\r') + 1;
    for (qsizetype line = 0; line < lines; ++line)
        appendLine(result, takeUpTo(text, u'\r'));
    return result;
}

QString Get_Query_Type(QStringView statement) {
    constexpr qsizetype compared = 6;
    const QStringView head = withoutOuterBlanks(statement).left(compared);
    return head.compare(QueryType::Select, Qt::CaseInsensitive) == 0 ? QueryType::Select
                                                                     : QueryType::General;
}

colQueries Split_Queries(QStringView text) {
    colQueries batch;
    if (!text.contains(u';'))
        addStatement(batch, withoutOuterBlanks(text));
    while (text.contains(u';'))
        addStatement(batch, withoutOuterBlanks(takeUpTo(text, u';')));
    return batch;
}

QString Unterminated_Rest(QStringView text) {
    const qsizetype last = text.lastIndexOf(u';');
    return last < 0 ? QString() : withoutOuterBlanks(text.sliced(last + 1)).toString();
}
