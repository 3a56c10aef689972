#include "ScriptText.h"

#include <QStringDecoder>

namespace {

// What Windows-1252 has at 0x80 to 0x9F instead of Latin-1's control characters; the five unused
// bytes stay as they are.
constexpr char16_t windows1252[] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};
constexpr char16_t firstReplaced = 0x80;

QString fromWindows1252(QByteArrayView bytes) {
    QString text = QString::fromLatin1(bytes);
    for (QChar& character : text) {
        const size_t at = size_t(character.unicode()) - firstReplaced;
        if (at < std::size(windows1252))
            character = QChar(windows1252[at]);
    }
    return text;
}

} // namespace

QString decodeScript(QByteArrayView bytes) {
    const auto marked = QStringConverter::encodingForData(bytes);
    QStringDecoder decoder(marked.value_or(QStringConverter::Utf8));
    const QString text = decoder.decode(bytes);
    return decoder.hasError() ? fromWindows1252(bytes) : text;
}

QString withEditorLineEnds(const QString& text) {
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    lines.replace(u'\r', u'\n');
    return lines.replace(QLatin1String("\n"), QLatin1String("\r\n"));
}
