#pragma once

#include <QByteArrayView>
#include <QColor>
#include <QFontMetrics>
#include <QPainter>
#include <QPalette>

// Paints single cells of a FlexGrid in the colours of a palette.
class GridPainter {
public:
    enum class Look { Cell, Selected, Fixed, FixedSelected };

    // The painter must outlive this.
    GridPainter(QPainter& painter, const QPalette& palette);

    void cell(const QRect& rect, QByteArrayView utf8, Look look);
    // Around the current cell, or around an empty grid that has the focus.
    void frame(const QRect& rect, bool focused);

    // Space between a cell's edge and its text, each side.
    static constexpr int padding = 4;

private:
    QString fitted(QByteArrayView utf8, int width) const;

    struct Colours {
        QColor back;
        QColor text;
    };
    QPainter& m_painter;
    QPalette m_palette;
    QFontMetrics m_metrics;
    QColor m_line;
    QColor m_fixedLine;
    Colours m_looks[4];
};
