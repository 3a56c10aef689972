#include "OdbcText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t), "the manager's wide texts are UTF-16");

std::vector<SQLWCHAR> toWide(const QString& text) {
    std::vector<SQLWCHAR> wide(size_t(text.size()) + 1, 0);
    std::copy(text.utf16(), text.utf16() + text.size(), wide.begin());
    return wide;
}

QString fromUnits(const SQLWCHAR* text, qsizetype length) {
    return QString::fromUtf16(reinterpret_cast<const char16_t*>(text), length);
}

QString fromUnits(const SQLCHAR* text, qsizetype length) {
    return QString::fromUtf8(reinterpret_cast<const char*>(text), length);
}

void appendUtf8(QByteArray& out, const SQLWCHAR* text, qsizetype length) {
    const auto isAscii = [](SQLWCHAR unit) { return unit < 0x80; };
    const SQLWCHAR* end = text + length;
    const SQLWCHAR* plain = std::find_if_not(text, end, isAscii);
    const qsizetype start = out.size();
    out.resize(start + (plain - text));
    std::transform(text, plain, out.begin() + start, [](SQLWCHAR unit) { return char(unit); });
    if (plain != end)
        out += fromUnits(plain, end - plain).toUtf8();
}

QByteArray repairedUtf8(QByteArray bytes) {
    if (std::all_of(bytes.cbegin(), bytes.cend(), [](char c) { return c >= 0; }) ||
        bytes.isValidUtf8())
        return bytes;
    return QString::fromUtf8(bytes).toUtf8();
}

QString connectionValue(const QString& value) {
    const QStringView special = u"[]{}(),;?*=!@ ";
    const bool plain =
        std::none_of(value.cbegin(), value.cend(), [&](QChar c) { return special.contains(c); });
    if (plain)
        return value;
    return u'{' + QString(value).replace(u'}', u"}}"_s) + u'}';
}
