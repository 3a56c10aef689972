#pragma once

#include "Provider.h"
#include "SqliteDatabase.h"

#include <string>

// The rows of one statement of the engine. The statement was stepped once already: that tells a
// computed column's type and reports what fails at once.
class EmbeddedCursor : public Cursor {
public:
    // firstRowReady: whether that step gave a row. sql: for error texts.
    EmbeddedCursor(SqliteStatement statement, bool firstRowReady, std::string sql);

    const std::vector<Column>& columns() const override { return m_columns; }
    qsizetype fetch(CellStore& rows, qsizetype most) override;

private:
    void appendRow(CellStore& rows);
    bool advance();

    SqliteStatement m_statement;
    std::string m_sql;
    std::vector<Column> m_columns;
    bool m_rowReady;
};
