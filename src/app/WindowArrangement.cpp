#include "WindowArrangement.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QStyle>

#include <algorithm>

namespace {

// Splits a length into n parts that differ by a pixel at most and leave no gap.
int partStart(int length, int part, int count) {
    return int(qint64(length) * part / count);
}

std::vector<QMdiSubWindow*> windowsToArrange(const QMdiArea& area) {
    std::vector<QMdiSubWindow*> windows;
    for (QMdiSubWindow* window : area.subWindowList(QMdiArea::CreationOrder)) {
        if (window->isVisible() && !window->isMinimized())
            windows.push_back(window);
    }
    return windows;
}

int cascadeStep(const QMdiArea& area) {
    return area.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &area);
}

QSize roomBesideIcons(const QMdiArea& area) {
    QSize room = area.viewport()->size();
    int iconHeight = 0;
    for (const QMdiSubWindow* window : area.subWindowList()) {
        if (window->isVisible() && window->isMinimized())
            iconHeight = std::max(iconHeight, window->height());
    }
    room.rheight() -= iconHeight;
    return room;
}

std::vector<QRect> rectsFor(const QMdiArea& area, Arrangement arrangement, int count) {
    const QSize room = roomBesideIcons(area);
    switch (arrangement) {
    case Arrangement::Cascade: return cascadedRects(room, count, cascadeStep(area));
    case Arrangement::TileHorizontal: return horizontallyTiledRects(room, count);
    case Arrangement::TileVertical: return verticallyTiledRects(room, count);
    }
    return {};
}

} // namespace

std::vector<QRect> cascadedRects(QSize area, int count, int step) {
    // Three quarters of the area leave room for several steps; then it begins anew at the top.
    const QSize size(area.width() * 3 / 4, area.height() * 3 / 4);
    const int room = std::min(area.width() - size.width(), area.height() - size.height());
    const int steps = std::max(1, room / std::max(1, step) + 1);
    std::vector<QRect> rects;
    for (int i = 0; i < count; ++i) {
        const int offset = i % steps * step;
        rects.emplace_back(QPoint(offset, offset), size);
    }
    return rects;
}

std::vector<QRect> horizontallyTiledRects(QSize area, int count) {
    std::vector<QRect> rects;
    for (int i = 0; i < count; ++i) {
        const int top = partStart(area.height(), i, count);
        rects.emplace_back(0, top, area.width(), partStart(area.height(), i + 1, count) - top);
    }
    return rects;
}

std::vector<QRect> verticallyTiledRects(QSize area, int count) {
    std::vector<QRect> rects;
    for (int i = 0; i < count; ++i) {
        const int left = partStart(area.width(), i, count);
        rects.emplace_back(left, 0, partStart(area.width(), i + 1, count) - left, area.height());
    }
    return rects;
}

QRect newWindowRect(const QMdiArea& area, int number) {
    return cascadedRects(roomBesideIcons(area), number + 1, cascadeStep(area)).back();
}

void arrangeWindows(QMdiArea& area, Arrangement arrangement) {
    const std::vector<QMdiSubWindow*> windows = windowsToArrange(area);
    const std::vector<QRect> rects = rectsFor(area, arrangement, int(windows.size()));
    for (size_t i = 0; i < windows.size(); ++i) {
        windows[i]->showNormal();
        windows[i]->setGeometry(rects[i]);
        if (arrangement == Arrangement::Cascade)
            windows[i]->raise();
    }
    if (QMdiSubWindow* current = area.currentSubWindow())
        area.setActiveSubWindow(current);
}
