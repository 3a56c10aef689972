#pragma once

#include "EditTarget.h"
#include "GridColumns.h"
#include "GridData.h"
#include "GridPainter.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>

// A read-only grid over a GridData: row 0 is the fixed header, column 0 the fixed row numbers. Only
// what is visible is measured and painted. Row, Col, RowSel and ColSel are the corners of the
// selected rectangle; fixed cells are never part of it.
class FlexGrid : public QAbstractScrollArea, public EditTarget {
    Q_OBJECT
public:
    explicit FlexGrid(QWidget* parent = nullptr);
    ~FlexGrid() override;

    // Owned by the grid. Changes are shown when control returns to the event loop, or at the next
    // repaint.
    GridData& data() { return m_data; }
    const GridData& data() const { return m_data; }

    // The current cell, where a selection began; 0 while the grid has no cell below the header.
    qsizetype Row() const { return m_current.row; }
    int Col() const { return m_current.col; }
    // The opposite corner of the selection; equals the current cell when only that is selected.
    qsizetype RowSel() const { return m_end.row; }
    int ColSel() const { return m_end.col; }
    // Corners outside the cells are moved to the nearest one.
    void select(qsizetype row, int col, qsizetype rowSel, int colSel);

    // The first row shown below the header.
    qsizetype TopRow() const;
    void setTopRow(qsizetype row);
    // Whole rows that fit below the header, at least 1.
    int visibleRows() const;
    int rowHeight() const { return m_rowHeight; }
    // In the viewport; empty when the cell is scrolled away.
    QRect cellRect(qsizetype row, int col) const;
    void showCell(qsizetype row, int col);

    // The selected cells, tab-separated, CR LF between rows; withHeader: the column names first.
    // Texts stand as they are, without quoting.
    QString copyText(bool withHeader = false) const;

    bool isReadOnly() const override { return true; }
    QString Copy() const override { return copyText(); }
    void Paste(const QString&) override {}
    void SelectAll() override;
    void Undo() override {}

Q_SIGNALS:
    void SelChange();

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    struct Place {
        qsizetype row = 0;
        int col = 0;
        bool operator==(const Place&) const = default;
    };
    enum class Drag { None, Cells, Columns, Rows, Edge };

    bool hasCells() const { return m_data.Rows() > 1 && m_data.Cols() > 1; }
    Place clamped(qsizetype row, int col) const;
    void setSelection(Place current, Place end);
    void dataChanged();
    void layOut();
    void paintRow(GridPainter& cells, QPainter& painter, qsizetype row, int y);
    GridPainter::Look lookOf(qsizetype row, int col) const;
    void measureFont();
    qsizetype rowAt(int y) const;
    Place placeAt(QPoint position) const;
    Drag dragAt(QPoint position) const;
    void beginSelection(Drag drag, Place place, bool extend);
    void dragTo(QPoint position);
    void resizeColumn(int x);
    void fitColumn(int col);
    bool moveByKey(int key, Qt::KeyboardModifiers modifiers);
    void announceCell();
    void showCellTip(QPoint position, QPoint globalPosition);

    GridData m_data;
    GridColumns m_columns;
    Place m_current;
    Place m_end;
    int m_rowHeight = 1;
    bool m_layoutStale = true;
    bool m_layoutQueued = false;
    int m_generation = 0; // of the rows that are looked at
    bool m_scrollHome = false;
    Drag m_drag = Drag::None;
    int m_dragCol = 0;
    QBasicTimer m_autoScroll;
};
