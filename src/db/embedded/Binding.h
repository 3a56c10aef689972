#pragma once

#include "Compiled.h"
#include "FunctionTable.h"
#include "OraError.h"
#include "Parser.h"
#include "Scope.h"
#include "SqlText.h"

#include <deque>
#include <functional>
#include <map>
#include <unordered_map>
#include <utility>

// The binder's modules share this; nobody outside them includes it.
namespace ora {

struct OutputColumn {
    std::string name;
    TypeInfo type;
    bool nullable = true;
    bool named = true; // false: an expression without an alias, which a view may not have
    bool declaredNotNull = false;
    bool invisible = false; // not part of *
};

// A query of WITH that can be named.
struct NamedQuery {
    std::string_view name;
    std::string alias; // "w1"
    std::vector<OutputColumn> columns;
    // While a recursion is made: what its rows know of their children besides the columns, under
    // the alias that the rows have. No star shows it.
    std::function<std::vector<SourceColumn>(const std::string& alias)> derived;
    std::string item; // of the engine's WITH, "w1(c1,c2) AS (…)"; empty while that is made
};

// The row of a trigger, where :NEW and :OLD can be named.
struct TriggerRow {
    std::string_view newName;
    std::string_view oldName;
    const Relation* table;
    // SQL of column n of the row; empty: there is no such row.
    std::vector<std::string> newValues;
    std::vector<std::string> oldValues;
};

// The sequences that one row names: however often, it gets one number of each.
struct SequenceRow {
    std::vector<const ColumnRef*> references; // in the order in which they are evaluated
    bool onlyRow = false;                     // the statement makes no other, in whatever order
    // Where the numbers are computed beside the row, under a name for each sequence's key.
    std::map<std::string, std::string>* kept = nullptr;
    std::string keptAlias;
};

// What is common to all blocks of one statement.
class Binding {
public:
    explicit Binding(const Catalog& catalogOfSession)
        : catalog(catalogOfSession) {}
    Binding(const Binding&) = delete;
    Binding& operator=(const Binding&) = delete;

    std::string freshAlias(char kind) { return kind + std::to_string(++m_aliases); }
    // Throws 942.
    RelationPtr relation(const ObjectName& name);
    const NamedQuery* namedQuery(std::string_view name) const;
    // A parsed text that lives as long as the statement's binding.
    const Tree& keep(std::unique_ptr<Tree> tree);
    std::string_view text(std::string_view text) { return arena.text(text); }

    const Catalog& catalog;
    Arena arena; // of nodes that stand for others, and names
    std::vector<NamedQuery> namedQueries;
    const TriggerRow* trigger = nullptr;
    bool sequencesAllowed = true;
    const QueryBlock* sequenceBlock = nullptr; // the SELECT whose list may name sequences
    const SequenceRow* sequenceRow = nullptr;
    bool insideTrigger = false; // the engine's triggers give tables no alias
    int columnError = 0;        // for a column where there can be none; 0: 904
    // For what gives another value tomorrow or in another session; 0: it may stand here.
    int impureError = 0;
    bool modelsGiven = false; // conversions need a format model; with impureError
    int subqueryError = 0;    // for a subquery; 0: allowed

    // What the stars of a query stand for, as the server writes it into a view's text; without the
    // qualifiers that were written.
    std::unordered_map<const Expr*, std::vector<std::string>>* starColumns = nullptr;
    int depth = 0;

