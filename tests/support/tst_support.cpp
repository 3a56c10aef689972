#include "CConCat.h"
#include "Error.h"
#include "ErrorReport.h"
#include "Text.h"
#include "Version.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_support : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void leadingNumberReadsTheHead_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("number");
        QTest::newRow("a word behind the number") << u"250 rows"_s << 250.0;
        QTest::newRow("nothing") << QString() << 0.0;
        QTest::newRow("a word") << u"many"_s << 0.0;
        QTest::newRow("leading blanks, sign, fraction") << u"  -2.5x"_s << -2.5;
        QTest::newRow("an exponent") << u"1e3"_s << 1000.0;
        QTest::newRow("an e that is no exponent") << u"12em"_s << 12.0;
        QTest::newRow("a lone sign") << u"-"_s << 0.0;
        QTest::newRow("a lone point") << u"."_s << 0.0;
        QTest::newRow("a decimal comma ends it") << u"1,5"_s << 1.0;
    }
    void leadingNumberReadsTheHead() {
        QFETCH(QString, text);
        QFETCH(double, number);
        QCOMPARE(leadingNumber(text), number);
    }

    void halvesRoundToEven() {
        QCOMPARE(roundHalfEven(0.5), 0);
        QCOMPARE(roundHalfEven(1.5), 2);
        QCOMPARE(roundHalfEven(2.5), 2);
        QCOMPARE(roundHalfEven(-2.5), -2);
        QCOMPARE(roundHalfEven(2147483647.4), 2147483647);
        QVERIFY_THROWS_EXCEPTION(Error, roundHalfEven(2147483648.0));
        QVERIFY_THROWS_EXCEPTION(Error, roundHalfEven(qQNaN()));
    }

    void onlyBlanksAreTrimmed() {
        QCOMPARE(trimBlanks(u"  a b\t "), u"a b\t"_s);
        QCOMPARE(trimBlanks(u"\r\n "), u"\r\n"_s);
        QCOMPARE(trimBlanks(u"   "), QString());
    }

    void firstCharactersNeverCutsOne_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("head");
        QTest::newRow("shorter") << u"ab"_s << u"ab"_s;
        QTest::newRow("exact") << u"abc"_s << u"abc"_s;
        QTest::newRow("longer") << u"abcd"_s << u"abc"_s;
        QTest::newRow("surrogate pair at the edge") << u"ab\U0001F600cd"_s << u"ab\U0001F600"_s;
        QTest::newRow("combining mark at the edge") << u"abe\u0301d"_s << u"abe\u0301"_s;
        const QString lone = u"ab"_s + QChar(0xD800);
        QTest::newRow("lone surrogate") << QString(lone + u"cd"_s) << lone;
        const QString withNul = u"a"_s + QChar(0) + u"b"_s;
        QTest::newRow("NUL inside") << QString(withNul + u"c"_s + u"d"_s) << QString(withNul);
    }
    void firstCharactersNeverCutsOne() {
        QFETCH(QString, text);
        QFETCH(QString, head);
        QCOMPARE(firstCharacters(text, 3), head);
    }

    void fixedHasTwoDecimals() {
        QCOMPARE(fixedFormat(0.274), u"0.27"_s);
        QCOMPARE(fixedFormat(1234567), u"1234567.00"_s);
        QCOMPARE(fixedFormat(-86399.5), u"-86399.50"_s); // a run across midnight
    }

    void concatGrowsByItsStep() {
        CConCat text;
        QCOMPARE(text.Increment(), 50000);
        text.Cat(QByteArray(""));
        QCOMPARE(text.Length(), 0);
        QCOMPARE(text.bufferLength(), 50000); // an empty part grows a full buffer
        text.Cat(QByteArray(49999, 'x'));
        QCOMPARE(text.bufferLength(), 50000);
        text.Cat(QByteArray("y")); // would fill it exactly
        QCOMPARE(text.bufferLength(), 100000);
        text.Cat(QByteArray(60000, 'z'));
        QCOMPARE(text.bufferLength(), 160000); // by the part, not by the step
        QCOMPARE(text.Text().size(), 110000);
    }

    void concatKeepsItsStepAndCountsCharacters() {
        CConCat text;
        text.setIncrement(0);
        text.setIncrement(-5);
        QCOMPARE(text.Increment(), 50000);
        text.setIncrement(10);
        text.setText(QByteArray("Gr\xC3\xB6\xC3\x9F"
                                "e"));
        QCOMPARE(text.Length(), 5);
        QCOMPARE(text.bufferLength(), 7);
        text.Cat(u"\U0001F600"_s);
        QCOMPARE(text.Length(), 6);
        QCOMPARE(text.bufferLength(), 17);
        QCOMPARE(QString::fromUtf8(text.Text()), u"Größe\U0001F600"_s);
    }

    void concatHandsItsTextOver() {
        CConCat text;
        text.Cat(QByteArray("rows"));
        QCOMPARE(text.takeText(), QByteArray("rows"));
        QCOMPARE(text.Length(), 0);
        text.Cat(QByteArray("more"));
        QCOMPARE(text.Text(), QByteArray("more"));
    }

    void errorCollectsItsTrail() {
        try {
            try {
                throw Error(5, u"Server"_s, u"bad"_s);
            } catch (Error& error) {
                error.trailed(u"..modDatabase.Get_Recordset");
                throw;
            }
        } catch (Error& error) {
            QCOMPARE(error.trailed(u"..MDIMain.Load_Tables").source(),
                     u"Server..modDatabase.Get_Recordset..MDIMain.Load_Tables"_s);
        }
    }

    void reportIsMailedLetterForLetter() {
        const ErrorReport report{u"7"_s, u"src..A.B"_s, u"no such thing"_s};
        const QString version = QString::fromLatin1(QUILLMATE_VERSION);
        QCOMPARE(errorReportText(report),
                 u"-----Error Report for Product:Quillmate "_s + version +
                     u"\r\n----- ***** NO: 7\r\n ***** SOURCE: src..A.B\r\n ***** "
                     "DESCRIPTION:no such thing\r\n ***** "_s);
        const QString address = errorReportMailAddress(report);
        QVERIFY(address.startsWith(u"mailto:"_s + supportAddress() +
                                   u"?subject=Bug%20Report&body=-----Error%20Report"_s));
        QVERIFY(address.endsWith(u"DESCRIPTION:no%20such%20thing\r\n%20*****%20"_s));
        QVERIFY(!address.contains(u' '));
    }
};

QTEST_APPLESS_MAIN(tst_support)
#include "tst_support.moc"
