#include "FlexGrid.h"
#include "RichTextBox.h"
#include "RtfReader.h"
#include "TextView.h"
#include "Twips.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFile>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

// Showing results and scripts of any size. Each figure that has a limit names it beside itself.

namespace {

constexpr int limitMs = 50;
constexpr double gridLimitMB = 15;
constexpr double textLimitTimes = 1.1;
constexpr qsizetype textBytesPerRow = 70; // 70 MB in a full run

qint64 benchRows() {
    bool given = false;
    const qint64 rows = qEnvironmentVariable("QUILLMATE_BENCH_ROWS").toLongLong(&given);
    return given && rows > 0 ? rows : 1'000'000;
}

// Resident memory now, or 0 where the system does not tell.
double residentBytes() {
    QFile statm(u"/proc/self/statm"_s);
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    constexpr double page = 4096;
    return statm.readAll().split(' ').value(1).toDouble() * page;
}

std::string atMost(const QString& limits) {
    return QString(u"at most "_s + limits).toStdString();
}

CellStore numberedRows(qsizetype rows, int columns) {
    CellStore store(columns);
    for (qsizetype row = 0; row < rows; ++row) {
        const QByteArray text = QByteArray::number(row * 7919 % 100'003);
        for (int column = 0; column < columns; ++column)
            store.append(text.constData(), text.size());
        store.endRow();
    }
    return store;
}

void load(FlexGrid& grid, CellStore rows) {
    GridData& data = grid.data();
    data.setRedraw(false);
    data.setCols(rows.columns() + 1);
    for (int col = 1; col < data.Cols(); ++col)
        data.setText(0, col, u"COLUMN_%1"_s.arg(col));
    data.adoptRows(std::move(rows));
    data.setRedraw(true);
}

void showNow(QWidget& widget) {
    widget.resize(1200, 800);
    widget.show();
    QApplication::processEvents();
    widget.repaint();
}

QByteArray csvText(qsizetype bytes) {
    QByteArray text;
    text.reserve(bytes + 200);
    for (qsizetype row = 0; text.size() < bytes; ++row) {
        text += QByteArray::number(row);
        text += ",customer 4711,2026-11-21 14:05:09,remark on this row,Zoë,0.5,shipped\r\n";
    }
    text.squeeze();
    return text;
}

QString script(qsizetype characters, int changedLine = -1) {
    QString rtf = u"{\\rtf1\\ansi{\\colortbl;\\red128\\green128\\blue128;\\red0\\green0\\blue255;}"
                  "{\\cf0 "_s;
    for (int line = 0; rtf.size() < characters; ++line)
        rtf += (line == changedLine ? u"changed "_s : QString()) +
               u"{\\cf2 SELECT }name, amount {\\cf2 FROM }orders {\\cf2 WHERE }id {\\cf1 >} 100;"
               "\\par\n"_s;
    return rtf + u"}}"_s;
}

} // namespace

static void gridShow(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        CellStore rows = numberedRows(10 * benchRows(), 2);
        const double before = residentBytes();
        state.ResumeTiming();
        auto grid = std::make_unique<FlexGrid>();
        load(*grid, std::move(rows));
        showNow(*grid);
        state.PauseTiming();
        grid->setTopRow(grid->data().Rows());
        grid->repaint();
        state.counters["MB beyond data"] = (residentBytes() - before) / 1e6;
        grid.reset();
        state.ResumeTiming();
    }
    state.SetLabel(atMost(u"%1 ms, %2 MB"_s.arg(limitMs).arg(gridLimitMB)));
}
BENCHMARK(gridShow)->Iterations(3)->Unit(benchmark::kMillisecond);

static void gridJumpToEnd(benchmark::State& state) {
    FlexGrid grid;
    load(grid, numberedRows(10 * benchRows(), 2));
    showNow(grid);
    for (auto _ : state) {
        QTest::keyClick(&grid, Qt::Key_End, Qt::ControlModifier);
        grid.repaint();
        state.PauseTiming();
        if (grid.Row() != grid.data().Rows() - 1)
            state.SkipWithError("not at the end");
        grid.select(1, 1, 1, 1);
        grid.showCell(1, 1);
        state.ResumeTiming();
    }
    state.SetLabel(atMost(u"%1 ms"_s.arg(limitMs)));
}
BENCHMARK(gridJumpToEnd)->Unit(benchmark::kMillisecond);

