#include "SortKey.h"

#include <algorithm>
#include <cmath>

namespace ora {

namespace {

constexpr char ValueMark = '\x40';
constexpr char NullFirstMark = '\x01';
constexpr char NullLastMark = '\x7F';

std::string_view bytesOf(sqlite3_value* value) {
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
    if (!bytes)
        return {};
    return {bytes, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

bool isNative(sqlite3_value* value) {
    const int type = sqlite3_value_type(value);
    return type == SQLITE_INTEGER || type == SQLITE_FLOAT;
}

// SQLite's own numbers sort among NUMBERs.
std::string stored(sqlite3_value* value) {
    if (!isNative(value))
        return std::string(bytesOf(value));
    const double real = sqlite3_value_double(value);
    if (std::isinf(real)) // before and behind all numbers
        return real < 0 ? std::string() : std::string(1, '\xFF');
    const OracleNumber number = sqlite3_value_type(value) == SQLITE_INTEGER
                                    ? OracleNumber(sqlite3_value_int64(value))
                                    : OracleNumber::fromDouble(sqlite3_value_double(value));
    return std::string(number.bytes());
}

} // namespace

void appendSortKey(std::string& key, sqlite3_value* value, bool descending, bool nullsFirst) {
    if (sqlite3_value_type(value) == SQLITE_NULL) {
        key += nullsFirst ? NullFirstMark : NullLastMark;
        return;
    }
    key += ValueMark;
    const std::size_t first = key.size();
    for (const char c : stored(value)) {
        key += c;
        if (c == '\0') // told from the end by what follows
            key += '\xFF';
    }
    key.append(2, '\0');
    if (!descending)
        return;
    std::transform(key.begin() + static_cast<std::ptrdiff_t>(first), key.end(),
                   key.begin() + static_cast<std::ptrdiff_t>(first),
                   [](char c) { return static_cast<char>(~c); });
}

int compareValues(sqlite3_value* a, sqlite3_value* b) {
    if (isNative(a) && isNative(b)) {
        const double x = sqlite3_value_double(a);
        const double y = sqlite3_value_double(b);
        return x < y ? -1 : x > y ? 1 : 0;
    }
    return bytesOf(a).compare(bytesOf(b));
}

} // namespace ora
