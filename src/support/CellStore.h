#pragma once

#include <QByteArrayView>
#include <QtGlobal>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

// One value of a result as text. data is UTF-8, not terminated, and belongs to the store; a null
// has size 0.
struct Cell {
    const char* data = nullptr;
    quint32 size = 0;
    bool isNull = true;

    QByteArrayView view() const { return {data, qsizetype(size)}; }
};

// The rows of a result as UTF-8 cells in growing chunks: a length byte before each cell (an escape
// for long ones) and 32 bits a row, so that a million rows cost little more than their text.
// Rows are written once, in order, and read by number or forwards. Each column's longest text is
// known at any time. A store is moved, never copied: the recordset hands it to the grid.
class CellStore {
public:
    static constexpr quint32 maxCellBytes = 0x7fffffff;

    // Walks the cells of one row from the first column on. Valid while the store is not changed.
    class Row {
    public:
        Cell next() {
            const auto mark = static_cast<unsigned char>(*m_at++);
            if (mark < longMark)
                return take(mark);
            if (mark == nullMark)
                return {m_at, 0, true};
            quint32 size;
            std::memcpy(&size, m_at, sizeof size);
            m_at += sizeof size;
            return take(size);
        }

    private:
        friend class CellStore;
        explicit Row(const char* at)
            : m_at(at) {}
        Cell take(quint32 size) {
            const Cell cell{m_at, size, false};
            m_at += size;
            return cell;
        }
        const char* m_at;
    };

    explicit CellStore(int columns = 0);
    CellStore(CellStore&& other) noexcept;
    CellStore& operator=(CellStore&& other) noexcept;
    ~CellStore();

    int columns() const { return int(m_longest.size()); }
    qsizetype rows() const { return m_rows; }
    // Bytes of all cell texts, without the store's own marks.
    qint64 textBytes() const { return m_textBytes; }

    // --- writing: exactly columns() cells, then endRow() -------------------------------------
    // From here on a cell that would take the store beyond so many bytes of memory throws
    // std::bad_alloc; 0, the default: none does.
    void setMostBytes(qint64 bytes) { m_mostBytes = bytes; }
    // text must not exceed maxCellBytes; throws std::bad_alloc, after which the row must be dropped
    // with discardRow().
    void append(const char* text, qsizetype size);
    void appendNull();
    // Room for a short cell (at most 250 bytes) to be written in place, then commit(bytes written).
    char* shortCell() {
        ensureRoom(256);
        return m_write + 1;
    }
    void commit(int size) {
        *m_write = char(size);
        noteLength(m_write + 1, size);
        m_write += size + 1;
        m_textBytes += size;
        ++m_column;
    }
    void endRow();
    // Drops the cells of the row that was begun.
    void discardRow();

    // --- reading ---------------------------------------------------------------------------
    // row counts from 0 and must not have been released.
    Row row(qsizetype row) const;
    Cell cell(qsizetype row, int column) const;

    // Characters (code points) of the column's longest text so far and the row that holds it; the
    // first of equals. row is -1 while there is no row.
    struct Longest {
        qsizetype row = -1;
        qsizetype characters = 0;
    };
    Longest longest(int column) const { return m_longest[size_t(column)]; }

    // Gives back the memory of chunks that lie wholly before the row; those rows and the longest
    // texts' rows must not be read any more. For a reader that goes forward once.
    void releaseBefore(qsizetype row);

private:
    static constexpr unsigned char longMark = 254;
    static constexpr unsigned char nullMark = 255;

    struct Free {
        qsizetype capacity = 0;
        void operator()(char* memory) const;
    };
    struct Chunk {
        std::unique_ptr<char, Free> bytes;
        qsizetype capacity = 0;
        qsizetype firstRow = 0;
        std::vector<quint32> rowStarts;
    };

    void ensureRoom(qsizetype size) {
        if (m_end - m_write < size)
            addChunk(size);
    }
    void addChunk(qsizetype size);
    void noteMemory(qsizetype nextChunk);
    void noteLength(const char* text, qsizetype size) {
        // Characters never outnumber bytes, so most cells end here.
        if (Longest& best = m_longest[m_column]; size > best.characters || best.row < 0)
            countLength(best, text, size);
    }
    void countLength(Longest& best, const char* text, qsizetype size);
    const Chunk& chunkOf(qsizetype row) const;

    std::vector<Chunk> m_chunks;
    std::vector<Longest> m_longest;
    char* m_write = nullptr;    // where the next cell goes
    char* m_end = nullptr;      // end of the last chunk
    char* m_rowStart = nullptr; // first byte of the row being written
    size_t m_column = 0;
    qsizetype m_rows = 0;
    qint64 m_textBytes = 0;
    qint64 m_textBytesOfRows = 0; // m_textBytes at the last endRow()
    qint64 m_chunkBytes = 0;      // memory taken so far, released or not
    qint64 m_mostBytes = 0;
};
