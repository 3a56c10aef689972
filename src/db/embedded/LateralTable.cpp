#include "LateralTable.h"

#include <sqlite3.h>

#include <memory>
#include <new>
#include <string>

namespace ora {

namespace {

constexpr int QueryColumn = static_cast<int>(LateralTable::MostColumns);

struct Table : sqlite3_vtab {
    sqlite3* database;
};

struct StatementDeleter {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

// The statement stays prepared while the rows to the left pass by.
struct Rows : sqlite3_vtab_cursor {
    std::unique_ptr<sqlite3_stmt, StatementDeleter> statement;
    std::string text;
    sqlite3_int64 number = 0;
    bool ended = true;
};

Rows& rowsOf(sqlite3_vtab_cursor* cursor) {
    return *static_cast<Rows*>(cursor);
}

Table& tableOf(sqlite3_vtab_cursor* cursor) {
    return *static_cast<Table*>(cursor->pVtab);
}

int connect(sqlite3* database, void*, int, const char* const*, sqlite3_vtab** table, char**) {
    std::string declaration = "CREATE TABLE x(";
    for (std::size_t i = 1; i <= LateralTable::MostColumns; ++i)
        declaration += 'c' + std::to_string(i) + ',';
    declaration += "query HIDDEN";
    for (std::size_t i = 1; i <= LateralTable::MostParameters; ++i)
        declaration += ",p" + std::to_string(i) + " HIDDEN";
    const int code = sqlite3_declare_vtab(database, (declaration + ')').c_str());
    if (code != SQLITE_OK)
        return code;
    auto* const made = new (std::nothrow) Table{};
    if (!made)
        return SQLITE_NOMEM;
    made->database = database;
    *table = made;
    return SQLITE_OK;
}

int disconnect(sqlite3_vtab* table) {
    std::unique_ptr<Table> owned(static_cast<Table*>(table));
    return SQLITE_OK;
}

// All that is handed over must be known before the rows are asked for.
int bestIndex(sqlite3_vtab*, sqlite3_index_info* info) {
    for (int i = 0; i < info->nConstraint; ++i) {
        const auto& constraint = info->aConstraint[i];
        const int argument = constraint.iColumn - QueryColumn;
        if (argument < 0 || constraint.op != SQLITE_INDEX_CONSTRAINT_EQ)
            continue;
        if (!constraint.usable)
            return SQLITE_CONSTRAINT;
        info->aConstraintUsage[i].argvIndex = argument + 1;
        info->aConstraintUsage[i].omit = 1;
    }
    static char shownInPlans[] = "LATERAL";
    info->idxStr = shownInPlans;
    constexpr int TypicalRows = 10;
    info->estimatedCost = TypicalRows;
    info->estimatedRows = TypicalRows;
    return SQLITE_OK;
}

int open(sqlite3_vtab*, sqlite3_vtab_cursor** cursor) {
    *cursor = new (std::nothrow) Rows{};
    return *cursor ? SQLITE_OK : SQLITE_NOMEM;
}

int close(sqlite3_vtab_cursor* cursor) {
    std::unique_ptr<Rows> owned(&rowsOf(cursor));
    return SQLITE_OK;
}

int failed(sqlite3_vtab_cursor* cursor, int code) {
    Table& table = tableOf(cursor);
    sqlite3_free(table.zErrMsg);
    table.zErrMsg = sqlite3_mprintf("%s", sqlite3_errmsg(table.database));
    return code;
}

int next(sqlite3_vtab_cursor* cursor) {
    Rows& rows = rowsOf(cursor);
    const int code = sqlite3_step(rows.statement.get());
    rows.ended = code != SQLITE_ROW;
    ++rows.number;
    return code == SQLITE_ROW || code == SQLITE_DONE ? SQLITE_OK : failed(cursor, code);
}

int prepare(sqlite3_vtab_cursor* cursor, std::string text) {
    Rows& rows = rowsOf(cursor);
    if (rows.statement && rows.text == text)
        return sqlite3_reset(rows.statement.get());
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v2(tableOf(cursor).database, text.c_str(),
                                        static_cast<int>(text.size()), &statement, nullptr);
    rows.statement.reset(statement);
    rows.text = std::move(text);
    return code == SQLITE_OK ? SQLITE_OK : failed(cursor, code);
}

int filter(sqlite3_vtab_cursor* cursor, int, const char*, int count, sqlite3_value** values) {
    const auto* text = count > 0 ? sqlite3_value_text(values[0]) : nullptr;
    if (!text)
        return SQLITE_ERROR;
    const int code = prepare(cursor, reinterpret_cast<const char*>(text));
    if (code != SQLITE_OK)
        return code;
    for (int i = 1; i < count; ++i)
        sqlite3_bind_value(rowsOf(cursor).statement.get(), i, values[i]);
    return next(cursor);
}

int eof(sqlite3_vtab_cursor* cursor) {
    return rowsOf(cursor).ended;
}

int column(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int index) {
    sqlite3_stmt* const statement = rowsOf(cursor).statement.get();
    if (index < sqlite3_column_count(statement))
        sqlite3_result_value(context, sqlite3_column_value(statement, index));
    return SQLITE_OK;
}

int rowid(sqlite3_vtab_cursor* cursor, sqlite3_int64* number) {
    *number = rowsOf(cursor).number;
    return SQLITE_OK;
}

// There is no xCreate: the function is there without a CREATE VIRTUAL TABLE.
sqlite3_module lateralModule() {
    sqlite3_module module{};
    module.xConnect = connect;
    module.xDisconnect = disconnect;
    module.xBestIndex = bestIndex;
    module.xOpen = open;
    module.xClose = close;
    module.xFilter = filter;
    module.xNext = next;
    module.xEof = eof;
    module.xColumn = column;
    module.xRowid = rowid;
    return module;
}

} // namespace

void LateralTable::registerAt(sqlite3* database) {
    static const sqlite3_module module = lateralModule();
    sqlite3_create_module_v2(database, Name, &module, nullptr, nullptr);
}

} // namespace ora
