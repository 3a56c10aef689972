#include "RtfReader.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString header = u"{\\rtf1\\ansi\\deff0\\adeflang1025{\\colortbl;\\red128\\green128\\blue128;"
                       "\\red0\\green0\\blue255;\\red255\\green0\\blue0;}"_s;

// Paragraphs separated by "/"; a coloured run as <blue hex:text>.
QString printed(const std::vector<RtfParagraph>& paragraphs) {
    QString text;
    for (const RtfParagraph& paragraph : paragraphs) {
        qsizetype at = 0;
        if (&paragraph != &paragraphs.front())
            text += u'/';
        for (const ColourRun& run : paragraph.runs) {
            text += QStringView(paragraph.text).sliced(at, run.start - at);
            text += u'<' + QString::number(run.colour & 0xffffff, 16) + u':';
            text += QStringView(paragraph.text).sliced(run.start, run.length) + u'>';
            at = run.start + run.length;
        }
        text += QStringView(paragraph.text).sliced(at);
    }
    return text;
}

QString shown(const QString& body) {
    return printed(RtfReader::read(QString(header + body)));
}

} // namespace

class tst_RtfReader : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void read_data() {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, const QString& body, const QString& expected) {
            QTest::newRow(name) << body << expected;
        };
        row("colours nest", u"{\\cf0 {\\cf2 {\\cf1 F}OR }a {\\cf1 =} b}}"_s,
            u"<808080:F><ff:OR >a <808080:=> b"_s);
        row("equal neighbours join", u"{\\cf2 a}{\\cf2 b}}"_s, u"<ff:ab>"_s);
        row("colour across a paragraph", u"{\\cf3 a\\par b}}"_s, u"<ff0000:a>/<ff0000:b>"_s);
        row("colour 0, empty entry and out of range", u"\\cf0 a\\cf77 b\\cf-3 c}"_s, u"abc"_s);
        row("line feeds and returns are nothing", u"a\r\nb\nc\\par \nd}"_s, u"abc/d"_s);
        row("one blank ends a word", u"\\par  a\\par\\par b}"_s, u"/ a//b"_s);
        row("last \\par begins nothing", u"{a\\par }}"_s, u"a"_s);
        row("two at the end show one empty line", u"a\\par\\par }"_s, u"a/"_s);
        row("escapes", u"a\\\\b\\{c\\}d\\'e4\\'80\\~}"_s, u"a\\b{c}dä€\u00a0"_s);
        row("\\u with fallback", u"\\u8364?x\\uc0\\u228y\\uc2\\u-10179\\'41\\'42\\u-8704??z}"_s,
            u"€xäy😀z"_s);
        row("line ends in escapes", u"a\\u10?b\\'0dc\u2029d}"_s, u"a/b/c/d"_s);
        row("a group ends the fallback", u"\\uc9\\u228{b}c}"_s, u"äbc"_s);
        row("unknown words", u"\\b0\\fs17\\lang1033 a\\i b\\foo-12 c}"_s, u"abc"_s);
        row("skipped groups", u"{\\*\\gen {x\\}} y;}a{\\fonttbl{\\f0 Arial;}}b}"_s, u"ab"_s);
        row("raw characters", u"tab\there é 日本語 \U0001F600}"_s,
            u"tab\there é 日本語 \U0001F600"_s);

        // Hostile and broken: all text that could be meant comes out.
        row("brace too many", u"a}}} b { c}"_s, u"a b  c"_s);
        row("nothing closed", u"{{{\\cf2 a"_s, u"<ff:a>"_s);
        row("open \\* group", u"{\\*\\foo a\\par b"_s, u"a/b"_s);
        row("\\* within text", u"a\\* b{c \\*\\d e}}"_s, u"a bc e"_s);
        row("cut within escape", u"a\\"_s, u"a"_s);
        row("cut within hexadecimal", u"a\\'e"_s, u"ae"_s);
        row("no hexadecimal", u"a\\'xyz}"_s, u"axyz"_s);
        row("number too large", u"\\u99999999999999999999?a\\cf99999999999999 b}"_s,
            u"\ufffd"_s + u"ab"_s);
        row("fallback that would swallow all", u"\\uc1000000\\u65 0123456789abcdefghij}"_s,
            u"Aghij"_s);
        row("NUL and lone surrogates", u"a"_s + QChar(0) + QChar(0xd800) + u"b}"_s,
            u"a"_s + QChar(0) + QChar(0xd800) + u"b"_s);
    }
    void read() {
        QFETCH(QString, body);
        QTEST(shown(body), "expected");
    }

    void anOpenColourTableIsText() {
        QCOMPARE(printed(RtfReader::read(u"{\\rtf1{\\colortbl;\\red1;abc\\par d"_s)), u";;abc/d"_s);
    }

    void withoutHeaderItIsPlainText() {
        QCOMPARE(printed(RtfReader::read(u"{\\cf2 a}\r\nb\rc\n\nd\r\n"_s)), u"{\\cf2 a}/b/c//d/"_s);
        QCOMPARE(printed(RtfReader::read(u""_s)), u""_s);
        QCOMPARE(RtfReader::read(u"{\\rtf"_s).size(), size_t(1));
    }

    // None of these may overflow the stack or take more than a pass or two.
    void megabytesOfBraces() {
        const qsizetype many = 2'000'000;
        const QString open(many, u'{');
        QCOMPARE(shown(open + u"a"_s), u"a"_s);
        QCOMPARE(shown(open + u"a"_s + QString(many + 1000, u'}') + u"b"_s), u"ab"_s);
        QCOMPARE(shown(u"{\\*\\x"_s.repeated(many / 5) + u" a"_s), u"a"_s);
        QCOMPARE(shown(u"{\\u65"_s.repeated(many / 5) + u" z"_s).size(), many / 5);
    }

    void writtenTextIsReadBack() {
        const std::vector<RtfParagraph> paragraphs = {
            {u"SELECT \\ {x} é😀\t"_s, {{0, 7, 0xff0000ff}, {9, 3, 0xff808080}}},
            {u""_s, {}},
            {u"a"_s + QChar(0) + QChar(0xdc00), {{0, 1, 0xff0000ff}}},
            {u""_s, {}}};
        QCOMPARE(printed(RtfReader::read(writeRtf(paragraphs))), printed(paragraphs));
    }
};

QTEST_APPLESS_MAIN(tst_RtfReader)
#include "tst_rtfreader.moc"
