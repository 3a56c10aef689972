#include "TableSql.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>

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

struct ParentKey {
    std::string table;
    ConstraintDefinition key;
};

std::optional<ParentKey> parentOf(const TableDefinition& table,
                                  const ConstraintDefinition& constraint,
                                  const CatalogStore& store) {
    const auto place = store.constraintPlace(constraint.referenced);
    if (!place)
        return std::nullopt;
    // A table that is being made references itself before the catalog has it.
    const TableDefinition stored = place->table == table.id ? table : store.table(place->table);
    for (const ConstraintDefinition& key : stored.constraints) {
        if (key.id == constraint.referenced)
            return ParentKey{stored.sqlName(), key};
    }
    return std::nullopt;
}

// The engine has a part in a foreign key that may wait only where children follow their parents; it
// has none where the key may wait, whose index is not unique.
std::string foreignKeySql(const TableDefinition& table, const ConstraintDefinition& constraint,
                          const CatalogStore& store) {
    const bool follows = constraint.deleteRule != ConstraintDefinition::DeleteRule::NoAction;
    if (constraint.deferrable && !follows)
        return {};
    const auto parent = parentOf(table, constraint, store);
    if (!parent || parent->key.deferrable)
        return {};
    return "FOREIGN KEY (" + columnList(constraint.columns) + ") REFERENCES " + parent->table +
           " (" + columnList(parent->key.columns) + ")" + deleteAction(constraint.deleteRule) +
           (constraint.deferrable ? " DEFERRABLE INITIALLY DEFERRED" : "");
}

std::string withAlias(const char* alias, int number) {
    return std::string(alias) + ".c" + std::to_string(number);
}

std::string orphanSql(const TableDefinition& table, const ConstraintDefinition& constraint,
                      const CatalogStore& store) {
    const auto parent = parentOf(table, constraint, store);
    if (!parent)
        return "SELECT 1 WHERE 0";
    std::string known;
    std::string equal;
    for (std::size_t i = 0; i < constraint.columns.size(); ++i) {
        const std::string column = withAlias("child", constraint.columns[i]);
        known += column + " IS NOT NULL AND ";
        equal +=
            (i > 0 ? " AND " : "") + withAlias("parent", parent->key.columns[i]) + " = " + column;
    }
    return "SELECT 1 FROM " + table.sqlName() + " AS child WHERE " + known +
           "NOT EXISTS (SELECT 1 FROM " + parent->table + " AS parent WHERE " + equal + ") LIMIT 1";
}

std::string duplicateSql(const TableDefinition& table, const ConstraintDefinition& constraint) {
    const std::string columns = columnList(constraint.columns);
    std::string known;
    for (const int number : constraint.columns)
        known += " AND c" + std::to_string(number) + " IS NOT NULL";
    return "SELECT 1 FROM " + table.sqlName() + " WHERE 1" + known + " GROUP BY " + columns +
           " HAVING count(*) > 1 LIMIT 1";
}

std::string constraintSql(const TableDefinition& table, const ConstraintDefinition& constraint,
                          const CatalogStore& store) {
    if (!constraint.enabled || constraint.notNull)
        return {};
    if (constraint.kind == ConstraintDefinition::Kind::Check && !constraint.deferrable)
        return "CHECK (" + constraint.conditionSql + ")";
    if (constraint.kind == ConstraintDefinition::Kind::ForeignKey)
        return foreignKeySql(table, constraint, store);
    return {};
}

} // namespace

std::string sqlName(const ConstraintDefinition& constraint) {
    return "k" + std::to_string(constraint.id);
}

std::string violationSql(const TableDefinition& table, const ConstraintDefinition& constraint,
                         const CatalogStore& store) {
    using Kind = ConstraintDefinition::Kind;
    if (constraint.kind == Kind::ForeignKey)
        return orphanSql(table, constraint, store);
    if (constraint.kind != Kind::Check)
        return duplicateSql(table, constraint);
    const std::string broken = constraint.notNull
                                   ? "c" + std::to_string(constraint.columns.front()) + " IS NULL"
                                   : "NOT (" + constraint.conditionSql + ")";
    return "SELECT 1 FROM " + table.sqlName() + " WHERE " + broken + " LIMIT 1";
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
