#include "RecordsetText.h"

#include "CConCat.h"
#include "Error.h"
#include "Recordset.h"
#include "Text.h"

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

// Collects small parts in a block before they go to the builder, which counts the characters of
// each append.
class BlockWriter {
public:
    BlockWriter()
        : m_block(std::make_unique_for_overwrite<char[]>(blockBytes))
        , m_at(m_block.get()) {}

    // Room for so many bytes beyond those that were put so far, and the terminator.
    void reserve(qsizetype bytes) { m_text.reserve(m_at - m_block.get() + bytes + 1); }

    void put(const char* bytes, qsizetype size) {
        if (m_block.get() + blockBytes - m_at < size && !makeRoom(bytes, size))
            return;
        std::memcpy(m_at, bytes, size_t(size));
        m_at += size;
    }
    void put(QByteArrayView bytes) {
        if (!bytes.isEmpty())
            put(bytes.data(), bytes.size());
    }

    // Blanks at both ends stay behind; a null cell puts nothing.
    void putTrimmed(Cell cell) {
        const char* first = cell.data;
        const char* last = first + cell.size;
        while (first < last && *first == ' ')
            ++first;
        while (first < last && last[-1] == ' ')
            --last;
        put(first, last - first);
    }

    QByteArray takeText() {
        flush();
        return m_text.takeText();
    }

private:
    static constexpr qsizetype blockBytes = 256 * 1024;

    // False when the part was larger than a block and went straight to the builder.
    bool makeRoom(const char* bytes, qsizetype size) {
        flush();
        if (size <= blockBytes)
            return true;
        m_text.Cat(QByteArrayView(bytes, size));
        return false;
    }
    void flush() {
        m_text.Cat(QByteArrayView(m_block.get(), m_at - m_block.get()));
        m_at = m_block.get();
    }

    CConCat m_text;
    std::unique_ptr<char[]> m_block;
    char* m_at;
};

constexpr char lineEnd[] = {'\r', '\n'};

void putHeader(BlockWriter& out, const Recordset& recordset, QByteArrayView separator) {
    // Only the names after the first are trimmed: kept on purpose.
    out.put(recordset.fieldName(0).toUtf8());
    for (qsizetype field = 1; field < recordset.fieldCount(); ++field) {
        out.put(separator);
        out.put(trimBlanks(recordset.fieldName(field)).toUtf8());
    }
    out.put(lineEnd, sizeof lineEnd);
}

void putRow(BlockWriter& out, CellStore::Row row, int fields, QByteArrayView separator) {
    const Cell first = row.next();
    // Unlike the other columns' nulls this one fails the whole output: kept on purpose.
    if (first.isNull)
        throw Error(Error::InvalidUseOfNull, QString(), u"Invalid use of Null"_s);
    out.putTrimmed(first);
    for (int field = 1; field < fields; ++field) {
        out.put(separator);
        out.putTrimmed(row.next());
    }
    out.put(lineEnd, sizeof lineEnd);
}

// Of the text without its header; blanks that will be dropped are counted.
qsizetype largestSize(const CellStore& rows, qsizetype separatorSize) {
    const qsizetype marks = (rows.columns() - 1) * separatorSize + qsizetype(sizeof lineEnd);
    return rows.textBytes() + rows.rows() * marks;
}

} // namespace

RecordsetText recordsetText(Recordset& recordset, QStringView separator) {
    constexpr qsizetype rowsPerRelease = 4096;
    if (recordset.fieldCount() == 0)
        return {};
    const QByteArray between = separator.toUtf8();
    BlockWriter out;
    putHeader(out, recordset, between);
    CellStore rows = recordset.takeRows();
    out.reserve(largestSize(rows, between.size()));
    for (qsizetype row = 0; row < rows.rows(); ++row) {
        putRow(out, rows.row(row), rows.columns(), between);
        if (row % rowsPerRelease == 0)
            rows.releaseBefore(row);
    }
    return {out.takeText(), rows.rows()};
}
