#include "ErrorText.h"
#include "Lexer.h"
#include "ParseCollection.h"
#include "ParseExpression.h"
#include "ParseQuery.h"

// FROM: tables, inline views, joins, PIVOT and UNPIVOT.
namespace ora {

namespace {

constexpr int NotEnabled = 439;
constexpr int InvalidTable = 903;
constexpr int MissingKeyword = 905;
constexpr int MissingLeftParenthesis = 906;
constexpr int MissingRightParenthesis = 907;
constexpr int MissingIdentifier = 931;
constexpr int MissingExpression = 936;
constexpr int NoRemoteDatabase = 2019;

[[noreturn]] void refusePartitions(const TokenCursor& cursor) {
    throw OraError(NotEnabled, "feature not enabled: Partitioning", cursor.begin());
}

bool startsApply(const TokenCursor& cursor) {
    return cursor.at("CROSS", "APPLY") || cursor.at("OUTER", "APPLY");
}

bool startsJoin(const TokenCursor& cursor) {
    if (cursor.at("JOIN") || cursor.at("INNER", "JOIN") || cursor.at("CROSS", "JOIN"))
        return true;
    if (cursor.at("NATURAL"))
        return cursor.peek(1).isWord("JOIN") || cursor.peek(1).isWord("INNER") ||
               cursor.peek(1).isWord("LEFT") || cursor.peek(1).isWord("RIGHT") ||
               cursor.peek(1).isWord("FULL");
    return startsApply(cursor) ||
           (cursor.atAnyOf({"LEFT", "RIGHT", "FULL"}) &&
            (cursor.peek(1).isWord("JOIN") || cursor.peek(1).isWord("OUTER")));
}

// Words that are names elsewhere and begin a clause here.
struct ClauseStart {
    std::string_view word;
    std::string_view next; // "" for any
};
constexpr ClauseStart clauseStarts[] = {
    {"USING", ""},          {"RETURNING", ""},      {"RETURN", ""},         {"LOG", "ERRORS"},
    {"EXCEPT", "SELECT"},   {"EXCEPT", "ALL"},      {"FETCH", "FIRST"},     {"FETCH", "NEXT"},
    {"MODEL", "DIMENSION"}, {"MODEL", "PARTITION"}, {"MODEL", "RETURN"},    {"MODEL", "IGNORE"},
    {"MODEL", "UNIQUE"},    {"MODEL", "REFERENCE"}, {"MODEL", "MAIN"},      {"MODEL", "KEEP"},
    {"PIVOT", "XML"},       {"UNPIVOT", "INCLUDE"}, {"UNPIVOT", "EXCLUDE"}, {"PARTITION", "BY"},
};

bool startsClause(const TokenCursor& cursor) {
    const Token& word = cursor.peek();
    const Token& next = cursor.peek(1);
    if (word.kind != TokenKind::Word)
        return false;
    for (const ClauseStart& clause : clauseStarts)
        if (word.text == clause.word && (clause.next.empty() || next.isWord(clause.next)))
            return true;
    if (word.text == "PIVOT" || word.text == "UNPIVOT" || word.text == "MATCH_RECOGNIZE")
        return next.isSymbol("(");
    if (word.text == "OFFSET")
        return next.kind == TokenKind::Number || next.kind == TokenKind::Bind ||
               next.isSymbol("(") || cursor.peek(2).isSymbol("(");
    return startsJoin(cursor);
}

template<class Node>
Node* makeTable(TokenCursor& cursor, TableKind kind) {
    Node* const node = cursor.arena().make<Node>();
    node->kind = kind;
    node->at.begin = cursor.begin();
    return node;
}

TableRef* finished(TokenCursor& cursor, TableRef* table) {
    table->at.end = cursor.lastEnd();
    return table;
}

void refuseTableFunction(const TokenCursor& cursor) {
    if (!cursor.peek(1).isSymbol("("))
        return;
    if (cursor.atAnyOf({"THE", "ONLY", "CONTAINERS", "GRAPH_TABLE"}))
        refuse("collections as tables", cursor.begin());
    if (cursor.atAnyOf({"XMLTABLE", "JSON_TABLE"}))
        refuse(std::string(cursor.peek().text), cursor.begin());
}

void refuseTableSuffix(TokenCursor& cursor) {
    if (cursor.atAnyOf({"PARTITION", "SUBPARTITION"}) &&
        (cursor.peek(1).isSymbol("(") || cursor.peek(1).isWord("FOR")))
        refusePartitions(cursor);
    if (cursor.at("AS", "OF") || cursor.at("VERSIONS", "BETWEEN"))
        refuse("flashback queries", cursor.begin());
}

void refuseTail(TokenCursor& cursor) {
    if (cursor.at("MATCH_RECOGNIZE") && cursor.peek(1).isSymbol("("))
        refuse("MATCH_RECOGNIZE", cursor.begin());
}

// SAMPLE [BLOCK] (percent [, rows at a time]) [SEED (n)]. Which rows come is up to chance.
Expr* parseSample(TokenCursor& cursor) {
    if (!cursor.at("SAMPLE") || !(cursor.peek(1).isSymbol("(") || cursor.peek(1).isWord("BLOCK")))
        return nullptr;
    cursor.next();
    cursor.accept("BLOCK");
    cursor.expectSymbol("(", MissingLeftParenthesis);
    Expr* const percent = parseValue(cursor);
    if (cursor.acceptSymbol(","))
        parseValue(cursor);
    cursor.expectSymbol(")", MissingRightParenthesis);
    if (cursor.accept("SEED")) {
        cursor.expectSymbol("(", MissingLeftParenthesis);
        parseValue(cursor);
        cursor.expectSymbol(")", MissingRightParenthesis);
    }
    return percent;
}

TableRef* parseNamedTable(TokenCursor& cursor) {
    refuseTableFunction(cursor);
    const std::uint32_t begin = cursor.begin();
    if (Query* const collection = parseCollection(cursor)) {
        DerivedTable* const derived = makeTable<DerivedTable>(cursor, TableKind::Derived);
        derived->at.begin = begin;
        derived->query = collection;
        return finished(cursor, derived);
    }
    NamedTable* const table = makeTable<NamedTable>(cursor, TableKind::Named);
    table->name = parseObjectName(cursor, InvalidTable);
    if (cursor.atSymbol("("))
        refuse("functions as tables", cursor.begin());
    refuseTableSuffix(cursor);
    table->sample = parseSample(cursor);
    return finished(cursor, table);
}

TableRef* parseTableRef(TokenCursor& cursor);

TableRef* parseParenthesizedTable(TokenCursor& cursor) {
    const Nesting nesting(cursor);
    const bool lateral = cursor.at("LATERAL");
    if (lateral)
        cursor.next();
    if (lateral || cursor.opensQuery()) {
        DerivedTable* const derived = makeTable<DerivedTable>(cursor, TableKind::Derived);
        derived->query = parseParenthesizedQuery(cursor);
        derived->lateral = lateral;
        return finished(cursor, derived);
    }
    cursor.next();
    TableRef* const inner = parseTableRef(cursor);
    cursor.expectSymbol(")", MissingRightParenthesis);
    return inner;
}

std::span<Name> parseNameOrNames(TokenCursor& cursor) {
    if (cursor.atSymbol("("))
        return parseNameList(cursor, MissingIdentifier);
    return cursor.arena().list(std::vector<Name>{cursor.name(MissingIdentifier)});
}

std::span<Expr*> parseValueOrValues(TokenCursor& cursor) {
    Expr* const expr = parseValueOrRow(cursor);
    if (expr->kind == ExprKind::List && static_cast<ListExpr*>(expr)->op == ListOp::Row)
        return static_cast<ListExpr*>(expr)->items;
    return cursor.arena().list(std::vector<Expr*>{expr});
}

// PARTITION BY (a, b) beside an outer join.
void parsePartition(TokenCursor& cursor, TableRef& table) {
    if (!cursor.accept("PARTITION", "BY"))
        return;
    table.partition = parseValueOrValues(cursor);
}

// The side that rows may lack on is the one that has parts.
void checkPartition(const JoinTable& join) {
    constexpr int BothSides = 39751;
    constexpr int NotFull = 39754;
    const bool left = !join.left->partition.empty();
    const bool right = !join.right->partition.empty();
    if (left && right)
        raise(BothSides, join.right->at.begin);
    if ((left || right) && join.join == JoinKind::Full)
        raise(NotFull, join.at.begin);
    if ((left && join.join != JoinKind::Right) || (right && join.join != JoinKind::Left))
        raise(MissingKeyword, join.right->at.begin);
}

Name acceptAlias(TokenCursor& cursor) {
    if (cursor.accept("AS"))
        return cursor.name(MissingIdentifier);
    return cursor.atName() && !cursor.at("FOR") ? cursor.name(MissingIdentifier) : Name();
}

void parsePivotAggregates(TokenCursor& cursor, PivotTable& pivot) {
    constexpr int ExpectAggregate = 56902;
    std::vector<PivotAggregate> aggregates;
    do {
        PivotAggregate aggregate{parseValue(cursor), {}};
        if (aggregate.function->kind != ExprKind::Function)
            cursor.fail(ExpectAggregate);
        aggregate.alias = acceptAlias(cursor);
        aggregates.push_back(aggregate);
    } while (cursor.acceptSymbol(","));
    pivot.aggregates = cursor.arena().list(aggregates);
}

// ('CLERK', 20) becomes 'CLERK'_20.
std::string_view rowHeading(TokenCursor& cursor, std::span<Expr* const> values) {
    std::string heading;
    for (const Expr* value : values) {
        const auto text = cursor.source().substr(value->at.begin, value->at.end - value->at.begin);
        heading += (heading.empty() ? "" : "_") + std::string(text);
    }
    return cursor.arena().text(foldName(heading));
}

PivotValue parsePivotValue(TokenCursor& cursor) {
    const std::size_t first = cursor.index();
    PivotValue value{parseValueOrValues(cursor), {}, {}};
    value.heading =
        value.values.size() > 1 ? rowHeading(cursor, value.values) : headingOf(cursor, first);
    value.alias = acceptAlias(cursor);
    return value;
}

void parsePivotValues(TokenCursor& cursor, PivotTable& pivot) {
    cursor.expectSymbol("(", MissingLeftParenthesis);
    if (cursor.at("SELECT") || cursor.at("ANY"))
        throw OraError(MissingExpression, errorText(MissingExpression), cursor.begin());
    std::vector<PivotValue> values;
    do {
        values.push_back(parsePivotValue(cursor));
    } while (cursor.acceptSymbol(","));
    cursor.expectSymbol(")", MissingRightParenthesis);
    pivot.values = cursor.arena().list(values);
}

TableRef* parsePivot(TokenCursor& cursor, TableRef* source) {
    PivotTable* const pivot = makeTable<PivotTable>(cursor, TableKind::Pivot);
    cursor.next();
    if (cursor.at("XML"))
        refuse("PIVOT XML", cursor.begin());
    pivot->source = source;
    cursor.expectSymbol("(", MissingLeftParenthesis);
    parsePivotAggregates(cursor, *pivot);
    cursor.expect("FOR", MissingKeyword);
    pivot->columns = parseNameOrNames(cursor);
    cursor.expect("IN", MissingKeyword);
    parsePivotValues(cursor, *pivot);
    cursor.expectSymbol(")", MissingRightParenthesis);
    return finished(cursor, pivot);
}

UnpivotInput parseUnpivotInput(TokenCursor& cursor) {
    UnpivotInput input{parseNameOrNames(cursor), {}};
    if (cursor.accept("AS"))
        input.labels = parseValueOrValues(cursor);
    return input;
}

bool parseIncludeNulls(TokenCursor& cursor) {
    const bool include = cursor.accept("INCLUDE");
    if (include || cursor.accept("EXCLUDE"))
        cursor.expect("NULLS", MissingKeyword);
    return include;
}

TableRef* parseUnpivot(TokenCursor& cursor, TableRef* source) {
    UnpivotTable* const unpivot = makeTable<UnpivotTable>(cursor, TableKind::Unpivot);
    cursor.next();
    unpivot->source = source;
    unpivot->includeNulls = parseIncludeNulls(cursor);
    cursor.expectSymbol("(", MissingLeftParenthesis);
    unpivot->measures = parseNameOrNames(cursor);
    cursor.expect("FOR", MissingKeyword);
    unpivot->labels = parseNameOrNames(cursor);
    cursor.expect("IN", MissingKeyword);
    cursor.expectSymbol("(", MissingLeftParenthesis);
    std::vector<UnpivotInput> inputs;
    do {
        inputs.push_back(parseUnpivotInput(cursor));
    } while (cursor.acceptSymbol(","));
    cursor.expectSymbol(")", MissingRightParenthesis);
    cursor.expectSymbol(")", MissingRightParenthesis);
    unpivot->inputs = cursor.arena().list(inputs);
    return finished(cursor, unpivot);
}

bool startsPivot(const TokenCursor& cursor, std::string_view word) {
    return cursor.at(word) &&
           (cursor.peek(1).isSymbol("(") || cursor.peek(1).isWord("XML") ||
            cursor.peek(1).isWord("INCLUDE") || cursor.peek(1).isWord("EXCLUDE"));
}

JoinKind parseJoinKind(TokenCursor& cursor) {
    if (cursor.accept("CROSS"))
        return JoinKind::Cross;
    if (cursor.accept("INNER") || cursor.at("JOIN"))
        return JoinKind::Inner;
    const std::string_view side = cursor.next().text;
    cursor.accept("OUTER");
    return side == "LEFT" ? JoinKind::Left : side == "RIGHT" ? JoinKind::Right : JoinKind::Full;
}

TableRef* parseJoins(TokenCursor& cursor, TableRef* left);

void parseJoinCondition(TokenCursor& cursor, JoinTable& join) {
    if (join.natural || join.join == JoinKind::Cross)
        return;
    if (cursor.accept("ON"))
        join.on = parseCondition(cursor);
    else if (cursor.accept("USING"))
        join.columns = parseNameList(cursor, MissingIdentifier);
    else
        cursor.fail(MissingKeyword);
}

// a CROSS APPLY (…) is a CROSS JOIN LATERAL (…), OUTER APPLY the LEFT JOIN.
TableRef* parseApply(TokenCursor& cursor, TableRef* left) {
    JoinTable* const join = makeTable<JoinTable>(cursor, TableKind::Join);
    join->join = cursor.next().text == "CROSS" ? JoinKind::Cross : JoinKind::Left;
    cursor.next();
    join->left = left;
    join->right = parseTableFactor(cursor);
    if (join->right->kind == TableKind::Derived)
        static_cast<DerivedTable*>(join->right)->lateral = true;
    return finished(cursor, join);
}

TableRef* parseJoin(TokenCursor& cursor, TableRef* left) {
    if (startsApply(cursor))
        return parseApply(cursor, left);
    JoinTable* const join = makeTable<JoinTable>(cursor, TableKind::Join);
    join->natural = cursor.accept("NATURAL");
    join->join = parseJoinKind(cursor);
    cursor.expect("JOIN", MissingKeyword);
    join->left = left;
    join->right = parseTableFactor(cursor);
    const bool conditional = !join->natural && join->join != JoinKind::Cross;
    if (conditional && startsJoin(cursor)) { // a JOIN b JOIN c ON … ON …
        const Nesting nesting(cursor);
        join->right = parseJoins(cursor, join->right);
    }
    parseJoinCondition(cursor, *join);
    checkPartition(*join);
    return finished(cursor, join);
}

TableRef* parseJoins(TokenCursor& cursor, TableRef* left) {
    for (;;) {
        refuseTail(cursor);
        if (!startsJoin(cursor)) {
            if (!left->partition.empty())
                cursor.fail(MissingKeyword);
            return left;
        }
        left = parseJoin(cursor, left);
    }
}

// PIVOT, UNPIVOT and the alias behind a table or, without an alias, behind joins.
TableRef* parseTableTail(TokenCursor& cursor, TableRef* table) {
    for (;;) {
        if (startsPivot(cursor, "PIVOT"))
            table = parsePivot(cursor, table);
        else if (startsPivot(cursor, "UNPIVOT"))
            table = parseUnpivot(cursor, table);
        else if (!table->alias && !(table->alias = parseTableAlias(cursor)))
            break;
        else if (!startsPivot(cursor, "PIVOT") && !startsPivot(cursor, "UNPIVOT"))
            break;
    }
    refuseTableSuffix(cursor);
    refuseTail(cursor);
    parsePartition(cursor, *table);
    return table;
}

TableRef* parseTableRef(TokenCursor& cursor) {
    TableRef* const table = parseJoins(cursor, parseTableFactor(cursor));
    if (startsPivot(cursor, "PIVOT") || startsPivot(cursor, "UNPIVOT"))
        return parseTableTail(cursor, table);
    return table;
}

} // namespace

ObjectName parseObjectName(TokenCursor& cursor, int code) {
    ObjectName name;
    name.name = cursor.name(code);
    if (cursor.acceptSymbol(".")) {
        name.schema = name.name;
        name.name = cursor.name(code);
    }
    if (cursor.atSymbol("@"))
        cursor.fail(NoRemoteDatabase);
    return name;
}

Name parseTableAlias(TokenCursor& cursor) {
    return cursor.atName() && !startsClause(cursor) ? nameOf(cursor.next()) : Name();
}

TableRef* parseTableFactor(TokenCursor& cursor) {
    const bool parenthesized =
        cursor.atSymbol("(") || (cursor.at("LATERAL") && cursor.peek(1).isSymbol("("));
    TableRef* table = parenthesized ? parseParenthesizedTable(cursor) : parseNamedTable(cursor);
    return parseTableTail(cursor, table);
}

std::span<TableRef*> parseFrom(TokenCursor& cursor) {
    std::vector<TableRef*> tables;
    do {
        tables.push_back(parseTableRef(cursor));
    } while (cursor.acceptSymbol(","));
    return cursor.arena().list(tables);
}

} // namespace ora
