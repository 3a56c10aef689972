#include "DateFormat.h"
#include "NumberFormat.h"
#include "OraError.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

template<class Action>
QString outcome(Action action) {
    try {
        return QString::fromStdString(action());
    } catch (const ora::OraError& error) {
        return QString::fromStdString(error.message());
    }
}

void addRow(const char* first, const char* second, const char* result) {
    QTest::addRow("%s as %s", first, second)
        << QString::fromUtf8(first) << QString::fromUtf8(second) << QString::fromUtf8(result);
}

void addColumns() {
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("result");
}

// 14:05:09.123456 on Saturday 21 November 2026
const ora::OracleDate& now() {
    static const ora::OracleDate date = ora::timestampLiteral("2026-11-21 14:05:09.123456");
    return date;
}

} // namespace

class TestFormats : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void number_to_text_data();
    void number_to_text();
    void other_symbols();
    void text_to_number_data();
    void text_to_number();
    void date_to_text_data();
    void date_to_text();
    void text_to_date_data();
    void text_to_date();
    void everything_printed_is_read_back();
};

void TestFormats::number_to_text_data() {
    addColumns();
    addRow("-1234567890", "9999999999S", "1234567890-");
    addRow("0", "99.99", "   .00");
    addRow("-0.2", "99.99", "  -.20");
    addRow("0", "90.99", "  0.00");
    addRow("0", "9999", "    0");
    addRow("0", "B9999", "     ");
    addRow("123.456", "FM999.009", "123.456");
    addRow("123", "FM999.009", "123.00");
    addRow("5", "FM999.99", "5.");
    addRow("0.5", "FM990.00", "0.50");
    addRow("123.456", "9.9EEEE", "  1.2E+02");
    addRow("9.99", "9.9EEEE", "  1.0E+01");
    addRow("1E+123", "9.9EEEE", " 1.0E+123");
    addRow("123.45", "FML999.99", "$123.45");
    addRow("123.45", "L999.99", "          $123.45");
    addRow("1234567.891", "$9,999,999.00", " $1,234,567.89");
    addRow("12", "999,999", "      12");
    addRow("-5", "$99", " -$5");
    addRow("1234", "999", "####");
    addRow("12345", "9,999", "######");
    addRow("999.999", "999.99", "#######");
    addRow("-5", "99MI", " 5-");
    addRow("5", "FM99MI", "5");
    addRow("-5", "99PR", " <5>");
    addRow("5", "99PR", "  5 ");
    addRow("5", "S99", " +5");
    addRow("12.3", "99V9", " 123");
    addRow("255", "XXXX", "   FF");
    addRow("255", "FM0xxx", "00ff");
    addRow("-1", "XX", "###");
    addRow("1999", "RN", "        MCMXCIX");
    addRow("4000", "RN", "###############");
    addRow("0.5", "TM9", ".5");
    addRow("1234.5", "TME", "1.2345E+03");
    addRow("-0.001", "9.99", " -.00");
    addRow("1", "9.9.9", "ORA-01481: invalid number format model");
    addRow("1", ",9", "ORA-01481: invalid number format model");
    addRow("1", "abc", "ORA-01481: invalid number format model");
    addRow("1", "9G9.9", "ORA-01481: invalid number format model");
    addRow("1", "", "ORA-01481: invalid number format model");
}

void TestFormats::number_to_text() {
    QFETCH(QString, value);
    QFETCH(QString, model);
    QFETCH(QString, result);
    QCOMPARE(outcome([&] {
                 return ora::NumberFormat::parse(model.toStdString())
                     .toText(*ora::OracleNumber::parse(value.toStdString()));
             }),
             result);
}

void TestFormats::other_symbols() {
    const auto symbols =
        ora::NumberSymbols().withParameters("NLS_NUMERIC_CHARACTERS = ',.' NLS_CURRENCY='EUR'");
    const auto format = ora::NumberFormat::parse("FML9G999D99");
    QCOMPARE(format.toText(*ora::OracleNumber::parse("1234.5"), symbols),
             std::string("EUR1.234,5"));
    QCOMPARE(format.toNumber("EUR1.234,5", symbols).cellText(), std::string("1234.5"));
    QCOMPARE(outcome([] {
                 return ora::NumberSymbols().withParameters("NLS_NUMERIC_CHARACTERS=1").currency;
             }),
             u"ORA-12702: invalid NLS parameter string used in SQL function"_s);
}

