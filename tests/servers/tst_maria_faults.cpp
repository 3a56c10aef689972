#include "FaultTools.h"
#include "FreezingProxy.h"
#include "MariaServer.h"
#include "TestDataSources.h"

#include <QElapsedTimer>
#include <QTest>
#include <QThread>

#include <future>

using namespace Qt::StringLiterals;

// The faults of servers and lines once more for a server whose driver tells them in its own way.
class tst_maria_faults : public QObject {
    Q_OBJECT

private:
    MariaServer m_server;
    TestDataSources m_sources;
    std::unique_ptr<FreezingProxy> m_proxy;

    static constexpr auto longQuery = "SELECT COUNT(*) FROM seq_1_to_2000000 a, seq_1_to_2000000 b";
    static constexpr auto manyRows = "SELECT seq, CONCAT('text ', seq) FROM seq_1_to_3000000";
    static constexpr auto stopped =
        "ORA-01013 ORA-01013: user requested cancel of current operation"_L1;

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
        QVERIFY2(failure.startsWith(u"ORA-01017 Access denied"_s), qPrintable(failure));
    }

    void atTheConnectionLimit() {
        std::vector<std::unique_ptr<Connection>> all;
        QString failure = u"done"_s;
        for (int i = 0; i <= MariaServer::maxConnections && failure == "done"_L1; ++i)
            failure = failureOf([&] { all.push_back(opened()); });
        QVERIFY2(failure.startsWith(u"ORA-00018 "_s), qPrintable(failure));
        verifyWorks(*all.front());
    }

    void killedWhileIdle() {
        Impatience watch;
        const auto connection = opened();
        connection->setWatch(&watch);
        m_server.kill();
        const QString failure = failureOf([&] { fetched(*connection, "SELECT 1"); });
        QVERIFY2(failure.startsWith(u"ORA-03113 "_s), qPrintable(failure));
        QCOMPARE(connection->State(), ObjectState::Closed);
        QCOMPARE(watch.losses, 1);
        m_server.startAgain();
        connection->Open();
        verifyWorks(*connection);
    }

    void killedDuringAStatement_data() {
        QTest::addColumn<QString>("sql");
        QTest::newRow("while the server works") << QString::fromLatin1(longQuery);
        QTest::newRow("while rows come") << QString::fromLatin1(manyRows);
    }
    void killedDuringAStatement() {
        QFETCH(QString, sql);
        Impatience watch;
        const auto connection = opened();
        connection->setWatch(&watch);
        watch.onBegin = [this] { m_server.kill(); };
        const QString failure = failureOf([&] { connection->fetch(sql, 0); });
        m_server.startAgain();
        QVERIFY2(failure.startsWith(u"ORA-03113 "_s), qPrintable(failure));
        QCOMPARE(connection->State(), ObjectState::Closed);
    }

    void killedDuringTheLogin() {
        m_server.freeze();
        auto login = std::async(std::launch::async, [] { return failureOf([] { opened(); }); });
        QThread::msleep(300);
        m_server.kill();
        const QString failure = login.get();
        m_server.startAgain();
        QVERIFY2(failure.startsWith(u"ORA-03113 "_s), qPrintable(failure));
    }

    void deadLineDuringAStatement() {
        Impatience watch;
        const auto connection = opened(u"FAR"_s);
        connection->setWatch(&watch);
        watch.onBegin = [&] {
            m_proxy->freeze();
            watch.stop = true;
        };
        const QString failure = failureOf([&] { fetched(*connection, longQuery); });
        QVERIFY2(failure.startsWith(u"ORA-03135 "_s), qPrintable(failure));
        QCOMPARE(connection->State(), ObjectState::Closed);
    }

    void deadLineAtTheLogin() {
        m_proxy->freeze();
        QElapsedTimer time;
        time.start();
        const QString failure = failureOf([] { opened(u"FAR"_s); });
        QVERIFY2(failure != "done"_L1, qPrintable(failure));
        QVERIFY2(time.elapsed() < 25'000, qPrintable(QString::number(time.elapsed())));
    }

    void stopWhileTheServerWorks() {
        Impatience watch;
        const auto connection = opened();
        connection->setWatch(&watch);
        watch.stop = true;
        QCOMPARE(failureOf([&] { fetched(*connection, longQuery); }), stopped);
        verifyWorks(*connection);
        QCOMPARE(watch.losses, 0);
    }

    void aMillionRows() {
        const FetchedRows rows =
            fetched(*opened(), "SELECT seq, CONCAT('text of row ', seq) FROM seq_1_to_1000000");
        QCOMPARE(rows.rows.rows(), 1'000'000);
        QCOMPARE(rows.rows.cell(999'999, 1).view(), QByteArrayView("text of row 1000000"));
    }
};

QTEST_GUILESS_MAIN(tst_maria_faults)
#include "tst_maria_faults.moc"
