#include "OdbcCursor.h"

#include "OdbcError.h"

#include <algorithm>

namespace {

constexpr qsizetype blockBudget = 8 * 1024 * 1024; // bytes of all bound cells
constexpr qsizetype mostBlockRows = 256;
constexpr size_t pieceBytes = 64 * 1024;

qsizetype rowsOfBlock(const std::vector<OdbcColumn>& columns) {
    qsizetype rowBytes = 1;
    for (const OdbcColumn& column : columns)
        rowBytes += column.cellBytes + qsizetype(sizeof(SQLLEN));
    // A power of two, so that blocks fill a driver's own fetches exactly.
    return qsizetype(
        std::bit_floor(size_t(std::clamp<qsizetype>(blockBudget / rowBytes, 1, mostBlockRows))));
}

void setAttribute(const OdbcHandle& statement, SQLINTEGER attribute, SQLULEN value) {
    SQLSetStmtAttr(statement.get(), attribute, reinterpret_cast<SQLPOINTER>(value), 0);
}

} // namespace

OdbcCursor::OdbcCursor(std::shared_ptr<OdbcLink> link, OdbcHandle statement)
    : m_link(std::move(link))
    , m_statement(std::move(statement)) {
    toFirstResultWithColumns();
    for (const OdbcColumn& column : m_bound)
        m_columns.push_back(column.column);
    if (!m_bound.empty())
        bindColumns();
}

// A batch or a procedure may give counts before its rows; each result on the way may be a failure.
void OdbcCursor::toFirstResultWithColumns() {
    m_bound = describeColumns(m_statement, m_link->habits);
    while (m_bound.empty()) {
        const SQLRETURN result = SQLMoreResults(m_statement.get());
        if (result == SQL_NO_DATA)
            return;
        if (!SQL_SUCCEEDED(result))
            fail();
        m_bound = describeColumns(m_statement, m_link->habits);
    }
}

void OdbcCursor::bindColumns() {
    const auto inPieces = std::find_if(m_bound.begin(), m_bound.end(),
                                       [](const OdbcColumn& c) { return c.cellBytes == 0; });
    m_inPiecesFrom = size_t(inPieces - m_bound.begin());
    const qsizetype rows = inPieces == m_bound.end() ? rowsOfBlock(m_bound) : 1;
    m_rowStates.resize(size_t(rows));
    setAttribute(m_statement, SQL_ATTR_ROW_BIND_TYPE, SQL_BIND_BY_COLUMN);
    setAttribute(m_statement, SQL_ATTR_ROW_ARRAY_SIZE, SQLULEN(rows));
    SQLSetStmtAttr(m_statement.get(), SQL_ATTR_ROW_STATUS_PTR, m_rowStates.data(), 0);
    SQLSetStmtAttr(m_statement.get(), SQL_ATTR_ROWS_FETCHED_PTR, &m_blockRows, 0);
    for (size_t i = 0; i < m_inPiecesFrom; ++i) {
        OdbcColumn& column = m_bound[i];
        column.cells.resize(size_t(rows * column.cellBytes));
        column.lengths.resize(size_t(rows));
        if (!SQL_SUCCEEDED(SQLBindCol(m_statement.get(), SQLUSMALLINT(i + 1),
                                      targetType(column.shape), column.cells.data(),
                                      column.cellBytes, column.lengths.data())))
            fail();
    }
}

void OdbcCursor::fail() {
    m_atEnd = true;
    throw m_link->failureOn(m_statement);
}

SQLRETURN OdbcCursor::fetchRunning() {
    const OdbcRunning running(*m_link, m_statement);
    return SQLFetch(m_statement.get());
}

// Between two blocks a driver may take a stop for done and still give every row, so the wish is
// looked at here as well.
bool OdbcCursor::fetchBlock() {
    m_nextRow = 0;
    m_blockRows = 0;
    if (m_link->stopAsked) {
        m_atEnd = true;
        throw stoppedError();
    }
    const SQLRETURN result = fetchRunning();
    if (result == SQL_NO_DATA) {
        m_atEnd = true;
        SQLFreeStmt(m_statement.get(), SQL_CLOSE); // a read cursor locks nothing at the server
        return false;
    }
    if (!SQL_SUCCEEDED(result))
        fail();
    return m_blockRows > 0;
}

qsizetype OdbcCursor::fetch(CellStore& rows, qsizetype most) {
    qsizetype fetched = 0;
    while (fetched < most && !m_atEnd) {
        if (m_nextRow == m_blockRows && !fetchBlock())
            break;
        appendRow(rows, m_nextRow++);
        ++fetched;
    }
    return fetched;
}

void OdbcCursor::appendRow(CellStore& rows, SQLULEN row) {
    try {
        for (size_t column = 0; column < m_bound.size(); ++column) {
            if (column < m_inPiecesFrom)
                appendBound(rows, column, row);
            else
                appendInPieces(rows, column);
        }
        rows.endRow();
    } catch (...) {
        rows.discardRow();
        throw;
    }
}

void OdbcCursor::appendBound(CellStore& rows, size_t column, SQLULEN row) {
    const OdbcColumn& bound = m_bound[column];
    const SQLLEN length = bound.lengths[row];
    if (length == SQL_NULL_DATA) {
        rows.appendNull();
        return;
    }
    const qsizetype room = bound.cellBytes - terminatorBytes(bound.shape);
    if (length != SQL_NO_TOTAL && length <= room) {
        appendCell(rows, bound.shape, bound.cells.data() + qsizetype(row) * bound.cellBytes,
                   qsizetype(length));
        return;
    }
    SQLSetPos(m_statement.get(), SQLSETPOSIROW(row + 1), SQL_POSITION, SQL_LOCK_NO_CHANGE);
    appendInPieces(rows, column);
}

void OdbcCursor::appendInPieces(CellStore& rows, size_t column) {
    const CellShape shape = m_bound[column].shape;
    const qsizetype terminator = terminatorBytes(shape);
    QByteArray value;
    std::vector<char> piece(pieceBytes);
    for (;;) {
        SQLLEN length = 0;
        const SQLRETURN result =
            SQLGetData(m_statement.get(), SQLUSMALLINT(column + 1), targetType(shape), piece.data(),
                       SQLLEN(piece.size()), &length);
        if (result == SQL_NO_DATA)
            break;
        if (!SQL_SUCCEEDED(result))
            fail();
        if (length == SQL_NULL_DATA) {
            rows.appendNull();
            return;
        }
        const qsizetype room = qsizetype(piece.size()) - terminator;
        const bool isLast = length != SQL_NO_TOTAL && length <= room;
        value.append(piece.data(), isLast ? qsizetype(length) : room);
        if (isLast)
            break;
    }
    appendCell(rows, shape, value.constData(), value.size());
}
