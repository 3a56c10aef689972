#include "OdbcError.h"
#include "OdbcText.h"
#include "PlainText.h"

#include <QTest>

using namespace Qt::StringLiterals;

// How the texts of drivers become the program's, without a driver.
class tst_odbc_text : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void numbers_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("plain");
        const std::pair<const char*, const char*> rows[] = {
            {"0", "0"},
            {"42", "42"},
            {"-42", "-42"},
            {"007", "7"},
            {"1.50", "1.5"},
            {"1.00", "1"},
            {"10.0", "10"},
            {"-0.0", "0"},
            {"-0", "0"},
            {".5", "0.5"},
            {"-.5", "-0.5"},
            {"0.050", "0.05"},
            {"1E+15", "1000000000000000"},
            {"1.5e-7", "0.00000015"},
            {"12.5e1", "125"},
            {" 7 ", "7"},
            {"+7", "7"},
            {"100", "100"},
            {"NaN", "NaN"},
            {"Infinity", "Infinity"},
            {"", ""},
            {"1e999999999", "1e999999999"},
            {"1.2.3", "1.2.3"},
            {"5.", "5"},
            {"1e", "1e"},
            {"-", "-"},
        };
        for (const auto& [text, plain] : rows)
            QTest::newRow(text) << QByteArray(text) << QByteArray(plain);
    }
    void numbers() {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, plain);
        QCOMPARE(plainNumber(text), plain);
        const QByteArrayView quick = alreadyPlainNumber(text);
        QVERIFY(quick.isEmpty() || quick == plain);
    }

    void dates_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("plain");
        const std::pair<const char*, const char*> rows[] = {
            {"2026-11-21", "2026-11-21"},
            {"2026-11-21 00:00:00", "2026-11-21"},
            {"2026-11-21 00:00:00.000", "2026-11-21"},
            {"2026-11-21 14:05:09.2500", "2026-11-21 14:05:09.25"},
            {"2026-11-21 00:00:00.000001", "2026-11-21 00:00:00.000001"},
            {"2026-11-21 14:05:09+00", "2026-11-21 14:05:09+00"},
            {"infinity", "infinity"},
            {"14:05:09", "14:05:09"},
        };
        for (const auto& [text, plain] : rows)
            QTest::newRow(text) << QByteArray(text) << QByteArray(plain);
    }
    void dates() {
        QFETCH(QByteArray, text);
        QTEST(plainDate(text).toByteArray(), "plain");
    }

    void errors_data() {
        QTest::addColumn<QString>("state");
        QTest::addColumn<int>("native");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("error"); // code number: description
        const auto row = [](const char* fault, const QString& state, int native,
                            const QString& message, const QString& error) {
            QTest::newRow(fault) << state << native << message << error;
        };
        row("Oracle's own code is taken as it stands", u"S0002"_s, 942,
            u"[Oracle][ODBC][Ora]ORA-00942: table or view does not exist\n"_s,
            u"ORA-00942 -2147467259: ORA-00942: table or view does not exist"_s);
        row("Oracle's name in use is the command's fault", u"S0001"_s, 955,
            u"[Oracle][ODBC][Ora]ORA-00955: name is already used by an existing object"_s,
            u"ORA-00955 -2147217900: ORA-00955: name is already used by an existing object"_s);
        row("a bracket in the server's text stays", u"42601"_s, 1,
            u"[unixODBC]ERROR: syntax error at or near \"[x]\";\nError while executing the query"_s,
            u"ORA-00900 -2147217900: ERROR: syntax error at or near \"[x]\""_s);
        row("a lost connection, indented and remarked on", u"08S01"_s, 35,
            u"server closed the connection unexpectedly\n\tThis probably means the server "
            "terminated.\n;\nThe connection has been lost"_s,
            u"ORA-03113 -2147467259: server closed the connection unexpectedly\n This probably "
            "means the server terminated."_s);
        row("unknown state", u"XX000"_s, 5, u"odd"_s, u" -2147467259: odd"_s);
        row("a driver that says nothing", QString(), 0, QString(),
            u" -2147467259: The driver failed without saying why."_s);
        row("MariaDB's lost server", u"HY000"_s, 2013, u"Lost connection to server during query"_s,
            u"ORA-03113 -2147467259: Lost connection to server during query"_s);
    }
    void errors() {
        QFETCH(QString, state);
        QFETCH(int, native);
        QFETCH(QString, message);
        const ProviderError error = errorOf({state, native, serverText(message)});
        QTEST(QString(error.nativeCode() + u' ' + QString::number(error.number()) + u": "_s +
                      error.description()),
              "error");
    }

    void connectionValues() {
        QCOMPARE(connectionValue(u"tiger"_s), u"tiger"_s);
        QCOMPARE(connectionValue(u"a;b"_s), u"{a;b}"_s);
        QCOMPARE(connectionValue(u"a}b"_s), u"{a}}b}"_s);
    }

    void utf16() {
        const auto wide = toWide(u"aΩ🎂"_s);
        QByteArray out("x");
        appendUtf8(out, wide.data(), qsizetype(wide.size()) - 1);
        QCOMPARE(QString::fromUtf8(out), u"xaΩ🎂"_s);
        out.clear();
        appendUtf8(out, wide.data(), 3); // cut inside the surrogate pair
        QCOMPARE(QString::fromUtf8(out), u"aΩ?"_s);
        QCOMPARE(repairedUtf8("a\xff"), "a\xEF\xBF\xBD");
    }
};

QTEST_GUILESS_MAIN(tst_odbc_text)
#include "tst_odbc_text.moc"
