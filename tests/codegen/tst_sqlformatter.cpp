#include "RecordingHost.h"
#include "clsSQLFormatter.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// As the program calls it.
QString format(RecordingHost& host, const QString& sql) {
    return clsSQLFormatter(host).FormatSQL(sql, 100, true, u"strSQL"_s, true, false);
}

// With narrow lines and nothing around them.
QString narrow(const QString& sql, bool atClauses = false) {
    RecordingHost host;
    const QString code = clsSQLFormatter(host).FormatSQL(sql, 10, true, u"s"_s, false, atClauses);
    return QString(code).replace(u"\" _\r\n  & \""_s, u"/"_s).sliced(5).chopped(1);
}

// Cutting as it is meant, on an array of lines of which each pushes its rest down to the next.
QStringList cutLineByLine(const QString& sql, qint32 width) {
    QStringList lines;
    for (qint32 i = 0; i <= std::nearbyint(double(sql.size()) / width + 1); ++i)
        lines << sql.mid(i * width, width);
    lines += QStringList(25, QString());
    for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
        const QString most = lines[i].chopped(lines[i].isEmpty() ? 0 : 1);
        qsizetype blank = most.lastIndexOf(u' ') + 1;
        qsizetype comma = most.lastIndexOf(u',') + 1;
        while (std::max(blank, comma) > width) {
            blank = blank > 0 ? most.left(blank - 1).lastIndexOf(u' ') + 1 : 0;
            comma = comma > 0 ? most.left(comma - 1).lastIndexOf(u',') + 1 : 0;
        }
        if (lines[i].size() < width && QString(lines[i + 1]).remove(u' ').isEmpty())
            break;
        const qsizetype cut = blank <= comma ? comma : blank;
        lines[i + 1].prepend(lines[i].mid(cut));
        lines[i].truncate(cut);
    }
    return lines;
}

} // namespace

class tst_SqlFormatter : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void shortTextLeavesTheClipboard() {
        RecordingHost host;
        host.clipboard = u"mine"_s;
        const QString sql = QString(99, u'x');
        QCOMPARE(format(host, sql), u"Dim strSQL As String \r\n\r\nstrSQL = \""_s + sql + u'"');
        QCOMPARE(clsSQLFormatter(host).FormatSQL(sql, 100, true, u"v"_s, false, false), sql);
        QCOMPARE(host.clipboard, u"mine"_s);
    }

    void textOfTheWidthIsCut() {
        RecordingHost host;
        const QString begin = QString(92, u'a');
        const QString code = format(host, begin + u" b,c def"_s);
        QCOMPARE(code, u"Dim strSQL As String \r\n\r\nstrSQL = \""_s + begin +
                           u" b,c \" _\r\n       & \"def\""_s);
        QCOMPARE(host.clipboard, code);
    }

    void cuts_data() {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("lines");
        QTest::newRow("at blanks")
            << u"select a from b where c"_s << u"select a /from b /where c"_s;
        QTest::newRow("at commas") << u"aaa,bbb,ccc,ddd,eee"_s << u"aaa,bbb,/ccc,ddd,/eee"_s;
        QTest::newRow("the later mark") << u"aaa, bbbcccdddeee"_s << u"aaa, /bbbcccdddeee"_s;
        QTest::newRow("a word longer than a line")
            << u"a bcdefghijklmnop q"_s << u"a /bcdefghijklmnop q"_s;
        QTest::newRow("a long word takes along what follows")
            << u"abcdefghijklmnop qrs tuv"_s << u"/abcdefghijklmnop qrs tuv"_s;
        QTest::newRow("nothing to cut at") << QString(30, u'x') << u"/"_s + QString(30, u'x');
        QTest::newRow("quotes and line ends are copied")
            << u"a \"b\"\r\nc 'd' e"_s << u"a \"b\"\r\nc /'d' e"_s;
    }
    void cuts() {
        QFETCH(QString, sql);
        QTEST(narrow(sql), "lines");
    }

    void nothingIsLostOrMoved() {
        RecordingHost host;
        QString sql;
        for (int i = 0; sql.size() < 20'000; ++i)
            sql += QString(i * 7 % 13 + 1, u'w') + (i % 5 == 0 ? u","_s : u" "_s);
        QString code = clsSQLFormatter(host).FormatSQL(sql, 100, true, u"s"_s, false, false);
        QCOMPARE(code.replace(u"\" _\r\n  & \""_s, QString()), u"s = \""_s + sql + u'"');
    }

    void randomTextsAreCutAsLineByLine() {
        QRandomGenerator random(20);
        const QString letters = u"abcdef  ,, \n"_s;
        for (int round = 0; round < 3'000; ++round) {
            const auto width = qint32(random.bounded(1, 12));
            QString sql;
            // Some with a long stretch of one character.
            for (int i = width + random.bounded(150); i > 0; --i)
                sql += letters[random.bounded(letters.size())];
            sql.insert(random.bounded(sql.size()),
                       QString(random.bounded(40), letters[random.bounded(letters.size())]));
            QString expected = u"s = \""_s;
            QStringList lines = cutLineByLine(sql, width);
            expected += lines.takeFirst();
            for (const QString& line : lines)
                if (!QString(line).remove(u' ').isEmpty())
                    expected += u"\" _\r\n  & \""_s + line;
            RecordingHost host;
            QCOMPARE(clsSQLFormatter(host).FormatSQL(sql, width, true, u"s"_s, false, false),
                     expected + u'"');
        }
    }

    void withoutContinuations() {
        RecordingHost host;
        const QString code =
            clsSQLFormatter(host).FormatSQL(u"select a from bc"_s, 10, false, u"s"_s, false, false);
        QCOMPARE(code, u"s = \"select a \" \r\ns = s & \"from b\""_s); // one character less
    }

    void clauses_data() {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("lines");
        QTest::newRow("lines of their own")
            << u"select a FROM b x Where c d"_s << u"select a /FROM b x /Where c d"_s;
        QTest::newRow("short lines are joined")
            << u"abcde, fghijkl, m, n"_s << u"abcde, /fghijkl, /m, n"_s;
        QTest::newRow("two in a line") << u"a from b from c"_s << u"a /from b /from c"_s;
        QTest::newRow("inside a word") << u"abc xfrom b"_s << u"abc /x/from b"_s;
    }
    void clauses() {
        QFETCH(QString, sql);
        QTEST(narrow(sql, true), "lines");
    }
};

QTEST_APPLESS_MAIN(tst_SqlFormatter)
#include "tst_sqlformatter.moc"
