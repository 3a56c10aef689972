#include "Connection.h"
#include "ConnectionString.h"
#include "PostgresServer.h"
#include "ProviderTable.h"
#include "SessionText.h"
#include "TestDataSources.h"

#include <QTest>

using namespace Qt::StringLiterals;

// Rows come through a cursor in a transaction of the program's own. Nobody may see it: not in what
// a statement does, not in the user's own transaction, not in a message.
class tst_server_cursor : public QObject {
    Q_OBJECT

private:
    PostgresServer m_server;
    TestDataSources m_sources;
    std::unique_ptr<Session> m_session;

    static QString connectionString() { return u"Data Source=ORCL;Password=tiger;User ID=scott"_s; }
    void run(const QString& sql) { QCOMPARE(failureOf(*m_session, sql), u"done"_s); }
    QString value(const QString& sql) {
        try {
            return printed(*m_session, sql).section(u'\n', 1);
        } catch (const Error& error) {
            return error.description();
        }
    }
    QString noted() { return value(u"SELECT count(*) FROM noted"_s); }

private Q_SLOTS:
    void initTestCase() {
        if (!m_server.missing().isEmpty())
            QSKIP(qPrintable(m_server.missing()));
        m_server.start();
        m_sources.add(m_server.dataSource(u"ORCL"_s, m_server.port()) +
                      m_server.dataSource(u"STRICT"_s, m_server.port()).trimmed() +
                      u"\nProtocol=7.4-1\n\n"_s);
        m_session = openSession(parseConnectionString(connectionString()), providerTable());
        run(u"CREATE TABLE noted (n int)"_s);
        run(u"CREATE FUNCTION note(n int) RETURNS int LANGUAGE sql VOLATILE AS"
            " 'INSERT INTO noted VALUES (n) RETURNING n'"_s);
        run(u"CREATE FUNCTION warn(n int) RETURNS int LANGUAGE plpgsql AS"
            " 'BEGIN RAISE WARNING ''careful''; RETURN n; END'"_s);
        run(u"CREATE TABLE parent (id int PRIMARY KEY)"_s);
        run(u"CREATE TABLE child (id int REFERENCES parent DEFERRABLE INITIALLY DEFERRED)"_s);
        run(u"CREATE FUNCTION orphan() RETURNS int LANGUAGE sql VOLATILE AS"
            " 'INSERT INTO child VALUES (7) RETURNING id'"_s);
    }
    void init() { run(u"DELETE FROM noted"_s); }
    void cleanupTestCase() { m_session.reset(); }

