#pragma once

#include "CellStore.h"
#include "Provider.h"

#include <QString>

#include <optional>

struct Command;

enum class CursorLocation { Server = 2, Client = 3 };
enum class CursorTypeEnum { ForwardOnly = 0 };

// The rows of a statement, shaped like ADO's: a client-side, forward-only cursor. Open fetches
// every row (or MaxRecords of them), so that an open recordset holds nothing at the server. Rows
// that were passed give their memory back.
class Recordset {
public:
    CursorLocation cursorLocation = CursorLocation::Client;
    CursorTypeEnum cursorType = CursorTypeEnum::ForwardOnly;
    qint32 MaxRecords = 0; // more than 0: fetch at most so many

    // Runs the command and fetches. Throws Error; the recordset is then closed.
    void Open(const Command& command);

    qsizetype fieldCount() const { return qsizetype(m_columns.size()); }
    const QString& fieldName(qsizetype field) const { return m_columns[size_t(field)].name; }
    ColumnType fieldType(qsizetype field) const { return m_columns[size_t(field)].type; }
    // The field of that name, ignoring case (servers differ in it); nothing when there is none.
    std::optional<qsizetype> fieldIndex(QStringView name) const;

    bool atEof() const { return m_current >= m_rows.rows(); }
    void MoveNext(); // throws Error at EOF

    // A walk over the current row's cells from the first field on; valid until MoveNext.
    CellStore::Row currentRow() const { return m_rows.row(m_current); }
    // One value of the current row; valid until MoveNext. Throws Error at EOF.
    Cell value(qsizetype field) const;
    // The same as text, a null as "". Throws Error when there is no such field or at EOF.
    QString text(QStringView field) const;

    // Hands over all rows from the current one on without copying when none was passed; the
    // recordset is at EOF afterwards.
    CellStore takeRows();

private:
    std::vector<Column> m_columns;
    CellStore m_rows;
    qsizetype m_current = 0;
};
