#include "FlexGrid.h"
#include "GridRows.h"
#include "ShownText.h"
#include "TextWidth.h"
#include "Twips.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

void fill(FlexGrid& grid, CellStore rows) {
    GridData& data = grid.data();
    data.setRedraw(false);
    data.setCols(rows.columns() + 1);
    for (int col = 1; col < data.Cols(); ++col) {
        data.setText(0, col, u"C%1"_s.arg(col));
        data.setColWidth(col, pixelsToTwips(100));
    }
    data.setColWidth(0, pixelsToTwips(60));
    data.adoptRows(std::move(rows));
    data.setRedraw(true);
}

void show(FlexGrid& grid) {
    grid.resize(400, 200);
    grid.show();
    QVERIFY(QTest::qWaitForWindowActive(&grid));
    grid.setFocus();
}

QString selection(const FlexGrid& grid) {
    return u"%1,%2 to %3,%4"_s.arg(grid.Row())
        .arg(grid.Col())
        .arg(grid.RowSel())
        .arg(grid.ColSel());
}

QPoint middle(const FlexGrid& grid, qsizetype row, int col) {
    return grid.cellRect(row, col).center();
}

void click(FlexGrid& grid, qsizetype row, int col, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, modifiers, middle(grid, row, col));
}

} // namespace

