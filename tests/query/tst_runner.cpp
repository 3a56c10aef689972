#include "Error.h"
#include "RecordingHost.h"
#include "RecordingWindow.h"
#include "ScriptedServer.h"
#include "Trace.h"
#include "clsQueryRunner.h"
#include "modDatabase.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

Error broken(const QString& what) {
    return Error(5, u"platform"_s, what);
}

// Fails as the platform hardly ever does.
class FailingHost : public RecordingHost {
public:
    bool pointerFails = false;
    int timerFailsAt = 0; // counts from 1

    void setMousePointer(MousePointer pointer) override {
        RecordingHost::setMousePointer(pointer);
        if (pointerFails && pointer == MousePointer::Hourglass)
            throw broken(u"no pointer"_s);
    }
    float timer() override {
        if (++m_timerCalls == timerFailsAt)
            throw broken(u"no clock"_s);
        return RecordingHost::timer();
    }

private:
    int m_timerCalls = 0;
};

class FailingWindow : public RecordingWindow {
public:
    using RecordingWindow::RecordingWindow;
    bool statisticsFail = false;

    void setStatistics(const std::vector<std::pair<QString, QString>>& rows) override {
        RecordingWindow::setStatistics(rows);
        if (statisticsFail)
            throw broken(u"no list"_s);
    }
};

struct Fixture {
    FailingHost host;
    FailingWindow window{host.log};
    ScriptedServer server{host.log};
    TraceLog trace;
    modDatabase database{host, trace, [this] { return server.connection(); }};
    clsQueryRunner runner{window, host, database};

    Fixture() {
        database.Open_Connection();
        server.answers[u"select rows"_s] = {
            {u"A"_s, u"B"_s}, {{"1"_ba, "x"_ba}, {std::nullopt, "y"_ba}}, {}, -1};
        server.answers[u"select one"_s] = {{u"A"_s}, {{"1"_ba}}, {}, -1};
        server.answers[u"select nothing"_s] = {};
        server.answers[u"drop it"_s] = {};
        server.answers[u"select torn"_s] = {
            {u"A"_s}, {{"1"_ba}, {"2"_ba}}, serverError(-2147467259, u"lost\ncontact"_s), 1};
    }
    QStringList run(const QString& script) {
        window.script = script;
        runner.Run_Queries();
        return host.log;
    }
};

const QStringList reset{u"text of 0 bytes"_s, u"no messages"_s, u"status 1 \"\""_s,
                        u"status 2 \"\""_s, u"no messages"_s};
const QStringList completed{u"status 1 \"Query batch complete.\""_s};
const QStringList completedWithErrors{u"messages tab"_s,
                                      u"status 1 \"Query batch complete with errors.\""_s};

QStringList opening(const QString& sql) {
    return {u"pointer 11"_s, u"status 1 \"Running query...\""_s, u"repaint"_s, u"execute "_s + sql};
}
const QStringList displaying{u"status 1 \"Query complete.\""_s,
                             u"status 1 \"Displaying query results...\""_s, u"repaint"_s};
const QStringList closing{u"status 1 \"\""_s, u"status 1 \"Query Complete.\""_s, u"pointer 0"_s};

QStringList statistics(const QString& count, const QString& retrieval, const QString& display) {
    return {u"statistics Total Records=%1, Cost=, Cardinality=, Retrieval Time=%2, "
            "Display Results Time=%3"_s.arg(count, retrieval, display),
            u"status 2 \"%1 rows\""_s.arg(count), u"message Query Complete."_s};
}

const auto instantly = u"0.00 seconds"_s;

} // namespace

