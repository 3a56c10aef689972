#include "ErrorText.h"

#include <algorithm>
#include <iterator>

namespace ora {

namespace {

struct Sentence {
    int code;
    const char* text;
};

// Numbers whose sentence holds no names.
constexpr Sentence sentences[] = {
    {54, "resource busy and acquire with NOWAIT specified or timeout expired"},
    {900, "invalid SQL statement"},
    {901, "invalid CREATE command"},
    {902, "invalid datatype"},
    {903, "invalid table name"},
    {904, "invalid identifier"},
    {905, "missing keyword"},
    {906, "missing left parenthesis"},
    {907, "missing right parenthesis"},
    {908, "missing NULL keyword"},
    {909, "invalid number of arguments"},
    {910, "specified length too long for its datatype"},
    {911, "invalid character"},
    {913, "too many values"},
    {917, "missing comma"},
    {918, "column ambiguously defined"},
    {920, "invalid relational operator"},
    {921, "unexpected end of SQL command"},
    {922, "missing or invalid option"},
    {923, "FROM keyword not found where expected"},
    {924, "missing BY keyword"},
    {925, "missing INTO keyword"},
    {926, "missing VALUES keyword"},
    {927, "missing equal sign"},
    {928, "missing SELECT keyword"},
    {929, "missing period"},
    {931, "missing identifier"},
    {932, "inconsistent datatypes"},
    {933, "SQL command not properly ended"},
    {934, "group function is not allowed here"},
    {935, "group function is nested too deeply"},
    {936, "missing expression"},
    {937, "not a single-group group function"},
    {938, "not enough arguments for function"},
    {939, "too many arguments for function"},
    {940, "invalid ALTER command"},
    {942, "table or view does not exist"},
    {944, "insufficient number of clustered columns"},
    {946, "missing TO keyword"},
    {947, "not enough values"},
    {950, "invalid DROP option"},
    {953, "missing or invalid index name"},
    {955, "name is already used by an existing object"},
    {957, "duplicate column name"},
    {959, "tablespace does not exist"},
    {960, "ambiguous column naming in select list"},
    {962, "too many group-by expressions"},
    {964, "table name not in FROM list"},
    {967, "missing WHERE keyword"},
    {968, "missing INDEX keyword"},
    {969, "missing ON keyword"},
    {970, "missing WITH keyword"},
    {971, "missing SET keyword"},
    {972, "identifier is too long"},
    {974, "invalid PCTFREE value (percentage)"},
    {976, "Specified pseudocolumn or operator not allowed here."},
    {978, "nested group function without GROUP BY"},
    {979, "not a GROUP BY expression"},
    {980, "synonym translation is no longer valid"},
    {984, "column not allowed here"},
    {985, "invalid program name"},
    {987, "missing or invalid username(s)"},
    {990, "missing or invalid privilege"},
    {995, "missing or invalid synonym identifier"},
    {996, "the concatenate operator is ||, not |"},
    {997, "illegal use of LONG datatype"},
    {998, "must name this expression with a column alias"},
    {999, "invalid view name"},
    {1002, "fetch out of sequence"},
    {1008, "not all variables bound"},
    {1031, "insufficient privileges"},
    {1402, "view WITH CHECK OPTION where-clause violation"},
    {1408, "such column list already indexed"},
    {1410, "invalid ROWID"},
    {1427, "single-row subquery returns more than one row"},
    {1428, "argument is out of range"},
    {1436, "CONNECT BY loop in user data"},
    {1445, "cannot select ROWID from, or sample, a join view without a key-preserved table"},
    {1446, "cannot select ROWID from, or sample, a view with DISTINCT, GROUP BY, etc."},
    {1473, "cannot have subqueries in CONNECT BY clause"},
    {1468, "a predicate may reference only one outer-joined table"},
    {1702, "a view is not appropriate here"},
    {1704, "string literal too long"},
    {1719, "outer join operator (+) not allowed in operand of OR or IN"},
    {1722, "invalid number"},
    {1723, "zero-length columns are not allowed"},
    {1727, "numeric precision specifier is out of range (1 to 38)"},
    {1728, "numeric scale specifier is out of range (-84 to 127)"},
    {1730, "invalid number of column names specified"},
    {1732, "data manipulation operation not legal on this view"},
    {1733, "virtual column not allowed here"},
    {1735, "invalid ALTER TABLE option"},
    {1743, "only pure functions can be indexed"},
    {1749, "you may not GRANT/REVOKE privileges to/from yourself"},
    {1752, "cannot delete from view without exactly one key-preserved table"},
    {1754, "a table may contain only one column of type LONG"},
    {1773, "may not specify column datatypes in this CREATE TABLE"},
    {1740, "missing double quote in identifier"},
    {1741, "illegal zero-length identifier"},
    {1742, "comment not terminated properly"},
    {1747, "invalid user.table.column, table.column, or column specification"},
    {1748, "only simple column names allowed here"},
    {1756, "quoted string not properly terminated"},
    {1758, "table must be empty to add mandatory (NOT NULL) column"},
    {1767, "UPDATE ... SET expression must be a subquery"},
    {1776, "cannot modify more than one base table through a join view"},
    {1779, "cannot modify a column which maps to a non key-preserved table"},
    {1780, "string literal required"},
    {1785, "ORDER BY item must be the number of a SELECT-list expression"},
    {1786, "FOR UPDATE of this query expression is not allowed"},
    {1788, "CONNECT BY clause required in this query block"},
    {1789, "query block has incorrect number of result columns"},
    {1790, "expression must have same datatype as corresponding expression"},
    {1791, "not a SELECTed expression"},
    {1792, "maximum number of columns in a table or view is 1000"},
    {1797, "this operator must be followed by ANY or ALL"},
    {1799, "a column may not be outer-joined to a subquery"},
    {1861, "literal does not match format string"},
    {1867, "the interval is invalid"},
    {1873, "the leading precision of the interval is too small"},
    {1927, "cannot REVOKE privileges you did not grant"},
    {2000, "missing ALWAYS keyword"},
    {2019, "connection description for remote database not found"},
    {2096, "specified initialization parameter is not modifiable with this option"},
    {2181, "invalid option to ROLLBACK WORK"},
    {2185, "a token other than WORK follows COMMIT"},
    {2207, "invalid INITIAL storage option value"},
    {2248, "invalid option for ALTER SESSION"},
    {2250, "missing or invalid constraint name"},
    {2251, "subquery not allowed here"},
    {2253, "constraint specification not allowed here"},
    {2258, "duplicate or conflicting NULL and/or NOT NULL specifications"},
    {2260, "table can have only one primary key"},
    {2261, "such unique or primary key already exists in the table"},
    {2263, "need to specify the datatype for this column"},
    {2264, "name already used by an existing constraint"},
    {2277, "invalid sequence name"},
    {2287, "sequence number not allowed here"},
    {2289, "sequence does not exist"},
    {2436, "date or system variable wrongly specified in CHECK constraint"},
    {2438, "Column check constraint cannot reference other columns"},
    {2447, "cannot defer a constraint that is not deferrable"},
    {2448, "constraint does not exist"},
    {4077, "WHEN clause cannot be used with table level triggers"},
    {4082, "NEW or OLD references not allowed in table level triggers"},
    {25001, "cannot create this trigger type on this type of view"},
    {25002, "cannot create INSTEAD OF triggers on tables"},
    {30003, "illegal parameter in SYS_CONNECT_BY_PATH function"},
    {30004, "when using SYS_CONNECT_BY_PATH function, cannot have seperator as part of column "
            "value"},
    {3001, "unimplemented feature"},
    {3290, "Invalid truncate command - missing CLUSTER or TABLE keyword"},
    {4004, "MINVALUE must be less than MAXVALUE"},
    {4005, "INCREMENT must be less than MAXVALUE minus MINVALUE"},
    {4006, "START WITH cannot be less than MINVALUE"},
    {4008, "START WITH cannot be more than MAXVALUE"},
    {4007, "MINVALUE cannot be made to exceed the current value"},
    {4009, "MAXVALUE cannot be made to be less than the current value"},
    {4010, "the number of values to CACHE must be greater than 1"},
    {4013, "number to CACHE must be less than one cycle"},
    {4015, "ascending sequences that CYCLE must specify MAXVALUE"},
    {4016, "descending sequences that CYCLE must specify MINVALUE"},
    {4042, "procedure, function, package, or package body does not exist"},
    {4070, "invalid trigger name"},
    {4080, "trigger does not exist"},
    {25154, "column part of USING clause cannot have qualifier"},
    {25155, "column used in NATURAL join cannot have qualifier"},
    {25156, "old style outer join (+) cannot be used with ANSI joins"},
    {30076, "invalid extract field for extract source"},
    {30089, "missing or invalid <datetime field>"},
    {30088, "datetime/interval precision is out of range"},
    {30483, "window  functions are not allowed here"},
    {30484, "missing window specification for this function"},
    {30485, "missing ORDER BY expression in the window specification"},
    {30486, "invalid window aggregation group in the window specification"},
    {30487, "ORDER BY not allowed here"},
    {30491, "missing ORDER BY clause"},
    {30492, "One of FIRST or LAST keywords is expected."},
    {30493, "The percentile value should be a number between 0 and 1."},
    {30926, "unable to get a stable set of rows in the source tables"},
    {30669, "table can have only one identity column"},
    {30675, "identity column must be a numeric type"},
    {32034, "unsupported use of WITH clause"},
    {32031, "illegal reference of a query name in WITH clause"},
    {32039, "recursive WITH clause must have column alias list"},
    {32040, "recursive WITH clause must use a UNION ALL operation"},
    {32044, "cycle detected while executing recursive WITH query"},
    {32486, "unsupported operation in recursive branch of recursive WITH clause"},
    {30930, "NOCYCLE keyword is required with CONNECT_BY_ISCYCLE pseudocolumn"},
    {32594, "invalid object category for COMMENT command"},
    {38104, "Columns referenced in the ON Clause cannot be updated"},
    {38106, "MERGE not supported on join view or view with INSTEAD OF trigger."},
    {39751, "partitioned table on both sides of PARTITIONED OUTER JOIN is not supported"},
    {39754, "FULL PARTITIONED OUTER JOIN is not supported"},
    {54002, "only pure functions can be specified in a virtual column expression"},
    {54017, "UPDATE operation disallowed on virtual columns"},
    {56901, "non-constant expression is not allowed for pivot|unpivot values"},
    {56902, "expect aggregate function inside pivot operation"},
};

const Sentence* sentenceOf(int code) {
    const Sentence* const found =
        std::find_if(std::begin(sentences), std::end(sentences),
                     [code](const Sentence& sentence) { return sentence.code == code; });
    return found == std::end(sentences) ? nullptr : found;
}

} // namespace

const char* errorText(int code) {
    const Sentence* const sentence = sentenceOf(code);
    return sentence ? sentence->text : "";
}

void raise(int code, long position) {
    throw OraError(code, errorText(code), position);
}

void raiseNamed(int code, const std::string& names, long position) {
    throw OraError(code, names + ": " + errorText(code), position);
}

void failReadOnly(const std::string& owner, const std::string& table) {
    constexpr int UpdateNotAllowed = 12081;
    throw OraError(UpdateNotAllowed,
                   "update operation not allowed on table \"" + owner + "\".\"" + table + '"');
}

void refuse(const std::string& feature, long position) {
    constexpr int UnimplementedFeature = 3001;
    throw OraError(UnimplementedFeature,
                   std::string(errorText(UnimplementedFeature)) + ": " + feature +
                       " cannot be used in the embedded database",
                   position);
}

} // namespace ora
