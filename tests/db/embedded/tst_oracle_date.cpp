#include "DateFormat.h"
#include "DateUnits.h"
#include "IntervalValue.h"
#include "OraError.h"
#include "OracleDate.h"

#include <QDateTime>
#include <QLocale>
#include <QRandomGenerator>
#include <QtTest>

using namespace Qt::StringLiterals;
using ora::OracleDate;

namespace {

OracleDate date(const QString& text) {
    return ora::timestampLiteral(text.toStdString());
}

QString cell(const OracleDate& value) {
    return QString::fromStdString(value.cellText());
}

// The result's text, or the failure's.
template<class Action>
QString outcome(Action action) {
    try {
        return QString::fromStdString(action());
    } catch (const ora::OraError& error) {
        return QString::fromStdString(error.message());
    }
}

// Any second of the centuries for which both calendars are the same.
QDateTime anyMoment(QRandomGenerator& random) {
    constexpr int days = 3000000;
    constexpr int secondsOfDay = 86400;
    return {QDate(1700, 1, 1).addDays(random.bounded(days)),
            QTime(0, 0).addSecs(random.bounded(secondsOfDay)), Qt::UTC};
}

OracleDate asOracle(const QDateTime& moment) {
    return OracleDate::fromDayAndSeconds(moment.date().toJulianDay(),
                                         moment.time().msecsSinceStartOfDay() / 1000);
}

QString text(const OracleDate& value, const char* model) {
    return QString::fromStdString(ora::DateFormat::parse(model).toText(value, 0));
}

QString isoText(const QDateTime& moment) {
    return moment.toString(u"yyyy-MM-dd HH:mm:ss"_s);
}

QString unitText(const OracleDate& value) {
    return text(value, "YYYY-MM-DD HH24:MI:SS");
}

} // namespace

class TestOracleDate : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void calendar_agrees_with_qt();
    void months_agree_with_qt();
    void units_agree_with_qt();
    void formats_agree_with_qt();
    void calendar_has_no_holes();
    void stored_form();
    void months_data();
    void months();
    void day_arithmetic();
    void months_between_data();
    void months_between();
    void units_data();
    void units();
    void unknown_units();
    void weeks();
    void intervals_data();
    void intervals();
    void interval_order();
    void interval_arithmetic();
};

// QDate's Gregorian days after the weeks of the reform; both count the same day numbers.
void TestOracleDate::calendar_agrees_with_qt() {
    for (QDate day(1584, 1, 1); day.year() < 10000; day = day.addDays(17)) {
        const OracleDate mine = OracleDate::fromDayNumber(day.toJulianDay());
        QCOMPARE(cell(mine), day.toString(Qt::ISODate));
        QCOMPARE(mine.dayNumber(), day.toJulianDay());
        QCOMPARE(mine.dayOfWeek(), day.dayOfWeek() % 7);
        QCOMPARE(mine.dayOfYear(), day.dayOfYear());
        int isoYear = 0;
        QCOMPARE(mine.isoWeek(), day.weekNumber(&isoYear));
        QCOMPARE(mine.isoYear(), isoYear);
    }
}

void TestOracleDate::months_agree_with_qt() {
    constexpr int trials = 5000;
    QRandomGenerator random(1);
    for (int i = 0; i < trials; ++i) {
        const QDateTime moment = anyMoment(random);
        const int months = random.bounded(-1200, 1200);
        const bool last = moment.date().day() == moment.date().daysInMonth();
        QDateTime moved = moment.addMonths(months);
        if (last) // the server goes from the last day of a month to the last day
            moved.setDate({moved.date().year(), moved.date().month(), moved.date().daysInMonth()});
        QCOMPARE(unitText(asOracle(moment).plusMonths(months)), isoText(moved));
        const int seconds = random.bounded(-1000000000, 1000000000);
        const ora::OracleNumber days =
            ora::OracleNumber(seconds) / ora::OracleNumber(OracleDate::SecondsPerDay);
        QCOMPARE(unitText(asOracle(moment).plusDays(days)), isoText(moment.addSecs(seconds)));
    }
}

