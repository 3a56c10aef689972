#include "CellText.h"

#include "CellStore.h"

#include <QString>
#include <QUtf8StringView>

#include <charconv>
#include <cmath>
#include <cstring>

namespace {

constexpr size_t shortCellBytes = 250;
constexpr size_t longestRealText = 400; // 5e-324 has 326 characters without exponent

template<class Word>
std::uint64_t copyWord(char* to, const char* from) {
    Word word;
    std::memcpy(&word, from, sizeof word);
    std::memcpy(to, &word, sizeof word);
    return word;
}

// Copies the text; false when it is not all ASCII. Words may overlap, which is faster than a loop
// over the last bytes.
bool copyAscii(char* to, std::string_view text) {
    constexpr std::uint64_t highBits = 0x8080808080808080u;
    const char* const from = text.data();
    const size_t size = text.size();
    std::uint64_t seen = 0;
    if (size >= sizeof(std::uint64_t)) {
        const size_t last = size - sizeof(std::uint64_t);
        for (size_t at = 0; at < last; at += sizeof(std::uint64_t))
            seen |= copyWord<std::uint64_t>(to + at, from + at);
        seen |= copyWord<std::uint64_t>(to + last, from + last);
    } else if (size >= sizeof(std::uint32_t)) {
        const size_t last = size - sizeof(std::uint32_t);
        seen = copyWord<std::uint32_t>(to, from) | copyWord<std::uint32_t>(to + last, from + last);
    } else {
        for (size_t at = 0; at < size; ++at)
            seen |= copyWord<unsigned char>(to + at, from + at);
    }
    return (seen & highBits) == 0;
}

// Money and the like, ten times faster than the general way: a value of at most four decimals and
// fifteen digits has one shortest text, that of its whole number of ten-thousandths.
bool appendShortDecimal(CellStore& rows, double value) {
    constexpr double scale = 10000;
    constexpr double largest = 1e10;
    if (!(std::abs(value) < largest))
        return false;
    const auto scaled = std::int64_t(std::llround(value * scale));
    if (double(scaled) / scale != value)
        return false;
    char* cell = rows.shortCell();
    char* const start = cell;
    if (scaled < 0)
        *cell++ = '-';
    const auto magnitude = std::uint64_t(scaled < 0 ? -scaled : scaled);
    cell = std::to_chars(cell, start + shortCellBytes, magnitude / std::uint64_t(scale)).ptr;
    auto fraction = unsigned(magnitude % std::uint64_t(scale));
    if (fraction != 0)
        *cell++ = '.';
    for (unsigned unit = unsigned(scale) / 10; fraction != 0; unit /= 10) {
        *cell++ = char('0' + fraction / unit);
        fraction %= unit;
    }
    rows.commit(int(cell - start));
    return true;
}

// U+FFFD stands in a valid text as itself, so a conversion there and back changes invalid bytes
// only.
QByteArray repairedUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size())).toUtf8();
}

} // namespace

void appendInteger(CellStore& rows, std::int64_t value) {
    char* const cell = rows.shortCell();
    rows.commit(int(std::to_chars(cell, cell + shortCellBytes, value).ptr - cell));
}

void appendReal(CellStore& rows, double value) {
    if (appendShortDecimal(rows, value))
        return;
    if (std::isinf(value)) {
        const std::string_view text = value < 0 ? "-Inf" : "Inf";
        rows.append(text.data(), qsizetype(text.size()));
        return;
    }
    char text[longestRealText];
    if (value == 0)
        value = 0; // a negative zero shows no sign
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr;
    rows.append(text, end - text);
}

void appendText(CellStore& rows, std::string_view text) {
    if (text.size() <= shortCellBytes && copyAscii(rows.shortCell(), text))
        return rows.commit(int(text.size()));
    if (QUtf8StringView(text.data(), qsizetype(text.size())).isValidUtf8()) {
        rows.append(text.data(), qsizetype(text.size()));
        return;
    }
    const QByteArray valid = repairedUtf8(text);
    rows.append(valid.constData(), valid.size());
}

void appendDateText(CellStore& rows, std::string_view text) {
    constexpr size_t dateLength = 10; // 2026-11-21
    constexpr size_t timeEnd = 19;    // 2026-11-21 14:05:09
    const bool hasTime = text.size() >= timeEnd && text[4] == '-' && text[13] == ':';
    if (!hasTime) {
        appendText(rows, text);
        return;
    }
    if (text.size() > timeEnd && text[timeEnd] == '.') {
        while (text.back() == '0')
            text.remove_suffix(1);
        if (text.back() == '.')
            text.remove_suffix(1);
    }
    if (text.substr(dateLength + 1) == "00:00:00")
        text = text.substr(0, dateLength);
    appendText(rows, text);
}

void appendBinary(CellStore& rows, std::string_view bytes) {
    const QByteArray hex =
        QByteArray::fromRawData(bytes.data(), qsizetype(bytes.size())).toHex().toUpper();
    rows.append(hex.constData(), hex.size());
}
