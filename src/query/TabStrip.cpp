#include "TabStrip.h"

#include <QPainter>
#include <QProxyStyle>
#include <QStyleOptionTabWidgetFrame>

#include <algorithm>

namespace {

// Low tabs, so that they fit above the views with a usual font.
class LowTabs : public QProxyStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override {
        constexpr int blank = 6;
        return metric == PM_TabBarTabVSpace ? blank
                                            : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

} // namespace

TabStrip::TabStrip(std::vector<Tab> order)
    : m_order(std::move(order)) {
    setDrawBase(false);
    setExpanding(false);
    // The buttons for scrolling would be as high as the frame.
    setUsesScrollButtons(false);
    setElideMode(Qt::ElideRight);
    auto* low = new LowTabs;
    low->setParent(this);
    setStyle(low);
}

int TabStrip::indexOf(const QString& key) const {
    for (int i = 0; i < count(); ++i) {
        if (tabData(i).toString() == key)
            return i;
    }
    return -1;
}

int TabStrip::placeOf(const QString& key) const {
    int place = 0;
    for (const Tab& tab : m_order) {
        if (tab.key == key)
            break;
        place += has(tab.key);
    }
    return place;
}

void TabStrip::add(const QString& key) {
    const auto tab = std::find_if(m_order.begin(), m_order.end(),
                                  [&](const Tab& known) { return known.key == key; });
    if (tab == m_order.end() || has(key))
        return;
    // The first tab becomes the current one before its key is known.
    const QSignalBlocker quiet(this);
    setTabData(insertTab(placeOf(key), tab->caption), key);
}

void TabStrip::remove(const QString& key) {
    if (const int index = indexOf(key); index >= 0)
        removeTab(index);
}

void TabStrip::select(const QString& key) {
    if (const int index = indexOf(key); index >= 0)
        setCurrentIndex(index);
}

QString TabStrip::selectedKey() const {
    return tabData(currentIndex()).toString();
}

int TabStrip::tabHeight() const {
    return count() > 0 ? tabSizeHint(0).height() : 0;
}

void TabStrip::paintEvent(QPaintEvent* event) {
    QStyleOptionTabWidgetFrame frame;
    frame.initFrom(this);
    frame.shape = shape();
    frame.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
    const int overlap = style()->pixelMetric(QStyle::PM_TabBarBaseOverlap, nullptr, this);
    frame.rect.setTop(tabHeight() - overlap);
    {
        QPainter painter(this);
        style()->drawPrimitive(QStyle::PE_FrameTabWidget, &frame, &painter, this);
    }
    QTabBar::paintEvent(event);
}