    void partsOfEverySize_data() {
        QTest::addColumn<int>("rows");
        for (const int rows : {0, 1, 63, 64, 65, 128, 129, 10'000})
            QTest::addRow("%d rows", rows) << rows;
    }
    void partsOfEverySize() {
        QFETCH(int, rows);
        const QString sql =
            u"SELECT i, repeat('x', i % 300) AS t FROM generate_series(1, %1) AS i"_s.arg(rows);
        const QStringList lines = printed(*m_session, sql, 1000).split(u'\n').sliced(1);
        QCOMPARE(lines.size(), rows);
        for (int i = 1; i <= rows; ++i)
            QCOMPARE(lines[i - 1], u"%1|%2"_s.arg(i).arg(QString(i % 300, u'x')));
        QCOMPARE(printed(*m_session, sql, 64).split(u'\n').sliced(1), lines); // parts end with it
    }

    void whatAStatementDoesItDoesOnce_data() {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* fault, const QString& sql, const QString& expected) {
            QTest::newRow(fault) << sql << expected;
        };
        row("function in many parts", u"SELECT note(i) FROM generate_series(1, 3000) AS i"_s,
            u"3000"_s);
        row("changing part of a WITH",
            u"WITH added AS (INSERT INTO noted VALUES (1), (2) RETURNING n) SELECT n FROM added"_s,
            u"2"_s);
        row("several statements, rows first", u"SELECT 1; INSERT INTO noted VALUES (1)"_s, u"1"_s);
        row("rows of a change", u"INSERT INTO noted VALUES (1), (2) RETURNING n"_s, u"2"_s);
        row("values", u"VALUES (note(1)), (note(2));"_s, u"2"_s);
        row("fails late: all is undone",
            u"SELECT note(i), 1 / (2999 - i) FROM generate_series(1, 3000) AS i"_s, u"0"_s);
        row("fails at once", u"SELECT note(1), 1 / (1 - i) FROM generate_series(1, 2) AS i"_s,
            u"0"_s);
        row("with a warning",
            u"DO $$BEGIN RAISE WARNING 'a'; PERFORM note(1); RAISE NOTICE 'b'; END$$"_s, u"1"_s);
        row("rows with warnings", u"SELECT note(i), warn(i) FROM generate_series(1, 200) AS i"_s,
            u"200"_s);
        row("in parentheses", u" ((SELECT note(1)) UNION ALL SELECT note(2))"_s, u"2"_s);
    }
    void whatAStatementDoesItDoesOnce() {
        QFETCH(QString, sql);
        failureOf(*m_session, sql);
        QTEST(noted(), "expected");
    }

    // Run for its effect, nothing of it is fetched.
    void rowsThatNobodyWants() {
        Connection connection;
        connection.ConnectionString = connectionString();
        connection.Open();
        connection.Execute(u"SELECT note(i) FROM generate_series(1, 3000) AS i"_s);
        QCOMPARE(noted(), u"3000"_s);
        run(u"DELETE FROM noted"_s);
        QCOMPARE(
            connection.fetch(u"SELECT note(i) FROM generate_series(1, 3000) AS i"_s, 5).rows.rows(),
            5);
        QCOMPARE(noted(), u"5"_s); // and they stay
    }

    void selectInto() {
        run(u"SELECT 1 AS a INTO made"_s);
        QCOMPARE(value(u"SELECT a FROM made"_s), u"1"_s);
        run(u"DROP TABLE made"_s);
    }

    void theUsersOwnTransaction() {
        run(u"BEGIN"_s);
        run(u"INSERT INTO noted VALUES (1)"_s);
        QCOMPARE(noted(), u"1"_s);
        QCOMPARE(value(u"SELECT max(i) FROM generate_series(1, 5000) AS i"_s), u"5000"_s);
        run(u"ROLLBACK"_s);
        QCOMPARE(noted(), u"0"_s);
        run(u"START TRANSACTION; INSERT INTO noted VALUES (1)"_s);
        QCOMPARE(noted(), u"1"_s);
        run(u"COMMIT"_s);
        QCOMPARE(noted(), u"1"_s);
    }

    // Whatever the data source says, a failed statement takes back only itself.
    void aFailureInTheUsersTransaction() {
        DataSource source = parseConnectionString(connectionString());
        source.name = u"STRICT"_s;
        const auto strict = openSession(source, providerTable());
        for (const auto& sql : {u"BEGIN"_s, u"INSERT INTO noted VALUES (1)"_s, u"SELECT 1 / 0"_s,
                                u"INSERT INTO noted VALUES (2), ('x')"_s,
                                u"INSERT INTO noted VALUES (3)"_s, u"COMMIT"_s})
            failureOf(*strict, sql);
        QCOMPARE(value(u"SELECT string_agg(n::text, ' ') FROM noted"_s), u"1 3"_s);
    }

    // Each statement is committed by itself, whatever is still being read.
    void changesWhileRowsAreRead() {
        const auto rows = m_session->execute(u"SELECT i FROM generate_series(1, 20000) AS i"_s);
        CellStore read(1);
        QCOMPARE(rows->fetch(read, 100), 100);
        run(u"INSERT INTO noted VALUES (1)"_s);
        QCOMPARE(m_server.sql("SELECT count(*) FROM noted").simplified().split(' ').value(2), "1");
        failureOf(*m_session, u"SELECT 1 / 0"_s);
        const auto late =
            m_session->execute(u"SELECT 1 / (150 - i) FROM generate_series(1, 20000) AS i"_s);
        const auto last = m_session->execute(u"SELECT 8 FROM generate_series(1, 200)"_s);
        while (rows->fetch(read, 100) > 0) {
        }
        QCOMPARE(read.rows(), 20'000);
        QCOMPARE(read.cell(19'999, 0).view(), QByteArrayView("20000"));
        CellStore failing(1);
        QVERIFY_THROWS_EXCEPTION(ProviderError, while (late->fetch(failing, 100) > 0){});
        CellStore of8(1);
        QCOMPARE(last->fetch(of8, 1000), 200);
    }

    void theServersOwnWords_data() {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("failure");
        const auto row = [](const char* fault, const char* sql, const char* failure) {
            QTest::newRow(fault) << QString::fromUtf8(sql) << QString::fromUtf8(failure);
        };
        row("syntax", "SELECT FROM WHERE",
            "ORA-00900 -2147217900: ERROR: syntax error at or near \"WHERE\"");
        row("end of the text", "SELECT (1",
            "ORA-00900 -2147217900: ERROR: syntax error at end of input");
        row("INTO a table that exists", "SELECT 1 AS n INTO noted",
            "ORA-00955 -2147217900: ERROR: relation \"noted\" already exists");
        row("INTO in a WITH", "WITH a AS (SELECT 1 INTO b) SELECT 1",
            "ORA-00900 -2147217900: ERROR: SELECT ... INTO is not allowed here");
        row("planning", "SELECT 1 / 0", "ORA-01476 -2147467259: ERROR: division by zero");
        row("in a later part", "SELECT 1 / (900 - i) FROM generate_series(1, 3000) AS i",
            "ORA-01476 -2147467259: ERROR: division by zero");
        row("a constraint at the end", "SELECT orphan()",
            "ORA-02291 -2147467259: ERROR: insert or update on table \"child\" violates foreign"
            " key constraint \"child_id_fkey\"");
    }
    void theServersOwnWords() {
        QFETCH(QString, sql);
        QFETCH(QString, failure);
        const QString shown = failureOf(*m_session, sql);
        QVERIFY2(shown.startsWith(failure), qPrintable(shown));
        QVERIFY2(!shown.contains(u"quillmate"_s) && !shown.contains(u"cursor"_s),
                 qPrintable(shown));
        QCOMPARE(value(u"SELECT 42"_s), u"42"_s);
    }

    void nothingIsLeftAtTheServer() {
        const auto unread = m_session->execute(u"SELECT i FROM generate_series(1, 99999) AS i"_s);
        auto dropped = m_session->execute(u"SELECT i FROM generate_series(1, 99999) AS i"_s);
        dropped.reset();
        const QByteArray open =
            m_server.sql("SELECT count(*) FROM pg_stat_activity WHERE state LIKE 'idle in%'");
        QCOMPARE(open.simplified().split(' ').value(2), "0");
    }
};

QTEST_GUILESS_MAIN(tst_server_cursor)
#include "tst_server_cursor.moc"
