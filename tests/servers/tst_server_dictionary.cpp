#include "DictionaryTree.h"
#include "NodeKeys.h"
#include "PostgresServer.h"
#include "RecordingHost.h"
#include "SchemaTree.h"
#include "SessionText.h"
#include "TestDataSources.h"
#include "Trace.h"
#include "TreeText.h"
#include "modDatabase.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

// The trees' own statements and the values of every type, on a server with Oracle-flavoured views.
class tst_server_dictionary : public QObject {
    Q_OBJECT

private:
    PostgresServer m_server;
    TestDataSources m_sources;
    RecordingHost m_host;
    TraceLog m_trace;
    modDatabase m_database{m_host, m_trace};

    QString cell(const QString& expression) {
        const auto recordset = m_database.Get_Recordset(u"SELECT "_s + expression, 0);
        const Cell value = recordset->value(0);
        return value.isNull ? u"(null)"_s : QString::fromUtf8(value.view());
    }

private Q_SLOTS:
    void initTestCase() {
        if (!m_server.missing().isEmpty())
            QSKIP(qPrintable(m_server.missing()));
        m_server.start();
        QFile flavour(QFINDTESTDATA("oracle_flavour.sql"));
        QVERIFY(flavour.open(QFile::ReadOnly));
        m_server.sql(flavour.readAll());
        m_sources.add(m_server.dataSource(u"ORCL"_s, m_server.port()));
        m_database.Build_Connection_String(u"ORCL"_s, u"scott"_s, u"tiger"_s);
        QVERIFY2(m_database.Open_Connection(), qPrintable(m_trace.text()));
        for (const auto& statement :
             {u"CREATE TABLE dept (deptno numeric(2) CONSTRAINT pk_dept PRIMARY KEY,"
              " dname varchar2(14) NOT NULL)"_s,
              u"CREATE TABLE emp (empno numeric(4) CONSTRAINT pk_emp PRIMARY KEY,"
              " ename varchar2(10), hired timestamp, deptno numeric(2) CONSTRAINT fk_dept"
              " REFERENCES dept)"_s,
              u"CREATE INDEX emp_name ON emp (ename)"_s,
              u"CREATE VIEW staff AS SELECT ename FROM emp"_s,
              u"CREATE TYPE mood AS ENUM ('sad', 'glad')"_s,
              u"CREATE DOMAIN positive AS int CHECK (VALUE > 0)"_s})
            m_database.connection()->Execute(statement);
    }

    void theSchemaTree() {
        TreeNodes nodes;
        NodeKeys keys;
        SchemaTree schema({nodes, keys, m_database, m_host});
        schema.Initialise_Schema_Tree();
        const auto open = [&](const NodePath& path) {
            TreeNode* node = nodes.find(path);
            QVERIFY(node);
            nodes.setExpanded(*node, true);
            schema.Expand(*node);
        };
        const NodePath::value_type tables(u"Tables"_s, u"TABLES"_s), emp(u"EMP"_s, u"TABLE"_s);
        open({tables});
        open({{u"Views"_s, u"VIEWS"_s}});
        open({tables, emp, {u"Columns"_s, u"TABLE_COLUMNS"_s}});
        open({tables, emp, {u"Indexes"_s, u"TABLE_INDEXES"_s}});
        open({tables, emp, {u"Constraints"_s, u"TABLE_CONSTRAINTS"_s}});
        const QString text = treeText(nodes);
        for (const QString& expected : {u"DEPT\n"_s, u"EMP\n"_s, u"STAFF\n"_s, u"EMP_NAME"_s,
                                        u"PK_EMP"_s, u"FK_DEPT"_s, u"HIRED"_s, u"DEPTNO"_s})
            QVERIFY2(text.contains(expected), qPrintable(expected + u" is not in\n"_s + text));
        QVERIFY2(!text.contains(u"PK_DEPT"_s), qPrintable(text));
        QCOMPARE(m_host.log.filter(u"showError"_s), QStringList());
    }

    void theDictionary() {
        TreeNodes nodes;
        DictionaryTree dictionary(nodes, m_database, m_host);
        dictionary.tabChosen();
        QVERIFY2(treeText(nodes).contains(u"USER_TAB_COLUMNS"_s), qPrintable(treeText(nodes)));
    }

