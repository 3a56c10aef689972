#include "DictionaryView.h"

// Views of what this database has none of, or only one fixed kind, where a query gives no rows
// instead of an error; and who may do what.

namespace ora {

namespace {

using Column = DictionaryColumn;
using enum DictionaryView::Form;

constexpr Column recycleBinColumns[] = {
    {"OBJECT_NAME", "V128", nullptr}, {"ORIGINAL_NAME", "V128", nullptr},
    {"OPERATION", "V9", nullptr},     {"TYPE", "V25", nullptr},
    {"TS_NAME", "V30", nullptr},      {"CREATETIME", "V19", nullptr},
    {"DROPTIME", "V19", nullptr},     {"DROPSCN", "N", nullptr},
    {"CAN_UNDROP", "V3", nullptr},    {"CAN_PURGE", "V3", nullptr},
    {"RELATED", "N", nullptr},        {"BASE_OBJECT", "N", nullptr},
    {"PURGE_OBJECT", "N", nullptr},   {"SPACE", "N", nullptr},
};
constexpr Column tablePrivilegeColumns[] = {
    {"GRANTEE", "V128", "g.grantee"},    {"OWNER", "V128", "ora_user()"},
    {"TABLE_NAME", "V128", "o.name"},    {"GRANTOR", "V128", "ora_user()"},
    {"PRIVILEGE", "V40", "g.privilege"}, {"GRANTABLE", "V3", "iif(g.grantable, 'YES', 'NO')"},
    {"HIERARCHY", "V3", "'NO'"},         {"TYPE", "V24", "o.kind"},
};
constexpr Column madePrivilegeColumns[] = {
    {"GRANTEE", "V128", "g.grantee"},
    {"TABLE_NAME", "V128", "o.name"},
    {"GRANTOR", "V128", "ora_user()"},
    {"PRIVILEGE", "V40", "g.privilege"},
    {"GRANTABLE", "V3", "iif(g.grantable, 'YES', 'NO')"},
    {"HIERARCHY", "V3", "'NO'"},
    {"TYPE", "V24", "o.kind"},
};
constexpr Column receivedPrivilegeColumns[] = {
    {"OWNER", "V128", nullptr},    {"TABLE_NAME", "V128", nullptr}, {"GRANTOR", "V128", nullptr},
    {"PRIVILEGE", "V40", nullptr}, {"GRANTABLE", "V3", nullptr},    {"HIERARCHY", "V3", nullptr},
    {"TYPE", "V24", nullptr},
};
constexpr Column allTablePrivilegeColumns[] = {
    {"GRANTOR", "V128", "ora_user()"},
    {"GRANTEE", "V128", "g.grantee"},
    {"TABLE_SCHEMA", "V128", "ora_user()"},
    {"TABLE_NAME", "V128", "o.name"},
    {"PRIVILEGE", "V40", "g.privilege"},
    {"GRANTABLE", "V3", "iif(g.grantable, 'YES', 'NO')"},
    {"HIERARCHY", "V3", "'NO'"},
    {"TYPE", "V24", "o.kind"},
};
constexpr Column roleTablePrivilegeColumns[] = {
    {"ROLE", "V128", nullptr},       {"OWNER", "V128", nullptr},
    {"TABLE_NAME", "V128", nullptr}, {"COLUMN_NAME", "V128", nullptr},
    {"PRIVILEGE", "V40", nullptr},   {"GRANTABLE", "V3", nullptr},
};
constexpr Column columnPrivilegeColumns[] = {
    {"GRANTEE", "V128", "g.grantee"},
    {"OWNER", "V128", "ora_user()"},
    {"TABLE_NAME", "V128", "o.name"},
    {"COLUMN_NAME", "V128", "g.column_name"},
    {"GRANTOR", "V128", "ora_user()"},
    {"PRIVILEGE", "V40", "g.privilege"},
    {"GRANTABLE", "V3", "iif(g.grantable, 'YES', 'NO')"},
};
constexpr const char* grantRows =
    "ora_grants g JOIN ora_objects o ON o.id = g.object WHERE g.column_name = ''";
constexpr const char* columnGrantRows =
    "ora_grants g JOIN ora_objects o ON o.id = g.object WHERE g.column_name <> ''";
constexpr Column roleColumns[] = {{"ROLE", "V128", "s.column1"}};
constexpr Column rolePrivilegeColumns[] = {
    {"USERNAME", "V128", "ora_user()"}, {"GRANTED_ROLE", "V128", "s.column1"},
    {"ADMIN_OPTION", "V3", "'NO'"},     {"DEFAULT_ROLE", "V3", "'YES'"},
    {"OS_GRANTED", "V3", "'NO'"},
};
constexpr const char* roleRows = "(VALUES ('CONNECT'), ('RESOURCE')) s";
constexpr Column systemPrivilegeColumns[] = {
    {"USERNAME", "V128", "ora_user()"},
    {"PRIVILEGE", "V40", "s.column1"},
    {"ADMIN_OPTION", "V3", "'NO'"},
};
constexpr const char* systemPrivilegeRows =
    "(VALUES ('CREATE SESSION'), ('CREATE TABLE'), ('CREATE VIEW'), ('CREATE SEQUENCE'),"
    " ('CREATE SYNONYM'), ('CREATE TRIGGER')) s";
constexpr Column quotaColumns[] = {
    {"TABLESPACE_NAME", "V30", "'USERS'"},
    {"BYTES", "N", "0"},
    {"MAX_BYTES", "N", "-1"},
    {"BLOCKS", "N", "0"},
    {"MAX_BLOCKS", "N", "-1"},
};
constexpr Column materializedViewColumns[] = {
    {"MVIEW_NAME", "V128", nullptr},
    {"CONTAINER_NAME", "V128", nullptr},
    {"QUERY", "L", nullptr},
    {"UPDATABLE", "V1", nullptr},
    {"REFRESH_MODE", "V6", nullptr},
    {"REFRESH_METHOD", "V8", nullptr},
    {"BUILD_MODE", "V9", nullptr},
    {"LAST_REFRESH_TYPE", "V8", nullptr},
    {"LAST_REFRESH_DATE", "D", nullptr},
    {"STALENESS", "V19", nullptr},
};
constexpr Column typeColumns[] = {
    {"TYPE_NAME", "V128", nullptr},
    {"TYPECODE", "V128", nullptr},
    {"ATTRIBUTES", "N", nullptr},
    {"METHODS", "N", nullptr},
};
constexpr Column jobColumns[] = {
    {"JOB", "N", nullptr},       {"LOG_USER", "V128", nullptr}, {"LAST_DATE", "D", nullptr},
    {"NEXT_DATE", "D", nullptr}, {"BROKEN", "V1", nullptr},     {"INTERVAL", "V200", nullptr},
    {"WHAT", "V4000", nullptr},
};
constexpr Column schedulerColumns[] = {
    {"JOB_NAME", "V128", nullptr},
    {"JOB_TYPE", "V16", nullptr},
    {"ENABLED", "V5", nullptr},
    {"STATE", "V20", nullptr},
};
constexpr Column argumentColumns[] = {
    {"OBJECT_NAME", "V128", nullptr},   {"PACKAGE_NAME", "V128", nullptr},
    {"ARGUMENT_NAME", "V128", nullptr}, {"POSITION", "N", nullptr},
    {"DATA_TYPE", "V30", nullptr},      {"IN_OUT", "V9", nullptr},
};
constexpr Column partitionColumns[] = {
    {"TABLE_NAME", "V128", nullptr},     {"PARTITION_NAME", "V128", nullptr},
    {"HIGH_VALUE", "L", nullptr},        {"PARTITION_POSITION", "N", nullptr},
    {"TABLESPACE_NAME", "V30", nullptr}, {"NUM_ROWS", "N", nullptr},
};
constexpr Column partitionedTableColumns[] = {
    {"TABLE_NAME", "V128", nullptr},
    {"PARTITIONING_TYPE", "V9", nullptr},
    {"PARTITION_COUNT", "N", nullptr},
};
constexpr Column lobColumns[] = {
    {"TABLE_NAME", "V128", "t.name"},  {"COLUMN_NAME", "V4000", "c.name"},
    {"SEGMENT_NAME", "V128", nullptr}, {"TABLESPACE_NAME", "V30", "'USERS'"},
    {"INDEX_NAME", "V128", nullptr},   {"CHUNK", "N", "8192"},
    {"CACHE", "V10", "'NO'"},          {"IN_ROW", "V3", "'YES'"},
};
constexpr const char* lobRows =
    "ora_columns c JOIN ora_objects t ON t.id = c.object AND t.kind = 'TABLE'"
    " WHERE c.type_name IN ('CLOB', 'NCLOB', 'BLOB')";
constexpr Column unusedColumns[] = {{"TABLE_NAME", "V128", nullptr}, {"COUNT", "N", nullptr}};
constexpr Column segmentColumns[] = {
    {"SEGMENT_NAME", "V128", "o.name"},
    {"PARTITION_NAME", "V128", nullptr},
    {"SEGMENT_TYPE", "V18", "o.kind"},
    {"TABLESPACE_NAME", "V30", "'USERS'"},
    {"BYTES", "N", "65536"},
    {"BLOCKS", "N", "8"},
    {"EXTENTS", "N", "1"},
};
constexpr const char* segmentRows = "ora_objects o WHERE o.kind IN ('TABLE', 'INDEX')";
constexpr Column statisticColumns[] = {
    {"TABLE_NAME", "V128", "o.name"},     {"OBJECT_TYPE", "V12", "'TABLE'"},
    {"NUM_ROWS", "N", "t.num_rows"},      {"BLOCKS", "N", nullptr},
    {"AVG_ROW_LEN", "N", nullptr},        {"SAMPLE_SIZE", "N", "t.num_rows"},
    {"LAST_ANALYZED", "D", "t.analyzed"}, {"STALE_STATS", "V3", nullptr},
};
constexpr const char* statisticRows =
    "ora_objects o JOIN ora_tables t USING (id) WHERE o.kind = 'TABLE'";
constexpr Column columnStatisticColumns[] = {
    {"TABLE_NAME", "V128", nullptr},  {"COLUMN_NAME", "V128", nullptr},
    {"NUM_DISTINCT", "N", nullptr},   {"LOW_VALUE", "R1000", nullptr},
    {"HIGH_VALUE", "R1000", nullptr}, {"DENSITY", "N", nullptr},
    {"NUM_NULLS", "N", nullptr},      {"NUM_BUCKETS", "N", nullptr},
    {"LAST_ANALYZED", "D", nullptr},  {"HISTOGRAM", "V15", nullptr},
};
constexpr Column triggerColumnColumns[] = {
    {"TRIGGER_NAME", "V128", nullptr}, {"TABLE_NAME", "V128", nullptr},
    {"COLUMN_NAME", "V4000", nullptr}, {"COLUMN_LIST", "V3", nullptr},
    {"COLUMN_USAGE", "V17", nullptr},
};
constexpr Column lockColumns[] = {
    {"ADDR", "R8", nullptr},   {"SID", "N", nullptr},   {"TYPE", "V2", nullptr},
    {"ID1", "N", nullptr},     {"ID2", "N", nullptr},   {"LMODE", "N", nullptr},
    {"REQUEST", "N", nullptr}, {"CTIME", "N", nullptr}, {"BLOCK", "N", nullptr},
};
constexpr Column lockedObjectColumns[] = {
    {"OBJECT_ID", "N", nullptr},          {"SESSION_ID", "N", nullptr},
    {"ORACLE_USERNAME", "V128", nullptr}, {"OS_USER_NAME", "V128", nullptr},
    {"LOCKED_MODE", "N", nullptr},
};
constexpr Column transactionColumns[] = {
    {"ADDR", "R8", nullptr},
    {"XIDUSN", "N", nullptr},
    {"STATUS", "V16", nullptr},
    {"START_TIME", "V20", nullptr},
};

constexpr DictionaryView views[] = {
    {"USER_RECYCLEBIN", Plain, "User view of his recyclebin", recycleBinColumns, nullptr},
    {"DBA_RECYCLEBIN", Plain, "The recyclebin", recycleBinColumns, nullptr},
    {"USER_TAB_PRIVS", Plain, "Grants on objects", tablePrivilegeColumns, grantRows},
    {"USER_TAB_PRIVS_MADE", Plain, "All grants on objects owned by the user", madePrivilegeColumns,
     grantRows},
    {"USER_TAB_PRIVS_RECD", Plain, "Grants on objects for which the user is the grantee",
     receivedPrivilegeColumns, nullptr},
    {"ALL_TAB_PRIVS", Plain, "Grants on objects", allTablePrivilegeColumns, grantRows},
    {"ALL_TAB_PRIVS_MADE", Plain, "Grants on the user's objects", tablePrivilegeColumns, grantRows},
    {"DBA_TAB_PRIVS", Plain, "All grants on objects", tablePrivilegeColumns, grantRows},
    {"ROLE_TAB_PRIVS", Plain, "Table privileges granted to roles", roleTablePrivilegeColumns,
     nullptr},
    {"USER_COL_PRIVS", Plain, "Grants on columns", columnPrivilegeColumns, columnGrantRows},
    {"ALL_COL_PRIVS", Plain, "Grants on columns", columnPrivilegeColumns, columnGrantRows},
    {"SESSION_ROLES", Plain, "Roles which the user currently has enabled", roleColumns, roleRows},
    {"DBA_ROLES", Plain, "All roles which exist in the database", roleColumns, roleRows},
    {"USER_ROLE_PRIVS", Plain, "Roles granted to the user", rolePrivilegeColumns, roleRows},
    {"USER_SYS_PRIVS", Plain, "System privileges granted to the user", systemPrivilegeColumns,
     systemPrivilegeRows},
    {"USER_TS_QUOTAS", Plain, "Tablespace quotas for the user", quotaColumns, "(SELECT 1)"},
    {"SEGMENTS", Owned, "Storage allocated for the user's objects", segmentColumns, segmentRows},
    {"TAB_STATISTICS", Owned, "Optimizer statistics of the user's tables", statisticColumns,
     statisticRows},
    {"TAB_COL_STATISTICS", Owned, "Optimizer statistics of the user's columns",
     columnStatisticColumns, nullptr},
    {"MVIEWS", Owned, "All materialized views in the database", materializedViewColumns, nullptr},
    {"TYPES", Owned, "Types owned by the user", typeColumns, nullptr},
    {"USER_JOBS", Plain, "Jobs owned by the user", jobColumns, nullptr},
    {"DBA_JOBS", Plain, "All jobs in the database", jobColumns, nullptr},
    {"SCHEDULER_JOBS", Owned, "Scheduler jobs of the user", schedulerColumns, nullptr},
    {"ARGUMENTS", Owned, "Arguments of stored code that the user may run", argumentColumns,
     nullptr},
    {"TAB_PARTITIONS", Owned, "Partitions of the user's tables", partitionColumns, nullptr},
    {"PART_TABLES", Owned, "The user's partitioned tables", partitionedTableColumns, nullptr},
    {"LOBS", Owned, "The user's LOB columns", lobColumns, lobRows},
    {"UNUSED_COL_TABS", Owned, "Tables with unused columns", unusedColumns, nullptr},
    {"TRIGGER_COLS", Owned, "Use of columns in the user's triggers", triggerColumnColumns, nullptr},
    {"V$LOCK", Plain, "Locks held", lockColumns, nullptr},
    {"V$LOCKED_OBJECT", Plain, "Objects that are locked", lockedObjectColumns, nullptr},
    {"V$TRANSACTION", Plain, "Active transactions", transactionColumns, nullptr},
};

} // namespace

std::span<const DictionaryView> absentViews() {
    return views;
}

} // namespace ora
