#pragma once

#include <QByteArray>
#include <QByteArrayView>

// Numbers and dates as every back-end hands them over, from what servers and drivers write.

// A number as servers and drivers write it (" 1.50", ".5", "1E+15") as plain decimal digits: no
// exponent, a digit before the point, no zeros at the end of the fraction. A text that is no such
// number ("NaN", "Infinity") stays as it is.
QByteArray plainNumber(QByteArrayView text);

// The part of the text that is such a number already, when nothing has to be added; most are. Empty
// when plainNumber has to be asked.
QByteArrayView alreadyPlainNumber(QByteArrayView text);

// The part of a date or timestamp text without a time of midnight and without zeros at the end of
// its fraction. Texts of another shape stay as they are.
QByteArrayView plainDate(QByteArrayView text);
