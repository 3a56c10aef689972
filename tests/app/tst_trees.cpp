#include "Desk.h"
#include "FlexGrid.h"
#include "LeftPanel.h"
#include "SqlEditor.h"
#include "TabStrip.h"
#include "TreeText.h"
#include "TreeView.h"

#include <QCheckBox>
#include <QMenu>
#include <QScrollBar>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace {

// The desk of a person who works with the left panel.
struct Browser : Desk {
    TreeView& objects() { return *window.findChild<TreeView*>(u"trvObjects"_s); }
    TreeView& dictionary() { return *window.findChild<TreeView*>(u"trvDictionary"_s); }

    void clickTab(LeftTab tab) {
        auto* tabs = window.findChild<QTabBar*>(u"tabLeft"_s);
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(int(tab)).center());
    }
    TreeNode* node(TreeView& tree, const QStringList& texts) {
        TreeNode* at = nullptr;
        for (const QString& text : texts) {
            TreeNode* found = nullptr;
            const int count = at ? int(at->Children()) : tree.nodes().rowCount();
            for (int i = 0; i < count && !found; ++i) {
                TreeNode* child =
                    at ? &at->child(i) : tree.nodes().nodeAt(tree.nodes().index(i, 0));
                found = child->Text() == text ? child : nullptr;
            }
            if (!found)
                return nullptr;
            at = found;
        }
        return at;
    }
    // By the keyboard, as a person does it.
    void open(TreeView& tree, const QStringList& texts) {
        TreeNode* at = node(tree, texts);
        QVERIFY2(at, qPrintable(texts.join(u'/')));
        tree.setFocus();
        tree.setSelectedItem(at);
        QTest::keyClick(&tree, Qt::Key_Right);
    }
    QPoint placeOf(TreeView& tree, const QStringList& texts) {
        const TreeNode* at = node(tree, texts);
        if (!at)
            return {-1, -1};
        tree.scrollTo(tree.nodes().indexOf(*at));
        return tree.visualRect(tree.nodes().indexOf(*at)).center();
    }
    void doubleClick(TreeView& tree, const QStringList& texts) {
        const QPoint place = placeOf(tree, texts);
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(tree.viewport(), Qt::LeftButton, {}, place);
    }
    QMenu& popup() { return *window.findChild<QMenu*>(u"mnuPopup1"_s); }
    QString childTexts(TreeView& tree, const QStringList& texts) {
        QStringList all;
        const TreeNode* at = node(tree, texts);
        for (qsizetype i = 0; at && i < at->Children(); ++i)
            all << at->child(i).Text();
        return all.join(u", "_s);
    }
    QString rowsOf(const QString& sql) {
        QStringList all;
        for (const auto rows = database.Get_Recordset(sql, 0); !rows->atEof(); rows->MoveNext())
            all << rows->text(rows->fieldName(0));
        return all.join(u", "_s);
    }
};

} // namespace

// The left panel in the real main window, on the sample database.
class tst_trees : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void foldersStandClosedAfterTheConnect();
    void everyFolderShowsWhatTheServerHas();
    void doubleClickOpensAndRuns();
    void popupOpens();
    void onlyTablesAndViewsAreOpened();
    void dictionaryIsReadOnceAConnection();
    void refreshKeepsThePlace();
    void failuresAreReported();
    void aHundredThousandNodesAreFoundByTyping();
    void f6GoesRound();
    void longTextsCanBeScrolledTo();
    void tabKeyReachesTheToolbar();
    void disconnectClears();
    void aFailedConnectClearsToo();

private:
    QTemporaryDir m_home;
};

