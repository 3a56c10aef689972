#pragma once

#include "OdbcLink.h"

// The rows of one executed statement, fetched in blocks into bound columns. When it has a column
// whose values can be long, and the driver cannot be asked again for a cell that did not fit, the
// rows come one by one and those cells in pieces.
class OdbcCursor : public Cursor {
public:
    // The statement was executed; its first result with columns is taken. Throws ProviderError when
    // a result on the way there is a failure.
    OdbcCursor(std::shared_ptr<OdbcLink> link, OdbcHandle statement);

    const std::vector<Column>& columns() const override { return m_columns; }
    qsizetype fetch(CellStore& rows, qsizetype most) override;

private:
    void toFirstResultWithColumns();
    void bindColumns();
    bool fetchBlock();
    SQLRETURN fetchRunning();
    void appendRow(CellStore& rows, SQLULEN row);
    void appendBound(CellStore& rows, size_t column, SQLULEN row);
    void appendInPieces(CellStore& rows, size_t column);
    [[noreturn]] void fail();

    std::shared_ptr<OdbcLink> m_link;
    OdbcHandle m_statement;
    std::vector<OdbcColumn> m_bound;
    std::vector<Column> m_columns;
    std::vector<SQLUSMALLINT> m_rowStates;
    size_t m_inPiecesFrom = 0; // columns from here on are not bound
    SQLULEN m_blockRows = 0;   // rows that arrived with the last block
    SQLULEN m_nextRow = 0;     // of them, the first not yet handed over
    bool m_atEnd = false;
};
