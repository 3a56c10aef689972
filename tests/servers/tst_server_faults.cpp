#include "FaultTools.h"
#include "FreezingProxy.h"
#include "PostgresServer.h"
#include "TestDataSources.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>
#include <QThread>

#include <atomic>
#include <future>

#if defined(__SANITIZE_ADDRESS__)
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#else
#include <malloc.h>
#endif

using namespace Qt::StringLiterals;

namespace {

// The manager keeps lists of its handles, so that the sanitizer never calls one lost: what is in
// use tells.
size_t bytesInUse() {
#if defined(__SANITIZE_ADDRESS__)
    return __sanitizer_get_current_allocated_bytes();
#else
    return mallinfo2().uordblks;
#endif
}

qsizetype openFiles() {
    return QDir(u"/proc/self/fd"_s).entryList(QDir::Files | QDir::System).size();
}

} // namespace

// What goes wrong between the program and a server on a real network.
class tst_server_faults : public QObject {
    Q_OBJECT

private:
    PostgresServer m_server{maxConnections};
    TestDataSources m_sources;
    std::unique_ptr<FreezingProxy> m_proxy;

    static constexpr int maxConnections = 6;
    static constexpr auto longQuery = "SELECT count(*) FROM generate_series(1, 2000000000)";
    static constexpr auto millionRows =
        "SELECT i, 'some text of row ' || i AS t FROM generate_series(1, 1000000) AS i";

private Q_SLOTS:
    void initTestCase() {
        if (!m_server.missing().isEmpty())
            QSKIP(qPrintable(m_server.missing()));
        m_server.start();
        m_proxy = std::make_unique<FreezingProxy>(m_server.port());
        m_sources.add(m_server.dataSource(u"ORCL"_s, m_server.port()) +
                      m_server.dataSource(u"FAR"_s, m_proxy->port()));
    }
    void cleanup() { m_proxy->thaw(); }

    void wrongPassword() {
        const QString failure = failureOf([] { opened(u"ORCL"_s, u"wrong"_s); });
        QVERIFY2(failure.startsWith(u"ORA-01017 "_s), qPrintable(failure));
        QVERIFY(failure.contains(u"password authentication failed"_s));
        QVERIFY2(!failure.contains(u'['), "the driver's prefixes are gone");
    }

    void passwordsThatTheManagerWouldCut_data() {
        QTest::addColumn<QString>("password");
        QTest::newRow("closing brace") << u"a}b"_s;
        QTest::newRow("both braces and a blank") << u"{a b}"_s;
        QTest::newRow("equals sign, at and question mark") << u"a=b@c?"_s;
        QTest::newRow("other scripts") << u"κωδικός日本"_s;
    }
    void passwordsThatTheManagerWouldCut() {
        QFETCH(QString, password);
        m_server.sql("ALTER ROLE scott PASSWORD '" + password.toUtf8() + "'");
        const QString failure = failureOf([&] { opened(u"ORCL"_s, password); });
        m_server.sql("ALTER ROLE scott PASSWORD 'tiger'");
        QCOMPARE(failure, u"done"_s);
    }

    void atTheConnectionLimit() {
        std::vector<std::unique_ptr<Connection>> all;
        for (int i = 0; i < maxConnections; ++i)
            all.push_back(opened());
        const QString failure = failureOf([] { opened(); });
        QVERIFY2(failure.startsWith(u"ORA-00018 "_s), qPrintable(failure));
        verifyWorks(*all.front());
    }

    void killedWhileIdle() {
        Impatience watch;
        const auto connection = opened();
        connection->setWatch(&watch);
        verifyWorks(*connection);
        m_server.kill();
        QCOMPARE(connection->State(), ObjectState::Open); // not noticed yet
        const QString failure = failureOf([&] { fetched(*connection, "SELECT 1"); });
        QVERIFY2(failure.startsWith(u"ORA-03113 "_s), qPrintable(failure));
        QCOMPARE(connection->State(), ObjectState::Closed);
        QCOMPARE(watch.losses, 1);
        m_server.startAgain();
        connection->Open();
        verifyWorks(*connection);
    }

    void killedDuringAFetch_data() {
        QTest::addColumn<int>("milliseconds");
        for (const int milliseconds : {0, 40, 90, 170, 310})
            QTest::addRow("after %d ms", milliseconds) << milliseconds;
    }
    void killedDuringAFetch() {
        QFETCH(int, milliseconds);
        Impatience watch;
        const auto connection = opened();
        connection->setWatch(&watch);
        watch.onBegin = [&] {
            QThread::msleep(milliseconds);
            m_server.kill();
        };
        const QString failure = failureOf([&] { fetched(*connection, millionRows); });
        QVERIFY2(failure.startsWith(u"ORA-03113 "_s), qPrintable(failure));
        QCOMPARE(connection->State(), ObjectState::Closed);
        m_server.startAgain();
    }

    void restartedWhileAStatementRuns() {
        Impatience watch;
        const auto connection = opened();
        connection->setWatch(&watch);
        watch.onBegin = [this] { m_server.stop(); };
        const QString failure = failureOf([&] { fetched(*connection, longQuery); });
        m_server.startAgain();
        QVERIFY2(failure.startsWith(u"ORA-03113 "_s), qPrintable(failure));
        QCOMPARE(connection->State(), ObjectState::Closed);
    }