void tst_trees::initTestCase() {
    QVERIFY(m_home.isValid());
    qputenv("QUILLMATE_HOME", m_home.path().toLocal8Bit());
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void tst_trees::foldersStandClosedAfterTheConnect() {
    Browser desk;
    desk.start();
    QVERIFY(desk.objects().nodes().isEmpty());
    desk.clickTab(LeftTab::Dictionary); // without a connection: loads nothing
    desk.clickTab(LeftTab::Objects);
    desk.expectLogin(u"demo"_s, u"demo"_s, u"DEMO"_s);
    desk.window.perform(UserCommand::Connect);
    QCOMPARE(treeText(desk.objects().nodes()), u"+Tables\n  \n+Views\n  \n+Sessions\n  \n"_s);
    QVERIFY(desk.dictionary().nodes().isEmpty());
    desk.window.activateWindow();
    QTRY_VERIFY(desk.query()->txtSQL->hasFocus());
    QCOMPARE(desk.dialogs.problems(), QStringList());
}

void tst_trees::everyFolderShowsWhatTheServerHas() {
    Browser desk;
    desk.startOnDemo();
    TreeView& tree = desk.objects();
    desk.database.Get_Recordset(u"CREATE TRIGGER set_note BEFORE INSERT ON customers "
                                "FOR EACH ROW BEGIN :NEW.name := :NEW.name; END;"_s,
                                0);
    desk.open(tree, {u"Tables"_s});
    const QString tables = desk.childTexts(tree, {u"Tables"_s});
    QCOMPARE(tables, desk.rowsOf(u"SELECT TABLE_NAME FROM USER_TABLES "
                                 "WHERE TABLE_NAME <> 'PLAN_TABLE'"_s));
    QVERIFY2(tables.contains(u"CUSTOMERS"_s) && !tables.contains(u"PLAN_TABLE"_s),
             qPrintable(tables));
    const QStringList table{u"Tables"_s, u"CUSTOMERS"_s};
    desk.open(tree, table);
    QCOMPARE(desk.childTexts(tree, table), u"Columns, Indexes, Constraints, Triggers"_s);
    const std::pair<QString, QString> folders[] = {
        {u"Indexes"_s, u"SELECT INDEX_NAME FROM USER_INDEXES WHERE TABLE_NAME = 'CUSTOMERS'"_s},
        {u"Constraints"_s,
         u"SELECT CONSTRAINT_NAME FROM USER_CONSTRAINTS WHERE TABLE_NAME = 'CUSTOMERS'"_s},
        {u"Triggers"_s, u"SELECT TRIGGER_NAME FROM USER_TRIGGERS WHERE TABLE_NAME = 'CUSTOMERS'"_s},
        {u"Columns"_s,
         u"SELECT COLUMN_NAME || ' (' || LOWER(DATA_TYPE) || '(' || DATA_LENGTH || '), ' || "
         "DECODE(NULLABLE, 'Y', 'Null', 'Not Null') || ')' "
         "FROM USER_TAB_COLUMNS WHERE TABLE_NAME = 'CUSTOMERS'"_s},
    };
    for (const auto& [folder, sql] : folders) {
        const QStringList path = table + QStringList(folder);
        for (int time = 0; time < 2; ++time) { // opened again it is filled anew, once
            desk.open(tree, path);
            QCOMPARE(desk.childTexts(tree, path), desk.rowsOf(sql));
            QVERIFY2(!desk.childTexts(tree, path).isEmpty(), qPrintable(folder));
            QTest::keyClick(&tree, Qt::Key_Left);
        }
    }
    desk.open(tree, {u"Views"_s});
    QCOMPARE(desk.childTexts(tree, {u"Views"_s}),
             desk.rowsOf(u"SELECT VIEW_NAME FROM USER_VIEWS"_s));
    desk.open(tree, {u"Sessions"_s});
    QVERIFY2(desk.childTexts(tree, {u"Sessions"_s}).startsWith(u"DEMO ("_s),
             qPrintable(desk.childTexts(tree, {u"Sessions"_s})));
    QCOMPARE(desk.dialogs.problems(), QStringList());
    desk.database.Get_Recordset(u"DROP TRIGGER set_note"_s, 0);
}

void tst_trees::doubleClickOpensAndRuns() {
    Browser desk;
    desk.startOnDemo();
    Options().ShowEP = 1;
    desk.open(desk.objects(), {u"Tables"_s});
    desk.doubleClick(desk.objects(), {u"Tables"_s, u"CUSTOMERS"_s});
    QCOMPARE(desk.captions().constLast(), u"Query - Untitled2"_s);
    QCOMPARE(desk.query()->txtSQL->Text(), u"SELECT * FROM CUSTOMERS"_s);
    QVERIFY(!desk.query()->UnSavedChanges() && desk.query()->FileName().isEmpty());
    QVERIFY(desk.query()->txtSQL->hasFocus());
    const qsizetype rows = desk.rowsOf(u"SELECT COUNT(*) FROM CUSTOMERS"_s).toLongLong();
    QCOMPARE(desk.query()->resultGrid().Rows(), rows + 1);
    QVERIFY(desk.query()->planGrid().Rows() > 1);
    auto* statistics = desk.control<QTreeWidget>("lvwStats");
    QVERIFY(statistics->topLevelItemCount() > 0);
    QVERIFY(!statistics->topLevelItem(0)->text(1).isEmpty());
    QCOMPARE(desk.dialogs.problems(), QStringList());
}

void tst_trees::popupOpens() {
    Browser desk;
    desk.startOnDemo();
    TreeView& tree = desk.objects();
    desk.open(tree, {u"Views"_s});
    const TreeNode& folder = *desk.node(tree, {u"Views"_s});
    QVERIFY(folder.Children() > 0);
    const QString view = folder.child(0).Text();
    QTest::mouseClick(tree.viewport(), Qt::RightButton, {}, desk.placeOf(tree, {u"Views"_s, view}));
    QVERIFY(desk.popup().isVisible());
    QTest::keyClick(&desk.popup(), Qt::Key_Down);
    QTest::keyClick(&desk.popup(), Qt::Key_Return);
    QVERIFY(!desk.popup().isVisible());
    QCOMPARE(desk.query()->txtSQL->Text(), u"SELECT * FROM "_s + view);
    QVERIFY(desk.query()->resultGrid().Rows() > 1);

    tree.setFocus(); // and by the menu key
    QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, {}, tree.mapToGlobal(QPoint()));
    QCoreApplication::sendEvent(tree.viewport(), &menuKey);
    QVERIFY(desk.popup().isVisible());
    desk.popup().hide();
    QTest::keyClick(&tree, Qt::Key_Return);
    QCOMPARE(desk.captions().constLast(), u"Query - Untitled3"_s);
}

