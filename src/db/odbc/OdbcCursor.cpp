#include "OdbcCursor.h"

OdbcCursor::OdbcCursor(std::shared_ptr<OdbcLink> link, OdbcHandle statement)
    : m_link(std::move(link))
    , m_rows(m_link, std::move(statement)) {
    toFirstResultWithColumns();
    m_columns = m_rows.columns();
    m_atEnd = m_columns.empty();
}

// A batch or a procedure may give counts before its rows; each result on the way may be a failure.
void OdbcCursor::toFirstResultWithColumns() {
    while (!m_rows.takeResult()) {
        const SQLRETURN result = SQLMoreResults(m_rows.statement().get());
        if (result == SQL_NO_DATA)
            return;
        if (!SQL_SUCCEEDED(result))
            throw m_link->failureOn(m_rows.statement());
    }
}

qsizetype OdbcCursor::fetch(CellStore& rows, qsizetype most) {
    if (m_atEnd)
        return 0;
    m_atEnd = true; // after a failure as well
    const qsizetype fetched = m_rows.fetch(rows, most);
    m_atEnd = fetched < most;
    if (m_atEnd)
        SQLFreeStmt(m_rows.statement().get(), SQL_CLOSE); // a read cursor locks nothing
    return fetched;
}
