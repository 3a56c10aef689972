#include "TextEncoding.h"

#include <QTest>

using namespace Qt::StringLiterals;
using enum TextEncoding;

class tst_TextEncoding : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // What is read from bytes, and what the same text is written as again.
    void readAndWritten_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::addColumn<TextEncoding>("encoding");
        QTest::addColumn<QByteArray>("written");
        const auto row = [](const char* name, const QByteArray& bytes, const QString& text,
                            TextEncoding encoding, const QByteArray& written) {
            QTest::newRow(name) << bytes << text << encoding << written;
        };
        const auto same = [&row](const char* name, const QByteArray& bytes, const QString& text,
                                 TextEncoding encoding) {
            row(name, bytes, text, encoding, bytes);
        };
        same("empty", "", u""_s, Utf8);
        same("ASCII", "select 1", u"select 1"_s, Utf8);
        same("UTF-8", "Łódź €", u"Łódź €"_s, Utf8);
        row("UTF-8's mark is read over", "\xEF\xBB\xBFselect", u"select"_s, Utf8, "select");
        same("a mark that is text stays", "\xEF\xBB\xBF\xEF\xBB\xBFx", u"\uFEFFx"_s, Utf8);
        same("Windows-1252", "caf\xE9 \x80 \x93x\x94 \xA0\xFF", u"café € “x” \u00A0ÿ"_s,
             Windows1252);
        same("a letter at the end that looks cut off", "caf\xE9", u"café"_s, Windows1252);
        same("two of them", "\xE2\x82", u"â‚"_s, Windows1252);
        same("unused bytes of Windows-1252", "\x81\x8D\x8F\x90\x9D!",
             u"\u0081\u008D\u008F\u0090\u009D!"_s, Windows1252);
        same("overlong and surrogates are not UTF-8", "\xC0\xAF \xED\xA0\x80", u"À¯ í\u00A0€"_s,
             Windows1252);
        same("UTF-16", QByteArray("\xFF\xFEs\0\x41\x01", 6), u"sŁ"_s, Utf16LE);
        same("UTF-16, the other order", QByteArray("\xFE\xFF\0s\x01\x41", 6), u"sŁ"_s, Utf16BE);
        same("NUL", QByteArray("a\0b", 3), QString(u"a\0b"_s), Utf8);
        same("half a unit more than UTF-16", QByteArray("\xFF\xFEs\0t", 5), u"ÿþs\0t"_s,
             Windows1252);
    }
    void readAndWritten() {
        QFETCH(QByteArray, bytes);
        QFETCH(TextEncoding, encoding);
        const DecodedText read = decodeText(bytes);
        QTEST(read.text, "text");
        QCOMPARE(read.encoding, encoding);
        const EncodedText written = encodeText(read.text, read.encoding);
        QTEST(written.bytes, "written");
        QCOMPARE(written.encoding, encoding);
    }

    // What must not be written as it was read, or it would come back as another text.
    void becomesUtf8_data() {
        QTest::addColumn<TextEncoding>("wanted");
        QTest::addColumn<QString>("text");
        QTest::newRow("a letter that does not fit") << Windows1252 << u"é Ł"_s;
        QTest::newRow("a pair") << Windows1252 << u"é 🦆"_s;
        QTest::newRow("a control character whose byte means another") << Windows1252 << u"é\x80"_s;
        QTest::newRow("bytes that happen to be UTF-8") << Windows1252 << u"Ã©"_s;
        QTest::newRow("bytes that happen to be UTF-16's mark") << Windows1252 << u"ÿþab"_s;
    }
    void becomesUtf8() {
        QFETCH(TextEncoding, wanted);
        QFETCH(QString, text);
        const EncodedText written = encodeText(text, wanted);
        QCOMPARE(written.encoding, Utf8);
        QCOMPARE(written.bytes, text.toUtf8());
        QCOMPARE(decodeText(written.bytes).text, text);
    }

    void everyCharacterComesBack() {
        for (const TextEncoding wanted : {Utf8, Windows1252, Utf16LE, Utf16BE, SystemCodePage}) {
            QString all;
            for (char16_t c = 1; c < 0xD800; ++c)
                all += QChar(c);
            QCOMPARE(decodeText(encodeText(all, wanted).bytes).text, all);
            for (char16_t c = 1; c < 0x300; ++c) {
                const QString text = u"\x00E9 "_s + QChar(c);
                QCOMPARE(decodeText(encodeText(text, wanted).bytes).text, text);
            }
        }
    }

    void halfAPairBecomesNoQuestionMark() {
        const QString text = u"a"_s + QChar(0xD83E) + u"b"_s;
        for (const TextEncoding wanted : {Utf8, Windows1252})
            QCOMPARE(encodeText(text, wanted).bytes, "a\xEF\xBF\xBD"
                                                     "b"_ba);
    }
};

QTEST_APPLESS_MAIN(tst_TextEncoding)
#include "tst_textencoding.moc"
