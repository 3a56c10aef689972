#include "EmbeddedCursor.h"

#include "CellText.h"
#include "OracleErrors.h"

#include <algorithm>
#include <array>

namespace {

struct DeclaredType {
    QLatin1String part; // of the declaration, upper case
    ColumnType type;
};
// The first that occurs in the declaration decides.
const std::array declaredTypes{
    DeclaredType{QLatin1String("CHAR"), ColumnType::Text},
    DeclaredType{QLatin1String("CLOB"), ColumnType::Text},
    DeclaredType{QLatin1String("TEXT"), ColumnType::Text},
    DeclaredType{QLatin1String("DATE"), ColumnType::Date},
    DeclaredType{QLatin1String("TIMESTAMP"), ColumnType::Date},
    DeclaredType{QLatin1String("BLOB"), ColumnType::Binary},
    DeclaredType{QLatin1String("RAW"), ColumnType::Binary},
    DeclaredType{QLatin1String("NUM"), ColumnType::Number},
    DeclaredType{QLatin1String("INT"), ColumnType::Number},
    DeclaredType{QLatin1String("DEC"), ColumnType::Number},
    DeclaredType{QLatin1String("REAL"), ColumnType::Number},
    DeclaredType{QLatin1String("FLOA"), ColumnType::Number},
    DeclaredType{QLatin1String("DOUB"), ColumnType::Number},
};

ColumnType typeOfDeclaration(const QString& declaration) {
    for (const DeclaredType& known : declaredTypes) {
        if (declaration.contains(known.part, Qt::CaseInsensitive))
            return known.type;
    }
    return ColumnType::Text;
}

ColumnType typeOfValue(int storageClass) {
    switch (storageClass) {
    case SQLITE_INTEGER:
    case SQLITE_FLOAT: return ColumnType::Number;
    case SQLITE_BLOB: return ColumnType::Binary;
    default: return ColumnType::Text;
    }
}

Column describeColumn(sqlite3_stmt* statement, int index, bool hasRow) {
    const char* declared = sqlite3_column_decltype(statement, index);
    Column column{QString::fromUtf8(sqlite3_column_name(statement, index)), ColumnType::Text};
    if (declared)
        column.type = typeOfDeclaration(QString::fromUtf8(declared));
    else if (hasRow)
        column.type = typeOfValue(sqlite3_column_type(statement, index));
    return column;
}

std::string_view textOf(sqlite3_value* value) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return {text, size_t(sqlite3_value_bytes(value))};
}

std::string_view blobOf(sqlite3_value* value) {
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
    return {bytes, size_t(sqlite3_value_bytes(value))};
}

} // namespace

EmbeddedCursor::EmbeddedCursor(SqliteStatement statement, bool firstRowReady, std::string sql)
    : m_statement(std::move(statement))
    , m_sql(std::move(sql))
    , m_rowReady(firstRowReady) {
    const int count = sqlite3_column_count(m_statement.get());
    m_columns.reserve(size_t(count));
    for (int i = 0; i < count; ++i)
        m_columns.push_back(describeColumn(m_statement.get(), i, firstRowReady));
}

qsizetype EmbeddedCursor::fetch(CellStore& rows, qsizetype most) {
    qsizetype fetched = 0;
    while (m_rowReady && fetched < most) {
        appendRow(rows);
        ++fetched;
        m_rowReady = false; // holds when the step fails
        m_rowReady = advance();
    }
    return fetched;
}

bool EmbeddedCursor::advance() {
    try {
        return m_statement.step();
    } catch (const SqliteFailure& failure) {
        throw oraError(failure, m_sql);
    }
}

void EmbeddedCursor::appendRow(CellStore& rows) {
    sqlite3_stmt* const statement = m_statement.get();
    const int count = int(m_columns.size());
    for (int i = 0; i < count; ++i) {
        // The connection has no mutex, so that the value needs no protection by one.
        sqlite3_value* const value = sqlite3_column_value(statement, i);
        switch (sqlite3_value_type(value)) {
        case SQLITE_INTEGER: appendInteger(rows, sqlite3_value_int64(value)); break;
        case SQLITE_FLOAT: appendReal(rows, sqlite3_value_double(value)); break;
        case SQLITE_BLOB: appendBinary(rows, blobOf(value)); break;
        case SQLITE_NULL: rows.appendNull(); break;
        default:
            if (m_columns[size_t(i)].type == ColumnType::Date)
                appendDateText(rows, textOf(value));
            else
                appendText(rows, textOf(value));
        }
    }
    rows.endRow();
}
