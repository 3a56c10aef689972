#include "GridData.h"

GridData::GridData() = default;

void GridData::setRows(qsizetype rows) {
    m_rows = rows;
    notify();
}
void GridData::setCols(int cols) {
    m_cols = cols;
    notify();
}
void GridData::clear() {
    m_overrides.clear();
    m_store = CellStore();
    m_widths.clear();
    m_rows = 1;
    m_cols = 1;
    notify();
}
QByteArray GridData::text(qsizetype row, int col) const {
    if (auto it = m_overrides.find({row, col}); it != m_overrides.end())
        return it->second;
    if (row < 1 || row > m_store.rows())
        return {};
    if (col == 0)
        return QByteArray::number(row);
    if (col > m_store.columns())
        return {};
    return m_store.cell(row - 1, col - 1).view().toByteArray();
}
void GridData::setText(qsizetype row, int col, const QString& text) {
    m_overrides[{row, col}] = text.toUtf8();
    notify();
}
void GridData::adoptRows(CellStore rows) {
    m_store = std::move(rows);
    m_rows = m_store.rows() + 1;
    notify();
}
QByteArray GridData::longestText(int col) const {
    QByteArray best = text(0, col);
    for (qsizetype r = 1; r < m_rows; ++r)
        if (QByteArray t = text(r, col);
            QString::fromUtf8(t).size() > QString::fromUtf8(best).size())
            best = t;
    return best;
}
int GridData::ColWidth(int col) const {
    return size_t(col) < m_widths.size() ? m_widths[size_t(col)] : -1;
}
void GridData::setColWidth(int col, int twips) {
    m_widths.resize(std::max<size_t>(m_widths.size(), size_t(col) + 1), -1);
    m_widths[size_t(col)] = twips;
    notify();
}
void GridData::setRedraw(bool on) {
    m_redraw = on;
    notify();
}
void GridData::notify() {
    if (m_redraw && m_listener)
        m_listener();
}