void tst_trees::onlyTablesAndViewsAreOpened() {
    Browser desk;
    desk.startOnDemo();
    TreeView& tree = desk.objects();
    desk.open(tree, {u"Tables"_s});
    desk.open(tree, {u"Tables"_s, u"CUSTOMERS"_s});
    desk.open(tree, {u"Tables"_s, u"CUSTOMERS"_s, u"Columns"_s});
    const QString column =
        desk.node(tree, {u"Tables"_s, u"CUSTOMERS"_s, u"Columns"_s})->child(0).Text();
    for (const QStringList& path :
         {QStringList{u"Sessions"_s}, {u"Tables"_s, u"CUSTOMERS"_s, u"Columns"_s, column}}) {
        desk.doubleClick(tree, path);
        QTest::mouseClick(tree.viewport(), Qt::RightButton, {}, desk.placeOf(tree, path));
        QVERIFY(!desk.popup().isVisible());
        desk.window.perform(UserCommand::OpenObject);
        QCOMPARE(desk.captions().size(), 1);
    }
    QCOMPARE(desk.dialogs.problems(), QStringList());
}

void tst_trees::dictionaryIsReadOnceAConnection() {
    Browser desk;
    desk.startOnDemo();
    TreeView& tree = desk.dictionary();
    desk.clickTab(LeftTab::Dictionary);
    QVERIFY(tree.isVisible() && !desk.objects().isVisible());
    const QString expected =
        desk.rowsOf(u"SELECT TABLE_NAME FROM DICTIONARY WHERE TABLE_NAME LIKE 'USER%'"_s);
    QCOMPARE(treeText(tree.nodes()).chopped(1).replace(u'\n', u", "_s), expected);
    TreeNode* first = tree.nodes().nodeAt(tree.nodes().index(0, 0));
    desk.clickTab(LeftTab::Objects);
    desk.clickTab(LeftTab::Dictionary);
    desk.window.perform(UserCommand::RefreshTrees);
    QCOMPARE(tree.nodes().nodeAt(tree.nodes().index(0, 0)), first);

    QTest::mouseClick(tree.viewport(), Qt::RightButton, {}, {5, tree.viewport()->height() - 3});
    QVERIFY(desk.popup().isVisible()); // whatever is selected
    desk.popup().hide();
    desk.doubleClick(tree, {u"USER_TABLES"_s});
    QCOMPARE(desk.query()->txtSQL->Text(), u"SELECT * FROM USER_TABLES"_s);
    QVERIFY(desk.query()->resultGrid().Rows() > 1);
}

