#include "Desk.h"
#include "GridData.h"
#include "PostgresServer.h"
#include "TestDataSources.h"
#include "TextView.h"
#include "TreeView.h"

#include <QElapsedTimer>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>

using namespace Qt::StringLiterals;

// A person at the main window whose server goes away and comes back.
class tst_server_window : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_home;
    PostgresServer m_server;
    TestDataSources m_sources;

    static constexpr auto unfinished = "SELECT unfinished work"_L1;

    static void logOn(Desk& desk) {
        desk.expectLogin(u"scott"_s, u"tiger"_s, u"ORCL"_s);
        desk.entry("mnuFileConnect")->trigger();
    }
    // Two query windows: one with a result, and above it one with a text that nobody saved.
    static void work(Desk& desk) {
        desk.start();
        logOn(desk);
        verifyConnected(desk);
        run(desk, u"SELECT 40 + 2 AS answer"_s);
        QCOMPARE(desk.query()->resultGrid().text(1, 1), QByteArray("42"));
        desk.entry("mnuFileNew")->trigger();
        desk.query()->txtSQL->setText(unfinished);
    }
    static void run(Desk& desk, const QString& sql) {
        desk.query()->txtSQL->setText(sql);
        desk.entry("mnuQueryExecute")->trigger();
    }
    static QString messages(Desk& desk) { return desk.control<TextView>("txtMessage")->Text(); }
    static frmQuery* window(Desk& desk, int number) {
        return qobject_cast<frmQuery*>(desk.area()->subWindowList().at(number)->widget());
    }

    static void verifyConnected(Desk& desk) {
        QCOMPARE(desk.dialogs.problems(), QStringList());
        QVERIFY2(desk.window.Connected(), qPrintable(desk.trace.text()));
        QVERIFY(!desk.entry("mnuFileConnect")->isEnabled());
        QVERIFY(desk.entry("mnuFileDisconnect")->isEnabled());
        QCOMPARE(desk.status(2) + u' ' + desk.status(3), u"ORCL scott"_s);
    }
    static void verifyLost(Desk& desk) {
        QVERIFY(!desk.window.Connected());
        QVERIFY(desk.entry("mnuFileConnect")->isEnabled());
        QVERIFY(!desk.entry("mnuFileDisconnect")->isEnabled());
        QCOMPARE(desk.status(2) + u' ' + desk.status(3), u"DISCONNECTED "_s);
        QTRY_VERIFY(desk.window.findChild<TreeView*>(u"trvObjects"_s)->nodes().isEmpty());
    }
    static void verifyNothingIsLost(Desk& desk) {
        QCOMPARE(window(desk, 0)->scriptText(), u"SELECT 40 + 2 AS answer"_s);
        QCOMPARE(window(desk, 0)->resultGrid().text(1, 1), QByteArray("42"));
        QVERIFY(window(desk, 1)->UnSavedChanges());
    }
    static void forgetTexts(Desk& desk) {
        for (int i = 0; i < desk.area()->subWindowList().size(); ++i)
            window(desk, i)->setUnSavedChanges(false);
    }

private Q_SLOTS:
    void initTestCase() {
        qputenv("QUILLMATE_HOME", m_home.path().toUtf8());
        if (!m_server.missing().isEmpty())
            QSKIP(qPrintable(m_server.missing()));
        m_server.start();
        m_server.sqlOfFile(QFINDTESTDATA("oracle_flavour.sql"));
        m_sources.add(m_server.dataSource(u"ORCL"_s, m_server.port()));
    }

    void connectAfterALoss() {
        Desk desk;
        work(desk);
        m_server.kill();
        desk.entry("mnuQueryExecute")->trigger();
        QVERIFY2(messages(desk).contains(u"server closed the connection unexpectedly"_s),
                 qPrintable(messages(desk)));
        verifyLost(desk);
        verifyNothingIsLost(desk);
        QCOMPARE(desk.query()->scriptText(), unfinished);
        desk.entry("mnuQueryExecute")->trigger();
        QVERIFY2(messages(desk).contains(u"ORA-03114: not connected to ORACLE"_s),
                 qPrintable(messages(desk)));

        QString told; // the server is still down
        desk.expectLogin(u"scott"_s, u"tiger"_s, u"ORCL"_s);
        desk.dialogs.expect(u"msgBox"_s, [&](QDialog& box) {
            told = dynamic_cast<QMessageBox&>(box).text();
            box.accept();
        });
        desk.entry("mnuFileConnect")->trigger();
        QVERIFY2(told.startsWith(u"Database connection problem encountered."_s), qPrintable(told));
        QVERIFY(!desk.window.Connected());
        QVERIFY(desk.entry("mnuFileConnect")->isEnabled());

        m_server.startAgain();
        QElapsedTimer time;
        time.start();
        logOn(desk);
        QVERIFY2(time.elapsed() < 10'000, qPrintable(QString::number(time.elapsed())));
        verifyConnected(desk);
        verifyNothingIsLost(desk);
        QCOMPARE(window(desk, 1)->scriptText(), unfinished);
        QVERIFY(!desk.window.findChild<TreeView*>(u"trvObjects"_s)->nodes().isEmpty());
        run(desk, u"SELECT 43 AS answer"_s);
        QCOMPARE(desk.query()->resultGrid().text(1, 1), QByteArray("43"));
        forgetTexts(desk);
    }

    void killedWhileRowsComeToAWindow() {
        Desk desk;
        work(desk);
        QTimer::singleShot(500, &desk.window, [this] { m_server.kill(); });
        run(desk, u"SELECT i, pg_sleep(0.001) FROM generate_series(1, 60000) AS i"_s);
        m_server.startAgain();
        QVERIFY2(messages(desk).contains(u"server closed the connection unexpectedly"_s),
                 qPrintable(messages(desk)));
        verifyLost(desk);
        verifyNothingIsLost(desk);
        logOn(desk);
        verifyConnected(desk);
        run(desk, u"SELECT 44 AS answer"_s);
        QCOMPARE(desk.query()->resultGrid().text(1, 1), QByteArray("44"));
        forgetTexts(desk);
    }
};

QTEST_MAIN(tst_server_window)
#include "tst_server_window.moc"