    // Inline views that stand in the WITH of the whole query; see bindRootQuery.
    bool hoists = false;
    int nestedQueries = 0;
    std::vector<std::string> hoisted;

private:
    std::vector<std::unique_ptr<Tree>> m_trees;
    std::deque<RelationPtr> m_relations;
    int m_aliases = 0;
};

// Whether sequences may be named, until the end of a C++ block.
class SequenceRegion {
public:
    SequenceRegion(Binding& binding, bool allowed, const SequenceRow* row = nullptr)
        : m_binding(binding)
        , m_allowed(std::exchange(binding.sequencesAllowed, allowed))
        , m_row(std::exchange(binding.sequenceRow, row)) {}
    ~SequenceRegion() {
        m_binding.sequencesAllowed = m_allowed;
        m_binding.sequenceRow = m_row;
    }
    SequenceRegion(const SequenceRegion&) = delete;
    SequenceRegion& operator=(const SequenceRegion&) = delete;

private:
    Binding& m_binding;
    bool m_allowed;
    const SequenceRow* m_row;
};

// Guards one level of the binder's recursion.
class BindDepth {
public:
    explicit BindDepth(Binding& binding);
    ~BindDepth() { --m_binding.depth; }
    BindDepth(const BindDepth&) = delete;
    BindDepth& operator=(const BindDepth&) = delete;

private:
    Binding& m_binding;
};

// The error of a view whose text no longer means anything. Throws 4063 in place of what became of a
// name in it.
[[noreturn]] void raiseInvalidView(const Relation& view, const OraError& error);

// A bound query: SQL whose columns are named c1, c2 …
struct BoundQuery {
    std::string sql;
    std::vector<OutputColumn> columns;
    bool singleRow = false; // never more than one row
    bool operand = false;   // can stand in a set operation as it is
    bool ordered = false;
    bool limited = false; // ends with LIMIT
};

// BindExpression.cpp
Value bindValue(Binding& binding, Scope& scope, const Expr& expr);
std::vector<Value> bindValues(Binding& binding, Scope& scope, std::span<Expr* const> exprs);
Value nullValue();
Value literalText(std::string_view text);
// op: + - * /. Throws 932, 975, 30081.
Value arithmetic(char op, const Value& left, const Value& right);

// BindCondition.cpp
std::string bindCondition(Binding& binding, Scope& scope, const Expr& condition);
// The parts that AND joins, at any depth of AND.
void collectConjuncts(const Expr& condition, std::vector<const Expr*>& conjuncts);
std::string joinedConditions(const std::vector<std::string>& conditions, std::string_view word);

// BindTypes.cpp
std::vector<SqlType> typesOf(const std::vector<Value>& values);
// The value as the type stores it. Throws 932.
std::string convertTo(const Value& value, SqlType type);
// A binary number with the digits of a BINARY_FLOAT, which is what numbers give among which no
// BINARY_DOUBLE is.
Value asFloat(Value value);
bool anyDouble(std::span<const Value> values);
struct Operands {
    std::string left;
    std::string right;
};
// Throws 932 and 997 for types that can be neither compared nor sorted.
void requireComparable(SqlType type);
// Both sides of a comparison as the server compares them.
Operands comparable(const Value& left, const Value& right);
// Whether texts are compared by the session's NLS_SORT here, because NLS_COMP asks for it.
bool comparesByLanguage(const Binding& binding);
// The same as comparable() above, in that order where it is asked for.
Operands comparable(const Binding& binding, const Value& left, const Value& right);
// What the value sorts by in the session's NLS_SORT.
std::string sortedBy(const Binding& binding, const Value& value);
// NLS_SORT=… of the session, as functions take it.
std::string sortParameter(const Binding& binding);
// One type for CASE's and the like's results; converts the values. Throws 932.
TypeInfo unify(std::vector<Value>& values);
// The type of a column that set operations make of two; throws 1790.
TypeInfo unifyColumns(const TypeInfo& left, const TypeInfo& right);
[[noreturn]] void raiseInconsistent(SqlType expected, SqlType got);
// A value as the column stores it.
std::string storedValue(const Value& value, const CatalogColumn& column, const Relation& table);

// BindName.cpp
Value bindColumn(Binding& binding, Scope& scope, const ColumnRef& ref);
// SYSDATE, USER and the like; false when the name is none.
bool bindConstant(std::string_view name, Value& value);

// BindConversion.cpp
Value bindCast(Binding& binding, Scope& scope, const Cast& cast);
// A call of TO_NUMBER and the like with DEFAULT … ON CONVERSION ERROR.
Value withConversionDefault(const FunctionEntry& entry, const std::vector<Value>& arguments,
                            const Value& otherwise);

// BindFunction.cpp
Value bindFunction(Binding& binding, Scope& scope, const Function& function);
// A function that gives a truth value. Throws 920 for any other.
std::string bindConditionCall(Binding& binding, Scope& scope, const Function& function);
bool isAggregateCall(const Function& function);
Value applyEntry(const FunctionEntry& entry, const std::vector<Value>& arguments);
Value finishResult(const FunctionEntry& entry, const std::vector<Value>& arguments,
                   const std::string& call);
// The result of a function of numbers: a binary number when one was given.
Value asBinary(const FunctionEntry& entry, const std::vector<Value>& arguments, Value value);

// BindAggregate.cpp
Value bindAggregate(Binding& binding, Scope& scope, const Function& function);
// sort_key(…) over the items, and its letter for one; `opposite` for the last instead of the first.
char orderLetter(const OrderItem& item, bool opposite);
std::string sortKey(Binding& binding, Scope& scope, std::span<const OrderItem> items,
                    bool opposite);

// BindWindow.cpp
Value bindWindowFunction(Binding& binding, Scope& scope, const Function& function);
std::string orderTerm(const std::string& sql, bool nullable, const OrderItem& item);

// BindHierarchy.cpp: the CTEs of CONNECT BY. start() binds the clauses over the scope's sources and
// puts the hierarchy's stage on top of them; what the rest of the block uses is known only then.
class Hierarchy {
public:
    Hierarchy(Binding& binding, Scope& scope, const QueryBlock& block)
        : m_binding(binding)
        , m_scope(scope)
        , m_block(block) {}

