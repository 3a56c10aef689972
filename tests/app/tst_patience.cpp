#include "Connection.h"
#include "Desk.h"
#include "GridData.h"
#include "ProviderTable.h"
#include "TextView.h"
#include "TreeView.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>

#include <atomic>
#include <semaphore>

using namespace Qt::StringLiterals;

namespace {

// The sample database behind a line that can be cut, with a statement "wait" that ends only when it
// is told to and not by a request to stop.
class DeafSession : public Session {
public:
    struct Server {
        std::counting_semaphore<> mayEnd{0};
        std::atomic<bool> gone = false;
        std::atomic<int> stops = 0;
    };
    DeafSession(std::shared_ptr<Server> server, const DataSource& source)
        : m_server(std::move(server))
        , m_database(openSession(source, providerTable())) {}

    std::unique_ptr<Cursor> execute(const QString& sql) override {
        if (sql == "wait"_L1)
            m_server->mayEnd.acquire();
        if (m_server->gone)
            throw ProviderError(DbErrorNumber::GeneralFailure, u"ORA-03113"_s, u"server"_s,
                                u"ORA-03113: end-of-file on communication channel"_s);
        return m_database->execute(sql);
    }
    void requestStop() noexcept override { ++m_server->stops; }
    bool isOpen() const override { return !m_server->gone; }

private:
    std::shared_ptr<Server> m_server;
    std::unique_ptr<Session> m_database;
};

} // namespace

// The program while a statement runs: alive, deaf to all but Esc, and honest about a lost server.
class tst_patience : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_home;

    // Runs the script and does the things at their milliseconds meanwhile.
    using Step = std::pair<int, std::function<void()>>;
    static void runMeanwhile(Desk& desk, const QString& script, const std::vector<Step>& steps) {
        desk.query()->txtSQL->setText(script);
        for (const auto& [milliseconds, action] : steps)
            QTimer::singleShot(milliseconds, &desk.window, action);
        desk.window.perform(UserCommand::Execute);
    }
    static QString progress(Desk& desk) {
        return desk.control<QWidget>("StatusBar1_Panel1")->property("text").toString();
    }
    static QString messages(Desk& desk) { return desk.control<TextView>("txtMessage")->Text(); }
    static modDatabase::MakeConnection deaf(std::shared_ptr<DeafSession::Server> server) {
        return [server] {
            return std::make_unique<Connection>([server](const DataSource& source) {
                return std::make_unique<DeafSession>(server, source);
            });
        };
    }