static void gridRepaint20Columns(benchmark::State& state) {
    FlexGrid grid;
    load(grid, numberedRows(1000, 20));
    showNow(grid);
    for (auto _ : state)
        grid.repaint();
}
BENCHMARK(gridRepaint20Columns)->Unit(benchmark::kMillisecond);

static void sizeColumns(benchmark::State& state) {
    FlexGrid grid;
    load(grid, numberedRows(benchRows(), 20));
    for (auto _ : state) {
        for (int col = 0; col < grid.data().Cols(); ++col) {
            const QString text = QString::fromUtf8(grid.data().longestText(col));
            grid.data().setColWidth(col, pixelsToTwips(grid.fontMetrics().horizontalAdvance(text)));
        }
    }
}
BENCHMARK(sizeColumns)->Unit(benchmark::kMillisecond);

static void copyColumn(benchmark::State& state) {
    FlexGrid grid;
    load(grid, numberedRows(benchRows(), 20));
    grid.select(1, 20, grid.data().Rows() - 1, 20);
    for (auto _ : state)
        benchmark::DoNotOptimize(grid.copyText());
}
BENCHMARK(copyColumn)->Unit(benchmark::kMillisecond);

static void textShow(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        const double before = residentBytes();
        QByteArray text = csvText(textBytesPerRow * benchRows());
        const auto bytes = double(text.size());
        auto view = std::make_unique<TextView>();
        state.ResumeTiming();
        view->setText(std::move(text));
        showNow(*view);
        state.PauseTiming();
        view->scrollToEnd();
        view->repaint();
        state.counters["times its bytes"] = (residentBytes() - before) / bytes;
        view.reset();
        state.ResumeTiming();
    }
    state.SetLabel(atMost(u"%1 ms, %2 times"_s.arg(limitMs).arg(textLimitTimes)));
}
BENCHMARK(textShow)->Iterations(3)->Unit(benchmark::kMillisecond);

static void textOneLineShow(benchmark::State& state) {
    const QByteArray line(10 * benchRows(), 'x');
    TextView view;
    showNow(view);
    for (auto _ : state) {
        view.setText(line);
        view.scrollToEnd();
        view.repaint();
    }
}
BENCHMARK(textOneLineShow)->Unit(benchmark::kMillisecond);

static void rtfRead(benchmark::State& state) {
    const QString rtf = script(benchRows());
    for (auto _ : state)
        benchmark::DoNotOptimize(RtfReader::read(rtf));
}
BENCHMARK(rtfRead)->Unit(benchmark::kMillisecond);

static void rtfSet(benchmark::State& state) {
    const QString rtf = script(benchRows());
    RichTextBox box;
    showNow(box);
    for (auto _ : state) {
        state.PauseTiming();
        box.setText(QString());
        state.ResumeTiming();
        box.setTextRTF(rtf);
        box.repaint();
    }
}
BENCHMARK(rtfSet)->Unit(benchmark::kMillisecond);

static void rtfSetOneLineChanged(benchmark::State& state) {
    const QString texts[] = {script(benchRows()), script(benchRows(), 3)};
    RichTextBox box;
    box.setTextRTF(texts[0]);
    showNow(box);
    for (int turn = 1; auto _ : state) {
        box.setTextRTF(texts[turn]);
        box.repaint();
        turn = 1 - turn;
    }
}
BENCHMARK(rtfSetOneLineChanged)->Unit(benchmark::kMillisecond);

// One typed character, its line coloured anew, painted.
static void keystroke(benchmark::State& state) {
    RichTextBox box;
    box.setTextRTF(script(state.range(0)));
    showNow(box);
    box.setFocus();
    for (auto _ : state) {
        QTest::keyClick(&box, Qt::Key_X);
        const QTextBlock line = box.textCursor().block();
        box.setRuns(line, {{0, line.length() / 2, 0xff0000ff}});
        box.repaint();
    }
    if (box.Text().count(u'x') < int(state.iterations()))
        state.SkipWithError("not typed");
}
BENCHMARK(keystroke)->Arg(10'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

static void keystrokeInOneLine(benchmark::State& state) {
    RichTextBox box;
    box.setText(QString(state.range(0), u'a'));
    showNow(box);
    for (auto _ : state) {
        QTest::keyClick(&box, Qt::Key_X);
        box.repaint();
    }
}
BENCHMARK(keystrokeInOneLine)->Arg(10'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
