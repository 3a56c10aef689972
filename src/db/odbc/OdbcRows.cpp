#include "OdbcRows.h"

#include "OdbcError.h"

#include <algorithm>
#include <bit>
#include <cstring>

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

OdbcRows::OdbcRows(std::shared_ptr<OdbcLink> link, OdbcHandle statement, bool inDriver)
    : m_link(std::move(link))
    , m_statement(std::move(statement))
    , m_inDriver(inDriver) {}

bool OdbcRows::takeResult() {
    m_bound = describeColumns(m_statement, m_link->habits);
    if (!m_bound.empty())
        bindColumns();
    startAgain();
    return !m_bound.empty();
}

std::vector<Column> OdbcRows::columns() const {
    std::vector<Column> columns;
    columns.reserve(m_bound.size());
    for (const OdbcColumn& column : m_bound)
        columns.push_back(column.column);
    return columns;
}

void OdbcRows::bindColumns() {
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

void OdbcRows::fail() {
    throw m_link->failureOn(m_statement);
}

// Between two blocks a driver may take a stop for done and still give every row, so the wish is
// looked at for each.
SQLRETURN OdbcRows::askDriver() {
    if (m_inDriver) {
        m_link->requireNoStop();
        return SQLFetch(m_statement.get());
    }
    const OdbcRunning running(*m_link, m_statement);
    return SQLFetch(m_statement.get());
}

bool OdbcRows::fetchBlock() {
    startAgain();
    const SQLRETURN result = askDriver();
    if (result == SQL_NO_DATA)
        return false;
    if (!SQL_SUCCEEDED(result))
        fail();
    return m_blockRows > 0;
}

qsizetype OdbcRows::fetch(CellStore& rows, qsizetype most) {
    qsizetype fetched = 0;
    while (fetched < most) {
        if (m_nextRow == m_blockRows && !fetchBlock())
            break;
        appendRow(rows, m_nextRow++);
        ++fetched;
    }
    return fetched;
}

void OdbcRows::appendRow(CellStore& rows, SQLULEN row) {
    try {
        for (size_t column = 0; column < m_bound.size(); ++column) {
            if (column < m_inPiecesFrom)
                appendBound(rows, column, row);
            else
                appendInPieces(rows, column, m_bound[column].shape);
        }
        rows.endRow();
    } catch (...) {
        rows.discardRow();
        throw;
    }
}

void OdbcRows::appendBound(CellStore& rows, size_t column, SQLULEN row) {
    const OdbcColumn& bound = m_bound[column];
    const SQLLEN length = bound.lengths[row];
    if (length == SQL_NULL_DATA) {
        rows.appendNull();
        return;
    }
    const char* const cell = bound.cells.data() + qsizetype(row) * bound.cellBytes;
    if (bound.shape == CellShape::Timestamp) {
        SQL_TIMESTAMP_STRUCT timestamp;
        std::memcpy(&timestamp, cell, sizeof timestamp);
        if (isDoubtful(timestamp))
            return appendAgain(rows, column, row, CellShape::Date);
    }
    const qsizetype room = bound.cellBytes - terminatorBytes(bound.shape);
    if (length != SQL_NO_TOTAL && length <= room)
        return appendCell(rows, bound.shape, cell, qsizetype(length));
    appendAgain(rows, column, row, bound.shape);
}

// A bound cell, asked for once more.
void OdbcRows::appendAgain(CellStore& rows, size_t column, SQLULEN row, CellShape shape) {
    SQLSetPos(m_statement.get(), SQLSETPOSIROW(row + 1), SQL_POSITION, SQL_LOCK_NO_CHANGE);
    appendInPieces(rows, column, shape);
}

void OdbcRows::appendInPieces(CellStore& rows, size_t column, CellShape shape) {
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
