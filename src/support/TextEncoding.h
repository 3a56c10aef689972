#pragma once

#include <QByteArrayView>
#include <QString>

// How a text stands in a file. SystemCodePage: what the platform's own programs write, UTF-8 except
// on Windows.
enum class TextEncoding { Utf8, Windows1252, Utf16LE, Utf16BE, SystemCodePage };

struct DecodedText {
    QString text;
    TextEncoding encoding;
};

// UTF-8, or UTF-16 with its byte order mark; else Windows-1252, which older programs wrote. A mark
// is read over.
DecodedText decodeText(QByteArrayView bytes);

struct EncodedText {
    QByteArray bytes;
    TextEncoding encoding;
};

// In the wanted encoding if decodeText then gives this very text back, else in UTF-8: no character
// is replaced, and none is taken for another later. Only half a surrogate pair, which is no
// character, becomes U+FFFD. Without a mark, except in UTF-16.
EncodedText encodeText(const QString& text, TextEncoding wanted);

// For a file that the program makes: UTF-8, on Windows the system's code page.
TextEncoding encodingOfNewFiles();