void TestOracleDate::units_agree_with_qt() {
    constexpr int trials = 5000;
    constexpr int lateDay = 16; // rounds up
    QRandomGenerator random(2);
    for (int i = 0; i < trials; ++i) {
        const QDateTime moment = anyMoment(random);
        const QDate day = moment.date();
        const QTime time = moment.time();
        const OracleDate value = asOracle(moment);
        const auto check = [&](const char* unit, const QDateTime& start, const QDateTime& next,
                               bool up) {
            QCOMPARE(unitText(ora::truncatedTo(value, unit)), isoText(start));
            QCOMPARE(unitText(ora::roundedTo(value, unit)), isoText(up ? next : start));
        };
        const auto at = [](const QDate& date) { return QDateTime(date, QTime(0, 0), Qt::UTC); };
        const QDate year(day.year(), 1, 1);
        check("YYYY", at(year), at(year.addYears(1)), day.month() > 6);
        const int inQuarter = (day.month() - 1) % 3;
        const QDate quarter(day.year(), day.month() - inQuarter, 1);
        check("Q", at(quarter), at(quarter.addMonths(3)),
              inQuarter == 2 || (inQuarter == 1 && day.day() >= lateDay));
        const QDate month(day.year(), day.month(), 1);
        check("MM", at(month), at(month.addMonths(1)), day.day() >= lateDay);
        check("DD", at(day), at(day.addDays(1)), time.hour() >= 12);
        const QDateTime hour(day, QTime(time.hour(), 0), Qt::UTC);
        check("HH", hour, hour.addSecs(3600), time.minute() >= 30);
        const QDateTime minute(day, QTime(time.hour(), time.minute()), Qt::UTC);
        check("MI", minute, minute.addSecs(60), time.second() >= 30);
        const QDate monday = day.addDays(1 - day.dayOfWeek());
        QCOMPARE(unitText(ora::truncatedTo(value, "IW")), isoText(at(monday)));
    }
}

void TestOracleDate::formats_agree_with_qt() {
    constexpr int trials = 5000;
    const QLocale english = QLocale::c();
    QRandomGenerator random(3);
    for (int i = 0; i < trials; ++i) {
        const QDateTime moment = anyMoment(random);
        const QDate day = moment.date();
        const OracleDate value = asOracle(moment);
        QCOMPARE(text(value, "YYYY-MM-DD HH24:MI:SS"), isoText(moment));
        QCOMPARE(text(value, "FMDay, DD Month YYYY HH:MI:SS AM"),
                 english.toString(moment, u"dddd, d MMMM yyyy h:m:s AP"_s));
        QCOMPARE(text(value, "Dy Mon YY"), english.toString(moment, u"ddd MMM yy"_s));
        int isoYear = 0;
        const int week = day.weekNumber(&isoYear);
        const QStringList counts{QString::number(isoYear),
                                 QString::number(week),
                                 QString::number((day.month() + 2) / 3),
                                 QString::number(day.dayOfYear()),
                                 QString::number(day.dayOfWeek() % 7 + 1),
                                 QString::number(day.toJulianDay()),
                                 QString::number(moment.time().msecsSinceStartOfDay() / 1000)};
        QCOMPARE(text(value, "FMIYYY IW Q DDD D J SSSSS"), counts.join(u' '));
    }
}

void TestOracleDate::calendar_has_no_holes() {
    constexpr std::int64_t YearZero = 1721058; // 366 days that no date has
    for (std::int64_t number = 0; number <= OracleDate::MaxDayNumber; number += 3) {
        if (number >= YearZero && number < YearZero + 366)
            continue;
        const OracleDate day = OracleDate::fromDayNumber(number);
        QCOMPARE(day.dayNumber(), number);
        QVERIFY(ora::isCalendarDay(day.year, day.month, day.day));
    }
    QCOMPARE(cell(date(u"1582-10-04"_s).plusDays(ora::OracleNumber(1))), u"1582-10-15"_s);
    QVERIFY(!ora::isCalendarDay(1582, 10, 10));
    QVERIFY(ora::isCalendarDay(1500, 2, 29));
    QVERIFY(!ora::isCalendarDay(1900, 2, 29));
}

