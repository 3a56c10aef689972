#include "MariaServer.h"
#include "ServerValues.h"

using namespace Qt::StringLiterals;

namespace {

// A column of each type, what it is given, and how that is shown.
struct Value {
    QString type;
    QString given;
    QString shown;
};

const QList<Value>& everyType() {
    static const QList<Value> list{
        {u"TINYINT"_s, u"-128"_s, u"-128"_s},
        {u"TINYINT UNSIGNED"_s, u"255"_s, u"255"_s},
        {u"SMALLINT"_s, u"-32768"_s, u"-32768"_s},
        {u"MEDIUMINT"_s, u"-8388608"_s, u"-8388608"_s},
        {u"INT UNSIGNED"_s, u"4294967295"_s, u"4294967295"_s},
        {u"INT(6) ZEROFILL"_s, u"42"_s, u"42"_s},
        {u"BIGINT"_s, u"-9223372036854775808"_s, u"-9223372036854775808"_s},
        {u"BIGINT UNSIGNED"_s, u"18446744073709551615"_s, u"18446744073709551615"_s},
        {u"DECIMAL(65,30)"_s,
         u"12345678901234567890123456789012345.123456789012345678901234567890"_s,
         u"12345678901234567890123456789012345.12345678901234567890123456789"_s},
        {u"NUMBER"_s, u"12345678901.5"_s, u"12345678901.5"_s},
        {u"FLOAT"_s, u"1.5"_s, u"1.5"_s},
        {u"DOUBLE"_s, u"1.5e-7"_s, u"0.00000015"_s},
        {u"BOOLEAN"_s, u"TRUE"_s, u"1"_s},
        {u"BIT"_s, u"b'1'"_s, u"1"_s},
        {u"BIT(10)"_s, u"b'1010101010'"_s, u"02AA"_s},
        {u"CHAR(10)"_s, u"'ab'"_s, u"ab"_s},
        {u"VARCHAR(100)"_s, u"'Ελλάδα 🎂'"_s, u"Ελλάδα 🎂"_s},
        {u"VARCHAR(10) CHARACTER SET latin1"_s, u"'é'"_s, u"é"_s},
        {u"VARCHAR(10) CHARACTER SET ucs2"_s, u"'ξ'"_s, u"ξ"_s},
        {u"VARCHAR(10) CHARACTER SET big5"_s, u"'一'"_s, u"一"_s},
        {u"VARCHAR2(20)"_s, u"'a b'"_s, u"a b"_s},
        {u"TINYTEXT"_s, u"'ti'"_s, u"ti"_s},
        {u"TEXT"_s, u"'te'"_s, u"te"_s},
        {u"MEDIUMTEXT"_s, u"'me'"_s, u"me"_s},
        {u"LONGTEXT"_s, u"REPEAT('ξ', 70000)"_s, QString(70000, u'ξ')},
        {u"CLOB"_s, u"'cl'"_s, u"cl"_s},
        {u"BINARY(4)"_s, u"x'00FF'"_s, u"00FF0000"_s},
        {u"VARBINARY(10)"_s, u"x'00ff1a'"_s, u"00FF1A"_s},
        {u"RAW(5)"_s, u"x'0506'"_s, u"0506"_s},
        {u"TINYBLOB"_s, u"x'01'"_s, u"01"_s},
        {u"BLOB"_s, u"x'02'"_s, u"02"_s},
        {u"MEDIUMBLOB"_s, u"x''"_s, QString()},
        {u"LONGBLOB"_s, u"REPEAT(x'FE', 70000)"_s, QString(u"FE"_s).repeated(70000)},
        {u"DATETIME(0)"_s, u"'2026-11-21 14:05:09'"_s, u"2026-11-21 14:05:09"_s},
        {u"DATETIME(6)"_s, u"'2026-11-21 14:05:09.123456'"_s, u"2026-11-21 14:05:09.123456"_s},
        {u"DATE"_s, u"'2026-11-21 10:00:00'"_s, u"2026-11-21 10:00:00"_s}, // Oracle's
        {u"DATE"_s, u"'2026-11-21'"_s, u"2026-11-21"_s},
        {u"TIMESTAMP(3) NULL"_s, u"'2026-11-21 00:00:00.250'"_s, u"2026-11-21 00:00:00.25"_s},
        {u"TIME"_s, u"'14:05:09'"_s, u"14:05:09"_s},
        {u"TIME(6)"_s, u"'-838:59:58.999999'"_s, u"-838:59:58.999999"_s},
        {u"YEAR"_s, u"2026"_s, u"2026"_s},
        {u"ENUM('a','ξ')"_s, u"'ξ'"_s, u"ξ"_s},
        {u"SET('a','b','ξ')"_s, u"'a,ξ'"_s, u"a,ξ"_s},
        {u"JSON"_s, u"'{\"a\": [1, null]}'"_s, u"{\"a\": [1, null]}"_s},
        {u"INET4"_s, u"'10.0.0.1'"_s, u"10.0.0.1"_s},
        {u"INET6"_s, u"'2001:db8::1'"_s, u"2001:db8::1"_s},
        {u"UUID"_s, u"'a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11'"_s,
         u"a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11"_s},
        {u"GEOMETRY"_s, u"ST_GeomFromText('POINT(1 2)')"_s,
         u"000000000101000000000000000000F03F0000000000000040"_s},
    };
    return list;
}

// A row with all of them and one without any.
QStringList makeTable() {
    QStringList columns, given;
    for (const Value& value : everyType()) {
        columns << u"c%1 %2"_s.arg(columns.size()).arg(value.type);
        given << value.given;
    }
    return {u"CREATE TABLE every (id INT, "_s + columns.join(u", "_s) + u")"_s,
            u"INSERT INTO every VALUES (1, "_s + given.join(u", "_s) + u")"_s,
            u"INSERT INTO every (id) VALUES (2)"_s,
            u"CREATE PROCEDURE several AS BEGIN SELECT 7 AS a; SELECT 8 AS b; END"_s};
}

} // namespace

