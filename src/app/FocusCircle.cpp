#include "FocusCircle.h"

#include "LeftPanel.h"
#include "QueryWindows.h"
#include "TreeView.h"

#include <QApplication>
#include <QShortcut>

FocusCircle::FocusCircle(QWidget& window, const LeftPanel& panel, const QueryWindows& queries)
    : QObject(&window)
    , m_panel(panel)
    , m_queries(queries) {
    connect(new QShortcut(Qt::Key_F6, &window), &QShortcut::activated, this, [this] { step(1); });
    connect(new QShortcut(Qt::SHIFT | Qt::Key_F6, &window), &QShortcut::activated, this,
            [this] { step(-1); });
}

std::vector<FocusCircle::Stop> FocusCircle::stops() const {
    std::vector<Stop> all;
    if (const frmQuery* query = m_queries.active()) {
        all.push_back({query, query->txtSQL});
        all.push_back({query->shownResult()->parentWidget(), query->shownResult()});
    }
    all.push_back({&m_panel, m_panel.shownTree()});
    std::erase_if(all, [](const Stop& stop) { return !stop.target->isVisible(); });
    return all;
}

void FocusCircle::step(int by) {
    const std::vector<Stop> all = stops();
    if (all.empty())
        return;
    // The results lie in the query window, so the last area that holds the focus is the right one.
    const QWidget* focus = QApplication::focusWidget();
    int at = -1;
    for (size_t i = 0; i < all.size(); ++i) {
        if (focus && (all[i].area == focus || all[i].area->isAncestorOf(focus)))
            at = int(i);
    }
    const int count = int(all.size());
    const int next = at < 0 ? 0 : (at + by + count) % count;
    all[size_t(next)].target->setFocus(Qt::ShortcutFocusReason);
}
