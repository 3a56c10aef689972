#include "ResultPanel.h"

#include "FlexGrid.h"
#include "FormParts.h"
#include "QueryLayout.h"
#include "TabStrip.h"
#include "TextView.h"
#include "Twips.h"

#include <QHeaderView>
#include <QTreeWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString resultsKey = u"results"_s;
const QString messagesKey = u"messages"_s;
const QString statisticsKey = u"statistics"_s;
const QString planKey = u"ep"_s;

TabStrip* makeTabStrip() {
    auto* strip = named(new TabStrip({{resultsKey, u"Results"_s},
                                      {messagesKey, u"Messages"_s},
                                      {statisticsKey, u"Statistics"_s},
                                      {planKey, u"Execution Plan"_s}}),
                        u"TabStrip1"_s, u"Result views"_s);
    strip->add(messagesKey);
    strip->add(statisticsKey);
    return strip;
}

QTreeWidget* makeStatisticsList() {
    auto* list = named(new QTreeWidget, u"lvwStats"_s, u"Statistics"_s);
    list->setHeaderLabels({u"Statistic"_s, u"Value"_s});
    list->setRootIsDecorated(false);
    constexpr int labelWidth = 200;
    list->header()->resizeSection(0, labelWidth);
    return list;
}

} // namespace

ResultPanel::ResultPanel()
    : TabStrip1(makeTabStrip())
    , grdResults(named(new FlexGrid, u"grdResults"_s, u"Result grid"_s))
    , txtResults(named(new TextView, u"txtResults"_s, u"Result text"_s))
    , txtMessage(named(new TextView, u"txtMessage"_s, u"Messages"_s))
    , lvwStats(makeStatisticsList())
    , grdEP(named(new FlexGrid, u"grdEP"_s, u"Execution plan"_s)) {
    named(this, u"picPanelBottomRight"_s, u"Results"_s);
    TabStrip1->setParent(this);
    for (QWidget* view : views())
        view->setParent(this); // above the strip, which reaches under them
    showSelectedView();
    connect(TabStrip1, &QTabBar::currentChanged, this, &ResultPanel::tabClicked);
}

QWidget* ResultPanel::viewOf(const QString& key) const {
    if (key == resultsKey)
        return m_gridInResults ? static_cast<QWidget*>(grdResults) : txtResults;
    if (key == messagesKey)
        return txtMessage;
    return key == statisticsKey ? static_cast<QWidget*>(lvwStats) : grdEP;
}

std::array<QWidget*, 5> ResultPanel::views() const {
    return {grdResults, txtResults, txtMessage, lvwStats, grdEP};
}

QWidget* ResultPanel::selectedView() const {
    return viewOf(TabStrip1->selectedKey());
}

void ResultPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const auto inPixels = [](const QueryLayout::Rect& rect) {
        return QRect(twipsToPixels(rect.left), twipsToPixels(rect.top), twipsToPixels(rect.width),
                     twipsToPixels(rect.height));
    };
    const int width = pixelsToTwips(this->width());
    const int height = pixelsToTwips(this->height());
    TabStrip1->setGeometry(inPixels(QueryLayout::tabStrip(width, height)));
    QRect place = inPixels(QueryLayout::resultViews(width, height));
    // A large font's tabs are higher than the place that the views leave by default.
    place.setTop(std::max(place.top(), TabStrip1->y() + TabStrip1->tabHeight()));
    for (QWidget* view : views())
        view->setGeometry(place);
}

void ResultPanel::showSelectedView() {
    QWidget* const selected = selectedView();
    const auto all = views();
    const bool hadFocus =
        std::any_of(all.begin(), all.end(), [](const QWidget* view) { return view->hasFocus(); });
    selected->show();
    if (hadFocus) // hidden, it would go anywhere
        selected->setFocus();
    for (QWidget* view : all)
        view->setVisible(view == selected);
}

void ResultPanel::showGridInResults(bool grid) {
    m_gridInResults = grid;
    showSelectedView();
}

void ResultPanel::selectTab(const QString& key) {
    TabStrip1->select(key);
    showSelectedView();
}

void ResultPanel::selectFirstTab() {
    TabStrip1->setCurrentIndex(0);
    showSelectedView();
}

void ResultPanel::setResultsTab(bool on) {
    if (on)
        TabStrip1->add(resultsKey);
    else
        TabStrip1->remove(resultsKey);
    selectTab(on ? resultsKey : messagesKey);
}

void ResultPanel::setPlanTab(bool on) {
    if (on) {
        TabStrip1->add(planKey);
        selectTab(planKey);
        return;
    }
    TabStrip1->remove(planKey);
    TabStrip1->setCurrentIndex(TabStrip1->count() - 1);
    showSelectedView();
}

void ResultPanel::setStatistics(const std::vector<std::pair<QString, QString>>& rows) {
    lvwStats->clear();
    for (const auto& [label, value] : rows)
        new QTreeWidgetItem(lvwStats, {label, value});
}
