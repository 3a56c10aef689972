#pragma once

#include "CellStore.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <map>
#include <vector>

// The content of a FlexGrid: Rows by Cols texts, row 0 the header, column 0 the row numbers. Result
// rows are adopted as they were fetched (UTF-8 cells in a CellStore) and lie below the header;
// single cells can be written over them.
class GridData {
public:
    // 1 row, 1 column, no text: what a grid is after clear().
    GridData();

    qsizetype Rows() const { return m_rows; }
    int Cols() const { return m_cols; }
    // Texts outside the new size are dropped; new cells are empty.
    void setRows(qsizetype rows);
    void setCols(int cols);
    // Empties all texts, then 1 row, 1 column, default widths.
    void clear();

    // UTF-8, a null as "". Throws nothing; a cell outside the grid is "".
    QByteArray text(qsizetype row, int col) const;
    void setText(qsizetype row, int col, const QString& text);

    // Puts the rows below the header: data row n (from 1) gets the text of n in column 0 and cell j
    // in column j + 1. Rows becomes rows.rows() + 1. Cols must be rows.columns() + 1 already. What
    // was below the header before is dropped.
    void adoptRows(CellStore rows);

    // The text of the column with the most characters, header included; the first of equals. Costs
    // nothing that grows with the rows.
    QByteArray longestText(int col) const;

    // Twips; -1 while never set (the view then uses its default).
    int ColWidth(int col) const;
    void setColWidth(int col, int twips);

    // While off, the view does not follow changes. Turning it on shows them.
    bool Redraw() const { return m_redraw; }
    void setRedraw(bool on);
    void Refresh() { notify(); }

    // For the view: called after changes while Redraw is on. One listener.
    void setListener(std::function<void()> listener) { m_listener = std::move(listener); }

    // For the view's row-wise painting: the adopted rows (may be empty) and the texts written over
    // them.
    const CellStore& store() const { return m_store; }
    const std::map<std::pair<qsizetype, int>, QByteArray>& overrides() const { return m_overrides; }

private:
    void notify();

    qsizetype m_rows = 1;
    int m_cols = 1;
    CellStore m_store;
    std::map<std::pair<qsizetype, int>, QByteArray> m_overrides; // header cells included
    std::vector<int> m_widths;
    bool m_redraw = true;
    std::function<void()> m_listener;
};
