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

std::string_view textValue(sqlite3_stmt* statement, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return {text, size_t(sqlite3_column_bytes(statement, column))};
}

std::string_view blobValue(sqlite3_stmt* statement, int column) {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
    return {bytes, size_t(sqlite3_column_bytes(statement, column))};
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
        switch (sqlite3_column_type(statement, i)) {
        case SQLITE_INTEGER: appendInteger(rows, sqlite3_column_int64(statement, i)); break;
        case SQLITE_FLOAT: appendReal(rows, sqlite3_column_double(statement, i)); break;
        case SQLITE_BLOB: appendBinary(rows, blobValue(statement, i)); break;
        case SQLITE_NULL: rows.appendNull(); break;
        default:
            if (m_columns[size_t(i)].type == ColumnType::Date)
                appendDateText(rows, textValue(statement, i));
            else
                appendText(rows, textValue(statement, i));
        }
    }
    rows.endRow();
}
