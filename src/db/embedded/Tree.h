#pragma once

#include "Types.h"

#include <cstdint>
#include <span>
#include <string_view>

// The syntax tree of expressions and queries. Nodes live in the Arena of their Tree (Parser.h) and
// point into its source; all pointers are null and all lists empty where the clause is absent.
namespace ora {

struct Query;

// Byte offsets into the statement.
struct Extent {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
};

struct Name {
    std::string_view text; // folded unless quoted
    Extent at;
    bool quoted = false;

    explicit operator bool() const { return !text.empty(); }
};

struct ObjectName {
    Name schema;
    Name name;
};

enum class ExprKind : std::uint8_t {
    Number,
    Text,
    NationalText,
    Date,
    Timestamp,
    Interval,
    Null,
    Default, // the word DEFAULT among the values of INSERT, UPDATE and MERGE
    Bind,
    Column,
    Star,
    Unary,
    Arithmetic,
    List, // and, or, ||, rows
    Comparison,
    Quantified,
    Like,
    Between,
    In,
    IsNull,
    Exists,
    Function,
    Case,
    Cast,
    Extract,
    Trim,
    AtTimeZone,
    IntervalCast,
    Subquery,
};

struct Expr {
    ExprKind kind;
    Extent at;
};

// Number, Text, NationalText, Date, Timestamp, Null, Default, Bind.
struct Literal : Expr {
    std::string_view text; // of a number as written, else decoded
};

enum class DateField : std::uint8_t { Year, Month, Day, Hour, Minute, Second, None };

struct IntervalQualifier {
    DateField first = DateField::Day;
    DateField last = DateField::Second; // equals first when there is no TO
    int leadingDigits = 2;
    int fractionDigits = 6;
};

struct IntervalLiteral : Expr {
    std::string_view text;
    IntervalQualifier qualifier;
};

// a, t.a, s.t.a, seq.NEXTVAL, and every word without parentheses: LEVEL, ROWNUM, SYSDATE.
struct ColumnRef : Expr {
    std::span<Name> parts;
    bool outer = false; // followed by (+)
};

// *, t.*, s.t.*
struct Star : Expr {
    std::span<Name> qualifier;
};

enum class UnaryOp : std::uint8_t { Plus, Minus, Not, Prior, ConnectByRoot };

struct Unary : Expr {
    UnaryOp op;
    Expr* operand;
};

struct Arithmetic : Expr {
    char op; // + - * /
    Expr* left;
    Expr* right;
};

enum class ListOp : std::uint8_t { And, Or, Concat, Row };

struct ListExpr : Expr {
    ListOp op;
    std::span<Expr*> items;
};

enum class CompareOp : std::uint8_t { Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual };

struct Comparison : Expr {
    CompareOp op;
    Expr* left;
    Expr* right;
};

// left op ANY|ALL (list or query)
struct Quantified : Expr {
    CompareOp op;
    bool all;
    Expr* left;
    std::span<Expr*> list;
    Query* query;
};

struct Like : Expr {
    bool negated;
    Expr* operand;
    Expr* pattern;
    Expr* escape;
};

struct Between : Expr {
    bool negated;
    Expr* operand;
    Expr* low;
    Expr* high;
};

struct In : Expr {
    bool negated;
    Expr* operand;
    std::span<Expr*> list;
    Query* query;
};

enum class NullTest : std::uint8_t { Null, Nan, Infinite };

struct IsNull : Expr {
    bool negated;
    NullTest test;
    Expr* operand;
};

// Exists and Subquery.
struct SubqueryExpr : Expr {
    Query* query;
};

enum class NullsOrder : std::uint8_t { Default, First, Last };

struct OrderItem {
    Expr* expr;
    bool descending = false;
    NullsOrder nulls = NullsOrder::Default;
};

enum class FrameBound : std::uint8_t {
    UnboundedPreceding,
    Preceding,
    CurrentRow,
    Following,
    UnboundedFollowing,
};

struct WindowFrame {
    bool rows; // else RANGE
    FrameBound start;
    Expr* startOffset;
    FrameBound end;
    Expr* endOffset;
};

struct Window {
    std::span<Expr*> partition;
    std::span<OrderItem> order;
    WindowFrame* frame = nullptr;
};

// KEEP (DENSE_RANK FIRST|LAST ORDER BY …)
struct Keep {
    bool first;
    std::span<OrderItem> order;
};

enum class NullsTreatment : std::uint8_t { Default, Respect, Ignore };

// LISTAGG (… ON OVERFLOW TRUNCATE filler WITH COUNT)
struct Overflow {
    Expr* filler; // null: three dots
    bool counted;
};

struct Function : Expr {
    std::span<Name> name; // package.function has two parts
    std::span<Expr*> arguments;
    std::span<OrderItem> withinGroup;
    Keep* keep = nullptr;
    Window* over = nullptr;
    bool distinct = false;
    bool fromLast = false; // NTH_VALUE … FROM LAST
    NullsTreatment nulls = NullsTreatment::Default;
    Overflow* overflow = nullptr;
    Expr* onError = nullptr; // DEFAULT … ON CONVERSION ERROR
};

struct CaseArm {
    Expr* when;
    Expr* then;
};

struct Case : Expr {
    Expr* operand; // null for CASE WHEN condition
    std::span<CaseArm> arms;
    Expr* otherwise;
};

// CAST and VALIDATE_CONVERSION.
struct Cast : Expr {
    Expr* operand;
    TypeInfo type;
    std::span<Expr*> model; // the format model and its parameters
    Expr* onError;          // DEFAULT … ON CONVERSION ERROR
    bool validates;
};

struct Extract : Expr {
    std::string_view field; // YEAR … SECOND, TIMEZONE_HOUR …
    Expr* operand;
};

struct Trim : Expr {
    char side; // L, T or B
    Expr* characters;
    Expr* operand;
};

struct AtTimeZone : Expr {
    Expr* operand;
    Expr* zone; // null for AT LOCAL
};

// (a - b) DAY TO SECOND
struct IntervalCast : Expr {
    Expr* operand;
    IntervalQualifier qualifier;
};

struct SelectItem {
    Expr* expr;
    Name alias;
    std::string_view heading; // what the server calls the column when there is no alias
};

enum class TableKind : std::uint8_t { Named, Derived, Join, Pivot, Unpivot };

struct TableRef {
    TableKind kind;
    Extent at;
    Name alias;
    std::span<Expr*> partition; // PARTITION BY: an outer join for each of its values
};

struct NamedTable : TableRef {
    ObjectName name;
    Expr* sample; // SAMPLE: how many of a hundred rows
};

struct DerivedTable : TableRef {
    Query* query;
    bool lateral; // sees the tables to its left
};

enum class JoinKind : std::uint8_t { Inner, Left, Right, Full, Cross };

struct JoinTable : TableRef {
    JoinKind join;
    bool natural;
    TableRef* left;
    TableRef* right;
    Expr* on;
    std::span<Name> columns; // USING
};

struct PivotAggregate {
    Expr* function;
    Name alias;
};

struct PivotValue {
    std::span<Expr*> values;
    Name alias;
    std::string_view heading;
};

struct PivotTable : TableRef {
    TableRef* source;
    std::span<PivotAggregate> aggregates;
    std::span<Name> columns;
    std::span<PivotValue> values;
};

struct UnpivotInput {
    std::span<Name> columns;
    std::span<Expr*> labels; // empty: the columns' own names
};

struct UnpivotTable : TableRef {
    TableRef* source;
    bool includeNulls;
    std::span<Name> measures;
    std::span<Name> labels;
    std::span<UnpivotInput> inputs;
};

enum class GroupKind : std::uint8_t { Simple, Rollup, Cube, Sets };

// Simple holds expressions: one, several as in (a, b), none as in (); the others hold items.
struct GroupItem {
    GroupKind kind;
    std::span<Expr*> exprs;
    std::span<GroupItem> items;
};

struct QueryBlock {
    Extent at;
    bool distinct;
    std::span<SelectItem> items;
    std::span<TableRef*> from;
    Expr* where;
    Expr* startWith;
    Expr* connectBy;
    bool noCycle;
    std::span<GroupItem> groupBy;
    Expr* having;
    std::span<Expr*> locked; // FOR UPDATE OF
};

enum class SetOperator : std::uint8_t { None, Union, UnionAll, Intersect, IntersectAll, Minus };

// One operand of a set operation; op joins it with what stands before it. All bind alike, from the
// left. Either a block or a query in parentheses.
struct QueryTerm {
    SetOperator op;
    QueryBlock* block;
    Query* nested;
};

struct WithItem {
    Name name;
    std::span<Name> columns;
    Query* query;
    std::span<OrderItem> searchBy;
    bool depthFirst;
    Name searchColumn;
    std::span<Name> cycleColumns;
    Name cycleColumn;
    Expr* cycleValue;
    Expr* noCycleValue;
};

struct RowLimit {
    Expr* offset;
    Expr* count; // null with an offset alone
    bool percent;
    bool withTies;
};

struct Query {
    Extent at;
    std::span<WithItem> with;
    std::span<QueryTerm> terms;
    std::span<OrderItem> orderBy;
    bool siblings;
    RowLimit* limit;
    bool forUpdate;
};

} // namespace ora
