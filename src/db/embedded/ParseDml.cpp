#include "ErrorText.h"
#include "ParseExpression.h"
#include "ParseQuery.h"
#include "ParseStatement.h"

// INSERT, UPDATE, DELETE, MERGE and the query as a statement.
namespace ora {

namespace {

constexpr int InvalidTable = 903;
constexpr int MissingKeyword = 905;
constexpr int MissingLeftParenthesis = 906;
constexpr int MissingRightParenthesis = 907;
constexpr int MissingComma = 917;
constexpr int MissingInto = 925;
constexpr int MissingValues = 926;
constexpr int MissingEqual = 927;
constexpr int MissingSelect = 928;
constexpr int MissingOn = 969;
constexpr int MissingSet = 971;
constexpr int InvalidColumnPath = 1747;

void refuseTail(TokenCursor& cursor) {
    if (cursor.atAnyOf({"RETURNING", "RETURN"}))
        refuse("RETURNING", cursor.begin());
    if (cursor.at("LOG", "ERRORS"))
        refuse("LOG ERRORS", cursor.begin());
}

Expr* parseValueOrDefault(TokenCursor& cursor) {
    const std::uint32_t begin = cursor.begin();
    if (cursor.accept("DEFAULT"))
        return makeExpr<Literal>(cursor, ExprKind::Default, begin, std::string_view());
    return parseValue(cursor);
}

// The column of a target: the qualifier before it, the table or its alias, is left out.
Name parseTargetColumn(TokenCursor& cursor) {
    Name name = cursor.name(InvalidColumnPath);
    while (cursor.acceptSymbol("."))
        name = cursor.name(InvalidColumnPath);
    return name;
}

std::span<Name> parseTargetColumns(TokenCursor& cursor) {
    if (!cursor.acceptSymbol("("))
        return {};
    std::vector<Name> names;
    do {
        names.push_back(parseTargetColumn(cursor));
    } while (cursor.acceptSymbol(","));
    cursor.expectSymbol(")", MissingComma);
    return cursor.arena().list(names);
}

std::span<Expr*> parseValues(TokenCursor& cursor) {
    cursor.expectSymbol("(", MissingLeftParenthesis);
    std::vector<Expr*> values;
    do {
        values.push_back(parseValueOrDefault(cursor));
    } while (cursor.acceptSymbol(","));
    cursor.expectSymbol(")", MissingComma);
    return cursor.arena().list(values);
}

// ( query [WITH CHECK OPTION] )
void parseInlineTarget(TokenCursor& cursor, Target& target) {
    cursor.next();
    target.query = parseQuery(cursor);
    if (cursor.accept("WITH")) {
        cursor.expect("CHECK", MissingKeyword);
        cursor.expect("OPTION", MissingKeyword);
        target.checkOption = true;
    }
    cursor.expectSymbol(")", MissingRightParenthesis);
}

Target parseTarget(TokenCursor& cursor) {
    Target target{};
    const bool only = cursor.at("ONLY") && cursor.peek(1).isSymbol("(");
    if (only || (cursor.at("TABLE") && cursor.peek(1).isSymbol("(")))
        refuse("collections as tables", cursor.begin());
    if (cursor.atSymbol("("))
        parseInlineTarget(cursor, target);
    else
        target.name = parseObjectName(cursor, InvalidTable);
    if (cursor.atAnyOf({"PARTITION", "SUBPARTITION"}) && cursor.peek(1).isSymbol("(")) {
        constexpr int NotEnabled = 439;
        throw OraError(NotEnabled, "feature not enabled: Partitioning", cursor.begin());
    }
    target.alias = parseTableAlias(cursor);
    return target;
}

bool atQuery(const TokenCursor& cursor) {
    return cursor.at("SELECT") || cursor.at("WITH") || cursor.opensQuery();
}

InsertInto parseInto(TokenCursor& cursor) {
    cursor.expect("INTO", MissingInto);
    InsertInto into{};
    into.table = parseObjectName(cursor, InvalidTable);
    into.columns = parseTargetColumns(cursor);
    if (cursor.accept("VALUES"))
        into.values = parseValues(cursor);
    return into;
}

std::span<InsertInto> parseIntos(TokenCursor& cursor) {
    std::vector<InsertInto> targets;
    do {
        targets.push_back(parseInto(cursor));
    } while (cursor.at("INTO"));
    return cursor.arena().list(targets);
}

Statement* parseMultiInsert(TokenCursor& cursor, MultiInsert* insert) {
    insert->first = cursor.next().text == "FIRST";
    std::vector<InsertArm> arms;
    if (!cursor.at("WHEN"))
        arms.push_back({nullptr, parseIntos(cursor)});
    while (cursor.accept("WHEN")) {
        Expr* const when = parseCondition(cursor);
        cursor.expect("THEN", MissingKeyword);
        arms.push_back({when, parseIntos(cursor)});
    }
    if (arms.front().when && cursor.accept("ELSE"))
        arms.push_back({nullptr, parseIntos(cursor)});
    insert->arms = cursor.arena().list(arms);
    if (!atQuery(cursor))
        cursor.fail(MissingSelect);
    insert->query = parseQuery(cursor);
    return finishStatement(cursor, insert);
}

Assignment parseAssignment(TokenCursor& cursor) {
    Assignment assignment{};
    if (cursor.atSymbol("(")) {
        assignment.columns = parseTargetColumns(cursor);
        cursor.expectSymbol("=", MissingEqual);
        if (!cursor.opensQuery()) {
            constexpr int MustBeSubquery = 1767;
            cursor.fail(MustBeSubquery);
        }
        assignment.query = parseParenthesizedQuery(cursor);
        return assignment;
    }
    assignment.columns = cursor.arena().list(std::vector<Name>{parseTargetColumn(cursor)});
    cursor.expectSymbol("=", MissingEqual);
    assignment.value = parseValueOrDefault(cursor);
    return assignment;
}

std::span<Assignment> parseAssignments(TokenCursor& cursor) {
    cursor.expect("SET", MissingSet);
    std::vector<Assignment> assignments;
    do {
        assignments.push_back(parseAssignment(cursor));
    } while (cursor.acceptSymbol(","));
    return cursor.arena().list(assignments);
}

void parseMergeUpdate(TokenCursor& cursor, Merge& merge) {
    cursor.expect("THEN", MissingKeyword);
    cursor.expect("UPDATE", MissingKeyword);
    merge.assignments = parseAssignments(cursor);
    if (cursor.accept("WHERE"))
        merge.updateWhere = parseCondition(cursor);
    if (cursor.accept("DELETE")) {
        cursor.expect("WHERE", MissingKeyword);
        merge.deleteWhere = parseCondition(cursor);
    }
}

void parseMergeInsert(TokenCursor& cursor, Merge& merge) {
    cursor.expect("MATCHED", MissingKeyword);
    cursor.expect("THEN", MissingKeyword);
    cursor.expect("INSERT", MissingKeyword);
    merge.inserts = true;
    merge.columns = parseTargetColumns(cursor);
    cursor.expect("VALUES", MissingValues);
    merge.values = parseValues(cursor);
    if (cursor.accept("WHERE"))
        merge.insertWhere = parseCondition(cursor);
}

} // namespace

Statement* parseQueryStatement(TokenCursor& cursor) {
    QueryStatement* const statement = makeStatement<QueryStatement>(cursor, StatementKind::Query);
    statement->query = parseQuery(cursor);
    return finishStatement(cursor, statement);
}

Statement* parseInsert(TokenCursor& cursor) {
    const std::uint32_t begin = cursor.begin();
    cursor.next();
    if (cursor.atAnyOf({"ALL", "FIRST"})) {
        MultiInsert* const multi = makeStatement<MultiInsert>(cursor, StatementKind::MultiInsert);
        multi->at.begin = begin;
        return parseMultiInsert(cursor, multi);
    }
    cursor.expect("INTO", MissingInto);
    Insert* const insert = makeStatement<Insert>(cursor, StatementKind::Insert);
    insert->at.begin = begin;
    insert->target = parseTarget(cursor);
    if (cursor.atSymbol("(") && cursor.peek(1).kind == TokenKind::Number)
        cursor.fail(MissingSelect);
    if (!cursor.opensQuery())
        insert->columns = parseTargetColumns(cursor);
    if (cursor.accept("VALUES"))
        insert->values = parseValues(cursor);
    else if (atQuery(cursor))
        insert->query = parseQuery(cursor);
    else
        cursor.fail(cursor.atSymbol("(") ? MissingSelect : MissingValues);
    refuseTail(cursor);
    return finishStatement(cursor, insert);
}

Statement* parseUpdate(TokenCursor& cursor) {
    Update* const update = makeStatement<Update>(cursor, StatementKind::Update);
    cursor.next();
    update->target = parseTarget(cursor);
    update->assignments = parseAssignments(cursor);
    if (cursor.accept("WHERE"))
        update->where = parseCondition(cursor);
    refuseTail(cursor);
    return finishStatement(cursor, update);
}

Statement* parseDelete(TokenCursor& cursor) {
    Delete* const statement = makeStatement<Delete>(cursor, StatementKind::Delete);
    cursor.next();
    cursor.accept("FROM");
    statement->target = parseTarget(cursor);
    if (cursor.accept("WHERE"))
        statement->where = parseCondition(cursor);
    refuseTail(cursor);
    return finishStatement(cursor, statement);
}

Statement* parseMerge(TokenCursor& cursor) {

    Merge* const merge = makeStatement<Merge>(cursor, StatementKind::Merge);
    cursor.next();
    cursor.expect("INTO", MissingInto);
    merge->target = parseTarget(cursor);
    cursor.expect("USING", MissingKeyword);
    merge->source = parseTableFactor(cursor);
    cursor.expect("ON", MissingOn);
    if (!cursor.atSymbol("("))
        cursor.fail(MissingOn);
    merge->on = parseCondition(cursor);
    while (cursor.accept("WHEN")) {
        if (cursor.accept("MATCHED"))
            parseMergeUpdate(cursor, *merge);
        else if (cursor.accept("NOT"))
            parseMergeInsert(cursor, *merge);
        else
            cursor.fail(MissingKeyword);
    }
    if (merge->assignments.empty() && !merge->inserts)
        cursor.fail(MissingKeyword);
    refuseTail(cursor);
    return finishStatement(cursor, merge);
}

} // namespace ora
