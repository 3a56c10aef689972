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
    int Cols() const { return int(m_columns.size()); }
    // Texts and widths outside the new size are dropped; new cells are empty. At least 1.
    void setRows(qsizetype rows);
    void setCols(int cols);
    // Empties all texts, then 1 row, 1 column, default widths.
    void clear();

    // UTF-8, a null as "". Throws nothing; a cell outside the grid is "".
    QByteArray text(qsizetype row, int col) const;
    // A cell outside the grid is left alone.
    void setText(qsizetype row, int col, const QString& text);

    // Puts the rows below the header: data row n (from 1) gets the text of n in column 0 and cell j
    // in column j + 1. Rows becomes rows.rows() + 1. Cols must be rows.columns() + 1 already. What
    // was below the header before is dropped.
    void adoptRows(CellStore rows);

    // The text of the column with the most characters, header included; the first of equals. Costs
    // nothing that grows with the rows, unless the longest adopted text was written over or cut off
    // by setRows.
    QByteArray longestText(int col) const;

    // Twips; -1 while never set (the view then uses its default), 0 hides the column.
    int ColWidth(int col) const;
    void setColWidth(int col, int twips);

    // While off, the view does not follow changes. Turning it on shows them.
    bool Redraw() const { return m_redraw; }
    void setRedraw(bool on);
    void Refresh() { changed(); }

    // For the view: called at once after each change while Redraw is on, and once for all changes
    // that were made while it was off. One listener.
    void setListener(std::function<void()> listener) { m_listener = std::move(listener); }

    // Grows whenever the rows are replaced as a whole, by clear() or adoptRows(): a view then
    // starts from the first cell.
    int generation() const { return m_generation; }

    // Calls visit for the cells firstCol to lastCol of one row, in order, empty ones included.
    // The view is valid during the call only. Quicker than text() for each cell.
    using Visit = std::function<void(int col, QByteArrayView text)>;
    void visitRow(qsizetype row, int firstCol, int lastCol, const Visit& visit) const;

private:
    struct Longest {
        qsizetype row = -1;
        qsizetype characters = 0;
        // First in the column among equals, whatever the order in which they are compared.
        bool beats(const Longest& other) const {
            return row >= 0 && (other.row < 0 || characters > other.characters ||
                                (characters == other.characters && row < other.row));
        }
    };
    struct Column {
        int width = -1;
        mutable Longest written; // the longest of m_written in this column
        mutable bool writtenStale = false;
        mutable Longest scanned; // of the adopted rows, where the store's own answer does not hold
        mutable bool scannedValid = false;
    };
    using Written = std::map<std::pair<qsizetype, int>, QByteArray>;

    bool contains(qsizetype row, int col) const;
    bool adopted(qsizetype row, int col) const;
    void changed();
    void dropWritten(const std::function<bool(qsizetype row, int col)>& drop);
    void forgetScans();
    Longest longestWritten(int col) const;
    Longest longestAdopted(int col) const;
    Longest longestRowNumber() const;
    Longest scanAdopted(int col) const;

    qsizetype m_rows = 1;
    std::vector<Column> m_columns;
    CellStore m_store;
    qsizetype m_storeRows = 0; // how much of the store is inside the grid
    int m_storeCols = 0;
    Written m_written; // header cells and cells written over adopted ones
    int m_generation = 0;
    bool m_redraw = true;
    bool m_changedUnseen = false;
    std::function<void()> m_listener;
};
