#include "QueryLayout.h"

#include <QTest>

using QueryLayout::Panels;
using QueryLayout::Rect;

class tst_layout : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void draggedBar_data() {
        QTest::addColumn<int>("candidate");
        QTest::addColumn<int>("inner");
        QTest::addColumn<int>("top");
        QTest::newRow("above the highest") << -50 << 8000 << 1000;
        QTest::newRow("at the highest") << 1000 << 8000 << 1000;
        QTest::newRow("between") << 4321 << 8000 << 4321;
        QTest::newRow("below the lowest") << 6501 << 8000 << 6500;
        QTest::newRow("low form, candidate at the top") << 0 << 2200 << 1000;
        QTest::newRow("low form, candidate below") << 1200 << 2200 << 700;
    }
    void draggedBar() {
        QFETCH(int, candidate);
        QFETCH(int, inner);
        QTEST(QueryLayout::draggedBarTop(candidate, inner), "top");
    }

    void panels() {
        QCOMPARE(QueryLayout::panelsAt(4000, 8000, 500, 77), (Panels{4000, 4100, 3210, 3500}));
        // Lower than dragging may go.
        QCOMPARE(QueryLayout::panelsAt(6900, 8000, 500, 77), (Panels{6900, 7000, 310, 6400}));
        QCOMPARE(QueryLayout::panelsAt(9999, 8000, 500, 77), (Panels{7000, 7100, 210, 6500}));
        QCOMPARE(QueryLayout::panelsAt(-5, 8000, 500, 77), (Panels{1000, 1100, 6210, 500}));
        // The upper limit wins in a form too low for both; there is no room for the result panel.
        QCOMPARE(QueryLayout::panelsAt(4000, 1500, 500, 77), (Panels{1000, 1100, 77, 500}));
    }

    void contents() {
        QCOMPARE(QueryLayout::formHeight(2999), 3000);
        QCOMPARE(QueryLayout::formHeight(3001), 3001);
        QCOMPARE(QueryLayout::editor(5000, 2000), (Rect{0, 0, 4930, 2000}));
        QCOMPARE(QueryLayout::tabStrip(5000, 3000), (Rect{30, 30, 4870, 2880}));
        const Rect views = QueryLayout::resultViews(5000, 3000);
        QCOMPARE(views.left, 45);
        QCOMPARE(views.width, 4820);
        QCOMPARE(views.height, 2500);
        QVERIFY(views.top + views.height < 30 + 2880); // inside the tab strip
        QCOMPARE(QueryLayout::resultViews(100, 100).height, 0);
    }
};

QTEST_GUILESS_MAIN(tst_layout)
#include "tst_layout.moc"