private Q_SLOTS:
    void initTestCase() { qputenv("QUILLMATE_HOME", m_home.path().toUtf8()); }

    void escapeStopsAStatementAndTheBatchGoesOn() {
        Desk desk;
        desk.startOnDemo();
        const QString script =
            u"SELECT COUNT(*) FROM all_tab_columns a, all_tab_columns b, all_tab_columns c,"
            " all_tab_columns d, all_tab_columns e;\r\nSELECT 'next' AS n FROM dual;"_s;
        QString shown;
        int repaints = 0;
        runMeanwhile(desk, script,
                     {{400, [&] { QTest::keyClick(desk.query()->txtSQL, Qt::Key_X); }},
                      {500, [&] { desk.window.close(); }},
                      {600, [&] { QTest::keyClick(&desk.window, Qt::Key_N, Qt::ControlModifier); }},
                      {700, [&] { QTest::keyClick(desk.query()->txtSQL, Qt::Key_F5); }},
                      {1300,
                       [&] {
                           shown = progress(desk);
                           ++repaints;
                       }},
                      {1400, [&] { QTest::keyClick(desk.query()->txtSQL, Qt::Key_Escape); }}});
        QCOMPARE(repaints, 1); // the event loop went on meanwhile
        QCOMPARE(shown, u"Running query... 1 s (Esc stops it)"_s);
        QVERIFY(desk.window.isVisible());
        QCOMPARE(desk.captions().size(), 1);
        QVERIFY2(desk.query()->runner().state().errors, "the stopped statement counts as failed");
        QVERIFY(
            messages(desk).contains("ORA-01013: user requested cancel of current operation"_L1));
        QCOMPARE(desk.query()->resultGrid().text(1, 1), QByteArray("next"));
        QCOMPARE(desk.query()->scriptText(), script);
        QVERIFY(desk.window.Connected());
    }

    // It is given up after some seconds; what it does later reaches nobody.
    void aServerThatIgnoresTheStopIsLost() {
        const auto server = std::make_shared<DeafSession::Server>();
        Desk desk(deaf(server));
        desk.startOnDemo();
        QElapsedTimer time;
        time.start();
        runMeanwhile(desk, u"wait"_s,
                     {{200, [&] { QTest::keyClick(desk.query()->txtSQL, Qt::Key_Escape); }},
                      {300, [&] { QTest::keyClick(desk.query()->txtSQL, Qt::Key_Escape); }}});
        QVERIFY(time.elapsed() >= 5000);
        QCOMPARE(server->stops, 1);
        QVERIFY2(messages(desk).contains("ORA-03135: connection lost contact"_L1),
                 qPrintable(messages(desk)));
        QVERIFY(!desk.window.Connected());
        QVERIFY(desk.entry("mnuFileConnect")->isEnabled());
        QCOMPARE(desk.query()->scriptText(), u"wait"_s);
        server->gone = true;
        server->mayEnd.release();            // the abandoned statement ends by itself
        QTRY_COMPARE(server.use_count(), 3); // the test, the desk and its connection, no session
    }

    void aLostServerIsNoticedAtTheNextStatement() {
        const auto server = std::make_shared<DeafSession::Server>();
        Desk desk(deaf(server));
        desk.startOnDemo();
        QVERIFY(desk.window.Connected());
        server->gone = true;
        runMeanwhile(desk, u"SELECT 1 FROM dual"_s, {});
        QVERIFY(messages(desk).contains("ORA-03113"_L1));
        QVERIFY(!desk.window.Connected());
        QTRY_VERIFY(desk.window.findChild<TreeView*>(u"trvObjects"_s)->nodes().isEmpty());
        QVERIFY(desk.entry("mnuFileConnect")->isEnabled());
        QVERIFY(!desk.entry("mnuFileDisconnect")->isEnabled());
        QCOMPARE(desk.status(2), u"DISCONNECTED"_s);
        desk.expectLogin(u"demo"_s, u"demo"_s, u"DEMO"_s);
        server->gone = false;
        desk.window.perform(UserCommand::Connect);
        QVERIFY(desk.window.Connected());
        QCOMPARE(desk.captions().first(), u"1 Query - Untitled"_s);
    }

    // The nodes stay as long as one of them is worked on, then they go with the connection.
    void aServerLostWhileTreesAreFilled() {
        const auto server = std::make_shared<DeafSession::Server>();
        Desk desk(deaf(server));
        desk.startOnDemo();
        auto* tree = desk.window.findChild<TreeView*>(u"trvObjects"_s);
        for (const QString& key : {u"T12345"_s, u"V12345"_s}) {
            tree->setSelectedItem(tree->nodes().byKey(key));
            QTest::keyClick(tree, Qt::Key_Right);
            QVERIFY(tree->nodes().byKey(key)->Children() > 1);
        }
        server->gone = true;
        int seenFolders = 0;
        for (int folder = 0; folder < 2; ++folder) {
            desk.dialogs.expect(u"frmError"_s, [&](QDialog& report) {
                QCoreApplication::processEvents();
                seenFolders += tree->nodes().byKey(u"V12345"_s) != nullptr;
                report.reject();
            });
        }
        desk.window.perform(UserCommand::RefreshTrees);
        QCOMPARE(desk.dialogs.problems(), QStringList());
        QCOMPARE(seenFolders, 2);
        QTRY_VERIFY(tree->nodes().isEmpty());
    }
};

QTEST_MAIN(tst_patience)
#include "tst_patience.moc"
