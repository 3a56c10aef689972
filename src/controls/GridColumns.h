#pragma once

#include <QtGlobal>

#include <vector>

class GridData;

// Where a grid's columns lie, in device-independent pixels. Column 0 stands still at the left; the
// others follow it, shifted by the horizontal scroll.
class GridColumns {
public:
    // A text of megabytes must not make a column that no scroll bar can cross.
    static constexpr int widest = 60000;
    static constexpr int defaultTwips = 960;

    GridColumns();

    void measure(const GridData& data);
    void setScroll(qint64 scroll) { m_scroll = scroll; }
    qint64 scroll() const { return m_scroll; }

    int count() const { return int(m_right.size()); }
    int fixedWidth() const { return int(m_right.front()); }
    int width(int col) const;
    // In the viewport; may lie outside it.
    qint64 left(int col) const;
    // Width of the columns that scroll.
    qint64 scrolledWidth() const { return m_right.back() - m_right.front(); }
    // The column under x of the viewport; count() right of the last.
    int at(int x) const;
    // The column whose right edge can be taken at x, or -1.
    int edgeAt(int x) const;

private:
    std::vector<qint64> m_right; // unscrolled right edge of each column
    qint64 m_scroll = 0;
};
