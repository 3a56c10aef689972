#pragma once

#include "OdbcLink.h"

// The rows of an executed statement's current result, in blocks of bound columns. When it has a
// column whose values can be long, and the driver cannot be asked again for a cell that did not
// fit, the rows come one by one and those cells in pieces.
class OdbcRows {
public:
    // inDriver: the driver holds every result whole, so that no block can wait for the server.
    OdbcRows(std::shared_ptr<OdbcLink> link, OdbcHandle statement, bool inDriver = false);
    OdbcRows(const OdbcRows&) = delete; // the driver writes into it
    OdbcRows& operator=(const OdbcRows&) = delete;

    const OdbcHandle& statement() const { return m_statement; }

    // Describes and binds the columns of the current result; false when it has none. Throws
    // ProviderError.
    bool takeResult();
    std::vector<Column> columns() const;

    // The statement was executed once more: its columns are still bound.
    void startAgain() { m_blockRows = m_nextRow = 0; }

    // Appends at most `most` rows of the result; returns how many, fewer only at its end. Throws
    // ProviderError; rows appended before the failure stay.
    qsizetype fetch(CellStore& rows, qsizetype most);

private:
    void bindColumns();
    bool fetchBlock();
    SQLRETURN askDriver();
    void appendRow(CellStore& rows, SQLULEN row);
    void appendBound(CellStore& rows, size_t column, SQLULEN row);
    void appendAgain(CellStore& rows, size_t column, SQLULEN row, CellShape shape);
    void appendInPieces(CellStore& rows, size_t column, CellShape shape);
    [[noreturn]] void fail();

    std::shared_ptr<OdbcLink> m_link;
    OdbcHandle m_statement;
    bool m_inDriver;
    std::vector<OdbcColumn> m_bound;
    std::vector<SQLUSMALLINT> m_rowStates;
    size_t m_inPiecesFrom = 0; // columns from here on are not bound
    SQLULEN m_blockRows = 0;   // rows that arrived with the last block
    SQLULEN m_nextRow = 0;     // of them, the first not yet handed over
};
