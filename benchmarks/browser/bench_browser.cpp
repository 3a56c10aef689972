#include "DictionaryTree.h"
#include "NodeKeys.h"
#include "RecordingHost.h"
#include "SchemaTree.h"
#include "ScriptedServer.h"
#include "Trace.h"
#include "TreeView.h"
#include "modDatabase.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

// Filling trees of any size in their views, painted; the server answers from memory.

namespace {

constexpr qint64 tables = 20'000;
constexpr qint64 manyChildren = 100'000;

struct Browser {
    RecordingHost host;
    QStringList asked;
    ScriptedServer server{asked};
    TraceLog trace;
    modDatabase database{host, trace, [this] { return server.connection(); }};
    TreeNodes nodes;
    NodeKeys keys;
    SchemaTree schema{{nodes, keys, database, host}};
    DictionaryTree dictionary{nodes, database, host};
    TreeView view{nodes};

    Browser() {
        database.Open_Connection();
        QObject::connect(&view, &TreeView::Expand, &view,
                         [this](TreeNode* node) { schema.Expand(*node); });
        view.resize(300, 800);
        view.show();
        QApplication::processEvents();
    }
    void answer(const QString& sql, const QString& column, qint64 rows) {
        ScriptedAnswer answer{{column}, {}, {}, -1};
        for (qint64 i = 0; i < rows; ++i)
            answer.rows.push_back({"USER_TABLE_" + QByteArray::number(i)});
        server.answers[sql] = answer;
    }
    void answerTables(qint64 rows) {
        answer(u"SELECT * FROM USER_TABLES WHERE TABLE_NAME <>'PLAN_TABLE'"_s, u"TABLE_NAME"_s,
               rows);
        schema.Initialise_Schema_Tree();
    }
    // Opens the first folder as a person does.
    void openTables() {
        view.expand(nodes.index(0, 0));
        QApplication::processEvents();
        view.repaint();
    }
};

} // namespace

static void openTables(benchmark::State& state) {
    Browser b;
    for (auto _ : state) {
        state.PauseTiming();
        b.answerTables(state.range(0));
        state.ResumeTiming();
        b.openTables();
    }
    if (b.nodes.count() < state.range(0) || !b.host.log.isEmpty())
        state.SkipWithError("not filled");
    state.SetLabel("20000: at most 500 ms");
}
BENCHMARK(openTables)->Arg(tables)->Arg(manyChildren)->Unit(benchmark::kMillisecond);

static void loadDictionary(benchmark::State& state) {
    Browser b;
    b.answer(u"SELECT TABLE_NAME FROM DICTIONARY WHERE TABLE_NAME LIKE 'USER%'"_s, u"TABLE_NAME"_s,
             state.range(0));
    for (auto _ : state) {
        b.dictionary.Load_Dictionary();
        QApplication::processEvents();
        b.view.repaint();
    }
    state.SetLabel("at most 500 ms");
}
BENCHMARK(loadDictionary)->Arg(tables)->Unit(benchmark::kMillisecond);

static void refreshTables(benchmark::State& state) {
    Browser b;
    b.answerTables(tables);
    b.openTables();
    for (auto _ : state) {
        b.view.keepPlace([&] { b.schema.Refresh_Tree(); });
        QApplication::processEvents();
        b.view.repaint();
    }
}
BENCHMARK(refreshTables)->Unit(benchmark::kMillisecond);

static void scrollToEnd(benchmark::State& state) {
    Browser b;
    b.answerTables(manyChildren);
    b.openTables();
    for (auto _ : state) {
        QTest::keyClick(&b.view, Qt::Key_End);
        QTest::keyClick(&b.view, Qt::Key_Home);
        b.view.repaint();
    }
}
BENCHMARK(scrollToEnd)->Unit(benchmark::kMillisecond);

static void findByTyping(benchmark::State& state) {
    Browser b;
    b.answerTables(manyChildren);
    b.openTables();
    b.view.setSelectedItem(b.nodes.nodeAt(b.nodes.index(0, 0)));
    for (auto _ : state)
        QTest::keyClicks(&b.view, u"user_table_99999"_s);
    state.SetLabel("16 letters");
}
BENCHMARK(findByTyping)->Unit(benchmark::kMillisecond)->Iterations(1);

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