void TestOracleDate::stored_form() {
    const std::string midnight = date(u"2026-11-21"_s).encoded();
    QCOMPARE(QByteArray::fromStdString(midnight).toHex(), QByteArray("787e0b15010101"));
    const OracleDate timed = date(u"2026-11-21 14:05:09.5"_s);
    QCOMPARE(QByteArray::fromStdString(timed.encoded()).toHex(),
             QByteArray("787e0b150f060a1dcd6500"));
    QVERIFY(OracleDate::fromBytes(timed.encoded().data(), 11) == timed);
    const QStringList ordered = {u"-4712-01-01"_s, u"-0100-12-31"_s, u"-0001-01-01"_s,
                                 u"0001-01-01"_s,  u"1999-12-31"_s,  u"1999-12-31 00:00:00.1"_s,
                                 u"2000-01-01"_s,  u"9999-12-31"_s};
    for (int i = 1; i < ordered.size(); ++i)
        QVERIFY2(date(ordered[i - 1]).encoded() < date(ordered[i]).encoded(),
                 qPrintable(ordered[i]));
    // Damaged bytes give a date that the calendar has.
    for (const char* bytes : {"\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "\x73\xB6\x0A\x0A\x01\x01\x01"}) {
        const OracleDate damaged = OracleDate::fromBytes(bytes, 7);
        QVERIFY(ora::isCalendarDay(damaged.year, damaged.month, damaged.day));
    }
}

void TestOracleDate::months_data() {
    QTest::addColumn<QString>("from");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("to");
    const auto row = [](const char* name, const char* from, int count, const char* to) {
        QTest::newRow(name) << QString::fromLatin1(from) << count << QString::fromLatin1(to);
    };
    row("short month cuts the day", "2026-01-31", 1, "2026-02-28");
    row("last day stays last", "2026-02-28", 1, "2026-03-31");
    row("leap day", "2024-02-29", 12, "2025-02-28");
    row("backwards over a year", "2026-01-15 10:11:12", -2, "2025-11-15 10:11:12");
    row("no year 0", "-0001-12-15", 1, "0001-01-15");
    row("too far", "9999-12-01", 1,
        "ORA-01841: (full) year must be between -4713 and +9999, and not be 0");
}

void TestOracleDate::months() {
    QFETCH(QString, from);
    QFETCH(int, count);
    QFETCH(QString, to);
    QCOMPARE(outcome([&] { return date(from).plusMonths(count).cellText(); }), to);
}

void TestOracleDate::day_arithmetic() {
    const OracleDate noon = date(u"2026-11-21 12:00:00"_s);
    const auto plus = [&](const char* days) {
        return cell(noon.plusDays(*ora::OracleNumber::parse(days)));
    };
    QCOMPARE(plus("1"), u"2026-11-22 12:00:00"_s);
    QCOMPARE(plus("-0.5"), u"2026-11-21"_s);
    QCOMPARE(plus("0.000011574074074074074074"), u"2026-11-21 12:00:01"_s);
    QCOMPARE((noon - date(u"2026-11-20"_s)).cellText(), std::string("1.5"));
    QCOMPARE((noon - date(u"2026-11-21 12:00:01"_s)).cellText().substr(0, 14),
             std::string("-0.00001157407"));
    QCOMPARE(cell(date(u"2026-11-21 08:00:00"_s).nextDay(6)), u"2026-11-28 08:00:00"_s);
    QCOMPARE(cell(date(u"2026-11-21"_s).nextDay(0)), u"2026-11-22"_s);
    QCOMPARE(cell(date(u"2024-02-03 08:00:00"_s).lastDay()), u"2024-02-29 08:00:00"_s);
    QCOMPARE(cell(date(u"2026-12-31 23:59:59.9999999"_s).withFraction(6)), u"2027-01-01"_s);
}

void TestOracleDate::months_between_data() {
    QTest::addColumn<QString>("later");
    QTest::addColumn<QString>("earlier");
    QTest::addColumn<QString>("months");
    const auto row = [](const char* name, const char* later, const char* earlier,
                        const char* months) {
        QTest::newRow(name) << QString::fromLatin1(later) << QString::fromLatin1(earlier)
                            << QString::fromLatin1(months);
    };
    row("same day whatever the time", "2003-08-02 23:00:00", "2003-06-02", "2");
    row("both last days", "2007-04-30", "2007-02-28", "2");
    row("part of a month of 31 days", "1995-02-02", "1995-01-01",
        "1.03225806451612903225806451612903225806");
    row("negative", "2003-03-14", "2003-07-14", "-4");
}

void TestOracleDate::months_between() {
    QFETCH(QString, later);
    QFETCH(QString, earlier);
    QFETCH(QString, months);
    QCOMPARE(QString::fromStdString(ora::monthsBetween(date(later), date(earlier)).cellText()),
             months);
}

void TestOracleDate::units_data() {
    QTest::addColumn<QString>("unit");
    QTest::addColumn<QString>("truncated");
    QTest::addColumn<QString>("rounded");
    const auto row = [](const char* unit, const char* truncated, const char* rounded) {
        QTest::newRow(unit) << QString::fromLatin1(unit) << QString::fromLatin1(truncated)
                            << QString::fromLatin1(rounded);
    };
    // Of Wednesday 2026-08-19 12:30:30
    row("CC", "2001-01-01", "2001-01-01");
    row("YYYY", "2026-01-01", "2027-01-01");
    row("iyyy", "2025-12-29", "2027-01-04");
    row("Q", "2026-07-01", "2026-10-01");
    row("MONTH", "2026-08-01", "2026-09-01");
    row("WW", "2026-08-13", "2026-08-20");
    row("IW", "2026-08-17", "2026-08-17");
    row("W", "2026-08-15", "2026-08-22");
    row("DD", "2026-08-19", "2026-08-20");
    row("Day", "2026-08-16", "2026-08-23");
    row("HH24", "2026-08-19 12:00:00", "2026-08-19 13:00:00");
    row("MI", "2026-08-19 12:30:00", "2026-08-19 12:31:00");
}

void TestOracleDate::units() {
    QFETCH(QString, unit);
    QFETCH(QString, truncated);
    QFETCH(QString, rounded);
    const OracleDate value = date(u"2026-08-19 12:30:30"_s);
    QCOMPARE(cell(ora::truncatedTo(value, unit.toStdString())), truncated);
    QCOMPARE(cell(ora::roundedTo(value, unit.toStdString())), rounded);
}

void TestOracleDate::unknown_units() {
    const OracleDate value = date(u"2026-08-19"_s);
    QCOMPARE(outcome([&] { return ora::truncatedTo(value, "SS").cellText(); }),
             u"ORA-01899: bad precision specifier"_s);
    QCOMPARE(outcome([&] { return ora::truncatedTo(value, "FORTNIGHT").cellText(); }),
             u"ORA-01821: date format not recognized"_s);
}

void TestOracleDate::weeks() {
    QCOMPARE(date(u"2021-01-03"_s).isoWeek(), 53);
    QCOMPARE(date(u"2021-01-03"_s).isoYear(), 2020);
    QCOMPARE(date(u"2018-12-31"_s).isoYear(), 2019);
    QCOMPARE(cell(ora::roundedTo(date(u"1951-06-01"_s), "CC")), u"2001-01-01"_s);
    QCOMPARE(cell(ora::truncatedTo(date(u"2000-06-01"_s), "CC")), u"1901-01-01"_s);
}

void TestOracleDate::intervals_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("last");
    QTest::addColumn<QString>("result");
    const auto row = [](const char* text, const char* first, const char* last, const char* result) {
        QTest::addRow("%s %s to %s", text, first, last)
            << QString::fromLatin1(text) << QString::fromLatin1(first) << QString::fromLatin1(last)
            << QString::fromLatin1(result);
    };
    row("4 5:12:10.222", "DAY", "SECOND", "+04 05:12:10.222000");
    row("-1:30", "HOUR", "MINUTE", "-00 01:30:00.000000");
    row("30.12345", "SECOND", "SECOND", "+00 00:00:30.123450");
    row("250", "HOUR", "HOUR", "ORA-01873: the leading precision of the interval is too small");
    row("1 25:00", "DAY", "MINUTE", "ORA-01850: hour must be between 0 and 23");
    row("1 2", "DAY", "DAY", "ORA-01867: the interval is invalid");
    row("", "DAY", "DAY", "ORA-01867: the interval is invalid");
    row("3-6", "YEAR", "MONTH", "+03-06");
    row("-14", "MONTH", "MONTH", "-01-02");
    row("3-12", "YEAR", "MONTH", "ORA-01843: not a valid month");
}