void TestFormats::text_to_number_data() {
    addColumns();
    addRow("1,234", "9,999", "1234");
    addRow("12,34", "9,999", "ORA-01722: invalid number");
    addRow("$1,234.50", "$9,999.99", "1234.5");
    addRow("-5", "99", "-5");
    addRow("5-", "99MI", "-5");
    addRow("<5>", "99PR", "-5");
    addRow("+7", "S9", "7");
    addRow("FF", "XX", "255");
    addRow("FFF", "XX", "ORA-01722: invalid number");
    addRow("1.5E3", "9.9EEEE", "1500");
    addRow("123", "99", "ORA-01722: invalid number");
    addRow("12.345", "99.99", "ORA-01722: invalid number");
    addRow("123", "99V9", "12.3");
    addRow("12a", "999", "ORA-01722: invalid number");
    addRow(" ", "99", "ORA-01722: invalid number");
}

void TestFormats::text_to_number() {
    QFETCH(QString, value);
    QFETCH(QString, model);
    QFETCH(QString, result);
    QCOMPARE(outcome([&] {
                 return ora::NumberFormat::parse(model.toStdString())
                     .toNumber(value.toStdString())
                     .cellText();
             }),
             result);
}

void TestFormats::date_to_text_data() {
    addColumns();
    const auto row = [](const char* model, const char* result) { addRow("", model, result); };
    row("YYYY-MM-DD HH24:MI:SS.FF3", "2026-11-21 14:05:09.123");
    row("Day, DD Month YYYY|", "Saturday , 21 November  2026|");
    row("fmDay, DD Month YYYY|", "Saturday, 21 November 2026|");
    row("DY MON RM Q WW IW W D DDD J", "SAT NOV XI   4 47 47 3 7 325 2461366");
    row("dy Dy mon Mon", "sat Sat nov Nov");
    row("HH:MI AM hh12 a.m.", "02:05 PM 02 p.m.");
    row("YEAR, Year", "TWENTY TWENTY-SIX, Twenty Twenty-Six");
    row("DDTH Ddth ddth", "21ST 21st 21st");
    row("DDSP Ddspth DDTHSP", "TWENTY-ONE Twenty-First TWENTY-FIRST");
    row("JSP", "TWO MILLION FOUR HUNDRED SIXTY-ONE THOUSAND THREE HUNDRED SIXTY-SIX");
    row("SYYYY BC CC", " 2026 AD 21");
    row("Y,YYY YYY YY Y RRRR RR", "2,026 026 26 6 2026 26");
    row("IYYY IYY IY I", "2026 026 26 6");
    row("SSSSS", "50709");
    row("\"on the\" DDth", "on the 21ST");
    row("fmDD/MM fmDD", "21/11 21");
    row("DS DL", "11/21/2026 Saturday, November 21, 2026");
    row("TZH:TZM", "+00:00");
    row("YYYY-ZZ", "ORA-01821: date format not recognized");
    row("\"open", "ORA-01821: date format not recognized");
}

void TestFormats::date_to_text() {
    QFETCH(QString, model);
    QFETCH(QString, result);
    QCOMPARE(outcome([&] { return ora::DateFormat::parse(model.toStdString()).toText(now(), 6); }),
             result);
}

