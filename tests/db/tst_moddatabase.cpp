#include "Backends.h"
#include "RecordingHost.h"
#include "Trace.h"
#include "modDatabase.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_moddatabase : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_home;
    RecordingHost m_host;
    TraceLog m_trace;
    std::unique_ptr<modDatabase> m_database;
    int m_opened = 0;
    DataSource m_lastSource;

    std::unique_ptr<Connection> countingConnection() {
        return std::make_unique<Connection>([this](const DataSource& source) {
            ++m_opened;
            m_lastSource = source;
            return openSession(source, providerTable());
        });
    }

private Q_SLOTS:
    void initTestCase() { useProgramFolder(m_home.path()); }
    void init() {
        m_host.log.clear();
        m_trace = {};
        m_opened = 0;
        m_database =
            std::make_unique<modDatabase>(m_host, m_trace, [this] { return countingConnection(); });
    }

    void theStringIsBuiltInTheOldOrder() {
        m_database->Build_Connection_String(u"ORCL"_s, u"ann"_s, u"pw1"_s);
        QVERIFY(!m_database->Open_Connection());
        QCOMPARE(m_lastSource.connectionString,
                 u"Provider=MSDAORA.1;Data Source=ORCL;Password=pw1;User ID=ann"_s);
    }

    void aFailedConnectShowsOneMessageAndTracesTheReason() {
        m_database->Build_Connection_String(u"DEMO"_s, u"demo"_s, u"wrong"_s);
        QVERIFY(!m_database->Open_Connection());
        QVERIFY(!m_database->isConnected());
        QCOMPARE(m_host.log.join(u'\n'),
                 u"msgbox[ok!] Database connection problem encountered.  Please review your "
                 "SQLNet/Net8 service name and login credentials."_s);
        QVERIFY(m_trace.text().contains(u"ORA-01017"_s));
        QVERIFY(!m_trace.text().contains(u"wrong"_s)); // no password in the log
    }

    void connectingTwiceOpensOnceAndTheStringSurvivesAClose() {
        m_database->Build_Connection_String(u"DEMO"_s, u"demo"_s, u"demo"_s);
        QVERIFY(m_database->Open_Connection());
        QVERIFY(m_database->Open_Connection());
        QCOMPARE(m_opened, 1);
        m_database->Close_Connection();
        m_database->Close_Connection(); // nothing to close: nothing happens
        QVERIFY(!m_database->connection());
        QVERIFY(m_database->Open_Connection());
        QVERIFY(m_database->isConnected());
        QVERIFY(m_host.log.isEmpty());
    }

    void theLimitCounts() {
        m_database->Build_Connection_String(u"DEMO"_s, u"demo"_s, u"demo"_s);
        QVERIFY(m_database->Open_Connection());
        QCOMPARE(m_database->Get_Recordset(u"SELECT * FROM emp"_s, 5)->takeRows().rows(), 5);
        QCOMPARE(m_database->Get_Recordset(u"SELECT * FROM emp"_s, 0)->takeRows().rows(), 14);
        QCOMPARE(m_trace.text(), u"<SUCCESS>\r\n\r\nSELECT * FROM emp\r\n\r\n"
                                 "<SUCCESS>\r\n\r\nSELECT * FROM emp\r\n\r\n"_s);
    }

    void aFailureIsTracedAndTrailed_data() {
        QTest::addColumn<bool>("connected");
        QTest::addColumn<qint32>("number");
        QTest::newRow("failing statement") << true << DbErrorNumber::GeneralFailure;
        QTest::newRow("no connection") << false << qint32(Error::ObjectNotSet);
    }
    void aFailureIsTracedAndTrailed() {
        QFETCH(bool, connected);
        m_database->Build_Connection_String(u"DEMO"_s, u"demo"_s, u"demo"_s);
        if (connected)
            QVERIFY(m_database->Open_Connection());
        try {
            m_database->Get_Recordset(u"SELECT * FROM nothing_here"_s, 0);
            QFAIL("no failure");
        } catch (const Error& error) {
            QTEST(error.number(), "number");
            QVERIFY(error.source().endsWith(u"..modDatabase.Get_Recordset"_s));
        }
        QVERIFY(m_trace.text().startsWith(u"<FAILURE>\r\n\r\nSELECT * FROM nothing_here"_s));
    }

    void aLostServerClosesTheConnection() {
        m_database->Build_Connection_String(u"DEMO"_s, u"demo"_s, u"demo"_s);
        QVERIFY(m_database->Open_Connection());
        const QString file = m_home.filePath(u"Databases/DEMO.db"_s);
        QVERIFY(QFile::rename(file, file + u".away"_s));
        QVERIFY_THROWS_EXCEPTION(Error, m_database->Get_Recordset(u"SELECT * FROM emp"_s, 0));
        QVERIFY(!m_database->isConnected());
        QVERIFY(QFile::rename(file + u".away"_s, file));
        QVERIFY(m_database->Open_Connection()); // reconnects
        QCOMPARE(m_database->Get_Recordset(u"SELECT * FROM emp"_s, 0)->takeRows().rows(), 14);
    }
};

QTEST_GUILESS_MAIN(tst_moddatabase)
#include "tst_moddatabase.moc"
