#include "AlignedTable.h"

#include "GridData.h"
#include "StandardOutput.h"
#include "Text.h"

#include <algorithm>

namespace {

// A longer text pushes the rest of its own row only, or one huge cell would pad all others.
constexpr qsizetype widestColumn = 120;
constexpr qsizetype blockBytes = 256 * 1024;
constexpr char gap[] = "  ";

class TableWriter {
public:
    TableWriter(std::vector<qsizetype> widths, StandardOutput& output)
        : m_widths(std::move(widths))
        , m_output(output) {}
    ~TableWriter() { m_output.write(m_block); }
    Q_DISABLE_COPY_MOVE(TableWriter)

    void put(QByteArrayView text) {
        const qsizetype start = m_block.size();
        m_block.append(text);
        std::replace_if(
            m_block.begin() + start, m_block.end(), [](char c) { return uchar(c) < ' '; }, ' ');
        if (m_column + 1 == m_widths.size())
            return endLine();
        const qsizetype characters = countUtf8Characters(text.data(), text.size());
        m_block.append(std::max<qsizetype>(m_widths[m_column] - characters, 0), ' ').append(gap);
        ++m_column;
    }
    void putRule() {
        for (qsizetype width : m_widths)
            put(QByteArray(width, '-'));
    }

private:
    void endLine() {
        while (m_block.endsWith(' ')) // the padding before an empty last cell
            m_block.chop(1);
        m_block.append('\n');
        m_column = 0;
        if (m_block.size() < blockBytes)
            return;
        m_output.write(m_block);
        m_block.resize(0);
    }

    std::vector<qsizetype> m_widths;
    StandardOutput& m_output;
    QByteArray m_block;
    size_t m_column = 0;
};

std::vector<qsizetype> columnWidths(const GridData& grid) {
    std::vector<qsizetype> widths;
    for (int column = 1; column < grid.Cols(); ++column) {
        const QByteArray longest = grid.longestText(column);
        widths.push_back(
            std::min(countUtf8Characters(longest.data(), longest.size()), widestColumn));
    }
    return widths;
}

} // namespace

void writeAlignedTable(const GridData& grid, StandardOutput& output) {
    TableWriter table(columnWidths(grid), output);
    const GridData::Visit put = [&table](int, QByteArrayView text) { table.put(text); };
    for (qsizetype row = 0; row < grid.Rows(); ++row) {
        grid.visitRow(row, 1, grid.Cols() - 1, put);
        if (row == 0)
            table.putRule();
    }
}
