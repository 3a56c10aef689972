#include "ConstraintErrors.h"

#include "TableSql.h"

#include <charconv>

namespace ora {

namespace {

constexpr int uniqueViolated = 1;
constexpr int nullInserted = 1400;
constexpr int nullUpdated = 1407;
constexpr int checkViolated = 2290;
constexpr int parentMissing = 2291;
constexpr int childFound = 2292;

// The number in names such as t17 and i4; 0 for other texts.
ObjectId idIn(std::string_view name, char letter) {
    ObjectId id = 0;
    if (name.size() > 1 && name.front() == letter)
        std::from_chars(name.data() + 1, name.data() + name.size(), id);
    return id;
}

// "UNIQUE constraint failed: t17.c1, t17.c2" -> "t17.c1, t17.c2"
std::string_view afterColon(std::string_view message) {
    const size_t colon = message.find(": ");
    return colon == message.npos ? std::string_view() : message.substr(colon + 2);
}

struct ColumnPlace {
    ObjectId table = 0;
    std::vector<int> columns;
};

ColumnPlace columnPlace(std::string_view list) {
    ColumnPlace place;
    while (!list.empty()) {
        const size_t comma = std::min(list.find(", "), list.size());
        const std::string_view path = list.substr(0, comma);
        const size_t point = std::min(path.find('.'), path.size());
        place.table = idIn(path.substr(0, point), 't');
        if (point < path.size())
            place.columns.push_back(int(idIn(path.substr(point + 1), 'c')));
        list.remove_prefix(std::min(comma + 2, list.size()));
    }
    return place;
}

std::string inParentheses(const DatabaseCatalog& catalog, const std::string& name) {
    return "(" + catalog.user() + "." + name + ")";
}

// A key's index has the key's columns, so that the first that fits is the one.
std::string uniqueName(const DatabaseCatalog& catalog, std::string_view list) {
    constexpr std::string_view indexWord = "index '";
    if (list.starts_with(indexWord)) {
        list.remove_prefix(indexWord.size());
        return catalog.store().index(idIn(list.substr(0, list.find('\'')), 'i')).name;
    }
    const ColumnPlace place = columnPlace(list);
    for (const IndexDefinition& index : catalog.store().indexesOf(place.table)) {
        std::vector<int> columns;
        for (const IndexKey& key : index.keys)
            columns.push_back(key.column);
        if (!index.unique || columns != place.columns)
            continue;
        for (const ConstraintDefinition& key : catalog.store().table(place.table).constraints) {
            if (key.index == index.id)
                return key.name;
        }
        return index.name;
    }
    return {};
}

std::string checkName(const DatabaseCatalog& catalog, std::string_view stored) {
    const auto place = catalog.store().constraintPlace(idIn(stored, 'k'));
    if (!place)
        return std::string(stored);
    for (const ConstraintDefinition& constraint : catalog.store().table(place->table).constraints) {
        if (constraint.id == place->id)
            return constraint.name;
    }
    return {};
}

OraError nullError(const DatabaseCatalog& catalog, std::string_view list, RowAction action) {
    const ColumnPlace place = columnPlace(list);
    const TableDefinition table = catalog.store().table(place.table);
    const ColumnDefinition* column =
        table.columnNumbered(place.columns.empty() ? 0 : place.columns.front());
    const std::string path = "(\"" + catalog.user() + "\".\"" + table.name + "\".\"" +
                             (column ? column->name : std::string()) + "\")";
    if (action == RowAction::Update)
        return {nullUpdated, "cannot update " + path + " to NULL"};
    return {nullInserted, "cannot insert NULL into " + path};
}

OraError foreignKeyError(const DatabaseCatalog& catalog, const std::string& name, bool parent) {
    const std::string start =
        "integrity constraint " + inParentheses(catalog, name) + " violated - ";
    if (parent)
        return {parentMissing, start + "parent key not found"};
    return {childFound, start + "child record found"};
}

OraError uniqueError(const DatabaseCatalog& catalog, const std::string& name) {
    return {uniqueViolated, "unique constraint " + inParentheses(catalog, name) + " violated"};
}

OraError checkError(const DatabaseCatalog& catalog, const std::string& name) {
    return {checkViolated, "check constraint " + inParentheses(catalog, name) + " violated"};
}

// The foreign key of `child` that PRAGMA foreign_key_check calls `number`: the engine counts them
// in the order of their text, the last first.
std::string foreignKeyName(const SqliteDatabase& db, const TableDefinition& child, int number) {
    SqliteStatement list =
        db.prepare("SELECT \"from\" FROM pragma_foreign_key_list(?1) WHERE id = ?2 ORDER BY seq");
    list.bind(1, child.sqlName()).bind(2, sqlite3_int64(number));
    std::vector<int> columns;
    while (list.step())
        columns.push_back(int(idIn(list.text(0), 'c')));
    for (const ConstraintDefinition& constraint : child.constraints) {
        if (constraint.kind == ConstraintDefinition::Kind::ForeignKey && constraint.enabled &&
            constraint.columns == columns)
            return constraint.name;
    }
    return {};
}

} // namespace

OraError violated(const DatabaseCatalog& catalog, const ConstraintDefinition& constraint,
                  bool lacksParent) {
    switch (constraint.kind) {
    case ConstraintDefinition::Kind::PrimaryKey:
    case ConstraintDefinition::Kind::Unique: return uniqueError(catalog, constraint.name);
    case ConstraintDefinition::Kind::ForeignKey:
        return foreignKeyError(catalog, constraint.name, lacksParent);
    default: return checkError(catalog, constraint.name);
    }
}

std::optional<OraError> constraintError(const SqliteFailure& failure,
                                        const DatabaseCatalog& catalog, RowAction action) {
    const std::string_view named = afterColon(failure.what());
    switch (failure.code()) {
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY: return uniqueError(catalog, uniqueName(catalog, named));
    case SQLITE_CONSTRAINT_CHECK: return checkError(catalog, checkName(catalog, named));
    case SQLITE_CONSTRAINT_NOTNULL: return nullError(catalog, named, action);
    case SQLITE_CONSTRAINT_FOREIGNKEY:
        return action == RowAction::Delete
                   ? OraError(childFound, "integrity constraint violated - child record found")
                   : OraError(parentMissing,
                              "integrity constraint violated - parent key not found");
    default: return std::nullopt;
    }
}

std::optional<OraError> brokenForeignKey(const SqliteDatabase& db, const DatabaseCatalog& catalog,
                                         ObjectId changed, RowAction action) {
    SqliteStatement check = db.prepare("PRAGMA foreign_key_check");
    while (check.step()) {
        const ObjectId child = idIn(check.text(0), 't');
        const ObjectId parent = idIn(check.text(2), 't');
        if (child != changed && parent != changed)
            continue;
        const TableDefinition table = catalog.store().table(child);
        const std::string name = foreignKeyName(db, table, int(check.integer(3)));
        const bool lacksParent =
            child == changed && !(child == parent && action == RowAction::Delete);
        return foreignKeyError(catalog, name, lacksParent);
    }
    return std::nullopt;
}

} // namespace ora