void TestOracleDate::intervals() {
    QFETCH(QString, text);
    QFETCH(QString, first);
    QFETCH(QString, last);
    QFETCH(QString, result);
    const bool months = last == "MONTH"_L1;
    QCOMPARE(outcome([&] {
                 if (months)
                     return ora::yearMonthLiteral(text.toStdString(), first.toStdString(),
                                                  last.toStdString(), 2)
                         .text(2);
                 return ora::daySecondLiteral(text.toStdString(), first.toStdString(),
                                              last.toStdString(), 2)
                     .text(2, 6);
             }),
             result);
}

void TestOracleDate::interval_order() {
    const char* ordered[] = {"-2 00:00:00", "-1 00:00:00.5", "-1 00:00:00", "-0 00:00:00.000000001",
                             "0 00:00:00",  "0 00:00:00.1",  "1 00:00:00",  "10 00:00:00"};
    for (std::size_t i = 1; i < std::size(ordered); ++i) {
        const auto low = ora::DaySecondInterval::parse(ordered[i - 1]);
        const auto high = ora::DaySecondInterval::parse(ordered[i]);
        QVERIFY2(low.encoded() < high.encoded(), ordered[i]);
        const std::string bytes = high.encoded();
        const auto back = ora::DaySecondInterval::fromBytes(bytes.data(), bytes.size());
        QCOMPARE(back.text(2, 9), high.text(2, 9));
    }
    QVERIFY(ora::YearMonthInterval{-13}.encoded() < ora::YearMonthInterval{-12}.encoded());
    QVERIFY(ora::YearMonthInterval{-1}.encoded() < ora::YearMonthInterval{1}.encoded());
}

