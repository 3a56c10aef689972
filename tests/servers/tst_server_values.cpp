#include "PostgresServer.h"
#include "ServerValues.h"
#include "SessionText.h"

#include <QDate>

using namespace Qt::StringLiterals;

class tst_server_values : public ServerValues {
    Q_OBJECT

public:
    tst_server_values()
        : ServerValues(std::make_unique<PostgresServer>(),
                       {u"CREATE TYPE mood AS ENUM ('sad', 'glad')"_s,
                        u"CREATE DOMAIN positive AS int CHECK (VALUE > 0)"_s}) {}

protected:
    void addValues() override {
        add("whole numbers at their ends", u"SELECT 9223372036854775807::int8"_s,
            u"9223372036854775807"_s);
        add("more digits than a double", u"SELECT 12345678901234567890.0123456789::numeric"_s,
            u"12345678901234567890.0123456789"_s);
        add("a number wider than a block's cell", u"SELECT (repeat('9', 400) || '.5')::numeric"_s,
            QString(400, u'9') + u".5"_s);
        add("exponent of a float", u"SELECT 1.5e-7::float8"_s, u"0.00000015"_s);
        add("not a number", u"SELECT 'NaN'::numeric"_s, u"NaN"_s);
        add("date", u"SELECT date '2026-11-21'"_s, u"2026-11-21"_s);
        add("timestamp at midnight", u"SELECT timestamp '2026-11-21 00:00:00'"_s, u"2026-11-21"_s);
        add("timestamp with microseconds", u"SELECT timestamp '2026-11-21 14:05:09.123456'"_s,
            u"2026-11-21 14:05:09.123456"_s);
        add("timestamp of today at midnight", u"SELECT current_date::timestamp"_s,
            QDate::currentDate().toString(Qt::ISODate));
        add("timestamp before Christ", u"SELECT timestamp '0044-03-15 12:00:00 BC'"_s,
            u"0044-03-15 12:00:00 BC"_s);
        add("timestamp of the first year", u"SELECT timestamp '0001-01-01 01:00:00'"_s,
            u"0001-01-01 01:00:00"_s);
        add("timestamp that the driver cannot read", u"SELECT timestamp '12026-11-21 01:02:03'"_s,
            u"0000-00-00"_s);
        add("timestamp with a zone",
            u"SELECT timestamptz '2026-11-21 14:05:09.5+00' AT TIME ZONE 'UTC'"_s,
            u"2026-11-21 14:05:09.5"_s);
        add("time", u"SELECT time '14:05:09'"_s, u"14:05:09"_s);
        add("boolean", u"SELECT true"_s, u"1"_s);
        add("bytes", u"SELECT '\\x00ff'::bytea"_s, u"00FF"_s);
        add("small and real numbers", u"SELECT 1::smallint || '|' || 1.5::real"_s, u"1|1.5"_s);
        add("real", u"SELECT 1.5::real"_s, u"1.5"_s);
        add("money", u"SELECT 12.5::money"_s, u"$12.50"_s);
        add("padded text", u"SELECT 'ab'::char(4)"_s, u"ab  "_s);
        add("name", u"SELECT 'ab'::name"_s, u"ab"_s);
        add("bits", u"SELECT B'1010'"_s, u"1010"_s);
        add("network address", u"SELECT '10.0.0.0/8'::cidr"_s, u"10.0.0.0/8"_s);
        add("hardware address", u"SELECT '08:00:2b:01:02:03'::macaddr"_s, u"08:00:2b:01:02:03"_s);
        add("point", u"SELECT point(1, 2)"_s, u"(1,2)"_s);
        add("range", u"SELECT int4range(1, 5)"_s, u"[1,5)"_s);
        add("row", u"SELECT ROW(1, 'a b')"_s, u"(1,\"a b\")"_s);
        add("enumeration", u"SELECT 'sad'::mood"_s, u"sad"_s);
        add("domain", u"SELECT 5::positive"_s, u"5"_s);
        add("xml", u"SELECT '<a>ξ</a>'::xml"_s, u"<a>ξ</a>"_s);
        add("jsonb", u"SELECT '{\"a\": [1, null]}'::jsonb"_s, u"{\"a\": [1, null]}"_s);
        add("words to search", u"SELECT to_tsvector('simple', 'a b')"_s, u"'a':1 'b':2"_s);
        add("object number", u"SELECT 4294967295::oid"_s, u"4294967295"_s);
        add("smallest whole number", u"SELECT (-9223372036854775808)::int8"_s,
            u"-9223372036854775808"_s);
        add("small whole numbers", u"SELECT (-32768)::int2"_s, u"-32768"_s);
        add("transaction number", u"SELECT '4294967295'::xid"_s, u"4294967295"_s);
        add("time with a zone", u"SELECT timetz '14:05:09+02'"_s, u"14:05:09+02"_s);
        add("null", u"SELECT NULL::numeric"_s, u"(null)"_s);
        add("uuid", u"SELECT 'a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11'::uuid"_s,
            u"A0EEBC99-9C0B-4EF8-BB6D-6BB9BD380A11"_s); // as the driver writes it
        add("json", u"SELECT '{\"a\": 1}'::json"_s, u"{\"a\": 1}"_s);
        add("array", u"SELECT ARRAY[1,2]"_s, u"{1,2}"_s);
        add("interval", u"SELECT interval '1 day 02:00'"_s, u"1 day 02:00:00"_s);
        add("text as long as its column", u"SELECT repeat('🎂', 40)::varchar(40)"_s,
            QString(u"🎂"_s).repeated(40));
        add("line ends and tabs", u"SELECT E'a\\nb\\r\\nc\\td'"_s, u"a\nb\r\nc\td"_s);
    }

private Q_SLOTS:
    // As an unknown kind of column none may fail the statement, crash or lose its name.
    void everyTypeOfTheServer() {
        const QStringList types =
            linesOf(u"SELECT format_type(oid, NULL) FROM pg_type WHERE typtype IN ('b', 'r', 'm')"
                    " AND typname NOT LIKE 'pg\\_%'"_s)
                .sliced(1);
        QVERIFY2(types.size() > 100, qPrintable(QString::number(types.size())));
        for (const QString& type : types)
            QCOMPARE(linesOf(u"SELECT NULL::%1 AS nothing, 'x' AS after"_s.arg(type)),
                     QStringList({u"nothing|after"_s, u"(null)|x"_s}));
    }

    // Such a database holds whatever bytes it was given.
    void aDatabaseWithoutAnEncoding() {
        static_cast<PostgresServer&>(server()).sql(
            "CREATE DATABASE bytes ENCODING 'SQL_ASCII' TEMPLATE template0 LC_COLLATE 'C'"
            " LC_CTYPE 'C'",
            u"postgres"_s);
        sources().add(server()
                          .dataSource(u"BYTES"_s, server().port())
                          .replace(u"Database=orcl"_s, u"Database=bytes"_s));
        const auto session = openedAs(u"BYTES"_s);
        QCOMPARE(printed(*session, u"SELECT 1 AS n, E'x\\xff\\xc3y' AS bad, 'ξ🎂' AS good"_s),
                 u"n|bad|good\n1|x\uFFFD\uFFFDy|ξ🎂"_s);
    }
};

QTEST_GUILESS_MAIN(tst_server_values)
#include "tst_server_values.moc"
