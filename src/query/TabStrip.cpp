#include "TabStrip.h"

#include <algorithm>

TabStrip::TabStrip(std::vector<Tab> order)
    : m_order(std::move(order)) {
    setDrawBase(false);
    setExpanding(false);
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
