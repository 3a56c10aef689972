#include "EditorRules.h"
#include "KeywordTables.h"
#include "LineColours.h"
#include "RandomScript.h"
#include "RtfReader.h"
#include "SqlDocument.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString header =
    u"{\\rtf1\\ansi\\deff0\\adeflang1025{\\colortbl;\\red128\\green128\\blue128;\\red0\\green0\\"
    "blue255;\\red255\\green0\\blue0;\\red0\\green174\\blue0;\\red128\\green128\\blue128;}{\\cf0 "_s;

QString colouredBody(const QString& text) {
    QString document = Colour_Document(Build_Document(text, 0));
    if (!document.startsWith(header) || !document.endsWith(u"}}"_s))
        return u"not framed: "_s + document;
    return document.sliced(header.size()).chopped(2);
}

QString textOf(const QString& rtf) {
    QStringList lines;
    for (const RtfParagraph& paragraph : RtfReader::read(rtf))
        lines << paragraph.text;
    return lines.join(u'\n');
}

std::vector<RtfParagraph> colouredLineByLine(const QString& text) {
    std::vector<RtfParagraph> lines = plainParagraphs(text);
    for (RtfParagraph& line : lines) {
        line.runs = colourRuns(line.text);
        putInCapitals(line.text.data(), line.runs);
    }
    return lines;
}

} // namespace