void TestFormats::text_to_date_data() {
    addColumns();
    addRow("21-NOV-26", "DD-MON-RR", "2026-11-21");
    addRow("21-NOV-81", "DD-MON-RR", "1981-11-21");
    addRow("21-NOV-81", "DD-MON-YY", "2081-11-21");
    addRow("21-NOV-2026", "DD-MON-YY", "2026-11-21");
    addRow("21 november 2026", "DD-MON-YYYY", "2026-11-21");
    addRow("21NOV2026", "DD-MON-YYYY", "2026-11-21");
    addRow("21/11/26", "DD-MM-YY", "2026-11-21");
    addRow("11/NOV/2026", "DD/MM/YYYY", "2026-11-11");
    addRow("20261121", "YYYY-MM-DD", "2026-11-21");
    addRow("2026-11-21", "DD-MON-RR", "ORA-01861: literal does not match format string");
    addRow("2026-11-21", "YYYY-MM-DD HH24:MI:SS", "2026-11-21");
    addRow("2026-11-21 14:05", "YYYY-MM-DD HH24:MI:SS", "2026-11-21 14:05:00");
    addRow("2026-11-21 14:05:09", "YYYY-MM-DD",
           "ORA-01830: date format picture ends before converting entire input string");
    addRow("2026-11", "YYYY-MM-DD", "ORA-01840: input value not long enough for date format");
    addRow("0000-01-01", "YYYY-MM-DD",
           "ORA-01841: (full) year must be between -4713 and +9999, and not be 0");
    addRow("2026-13-01", "YYYY-MM-DD", "ORA-01843: not a valid month");
    addRow("01/11/2026", "DD-MON-YYYY", "ORA-01843: not a valid month");
    addRow("2026-02-30", "YYYY-MM-DD", "ORA-01839: date not valid for month specified");
    addRow("2026-02-32", "YYYY-MM-DD",
           "ORA-01847: day of month must be between 1 and last day of month");
    addRow("abc", "DD-MON-RR",
           "ORA-01858: a non-numeric character was found where a numeric was expected");
    addRow("25:00", "HH24:MI", "ORA-01850: hour must be between 0 and 23");
    addRow("13:00 PM", "HH:MI AM", "ORA-01849: hour must be between 1 and 12");
    addRow("10:60", "HH24:MI", "ORA-01851: minutes must be between 0 and 59");
    addRow("10:00:60", "HH24:MI:SS", "ORA-01852: seconds must be between 0 and 59");
    addRow("01-01-2026 12:30 am", "DD-MM-YYYY HH:MI PM", "2026-01-01 00:30:00");
    addRow("11:00", "HH24:MI", "2026-11-01 11:00:00");
    addRow("29-FEB", "DD-MON", "ORA-01839: date not valid for month specified");
    addRow("366", "DDD", "ORA-01848: day of year must be between 1 and 365 (366 for leap year)");
    addRow("2459000", "J", "2020-05-30");
    addRow("2026 XII", "YYYY RM", "2026-12-01");
    addRow("Saturday 21-11-2026", "DAY DD-MM-YYYY", "2026-11-21");
    addRow("Funday 21-11-2026", "DAY DD-MM-YYYY", "ORA-01846: not a valid day of the week");
    addRow("2026-11-21T10:11:12", "YYYY-MM-DD\"T\"HH24:MI:SS", "2026-11-21 10:11:12");
    addRow("2026-11-21 10:11:12.5", "YYYY-MM-DD HH24:MI:SS.FF", "2026-11-21 10:11:12.5");
    addRow("10-10-1582", "DD-MM-YYYY", "1582-10-15");
    addRow("1-1-2026", "FXDD-MM-YYYY",
           "ORA-01862: the numeric value does not match the length of the format item");
    addRow("1-1-2026", "FXFMDD-MM-YYYY", "2026-01-01");
    addRow("01/01/2026", "FXDD-MM-YYYY", "ORA-01861: literal does not match format string");
    addRow("1 1", "YYYY YYYY", "ORA-01810: format code appears twice");
    addRow("1 1", "YYYY YY", "ORA-01812: year may only be specified once");
    addRow("1", "WW", "ORA-01820: format code cannot appear in date input format");
    addRow("1", "HH24 AM", "ORA-01818: 'HH24' precludes use of meridian indicator");
    addRow("", "YYYY", "ORA-01840: input value not long enough for date format");
}

void TestFormats::text_to_date() {
    QFETCH(QString, value);
    QFETCH(QString, model);
    QFETCH(QString, result);
    QCOMPARE(outcome([&] {
                 return ora::DateFormat::parse(model.toStdString())
                     .toDate(value.toStdString(), now())
                     .cellText();
             }),
             result);
}

void TestFormats::everything_printed_is_read_back() {
    const char* models[] = {
        "YYYY-MM-DD HH24:MI:SS",   "DD-MON-YYYY HH:MI:SS AM", "fmDay, Month DD, YYYY, SSSSS",
        "YYYYMMDDHH24MISS",        "YYYY DDD SSSSS",          "J SSSSS",
        "FXDD/MON/YYYY HH24:MI:SS"};
    for (const char* model : models) {
        const auto format = ora::DateFormat::parse(model);
        for (std::int64_t day = 2299161; day < 5373484; day += 100003) {
            const auto date = ora::OracleDate::fromDayAndSeconds(day, day % 86400);
            QVERIFY2(format.toDate(format.toText(date), now()) == date, model);
        }
    }
}

QTEST_APPLESS_MAIN(TestFormats)
#include "tst_formats.moc"
