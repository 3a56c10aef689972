#include "LineColours.h"
#include "RatioReporter.h"
#include "RecordingHost.h"
#include "RtfText.h"
#include "SqlDocument.h"
#include "SqlEditor.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

// What colouring costs while a person types, beside the procedure over the whole document that it
// stands for. A full run is about a script of a million characters.

namespace {

constexpr qint64 judgedCharacters = 1'000'000;
constexpr qint64 smallScript = 10'000;

const std::vector<RatioLimit> limits = {
    {"wholeScript", "replacePasses", 0.03},
    {"keystrokeInLargeScript", "keystrokeInSmallScript", 2},
};

qint64 benchCharacters() {
    bool given = false;
    const qint64 rows = qEnvironmentVariable("QUILLMATE_BENCH_ROWS").toLongLong(&given);
    return given && rows > 0 ? rows : judgedCharacters;
}

QString script(qint64 characters) {
    const QStringList lines = {
        u"select o.order_id, c.name, sum(i.quantity * i.price) as total"_s,
        u"  from orders o inner join customers c on c.customer_id = o.customer_id"_s,
        u" where o.ordered_on >= '2026-01-01' and c.region in ('North', 'South')"_s,
        u"   -- the cancelled ones do not count"_s,
        u"   and not o.state = 'cancelled' or o.remark like '%urgent%'"_s,
        u" group by o.order_id, c.name having count(*) > 1 order by total desc;"_s,
        QString()};
    QString text;
    for (qsizetype line = 0; text.size() < characters; ++line)
        text += lines[line % lines.size()] + u"\r\n"_s;
    return text;
}

void showNow(QWidget& widget) {
    widget.resize(1200, 800);
    widget.show();
    QApplication::processEvents();
    widget.repaint();
    widget.setFocus();
}

void typeInto(benchmark::State& state, const QString& text) {
    RecordingHost host;
    SqlEditor box(host);
    box.setText(text);
    box.setSelStart(int(text.size()) / 2);
    showNow(box);
    box.centerCursor();
    const int before = box.document()->characterCount();
    for (auto _ : state) {
        QTest::keyClick(&box, Qt::Key_X);
        box.repaint();
    }
    if (box.document()->characterCount() != before + int(state.iterations()))
        state.SkipWithError("not typed");
}

} // namespace

static void replacePasses(benchmark::State& state) {
    const QString document = Build_Document(script(benchCharacters()), 0);
    for (auto _ : state)
        benchmark::DoNotOptimize(Colour_Document(document));
}
BENCHMARK(replacePasses)->Unit(benchmark::kMillisecond)->UseRealTime();

static void wholeScript(benchmark::State& state) {
    const std::vector<RtfParagraph> plain = plainParagraphs(script(benchCharacters()));
    for (auto _ : state) {
        std::vector<RtfParagraph> lines = plain;
        for (RtfParagraph& line : lines) {
            line.runs = colourRuns(line.text);
            putInCapitals(line.text.data(), line.runs);
        }
        benchmark::DoNotOptimize(lines.data());
    }
}
BENCHMARK(wholeScript)->Unit(benchmark::kMillisecond)->UseRealTime();

static void keystrokeInSmallScript(benchmark::State& state) {
    typeInto(state, script(smallScript));
}
BENCHMARK(keystrokeInSmallScript)->Unit(benchmark::kMillisecond)->UseRealTime();

static void keystrokeInLargeScript(benchmark::State& state) {
    typeInto(state, script(benchCharacters()));
    state.SetLabel("at most 4 ms");
}
BENCHMARK(keystrokeInLargeScript)->Unit(benchmark::kMillisecond)->UseRealTime();

static void keystrokeInOneLine(benchmark::State& state) {
    typeInto(state, script(benchCharacters()).replace(u"\r\n"_s, u" "_s));
    state.SetLabel("at most 100 ms");
}
BENCHMARK(keystrokeInOneLine)->Unit(benchmark::kMillisecond)->UseRealTime();

static void enterInLargeScript(benchmark::State& state) {
    RecordingHost host;
    SqlEditor box(host);
    box.setText(script(benchCharacters()));
    box.setSelStart(int(benchCharacters() / 2));
    showNow(box);
    for (auto _ : state) {
        QTest::keyClick(&box, Qt::Key_Return);
        box.repaint();
    }
}
BENCHMARK(enterInLargeScript)->Unit(benchmark::kMillisecond)->UseRealTime();

static void openScript(benchmark::State& state) {
    const QString text = script(benchCharacters());
    RecordingHost host;
    SqlEditor box(host);
    showNow(box);
    for (auto _ : state) {
        box.setText(text);
        box.repaint();
    }
}
BENCHMARK(openScript)->Unit(benchmark::kMillisecond)->UseRealTime();

static void activateWindow(benchmark::State& state) {
    RecordingHost host;
    SqlEditor box(host);
    box.setText(script(benchCharacters()));
    showNow(box);
    for (auto _ : state) {
        box.txtSQL_Change();
        box.repaint();
    }
}
BENCHMARK(activateWindow)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios(limits, benchCharacters() == judgedCharacters);
    return 0;
}
