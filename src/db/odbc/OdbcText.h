#pragma once

#include "OdbcApi.h"

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <optional>
#include <vector>

// Texts as the driver manager takes and gives them, and cells as the program shows them.

// UTF-16 with a closing zero, for the manager's wide functions.
std::vector<SQLWCHAR> toWide(const QString& text);

// `length` units of UTF-16 or UTF-8; whatever is neither becomes a replacement character.
QString fromUnits(const SQLWCHAR* text, qsizetype length);
QString fromUnits(const SQLCHAR* text, qsizetype length);

// A text that a call writes into a buffer of its caller: call(buffer, units of the buffer, &units
// of the text). Called again with more room when the text did not fit. Nothing after a failure.
template<typename Unit, typename Call>
std::optional<QString> readText(Call call) {
    std::vector<Unit> buffer(512);
    SQLSMALLINT length = 0;
    SQLRETURN result = call(buffer.data(), SQLSMALLINT(buffer.size()), &length);
    if (SQL_SUCCEEDED(result) && size_t(length) >= buffer.size()) {
        buffer.resize(size_t(length) + 1);
        result = call(buffer.data(), SQLSMALLINT(buffer.size()), &length);
    }
    if (!SQL_SUCCEEDED(result))
        return std::nullopt;
    return fromUnits(buffer.data(), std::clamp<qsizetype>(length, 0, qsizetype(buffer.size()) - 1));
}

// Appends the UTF-16 text as UTF-8; an unpaired surrogate becomes a question mark.
void appendUtf8(QByteArray& out, const SQLWCHAR* text, qsizetype length);

// The bytes when they are UTF-8, else with each malformed one replaced.
QByteArray repairedUtf8(QByteArray bytes);

// A value of a connection string: in braces when it holds a character that would end it.
QString connectionValue(const QString& value);
