#include "TypedCursor.h"

namespace ora {

namespace {

ColumnType seamType(SqlType type) {
    switch (familyOf(type)) {
    case TypeFamily::Number:
    case TypeFamily::Binary: return ColumnType::Number;
    case TypeFamily::Date:
    case TypeFamily::Timestamp:
    case TypeFamily::LocalTime: return ColumnType::Date;
    case TypeFamily::Raw: return ColumnType::Binary;
    default: return ColumnType::Text;
    }
}

} // namespace

TypedCursor::TypedCursor(SqliteStatement statement, bool firstRowReady,
                         const std::vector<ResultColumn>& columns, Failure failure,
                         GiveBack giveBack)
    : m_statement(std::move(statement))
    , m_failure(std::move(failure))
    , m_giveBack(std::move(giveBack))
    , m_rowReady(firstRowReady) {
    for (const ResultColumn& column : columns) {
        m_columns.push_back({QString::fromStdString(column.name), seamType(column.type.type)});
        m_writers.push_back({cellWriter(column.type.type), column.type});
    }
}

TypedCursor::~TypedCursor() {
    m_statement.reset();
    if (m_giveBack)
        m_giveBack(std::move(m_statement));
}

qsizetype TypedCursor::fetch(CellStore& rows, qsizetype most) {
    qsizetype fetched = 0;
    while (m_rowReady && fetched < most) {
        appendRow(rows);
        ++fetched;
        m_rowReady = false; // holds when the step fails
        try {
            m_rowReady = m_statement.step();
        } catch (const SqliteFailure& failure) {
            throw m_failure(failure);
        }
    }
    return fetched;
}

void TypedCursor::appendRow(CellStore& rows) {
    sqlite3_stmt* const statement = m_statement.get();
    int index = 0;
    for (const Writer& writer : m_writers) {
        // The connection has no mutex, so that the value needs no protection by one.
        writer.write(rows, sqlite3_column_value(statement, index++), writer.type);
    }
    rows.endRow();
}

} // namespace ora