void tst_trees::refreshKeepsThePlace() {
    Browser desk;
    desk.startOnDemo();
    TreeView& tree = desk.objects();
    desk.open(tree, {u"Tables"_s});
    desk.open(tree, {u"Tables"_s, u"ORDERS"_s});
    desk.open(tree, {u"Tables"_s, u"ORDERS"_s, u"Columns"_s});
    tree.setSelectedItem(desk.node(tree, {u"Tables"_s, u"ORDERS"_s, u"Columns"_s}));
    const QString before = treeText(tree.nodes());
    desk.database.Get_Recordset(u"CREATE TABLE a_new_one (n NUMBER)"_s, 0);
    desk.entry("mnuViewRefresh")->trigger();
    QVERIFY(desk.node(tree, {u"Tables"_s, u"A_NEW_ONE"_s}));
    QVERIFY(desk.node(tree, {u"Tables"_s, u"ORDERS"_s, u"Columns"_s})->Expanded());
    QCOMPARE(tree.SelectedItem(), desk.node(tree, {u"Tables"_s, u"ORDERS"_s, u"Columns"_s}));
    desk.database.Get_Recordset(u"DROP TABLE a_new_one"_s, 0);
    desk.entry("mnuViewRefresh")->trigger();
    QCOMPARE(treeText(tree.nodes()), before);
}

void tst_trees::failuresAreReported() {
    Browser desk;
    desk.startOnDemo();
    TreeView& tree = desk.objects();
    desk.database.Get_Recordset(u"CREATE TABLE \"O'Hara\" (n NUMBER)"_s, 0);
    desk.open(tree, {u"Tables"_s});
    desk.open(tree, {u"Tables"_s, u"O'Hara"_s});
    QString trail;
    desk.dialogs.expect(u"frmError"_s, [&](QDialog& report) {
        trail = report.findChild<QLineEdit*>(u"txtSource"_s)->text();
        report.reject();
    });
    desk.open(tree, {u"Tables"_s, u"O'Hara"_s, u"Columns"_s});
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QVERIFY2(trail.endsWith(u"..modDatabase.Get_Recordset..MDIMain.Load_TableColumns"_s),
             qPrintable(trail));
    QVERIFY(!QApplication::overrideCursor());
    desk.database.Get_Recordset(u"DROP TABLE \"O'Hara\""_s, 0);
}

