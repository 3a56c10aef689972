#include "DictionaryViews.h"

#include "DatabaseLogin.h"

#include <array>

namespace {

struct ViewText {
    const char* name;
    const char* comment;
    const char* query;
};

// ?owner stands for the user's name as a literal, ?login for the login table's.
constexpr std::array views{
    ViewText{"USER_TABLES", "Description of the user's own relational tables",
             "SELECT s.name AS TABLE_NAME, 'USERS' AS TABLESPACE_NAME, 'VALID' AS STATUS,"
             " (SELECT CAST(substr(stat, 1, instr(stat || ' ', ' ') - 1) AS INTEGER)"
             "  FROM main.sqlite_stat1 WHERE tbl = s.name LIMIT 1) AS NUM_ROWS,"
             " 'N' AS TEMPORARY FROM main.sqlite_schema s"
             " WHERE s.type = 'table' AND s.name NOT LIKE 'sqlite!_%' ESCAPE '!'"
             " AND s.name <> ?login ORDER BY 1"},
    ViewText{"USER_VIEWS", "Description of the user's own views",
             "SELECT name AS VIEW_NAME, length(sql) AS TEXT_LENGTH, sql AS TEXT"
             " FROM main.sqlite_schema WHERE type = 'view' ORDER BY 1"},
    ViewText{"USER_TAB_COLUMNS", "Columns of user's tables, views and clusters",
             "SELECT s.name AS TABLE_NAME, c.name AS COLUMN_NAME,"
             " upper(substr(c.type, 1, instr(c.type || '(', '(') - 1)) AS DATA_TYPE,"
             " CASE WHEN c.type LIKE '%CHAR%' THEN"
             "   CAST(substr(c.type, instr(c.type, '(') + 1) AS INTEGER)"
             "  WHEN c.type LIKE 'NUM%' THEN 22 WHEN c.type LIKE 'DATE%' THEN 7"
             "  WHEN c.type LIKE 'TIMESTAMP%' THEN 11 ELSE 4000 END AS DATA_LENGTH,"
             " CASE WHEN c.\"notnull\" OR c.pk > 0 THEN 'N' ELSE 'Y' END AS NULLABLE,"
             " c.cid + 1 AS COLUMN_ID, c.dflt_value AS DATA_DEFAULT"
             " FROM main.sqlite_schema s, pragma_table_info(s.name) c"
             " WHERE s.type IN ('table', 'view') AND s.name NOT LIKE 'sqlite!_%' ESCAPE '!'"
             " AND s.name <> ?login ORDER BY s.name, c.cid"},
    ViewText{"USER_INDEXES", "Description of the user's own indexes",
             "SELECT i.name AS INDEX_NAME, 'NORMAL' AS INDEX_TYPE, ?owner AS TABLE_OWNER,"
             " s.name AS TABLE_NAME, 'TABLE' AS TABLE_TYPE,"
             " CASE WHEN i.\"unique\" THEN 'UNIQUE' ELSE 'NONUNIQUE' END AS UNIQUENESS,"
             " 'VALID' AS STATUS FROM main.sqlite_schema s, pragma_index_list(s.name) i"
             " WHERE s.type = 'table' AND s.name <> ?login ORDER BY s.name, i.seq"},
    // The engine keeps the names of constraints only in the text of the CREATE statement.
    ViewText{"USER_CONSTRAINTS", "Constraint definitions on user's own tables",
             "WITH RECURSIVE piece(tab, body) AS ("
             "  SELECT name, sql FROM main.sqlite_schema WHERE type = 'table'"
             "  UNION ALL SELECT tab, ltrim(substr(body, instr(upper(body), 'CONSTRAINT ') + 11))"
             "  FROM piece WHERE instr(upper(body), 'CONSTRAINT ') > 0),"
             " named(tab, name, rest) AS (SELECT tab, substr(body, 1, instr(body, ' ') - 1),"
             "  upper(ltrim(substr(body, instr(body, ' ')))) FROM piece"
             "  WHERE upper(ltrim(body)) NOT LIKE 'CREATE %')"
             " SELECT ?owner AS OWNER, name AS CONSTRAINT_NAME,"
             " CASE substr(rest, 1, 1) WHEN 'P' THEN 'P' WHEN 'U' THEN 'U'"
             "  WHEN 'F' THEN 'R' WHEN 'R' THEN 'R' ELSE 'C' END AS CONSTRAINT_TYPE,"
             " tab AS TABLE_NAME, 'ENABLED' AS STATUS FROM named ORDER BY 4, 2"},
    ViewText{"USER_TRIGGERS", "Triggers owned by the user",
             "SELECT name AS TRIGGER_NAME, ?owner AS TABLE_OWNER, 'TABLE' AS BASE_OBJECT_TYPE,"
             " tbl_name AS TABLE_NAME, 'ENABLED' AS STATUS, sql AS TRIGGER_BODY"
             " FROM main.sqlite_schema WHERE type = 'trigger' ORDER BY 1"},
    ViewText{"USER_OBJECTS", "Objects owned by the user",
             "SELECT name AS OBJECT_NAME, rowid AS OBJECT_ID, upper(type) AS OBJECT_TYPE,"
             " 'VALID' AS STATUS FROM main.sqlite_schema"
             " WHERE name NOT LIKE 'sqlite!_%' ESCAPE '!' AND name <> ?login ORDER BY 1"},
    ViewText{"DUAL", nullptr, "SELECT 'X' AS DUMMY"},
};

std::string literal(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text)
        quoted += c == '\'' ? std::string("''") : std::string(1, c);
    return quoted + "'";
}

void replaceAll(std::string& text, std::string_view what, std::string_view with) {
    for (size_t at = 0; (at = text.find(what, at)) != text.npos; at += with.size())
        text.replace(at, what.size(), with);
}

bool isAnalyzed(const SqliteDatabase& db) {
    return db.prepare("SELECT 1 FROM main.sqlite_schema WHERE name = 'sqlite_stat1'").step();
}

void createView(const SqliteDatabase& db, const char* name, std::string query) {
    db.run("CREATE TEMP VIEW " + quotedName(name) + " AS " + query);
}

std::string dictionaryQuery() {
    std::string rows;
    for (const ViewText& view : views) {
        if (view.comment)
            rows += ", (" + literal(view.name) + ", " + literal(view.comment) + ")";
    }
    return "SELECT column1 AS TABLE_NAME, column2 AS COMMENTS FROM (VALUES " + rows.substr(2) + ")";
}

} // namespace

void createDictionaryViews(const SqliteDatabase& db, const QString& user) {
    const bool analyzed = isAnalyzed(db);
    for (const ViewText& view : views) {
        std::string query = view.query;
        replaceAll(query, "?owner", literal(user.trimmed().toUpper().toStdString()));
        replaceAll(query, "?login", literal(loginTable));
        if (!analyzed)
            replaceAll(query, "main.sqlite_stat1", "(SELECT NULL AS tbl, NULL AS stat)");
        createView(db, view.name, query);
    }
    createView(db, "DICTIONARY", dictionaryQuery());
}
