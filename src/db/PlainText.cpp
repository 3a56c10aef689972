#include "PlainText.h"

#include <algorithm>
#include <cstdlib>

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// A decimal number's parts; digits without the point, of which `whole` stand before it.
struct Decimal {
    bool negative = false;
    QByteArray digits;
    qint64 whole = 0;
    bool valid = false;
};

// Beyond this the text is not spelt out: no server's numbers reach so far.
constexpr qint64 widestExponent = 5000;

Decimal readDecimal(QByteArrayView text) {
    Decimal number;
    const char* at = text.begin();
    const char* end = text.end();
    if (at != end && (*at == '-' || *at == '+'))
        number.negative = *at++ == '-';
    for (; at != end && isDigit(*at); ++at)
        number.digits += *at;
    number.whole = number.digits.size();
    if (at != end && *at == '.') {
        while (++at != end && isDigit(*at))
            number.digits += *at;
    }
    bool exponentRead = true;
    if (at != end && (*at == 'e' || *at == 'E')) {
        const qint64 exponent = QByteArrayView(at + 1, end).toLongLong(&exponentRead);
        exponentRead = exponentRead && std::abs(exponent) <= widestExponent;
        number.whole += exponentRead ? exponent : 0;
        at = end;
    }
    number.valid = exponentRead && at == end && !number.digits.isEmpty();
    return number;
}

} // namespace

QByteArrayView alreadyPlainNumber(QByteArrayView text) {
    const char* at = text.begin();
    const char* end = text.end();
    if (at != end && *at == '-')
        ++at;
    const char* whole = at;
    while (at != end && isDigit(*at))
        ++at;
    const auto digits = at - whole;
    if (digits == 0 || (*whole == '0' && (digits > 1 || whole != text.begin())))
        return {}; // ".5", "007" and "-0.0"
    if (at == end)
        return text;
    if (*at != '.')
        return {};
    const char* kept = at; // behind the last digit that is no zero
    while (++at != end && isDigit(*at)) {
        if (*at != '0')
            kept = at + 1;
    }
    return at == end ? QByteArrayView(text.begin(), kept) : QByteArrayView();
}

QByteArray plainNumber(QByteArrayView text) {
    text = text.trimmed();
    Decimal number = readDecimal(text);
    if (!number.valid)
        return text.toByteArray();
    if (number.whole < 0) {
        number.digits.prepend(qsizetype(-number.whole), '0');
        number.whole = 0;
    }
    if (number.whole > number.digits.size())
        number.digits.append(qsizetype(number.whole) - number.digits.size(), '0');
    QByteArray whole = number.digits.first(qsizetype(number.whole));
    QByteArray fraction = number.digits.sliced(qsizetype(number.whole));
    while (fraction.endsWith('0'))
        fraction.chop(1);
    const qsizetype zeros =
        std::find_if(whole.cbegin(), whole.cend(), [](char c) { return c != '0'; }) -
        whole.cbegin();
    whole.remove(0, zeros);
    if (whole.isEmpty())
        whole = "0";
    if (!fraction.isEmpty())
        whole.append('.').append(fraction);
    if (number.negative && whole != "0")
        whole.prepend('-');
    return whole;
}

QByteArrayView plainDate(QByteArrayView text) {
    constexpr qsizetype dateSize = 10;   // 2026-11-21
    constexpr qsizetype secondSize = 19; // 2026-11-21 14:05:09
    if (text.size() < secondSize || text[4] != '-' || text[13] != ':')
        return text;
    if (text.size() > secondSize) {
        const auto rest = text.sliced(secondSize);
        if (rest[0] != '.' || !std::all_of(rest.begin() + 1, rest.end(), isDigit))
            return text; // a time zone
        while (text.endsWith('0'))
            text.chop(1);
        if (text.endsWith('.'))
            text.chop(1);
    }
    return text.sliced(dateSize) == " 00:00:00" ? text.first(dateSize) : text;
}