void TestOracleDate::interval_arithmetic() {
    const auto difference = ora::DaySecondInterval::between(date(u"2026-11-21 00:00:00.25"_s),
                                                            date(u"2026-11-22 00:00:00.5"_s));
    QCOMPARE(difference.text(2, 6), std::string("-01 00:00:00.250000"));
    QCOMPARE(difference.text(0, 0), std::string("-000000001 00:00:00.250000000"));
    QCOMPARE(cell(date(u"2026-11-22 00:00:00.5"_s) + difference), u"2026-11-21 00:00:00.25"_s);
    const auto third =
        ora::DaySecondInterval::fromNumber(ora::OracleNumber(1) / ora::OracleNumber(3), "minute");
    QCOMPARE(third.text(2, 9), std::string("+00 00:00:20.000000000"));
    QCOMPARE(outcome([] {
                 return ora::DaySecondInterval::fromNumber(ora::OracleNumber(1), "YEAR").text(2, 0);
             }),
             u"ORA-01760: illegal argument for function"_s);
    QCOMPARE(outcome([] { return date(u"2026-01-31"_s).plusIntervalMonths(1).cellText(); }),
             u"ORA-01839: date not valid for month specified"_s);
}

QTEST_APPLESS_MAIN(TestOracleDate)
#include "tst_oracle_date.moc"
