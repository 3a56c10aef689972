#include "ServerFaults.h"

#include <QDir>
#include <QElapsedTimer>
#include <QThread>

#include <future>

#if defined(__SANITIZE_ADDRESS__)
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#else
#include <malloc.h>
#endif

using namespace Qt::StringLiterals;

namespace {

constexpr auto stopped = "ORA-01013 ORA-01013: user requested cancel of current operation"_L1;
constexpr int rowsOfALongFetch = 3'000'000; // some 100 MB on the line

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

void ServerFaults::initTestCase() {
    if (!server().missing().isEmpty())
        QSKIP(qPrintable(server().missing()));
    server().start();
    m_proxy = std::make_unique<FreezingProxy>(server().port());
    m_sources.add(server().dataSource(u"ORCL"_s, server().port()) +
                  server().dataSource(u"FAR"_s, m_proxy->port()));
}

void ServerFaults::wrongPassword() {
    const QString failure = failureOf([] { opened(u"ORCL"_s, u"wrong"_s); });
    QVERIFY2(failure.startsWith(u"ORA-01017 "_s), qPrintable(failure));
    QVERIFY2(failure.contains(m_subject.refusal), qPrintable(failure));
    QVERIFY2(!failure.contains(u'['), "the driver's prefixes are gone");
}

void ServerFaults::passwordsThatTheManagerWouldCut_data() {
    QTest::addColumn<QString>("password");
    QTest::newRow("closing brace") << u"a}b"_s;
    QTest::newRow("both braces and a blank") << u"{a b}"_s;
    QTest::newRow("equals sign, at and question mark") << u"a=b@c?"_s;
    QTest::newRow("other scripts") << u"κωδικός日本"_s;
}

void ServerFaults::passwordsThatTheManagerWouldCut() {
    QFETCH(QString, password);
    const auto keeper = opened();
    keeper->Execute(m_subject.setPassword.arg(password));
    const QString failure = failureOf([&] { opened(u"ORCL"_s, password); });
    keeper->Execute(m_subject.setPassword.arg(u"tiger"_s));
    QCOMPARE(failure, u"done"_s);
}

void ServerFaults::atTheConnectionLimit() {
    std::vector<std::unique_ptr<Connection>> all;
    QString failure = u"done"_s;
    for (int i = 0; i <= m_subject.connections && failure == "done"_L1; ++i)
        failure = failureOf([&] { all.push_back(opened()); });
    QVERIFY2(failure.startsWith(u"ORA-00018 "_s), qPrintable(failure));
    verifyWorks(*all.front());
}

void ServerFaults::killedWhileIdle() {
    Impatience watch;
    const auto connection = opened();
    connection->setWatch(&watch);
    verifyWorks(*connection);
    server().kill();
    QCOMPARE(connection->State(), ObjectState::Open); // not noticed yet
    const QString failure = failureOf([&] { fetched(*connection, "SELECT 1"); });
    QVERIFY2(failure.startsWith(u"ORA-03113 "_s), qPrintable(failure));
    QCOMPARE(connection->State(), ObjectState::Closed);
    QCOMPARE(watch.losses, 1);
    server().startAgain();
    connection->Open();
    verifyWorks(*connection);
}

void ServerFaults::verifyLoss(Connection& connection, const QString& sql,
                              const std::function<void()>& fault) {
    Impatience watch;
    connection.setWatch(&watch);
    watch.onBegin = fault;
    const QString failure = failureOf([&] { connection.fetch(sql, 0); });
    server().startAgain();
    QVERIFY2(failure.startsWith(u"ORA-03113 "_s), qPrintable(failure));
    QCOMPARE(connection.State(), ObjectState::Closed);
}

void ServerFaults::killedWhileTheServerWorks() {
    verifyLoss(*opened(), m_subject.longQuery, [this] { server().kill(); });
}

void ServerFaults::killedDuringAFetch_data() {
    QTest::addColumn<int>("kilobytes");
    for (const int kilobytes : {0, 100, 1000, 8000, 30'000})
        QTest::addRow("after %d KB", kilobytes) << kilobytes;
}

void ServerFaults::killedDuringAFetch() {
    QFETCH(int, kilobytes);
    const auto connection = opened(u"FAR"_s);
    m_proxy->freezeAfter(qint64(kilobytes) * 1024);
    verifyLoss(*connection, rows(rowsOfALongFetch), [this] {
        QTRY_VERIFY(m_proxy->frozen());
        server().kill();
        m_proxy->thaw();
    });
}

void ServerFaults::restartedWhileAStatementRuns() {
    verifyLoss(*opened(), m_subject.longQuery, [this] { server().stop(); });
}

void ServerFaults::killedDuringTheLogin() {
    server().freeze();
    QElapsedTimer time;
    time.start();
    auto login = std::async(std::launch::async, [] { return failureOf([] { opened(); }); });
    QThread::msleep(300);
    server().kill();
    const QString failure = login.get();
    server().startAgain();
    QVERIFY2(failure.startsWith(u"ORA-03113 "_s), qPrintable(failure));
    QVERIFY2(time.elapsed() < 10'000, "noticed before the time-out");
    verifyWorks(*opened());
}

void ServerFaults::noServerAtTheLogin() {
    server().stop();
    const QString failure = failureOf([] { opened(); });
    server().startAgain();
    QVERIFY2(failure.startsWith(u"ORA-03113 "_s), qPrintable(failure));
}

void ServerFaults::deadLineAtTheLogin() {
    m_proxy->freeze();
    QElapsedTimer time;
    time.start();
    const QString failure = failureOf([] { opened(u"FAR"_s); });
    QVERIFY2(failure != "done"_L1, qPrintable(failure));
    QVERIFY2(time.elapsed() >= 14'000 && time.elapsed() < 25'000,
             qPrintable(QString::number(time.elapsed())));
}

void ServerFaults::deadLineDuringAStatement_data() {
    QTest::addColumn<QString>("sql");
    QTest::addColumn<bool>("rowsCome");
    QTest::newRow("while the server works") << m_subject.longQuery << false;
    QTest::newRow("while rows come") << rows(rowsOfALongFetch) << true;
}

void ServerFaults::deadLineDuringAStatement() {
    QFETCH(QString, sql);
    QFETCH(bool, rowsCome);
    Impatience watch;
    const auto connection = opened(u"FAR"_s);
    connection->setWatch(&watch);
    if (rowsCome)
        m_proxy->freezeAfter(1024 * 1024);
    watch.onBegin = [&] {
        if (!rowsCome)
            m_proxy->freeze();
        QTRY_VERIFY(m_proxy->frozen());
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

void ServerFaults::stopWhileTheServerWorks() {
    Impatience watch;
    const auto connection = opened();
    connection->setWatch(&watch);
    watch.stop = true;
    QElapsedTimer time;
    time.start();
    QCOMPARE(failureOf([&] { connection->fetch(m_subject.longQuery, 0); }), stopped);
    QVERIFY(time.elapsed() < 4'000);
    verifyWorks(*connection);
    QCOMPARE(watch.losses, 0);
}

void ServerFaults::stopBetweenBlocks() {
    Impatience watch;
    const auto connection = opened();
    connection->setWatch(&watch);
    watch.stop = true;
    QCOMPARE(failureOf([&] { connection->fetch(rows(20'000'000), 0); }), stopped);
    verifyWorks(*connection);
}

void ServerFaults::aMillionRows() {
    const auto connection = opened();
    const QString sql = rows(1'000'000);
    const FetchedRows fetched = connection->fetch(sql, 0);
    QCOMPARE(fetched.rows.rows(), 1'000'000);
    QCOMPARE(fetched.rows.cell(999'999, 1).view(), QByteArrayView("some text of row 1000000"));
    QCOMPARE(connection->fetch(sql, 5).rows.rows(), 5);
    verifyWorks(*connection); // the cut result left nothing behind
}

void ServerFaults::fiftyConnectsLeaveNothingBehind() {
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