class tst_FlexGrid : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void keys_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QString>("expected");
        const Qt::KeyboardModifiers none;
        const Qt::KeyboardModifiers shift = Qt::ShiftModifier;
        const Qt::KeyboardModifiers control = Qt::ControlModifier;
        // from 50,3 of 100 rows by 6 columns
        QTest::newRow("Left") << int(Qt::Key_Left) << none << u"50,2 to 50,2"_s;
        QTest::newRow("Down") << int(Qt::Key_Down) << none << u"51,3 to 51,3"_s;
        QTest::newRow("Shift+Up") << int(Qt::Key_Up) << shift << u"50,3 to 49,3"_s;
        QTest::newRow("Ctrl+Right") << int(Qt::Key_Right) << control << u"50,6 to 50,6"_s;
        QTest::newRow("Home") << int(Qt::Key_Home) << none << u"50,1 to 50,1"_s;
        QTest::newRow("Shift+End") << int(Qt::Key_End) << shift << u"50,3 to 50,6"_s;
        QTest::newRow("Ctrl+Home") << int(Qt::Key_Home) << control << u"1,1 to 1,1"_s;
        QTest::newRow("Ctrl+Shift+End")
            << int(Qt::Key_End) << (shift | control) << u"50,3 to 100,6"_s;
        QTest::newRow("Shift+Space") << int(Qt::Key_Space) << shift << u"50,1 to 50,6"_s;
        QTest::newRow("Ctrl+Space") << int(Qt::Key_Space) << control << u"1,3 to 100,3"_s;
        QTest::newRow("Ctrl+A") << int(Qt::Key_A) << control << u"1,1 to 100,6"_s;
    }
    void keys() {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        FlexGrid grid;
        fill(grid, numberedRows(100, 6));
        show(grid);
        grid.select(50, 3, 50, 3);
        QTest::keyClick(&grid, Qt::Key(key), modifiers);
        QTEST(selection(grid), "expected");
    }

    void theCurrentCellStaysInView() {
        FlexGrid grid;
        fill(grid, numberedRows(1000, 30));
        show(grid);
        const QRect cells = grid.viewport()->rect().adjusted(60, grid.rowHeight(), 0, 0);
        QCOMPARE(selection(grid), u"1,1 to 1,1"_s);
        for (int i = 0; i < 40; ++i) {
            QTest::keyClick(&grid, Qt::Key_PageDown);
            QTest::keyClick(&grid, Qt::Key_Right);
            QVERIFY(cells.contains(grid.cellRect(grid.Row(), grid.Col())));
        }
        QCOMPARE(grid.Col(), 30);
        QCOMPARE(grid.Row(), 1 + 40 * grid.visibleRows());
        QTest::keyClick(&grid, Qt::Key_Home, Qt::ControlModifier);
        QVERIFY(cells.contains(grid.cellRect(1, 1)));
        QCOMPARE(horizontalScroll(grid), 0);
    }

    void mouseSelects() {
        FlexGrid grid;
        fill(grid, numberedRows(100, 3));
        show(grid);
        click(grid, 2, 1);
        QCOMPARE(selection(grid), u"2,1 to 2,1"_s);
        click(grid, 4, 3, Qt::ShiftModifier);
        QCOMPARE(selection(grid), u"2,1 to 4,3"_s);
        click(grid, 0, 2);
        QCOMPARE(selection(grid), u"1,2 to 100,2"_s);
        click(grid, 3, 0);
        QCOMPARE(selection(grid), u"3,1 to 3,3"_s);
        click(grid, 0, 0);
        QCOMPARE(selection(grid), u"1,1 to 100,3"_s);

        QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, middle(grid, 5, 2));
        QTest::mouseMove(grid.viewport(), middle(grid, 3, 3));
        QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, middle(grid, 3, 3));
        QCOMPARE(selection(grid), u"5,2 to 3,3"_s);
        QCOMPARE(grid.Copy(), u"2\t2\r\n3\t3\r\n4\t4"_s);
    }

    void draggingBeyondTheEdgeScrolls() {
        FlexGrid grid;
        fill(grid, numberedRows(100, 3));
        show(grid);
        QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, middle(grid, 2, 1));
        QTest::mouseMove(grid.viewport(), QPoint(80, grid.viewport()->height() + 30));
        QTRY_VERIFY(grid.TopRow() > 1);
        QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, QPoint(80, 100));
        QCOMPARE(grid.Row(), 2);
        QVERIFY(grid.RowSel() > grid.visibleRows());
    }

    void columnsAreResizedAtTheirEdges() {
        FlexGrid grid;
        fill(grid, numberedRows(10, 3));
        grid.data().setText(0, 2, u"a header that is long"_s);
        show(grid);
        const QPoint edge(grid.cellRect(0, 1).right(), grid.rowHeight() / 2);
        QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, edge);
        QTest::mouseMove(grid.viewport(), edge + QPoint(40, 0));
        QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, edge + QPoint(40, 0));
        QVERIFY(qAbs(grid.cellRect(0, 1).width() - 140) <= 1);
        QCOMPARE(selection(grid), u"1,1 to 1,1"_s);
        const QPoint second(grid.cellRect(0, 2).right(), grid.rowHeight() / 2);
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, second);
        QCOMPARE(grid.data().ColWidth(2),
                 textWidthTwips(grid.fontMetrics(), u"a header that is long"_s) + 400);
    }

    void copy() {
        FlexGrid grid;
        fill(grid, gridRows({{"1", "a\tb", "äö"}, {QByteArray(), "\0x"_ba, "two\r\nlines"}}));
        show(grid);
        QCOMPARE(grid.Copy(), u"1"_s);
        grid.select(2, 3, 1, 2);
        const QString cells = u"a\tb\täö\r\n\0x\ttwo\r\nlines"_s;
        QCOMPARE(grid.Copy(), cells);
        QCOMPARE(grid.copyText(true), u"C2\tC3\r\n"_s + cells);
        QCOMPARE(grid.Cut(), cells);
        grid.Paste(u"x"_s);
        QCOMPARE(grid.Copy(), cells);

        grid.select(1, 1, 2, 1);
        QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"1\n"_s);
    }

    void nothingToSelect() {
        FlexGrid grid;
        show(grid);
        for (int columns : {0, 3}) {
            grid.data().setCols(columns + 1);
            grid.SelectAll();
            for (Qt::Key key : {Qt::Key_Down, Qt::Key_End, Qt::Key_PageUp, Qt::Key_C})
                QTest::keyClick(&grid, key, Qt::ControlModifier);
            QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, QPoint(70, 5));
            QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, QPoint(70, 100));
            QCOMPARE(grid.Row(), 0);
            QCOMPARE(grid.Copy(), u""_s);
        }
    }

    void aNewResultIsShownFromItsFirstCell() {
        FlexGrid grid;
        fill(grid, numberedRows(1000, 30));
        show(grid);
        QTest::keyClick(&grid, Qt::Key_End, Qt::ControlModifier);
        QVERIFY(grid.TopRow() > 900);
        grid.data().adoptRows(numberedRows(1000, 30));
        QCoreApplication::processEvents();
        QCOMPARE(grid.TopRow(), 1);
        QCOMPARE(horizontalScroll(grid), 0);
        QCOMPARE(selection(grid), u"1,1 to 1,1"_s);

        grid.select(900, 3, 990, 20);
        grid.data().clear(); // everything that was selected is gone, before any repaint
        QCOMPARE(grid.Copy(), u""_s);
        grid.repaint();
        QCoreApplication::processEvents();
        QCOMPARE(verticalMaximum(grid), 0);
    }

    void tenMillionRows() {
        FlexGrid grid;
        fill(grid, numberedRows(10'000'000, 1));
        show(grid);
        QTest::keyClick(&grid, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(grid.Copy(), u"9999999"_s);
        QCOMPARE(grid.TopRow() + grid.visibleRows() - 1, qsizetype(10'000'000));
        QVERIFY(grid.viewport()->rect().contains(grid.cellRect(10'000'000, 1)));
        QVERIFY(grid.cellRect(1, 1).isEmpty());
    }

    void twoThousandColumns() {
        FlexGrid grid;
        fill(grid, numberedRows(20, 2000));
        show(grid);
        QTest::keyClick(&grid, Qt::Key_End);
        QCOMPARE(grid.Col(), 2000);
        QVERIFY(grid.viewport()->rect().contains(grid.cellRect(1, 2000)));
        QVERIFY(grid.cellRect(1, 1).isEmpty());
        click(grid, 0, 1999);
        QCOMPARE(selection(grid), u"1,1999 to 20,1999"_s);
    }

    void oddCellsArePainted_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("NUL and line ends") << "a\0b\r\nc\td"_ba;
        QTest::newRow("malformed UTF-8") << "\xff\xc3\xe2\x82"_ba;
        QTest::newRow("right to left") << u"שלום עולם"_s.toUtf8();
        QTest::newRow("10 MB") << QByteArray(10'000'000, 'x');
        QTest::newRow("10 MB of pairs") << QByteArray("😀").repeated(2'500'000);
    }
    void oddCellsArePainted() {
        QFETCH(QByteArray, text);
        FlexGrid grid;
        fill(grid, gridRows({{text}, {""}}));
        show(grid);
        grid.select(2, 1, 2, 1);
        const QImage image = grid.viewport()->grab(grid.cellRect(1, 1)).toImage();
        QSet<QRgb> colours;
        for (int x = 0; x < image.width(); ++x)
            colours.insert(image.pixel(x, image.height() / 2));
        QVERIFY(colours.size() > 2);
        QVERIFY(shownBeginning(text, 20).size() <= 20);
        grid.data().setColWidth(1, 0x7fffffff);
        QTest::keyClick(&grid, Qt::Key_Up);
        grid.repaint();
        QVERIFY(horizontalMaximum(grid) < 100'000);
    }

    void widthOfALongText() {
        const QFontMetrics metrics(QGuiApplication::font());
        const QString text = u"iM "_s.repeated(20'000);
        const int whole = pixelsToTwips(metrics.horizontalAdvance(text));
        QVERIFY(qAbs(textWidthTwips(metrics, text) - whole) < whole / 100);
        QCOMPARE(textWidthTwips(metrics, u"iM "_s),
                 pixelsToTwips(metrics.horizontalAdvance(u"iM "_s)));
        QFont large = QGuiApplication::font();
        large.setPixelSize(500);
        QVERIFY(textWidthTwips(QFontMetrics(large), QString(10'000'000, u'M')) + 400 > 0);
    }

    void whatIsShownOfACell() {
        QCOMPARE(shownBeginning("a\0\tb\r\nc"_ba, 50), u"a\u2400 b \u21b5c"_s);
        QCOMPARE(shownBeginning("a😀b", 2), u"a"_s); // no half of a pair
        QCOMPARE(shownBeginning("äöü", 2), u"äö"_s);
    }

    void contextMenuCopies() {
        FlexGrid grid;
        fill(grid, numberedRows(5, 2));
        show(grid);
        const QPoint at = middle(grid, 3, 2);
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, grid.viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(grid.viewport(), &event);
        auto* menu = grid.findChild<QMenu*>();
        QVERIFY(menu);
        QCOMPARE(selection(grid), u"3,2 to 3,2"_s);
        menu->actions().at(1)->trigger();
        QCOMPARE(QGuiApplication::clipboard()->text(), u"C2\n2"_s);
        menu->close();
    }

private:
    static int horizontalScroll(const FlexGrid& grid) {
        return grid.horizontalScrollBar()->value();
    }
    static int horizontalMaximum(const FlexGrid& grid) {
        return grid.horizontalScrollBar()->maximum();
    }
    static int verticalMaximum(const FlexGrid& grid) { return grid.verticalScrollBar()->maximum(); }
};

QTEST_MAIN(tst_FlexGrid)
#include "tst_flexgrid.moc"
