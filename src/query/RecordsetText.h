#pragma once

#include "CellStore.h"

#include <QByteArray>

#include <functional>

class Recordset;

// The rows as separated text in UTF-8: a header line and a line a row, each ending in CR LF. Blanks
// around values and around all field names but the first are dropped; nothing is quoted or escaped.
// Nulls are empty. A recordset without fields gives no text. Each row gives its memory back once it
// is text, so a text can be had once.
class RecordsetText {
public:
    // Takes a block; what is handed back is empty and may have its room.
    using Sink = std::function<void(QByteArray& block)>;

    // Uses the recordset's rows up. Throws Error::InvalidUseOfNull for a null in the first column.
    RecordsetText(Recordset& recordset, QStringView separator);

    qsizetype rows() const { return m_rows.rows(); }

    // Gives the text in order, in blocks. Throws what the sink throws.
    void writeTo(const Sink& sink);
    // All of it. Throws Error::Overflow when its characters leave 32 bits.
    QByteArray whole();

private:
    qsizetype mostBytes() const;

    QByteArray m_header;
    QByteArray m_separator;
    CellStore m_rows;
};