class tst_maria_values : public ServerValues {
    Q_OBJECT

public:
    tst_maria_values()
        : ServerValues(std::make_unique<MariaServer>(), makeTable()) {}

protected:
    void addValues() override {
        const QList<Value>& all = everyType();
        for (qsizetype i = 0; i < all.size(); ++i)
            add(qPrintable(u"%1 %2"_s.arg(i).arg(all[i].type)),
                u"SELECT c%1 FROM every WHERE id = 1"_s.arg(i), all[i].shown);
        add("number beyond an integer", u"SELECT 100000000000000000000 * 3"_s,
            u"300000000000000000000"_s);
        add("date of no day", u"SELECT CAST('0000-00-00' AS DATE)"_s, u"0000-00-00"_s);
        add("timestamp of the first year", u"SELECT TIMESTAMP '0001-01-01 00:00:01'"_s,
            u"0001-01-01 00:00:01"_s);
        add("a warning instead of a value", u"SELECT CAST('x' AS INTEGER) AS n"_s, u"0"_s);
        add("first of several results", u"CALL several"_s, u"7"_s);
    }

private Q_SLOTS:
    void everyTypeTogetherAndNull() {
        QStringList shown{u"1"_s}, nulls{u"2"_s};
        for (const Value& value : everyType()) {
            shown << value.shown;
            nulls << u"(null)"_s;
        }
        const QStringList lines = linesOf(u"SELECT * FROM every ORDER BY id"_s);
        QCOMPARE(lines.value(1), shown.join(u'|'));
        QCOMPARE(lines.value(2), nulls.join(u'|'));
    }
};

QTEST_GUILESS_MAIN(tst_maria_values)
#include "tst_maria_values.moc"
