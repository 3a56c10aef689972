#include "Desk.h"
#include "ToolbarTable.h"
#include "WindowArrangement.h"

#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

QString lineOf(const QAction& action) {
    if (action.isSeparator())
        return u"  "_s + action.objectName() + u" ---"_s;
    return u"  %1 \"%2\" %3 %4"_s
        .arg(action.objectName(), action.text(), action.shortcut().toString(),
             action.isEnabled() ? QString() : u"disabled"_s)
        .simplified()
        .prepend(u"  "_s);
}

QString textOf(const QMenu& menu) {
    QStringList lines{u"%1 \"%2\""_s.arg(menu.objectName(), menu.title())};
    for (const QAction* action : menu.actions())
        lines << lineOf(*action);
    return lines.join(u'\n');
}

// What is built now; what is not built yet stands in its place, disabled.
const char* const menus[] = {
    R"(mnuFile "&File"
  mnuFileConnect "&Connect..."
  mnuFileDisconnect "&Disconnect" disabled
  mnuFilesep0 ---
  mnuFileNew "&New" Ctrl+N
  mnuFileOpen "&Open" Ctrl+O
  mnuFileClose "&Close"
  mnuFileBar1 ---
  mnuFileSave "&Save" Ctrl+S
  mnuFileSaveAs "Save &As..."
  mnuFileSaveAll "Save A&ll"
  mnuFileSep3 ---
  mnuFileAddFav "Add to &Favourites..."
  mnuFileBar2 ---
  mnuFilePrint "&Print..." Ctrl+P
  mnuFileBar5 ---
  mnuFileExit "E&xit")",
    R"(mnuEdit "&Edit"
  mnuEditCut "Cu&t"
  mnuEditCopy "&Copy"
  mnuEditPaste "&Paste"
  mnuEditBar2 ---
  mnuEditDSelectAll "Select &All" Ctrl+A
  mnuFileEditClearWin "Clear Window" Ctrl+F12)",
    R"(mnuQuery "&Query"
  mnuQueryExecute "&Execute" F5
  mnuQuerySep1 ---
  mnuQueryRGrid "Results in &Grid" Ctrl+G
  mnuQueryRText "Results in &Text" Ctrl+T
  mnuQueryRFile "Results in &File" Ctrl+F
  mnuQuerySep2 ---
  mnuQueryGenerateCode "Generate &Code..." Ctrl+Shift+G)",
    R"(mnuView "&View"
  mnuViewRefresh "&Refresh"
  mnuViewOptions "&Options...")",
    R"(mnuWindow "&Window"
  mnuWindowNewWindow "&New Window"
  mnuWindowCascade "&Cascade"
  mnuWindowTileHorizontal "Tile &Horizontal"
  mnuWindowTileVertical "Tile &Vertical")",
    R"(mnuHelp "&Help"
  mnuHelpContents "&Contents"
  mnuHelpSearch "&Search For Help On..."
  mnuHelpBar1 ---
  mnuHelpAbout "&About...")",
};

} // namespace

class tst_command_bars : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void menusStandInOrder();
    void toolbarStandsInOrder();
    void toolbarUndoDoesNothing();
    void browserButtonShowsAndHidesThePanel();
    void splitterKeepsItsLeastPlace_data();
    void splitterKeepsItsLeastPlace();
    void tiledRectsFillTheArea();
    void cascadeBeginsAnewAtTheEdge();
};

void tst_command_bars::menusStandInOrder() {
    Desk desk;
    const QList<QAction*> bar = desk.window.menuBar()->actions();
    QCOMPARE(bar.size(), qsizetype(std::size(menus)));
    for (qsizetype i = 0; i < bar.size(); ++i)
        QCOMPARE(textOf(*bar[i]->menu()), QString::fromUtf8(menus[i]));
    QVERIFY(desk.entry("mnuPopup1Open")->isEnabled());
    QVERIFY(desk.entry("mnuPopup2OpenQuery")->isEnabled());
}

