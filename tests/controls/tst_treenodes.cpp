#include "TreeNodes.h"
#include "TreeText.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_TreeNodes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void nodesComeAndGo() {
        TreeNodes nodes;
        const QAbstractItemModelTester tester(
            &nodes, QAbstractItemModelTester::FailureReportingMode::QtTest);
        TreeNode& a = nodes.add(nullptr, {u"a"_s, u"folder"_s, u"T"_s, u"A"_s});
        TreeNode& b = nodes.add(nullptr, {u"b"_s, {}, {}, {}});
        nodes.add(&b, {u"b1"_s, {}, {}, {}});
        TreeNode& deep =
            nodes.add(&nodes.add(&a, {u"a1"_s, {}, {}, {}}), {u"a11"_s, {}, {}, u"K"_s});
        QCOMPARE(treeText(nodes), u"+a\n  +a1\n    a11\n+b\n  b1\n"_s);
        QCOMPARE(nodes.byKey(u"K"_s), &deep);
        QCOMPARE(nodes.count(), 5);
        QCOMPARE(a.Parent(), nullptr);
        nodes.removeChildren(a);
        QCOMPARE(nodes.byKey(u"K"_s), nullptr);
        QCOMPARE(treeText(nodes), u"a\n+b\n  b1\n"_s);
        QCOMPARE(nodes.count(), 3);
        nodes.clear();
        QVERIFY(nodes.isEmpty() && !nodes.hasKey(u"A"_s));
    }

    void aKeyIsGivenOnce() {
        TreeNodes nodes;
        TreeNode& first = nodes.add(nullptr, {u"a"_s, {}, {}, u"K"_s});
        TreeNode& second = nodes.add(nullptr, {u"b"_s, {}, {}, {}});
        nodes.add(nullptr, {u"c"_s, {}, {}, {}}); // no key is no key twice
        QVERIFY_THROWS_EXCEPTION(Error, nodes.add(nullptr, {u"d"_s, {}, {}, u"K"_s}));
        QVERIFY_THROWS_EXCEPTION(Error, nodes.setKey(second, u"K"_s));
        nodes.setKey(first, u"L"_s);
        nodes.setKey(second, u"K"_s);
        QCOMPARE(nodes.byKey(u"K"_s), &second);
        QCOMPARE(nodes.count(), 3);
    }

    void aFillingIsShownAtOnce() {
        TreeNodes nodes;
        const QAbstractItemModelTester tester(
            &nodes, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy inserted(&nodes, &QAbstractItemModel::rowsInserted);
        TreeNode& folder = nodes.add(nullptr, {u"folder"_s, {}, {}, {}});
        nodes.add(&folder, {u"seen"_s, {}, {}, {}});
        inserted.clear();
        {
            const TreeNodes::Filling filling(nodes, folder);
            for (int i = 0; i < 3; ++i)
                nodes.add(&nodes.add(&folder, {QString::number(i), {}, {}, {}}),
                          {u"x"_s, {}, {}, {}});
            nodes.removeChildren(folder.child(2));
            nodes.add(&folder.child(0), {u"elsewhere"_s, {}, {}, {}});
            QCOMPARE(treeText(nodes), u"+folder\n  +seen\n    elsewhere\n"_s);
        }
        QCOMPARE(inserted.count(), 2);
        QCOMPARE(treeText(nodes),
                 u"+folder\n  +seen\n    elsewhere\n  +0\n    x\n  1\n  +2\n    x\n"_s);
    }

    void openedNodesInTheOrderOfTheirAdding() {
        TreeNodes nodes;
        TreeNode& a = nodes.add(nullptr, {u"a"_s, {}, {}, {}});
        TreeNode& b = nodes.add(nullptr, {u"b"_s, {}, {}, {}});
        TreeNode& b1 = nodes.add(&b, {u"b1"_s, {}, {}, {}});
        TreeNode& a1 = nodes.add(&a, {u"a1"_s, {}, {}, {}});
        for (TreeNode* node : {&a1, &b1, &a})
            nodes.setExpanded(*node, true);
        QCOMPARE(nodes.expandedNodes(), (std::vector<TreeNode*>{&a, &b1, &a1}));
    }

    void pathsTellNodesOfOneTextByTheirTag() {
        TreeNodes nodes;
        TreeNode& folder = nodes.add(nullptr, {u"f"_s, {}, {}, {}});
        nodes.add(&folder, {u"same"_s, {}, u"one"_s, {}});
        TreeNode& two = nodes.add(&folder, {u"same"_s, {}, u"two"_s, {}});
        NodePath path = TreeNodes::pathOf(two);
        QCOMPARE(nodes.find(path), &two);
        path.back().second = u"three"_s;
        QCOMPARE(nodes.find(path), nullptr);
        QCOMPARE(nodes.find({}), nullptr);
    }
};

QTEST_APPLESS_MAIN(tst_TreeNodes)
#include "tst_treenodes.moc"