class tst_Colouring : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyWordIsSearchedWithItsBlank() {
        QStringList words;
        for (const KeywordTable& table : keywordTables()) {
            for (const KeywordSlot& slot : table.words) {
                if (slot.search.isEmpty())
                    continue;
                QCOMPARE(slot.search, slot.display[0] + u' ');
                QCOMPARE(slot.display[1].toUpper(), slot.display[0]);
                QCOMPARE(slot.display[2].at(0), slot.display[0].at(0));
                QVERIFY(slot.display[3].isEmpty());
                const QString body = u"{\\cf%1 %2 }"_s.arg(int(table.colour)).arg(slot.display[0]);
                const QString found = colouredBody(slot.display[2] + u' ');
                if (found != body)
                    words << found; // another word is its end
            }
        }
        QCOMPARE(words, (QStringList{u"{\\cf2 F{\\cf1 OR }}"_s, u"{\\cf2 JO{\\cf2 IN }}"_s}));
        QCOMPARE(keywordTables()[0].words.size(), size_t(41));
        QCOMPARE(keywordTables()[1].words.size(), size_t(6));
        QCOMPARE(keywordTables()[2].words.size(), size_t(11));
    }

    void documents_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("body");
        QTest::newRow("put in capitals") << u"select x"_s << u"{\\cf2 SELECT }x"_s;
        QTest::newRow("no blank behind")
            << u"select\r\nfrom\tin(select,as"_s << u"select\\par \nfrom\tin(select,as"_s;
        QTest::newRow("end of a word") << u"has x"_s << u"h{\\cf2 AS }x"_s;
        QTest::newRow("end of a keyword") << u"band x"_s << u"b{\\cf1 AND }x"_s;
        QTest::newRow("longer keyword first") << u"asc as "_s << u"{\\cf2 ASC }{\\cf2 AS }"_s;
        QTest::newRow("two symbols") << u"a>=b<c"_s << u"a{\\cf1 >}{\\cf1 =}b{\\cf1 <}c"_s;
        QTest::newRow("green") << u"create or replace "_s
                               << u"{\\cf4 CREATE }{\\cf1 OR }{\\cf4 REPLACE }"_s;
        QTest::newRow("red") << u"drop table t"_s << u"{\\cf4 DROP }{\\cf3 TABLE }t"_s;
        QTest::newRow("literals and comments too")
            << u"'by ' --not x"_s << u"'{\\cf2 BY }' --{\\cf1 NOT }x"_s;
        QTest::newRow("not lost") << u"{in \\by }"_s << u"\\{{\\cf2 IN }\\\\{\\cf2 BY }\\}"_s;
        QTest::newRow("empty last line") << u"a\r\n"_s << u"a\\par \n\\par "_s;
    }
    void documents() {
        QFETCH(QString, text);
        QFETCH(QString, body);
        QCOMPARE(colouredBody(text), body);
    }

    void oneLineIsColouredAsTheWholeDocument() {
        QRandomGenerator random(20261121);
        for (int i = 0; i < 30'000; ++i) {
            const QString text = randomScript(random, 1 + random.bounded(30));
            const auto expected = RtfReader::read(Colour_Document(Build_Document(text, 0)));
            if (colouredLineByLine(text) != expected)
                QCOMPARE(text, u"a text that is coloured otherwise"_s);
        }
    }

    void everyTailOfEveryWord() {
        for (const KeywordTable& table : keywordTables())
            for (const KeywordSlot& slot : table.words)
                for (const QString& before : {u""_s, u"x"_s, u" "_s, u"\\"_s, u"ſ"_s})
                    for (qsizetype i = 0; i < slot.search.size(); ++i) {
                        const QString text = before + slot.search.mid(i) + u"b"_s;
                        QCOMPARE(colouredLineByLine(text),
                                 RtfReader::read(Colour_Document(Build_Document(text, 0))));
                    }
    }

    void nothingOfATextIsLost() {
        QRandomGenerator random(4711);
        for (int i = 0; i < 2000; ++i) {
            const QString text = randomScript(random, 12);
            if (isBlankScript(text))
                continue;
            const QString shown = textOf(Rebuild_Script(text, 0, false, false).rtf);
            QCOMPARE(shown, QString(text).replace(u"\r\n"_s, u"\n"_s));
        }
    }

    void keys_data() {
        QTest::addColumn<char16_t>("typed");
        QTest::addColumn<char16_t>("passed");
        QTest::addColumn<bool>("enter");
        QTest::newRow("Enter") << u'\r' << u'~' << true;
        QTest::newRow("backslash") << u'\\' << u'\0' << false;
        QTest::newRow("opening brace") << u'{' << u'\0' << false;
        QTest::newRow("closing brace stays") << u'}' << u'}' << false;
        QTest::newRow("tilde is not Enter") << u'~' << u'~' << false;
        QTest::newRow("other") << u'日' << u'日' << false;
    }
    void keys() {
        QFETCH(char16_t, typed);
        bool enterPressed = true; // from an Enter before
        Filter_Key(typed, enterPressed);
        QTEST(typed, "passed");
        QTEST(enterPressed, "enter");
    }

    void blankScripts() {
        QVERIFY(isBlankScript(u""));
        QVERIFY(isBlankScript(u"   "));
        QVERIFY(!isBlankScript(u"\r\n"));
        QVERIFY(!isBlankScript(u"\t"));
        QCOMPARE(emptyScript().count(u"\r\n"_s), 174);
        QCOMPARE(textOf(Rebuild_Script(emptyScript(), 0, false, true).rtf).size(), 174);
    }

    void enter_data() {
        QTest::addColumn<QString>("text"); // "|" is the caret
        QTest::addColumn<QString>("shown");
        QTest::newRow("at the end: one empty line") << u"ab~|"_s << u"ab\n|"_s;
        QTest::newRow("on the first of two lines") << u"ab~|\ncd"_s << u"ab\n|\ncd"_s;
        QTest::newRow("inside a line") << u"a~|b\ncd"_s << u"a\n|b\ncd"_s;
        QTest::newRow("at the end of many lines") << u"a\nb\nc\nd\ne~|"_s << u"a\nb\nc\nd\ne\n|"_s;
        QTest::newRow("on an empty last line") << u"a\n~|"_s << u"a\n\n|"_s;
        QTest::newRow("inside the last line: two") << u"a\nb~|c"_s << u"a\nb\n|\nc"_s;
        QTest::newRow("last line empty, on the first") << u"a~|b\n"_s << u"a\n|b\n"_s;
        QTest::newRow("earlier tildes") << u"a~b~|\nc~d"_s << u"a\nb\n|\nc\nd"_s;
        QTest::newRow("earlier tildes, last line") << u"a~b~|"_s << u"a\n\nb\n|"_s;
        QTest::newRow("a tilde ends the text") << u"a~|\nb~"_s << u"a\n|\nb\n"_s;
    }
    void enter() {
        QFETCH(QString, text);
        QFETCH(QString, shown);
        const auto caret = int(text.indexOf(u'|'));
        text.remove(u'|').replace(u"\n"_s, u"\r\n"_s);
        const ScriptDocument document = Rebuild_Script(text, caret, true, true);
        QCOMPARE(textOf(document.rtf).insert(document.caret, u'|'), shown);
    }

    void withoutTheOption() {
        const ScriptDocument document = Rebuild_Script(u"select a~b > {1}\r\nc"_s, 3, false, false);
        QCOMPARE(document.rtf, header + u"select a~b > \\{1\\}\\par \nc}}"_s);
        QCOMPARE(document.caret, 3);
    }
};

QTEST_APPLESS_MAIN(tst_Colouring)
#include "tst_colouring.moc"
