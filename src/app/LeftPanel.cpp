#include "LeftPanel.h"

#include "FormParts.h"
#include "Images.h"
#include "TreeView.h"
#include "Twips.h"

#include <QProxyStyle>
#include <QTabBar>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int treeLeft = 40; // twips
constexpr int treeTop = 360;

// Narrow tabs, so that all three are seen in a panel of the start width.
class NarrowTabs : public QProxyStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override {
        constexpr int blank = 7;
        return metric == PM_TabBarTabHSpace ? blank
                                            : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

} // namespace

LeftPanel::LeftPanel(QWidget* parent)
    : QWidget(parent)
    , tabLeft(named(new QTabBar(this), u"tabLeft"_s, u"Trees"_s)) {
    named(this, u"picLeft"_s, u"Object browser"_s);
    auto* narrow = new NarrowTabs;
    narrow->setParent(tabLeft);
    tabLeft->setStyle(narrow);
    tabLeft->setDrawBase(false);
    tabLeft->setExpanding(false);
    tabLeft->addTab(u"Schema Objects"_s);
    tabLeft->addTab(u"Dictionary"_s);
    tabLeft->addTab(u"Favorites"_s);
    trvObjects = makeTree(u"trvObjects"_s, u"Schema objects"_s);
    trvDictionary = makeTree(u"trvDictionary"_s, u"Dictionary views"_s);
    trvQueries = makeTree(u"trvQueries"_s, u"Favorite queries"_s);
    showTree(tabLeft->currentIndex());
    connect(tabLeft, &QTabBar::currentChanged, this, [this](int tab) {
        showTree(tab);
        Q_EMIT tabChosen(LeftTab(tab));
    });
    // Comes before the tab changes.
    connect(tabLeft, &QTabBar::tabBarClicked, this, [this](int tab) {
        if (tab == tabLeft->currentIndex())
            Q_EMIT tabChosen(LeftTab(tab));
    });
}

LeftTab LeftPanel::chosenTab() const {
    return LeftTab(tabLeft->currentIndex());
}

TreeView* LeftPanel::shownTree() const {
    return std::array{trvObjects, trvDictionary, trvQueries}[size_t(tabLeft->currentIndex())];
}

TreeView* LeftPanel::makeTree(const QString& name, const QString& accessibleName) {
    auto* nodes = new TreeNodes;
    auto* tree = named(new TreeView(*nodes, this), name, accessibleName);
    nodes->setParent(tree); // so that they go after it
    tree->setImages(treeImages());
    return tree;
}

void LeftPanel::showTree(int tab) {
    const std::array trees{trvObjects, trvDictionary, trvQueries};
    TreeView* const chosen = trees[size_t(tab)];
    const bool hadFocus = std::any_of(trees.begin(), trees.end(),
                                      [](const TreeView* tree) { return tree->hasFocus(); });
    chosen->show();
    if (hadFocus) // hidden, it would go anywhere
        chosen->setFocus();
    for (TreeView* tree : trees)
        tree->setVisible(tree == chosen);
}

void LeftPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const int left = twipsToPixels(treeLeft);
    // A large font's tabs are higher than the place that the trees leave by default.
    const int top = std::max(twipsToPixels(treeTop), tabLeft->sizeHint().height());
    const QRect trees(left, top, width() - left, height() - top - left);
    if (width() > 0)
        tabLeft->setGeometry(left, top - tabLeft->sizeHint().height(), width() - left,
                             tabLeft->sizeHint().height());
    if (trees.width() <= 0 || trees.height() <= 0)
        return;
    for (TreeView* tree : {trvObjects, trvDictionary, trvQueries})
        tree->setGeometry(trees);
}
