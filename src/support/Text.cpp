#include "Text.h"

#include "Error.h"

#include <QTextBoundaryFinder>

#include <cmath>
#include <limits>

QString trimBlanks(QStringView text) {
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text[first] == u' ')
        ++first;
    while (last > first && text[last - 1] == u' ')
        --last;
    return text.sliced(first, last - first).toString();
}

namespace {

bool isDigit(QStringView text, qsizetype at) {
    return at < text.size() && text[at] >= u'0' && text[at] <= u'9';
}

qsizetype skipDigits(QStringView text, qsizetype at) {
    while (isDigit(text, at))
        ++at;
    return at;
}

// The end of an exponent that starts at `at`, or `at` when none stands there.
qsizetype skipExponent(QStringView text, qsizetype at) {
    if (at >= text.size() || (text[at] != u'e' && text[at] != u'E'))
        return at;
    qsizetype digits = at + 1;
    if (digits < text.size() && (text[digits] == u'+' || text[digits] == u'-'))
        ++digits;
    return isDigit(text, digits) ? skipDigits(text, digits) : at;
}

} // namespace

double leadingNumber(QStringView text) {
    const QString trimmed = trimBlanks(text);
    const QStringView view(trimmed);
    qsizetype end = 0;
    if (end < view.size() && (view[end] == u'+' || view[end] == u'-'))
        ++end;
    end = skipDigits(view, end);
    if (end < view.size() && view[end] == u'.')
        end = skipDigits(view, end + 1);
    end = skipExponent(view, end);
    return view.first(end).toDouble(); // 0 for an empty or digitless head
}

qint32 roundHalfEven(double value) {
    const double rounded = std::nearbyint(value); // the default rounding mode is half to even
    if (!(rounded >= std::numeric_limits<qint32>::min() &&
          rounded <= std::numeric_limits<qint32>::max()))
        throw Error(Error::Overflow, QString(), QStringLiteral("Overflow"));
    return static_cast<qint32>(rounded);
}

QString fixedFormat(double value) {
    return QString::number(value, 'f', 2);
}

QString firstCharacters(const QString& text, int count) {
    if (text.size() <= count)
        return text;
    // A cluster may be long, but thirty of them never need the whole of a large statement.
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.left(64 * (count + 1)));
    for (int i = 0; i < count && finder.toNextBoundary() >= 0; ++i) {
    }
    return finder.position() < 0 ? text : text.left(finder.position());
}

qsizetype countUtf8Characters(const char* data, qsizetype size) {
    qsizetype count = 0;
    for (qsizetype i = 0; i < size; ++i)
        count += (static_cast<unsigned char>(data[i]) & 0xC0) != 0x80;
    return count;
}
