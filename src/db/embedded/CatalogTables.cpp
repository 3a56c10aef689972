#include "CatalogTables.h"

#include <iterator>
#include <string>

namespace ora {

namespace {

constexpr int applicationId = 0x51756d31; // "Qum1", at a fixed place in the file's header

// Ids are never used again (AUTOINCREMENT), because they name what is stored. Dates are kept in
// the stored form of a DATE, so that the dictionary shows them without conversion.
constexpr const char* tables = R"sql(
CREATE TABLE ora_objects (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  space INTEGER NOT NULL, name TEXT NOT NULL, kind TEXT NOT NULL,
  generated INTEGER NOT NULL DEFAULT 0, created BLOB, changed BLOB, comment TEXT);
CREATE UNIQUE INDEX ora_objects_name ON ora_objects (space, name);
CREATE INDEX ora_objects_kind ON ora_objects (kind, name);

CREATE TABLE ora_tables (
  id INTEGER PRIMARY KEY, last_column INTEGER NOT NULL, temporary INTEGER NOT NULL,
  read_only INTEGER NOT NULL, num_rows INTEGER, analyzed BLOB);
CREATE TABLE ora_views (
  id INTEGER PRIMARY KEY, text TEXT NOT NULL, read_only INTEGER NOT NULL,
  check_option INTEGER NOT NULL);
CREATE TABLE ora_columns (
  object INTEGER NOT NULL, position INTEGER NOT NULL, name TEXT NOT NULL, number INTEGER NOT NULL,
  type INTEGER NOT NULL, length INTEGER NOT NULL, precision INTEGER NOT NULL,
  scale INTEGER NOT NULL, scale_given INTEGER NOT NULL, char_length INTEGER NOT NULL,
  nullable INTEGER NOT NULL, default_text TEXT, default_on_null INTEGER NOT NULL,
  virtual_text TEXT, identity INTEGER NOT NULL, comment TEXT,
  type_name TEXT NOT NULL, bytes INTEGER NOT NULL,
  PRIMARY KEY (object, position)) WITHOUT ROWID;

CREATE TABLE ora_constraints (
  id INTEGER PRIMARY KEY AUTOINCREMENT, object INTEGER NOT NULL, name TEXT NOT NULL UNIQUE,
  generated INTEGER NOT NULL, kind TEXT NOT NULL, condition_text TEXT, condition_sql TEXT,
  not_null INTEGER NOT NULL, referenced INTEGER, delete_rule TEXT, enabled INTEGER NOT NULL,
  index_id INTEGER, changed BLOB);
CREATE INDEX ora_constraints_object ON ora_constraints (object);
CREATE INDEX ora_constraints_referenced ON ora_constraints (referenced);
CREATE TABLE ora_constraint_columns (
  constraint_id INTEGER NOT NULL, position INTEGER NOT NULL, number INTEGER NOT NULL,
  PRIMARY KEY (constraint_id, position)) WITHOUT ROWID;

CREATE TABLE ora_indexes (
  id INTEGER PRIMARY KEY, object INTEGER NOT NULL, is_unique INTEGER NOT NULL,
  num_rows INTEGER, distinct_keys INTEGER, analyzed BLOB);
CREATE INDEX ora_indexes_object ON ora_indexes (object);
CREATE TABLE ora_index_columns (
  index_id INTEGER NOT NULL, position INTEGER NOT NULL, number INTEGER NOT NULL,
  expression_text TEXT, expression_sql TEXT, descending INTEGER NOT NULL,
  PRIMARY KEY (index_id, position)) WITHOUT ROWID;

CREATE TABLE ora_sequences (
  id INTEGER PRIMARY KEY, min_value TEXT NOT NULL, max_value TEXT NOT NULL,
  increment TEXT NOT NULL, cycle INTEGER NOT NULL, ordered INTEGER NOT NULL,
  cache INTEGER NOT NULL, last_number TEXT NOT NULL, identity_of INTEGER);
CREATE TABLE ora_synonyms (id INTEGER PRIMARY KEY, owner TEXT, target TEXT NOT NULL);
CREATE TABLE ora_triggers (
  id INTEGER PRIMARY KEY, object INTEGER NOT NULL, text TEXT NOT NULL, timing TEXT NOT NULL,
  events TEXT NOT NULL, when_text TEXT, body TEXT NOT NULL, description TEXT NOT NULL,
  enabled INTEGER NOT NULL);
CREATE INDEX ora_triggers_object ON ora_triggers (object);

CREATE TABLE ora_state (changes INTEGER NOT NULL, next_constraint INTEGER NOT NULL);
INSERT INTO ora_state VALUES (0, 1000);
)sql";

// What later versions of the catalog add; a file's PRAGMA user_version counts those that it has.
constexpr const char* upgrades[] = {
    "ALTER TABLE ora_columns ADD COLUMN binary_digits INTEGER NOT NULL DEFAULT 0;"
    "ALTER TABLE ora_columns ADD COLUMN invisible INTEGER NOT NULL DEFAULT 0;"
    "ALTER TABLE ora_constraints ADD COLUMN can_defer INTEGER NOT NULL DEFAULT 0;"
    "ALTER TABLE ora_constraints ADD COLUMN is_deferred INTEGER NOT NULL DEFAULT 0;"
    "ALTER TABLE ora_constraints ADD COLUMN validated INTEGER NOT NULL DEFAULT 1;"
    "ALTER TABLE ora_indexes ADD COLUMN bitmap INTEGER NOT NULL DEFAULT 0",
    "CREATE TABLE ora_grants (object INTEGER NOT NULL, grantee TEXT NOT NULL, privilege TEXT NOT"
    " NULL, column_name TEXT NOT NULL, grantable INTEGER NOT NULL,"
    " PRIMARY KEY (object, grantee, privilege, column_name)) WITHOUT ROWID",
};

sqlite3_int64 valueOf(const SqliteDatabase& db, const char* query) {
    SqliteStatement statement = db.prepare(query);
    statement.step();
    return statement.integer(0);
}

} // namespace

bool hasCatalog(const SqliteDatabase& db) {
    return valueOf(db, "PRAGMA application_id") == applicationId;
}

bool isEmptyFile(const SqliteDatabase& db) {
    return valueOf(db, "SELECT COUNT(*) FROM main.sqlite_schema") == 0;
}

void createCatalogTables(const SqliteDatabase& db) {
    db.run(tables);
    upgradeCatalogTables(db);
    db.run("PRAGMA application_id = " + std::to_string(applicationId));
}

void upgradeCatalogTables(const SqliteDatabase& db) {
    const auto known = std::size_t(valueOf(db, "PRAGMA user_version"));
    for (std::size_t version = known; version < std::size(upgrades); ++version)
        db.run(std::string("SAVEPOINT upgrade;") + upgrades[version] +
               ";PRAGMA user_version = " + std::to_string(version + 1) + ";RELEASE upgrade");
}

} // namespace ora