    // from, conditions: the tables before CONNECT BY.
    void start(std::string from, std::vector<std::string> conditions,
               std::span<const OrderItem> siblings);
    // "b1 AS MATERIALIZED (…),h2 AS (…)"; to be read from as h2.
    std::string withItems();
    const std::string& alias() const { return m_scope.stages[m_scope.hierarchy - 1].alias(); }

private:
    void bindStart();
    void bindConnect();
    void bindSiblings(std::span<const OrderItem> siblings);
    std::string loopKey();
    const std::string& rows() const; // what the hierarchy is made of
    std::vector<std::string> branch(bool root) const;
    std::string baseItem() const;

    Binding& m_binding;
    Scope& m_scope;
    const QueryBlock& m_block;
    bool m_hasBase = false;
    std::string m_from;
    std::vector<std::string> m_conditions;
    std::vector<std::string> m_startConditions;
    std::vector<std::string> m_connectConditions;
    std::vector<std::string> m_siblingValues;
    std::vector<std::string> m_siblingTerms;
};
Value bindPrior(Binding& binding, Scope& scope, const Expr& operand);
Value bindConnectByRoot(Binding& binding, Scope& scope, const Expr& operand);
Value bindPath(Binding& binding, Scope& scope, const Function& function);
Value bindLevel(Scope& scope);
Value bindIsLeaf(Scope& scope);
Value bindIsCycle(Scope& scope);

// BindQuery.cpp
BoundQuery bindQuery(Binding& binding, const Query& query, Scope* outer);
// A column of a query that may give one row.
Value singleRowColumn(const BoundQuery& query, std::size_t column);
// The parts of set operations.
std::string_view wordsOf(SetOperator op);
std::string asOperand(const BoundQuery& query);
BoundQuery bindTerm(Binding& binding, const QueryTerm& term, Scope* outer);
// The terms from the left, without what sorts them.
BoundQuery bindTerms(Binding& binding, std::span<const QueryTerm> terms, Scope* outer);
// The types that both have in common; throws 1789 and 1790.
void unifyWith(BoundQuery& query, const BoundQuery& other);
// A query that no other one is around.
BoundQuery bindRootQuery(Binding& binding, const Query& query);
// "q.c1,q.c2"; without an alias "c1,c2".
std::string columnList(std::size_t count, const std::string& alias);

// BindLimit.cpp
// " LIMIT n OFFSET 0": without the offset the engine may sort before it limits. Empty without a
// count.
std::string firstRows(const std::string& count);
// FETCH with PERCENT or TIES.
bool limitsByPlace(const RowLimit* limit);
// terms: over the columns of `query` under the name q. A query that limitByPlace() takes may have
// columns behind its own that the terms name.
void sortRows(BoundQuery& query, const std::vector<std::string>& terms);
void limitRows(Binding& binding, BoundQuery& query, const RowLimit* limit);
void limitByPlace(Binding& binding, BoundQuery& query, const RowLimit& limit,
                  const std::vector<std::string>& terms);

// BindWith.cpp: what the engine's WITH is made of. The names stay known to the binding.
struct WithText {
    std::string items;
    bool recursive = false;
};
WithText bindWith(Binding& binding, std::span<const WithItem> items, Scope* outer);

// BindBlock.cpp: one SELECT with the ORDER BY and FETCH of its query.
BoundQuery bindBlock(Binding& binding, const QueryBlock& block, const Query& query, Scope* outer);

// BindGrouping.cpp
// The grouping sets as lists of expressions; one set for a plain GROUP BY.
std::vector<std::vector<const Expr*>> groupingSets(std::span<const GroupItem> items);

// Stages.cpp: the SELECTs that a block's stages are made of.
// Where the column stands below stage n.
std::string columnBelow(const Scope& scope, std::size_t stage, const Stage::Column& column);
// "s1.c3 AS k0_2,…" of stage n and its extras' root forms.
std::string stageColumns(const Scope& scope, std::size_t stage);
// The stages below need what the ones above them use.
void spreadUses(Scope& scope);

// BindFrom.cpp
struct FromClause {
    std::string sql;                     // without the word FROM
    std::vector<std::string> conditions; // of WHERE, ROWNUM's excepted
    std::vector<const Expr*> postponed;  // of WHERE, to be bound after CONNECT BY
    std::vector<const Expr*> rowNumbers; // of WHERE, that name ROWNUM
};
// Fills the scope's sources. Joins with (+) need WHERE.
FromClause bindFrom(Binding& binding, Scope& scope, std::span<TableRef* const> tables,
                    const Expr* where, bool hierarchical);
Source relationSource(Binding& binding, const RelationPtr& relation, std::string_view alias,
                      std::string& sql);

// A virtual column's value over the table's alias, or over bare names without one.
std::string virtualColumn(Binding& binding, const Relation& relation, const CatalogColumn& column,
                          const std::string& alias);

// BindLateral.cpp: an inline view that sees the tables to its left. The engine has none: a table
// function runs the query for each of their rows.
struct LateralRows {
    std::string sql; // the call
    std::vector<OutputColumn> columns;
};
LateralRows bindLateralRows(Binding& binding, Scope& scope, const Query& query);

// BindPivot.cpp: the same as a plain query over the source.
const Query* pivotAsQuery(Binding& binding, Scope& scope, const PivotTable& pivot);
const Query* unpivotAsQuery(Binding& binding, Scope& scope, const UnpivotTable& unpivot);

// ChangeTarget.cpp: what INSERT, UPDATE, DELETE and MERGE change.
struct ChangeTarget {
    RelationPtr table;                   // the stored one
    std::string from;                    // "t17 AS s1"
    Source source;                       // as the statement names its columns
    std::vector<int> baseColumns;        // of the table for each of the source's; -1: none
    std::vector<std::string> conditions; // of the views between
    std::vector<std::string> checks;     // those of them that new rows must meet
    bool joined = false;                 // `from` holds more than the table
};
// What chooses the table of a join: the columns that are set, all of them, or that rows go.
struct JoinChange {
    enum class Kind { None, Columns, AllColumns, Rows, Merge };
    Kind kind = Kind::None;
    std::vector<Name> columns;
};
ChangeTarget bindTarget(Binding& binding, const Target& target, const JoinChange& change);
// JoinTarget.cpp. view: names the columns anew; may be null. Throws 1733, 1752, 1776, 1779, 38106.
ChangeTarget bindJoinTarget(Binding& binding, const QueryBlock& block, const JoinChange& change,
                            const Relation* view);
// The table's column behind a name of the target. Throws 904 and 1733.
int targetColumn(const ChangeTarget& target, const Name& name);

// "CASE WHEN … THEN 1 ELSE ora_raise(1402) END" over a row whose columns have the table's stored
// names.
std::string checkedRow(const ChangeTarget& target);

// TableValues.cpp: the values of a row on their way into the table.
class TableValues {
public:
    TableValues(Binding& binding, const Relation& table)
        : m_binding(binding)
        , m_table(table)
        , m_values(table.columns.size()) {}

