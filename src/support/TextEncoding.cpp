#include "TextEncoding.h"

#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>
#include <optional>

namespace {

// What Windows-1252 has at 0x80 to 0x9F instead of Latin-1's control characters; the five unused
// bytes stay as they are.
constexpr char16_t windows1252[] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};
constexpr char16_t firstReplaced = 0x80;
constexpr char16_t byteOrderMark = 0xFEFF;

QString fromWindows1252(QByteArrayView bytes) {
    QString text = QString::fromLatin1(bytes);
    for (QChar& character : text) {
        const size_t at = size_t(character.unicode()) - firstReplaced;
        if (at < std::size(windows1252))
            character = QChar(windows1252[at]);
    }
    return text;
}

// What does not fit becomes some other character.
QByteArray toWindows1252(QString text) {
    for (QChar& character : text) {
        const auto* found =
            std::find(std::begin(windows1252), std::end(windows1252), character.unicode());
        if (character.unicode() >= firstReplaced && found != std::end(windows1252))
            character = QChar(char16_t(firstReplaced + (found - windows1252)));
    }
    return text.toLatin1();
}

QByteArray toUtf8(const QString& text) {
    QStringEncoder encoder(QStringEncoder::Utf8); // QString::toUtf8 puts "?" for half a pair
    const QByteArray bytes = encoder.encode(text);
    // A mark that is part of the text would be read over.
    return text.startsWith(QChar(byteOrderMark)) ? "\xEF\xBB\xBF" + bytes : bytes;
}

QByteArray toMarkedUtf16(const QString& text, QStringEncoder::Encoding order) {
    QStringEncoder encoder(order, QStringEncoder::Flag::WriteBom);
    return encoder.encode(text);
}

QByteArray toSystemCodePage(const QString& text) {
    QStringEncoder encoder(QStringEncoder::System);
    return encoder.encode(text);
}

QByteArray bytesIn(TextEncoding encoding, const QString& text) {
    switch (encoding) {
    case TextEncoding::Windows1252: return toWindows1252(text);
    case TextEncoding::Utf16LE: return toMarkedUtf16(text, QStringEncoder::Utf16LE);
    case TextEncoding::Utf16BE: return toMarkedUtf16(text, QStringEncoder::Utf16BE);
    case TextEncoding::SystemCodePage: return toSystemCodePage(text);
    default: return toUtf8(text);
    }
}

std::optional<QString> decoded(QByteArrayView bytes, QStringDecoder::Encoding encoding) {
    // Stateless: a character cut off at the end is an error, not one to be completed later.
    QStringDecoder decoder(encoding, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

} // namespace

DecodedText decodeText(QByteArrayView bytes) {
    struct Reading {
        QByteArrayView mark;
        int unit; // bytes
        QStringDecoder::Encoding decoder;
        TextEncoding encoding;
    };
    static constexpr Reading readings[] = {
        {"\xFF\xFE", 2, QStringDecoder::Utf16LE, TextEncoding::Utf16LE},
        {"\xFE\xFF", 2, QStringDecoder::Utf16BE, TextEncoding::Utf16BE},
        {"", 1, QStringDecoder::Utf8, TextEncoding::Utf8},
    };
    for (const Reading& reading : readings) {
        if (!bytes.startsWith(reading.mark) || bytes.size() % reading.unit != 0)
            continue;
        if (const std::optional<QString> text = decoded(bytes, reading.decoder))
            return {*text, reading.encoding};
    }
    return {fromWindows1252(bytes), TextEncoding::Windows1252};
}

EncodedText encodeText(const QString& text, TextEncoding wanted) {
    if (wanted != TextEncoding::Utf8) {
        const QByteArray bytes = bytesIn(wanted, text);
        if (decodeText(bytes).text == text)
            return {bytes, wanted};
    }
    return {toUtf8(text), TextEncoding::Utf8};
}

TextEncoding encodingOfNewFiles() {
#ifdef Q_OS_WIN
    return TextEncoding::SystemCodePage;
#else
    return TextEncoding::Utf8;
#endif
}
