#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

// UTF-16 units that the UTF-8 bytes become, and the byte at which a unit begins. The bytes must be
// well-formed; a unit inside a pair counts as its beginning.
qsizetype utf16Length(QByteArrayView utf8);
qsizetype utf8Offset(QByteArrayView utf8, qsizetype units);

// A text of any size as one UTF-8 buffer, seen as rows: a row is a line, or a piece of a line that
// is longer than longestRow bytes, so that one endless line costs no more than many short ones. The
// index takes a byte for every 32 rows. Lines end with LF or CR LF; a text that ends with a line
// end has an empty last row. The last row may have two bytes more than longestRow.
class TextBuffer {
public:
    static constexpr qsizetype longestRow = 4096;

    // Malformed bytes are replaced by U+FFFD; a well-formed text is taken over without a copy.
    void set(QByteArray utf8);
    void append(const QString& text);

    const QByteArray& utf8() const { return m_utf8; }
    qsizetype size() const { return m_utf8.size(); }
    qsizetype rows() const { return m_rows; }
    // Bytes of the longest row.
    qsizetype widestRow() const { return m_widest; }

    // Offsets in the buffer. The line end lies between end and next; next is -1 for the last row.
    // Of a cut line end equals next: that offset belongs to the next row.
    struct Row {
        qsizetype begin;
        qsizetype end;
        qsizetype next;
    };
    Row row(qsizetype number) const;
    // Only for a row whose next is not -1.
    Row rowAfter(const Row& row) const { return rowFrom(row.next); }
    // The row that holds the offset, and its number.
    qsizetype rowOf(qsizetype offset) const;
    QByteArrayView bytes(const Row& row) const {
        return QByteArrayView(m_utf8).sliced(row.begin, row.end - row.begin);
    }

private:
    static constexpr qsizetype stride = 256;

    Row rowFrom(qsizetype begin) const;
    void indexRest();

    QByteArray m_utf8;
    std::vector<qsizetype> m_everyStride{0}; // where row 0, 256, 512 ... begins
    qsizetype m_rows = 1;
    qsizetype m_lastBegin = 0;
    qsizetype m_widest = 0;
};