    void set(int column, const Value& value);
    void setDefault(int column);
    // What INSERT leaves out takes its default.
    void completeWithDefaults();

    bool hasInsertTriggers() const;
    // "(c1,c2) VALUES (…)", or with a source "(c1,c2) SELECT … FROM source".
    std::string insertText(const std::string& from) const;
    // The same for a target that checks its new rows.
    std::string insertText(const std::string& from, const ChangeTarget& target) const;
    // "c2=…" for the columns that were set.
    const std::vector<std::string>& values() const { return m_values; }
    std::vector<std::string> columnNames() const;

private:
    struct Rows {
        std::vector<std::string> columns; // of the table
        std::string select;               // gives them under their own names
    };
    Rows insertedRows(const std::string& from) const;
    Rows rowsOfTriggers(const std::string& from) const;

    Binding& m_binding;
    const Relation& m_table;
    std::vector<std::string> m_values; // empty: not set
};
// SELECTs around `rows`, whose columns are n0, n1 … for the table's, that set what the BEFORE
// triggers set; the alias of the outermost is `alias`. oldValues: empty for INSERT.
std::string triggerLayers(Binding& binding, const Relation& table, std::string rows,
                          const std::vector<std::string>& kept, bool update,
                          const std::vector<std::string>& changed);

// CompileTriggers.cpp
// The view that the statement changes, when triggers do that for it. Throws 38106.
const Relation* viewWithTriggers(Binding& binding, const Statement& statement);
Compiled compileInstead(Binding& binding, const Statement& statement, const Relation& view);
void addStatementTriggers(const Catalog& catalog, const Statement& statement, Compiled& compiled);

// CompileInsert.cpp, CompileUpdate.cpp, CompileMerge.cpp
Compiled compileInsert(Binding& binding, const Insert& insert);
Compiled compileMultiInsert(Binding& binding, const MultiInsert& insert);
Compiled compileUpdate(Binding& binding, const Update& update);
Compiled compileDelete(Binding& binding, const Delete& statement);
Compiled compileMerge(Binding& binding, const Merge& merge);
Compiled compileStatement(Binding& binding, const Statement& statement);

// TreeSearch.cpp: looks at one query block's own expressions, not into subqueries.
bool namesRowNumber(const Expr* expr);
bool namesPseudoColumn(const Expr* expr); // LEVEL, CONNECT_BY_…
bool namesColumn(const Expr* expr, std::string_view name);
bool hasAggregate(const Expr* expr);
bool hasNestedAggregate(const Expr* expr);
bool hasWindow(const Expr* expr);
bool hasPrior(const Expr* expr);
bool hasSubquery(const Expr* expr);
void collectColumns(const Expr* expr, std::vector<const ColumnRef*>& references);
// NEXTVAL and CURRVAL, in order.
void collectSequences(const Expr* expr, std::vector<const ColumnRef*>& references);

} // namespace ora
