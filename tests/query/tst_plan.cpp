#include "ExecutionPlan.h"
#include "RecordingHost.h"
#include "RecordingWindow.h"
#include "RunState.h"
#include "ScriptedServer.h"
#include "Trace.h"
#include "modDatabase.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const auto deleteText = u"DELETE FROM PLAN_TABLE WHERE Statement_Id = 'TALLOWEX' "_s;
const auto explainText = u"Explain Plan set Statement_Id = 'TALLOWEX' FOR  select 1"_s;
const auto totalsText = u"SELECT SUM(COST), Sum(Cardinality) FROM PLAN_TABLE WHERE  "
                        "Statement_Id = 'TALLOWEX' "_s;

} // namespace

class tst_plan : public QObject {
    Q_OBJECT

private:
    struct Fixture {
        RecordingHost host;
        RecordingWindow window{host.log};
        ScriptedServer server{host.log};
        TraceLog trace;
        modDatabase database{host, trace, [this] { return server.connection(); }};
        RunState state;

        Fixture() {
            database.Open_Connection();
            server.answers[deleteText] = {};
            server.answers[explainText] = {};
            server.answers[planQuery()] = {
                {u"PLAN"_s}, {{"SELECT STATEMENT"_ba}, {"  TABLE"_ba}}, {}, -1};
            server.answers[totalsText] = {
                {u"SUM(COST)"_s, u"SUM(CARDINALITY)"_s}, {{"12"_ba, std::nullopt}}, {}, -1};
            state.planCost = u"old"_s;
            state.planCardinality = u"old"_s;
        }
    };

private Q_SLOTS:
    void plan() {
        Fixture f;
        GetPlan(u"select 1"_s, f.window, f.database, f.state);
        QCOMPARE(f.host.log,
                 (QStringList{u"execute "_s + deleteText, u"execute "_s + explainText,
                              u"execute "_s + planQuery(), u"execute "_s + totalsText}));
        QCOMPARE(gridText(f.window.planGridData), u"|PLAN\n1|SELECT STATEMENT\n2|  TABLE"_s);
        QCOMPARE(f.window.planGridData.ColWidth(1), 2000);
        QCOMPARE(f.state.planCost, u"12"_s);
        QCOMPARE(f.state.planCardinality, QString()); // a null sum is no stale text
        QCOMPARE(f.state.recordCount, QString());
    }

    void failures_data() {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("outcome");
        QTest::newRow("no PLAN_TABLE") << deleteText << -2147467259 << u"Not available."_s;
        QTest::newRow("cannot be explained") << explainText << -2147467259 << u"Not available."_s;
        QTest::newRow("plan query fails") << planQuery() << -2147467259 << u"Not available."_s;
        QTest::newRow("any other number is raised")
            << explainText << -2147217900 << u"server..GetPlan"_s;
        QTest::newRow("totals fail silently") << totalsText << -2147217900 << u""_s;
    }
    void failures() {
        QFETCH(QString, statement);
        QFETCH(int, number);
        Fixture f;
        f.server.answers[statement].failure = serverError(number, u"no"_s);
        QString outcome;
        try {
            GetPlan(u"select 1"_s, f.window, f.database, f.state);
            outcome = QString::fromUtf8(f.window.planGridData.text(0, 0));
            QCOMPARE(f.window.planGridData.ColWidth(0), outcome.isEmpty() ? 500 : 2000);
        } catch (const Error& error) {
            outcome = error.source();
        }
        QTEST(outcome, "outcome");
        QCOMPARE(f.state.planCost, u"old"_s);
        QCOMPARE(f.state.planCardinality, u"old"_s);
    }

    void createTable_data() {
        QTest::addColumn<int>("number"); // 0: it succeeds
        QTest::addColumn<QString>("outcome");
        QTest::newRow("created") << 0 << u""_s;
        QTest::newRow("there already") << -2147217900 << u""_s;
        QTest::newRow("no such right") << -2147467259 << u"server..MDIMain.Create_Plan_Table"_s;
    }
    void createTable() {
        QFETCH(int, number);
        Fixture f;
        f.server.answers[planTableStatement()] = {};
        if (number != 0)
            f.server.answers[planTableStatement()].failure = serverError(number, u"no"_s);
        QString outcome;
        try {
            Create_Plan_Table(f.database, f.host);
        } catch (const Error& error) {
            outcome = error.source();
        }
        QTEST(outcome, "outcome");
        QCOMPARE(f.host.log, (QStringList{u"pointer 11"_s, u"execute "_s + planTableStatement(),
                                          u"pointer 0"_s}));
        QCOMPARE(f.trace.text(), planTableStatement() + u"\r\n\r\n"_s);
    }
};

QTEST_GUILESS_MAIN(tst_plan)
#include "tst_plan.moc"
