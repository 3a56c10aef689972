#include "CatalogStore.h"

// Tables and views: their columns and constraints.

namespace ora {

namespace {

constexpr const char* deleteRules[] = {"NO ACTION", "CASCADE", "SET NULL"};

ConstraintDefinition::DeleteRule deleteRuleOf(const std::string& text) {
    for (int rule = 0; rule < int(std::size(deleteRules)); ++rule) {
        if (text == deleteRules[rule])
            return ConstraintDefinition::DeleteRule(rule);
    }
    return ConstraintDefinition::DeleteRule::NoAction;
}

TypeInfo typeOf(const SqliteStatement& row, int first) {
    TypeInfo type;
    type.type = SqlType(row.integer(first));
    type.length = int(row.integer(first + 1));
    type.precision = int(row.integer(first + 2));
    type.scale = int(row.integer(first + 3));
    type.scaleGiven = row.integer(first + 4) != 0;
    type.charLength = row.integer(first + 5) != 0;
    type.binaryDigits = int(row.integer(first + 6));
    return type;
}

void bindType(SqliteStatement& row, int first, const TypeInfo& type) {
    row.bind(first, sqlite3_int64(type.type)).bind(first + 1, sqlite3_int64(type.length));
    row.bind(first + 2, sqlite3_int64(type.precision)).bind(first + 3, sqlite3_int64(type.scale));
    row.bind(first + 4, sqlite3_int64(type.scaleGiven));
    row.bind(first + 5, sqlite3_int64(type.charLength));
    row.bind(first + 6, sqlite3_int64(type.binaryDigits));
}

void bindText(SqliteStatement& row, int parameter, const std::string& text) {
    text.empty() ? row.bindNull(parameter) : row.bind(parameter, text);
}

// Sizes of types whose declaration has none to show.
struct FixedLength {
    SqlType type;
    int bytes;
};
constexpr FixedLength fixedLengths[] = {
    {SqlType::Number, 22},
    {SqlType::Date, 7},
    {SqlType::BinaryFloat, 4},
    {SqlType::BinaryDouble, 8},
    {SqlType::TimestampTz, 13},
    {SqlType::IntervalYearToMonth, 5},
    {SqlType::IntervalDayToSecond, 11},
    {SqlType::Clob, 4000},
    {SqlType::Nclob, 4000},
    {SqlType::Blob, 4000},
    {SqlType::Bfile, 530},
    {SqlType::Long, 0},
    {SqlType::LongRaw, 0},
    {SqlType::Rowid, 10},
};

} // namespace

int dataLength(const TypeInfo& type) {
    constexpr int dateBytes = 7;
    constexpr int dateWithFractionBytes = 11;
    constexpr int bytesPerCharacter = 4; // at most, in the database's character set
    constexpr int bytesPerNationalCharacter = 2;
    for (const FixedLength& fixed : fixedLengths) {
        if (fixed.type == type.type)
            return fixed.bytes;
    }
    switch (type.type) {
    case SqlType::Timestamp:
    case SqlType::TimestampLocalTz: return type.scale == 0 ? dateBytes : dateWithFractionBytes;
    case SqlType::Nvarchar2:
    case SqlType::Nchar: return type.length * bytesPerNationalCharacter;
    default: return type.charLength ? type.length * bytesPerCharacter : type.length;
    }
}

// --- columns -----------------------------------------------------------------------------------

std::vector<ColumnDefinition> CatalogStore::columns(ObjectId object) const {
    SqliteStatement row = m_db.prepare(
        "SELECT name, number, nullable, default_text, default_on_null, virtual_text, identity,"
        " comment, type, length, precision, scale, scale_given, char_length, binary_digits,"
        " invisible FROM ora_columns"
        " WHERE object = ?1 ORDER BY position");
    row.bind(1, object);
    std::vector<ColumnDefinition> columns;
    while (row.step()) {
        ColumnDefinition column;
        column.name = row.text(0);
        column.number = int(row.integer(1));
        column.nullable = row.integer(2) != 0;
        column.defaultText = row.text(3);
        column.defaultOnNull = row.integer(4) != 0;
        column.virtualText = row.text(5);
        column.identity = ColumnDefinition::Identity(row.integer(6));
        column.comment = row.text(7);
        column.type = typeOf(row, 8);
        column.invisible = row.integer(15) != 0;
        columns.push_back(std::move(column));
    }
    return columns;
}

void CatalogStore::saveColumns(ObjectId object,
                               const std::vector<ColumnDefinition>& columns) const {
    runWith("DELETE FROM ora_columns WHERE object = ?1", object);
    SqliteStatement row = m_db.prepare(
        "INSERT INTO ora_columns (object, position, name, number, nullable,"
        " default_text, default_on_null, virtual_text, identity, comment, type, length,"
        " precision, scale, scale_given, char_length, binary_digits, type_name, bytes, invisible)"
        " VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15,"
        " ?16, ?17, ?18, ?19, ?20)");
    sqlite3_int64 position = 0;
    for (const ColumnDefinition& column : columns) {
        row.bind(1, object).bind(2, ++position).bind(3, column.name);
        row.bind(4, sqlite3_int64(column.number)).bind(5, sqlite3_int64(column.nullable));
        bindText(row, 6, column.defaultText);
        row.bind(7, sqlite3_int64(column.defaultOnNull));
        bindText(row, 8, column.virtualText);
        row.bind(9, sqlite3_int64(column.identity));
        bindText(row, 10, column.comment);
        bindType(row, 11, column.type);
        row.bind(18, dataTypeName(column.type)).bind(19, sqlite3_int64(dataLength(column.type)));
        row.bind(20, sqlite3_int64(column.invisible));
        row.step();
        row.reset();
    }
}

// --- constraints -------------------------------------------------------------------------------

std::vector<int> CatalogStore::constraintColumns(ObjectId constraint) const {
    std::vector<int> numbers;
    for (const ObjectId number : ids("SELECT number FROM ora_constraint_columns"
                                     " WHERE constraint_id = ?1 ORDER BY position",
                                     constraint))
        numbers.push_back(int(number));
    return numbers;
}

std::vector<ConstraintDefinition> CatalogStore::constraints(ObjectId table) const {
    SqliteStatement row = m_db.prepare(
        "SELECT id, name, generated, kind, condition_text, condition_sql, not_null, referenced,"
        " delete_rule, enabled, index_id, can_defer, is_deferred, validated FROM ora_constraints "
        "WHERE object = ?1 ORDER BY id");
    row.bind(1, table);
    std::vector<ConstraintDefinition> constraints;
    while (row.step()) {
        ConstraintDefinition constraint;
        constraint.id = row.integer(0);
        constraint.name = row.text(1);
        constraint.generatedName = row.integer(2) != 0;
        constraint.kind = ConstraintDefinition::Kind(row.text(3).front());
        constraint.conditionText = row.text(4);
        constraint.conditionSql = row.text(5);
        constraint.notNull = row.integer(6) != 0;
        constraint.referenced = row.integer(7);
        constraint.deleteRule = deleteRuleOf(row.text(8));
        constraint.enabled = row.integer(9) != 0;
        constraint.index = row.integer(10);
        constraint.deferrable = row.integer(11) != 0;
        constraint.deferred = row.integer(12) != 0;
        constraint.validated = row.integer(13) != 0;
        constraint.columns = constraintColumns(constraint.id);
        constraints.push_back(std::move(constraint));
    }
    return constraints;
}

void CatalogStore::deleteConstraints(ObjectId table) const {
    runWith("DELETE FROM ora_constraint_columns WHERE constraint_id IN"
            " (SELECT id FROM ora_constraints WHERE object = ?1)",
            table);
    runWith("DELETE FROM ora_constraints WHERE object = ?1", table);
}

void CatalogStore::saveConstraint(ObjectId table, ConstraintDefinition& constraint) const {
    SqliteStatement row = m_db.prepare(
        "INSERT INTO ora_constraints (id, object, name, generated, kind, condition_text,"
        " condition_sql, not_null, referenced, delete_rule, enabled, index_id, changed,"
        " can_defer, is_deferred, validated)"
        " VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16)");
    constraint.id == 0 ? row.bindNull(1) : row.bind(1, constraint.id);
    row.bind(2, table).bind(3, constraint.name).bind(4, sqlite3_int64(constraint.generatedName));
    row.bind(5, std::string(1, char(constraint.kind)));
    bindText(row, 6, constraint.conditionText);
    bindText(row, 7, constraint.conditionSql);
    row.bind(8, sqlite3_int64(constraint.notNull));
    constraint.referenced == 0 ? row.bindNull(9) : row.bind(9, constraint.referenced);
    constraint.referenced == 0 ? row.bindNull(10)
                               : row.bind(10, deleteRules[int(constraint.deleteRule)]);
    row.bind(11, sqlite3_int64(constraint.enabled));
    constraint.index == 0 ? row.bindNull(12) : row.bind(12, constraint.index);
    row.bindBlob(13, now()).bind(14, sqlite3_int64(constraint.deferrable));
    row.bind(15, sqlite3_int64(constraint.deferred));
    row.bind(16, sqlite3_int64(constraint.validated)).step();
    if (constraint.id == 0)
        constraint.id = sqlite3_last_insert_rowid(m_db.get());
    sqlite3_int64 position = 0;
    for (const int number : constraint.columns) {
        SqliteStatement column =
            m_db.prepare("INSERT INTO ora_constraint_columns VALUES (?1, ?2, ?3)");
        column.bind(1, constraint.id).bind(2, ++position).bind(3, sqlite3_int64(number)).step();
    }
}

std::optional<CatalogStore::ConstraintPlace>
CatalogStore::findConstraint(std::string_view name) const {
    SqliteStatement row = m_db.prepare("SELECT id, object FROM ora_constraints WHERE name = ?1");
    if (!row.bind(1, name).step())
        return std::nullopt;
    return ConstraintPlace{row.integer(0), row.integer(1)};
}

std::optional<CatalogStore::ConstraintPlace> CatalogStore::constraintPlace(ObjectId id) const {
    SqliteStatement row = m_db.prepare("SELECT id, object FROM ora_constraints WHERE id = ?1");
    if (!row.bind(1, id).step())
        return std::nullopt;
    return ConstraintPlace{row.integer(0), row.integer(1)};
}

std::vector<CatalogStore::ConstraintPlace> CatalogStore::referencing(ObjectId key) const {
    SqliteStatement row =
        m_db.prepare("SELECT id, object FROM ora_constraints WHERE referenced = ?1 ORDER BY id");
    row.bind(1, key);
    std::vector<ConstraintPlace> found;
    while (row.step())
        found.push_back({row.integer(0), row.integer(1)});
    return found;
}

// --- tables and views --------------------------------------------------------------------------

TableDefinition CatalogStore::table(ObjectId id) const {
    TableDefinition table;
    SqliteStatement row =
        m_db.prepare("SELECT o.name, t.last_column, t.temporary, t.read_only FROM ora_objects o"
                     " JOIN ora_tables t USING (id) WHERE id = ?1");
    if (!row.bind(1, id).step())
        return table;
    table.id = id;
    table.name = row.text(0);
    table.lastColumnNumber = int(row.integer(1));
    table.rows = TableDefinition::Rows(row.integer(2));
    table.readOnly = row.integer(3) != 0;
    table.columns = columns(id);
    table.constraints = constraints(id);
    return table;
}

void CatalogStore::saveTable(TableDefinition& table) const {
    SqliteStatement row = m_db.prepare(
        "INSERT INTO ora_tables (id, last_column, temporary, read_only) VALUES (?1, ?2, ?3, ?4)"
        " ON CONFLICT (id) DO UPDATE SET last_column = ?2, temporary = ?3, read_only = ?4");
    row.bind(1, table.id).bind(2, sqlite3_int64(table.lastColumnNumber));
    row.bind(3, sqlite3_int64(table.rows)).bind(4, sqlite3_int64(table.readOnly)).step();
    saveColumns(table.id, table.columns);
    deleteConstraints(table.id);
    for (ConstraintDefinition& constraint : table.constraints)
        saveConstraint(table.id, constraint);
}

std::vector<ObjectId> CatalogStore::temporaryTables() const {
    SqliteStatement row = m_db.prepare("SELECT id FROM ora_tables WHERE temporary > 0");
    std::vector<ObjectId> found;
    while (row.step())
        found.push_back(row.integer(0));
    return found;
}

ViewDefinition CatalogStore::view(ObjectId id) const {
    ViewDefinition view;
    SqliteStatement row =
        m_db.prepare("SELECT o.name, v.text, v.read_only, v.check_option FROM ora_objects o"
                     " JOIN ora_views v USING (id) WHERE id = ?1");
    if (!row.bind(1, id).step())
        return view;
    view.id = id;
    view.name = row.text(0);
    view.text = row.text(1);
    view.readOnly = row.integer(2) != 0;
    view.checkOption = row.integer(3) != 0;
    view.columns = columns(id);
    return view;
}

void CatalogStore::saveView(const ViewDefinition& view) const {
    SqliteStatement row = m_db.prepare("INSERT OR REPLACE INTO ora_views VALUES (?1, ?2, ?3, ?4)");
    row.bind(1, view.id).bind(2, view.text).bind(3, sqlite3_int64(view.readOnly));
    row.bind(4, sqlite3_int64(view.checkOption)).step();
    saveColumns(view.id, view.columns);
    deleteConstraints(view.id);
    ConstraintDefinition constraint = view.constraint;
    if (!constraint.name.empty())
        saveConstraint(view.id, constraint);
}

} // namespace ora
