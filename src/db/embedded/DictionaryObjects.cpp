#include "DictionaryView.h"

namespace ora {

namespace {

using Column = DictionaryColumn;
using enum DictionaryView::Form;

// What the dictionary calls the objects that sequences and triggers of this program make for
// themselves is left out: identity sequences stay, they are seen on the server as well.

constexpr Column tableColumns[] = {
    {"TABLE_NAME", "V128", "o.name"},
    {"TABLESPACE_NAME", "V30", "CASE WHEN t.temporary THEN NULL ELSE 'USERS' END"},
    {"CLUSTER_NAME", "V128", nullptr},
    {"IOT_NAME", "V128", nullptr},
    {"STATUS", "V8", "'VALID'"},
    {"LOGGING", "V3", "'YES'"},
    {"NUM_ROWS", "N", "t.num_rows"},
    {"BLOCKS", "N", nullptr},
    {"AVG_ROW_LEN", "N", nullptr},
    {"SAMPLE_SIZE", "N", "t.num_rows"},
    {"LAST_ANALYZED", "D", "t.analyzed"},
    {"PARTITIONED", "V3", "'NO'"},
    {"IOT_TYPE", "V12", nullptr},
    {"TEMPORARY", "V1", "CASE WHEN t.temporary THEN 'Y' ELSE 'N' END"},
    {"NESTED", "V3", "'NO'"},
    {"ROW_MOVEMENT", "V8", "'DISABLED'"},
    {"DURATION", "V15",
     "CASE t.temporary WHEN 1 THEN 'SYS$TRANSACTION' WHEN 2 THEN 'SYS$SESSION' END"},
    {"DROPPED", "V3", "'NO'"},
    {"READ_ONLY", "V3", "CASE WHEN t.read_only THEN 'YES' ELSE 'NO' END"},
};
constexpr const char* tableRows =
    "ora_objects o JOIN ora_tables t USING (id) WHERE o.kind = 'TABLE'";

constexpr Column viewColumns[] = {
    {"VIEW_NAME", "V128", "o.name"},
    {"TEXT_LENGTH", "N", "length(v.text)"},
    {"TEXT", "L", "v.text"},
    {"TYPE_TEXT_LENGTH", "N", nullptr},
    {"TYPE_TEXT", "V4000", nullptr},
    {"READ_ONLY", "V1", "CASE WHEN v.read_only THEN 'Y' ELSE 'N' END"},
};
constexpr const char* viewRows = "ora_objects o JOIN ora_views v USING (id) WHERE o.kind = 'VIEW'";

constexpr Column columnColumns[] = {
    {"TABLE_NAME", "V128", "o.name"},
    {"COLUMN_NAME", "V128", "c.name"},
    {"DATA_TYPE", "V128", "c.type_name"},
    {"DATA_TYPE_MOD", "V3", nullptr},
    {"DATA_TYPE_OWNER", "V128", nullptr},
    {"DATA_LENGTH", "N", "c.bytes"},
    {"DATA_PRECISION", "N",
     "CASE WHEN c.type_name = 'NUMBER' OR c.type_name LIKE 'INTERVAL%' THEN nullif(c.precision, 0)"
     " WHEN c.type_name = 'FLOAT' THEN c.binary_digits END"},
    {"DATA_SCALE", "N",
     "CASE WHEN c.type_name = 'NUMBER' THEN"
     " CASE WHEN c.precision > 0 OR c.scale_given THEN c.scale END"
     " WHEN c.type_name LIKE 'TIMESTAMP%' OR c.type_name LIKE 'INTERVAL DAY%' THEN c.scale"
     " WHEN c.type_name LIKE 'INTERVAL YEAR%' THEN 0 END"},
    {"NULLABLE", "V1", "CASE WHEN c.nullable THEN 'Y' ELSE 'N' END"},
    {"COLUMN_ID", "N",
     "CASE WHEN NOT c.invisible THEN (SELECT count(*) FROM ora_columns v WHERE v.object = c.object"
     " AND v.position <= c.position AND NOT v.invisible) END"},
    {"DEFAULT_LENGTH", "N", "length(coalesce(c.virtual_text, c.default_text))"},
    {"DATA_DEFAULT", "L", "coalesce(c.virtual_text, c.default_text)"},
    {"NUM_DISTINCT", "N", nullptr},
    {"NUM_NULLS", "N", nullptr},
    {"LAST_ANALYZED", "D", nullptr},
    {"CHARACTER_SET_NAME", "V44",
     "CASE WHEN c.type_name IN ('VARCHAR2', 'CHAR', 'CLOB', 'LONG') THEN 'CHAR_CS'"
     " WHEN c.type_name IN ('NVARCHAR2', 'NCHAR', 'NCLOB') THEN 'NCHAR_CS' END"},
    {"CHAR_LENGTH", "N", "CASE WHEN c.type_name LIKE '%CHAR%' THEN c.length ELSE 0 END"},
    {"CHAR_USED", "V1",
     "CASE WHEN c.type_name IN ('VARCHAR2', 'CHAR') THEN"
     " CASE WHEN c.char_length THEN 'C' ELSE 'B' END"
     " WHEN c.type_name IN ('NVARCHAR2', 'NCHAR') THEN 'C' END"},
    {"HIDDEN_COLUMN", "V3", "CASE WHEN c.invisible THEN 'YES' ELSE 'NO' END"},
    {"VIRTUAL_COLUMN", "V3", "CASE WHEN c.virtual_text IS NULL THEN 'NO' ELSE 'YES' END"},
    {"IDENTITY_COLUMN", "V3", "CASE WHEN c.identity THEN 'YES' ELSE 'NO' END"},
    {"DEFAULT_ON_NULL", "V3", "CASE WHEN c.default_on_null THEN 'YES' ELSE 'NO' END"},
};
constexpr const char* columnRows = "ora_objects o JOIN ora_columns c ON c.object = o.id"
                                   " WHERE o.kind IN ('TABLE', 'VIEW')";

constexpr Column indexColumns[] = {
    {"INDEX_NAME", "V128", "o.name"},
    {"INDEX_TYPE", "V27",
     "iif(EXISTS (SELECT 1 FROM ora_index_columns k WHERE k.index_id = i.id AND"
     " (k.number = 0 OR k.descending)), 'FUNCTION-BASED ', '') ||"
     " iif(i.bitmap, 'BITMAP', 'NORMAL')"},
    {"TABLE_OWNER", "V128", "ora_user()"},
    {"TABLE_NAME", "V128", "t.name"},
    {"TABLE_TYPE", "V11", "'TABLE'"},
    {"UNIQUENESS", "V9", "CASE WHEN i.is_unique THEN 'UNIQUE' ELSE 'NONUNIQUE' END"},
    {"COMPRESSION", "V13", "'DISABLED'"},
    {"PREFIX_LENGTH", "N", nullptr},
    {"TABLESPACE_NAME", "V30", "'USERS'"},
    {"BLEVEL", "N", nullptr},
    {"LEAF_BLOCKS", "N", nullptr},
    {"DISTINCT_KEYS", "N", "i.distinct_keys"},
    {"CLUSTERING_FACTOR", "N", nullptr},
    {"STATUS", "V8", "'VALID'"},
    {"NUM_ROWS", "N", "i.num_rows"},
    {"SAMPLE_SIZE", "N", "i.num_rows"},
    {"LAST_ANALYZED", "D", "i.analyzed"},
    {"PARTITIONED", "V3", "'NO'"},
    {"TEMPORARY", "V1", "'N'"},
    {"GENERATED", "V1", "CASE WHEN o.generated THEN 'Y' ELSE 'N' END"},
    {"FUNCIDX_STATUS", "V8",
     "CASE WHEN EXISTS (SELECT 1 FROM ora_index_columns k WHERE k.index_id = i.id AND"
     " (k.number = 0 OR k.descending)) THEN 'ENABLED' END"},
    {"VISIBILITY", "V9", "'VISIBLE'"},
};
constexpr const char* indexRows = "ora_indexes i JOIN ora_objects o ON o.id = i.id"
                                  " JOIN ora_objects t ON t.id = i.object";

constexpr Column indexColumnColumns[] = {
    {"INDEX_NAME", "V128", "o.name"},
    {"TABLE_NAME", "V128", "t.name"},
    // A key that is no plain column has a hidden one behind those of the table.
    {"COLUMN_NAME", "V4000",
     "CASE WHEN k.number > 0 AND NOT k.descending THEN c.name ELSE printf('SYS_NC%05d$',"
     " (SELECT last_column FROM ora_tables WHERE id = i.object) +"
     " (SELECT count(*) FROM ora_indexes j JOIN ora_index_columns h ON h.index_id = j.id"
     " WHERE j.object = i.object AND (h.number = 0 OR h.descending)"
     " AND (j.id < i.id OR (j.id = i.id AND h.position <= k.position)))) END"},
    {"COLUMN_POSITION", "N", "k.position"},
    {"COLUMN_LENGTH", "N", "c.bytes"},
    {"CHAR_LENGTH", "N", "c.length"},
    {"DESCEND", "V4", "CASE WHEN k.descending THEN 'DESC' ELSE 'ASC' END"},
};
constexpr const char* indexColumnRows =
    "ora_indexes i JOIN ora_objects o ON o.id = i.id JOIN ora_objects t ON t.id = i.object"
    " JOIN ora_index_columns k ON k.index_id = i.id"
    " LEFT JOIN ora_columns c ON c.object = i.object AND c.number = k.number AND k.number > 0";

constexpr Column indexExpressionColumns[] = {
    {"INDEX_NAME", "V128", "o.name"},
    {"TABLE_NAME", "V128", "t.name"},
    {"COLUMN_EXPRESSION", "L",
     "iif(k.number = 0, k.expression_text, (SELECT '\"' || c.name || '\"' FROM ora_columns c"
     " WHERE c.object = i.object AND c.number = k.number))"},
    {"COLUMN_POSITION", "N", "k.position"},
};
constexpr const char* indexExpressionRows =
    "ora_indexes i JOIN ora_objects o ON o.id = i.id JOIN ora_objects t ON t.id = i.object"
    " JOIN ora_index_columns k ON k.index_id = i.id WHERE k.number = 0 OR k.descending";

constexpr Column constraintColumns[] = {
    {"CONSTRAINT_NAME", "V128", "k.name"},
    {"CONSTRAINT_TYPE", "V1", "k.kind"},
    {"TABLE_NAME", "V128", "t.name"},
    {"SEARCH_CONDITION", "L", "k.condition_text"},
    {"R_OWNER", "V128", "CASE WHEN k.referenced IS NOT NULL THEN ora_user() END"},
    {"R_CONSTRAINT_NAME", "V128",
     "(SELECT r.name FROM ora_constraints r WHERE r.id = k.referenced)"},
    {"DELETE_RULE", "V9", "k.delete_rule"},
    {"STATUS", "V8", "CASE WHEN k.enabled THEN 'ENABLED' ELSE 'DISABLED' END"},
    {"DEFERRABLE", "V14", "iif(k.can_defer, 'DEFERRABLE', 'NOT DEFERRABLE')"},
    {"DEFERRED", "V9", "iif(k.is_deferred, 'DEFERRED', 'IMMEDIATE')"},
    {"VALIDATED", "V13",
     "iif(k.enabled AND k.validated AND k.kind NOT IN ('V', 'O'), 'VALIDATED', 'NOT VALIDATED')"},
    {"GENERATED", "V14", "CASE WHEN k.generated THEN 'GENERATED NAME' ELSE 'USER NAME' END"},
    {"BAD", "V3", nullptr},
    {"RELY", "V4", nullptr},
    {"LAST_CHANGE", "D", "k.changed"},
    {"INDEX_OWNER", "V128", "CASE WHEN k.index_id IS NOT NULL THEN ora_user() END"},
    {"INDEX_NAME", "V128", "(SELECT i.name FROM ora_objects i WHERE i.id = k.index_id)"},
    {"INVALID", "V7", nullptr},
    {"VIEW_RELATED", "V14", nullptr},
};
constexpr const char* constraintRows = "ora_constraints k JOIN ora_objects t ON t.id = k.object";

constexpr Column constraintColumnColumns[] = {
    {"CONSTRAINT_NAME", "V128", "k.name"},
    {"TABLE_NAME", "V128", "t.name"},
    {"COLUMN_NAME", "V4000", "c.name"},
    {"POSITION", "N", "CASE WHEN k.kind <> 'C' THEN p.position END"},
};
constexpr const char* constraintColumnRows =
    "ora_constraints k JOIN ora_objects t ON t.id = k.object"
    " JOIN ora_constraint_columns p ON p.constraint_id = k.id"
    " JOIN ora_columns c ON c.object = k.object AND c.number = p.number";

constexpr Column triggerColumns[] = {
    {"TRIGGER_NAME", "V128", "o.name"},
    {"TRIGGER_TYPE", "V16", "g.timing || iif(g.timing IN ('BEFORE', 'AFTER'), ' EACH ROW', '')"},
    {"TRIGGERING_EVENT", "V246", "g.events"},
    {"TABLE_OWNER", "V128", "ora_user()"},
    {"BASE_OBJECT_TYPE", "V18", "t.kind"},
    {"TABLE_NAME", "V128", "t.name"},
    {"COLUMN_NAME", "V4000", nullptr},
    {"REFERENCING_NAMES", "V422", "'REFERENCING NEW AS NEW OLD AS OLD'"},
    {"WHEN_CLAUSE", "V4000", "nullif(g.when_text, '')"},
    {"STATUS", "V8", "CASE WHEN g.enabled THEN 'ENABLED' ELSE 'DISABLED' END"},
    {"DESCRIPTION", "V4000", "g.description"},
    {"ACTION_TYPE", "V11", "'PL/SQL'"},
    {"TRIGGER_BODY", "L", "g.body"},
};
constexpr const char* triggerRows = "ora_triggers g JOIN ora_objects o ON o.id = g.id"
                                    " JOIN ora_objects t ON t.id = g.object";

constexpr Column sequenceColumns[] = {
    {"SEQUENCE_NAME", "V128", "o.name"},
    {"MIN_VALUE", "T", "s.min_value"},
    {"MAX_VALUE", "T", "s.max_value"},
    {"INCREMENT_BY", "T", "s.increment"},
    {"CYCLE_FLAG", "V1", "CASE WHEN s.cycle THEN 'Y' ELSE 'N' END"},
    {"ORDER_FLAG", "V1", "CASE WHEN s.ordered THEN 'Y' ELSE 'N' END"},
    {"CACHE_SIZE", "N", "s.cache"},
    {"LAST_NUMBER", "T", "s.last_number"},
};
constexpr const char* sequenceRows = "ora_objects o JOIN ora_sequences s USING (id)"
                                     " WHERE o.kind = 'SEQUENCE'";

constexpr Column synonymColumns[] = {
    {"SYNONYM_NAME", "V128", "o.name"},
    {"TABLE_OWNER", "V128", "coalesce(nullif(s.owner, ''), ora_user())"},
    {"TABLE_NAME", "V128", "s.target"},
    {"DB_LINK", "V128", nullptr},
};
constexpr const char* synonymRows = "ora_objects o JOIN ora_synonyms s USING (id)"
                                    " WHERE o.kind = 'SYNONYM'";

constexpr Column objectColumns[] = {
    {"OBJECT_NAME", "V128", "o.name"},
    {"SUBOBJECT_NAME", "V128", nullptr},
    {"OBJECT_ID", "N", "o.id"},
    {"DATA_OBJECT_ID", "N", "CASE WHEN o.kind IN ('TABLE', 'INDEX') THEN o.id END"},
    {"OBJECT_TYPE", "V23", "o.kind"},
    {"CREATED", "D", "o.created"},
    {"LAST_DDL_TIME", "D", "o.changed"},
    {"TIMESTAMP", "V19", "ora_to_char_date(o.changed, 'YYYY-MM-DD:HH24:MI:SS')"},
    {"STATUS", "V7", "iif(o.kind <> 'VIEW' OR ora_view_valid(o.name), 'VALID', 'INVALID')"},
    {"TEMPORARY", "V1",
     "CASE WHEN EXISTS (SELECT 1 FROM ora_tables t WHERE t.id = o.id AND t.temporary)"
     " THEN 'Y' ELSE 'N' END"},
    {"GENERATED", "V1", "CASE WHEN o.generated THEN 'Y' ELSE 'N' END"},
    {"SECONDARY", "V1", "'N'"},
    {"NAMESPACE", "N", "o.space"},
};

constexpr Column tableCommentColumns[] = {
    {"TABLE_NAME", "V128", "o.name"},
    {"TABLE_TYPE", "V11", "o.kind"},
    {"COMMENTS", "V4000", "o.comment"},
};
constexpr Column columnCommentColumns[] = {
    {"TABLE_NAME", "V128", "o.name"},
    {"COLUMN_NAME", "V128", "c.name"},
    {"COMMENTS", "V4000", "c.comment"},
};

constexpr Column catalogColumns[] = {
    {"TABLE_NAME", "V128", "o.name"},
    {"TABLE_TYPE", "V11", "o.kind"},
};
constexpr const char* relationRows =
    "ora_objects o WHERE o.kind IN ('TABLE', 'VIEW', 'SYNONYM', 'SEQUENCE')";

constexpr Column identityColumns[] = {
    {"TABLE_NAME", "V128", "t.name"},
    {"COLUMN_NAME", "V128", "c.name"},
    {"GENERATION_TYPE", "V10", "CASE c.identity WHEN 1 THEN 'ALWAYS' ELSE 'BY DEFAULT' END"},
    {"SEQUENCE_NAME", "V128", "o.name"},
};
constexpr const char* identityRows =
    "ora_sequences s JOIN ora_objects o USING (id) JOIN ora_objects t ON t.id = s.identity_of"
    " JOIN ora_columns c ON c.object = t.id AND c.identity > 0";

constexpr Column dependencyColumns[] = {
    {"NAME", "V128", "d.value ->> '$.name'"},
    {"TYPE", "V18", "d.value ->> '$.type'"},
    {"REFERENCED_OWNER", "V128", "d.value ->> '$.owner'"},
    {"REFERENCED_NAME", "V128", "d.value ->> '$.referenced'"},
    {"REFERENCED_TYPE", "V18", "d.value ->> '$.kind'"},
    {"REFERENCED_LINK_NAME", "V128", nullptr},
    {"SCHEMAID", "N", "num_int(ora_uid())"},
    {"DEPENDENCY_TYPE", "V4", "'HARD'"},
};

constexpr Column publicSynonymColumns[] = {
    {"OWNER", "V128", "iif(o.kind = 'SYNONYM', ora_user(), 'PUBLIC')"},
    {"SYNONYM_NAME", "V128", "o.name"},
    {"TABLE_OWNER", "V128", "coalesce(nullif(s.owner, ''), ora_user())"},
    {"TABLE_NAME", "V128", "s.target"},
    {"DB_LINK", "V128", nullptr},
};
constexpr const char* allSynonymRows = "ora_objects o JOIN ora_synonyms s USING (id)";

constexpr Column sourceColumns[] = {
    {"NAME", "V128", nullptr},
    {"TYPE", "V12", nullptr},
    {"LINE", "N", nullptr},
    {"TEXT", "V4000", nullptr},
};
constexpr Column errorColumns[] = {
    {"NAME", "V128", nullptr},    {"TYPE", "V12", nullptr},         {"SEQUENCE", "N", nullptr},
    {"LINE", "N", nullptr},       {"POSITION", "N", nullptr},       {"TEXT", "V4000", nullptr},
    {"ATTRIBUTE", "V9", nullptr}, {"MESSAGE_NUMBER", "N", nullptr},
};
constexpr Column procedureColumns[] = {
    {"OBJECT_NAME", "V128", nullptr},
    {"PROCEDURE_NAME", "V128", nullptr},
    {"OBJECT_ID", "N", nullptr},
    {"OBJECT_TYPE", "V13", nullptr},
};
constexpr Column linkColumns[] = {
    {"DB_LINK", "V128", nullptr},
    {"USERNAME", "V128", nullptr},
    {"HOST", "V2000", nullptr},
    {"CREATED", "D", nullptr},
};

constexpr DictionaryView views[] = {
    {"CATALOG", Owned, "Tables, views, synonyms and sequences owned by the user", catalogColumns,
     relationRows},
    {"COL_COMMENTS", Owned, "Comments on columns of user's tables and views", columnCommentColumns,
     columnRows},
    {"CONSTRAINTS", OwnerShown, "Constraint definitions on user's own tables", constraintColumns,
     constraintRows},
    {"CONS_COLUMNS", OwnerShown, "Columns in constraint definitions on the user's tables",
     constraintColumnColumns, constraintColumnRows},
    {"DB_LINKS", Owned, "Database links owned by the user", linkColumns, nullptr},
    {"DEPENDENCIES", Owned, "What the user's views and triggers are made of", dependencyColumns,
     "json_each(ora_dependencies()) d"},
    {"ERRORS", Owned, "Current errors on stored objects owned by the user", errorColumns, nullptr},
    {"INDEXES", Owned, "Description of the user's own indexes", indexColumns, indexRows},
    {"IND_COLUMNS", Owned, "Columns of the user's indexes", indexColumnColumns, indexColumnRows},
    {"IND_EXPRESSIONS", Owned, "Functional index expressions of the user's indexes",
     indexExpressionColumns, indexExpressionRows},
    {"OBJECTS", Owned, "Objects owned by the user", objectColumns,
     "ora_objects o WHERE o.kind <> 'PUBLIC SYNONYM'"},
    {"PROCEDURES", Owned, "Stored procedures owned by the user", procedureColumns, nullptr},
    {"SEQUENCES", Owned, "Description of the user's own sequences", sequenceColumns, sequenceRows},
    {"SOURCE", Owned, "Source of stored objects owned by the user", sourceColumns, nullptr},
    {"USER_SYNONYMS", Plain, "The user's private synonyms", synonymColumns, synonymRows},
    {"ALL_SYNONYMS", Plain, "All synonyms that the user may see", publicSynonymColumns,
     allSynonymRows},
    {"DBA_SYNONYMS", Plain, "All synonyms of the database", publicSynonymColumns, allSynonymRows},
    {"TABLES", Owned, "Description of the user's own relational tables", tableColumns, tableRows},
    {"TAB_COLS", Owned, "Columns of user's tables and views", columnColumns, columnRows},
    {"TAB_COLUMNS", Owned, "Columns of user's tables and views", columnColumns, columnRows},
    {"TAB_COMMENTS", Owned, "Comments on the tables and views owned by the user",
     tableCommentColumns, "ora_objects o WHERE o.kind IN ('TABLE', 'VIEW')"},
    {"TAB_IDENTITY_COLS", Owned, "Identity columns of the user's tables", identityColumns,
     identityRows},
    {"TRIGGERS", Owned, "Triggers owned by the user", triggerColumns, triggerRows},
    {"VIEWS", Owned, "Description of the user's own views", viewColumns, viewRows},
};

} // namespace

std::span<const DictionaryView> objectViews() {
    return views;
}

} // namespace ora
