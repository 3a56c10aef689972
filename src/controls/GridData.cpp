#include "GridData.h"

#include "Text.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace {

// The digits of a row number without an allocation; a grid's rows fit easily.
class RowNumber {
public:
    explicit RowNumber(qsizetype row) {
        m_end = std::to_chars(m_digits.begin(), m_digits.end(), row).ptr;
    }
    QByteArrayView view() const { return {m_digits.data(), m_end - m_digits.data()}; }

private:
    std::array<char, 24> m_digits;
    char* m_end;
};

} // namespace

GridData::GridData()
    : m_columns(1) {}

bool GridData::contains(qsizetype row, int col) const {
    return row >= 0 && row < m_rows && col >= 0 && col < Cols();
}

bool GridData::adopted(qsizetype row, int col) const {
    return row >= 1 && row <= m_storeRows && col >= 0 && col <= m_storeCols;
}

void GridData::changed() {
    if (!m_redraw) {
        m_changedUnseen = true;
        return;
    }
    if (m_listener)
        m_listener();
}

void GridData::setRedraw(bool on) {
    m_redraw = on;
    if (on && std::exchange(m_changedUnseen, false))
        changed();
}

void GridData::forgetScans() {
    for (Column& column : m_columns)
        column.scannedValid = false;
}

void GridData::dropWritten(const std::function<bool(qsizetype, int)>& drop) {
    if (std::erase_if(m_written, [&](const auto& cell) {
            return drop(cell.first.first, cell.first.second);
        }) == 0)
        return;
    for (Column& column : m_columns)
        column.writtenStale = true;
}

void GridData::setRows(qsizetype rows) {
    rows = std::max<qsizetype>(rows, 1);
    if (rows == m_rows)
        return;
    if (rows < m_rows) {
        dropWritten([rows](qsizetype row, int) { return row >= rows; });
        m_storeRows = std::min(m_storeRows, rows - 1);
        forgetScans();
    }
    m_rows = rows;
    changed();
}

void GridData::setCols(int cols) {
    cols = std::max(cols, 1);
    if (cols == Cols())
        return;
    if (cols < Cols()) {
        dropWritten([cols](qsizetype, int col) { return col >= cols; });
        m_storeCols = std::min(m_storeCols, cols - 1);
    }
    m_columns.resize(size_t(cols));
    changed();
}

void GridData::clear() {
    m_written.clear();
    m_store = CellStore();
    m_storeRows = 0;
    m_storeCols = 0;
    m_columns.assign(1, Column());
    m_rows = 1;
    ++m_generation;
    changed();
}

void GridData::adoptRows(CellStore rows) {
    dropWritten([](qsizetype row, int) { return row >= 1; });
    forgetScans();
    m_store = std::move(rows);
    m_storeRows = m_store.rows();
    m_storeCols = std::min(m_store.columns(), Cols() - 1);
    m_rows = m_storeRows + 1;
    ++m_generation;
    changed();
}

QByteArray GridData::text(qsizetype row, int col) const {
    if (auto it = m_written.find({row, col}); it != m_written.end())
        return it->second;
    if (!adopted(row, col))
        return {};
    if (col == 0)
        return QByteArray::number(row);
    return m_store.cell(row - 1, col - 1).view().toByteArray();
}

void GridData::setText(qsizetype row, int col, const QString& text) {
    if (!contains(row, col))
        return;
    QByteArray utf8 = text.toUtf8();
    Column& column = m_columns[size_t(col)];
    const Longest cell{row, countUtf8Characters(utf8.constData(), utf8.size())};
    if (column.written.row == row && cell.characters < column.written.characters)
        column.writtenStale = true;
    else if (cell.beats(column.written) || column.written.row == row)
        column.written = cell;
    m_written.insert_or_assign({row, col}, std::move(utf8));
    column.scannedValid = false;
    changed();
}

GridData::Longest GridData::longestWritten(int col) const {
    const Column& column = m_columns[size_t(col)];
    if (std::exchange(column.writtenStale, false)) {
        column.written = {};
        for (const auto& [cell, text] : m_written) {
            const Longest here{cell.first, countUtf8Characters(text.constData(), text.size())};
            if (cell.second == col && here.beats(column.written))
                column.written = here;
        }
    }
    return column.written;
}

// The numbers grow, so the first with as many digits as the last is a power of ten.
GridData::Longest GridData::longestRowNumber() const {
    if (m_storeRows == 0)
        return {};
    Longest best{1, 1};
    for (qsizetype first = 10; first <= m_storeRows; first *= 10)
        best = {first, best.characters + 1};
    return best;
}

GridData::Longest GridData::longestAdopted(int col) const {
    if (col > m_storeCols || m_storeRows == 0)
        return {};
    Longest best = longestRowNumber();
    if (col > 0) {
        const CellStore::Longest stored = m_store.longest(col - 1);
        best = {stored.row + 1, stored.characters};
    }
    if (best.row <= m_storeRows && !m_written.contains({best.row, col}))
        return best;
    return scanAdopted(col);
}

GridData::Longest GridData::scanAdopted(int col) const {
    const Column& column = m_columns[size_t(col)];
    if (column.scannedValid)
        return column.scanned;
    Longest best;
    for (qsizetype row = 1; row <= m_storeRows; ++row) {
        if (m_written.contains({row, col}))
            continue;
        const Cell cell = col > 0 ? m_store.cell(row - 1, col - 1) : Cell();
        const Longest here{row, col > 0 ? countUtf8Characters(cell.data, cell.size)
                                        : RowNumber(row).view().size()};
        if (here.beats(best))
            best = here;
    }
    column.scanned = best;
    column.scannedValid = true;
    return best;
}

QByteArray GridData::longestText(int col) const {
    if (col < 0 || col >= Cols())
        return {};
    const Longest written = longestWritten(col);
    const Longest stored = longestAdopted(col);
    const Longest best = written.beats(stored) ? written : stored;
    return best.row < 0 ? QByteArray() : text(best.row, col);
}

int GridData::ColWidth(int col) const {
    return col >= 0 && col < Cols() ? m_columns[size_t(col)].width : -1;
}

void GridData::setColWidth(int col, int twips) {
    if (col < 0 || col >= Cols() || ColWidth(col) == twips)
        return;
    m_columns[size_t(col)].width = std::max(twips, -1);
    changed();
}

void GridData::visitRow(qsizetype row, int firstCol, int lastCol, const Visit& visit) const {
    auto written = m_written.lower_bound({row, firstCol});
    const auto text = [&](int col, QByteArrayView below) {
        const bool over = written != m_written.end() && written->first == std::pair(row, col);
        visit(col, over ? QByteArrayView((written++)->second) : below);
    };

    int col = firstCol;
    if (adopted(row, col)) {
        if (col == 0)
            text(col++, RowNumber(row).view());
        CellStore::Row cells = m_store.row(row - 1);
        for (int skipped = 1; skipped < col; ++skipped)
            cells.next();
        for (; col <= std::min(lastCol, m_storeCols); ++col)
            text(col, cells.next().view());
    }
    for (; col <= lastCol; ++col)
        text(col, {});
}
