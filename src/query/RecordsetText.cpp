#include "RecordsetText.h"

#include "CConCat.h"
#include "Error.h"
#include "Recordset.h"
#include "Text.h"

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

// Collects small parts in blocks.
class BlockWriter {
public:
    explicit BlockWriter(const RecordsetText::Sink& sink)
        : m_sink(sink) {
        startBlock();
    }

    void put(const char* bytes, qsizetype size) {
        if (m_end - m_at < size && !makeRoom(bytes, size))
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

    void finish() { pass(); }

private:
    static constexpr qsizetype blockBytes = 4 * 1024 * 1024; // each is handed to another thread

    void startBlock() {
        m_block.resize(blockBytes);
        m_at = m_block.data();
        m_end = m_at + blockBytes;
    }
    void pass() {
        m_block.truncate(m_at - m_block.constData());
        if (!m_block.isEmpty())
            m_sink(m_block);
    }
    // False when the part was larger than a block and went straight to the sink.
    bool makeRoom(const char* bytes, qsizetype size) {
        pass();
        startBlock();
        if (size <= blockBytes)
            return true;
        QByteArray large(bytes, size);
        m_sink(large);
        return false;
    }

    const RecordsetText::Sink& m_sink;
    QByteArray m_block;
    char* m_at = nullptr;
    char* m_end = nullptr;
};

constexpr char lineEnd[] = {'\r', '\n'};

QByteArray headerLine(const Recordset& recordset, const QByteArray& separator) {
    // Only the names after the first are trimmed: kept on purpose.
    QByteArray line = recordset.fieldName(0).toUtf8();
    for (qsizetype field = 1; field < recordset.fieldCount(); ++field)
        line += separator + trimBlanks(recordset.fieldName(field)).toUtf8();
    return line.append(lineEnd, sizeof lineEnd);
}

// Unlike the other columns' nulls this one fails the whole output: kept on purpose.
void requireFirstValues(const CellStore& rows) {
    for (qsizetype row = 0; row < rows.rows(); ++row) {
        if (rows.row(row).next().isNull)
            throw Error(Error::InvalidUseOfNull, QString(), u"Invalid use of Null"_s);
    }
}

void putRow(BlockWriter& out, CellStore::Row row, int fields, QByteArrayView separator) {
    out.putTrimmed(row.next());
    for (int field = 1; field < fields; ++field) {
        out.put(separator);
        out.putTrimmed(row.next());
    }
    out.put(lineEnd, sizeof lineEnd);
}

} // namespace

RecordsetText::RecordsetText(Recordset& recordset, QStringView separator)
    : m_separator(separator.toUtf8()) {
    if (recordset.fieldCount() == 0)
        return;
    m_header = headerLine(recordset, m_separator);
    m_rows = recordset.takeRows();
    requireFirstValues(m_rows);
}

void RecordsetText::writeTo(const Sink& sink) {
    constexpr qsizetype rowsPerRelease = 4096;
    BlockWriter out(sink);
    out.put(m_header);
    for (qsizetype row = 0; row < m_rows.rows(); ++row) {
        putRow(out, m_rows.row(row), m_rows.columns(), m_separator);
        if (row % rowsPerRelease == 0)
            m_rows.releaseBefore(row);
    }
    out.finish();
}

// Blanks that will be dropped are counted.
qsizetype RecordsetText::mostBytes() const {
    const qsizetype marks = (m_rows.columns() - 1) * m_separator.size() + qsizetype(sizeof lineEnd);
    return m_header.size() + m_rows.textBytes() + m_rows.rows() * marks;
}

QByteArray RecordsetText::whole() {
    CConCat text;
    text.reserve(mostBytes() + 1);
    writeTo([&](QByteArray& block) {
        text.Cat(block);
        block.resize(0);
    });
    return text.takeText();
}
