#include "FunctionCall.h"

#include "OraError.h"
#include "RegexpPattern.h"
#include "UnicodeText.h"

namespace ora {

namespace {

// The server counts code points, QString UTF-16 units.
qsizetype codePoints(QStringView text) {
    qsizetype count = 0;
    for (const QChar c : text)
        count += c.isLowSurrogate() ? 0 : 1;
    return count;
}

qsizetype unitOffset(QStringView text, std::int64_t characters) {
    qsizetype at = 0;
    for (; characters > 0 && at < text.size(); --characters)
        at += at + 1 < text.size() && text[at].isHighSurrogate() ? 2 : 1;
    return at;
}

[[noreturn]] void throwRange(std::int64_t argument) {
    throw OraError(1428, "argument '" + std::to_string(argument) + "' is out of range");
}

struct KeptPattern {
    std::string parameters;
    QRegularExpression expression;
};

// The arguments that the functions share.
struct Search {
    QString text;
    QRegularExpression pattern;
    qsizetype from = 0;
};

// startAt, parametersAt: the places of these arguments, past the end when the function has none.
Search searchOf(Call& call, std::size_t startAt, std::size_t parametersAt) {
    Search search;
    search.text = asQString(call.text(0));
    const std::string parameters(call.has(parametersAt) ? call.text(parametersAt) : "");
    const auto kept = call.cached<KeptPattern>(1, [&] {
        return KeptPattern{parameters, regexpPattern(call.text(1), parameters)};
    });
    // The parameters may change from row to row though the pattern does not.
    search.pattern =
        kept->parameters == parameters ? kept->expression : regexpPattern(call.text(1), parameters);
    const std::int64_t start = call.integer(startAt, 1);
    if (start < 1)
        throwRange(start);
    search.from = unitOffset(search.text, start - 1);
    if (start > 1 && search.from >= search.text.size())
        search.from = search.text.size() + 1;
    return search;
}

// The n-th match; without one hasMatch() is false.
QRegularExpressionMatch nthMatch(const Search& search, std::int64_t nth) {
    if (nth < 1)
        throwRange(nth);
    if (search.from > search.text.size())
        return {};
    auto matches = search.pattern.globalMatch(search.text, search.from);
    for (; matches.hasNext(); --nth) {
        const QRegularExpressionMatch match = matches.next();
        if (nth == 1)
            return match;
    }
    return {};
}

void like(Call& call) {
    const Search search = searchOf(call, call.count(), 2);
    call.resultCondition(search.pattern.match(search.text).hasMatch());
}

void count(Call& call) {
    const Search search = searchOf(call, 2, 3);
    std::int64_t found = 0;
    if (search.from <= search.text.size()) {
        auto matches = search.pattern.globalMatch(search.text, search.from);
        for (; matches.hasNext(); matches.next())
            ++found;
    }
    call.result(OracleNumber(found));
}

void substr(Call& call) {
    const Search search = searchOf(call, 2, 4);
    const std::int64_t group = call.integer(5, 0);
    if (group < 0)
        throwRange(group);
    const auto match = nthMatch(search, call.integer(3, 1));
    if (!match.hasMatch() || group > match.lastCapturedIndex())
        return call.resultNull();
    call.resultText(match.captured(static_cast<int>(group)).toStdString());
}

void instr(Call& call) {
    const Search search = searchOf(call, 2, 5);
    const std::int64_t after = call.integer(4, 0);
    const std::int64_t group = call.integer(6, 0);
    if (after != 0 && after != 1)
        throwRange(after);
    if (group < 0)
        throwRange(group);
    const auto match = nthMatch(search, call.integer(3, 1));
    if (!match.hasMatch() || group > match.lastCapturedIndex())
        return call.result(OracleNumber());
    const int index = static_cast<int>(group);
    const qsizetype at = after == 1 ? match.capturedEnd(index) : match.capturedStart(index);
    if (at < 0)
        return call.result(OracleNumber());
    call.result(OracleNumber(codePoints(QStringView(search.text).first(at)) + 1));
}

// \1 to \9 in the replacement are groups, \\ a backslash.
QString expanded(const QString& replacement, const QRegularExpressionMatch& match) {
    QString result;
    for (qsizetype i = 0; i < replacement.size(); ++i) {
        const QChar next = i + 1 < replacement.size() ? replacement[i + 1] : QChar();
        if (replacement[i] != u'\\' || (next != u'\\' && (next < u'1' || next > u'9'))) {
            result += replacement[i];
            continue;
        }
        ++i;
        if (next == u'\\')
            result += next;
        else
            result += match.captured(next.unicode() - u'0');
    }
    return result;
}

void replace(Call& call) {
    if (call.isNull(0))
        return call.resultNull();
    if (call.isNull(1))
        return call.resultText(call.text(0));
    for (std::size_t i = 3; i < call.count() && i < 5; ++i) {
        if (call.isNull(i))
            return call.resultNull();
    }
    const Search search = searchOf(call, 3, 5);
    const QString replacement = call.has(2) ? asQString(call.text(2)) : QString();
    const std::int64_t nth = call.integer(4, 0);
    if (nth < 0)
        throwRange(nth);
    if (search.from > search.text.size())
        return call.resultText(call.text(0));
    QString result;
    qsizetype done = 0;
    std::int64_t index = 0;
    auto matches = search.pattern.globalMatch(search.text, search.from);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        if (nth != 0 && ++index != nth)
            continue;
        result += QStringView(search.text).sliced(done, match.capturedStart() - done);
        result += expanded(replacement, match);
        done = match.capturedEnd();
        if (nth != 0)
            break;
    }
    result += QStringView(search.text).sliced(done);
    call.resultText(result.toStdString());
}

// NULL match parameters are the default ones; any other NULL gives NULL.
template<void (*Body)(Call&), std::size_t parametersAt>
void unlessNull(Call& call) {
    for (std::size_t i = 0; i < call.count(); ++i) {
        if (i != parametersAt && call.isNull(i))
            return call.resultNull();
    }
    Body(call);
}

constexpr ScalarRow rows[] = {
    {"ora_regexp_like", -1, unlessNull<like, 2>, Nulls::Handled},
    {"ora_regexp_count", -1, unlessNull<count, 3>, Nulls::Handled},
    {"ora_regexp_substr", -1, unlessNull<substr, 4>, Nulls::Handled},
    {"ora_regexp_instr", -1, unlessNull<instr, 5>, Nulls::Handled},
    {"ora_regexp_replace", -1, replace, Nulls::Handled},
};

} // namespace

void registerRegexpFunctions(sqlite3* database, FunctionContext& context) {
    registerScalars(database, rows, context);
}

} // namespace ora
