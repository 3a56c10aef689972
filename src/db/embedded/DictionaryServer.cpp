#include "DictionaryView.h"

namespace ora {

namespace {

using Column = DictionaryColumn;
using enum DictionaryView::Form;

// s is one of this program's own connections, as ora_sessions() lists them.
constexpr const char* sessionRows = "json_each(ora_sessions()) s";

constexpr Column sessionColumns[] = {
    {"SADDR", "R8", "s.value ->> '$.session_address'"},
    {"SID", "N", "s.value ->> '$.sid'"},
    {"SERIAL#", "N", "s.value ->> '$.serial'"},
    {"AUDSID", "N", "s.value ->> '$.sid'"},
    {"PADDR", "R8", "s.value ->> '$.process_address'"},
    {"USER#", "N", "s.value ->> '$.user_id'"},
    {"USERNAME", "V128", "s.value ->> '$.user'"},
    {"COMMAND", "N", "0"},
    {"STATUS", "V8", "CASE WHEN s.value ->> '$.own' THEN 'ACTIVE' ELSE 'INACTIVE' END"},
    {"SERVER", "V9", "'DEDICATED'"},
    {"SCHEMA#", "N", "s.value ->> '$.user_id'"},
    {"SCHEMANAME", "V128", "s.value ->> '$.user'"},
    {"OSUSER", "V128", "s.value ->> '$.os_user'"},
    {"PROCESS", "V24", "s.value ->> '$.process'"},
    {"MACHINE", "V64", "s.value ->> '$.machine'"},
    {"TERMINAL", "V30", nullptr},
    {"PROGRAM", "V84", "s.value ->> '$.program'"},
    {"TYPE", "V10", "'USER'"},
    {"SQL_ID", "V13", nullptr},
    {"MODULE", "V64", "s.value ->> '$.program'"},
    {"ACTION", "V64", nullptr},
    {"CLIENT_INFO", "V64", nullptr},
    {"LOGON_TIME", "H", "s.value ->> '$.logon'"},
    {"LAST_CALL_ET", "N", "0"},
    {"BLOCKING_SESSION", "N", nullptr},
    {"EVENT", "V64", nullptr},
    {"WAIT_CLASS", "V64", nullptr},
    {"SERVICE_NAME", "V64", "s.value ->> '$.service'"},
};

constexpr Column processColumns[] = {
    {"ADDR", "R8", "s.value ->> '$.process_address'"},
    {"PID", "N", "s.value ->> '$.sid'"},
    {"SPID", "V24", "s.value ->> '$.spid'"},
    {"PNAME", "V5", nullptr},
    {"USERNAME", "V15", "s.value ->> '$.os_user'"},
    {"SERIAL#", "N", "s.value ->> '$.serial'"},
    {"TERMINAL", "V30", nullptr},
    {"PROGRAM", "V48", "s.value ->> '$.program'"},
    {"BACKGROUND", "V1", nullptr},
};

constexpr Column versionColumns[] = {
    {"BANNER", "V80", "s.column1"},
    {"CON_ID", "N", "0"},
};
constexpr const char* versionRows =
    "(VALUES ('Quillmate embedded database'), ('SQLite ' || sqlite_version())) s";

constexpr Column instanceColumns[] = {
    {"INSTANCE_NUMBER", "N", "1"},
    {"INSTANCE_NAME", "V16", "ora_sys_context('USERENV', 'DB_NAME')"},
    {"HOST_NAME", "V64", "ora_sys_context('USERENV', 'HOST')"},
    {"VERSION", "V17", "sqlite_version()"},
    {"STATUS", "V12", "'OPEN'"},
    {"DATABASE_STATUS", "V17", "'ACTIVE'"},
};
constexpr Column databaseColumns[] = {
    {"DBID", "N", "1"},
    {"NAME", "V9", "ora_sys_context('USERENV', 'DB_NAME')"},
    {"LOG_MODE", "V12", "'NOARCHIVELOG'"},
    {"OPEN_MODE", "V20", "'READ WRITE'"},
};

constexpr Column parameterColumns[] = {
    {"NUM", "N", "s.column1"},
    {"NAME", "V80", "s.column2"},
    {"TYPE", "N", "s.column3"},
    {"VALUE", "V4000", "s.column4"},
    {"DISPLAY_VALUE", "V4000", "s.column4"},
    {"ISDEFAULT", "V9", "'TRUE'"},
    {"ISSES_MODIFIABLE", "V5", "s.column5"},
    {"DESCRIPTION", "V255", "s.column6"},
};
// Types: 2 is a text, 3 an integer.
constexpr const char* parameterRows =
    "(VALUES"
    " (1, 'db_name', 2, ora_sys_context('USERENV', 'DB_NAME'), 'FALSE', 'database name'),"
    " (2, 'db_block_size', 3, (SELECT page_size || '' FROM pragma_page_size), 'FALSE',"
    "  'Size of database block in bytes'),"
    " (3, 'nls_date_format', 2, ora_sys_context('USERENV', 'NLS_DATE_FORMAT'), 'TRUE',"
    "  'NLS Oracle date format'),"
    " (4, 'nls_language', 2, ora_sys_context('USERENV', 'NLS_LANGUAGE'), 'FALSE', 'NLS language "
    "name'),"
    " (5, 'nls_territory', 2, ora_sys_context('USERENV', 'NLS_TERRITORY'), 'FALSE',"
    "  'NLS territory name'),"
    " (6, 'compatible', 2, sqlite_version(), 'FALSE', 'engine version')) s";

constexpr Column nlsColumns[] = {
    {"PARAMETER", "V128", "s.column1"},
    {"VALUE", "V64", "s.column2"},
};
constexpr const char* nlsRows =
    "(SELECT column1, ora_sys_context('USERENV', column1) AS column2 FROM (VALUES"
    " ('NLS_LANGUAGE'), ('NLS_TERRITORY'), ('NLS_CURRENCY'), ('NLS_ISO_CURRENCY'),"
    " ('NLS_NUMERIC_CHARACTERS'), ('NLS_CALENDAR'), ('NLS_DATE_FORMAT'), ('NLS_DATE_LANGUAGE'),"
    " ('NLS_SORT'), ('NLS_TIME_FORMAT'), ('NLS_TIMESTAMP_FORMAT'), ('NLS_TIME_TZ_FORMAT'),"
    " ('NLS_TIMESTAMP_TZ_FORMAT'), ('NLS_DUAL_CURRENCY'), ('NLS_COMP'), ('NLS_LENGTH_SEMANTICS'),"
    " ('NLS_NCHAR_CONV_EXCP'))) s";
constexpr const char* nlsDatabaseRows =
    "(VALUES ('NLS_LANGUAGE', 'AMERICAN'), ('NLS_TERRITORY', 'AMERICA'),"
    " ('NLS_CHARACTERSET', 'AL32UTF8'), ('NLS_NCHAR_CHARACTERSET', 'AL16UTF16'),"
    " ('NLS_SORT', 'BINARY'), ('NLS_COMP', 'BINARY'), ('NLS_LENGTH_SEMANTICS', 'BYTE')) s";

constexpr Column zoneColumns[] = {
    {"TZNAME", "V64", "json_extract(z.value, '$[0]')"},
    {"TZABBREV", "V64", "json_extract(z.value, '$[1]')"},
};

constexpr Column userColumns[] = {
    {"USERNAME", "V128", "ora_user()"},
    {"USER_ID", "N", "num_int(ora_uid())"},
    {"ACCOUNT_STATUS", "V32", "'OPEN'"},
    {"LOCK_DATE", "D", nullptr},
    {"EXPIRY_DATE", "D", nullptr},
    {"DEFAULT_TABLESPACE", "V30", "'USERS'"},
    {"TEMPORARY_TABLESPACE", "V30", "'TEMP'"},
    {"CREATED", "D", "(SELECT min(created) FROM ora_objects)"},
};
constexpr Column allUserColumns[] = {
    {"USERNAME", "V128", "ora_user()"},
    {"USER_ID", "N", "num_int(ora_uid())"},
    {"CREATED", "D", "(SELECT min(created) FROM ora_objects)"},
};
constexpr const char* oneRow = "(SELECT 1) s";

constexpr Column dualColumns[] = {{"DUMMY", "V1", "'X'"}};

constexpr Column tabColumns[] = {
    {"TNAME", "V128", "o.name"},
    {"TABTYPE", "V13", "o.kind"},
    {"CLUSTERID", "N", nullptr},
};
constexpr Column globalNameColumns[] = {
    {"GLOBAL_NAME", "V4000", "ora_sys_context('USERENV', 'DB_NAME')"},
};
constexpr Column privilegeColumns[] = {{"PRIVILEGE", "V40", "s.column1"}};
constexpr const char* privilegeRows =
    "(VALUES ('CREATE SESSION'), ('CREATE TABLE'), ('CREATE VIEW'), ('CREATE SEQUENCE'),"
    " ('CREATE SYNONYM'), ('CREATE TRIGGER')) s";
constexpr Column tablespaceColumns[] = {
    {"TABLESPACE_NAME", "V30", "s.column1"},
    {"BLOCK_SIZE", "N", "(SELECT page_size FROM pragma_page_size)"},
    {"STATUS", "V9", "'ONLINE'"},
    {"CONTENTS", "V21", "s.column2"},
};
constexpr const char* tablespaceRows = "(VALUES ('USERS', 'PERMANENT'), ('TEMP', 'TEMPORARY')) s";

// ora_dictionary() lists the views and their columns from the same tables that make them.
constexpr Column dictionaryColumns[] = {
    {"TABLE_NAME", "V128", "s.value ->> '$.name'"},
    {"COMMENTS", "V4000", "s.value ->> '$.comment'"},
};
constexpr Column dictionaryColumnColumns[] = {
    {"TABLE_NAME", "V128", "s.value ->> '$.name'"},
    {"COLUMN_NAME", "V128", "c.value"},
    {"COMMENTS", "V4000", nullptr},
};

constexpr DictionaryView views[] = {
    {"DUAL", Plain, nullptr, dualColumns, oneRow},
    {"TAB", Plain, nullptr, tabColumns,
     "ora_objects o WHERE o.kind IN ('TABLE', 'VIEW', 'SYNONYM')"},
    {"DICTIONARY", Plain, "Description of data dictionary tables and views", dictionaryColumns,
     "json_each(ora_dictionary()) s"},
    {"DICT_COLUMNS", Plain, "Description of columns in data dictionary tables and views",
     dictionaryColumnColumns, "json_each(ora_dictionary()) s, json_each(s.value, '$.columns') c"},
    {"ALL_USERS", Plain, "Information about all users of the database", allUserColumns, oneRow},
    {"DBA_USERS", Plain, "Information about all users of the database", userColumns, oneRow},
    {"V$TIMEZONE_NAMES", Plain, "Time zones by name", zoneColumns, "json_each(ora_zone_names()) z"},
    {"USER_USERS", Plain, "Information about the current user", userColumns, oneRow},
    {"USER_TABLESPACES", Plain, "Description of accessible tablespaces", tablespaceColumns,
     tablespaceRows},
    {"DBA_TABLESPACES", Plain, "Description of all tablespaces", tablespaceColumns, tablespaceRows},
    {"SESSION_PRIVS", Plain, "Privileges which the user currently has set", privilegeColumns,
     privilegeRows},
    {"GLOBAL_NAME", Plain, "global database name", globalNameColumns, oneRow},
    {"NLS_SESSION_PARAMETERS", Plain, "NLS parameters of the user session", nlsColumns, nlsRows},
    {"NLS_INSTANCE_PARAMETERS", Plain, "NLS parameters of the instance", nlsColumns,
     nlsDatabaseRows},
    {"NLS_DATABASE_PARAMETERS", Plain, "Permanent NLS parameters of the database", nlsColumns,
     nlsDatabaseRows},
    {"V$NLS_PARAMETERS", Plain, "Current NLS parameters", nlsColumns, nlsRows},
    {"V$VERSION", Plain, "Version of the engine", versionColumns, versionRows},
    {"V$SESSION", Plain, "This program's connections", sessionColumns, sessionRows},
    {"V$PROCESS", Plain, "This program's connections as processes", processColumns, sessionRows},
    {"V$PARAMETER", Plain, "Parameters of the session", parameterColumns, parameterRows},
    {"V$INSTANCE", Plain, "State of the instance", instanceColumns, oneRow},
    {"V$DATABASE", Plain, "The database", databaseColumns, oneRow},
};

constexpr DictionaryAlias aliases[] = {
    {"CAT", "USER_CATALOG"},     {"COLS", "USER_TAB_COLUMNS"},      {"DICT", "DICTIONARY"},
    {"IND", "USER_INDEXES"},     {"OBJ", "USER_OBJECTS"},           {"SEQ", "USER_SEQUENCES"},
    {"SYN", "USER_SYNONYMS"},    {"TABS", "USER_TABLES"},           {"V_$SESSION", "V$SESSION"},
    {"V_$PROCESS", "V$PROCESS"}, {"RECYCLEBIN", "USER_RECYCLEBIN"},
};

} // namespace

std::span<const DictionaryView> serverViews() {
    return views;
}

std::span<const DictionaryAlias> dictionaryAliases() {
    return aliases;
}

} // namespace ora