void tst_trees::aHundredThousandNodesAreFoundByTyping() {
    Browser desk;
    desk.startOnDemo();
    // The user's own table comes before the dictionary's view of that name.
    desk.database.Get_Recordset(u"CREATE TABLE user_views AS SELECT 'V' || LEVEL AS view_name "
                                "FROM dual CONNECT BY LEVEL <= 100000"_s,
                                0);
    TreeView& tree = desk.objects();
    desk.open(tree, {u"Views"_s});
    const TreeNode& folder = *desk.node(tree, {u"Views"_s});
    QCOMPARE(folder.Children(), qsizetype(100'000));
    QTest::keyClicks(&tree, u"v98765"_s);
    QCOMPARE(tree.SelectedItem()->Text(), u"V98765"_s);
    QVERIFY(tree.viewport()->rect().contains(
        tree.visualRect(tree.nodes().indexOf(*tree.SelectedItem())).center()));
    QTest::keyClick(&tree, Qt::Key_End);
    QCOMPARE(tree.SelectedItem()->Text(), u"Sessions"_s);
    QCOMPARE(tree.verticalScrollBar()->value(), tree.verticalScrollBar()->maximum());
    desk.database.Get_Recordset(u"DROP TABLE user_views"_s, 0);
}

void tst_trees::f6GoesRound() {
    Browser desk;
    desk.startOnDemo();
    QWidget* const editor = desk.query()->txtSQL;
    QWidget* const results = desk.control<QWidget>("grdResults");
    QTRY_VERIFY(editor->hasFocus());
    const auto press = [](Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6, modifiers);
        return QApplication::focusWidget();
    };
    QCOMPARE(press({}), results);
    QCOMPARE(press({}), &desk.objects());
    QCOMPARE(press({}), editor);
    QCOMPARE(press(Qt::ShiftModifier), &desk.objects());
    QCOMPARE(press(Qt::ShiftModifier), results);
    desk.control<TabStrip>("TabStrip1")->setFocus(); // belongs to the results
    desk.control<TabStrip>("TabStrip1")->select(u"messages"_s);
    desk.clickTab(LeftTab::Dictionary);
    QCOMPARE(press({}), &desk.dictionary());
    QCOMPARE(press(Qt::ShiftModifier), desk.control<QWidget>("txtMessage"));
    desk.dictionary().setFocus();
    desk.clickTab(LeftTab::Objects); // the focus stays in the panel
    QVERIFY(desk.objects().hasFocus());
    desk.control<QWidget>("txtMessage")->setFocus();
    desk.control<TabStrip>("TabStrip1")->select(u"results"_s); // and in the results
    QVERIFY(results->hasFocus());
    desk.control<TabStrip>("TabStrip1")->select(u"messages"_s);
    desk.window.Show_Browser(false);
    editor->setFocus();
    QCOMPARE(press(Qt::ShiftModifier), desk.control<QWidget>("txtMessage"));
    QCOMPARE(press({}), editor);
}

void tst_trees::longTextsCanBeScrolledTo() {
    Browser desk;
    desk.startOnDemo();
    TreeView& tree = desk.objects();
    QVERIFY(!tree.horizontalScrollBar()->isVisible());
    desk.open(tree, {u"Tables"_s});
    desk.open(tree, {u"Tables"_s, u"CUSTOMERS"_s});
    desk.open(tree, {u"Tables"_s, u"CUSTOMERS"_s, u"Columns"_s});
    QTRY_VERIFY(tree.horizontalScrollBar()->maximum() > 0);
}

void tst_trees::tabKeyReachesTheToolbar() {
    Browser desk;
    desk.startOnDemo();
    desk.objects().setFocus();
    QVERIFY(desk.objects().findChild<QWidget*>(u"focusBorder"_s)); // the focus is seen
    QStringList order;
    for (int i = 0; i < 3; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
        order << QApplication::focusWidget()->objectName();
    }
    QCOMPARE(order, QStringList({u"tabLeft"_s, u"Toolbar_browser"_s, u"Toolbar_undo"_s}));
    QVERIFY(!desk.objects().findChild<QWidget*>(u"focusBorder"_s));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(!desk.objects().isVisible());
}

void tst_trees::disconnectClears() {
    Browser desk;
    desk.startOnDemo();
    desk.open(desk.objects(), {u"Tables"_s});
    desk.clickTab(LeftTab::Dictionary);
    desk.entry("mnuFileDisconnect")->trigger();
    for (const TreeView* tree : desk.window.findChildren<TreeView*>())
        QVERIFY(tree->nodes().isEmpty());
    desk.clickTab(LeftTab::Dictionary); // and the tabs load nothing now
    desk.clickTab(LeftTab::Objects);
    desk.clickTab(LeftTab::Dictionary);
    QVERIFY(desk.dictionary().nodes().isEmpty());

    desk.expectLogin(u"demo"_s, u"demo"_s, u"DEMO"_s);
    desk.entry("mnuFileConnect")->trigger();
    QCOMPARE(treeText(desk.objects().nodes()), u"+Tables\n  \n+Views\n  \n+Sessions\n  \n"_s);
    QVERIFY(!desk.dictionary().nodes().isEmpty()); // its tab is still the chosen one
    QCOMPARE(desk.dialogs.problems(), QStringList());
}

void tst_trees::aFailedConnectClearsToo() {
    Browser desk;
    desk.startOnDemo();
    desk.open(desk.objects(), {u"Tables"_s});
    desk.expectLogin(u"demo"_s, u"wrong"_s, u"DEMO"_s);
    desk.dialogs.expect(u"msgBox"_s, [](QDialog& box) { box.accept(); });
    desk.window.perform(UserCommand::Connect);
    QVERIFY(!desk.window.Connected());
    QVERIFY(desk.objects().nodes().isEmpty());
}

QTEST_MAIN(tst_trees)
#include "tst_trees.moc"
