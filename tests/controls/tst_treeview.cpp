#include "TreeText.h"
#include "TreeView.h"

#include <QAbstractItemModelTester>
#include <QIcon>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

TreeNode& addFolder(TreeNodes& nodes, const QString& text) {
    TreeNode& folder = nodes.add(nullptr, {text, u"red"_s, u"FOLDER"_s, text});
    nodes.add(&folder, {{}, {}, u"DUMMY"_s, {}});
    return folder;
}

void fill(TreeNodes& nodes, TreeNode& folder, int children) {
    nodes.removeChildren(folder);
    const TreeNodes::Filling filling(nodes, folder);
    for (int i = 0; i < children; ++i)
        nodes.add(&folder, {folder.Text() + QString::number(i), {}, u"LEAF"_s, {}});
}

void show(TreeView& view) {
    view.resize(200, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowActive(&view));
}

QPoint placeOf(const TreeView& view, const TreeNode& node) {
    return view.visualRect(view.nodes().indexOf(node)).center();
}

} // namespace

class tst_TreeView : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void openingFillsTheNode() {
        TreeNodes nodes;
        const QAbstractItemModelTester tester(
            &nodes, QAbstractItemModelTester::FailureReportingMode::QtTest);
        TreeNode& folder = addFolder(nodes, u"f"_s);
        TreeView view(nodes);
        connect(&view, &TreeView::Expand, &view, [&](TreeNode* node) { fill(nodes, *node, 2); });
        QSignalSpy expand(&view, &TreeView::Expand);
        show(view);
        view.setSelectedItem(&folder);
        QTest::keyClick(&view, Qt::Key_Right);
        QCOMPARE(treeText(nodes), u"-f\n  f0\n  f1\n"_s);
        QVERIFY(!view.visualRect(nodes.indexOf(folder.child(1))).isEmpty());
        QTest::keyClick(&view, Qt::Key_Left);
        QVERIFY(!folder.Expanded());
        QTest::keyClick(&view, Qt::Key_Asterisk); // filled anew, too
        QCOMPARE(expand.count(), 2);
        QCOMPARE(treeText(nodes), u"-f\n  f0\n  f1\n"_s);
    }

    void aNodeThatIsOpenedByTheProgramIsNotFilled() {
        TreeNodes nodes;
        TreeNode& folder = addFolder(nodes, u"f"_s);
        TreeView view(nodes);
        QSignalSpy expand(&view, &TreeView::Expand);
        nodes.setExpanded(folder, true);
        QVERIFY(view.isExpanded(nodes.indexOf(folder)));
        fill(nodes, folder, 0);
        fill(nodes, folder, 3);
        QVERIFY(view.isExpanded(nodes.indexOf(folder)));
        QCOMPARE(expand.count(), 0);
    }

    void theMouseAndItsKeys() {
        TreeNodes nodes;
        TreeNode& folder = addFolder(nodes, u"f"_s);
        nodes.add(nullptr, {u"leaf"_s, {}, {}, {}});
        TreeView view(nodes);
        show(view);
        QSignalSpy doubleClick(&view, &TreeView::DblClick);
        QSignalSpy mouseUp(&view, &TreeView::MouseUp);
        const QPoint emptySpace = view.viewport()->rect().bottomRight() - QPoint(2, 2);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, emptySpace);
        QCOMPARE(doubleClick.count(), 0);
        QCOMPARE(view.SelectedItem(), nullptr);

        const QPoint place = placeOf(view, folder);
        QTest::mouseClick(view.viewport(), Qt::RightButton, {}, place);
        QCOMPARE(view.SelectedItem(), &folder);
        QCOMPARE(mouseUp.takeLast().first().value<Qt::MouseButton>(), Qt::RightButton);
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, place);
        QCOMPARE(doubleClick.count(), 1);
        QVERIFY(folder.Expanded());
        QTest::keyClick(&view, Qt::Key_Return);
        QCOMPARE(doubleClick.count(), 2);
    }

    void typedLettersFindOneOfManyNodes() {
        TreeNodes nodes;
        TreeNode& folder = addFolder(nodes, u"T"_s);
        nodes.setExpanded(folder, true);
        fill(nodes, folder, 100'000);
        TreeView view(nodes);
        nodes.setExpanded(folder, false);
        nodes.setExpanded(folder, true);
        show(view);
        view.setSelectedItem(&folder);
        QTest::keyClicks(&view, u"t99999"_s);
        QCOMPARE(view.SelectedItem()->Text(), u"T99999"_s);
        QVERIFY(view.viewport()->rect().contains(placeOf(view, *view.SelectedItem())));
    }

    void aRefreshKeepsThePlace() {
        TreeNodes nodes;
        TreeNode& folder = addFolder(nodes, u"f"_s);
        fill(nodes, folder, 200);
        TreeView view(nodes);
        nodes.setExpanded(folder, true);
        show(view);
        view.setSelectedItem(&folder.child(150));
        view.scrollTo(nodes.indexOf(folder.child(100)), QTreeView::PositionAtTop);
        view.keepPlace([&] { fill(nodes, folder, 300); });
        QCOMPARE(view.SelectedItem(), &folder.child(150));
        QCOMPARE(view.indexAt({0, 0}), nodes.indexOf(folder.child(100)));
        view.keepPlace([&] { fill(nodes, folder, 50); });
        QCOMPARE(view.SelectedItem(), nullptr);
        view.keepPlace([&] { nodes.clear(); });
    }

    void imagesByTheirKeys() {
        TreeNodes nodes;
        addFolder(nodes, u"f"_s);
        TreeView view(nodes);
        QPixmap red(16, 16);
        red.fill(Qt::red);
        view.setImages(
            [&](const QString& image) { return image == u"red"_s ? QIcon(red) : QIcon(); });
        show(view);
        const QImage image = view.viewport()->grab().toImage();
        int redPixels = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                redPixels += image.pixelColor(x, y) == QColor(Qt::red);
        QVERIFY(redPixels >= 16 * 16);
    }
};

QTEST_MAIN(tst_TreeView)
#include "tst_treeview.moc"