    void killedDuringTheLogin() {
        m_server.freeze();
        QElapsedTimer time;
        time.start();
        auto login = std::async(std::launch::async, [] { return failureOf([] { opened(); }); });
        QThread::msleep(300);
        m_server.kill();
        const QString failure = login.get();
        m_server.startAgain();
        QVERIFY2(failure.startsWith(u"ORA-03113 "_s), qPrintable(failure));
        QVERIFY2(time.elapsed() < 10'000, "noticed before the time-out");
        verifyWorks(*opened());
    }

    void noServerAtTheLogin() {
        m_server.stop();
        const QString failure = failureOf([] { opened(); });
        m_server.startAgain();
        QVERIFY2(failure.startsWith(u"ORA-03113 "_s), qPrintable(failure));
    }

    void deadLineAtTheLogin() {
        m_proxy->freeze();
        QElapsedTimer time;
        time.start();
        const QString failure = failureOf([] { opened(u"FAR"_s); });
        QVERIFY2(failure != "done"_L1, qPrintable(failure));
        QVERIFY2(time.elapsed() >= 14'000 && time.elapsed() < 25'000,
                 qPrintable(QString::number(time.elapsed())));
    }

    void deadLineDuringAStatement_data() {
        QTest::addColumn<QString>("sql");
        QTest::newRow("while the server works") << QString::fromLatin1(longQuery);
        QTest::newRow("while rows come") << QString::fromLatin1(millionRows);
    }
    void deadLineDuringAStatement() {
        QFETCH(QString, sql);
        Impatience watch;
        const auto connection = opened(u"FAR"_s);
        connection->setWatch(&watch);
        watch.onBegin = [&] {
            m_proxy->freeze();
            watch.stop = true;
        };
        const QString failure = failureOf([&] { connection->fetch(sql, 0); });
        QVERIFY2(failure.startsWith(u"ORA-03135 "_s), qPrintable(failure));
        QCOMPARE(connection->State(), ObjectState::Closed);
        QCOMPARE(watch.losses, 1);
        m_proxy->thaw();
        watch.stop = false;
        watch.onBegin = [] {};
        connection->ConnectionString.replace(u"FAR"_s, u"ORCL"_s);
        connection->Open();
        verifyWorks(*connection);
    }

    void stopWhileTheServerWorks() {
        Impatience watch;
        const auto connection = opened();
        connection->setWatch(&watch);
        watch.stop = true;
        QElapsedTimer time;
        time.start();
        QCOMPARE(failureOf([&] { fetched(*connection, longQuery); }),
                 u"ORA-01013 ORA-01013: user requested cancel of current operation"_s);
        QVERIFY(time.elapsed() < 4'000);
        verifyWorks(*connection);
        QCOMPARE(watch.losses, 0);
    }

    void stopBetweenBlocks() {
        Impatience watch;
        const auto connection = opened();
        connection->setWatch(&watch);
        watch.stop = true;
        QCOMPARE(failureOf([&] {
                     fetched(*connection, "SELECT i, repeat('x', 100) FROM "
                                          "generate_series(1, 20000000) AS i");
                 }),
                 u"ORA-01013 ORA-01013: user requested cancel of current operation"_s);
        verifyWorks(*connection);
    }

    void aMillionRows() {
        const auto connection = opened();
        const FetchedRows rows = fetched(*connection, millionRows);
        QCOMPARE(rows.rows.rows(), 1'000'000);
        QCOMPARE(rows.rows.cell(999'999, 1).view(), QByteArrayView("some text of row 1000000"));
        QCOMPARE(connection->fetch(QString::fromLatin1(millionRows), 5).rows.rows(), 5);
        verifyWorks(*connection); // the cut result left nothing behind
    }

    void fiftyConnectsLeaveNothingBehind() {
        constexpr int connects = 50;
        // The manager itself loses some 500 bytes a connect, reading its lists; the smallest
        // handle, an environment, takes 2,560.
        constexpr size_t mostBytes = 1500;
        for (int i = 0; i < 10; ++i)
            verifyWorks(*opened()); // what is loaded once
        const qsizetype filesBefore = openFiles();
        const size_t bytesBefore = bytesInUse();
        for (int i = 0; i < connects; ++i)
            verifyWorks(*opened());
        QCOMPARE(openFiles(), filesBefore);
        const size_t bytes = bytesInUse();
        QVERIFY2(bytes < bytesBefore + connects * mostBytes,
                 qPrintable(QString::number(qint64(bytes) - qint64(bytesBefore))));
    }

    void anUnknownNameTellsWhatWasSeen() {
        const QString failure = failureOf([] { opened(u"NOWHERE"_s); });
        QVERIFY2(failure.startsWith(u"ORA-12154 "_s), qPrintable(failure));
        for (const QString& told : {u"no data source \"NOWHERE\""_s, u"PostgreSQL Unicode"_s,
                                    u"odbcinst.ini"_s, qEnvironmentVariable("ODBCINI")})
            QVERIFY2(failure.contains(told), qPrintable(failure));
    }
};

QTEST_GUILESS_MAIN(tst_server_faults)
#include "tst_server_faults.moc"
