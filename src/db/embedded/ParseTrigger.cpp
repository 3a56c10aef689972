#include "ErrorText.h"
#include "ParseExpression.h"
#include "ParseQuery.h"
#include "ParseStatement.h"

#include <algorithm>

// Triggers whose body is one statement, or assignments to :new alone.
namespace ora {

namespace {

constexpr int InvalidTable = 903;
constexpr int InvalidIdentifier = 904;
constexpr int MissingKeyword = 905;
constexpr int MissingLeftParenthesis = 906;
constexpr int MissingRightParenthesis = 907;
constexpr int MissingComma = 917;
constexpr int MissingIdentifier = 931;
constexpr int MissingOn = 969;

[[noreturn]] void refuseBody(const TokenCursor& cursor) {
    refuse("a trigger with more than one plain statement (PL/SQL)", cursor.begin());
}

void parseTiming(TokenCursor& cursor, CreateTrigger& trigger) {
    if (cursor.accept("BEFORE"))
        trigger.timing = TriggerTiming::Before;
    else if (cursor.accept("AFTER"))
        trigger.timing = TriggerTiming::After;
    else if (cursor.accept("INSTEAD", "OF"))
        trigger.timing = TriggerTiming::InsteadOf;
    else if (cursor.atAnyOf({"FOR"}))
        refuse("compound triggers", cursor.begin());
    else
        cursor.fail(MissingKeyword);
}

void parseUpdateColumns(TokenCursor& cursor, CreateTrigger& trigger) {
    if (!cursor.accept("OF"))
        return;
    std::vector<Name> columns;
    do {
        columns.push_back(cursor.name(InvalidIdentifier));
    } while (cursor.acceptSymbol(","));
    trigger.updateColumns = cursor.arena().list(columns);
}

void parseEvents(TokenCursor& cursor, CreateTrigger& trigger) {
    do {
        if (cursor.accept("INSERT")) {
            trigger.onInsert = true;
        } else if (cursor.accept("DELETE")) {
            trigger.onDelete = true;
        } else if (cursor.accept("UPDATE")) {
            trigger.onUpdate = true;
            parseUpdateColumns(cursor, trigger);
        } else {
            refuse("triggers on anything but INSERT, UPDATE and DELETE", cursor.begin());
        }
    } while (cursor.accept("OR"));
}

void parseReferencing(TokenCursor& cursor, CreateTrigger& trigger) {
    trigger.oldName = "OLD";
    trigger.newName = "NEW";
    if (!cursor.accept("REFERENCING"))
        return;
    while (cursor.atAnyOf({"OLD", "NEW", "PARENT"})) {
        const std::string_view which = cursor.next().text;
        cursor.accept("AS");
        const std::string_view name = cursor.name(MissingIdentifier).text;
        (which == "OLD" ? trigger.oldName : trigger.newName) = name;
    }
}

void parseWhen(TokenCursor& cursor, CreateTrigger& trigger) {
    if (!cursor.accept("WHEN"))
        return;
    cursor.expectSymbol("(", MissingLeftParenthesis);
    const std::uint32_t begin = cursor.begin();
    trigger.when = parseCondition(cursor);
    trigger.whenText = cursor.textFrom(begin);
    cursor.expectSymbol(")", MissingRightParenthesis);
}

bool atAssignment(const TokenCursor& cursor) {
    return cursor.peek().kind == TokenKind::Bind && cursor.peek(1).isSymbol(".") &&
           cursor.peek(3).isSymbol(":=");
}

TriggerAssignment parseAssignment(TokenCursor& cursor) {
    cursor.next();
    cursor.next();
    const Name column = cursor.name(MissingIdentifier);
    cursor.next();
    return {column, parseValue(cursor)};
}

TriggerAssignment parseSelectInto(TokenCursor& cursor) {
    std::vector<Name> targets;
    cursor.selectInto = &targets;
    const std::uint32_t begin = cursor.begin();
    Query* const query = parseQuery(cursor);
    cursor.selectInto = nullptr;
    if (targets.size() != 1)
        refuseBody(cursor);
    return {targets[0], makeExpr<SubqueryExpr>(cursor, ExprKind::Subquery, begin, query)};
}

void parseAssignments(TokenCursor& cursor, CreateTrigger& trigger) {
    std::vector<TriggerAssignment> assignments;
    while (atAssignment(cursor) || cursor.at("SELECT")) {
        assignments.push_back(cursor.at("SELECT") ? parseSelectInto(cursor)
                                                  : parseAssignment(cursor));
        if (!cursor.acceptSymbol(";"))
            refuseBody(cursor);
    }
    trigger.assignments = cursor.arena().list(assignments);
}

TriggerRaise* parseRaise(TokenCursor& cursor, std::uint32_t body) {
    const std::string_view before = cursor.source().substr(body, cursor.begin() - body);
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    cursor.next();
    cursor.expectSymbol("(", MissingLeftParenthesis);
    Expr* const number = parseValue(cursor);
    cursor.expectSymbol(",", MissingComma);
    Expr* const text = parseValue(cursor);
    if (cursor.acceptSymbol(",") && !cursor.accept("FALSE"))
        cursor.expect("TRUE", MissingKeyword);
    cursor.expectSymbol(")", MissingRightParenthesis);
    if (!cursor.acceptSymbol(";"))
        refuseBody(cursor);
    return cursor.arena().make<TriggerRaise>(number, text, static_cast<int>(line));
}

void parseActions(TokenCursor& cursor, CreateTrigger& trigger, std::uint32_t body) {
    parseAssignments(cursor, trigger);
    if (!trigger.assignments.empty() || cursor.accept("NULL")) {
        cursor.acceptSymbol(";");
        return;
    }
    if (cursor.at("RAISE_APPLICATION_ERROR")) {
        trigger.raise = parseRaise(cursor, body);
        return;
    }
    if (!cursor.atAnyOf({"INSERT", "UPDATE", "DELETE", "MERGE"}))
        refuseBody(cursor);
    trigger.body = parseAnyStatement(cursor);
    if (!cursor.acceptSymbol(";"))
        refuseBody(cursor);
}

// A trigger for the whole statement has no row.
void checkStatementTrigger(TokenCursor& cursor, const CreateTrigger& trigger) {
    constexpr int WhenOfStatement = 4077;
    constexpr int RowOfStatement = 4082;
    if (trigger.forEachRow)
        return;
    if (trigger.when)
        raise(WhenOfStatement, trigger.when->at.begin);
    const std::size_t end = cursor.index();
    for (cursor.rewind(0); cursor.index() < end;) {
        const Token& token = cursor.next();
        if (token.kind == TokenKind::Bind && (token.text == "NEW" || token.text == "OLD"))
            raise(RowOfStatement, token.begin);
    }
    if (trigger.body && trigger.guard)
        refuseBody(cursor);
}

void parseBody(TokenCursor& cursor, CreateTrigger& trigger) {
    const std::uint32_t begin = cursor.begin();
    if (!cursor.accept("BEGIN"))
        refuseBody(cursor);
    const bool guarded = cursor.accept("IF");
    if (guarded) {
        if (cursor.atAnyOf({"INSERTING", "UPDATING", "DELETING"}))
            refuseBody(cursor);
        trigger.guard = parseCondition(cursor);
        cursor.expect("THEN", MissingKeyword);
    }
    parseActions(cursor, trigger, begin);
    if (guarded && (!cursor.accept("END", "IF") || !cursor.acceptSymbol(";")))
        refuseBody(cursor);
    if (!cursor.accept("END"))
        refuseBody(cursor);
    if (cursor.atName())
        cursor.next();
    trigger.bodyText = cursor.textFrom(begin);
    cursor.acceptSymbol(";");
}

} // namespace

Statement* parseCreateTrigger(TokenCursor& cursor, bool replace) {
    CreateTrigger* const trigger =
        makeStatement<CreateTrigger>(cursor, StatementKind::CreateTrigger);
    cursor.next();
    trigger->replace = replace;
    trigger->name = parseObjectName(cursor, InvalidIdentifier);
    parseTiming(cursor, *trigger);
    parseEvents(cursor, *trigger);
    cursor.expect("ON", MissingOn);
    trigger->table = parseObjectName(cursor, InvalidTable);
    parseReferencing(cursor, *trigger);
    trigger->forEachRow = cursor.accept("FOR", "EACH");
    if (trigger->forEachRow)
        cursor.expect("ROW", MissingKeyword);
    trigger->disabled = cursor.accept("DISABLE");
    cursor.accept("ENABLE");
    parseWhen(cursor, *trigger);
    trigger->forEachRow = trigger->forEachRow || trigger->timing == TriggerTiming::InsteadOf;
    parseBody(cursor, *trigger);
    checkStatementTrigger(cursor, *trigger);
    return finishStatement(cursor, trigger);
}

} // namespace ora
