#pragma once

#include <QString>

// Small text rules that several folders share. All are pure functions.

// Without leading and trailing blanks (U+0020 only: tabs and line ends stay).
QString trimBlanks(QStringView text);

// The number with which the text begins, after leading blanks; 0 when there is none. A sign, a
// decimal point and an exponent are read, the locale is not.
double leadingNumber(QStringView text);

// Rounds to the nearest whole number, halves to the even neighbour. Throws Error::Overflow when the
// result does not fit.
qint32 roundHalfEven(double value);

// The format named "Fixed": at least one digit before the point, exactly two after, no grouping.
QString fixedFormat(double value);

// At most the first `count` characters as a person counts them (grapheme clusters): a surrogate
// pair or a letter with its combining marks is never cut.
QString firstCharacters(const QString& text, int count);

// UTF-8 code points in the bytes; a malformed byte counts as it would be shown, roughly one each.
qsizetype countUtf8Characters(const char* data, qsizetype size);
