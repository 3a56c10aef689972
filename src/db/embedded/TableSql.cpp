#include "TableSql.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace ora {

namespace {

std::string columnList(const std::vector<int>& numbers) {
    std::string list;
    for (const int number : numbers)
        list += (list.empty() ? "c" : ", c") + std::to_string(number);
    return list;
}

std::string columnSql(const ColumnDefinition& column) {
    return column.sqlName() + (column.nullable ? "" : " NOT NULL");
}

const char* deleteAction(ConstraintDefinition::DeleteRule rule) {
    switch (rule) {
    case ConstraintDefinition::DeleteRule::Cascade: return " ON DELETE CASCADE";
    case ConstraintDefinition::DeleteRule::SetNull: return " ON DELETE SET NULL";
    default: return "";
    }
}

std::string foreignKeySql(const TableDefinition& table, const ConstraintDefinition& constraint,
                          const CatalogStore& store) {
    const auto place = store.constraintPlace(constraint.referenced);
    if (!place)
        return {};
    // A table that is being made references itself before the catalog has it.
    const TableDefinition stored = place->table == table.id ? table : store.table(place->table);
    for (const ConstraintDefinition& key : stored.constraints) {
        if (key.id == constraint.referenced)
            return "FOREIGN KEY (" + columnList(constraint.columns) + ") REFERENCES " +
                   stored.sqlName() + " (" + columnList(key.columns) + ")" +
                   deleteAction(constraint.deleteRule);
    }
    return {};
}

std::string constraintSql(const TableDefinition& table, const ConstraintDefinition& constraint,
                          const CatalogStore& store) {
    if (!constraint.enabled || constraint.notNull)
        return {};
    if (constraint.kind == ConstraintDefinition::Kind::Check)
        return "CHECK (" + constraint.conditionSql + ")";
    if (constraint.kind == ConstraintDefinition::Kind::ForeignKey)
        return foreignKeySql(table, constraint, store);
    return {};
}

} // namespace

std::string sqlName(const ConstraintDefinition& constraint) {
    return "k" + std::to_string(constraint.id);
}

std::vector<int> columnsIn(const std::string& expressionSql) {
    const auto isWord = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
    };
    std::vector<int> numbers;
    for (size_t at = 0; at < expressionSql.size();) {
        const char c = expressionSql[at];
        size_t end = at + 1;
        if (c == '\'')
            end = std::min(expressionSql.find('\'', end), expressionSql.size() - 1) + 1;
        while (isWord(c) && end < expressionSql.size() && isWord(expressionSql[end]))
            ++end;
        int number = 0;
        const char* const last = expressionSql.data() + end;
        const bool isColumn =
            c == 'c' && std::from_chars(expressionSql.data() + at + 1, last, number).ptr == last;
        if (isColumn && number > 0)
            numbers.push_back(number);
        at = end;
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

std::string createTableSql(const TableDefinition& table, const CatalogStore& store) {
    // Rows hold their values in the order of the numbers, wherever a column stands by now.
    std::vector<ColumnDefinition> stored = table.columns;
    std::sort(stored.begin(), stored.end(),
              [](const auto& a, const auto& b) { return a.number < b.number; });
    std::string parts;
    for (const ColumnDefinition& column : stored) {
        if (column.virtualText.empty())
            parts += (parts.empty() ? "" : ", ") + columnSql(column);
    }
    for (const ConstraintDefinition& constraint : table.constraints) {
        const std::string sql = constraintSql(table, constraint, store);
        if (!sql.empty())
            parts += ", CONSTRAINT " + sqlName(constraint) + " " + sql;
    }
    return std::string("CREATE ") + (table.temporary() ? "TEMP " : "") + "TABLE " +
           table.sqlName() + " (" + parts + ")";
}

std::string createIndexSql(const IndexDefinition& index, const TableDefinition& table) {
    std::string keys;
    for (const IndexKey& key : index.keys) {
        keys += keys.empty() ? "" : ", ";
        keys += key.column > 0 ? "c" + std::to_string(key.column) : "(" + key.expressionSql + ")";
        keys += key.descending ? " DESC" : "";
    }
    return std::string("CREATE ") + (index.unique ? "UNIQUE " : "") + "INDEX " + index.sqlName() +
           " ON " + table.sqlName() + " (" + keys + ")";
}

void createStoredTable(const SqliteDatabase& db, const CatalogStore& store,
                       const TableDefinition& table) {
    db.run(createTableSql(table, store));
    for (const IndexDefinition& index : store.indexesOf(table.id))
        db.run(createIndexSql(index, table));
}

void replaceTableSql(const SqliteDatabase& db, const TableDefinition& table,
                     const CatalogStore& store) {
    // The engine's own way for changes that its ALTER TABLE does not know: the text is exchanged
    // and the schema read again.
    sqlite3_db_config(db.get(), SQLITE_DBCONFIG_DEFENSIVE, 0, nullptr);
    db.run("PRAGMA writable_schema = ON");
    SqliteStatement update =
        db.prepare("UPDATE main.sqlite_schema SET sql = ?2 WHERE type = 'table' AND name = ?1");
    update.bind(1, table.sqlName()).bind(2, createTableSql(table, store)).step();
    SqliteStatement version = db.prepare("PRAGMA schema_version");
    version.step();
    const auto next = std::to_string(version.integer(0) + 1);
    version.reset();
    db.run("PRAGMA schema_version = " + next);
    db.run("PRAGMA writable_schema = RESET");
    sqlite3_db_config(db.get(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
}

} // namespace ora
