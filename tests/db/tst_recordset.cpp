#include "Backends.h"
#include "Command.h"
#include "Connection.h"
#include "ConnectionString.h"
#include "Recordset.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

// Connection and Recordset over the sample database, and the connection string.
class tst_recordset : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_home;
    Connection m_connection;

    Recordset opened(const QString& sql, qint32 limit = 0) {
        Recordset recordset;
        recordset.MaxRecords = limit;
        recordset.Open({&m_connection, CommandTypeEnum::Text, sql});
        return recordset;
    }
    template<typename Action>
    static qint32 numberOf(Action action) {
        try {
            action();
            return 0;
        } catch (const Error& error) {
            return error.number();
        }
    }
    static constexpr qint32 noCurrentRecord = 3021;
    static constexpr qint32 noSuchItem = 3265;
    static constexpr qint32 objectClosed = 3704;
    static constexpr qint32 objectOpen = 3705;

private Q_SLOTS:
    void initTestCase() {
        useProgramFolder(m_home.path());
        m_connection.ConnectionString = backends().front().connectionString;
        m_connection.Open();
    }

    void connectionString_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("parts"); // name|user|password
        QTest::newRow("as the program builds it")
            << u"Provider=MSDAORA.1;Data Source=ORCL;Password=pw1;User ID=ann"_s
            << u"ORCL|ann|pw1"_s;
        QTest::newRow("keys in any case, blanks around them")
            << u" data SOURCE =X; USER id=a ; password=b "_s << u"X|a |b "_s;
        QTest::newRow("semicolon in the password cuts it and hides nothing else")
            << u"Data Source=X;Password=a;b;User ID=u"_s << u"X|u|a"_s;
        QTest::newRow("equals sign in the password") << u"Password=a=b"_s << u"||a=b"_s;
        QTest::newRow("the password cannot name another user")
            << u"Data Source=X;Password=p;User ID=root;User ID=ann"_s << u"X|root|p"_s;
        QTest::newRow("empty") << u""_s << u"||"_s;
    }
    void connectionString() {
        QFETCH(QString, text);
        const DataSource source = parseConnectionString(text);
        QTEST(QStringList({source.name, source.user, source.password}).join(u'|'), "parts");
        QCOMPARE(source.connectionString, text);
    }

    void connectionStates() {
        Connection connection;
        QCOMPARE(connection.State(), ObjectState::Closed);
        QCOMPARE(numberOf([&] { connection.Close(); }), objectClosed);
        QCOMPARE(numberOf([&] { connection.Execute(u"SELECT 1 FROM dual"_s); }), objectClosed);
        connection.ConnectionString = m_connection.ConnectionString;
        connection.Open();
        QCOMPARE(connection.State(), ObjectState::Open);
        QCOMPARE(numberOf([&] { connection.Open(); }), objectOpen);
        connection.Close();
        QCOMPARE(connection.State(), ObjectState::Closed);
    }

    void walksFromTheFirstRowToTheEnd() {
        Recordset recordset = opened(u"SELECT deptno, loc FROM dept ORDER BY deptno"_s);
        QCOMPARE(recordset.fieldCount(), 2);
        QCOMPARE(recordset.fieldIndex(u"Loc"), std::optional<qsizetype>(1));
        QStringList walked;
        for (; !recordset.atEof(); recordset.MoveNext())
            walked << recordset.text(u"DEPTNO") + recordset.text(u"loc");
        QCOMPARE(walked.join(u' '), u"10NEW YORK 20DALLAS 30CHICAGO 40BOSTON"_s);
        QCOMPARE(numberOf([&] { recordset.MoveNext(); }), noCurrentRecord);
        QCOMPARE(numberOf([&] { recordset.value(0); }), noCurrentRecord);
    }

    void anUnknownFieldIsAnError() {
        Recordset recordset = opened(u"SELECT deptno FROM dept"_s);
        QCOMPARE(numberOf([&] { recordset.text(u"nothing"); }), noSuchItem);
    }

    void maxRecords_data() {
        QTest::addColumn<int>("limit");
        QTest::addColumn<qsizetype>("rows");
        QTest::newRow("0 is all") << 0 << qsizetype(4);
        QTest::newRow("negative is all") << -1 << qsizetype(4);
        QTest::newRow("fewer than there are") << 3 << qsizetype(3);
        QTest::newRow("more than there are") << 9 << qsizetype(4);
    }
    void maxRecords() {
        QFETCH(int, limit);
        QTEST(opened(u"SELECT * FROM dept"_s, limit).takeRows().rows(), "rows");
    }

    void takesTheRestAfterSomeRowsWerePassed() {
        Recordset recordset = opened(u"SELECT order_id, remark FROM order_lines"_s);
        constexpr int passed = 100000; // several chunks of the store
        for (int i = 0; i < passed; ++i)
            recordset.MoveNext();
        const QByteArray next = recordset.value(0).view().toByteArray();
        const CellStore rest = recordset.takeRows();
        QCOMPARE(rest.rows(), 20000);
        QCOMPARE(rest.cell(0, 0).view().toByteArray(), next);
        QVERIFY(recordset.atEof());
    }

    void aFailedOpenLeavesItClosed() {
        Recordset recordset = opened(u"SELECT * FROM dept"_s);
        QCOMPARE(numberOf([&] {
                     recordset.Open({&m_connection, CommandTypeEnum::Text, u"SELECT * FROM no"_s});
                 }),
                 DbErrorNumber::GeneralFailure);
        QCOMPARE(recordset.fieldCount(), 0);
        QVERIFY(recordset.atEof());
        QCOMPARE(numberOf([&] { recordset.Open({}); }), qint32(Error::ObjectNotSet));
    }

    void aResultThatTheMachineCannotHold() {
        const QString all = u"SELECT LEVEL, RPAD('x', 100) FROM dual CONNECT BY LEVEL <= 50000"_s;
        m_connection.setMostResultBytes(1 << 20);
        QString description;
        try {
            opened(all);
        } catch (const Error& error) {
            description = error.description();
        }
        QVERIFY2(description.startsWith("ORA-04030: out of process memory ("_L1),
                 qPrintable(description));
        QCOMPARE(opened(all, 1000).takeRows().rows(), 1000); // the connection goes on
        m_connection.setMostResultBytes(0);
        QCOMPARE(opened(all).takeRows().rows(), 50000);
    }

    void anOpenRecordsetHoldsNothingAtTheServer() {
        m_connection.Execute(u"CREATE TABLE shortlived (a NUMBER)"_s);
        m_connection.Execute(u"INSERT INTO shortlived SELECT empno FROM emp"_s);
        Recordset limited = opened(u"SELECT * FROM shortlived"_s, 2);
        m_connection.Execute(u"DROP TABLE shortlived"_s);
        QCOMPARE(limited.takeRows().rows(), 2);
    }

    void aStatementWithoutRows() {
        Recordset recordset = opened(u"DELETE FROM bonus"_s);
        QCOMPARE(recordset.fieldCount(), 0);
        QVERIFY(recordset.atEof());
    }
};

QTEST_GUILESS_MAIN(tst_recordset)
#include "tst_recordset.moc"