void tst_command_bars::toolbarStandsInOrder() {
    Desk desk;
    QStringList buttons;
    for (QToolButton* button : desk.window.findChildren<QToolButton*>(
             QRegularExpression(u"^Toolbar_"_s), Qt::FindChildrenRecursively))
        buttons << button->objectName().mid(8) + u": "_s + button->toolTip();
    QCOMPARE(buttons.join(u'\n'), u"new: New Query\nopen: Open Query\nsave: Save Query\n"
                                  "run: Execute Query (F5)\ncut: Cut (Ctrl+X)\n"
                                  "copy: Copy (Ctrl+C)\npaste: Paste (Ctrl+V)\n"
                                  "clear: Clear Window\nundo: Undo\nbrowser: Object Browser"_s);
    auto* dropDown = desk.window.findChild<QToolButton*>(u"Toolbar_new"_s)->menu();
    QCOMPARE(dropDown->actions().size(), 1);
    desk.start();
    dropDown->actions().constFirst()->trigger();
    QCOMPARE(desk.captions(), QStringList(u"1 Query - Untitled"_s));
}

void tst_command_bars::toolbarUndoDoesNothing() {
    Desk desk;
    desk.start();
    frmQuery* query = desk.window.New_Query();
    query->txtSQL->setSelText(u"typed"_s);
    QTest::mouseClick(desk.window.findChild<QToolButton*>(u"Toolbar_undo"_s), Qt::LeftButton);
    QCOMPARE(query->txtSQL->Text(), u"\r\ntyped"_s);
    desk.window.Undo();
    QCOMPARE(query->txtSQL->Text(), u"\r\n"_s);
}

void tst_command_bars::browserButtonShowsAndHidesThePanel() {
    Desk desk;
    desk.start();
    auto* panel = desk.window.findChild<QWidget*>(u"picLeft"_s);
    auto* bar = desk.window.findChild<QWidget*>(u"picVBar"_s);
    auto* button = desk.window.findChild<QToolButton*>(u"Toolbar_browser"_s);
    QVERIFY(button->isChecked());
    QCOMPARE(panel->width(), 3660 / 15);
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(!panel->isVisible() && !bar->isVisible());
    QCOMPARE(desk.area()->width(), desk.window.width());
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(panel->isVisible() && bar->isVisible());
    QCOMPARE(bar->x(), 3660 / 15);
}

void tst_command_bars::splitterKeepsItsLeastPlace_data() {
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("expected");
    QTest::newRow("to the right") << 300 << 300;
    QTest::newRow("just above the limit") << 130 << 130;
    QTest::newRow("1935 twips are already too few") << 129 << 244;
    QTest::newRow("out of the window") << -50 << 244;
    QTest::newRow("over the query windows") << 5000 << 244;
}

void tst_command_bars::splitterKeepsItsLeastPlace() {
    QFETCH(const int, to);
    QFETCH(const int, expected);
    Desk desk;
    desk.start();
    auto* bar = desk.window.findChild<QWidget*>(u"picVBar"_s);
    const QPoint grip(2, 40);
    QTest::mouseMove(bar, grip + QPoint(30, 0)); // not pressed: nothing moves
    QTest::mousePress(bar, Qt::LeftButton, {}, grip);
    QTest::mouseMove(bar, grip + QPoint(to - bar->x(), 0));
    QTest::mouseRelease(bar, Qt::LeftButton, {}, grip);
    QCOMPARE(bar->x(), expected);
    QCOMPARE(desk.window.findChild<QWidget*>(u"picLeft"_s)->width(), expected);
}

void tst_command_bars::tiledRectsFillTheArea() {
    const QSize area(1001, 700);
    for (int count = 1; count < 8; ++count) {
        qint64 covered = 0;
        QRect all;
        for (const QRect& rect : verticallyTiledRects(area, count)) {
            covered += qint64(rect.width()) * rect.height();
            QVERIFY(!all.intersects(rect));
            QCOMPARE(rect.height(), area.height());
            all |= rect;
        }
        QCOMPARE(all, QRect({}, area));
        QCOMPARE(covered, qint64(area.width()) * area.height());
    }
    const std::vector<QRect> rows = horizontallyTiledRects(area, 3);
    QCOMPARE(rows[0].width(), area.width());
    QCOMPARE(rows[2].bottom(), area.height() - 1);
}

void tst_command_bars::cascadeBeginsAnewAtTheEdge() {
    const QSize area(800, 600);
    for (const QRect& rect : cascadedRects(area, 40, 24))
        QVERIFY(QRect({}, area).contains(rect));
    const std::vector<QRect> rects = cascadedRects(area, 2, 24);
    QCOMPARE(rects[1].topLeft() - rects[0].topLeft(), QPoint(24, 24));
}

QTEST_MAIN(tst_command_bars)
#include "tst_command_bars.moc"
