#include "GridData.h"
#include "GridRows.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// Rows separated by "/", cells by "|".
QByteArray printed(const GridData& data) {
    QByteArray text;
    for (qsizetype row = 0; row < data.Rows(); ++row) {
        QByteArray line;
        data.visitRow(row, 0, data.Cols() - 1, [&](int col, QByteArrayView cell) {
            if (cell != data.text(row, col))
                line += "<visit differs>";
            line += (col > 0 ? "|" : "") + cell.toByteArray();
        });
        text += (row > 0 ? "/" : "") + line;
    }
    return text;
}

void fill(GridData& data, const QStringList& names, CellStore rows) {
    data.setCols(int(names.size()) + 1);
    for (int i = 0; i < names.size(); ++i)
        data.setText(0, i + 1, names[i]);
    data.adoptRows(std::move(rows));
}

} // namespace

class tst_GridData : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void adoptedRowsLieBelowTheHeader() {
        GridData data;
        QCOMPARE(printed(data), "");
        fill(data, {u"A"_s, u"B"_s}, gridRows({{"1", QByteArray()}, {"", "\0x"_ba}}));
        QCOMPARE(printed(data), "|A|B/1|1|/2||\0x"_ba);

        data.setText(2, 1, u"over"_s);
        data.setText(1, 0, u"*"_s);
        data.setText(3, 1, u"outside"_s);
        QCOMPARE(printed(data), "|A|B/*|1|/2|over|\0x"_ba);
        QCOMPARE(data.text(-1, 0), "");
        QCOMPARE(data.text(0, 3), "");

        data.adoptRows(gridRows({{"x", "y"}}));
        QCOMPARE(printed(data), "|A|B/1|x|y"); // what was written below is gone, the header stays
        data.clear();
        QCOMPARE(printed(data), "");
        QCOMPARE(data.Cols(), 1);
    }

    void whatIsCutOffDoesNotComeBack() {
        GridData data;
        fill(data, {u"A"_s, u"B"_s}, gridRows({{"1", "2"}, {"3", "4444"}}));
        data.setText(2, 1, u"over"_s);
        data.setRows(2);
        data.setRows(4);
        QCOMPARE(printed(data), "|A|B/1|1|2/||/||");
        QCOMPARE(data.longestText(1), "A");
        QCOMPARE(data.longestText(2), "B");
        data.setColWidth(2, 700);
        data.setCols(2);
        data.setCols(3);
        QCOMPARE(printed(data), "|A|/1|1|/||/||");
        QCOMPARE(data.ColWidth(2), -1);
    }

    void noColumnsAtAll() {
        GridData data;
        fill(data, {}, gridRows({{}, {}}));
        QCOMPARE(printed(data), "/1/2");
        QCOMPARE(data.longestText(0), "1");
        QCOMPARE(data.longestText(1), "");
    }

    void longest_data() {
        QTest::addColumn<QString>("header");
        QTest::addColumn<QByteArrayList>("cells");
        QTest::addColumn<QByteArray>("longest");
        QTest::newRow("header wins a tie") << u"abc"_s << QByteArrayList{"xyz"} << "abc"_ba;
        QTest::newRow("first row wins a tie") << u"a"_s << QByteArrayList{"xy", "zz"} << "xy"_ba;
        QTest::newRow("characters count, not bytes")
            << u"a"_s << QByteArrayList{"äöü", "abcd"} << "abcd"_ba;
        QTest::newRow("non-ASCII header against longer bytes")
            << u"äöüß"_s << QByteArrayList{"日本語"} << u"äöüß"_s.toUtf8();
        QTest::newRow("no rows") << u"name"_s << QByteArrayList{} << "name"_ba;
        QTest::newRow("nulls only") << u""_s << QByteArrayList{QByteArray()} << ""_ba;
    }
    void longest() {
        QFETCH(QString, header);
        QFETCH(QByteArrayList, cells);
        GridData data;
        CellStore store(1);
        for (const QByteArray& cell : cells) {
            store.append(cell.constData(), cell.size());
            store.endRow();
        }
        fill(data, {header}, std::move(store));
        QTEST(data.longestText(1), "longest");
    }

    void longestFollowsWhatIsWritten() {
        GridData data;
        fill(data, {u"A"_s}, gridRows({{"1"}, {"22"}, {"4444"}, {"333"}}));
        QCOMPARE(data.longestText(1), "4444");
        data.setText(3, 1, u""_s); // the longest is hidden now
        QCOMPARE(data.longestText(1), "333");
        data.setText(1, 1, u"555"_s); // as long, and before it
        QCOMPARE(data.longestText(1), "555");
        data.setText(0, 1, u"header"_s);
        QCOMPARE(data.longestText(1), "header");
        data.setText(0, 1, u"h"_s);
        QCOMPARE(data.longestText(1), "555");
    }

    void longestRowNumber_data() {
        QTest::addColumn<qsizetype>("rows");
        QTest::addColumn<QByteArray>("longest");
        QTest::newRow("none") << qsizetype(0) << ""_ba;
        QTest::newRow("one digit") << qsizetype(9) << "1"_ba;
        QTest::newRow("just two") << qsizetype(10) << "10"_ba;
        QTest::newRow("three") << qsizetype(250) << "100"_ba;
    }
    void longestRowNumber() {
        QFETCH(qsizetype, rows);
        GridData data;
        fill(data, {u"A"_s}, numberedRows(rows, 1));
        QTEST(data.longestText(0), "longest");
        data.setText(0, 0, u"#"_s);
        data.setText(1, 0, u"one"_s);
        QCOMPARE(data.longestText(0), rows == 0 ? "#" : "one");
    }

    void changesAreToldOnceWhileRedrawIsOff() {
        GridData data;
        int told = 0;
        data.setListener([&told] { ++told; });
        data.setRedraw(false);
        fill(data, {u"A"_s, u"B"_s}, numberedRows(3, 2));
        data.setColWidth(1, 500);
        data.Refresh();
        QCOMPARE(told, 0);
        data.setRedraw(true);
        data.setRedraw(true);
        QCOMPARE(told, 1);
        data.setRows(4);
        data.setColWidth(1, 500); // as it was
        QCOMPARE(told, 1);
    }

    void twoThousandColumns() {
        GridData data;
        QStringList names;
        for (int i = 0; i < 2000; ++i)
            names.append(u"C"_s + QString::number(i));
        fill(data, names, numberedRows(12, 2000));
        QCOMPARE(data.text(11, 2000), "10");
        QCOMPARE(data.longestText(2000), "C1999");
        QByteArray visited;
        data.visitRow(12, 1999, 2000, [&](int, QByteArrayView text) { visited += text; });
        QCOMPARE(visited, "1111");
    }
};

QTEST_APPLESS_MAIN(tst_GridData)
#include "tst_griddata.moc"