    // The server cannot read "b.serial#", so the user is told that there is nothing to see.
    void theSessionListIsNotAvailable() {
        TreeNodes nodes;
        NodeKeys keys;
        SchemaTree schema({nodes, keys, m_database, m_host});
        schema.Initialise_Schema_Tree();
        TreeNode* sessions = nodes.find({{u"Sessions"_s, u"SESSIONS"_s}});
        nodes.setExpanded(*sessions, true);
        schema.Expand(*sessions);
        QVERIFY(treeText(nodes).contains(u"<Not Available>"_s));
        QCOMPARE(cell(u"1"_s), u"1"_s); // the connection goes on
    }

    void aPlanThatTheServerCannotMake() {
        try {
            m_database.connection()->Execute(
                u"Explain Plan set Statement_Id = 'TALLOWEX' FOR  SELECT 1"_s);
            QFAIL("the server explains it");
        } catch (const ProviderError& error) {
            QCOMPARE(error.number(), DbErrorNumber::GeneralFailure); // else no "Not available."
        }
    }

    void values_data() {
        QTest::addColumn<QString>("expression");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char* fault, const QString& expression, const QString& shown) {
            QTest::newRow(fault) << expression << shown;
        };
        row("whole numbers at their ends", u"9223372036854775807::int8"_s,
            u"9223372036854775807"_s);
        row("more digits than a double", u"12345678901234567890.0123456789::numeric"_s,
            u"12345678901234567890.0123456789"_s);
        row("a number wider than a block's cell", u"(repeat('9', 400) || '.5')::numeric"_s,
            QString(400, u'9') + u".5"_s);
        row("exponent of a float", u"1.5e-7::float8"_s, u"0.00000015"_s);
        row("not a number", u"'NaN'::numeric"_s, u"NaN"_s);
        row("date", u"date '2026-11-21'"_s, u"2026-11-21"_s);
        row("timestamp at midnight", u"timestamp '2026-11-21 00:00:00'"_s, u"2026-11-21"_s);
        row("timestamp with microseconds", u"timestamp '2026-11-21 14:05:09.123456'"_s,
            u"2026-11-21 14:05:09.123456"_s);
        row("timestamp of today at midnight", u"current_date::timestamp"_s,
            QDate::currentDate().toString(Qt::ISODate));
        row("timestamp before Christ", u"timestamp '0044-03-15 12:00:00 BC'"_s,
            u"0044-03-15 12:00:00 BC"_s);
        row("timestamp of the first year", u"timestamp '0001-01-01 01:00:00'"_s,
            u"0001-01-01 01:00:00"_s);
        row("timestamp that the driver cannot read", u"timestamp '12026-11-21 01:02:03'"_s,
            u"0000-00-00"_s);
        row("timestamp with a zone", u"timestamptz '2026-11-21 14:05:09.5+00' AT TIME ZONE 'UTC'"_s,
            u"2026-11-21 14:05:09.5"_s);
        row("time", u"time '14:05:09'"_s, u"14:05:09"_s);
        row("boolean", u"true"_s, u"1"_s);
        row("bytes", u"'\\x00ff'::bytea"_s, u"00FF"_s);
        row("small and real numbers", u"1::smallint || '|' || 1.5::real"_s, u"1|1.5"_s);
        row("real", u"1.5::real"_s, u"1.5"_s);
        row("money", u"12.5::money"_s, u"$12.50"_s);
        row("padded text", u"'ab'::char(4)"_s, u"ab  "_s);
        row("name", u"'ab'::name"_s, u"ab"_s);
        row("bits", u"B'1010'"_s, u"1010"_s);
        row("network address", u"'10.0.0.0/8'::cidr"_s, u"10.0.0.0/8"_s);
        row("hardware address", u"'08:00:2b:01:02:03'::macaddr"_s, u"08:00:2b:01:02:03"_s);
        row("point", u"point(1, 2)"_s, u"(1,2)"_s);
        row("range", u"int4range(1, 5)"_s, u"[1,5)"_s);
        row("row", u"ROW(1, 'a b')"_s, u"(1,\"a b\")"_s);
        row("enumeration", u"'sad'::mood"_s, u"sad"_s);
        row("domain", u"5::positive"_s, u"5"_s);
        row("xml", u"'<a>ξ</a>'::xml"_s, u"<a>ξ</a>"_s);
        row("jsonb", u"'{\"a\": [1, null]}'::jsonb"_s, u"{\"a\": [1, null]}"_s);
        row("words to search", u"to_tsvector('simple', 'a b')"_s, u"'a':1 'b':2"_s);
        row("object number", u"4294967295::oid"_s, u"4294967295"_s);
        row("time with a zone", u"timetz '14:05:09+02'"_s, u"14:05:09+02"_s);
        row("null", u"NULL::numeric"_s, u"(null)"_s);
        row("empty text is not null", u"''::text"_s, QString());
        row("uuid", u"'a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11'::uuid"_s,
            u"A0EEBC99-9C0B-4EF8-BB6D-6BB9BD380A11"_s); // as the driver writes it
        row("json", u"'{\"a\": 1}'::json"_s, u"{\"a\": 1}"_s);
        row("array", u"ARRAY[1,2]"_s, u"{1,2}"_s);
        row("interval", u"interval '1 day 02:00'"_s, u"1 day 02:00:00"_s);
        row("text longer than a piece", u"repeat('ξ', 100000)"_s, QString(100000, u'ξ'));
        row("text as long as its column", u"repeat('🎂', 40)::varchar(40)"_s,
            QString(u"🎂"_s).repeated(40));
        row("text longer than a bound cell", u"repeat('abcdefg', 700)"_s,
            QString(u"abcdefg"_s).repeated(700));
        row("line ends and tabs", u"E'a\\nb\\r\\nc\\td'"_s, u"a\nb\r\nc\td"_s);
        row("scripts of the world",
            u"'Ελλάδα Россия 中文 日本語 한국어 עברית عربي हिन्दी ไทย ქართული 🎂👩‍👧'"_s,
            u"Ελλάδα Россия 中文 日本語 한국어 עברית عربي हिन्दी ไทย ქართული 🎂👩‍👧"_s);
    }
    void values() {
        QFETCH(QString, expression);
        QTEST(cell(expression), "shown");
    }

    // As an unknown kind of column none may fail the statement, crash or lose its name.
    void everyTypeOfTheServer() {
        const auto types = m_database.Get_Recordset(
            u"SELECT format_type(oid, NULL) AS name FROM pg_type WHERE typtype IN ('b', 'r', 'm')"
            " AND typname NOT LIKE 'pg\\_%' ORDER BY 1"_s,
            0);
        int seen = 0;
        for (; !types->atEof(); types->MoveNext(), ++seen) {
            const QString type = types->text(u"name");
            const QString sql = u"SELECT NULL::%1 AS nothing, 'x' AS after"_s.arg(type);
            const auto recordset = m_database.Get_Recordset(sql, 0);
            QVERIFY2(recordset->value(0).isNull, qPrintable(type));
            QCOMPARE(recordset->fieldName(0), u"nothing"_s);
            QCOMPARE(recordset->text(u"after"), u"x"_s);
        }
        QVERIFY2(seen > 100, qPrintable(QString::number(seen)));
    }

    // A few letters of each script that the toolkit knows.
    void everyScriptOfTheWorld() {
        QMap<int, QString> letters;
        for (char32_t c = 1; c <= QChar::LastValidCodePoint; ++c) {
            QString& some = letters[QChar::script(c)];
            if (QChar::isLetter(c) && some.size() < 8)
                some += QChar::fromUcs4(c);
        }
        QVERIFY(letters.size() > 140);
        QStringList selected;
        for (const QString& some : std::as_const(letters))
            selected << u"SELECT "_s + QString::number(selected.size()) + u" AS n, '"_s + some +
                            u"' AS t"_s;
        const auto recordset =
            m_database.Get_Recordset(selected.join(u" UNION ALL "_s) + u" ORDER BY n"_s, 0);
        for (const QString& some : std::as_const(letters)) {
            QCOMPARE(recordset->text(u"t"), some);
            recordset->MoveNext();
        }
    }

    void manyColumnsAndNoRows() {
        QStringList columns;
        for (int i = 1; i <= 1600; ++i) // the server's most
            columns << u"%1 AS c%1"_s.arg(i);
        const QString sql = u"SELECT "_s + columns.join(u", "_s);
        const auto wide = m_database.Get_Recordset(sql, 0);
        QCOMPARE(wide->fieldCount(), 1600);
        QCOMPARE(wide->text(u"C1600"), u"1600"_s);
        const auto none = m_database.Get_Recordset(sql + u" WHERE false"_s, 0);
        QCOMPARE(none->fieldCount(), 1600);
        QVERIFY(none->atEof());
    }

    void severalResultsOfOneText() {
        m_database.connection()->Execute(u"CREATE TEMPORARY TABLE two (a int)"_s);
        const auto rows = m_database.Get_Recordset(
            u"INSERT INTO two VALUES (7); SELECT a FROM two; SELECT 8 AS a"_s, 0);
        QCOMPARE(rows->text(u"A"), u"7"_s);
    }
};

QTEST_GUILESS_MAIN(tst_server_dictionary)
#include "tst_server_dictionary.moc"