class tst_runner : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void gridOutput() {
        Fixture f;
        f.host.clock = {10.0f, 10.27f, 11.0f, 12.5f};
        QCOMPARE(f.run(u"select rows"_s),
                 reset + opening(u"select rows"_s) + displaying + closing +
                     statistics(u"2"_s, u"0.27 seconds"_s, u"1.50 seconds"_s) + completed);
        QCOMPARE(gridText(f.window.resultGridData), u"|A|B\n1|1|x\n2||y"_s);
    }

    void secondStatementFailsThirdStillRuns() {
        const QStringList first{u"pointer 11"_s, u"repaint"_s, u"execute drop it"_s,
                                u"message Query Complete"_s, u"pointer 0"_s};
        const QStringList second{u"pointer 0"_s,
                                 u"message ORA-00900: invalid SQLstatement    "
                                 "(SELECT * FROM no_such_table_at...)"_s,
                                 u"status 1 \"Query Complete with Errors.\""_s};
        const QString missing = u"SELECT * FROM no_such_table_at_all_here"_s;
        Fixture f;
        QCOMPARE(f.run(u"drop it;\r\n"_s + missing + u";\r\nselect one;"_s),
                 reset + first + opening(missing) + second + opening(u"select one"_s) + displaying +
                     closing + statistics(u"1"_s, instantly, instantly) + completedWithErrors);
    }

    void emptyScriptIsOneFailingStatement() {
        const QStringList failure{u"pointer 11"_s, u"repaint"_s, u"execute "_s, u"pointer 0"_s,
                                  u"message ORA-00900: invalid SQLstatement    (...)"_s};
        Fixture f;
        QCOMPARE(f.run(QString()), reset + failure + completedWithErrors);
    }

    void errorsFlagEndsWithTheBatch() {
        Fixture f;
        f.run(u"nonsense"_s);
        f.host.log.clear();
        QCOMPARE(f.run(u"drop it"_s).last(), completed.last());
    }

    void notConnected() {
        Fixture f;
        f.database.Close_Connection();
        const QStringList log = f.run(u"select one;drop it;"_s);
        QVERIFY(log.contains(u"message Object variable not set    (select one...)"_s));
        QVERIFY(log.contains(u"message Object variable not set    (drop it...)"_s));
    }

    void firstCharactersAreNotCut() {
        Fixture f;
        f.run(u"drop "_s + u"😀"_s.repeated(40));
        QVERIFY(f.host.log.contains(u"message ORA-00900: invalid SQLstatement    (drop "_s +
                                    u"😀"_s.repeated(25) + u"...)"_s));
    }

    void lostWhileFetching() {
        Fixture f;
        QVERIFY(f.run(u"select torn"_s).contains(u"message lostcontact    (select torn...)"_s));
        QCOMPARE(gridText(f.window.resultGridData), QString());
    }

    void outputModes_data() {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("effect"); // the log line between displaying and closing
        const QString text = u"Comma Seperated Values(CSV)"_s;
        const QString dialog = u"save dialog .sql Text File (*.txt)|*.txt|Microsoft Excel File "
                               "(*.xls)|*.xls|All Files (*.*)|*.* asks"_s;
        QTest::newRow("grid in other letters") << u"GRID"_s << u"select one"_s << QString();
        QTest::newRow("text") << text << u"select one"_s << u"text of 6 bytes"_s;
        QTest::newRow("text in other letters") << text.toLower() << u"select one"_s << QString();
        QTest::newRow("file in other letters") << u"fiLE"_s << u"select one"_s << dialog;
        QTest::newRow("unknown") << u"Printer"_s << u"select nothing"_s << QString();
        for (const QString& mode : {u"Grid"_s, text, u"File"_s})
            QTest::addRow("no columns, %s", qPrintable(mode))
                << mode << u"select nothing"_s << u"message Query Complete"_s;
    }
    void outputModes() {
        QFETCH(QString, mode);
        QFETCH(QString, sql);
        QFETCH(QString, effect);
        Fixture f;
        f.window.mode = mode;
        const bool isGrid = mode.compare(u"grid"_s, Qt::CaseInsensitive) == 0;
        QStringList effects;
        if (!effect.isEmpty())
            effects << effect;
        if (effect.startsWith(u"save"_s))
            effects << u"status 2 \"1 rows\""_s;
        QCOMPARE(f.run(sql), reset + opening(sql) + displaying + effects + closing +
                                 statistics(isGrid && sql == u"select one"_s ? u"1"_s : QString(),
                                            instantly, instantly) +
                                 completed);
        QCOMPARE(f.window.resultGridData.Cols(), isGrid && effect.isEmpty() ? 2 : 1);
    }

    void recordLimit() {
        Fixture f;
        f.runner.state().MaxRecords = 1;
        f.run(u"select rows"_s);
        QCOMPARE(gridText(f.window.resultGridData), u"|A|B\n1|1|x"_s);
        f.runner.state().MaxRecords = -1;
        f.run(u"select rows"_s);
        QCOMPARE(f.window.resultGridData.Rows(), 3);
    }

    // The texts are those of the last statement that wrote them.
    void staleStatistics() {
        Fixture f;
        f.host.clock = {1, 2, 3, 5, 7, 10, 14, 20};
        f.run(u"select rows"_s);
        f.window.results = false;
        f.host.log.clear();
        const QStringList opened{u"status 1 \"Query complete.\""_s};
        QCOMPARE(f.run(u"select one"_s).sliced(reset.size() + 4),
                 opened + closing + statistics(u"2"_s, u"3.00 seconds"_s, u"2.00 seconds"_s) +
                     completed);

        f.window.results = true;
        f.window.mode = u"File"_s;
        f.run(u"select one"_s);
        QVERIFY(f.host.log.contains(u"status 2 \"1 rows\""_s)); // the file's own count, replaced
        QCOMPARE(f.host.log[f.host.log.size() - 3], u"status 2 \"2 rows\""_s);
    }

    void midnightGivesANegativeTime() {
        Fixture f;
        f.host.clock = {86399.5f, 0.5f};
        f.run(u"select one"_s);
        QCOMPARE(f.runner.state().retrievalTime, u"-86399.00 seconds"_s);
    }

    void stepFailures_data() {
        QTest::addColumn<QString>("step");
        QTest::addColumn<QStringList>("end"); // of the log before the batch's last status
        QTest::addColumn<bool>("errors");
        QTest::newRow("creating the objects")
            << u"pointer"_s
            << QStringList{u"pointer 11"_s, u"pointer 0"_s,
                           u"msgbox[ok] Error Creating Objects - 5:no pointer"_s}
            << false;
        QTest::newRow("setting up the command")
            << u"first timer"_s
            << QStringList{u"pointer 11"_s, u"pointer 0"_s,
                           u"message no clock    (select rows...)"_s,
                           u"status 1 \"Query Complete with Errors.\""_s}
            << true;
        QTest::newRow("timing") << u"second timer"_s
                                << QStringList{u"status 1 \"Query complete.\""_s, u"pointer 0"_s,
                                               u"msgbox[ok] Error With Timer - 5:no clock"_s}
                                << false;
        QTest::newRow("output") << u"null"_s
                                << displaying +
                                       QStringList{u"pointer 0"_s,
                                                   u"msgbox[ok] Error Loading Results Grid - "
                                                   "94:Invalid use of Null"_s}
                                << false;
        QTest::newRow("plan, which leaves the hourglass")
            << u"plan"_s
            << displaying +
                   QStringList{u"repaint"_s,
                               u"execute DELETE FROM PLAN_TABLE WHERE Statement_Id = 'TALLOWEX' "_s}
            << false;
        QTest::newRow("statistics")
            << u"statistics"_s
            << closing +
                   QStringList{statistics(u"2"_s, instantly, instantly).first(), u"pointer 0"_s}
            << false;
    }
    void stepFailures() {
        QFETCH(QString, step);
        QFETCH(QStringList, end);
        QFETCH(bool, errors);
        Fixture f;
        f.host.pointerFails = step == u"pointer"_s;
        f.host.timerFailsAt = step == u"first timer"_s ? 1 : step == u"second timer"_s ? 2 : 0;
        f.window.statisticsFail = step == u"statistics"_s;
        f.window.plan = step == u"plan"_s;
        if (step == u"null"_s) {
            f.window.mode = u"Comma Seperated Values(CSV)"_s;
            f.server.answers[u"select rows"_s].rows[0][0] = std::nullopt;
        }
        f.server.answers[u"DELETE FROM PLAN_TABLE WHERE Statement_Id = 'TALLOWEX' "_s].failure =
            serverError(-2147217900, u"no"_s);
        const QStringList expected = end + (errors ? completedWithErrors : completed);
        const QStringList log = f.run(u"select rows"_s);
        QCOMPARE(log.last(expected.size()), expected);
        QCOMPARE(f.runner.state().errors, errors);
    }

    void planThatCannotBeMadeGoesOn() {
        Fixture f;
        f.window.plan = true;
        f.run(u"select one"_s);
        QCOMPARE(gridText(f.window.planGridData), u"Not available."_s);
        QCOMPARE(f.host.log.sliced(f.host.log.size() - 2),
                 (QStringList{u"message Query Complete."_s} + completed));
    }

    void generalStatementWithoutPointerIsRaised() {
        Fixture f;
        f.host.pointerFails = true;
        try {
            f.runner.Run_General_Query(u"drop it"_s);
            QFAIL("no error");
        } catch (const Error& error) {
            QCOMPARE(error.source(), u"platform..frmQuery.Run_General_Query"_s);
        }
    }

    void resetEmptiesOutputsButNotStatistics() {
        Fixture f;
        f.run(u"select rows"_s);
        f.window.planGridData.setText(0, 0, u"x"_s);
        f.runner.Reset();
        QCOMPARE(gridText(f.window.resultGridData), QString());
        QCOMPARE(gridText(f.window.planGridData), QString());
        QCOMPARE(f.runner.state().recordCount, u"2"_s);
    }
};

QTEST_GUILESS_MAIN(tst_runner)
#include "tst_runner.moc"
