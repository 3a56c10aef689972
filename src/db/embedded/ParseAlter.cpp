#include "ErrorText.h"
#include "ParseQuery.h"
#include "ParseStatement.h"

namespace ora {

namespace {

constexpr int InvalidTable = 903;
constexpr int InvalidIdentifier = 904;
constexpr int MissingKeyword = 905;
constexpr int MissingRightParenthesis = 907;
constexpr int InvalidAlter = 940;
constexpr int MissingTo = 946;
constexpr int InvalidIndexName = 953;
constexpr int InsufficientPrivileges = 1031;
constexpr int InvalidTableOption = 1735;
constexpr int InvalidConstraintName = 2250;

using Actions = std::vector<AlterTableAction>;

AlterTableAction action(AlterTableKind kind) {
    return {kind, nullptr, nullptr, {}, {}, false};
}

void addOne(TokenCursor& cursor, Actions& actions) {
    if (startsTableConstraint(cursor)) {
        AlterTableAction add = action(AlterTableKind::AddConstraint);
        add.constraint = cursor.arena().make<ConstraintDef>(parseTableConstraint(cursor));
        actions.push_back(add);
        return;
    }
    AlterTableAction add = action(AlterTableKind::AddColumn);
    add.column = cursor.arena().make<ColumnDef>(parseColumnDef(cursor, false));
    constexpr int NeedDatatype = 2263;
    if (!add.column->hasType && !add.column->virtualValue)
        cursor.fail(NeedDatatype);
    actions.push_back(add);
}

void modifyOne(TokenCursor& cursor, Actions& actions) {
    if (cursor.at("COLUMN"))
        cursor.fail(MissingKeyword); // of MODIFY COLUMN … NOT SUBSTITUTABLE
    AlterTableAction modify = action(AlterTableKind::ModifyColumn);
    modify.column = cursor.arena().make<ColumnDef>(parseColumnDef(cursor, true));
    actions.push_back(modify);
}

// One item, or several in parentheses.
template<class ParseOne>
void oneOrMore(TokenCursor& cursor, ParseOne parseOne) {
    if (!cursor.acceptSymbol("("))
        return parseOne();
    do {
        parseOne();
    } while (cursor.acceptSymbol(","));
    cursor.expectSymbol(")", MissingRightParenthesis);
}

// CONSTRAINT name, PRIMARY KEY or UNIQUE (columns): which constraint of the table.
bool parseConstraintChoice(TokenCursor& cursor, AlterTableAction& chosen) {
    ConstraintDef* const constraint = cursor.arena().make<ConstraintDef>();
    if (cursor.accept("CONSTRAINT")) {
        constraint->name = cursor.name(InvalidConstraintName);
    } else if (cursor.accept("PRIMARY", "KEY")) {
        constraint->kind = ConstraintKind::PrimaryKey;
    } else if (cursor.at("UNIQUE") && cursor.peek(1).isSymbol("(")) {
        cursor.next();
        constraint->kind = ConstraintKind::Unique;
        constraint->columns = parseNameList(cursor, InvalidIdentifier);
    } else {
        return false;
    }
    chosen.constraint = constraint;
    return true;
}

void parseModify(TokenCursor& cursor, Actions& actions) {
    AlterTableAction modify = action(AlterTableKind::ModifyConstraint);
    if (parseConstraintChoice(cursor, modify)) {
        modify.constraint->state = parseConstraintState(cursor);
        modify.cascade = cursor.accept("CASCADE");
        actions.push_back(modify);
        return;
    }
    oneOrMore(cursor, [&] { modifyOne(cursor, actions); });
}

bool acceptCascade(TokenCursor& cursor) {
    bool cascade = false;
    while (cursor.atAnyOf({"CASCADE", "INVALIDATE", "KEEP", "DROP"})) {
        const bool drop = cursor.at("DROP");
        if (drop && !cursor.peek(1).isWord("INDEX"))
            break;
        cascade = cascade || cursor.at("CASCADE");
        cursor.next();
        if (!cursor.accept("CONSTRAINTS"))
            cursor.accept("INDEX");
    }
    return cascade;
}

void dropColumns(TokenCursor& cursor, Actions& actions, bool single) {
    const std::size_t first = actions.size();
    const auto one = [&] {
        AlterTableAction drop = action(AlterTableKind::DropColumn);
        drop.name = cursor.name(InvalidIdentifier);
        actions.push_back(drop);
    };
    if (single)
        one();
    else if (cursor.atSymbol("("))
        oneOrMore(cursor, one);
    else
        cursor.fail(MissingKeyword);
    const bool cascade = acceptCascade(cursor);
    for (std::size_t i = first; i < actions.size(); ++i)
        actions[i].cascade = cascade;
}

void parseDropAction(TokenCursor& cursor, Actions& actions) {
    AlterTableAction drop = action(AlterTableKind::DropConstraint);
    if (parseConstraintChoice(cursor, drop)) {
        drop.cascade = acceptCascade(cursor);
        actions.push_back(drop);
    } else if (cursor.accept("COLUMN")) {
        dropColumns(cursor, actions, true);
    } else if (cursor.accept("UNUSED", "COLUMNS")) {
        actions.push_back(action(AlterTableKind::Accepted));
    } else {
        dropColumns(cursor, actions, false);
    }
}

void parseSetAction(TokenCursor& cursor, Actions& actions) {
    cursor.expect("UNUSED", InvalidTableOption);
    dropColumns(cursor, actions, cursor.accept("COLUMN"));
}

void parseRenameAction(TokenCursor& cursor, Actions& actions) {
    AlterTableAction rename = action(AlterTableKind::RenameTable);
    const bool column = cursor.accept("COLUMN");
    if (column || cursor.accept("CONSTRAINT")) {
        rename.kind = column ? AlterTableKind::RenameColumn : AlterTableKind::RenameConstraint;
        rename.name = cursor.name(InvalidIdentifier);
    }
    cursor.expect("TO", MissingTo);
    rename.newName = cursor.name(InvalidTable);
    actions.push_back(rename);
}

// What follows ENABLE or DISABLE.
void parseSwitch(TokenCursor& cursor, Actions& actions, bool enable) {
    if (cursor.accept("ALL", "TRIGGERS")) {
        actions.push_back(
            action(enable ? AlterTableKind::EnableTriggers : AlterTableKind::DisableTriggers));
        return;
    }
    if (cursor.accept("TABLE", "LOCK") || cursor.accept("ROW", "MOVEMENT")) {
        actions.push_back(action(AlterTableKind::Accepted));
        return;
    }
    AlterTableAction change =
        action(enable ? AlterTableKind::EnableConstraint : AlterTableKind::DisableConstraint);
    const bool validated = !cursor.accept("NOVALIDATE");
    cursor.accept("VALIDATE");
    if (!parseConstraintChoice(cursor, change))
        cursor.fail(InvalidTableOption);
    change.constraint->state.validated = validated && enable;
    change.constraint->state.disabled = !enable;
    parseConstraintState(cursor);
    change.cascade = acceptCascade(cursor);
    actions.push_back(change);
}

bool acceptWithoutEffect(TokenCursor& cursor, Actions& actions) {
    if (!cursor.atAnyOf({"MOVE", "SHRINK", "DEALLOCATE", "ALLOCATE", "LOGGING", "NOLOGGING",
                         "CACHE", "NOCACHE", "PARALLEL", "NOPARALLEL", "COMPRESS", "NOCOMPRESS",
                         "PCTFREE", "PCTUSED", "INITRANS", "STORAGE", "MONITORING", "NOMONITORING",
                         "TABLESPACE"}))
        return false;
    while (!cursor.atEnd() && !cursor.atSymbol(";"))
        cursor.next();
    actions.push_back(action(AlterTableKind::Accepted));
    return true;
}

void parseTableAction(TokenCursor& cursor, Actions& actions) {
    constexpr int NotEnabled = 439;
    if (cursor.atAnyOf({"SPLIT", "MERGE", "EXCHANGE", "COALESCE"}) ||
        cursor.at("ADD", "PARTITION") || cursor.at("DROP", "PARTITION") ||
        cursor.at("TRUNCATE", "PARTITION"))
        throw OraError(NotEnabled, "feature not enabled: Partitioning", cursor.begin());
    if (cursor.accept("ADD"))
        return oneOrMore(cursor, [&] { addOne(cursor, actions); });
    if (cursor.accept("MODIFY"))
        return parseModify(cursor, actions);
    if (cursor.accept("DROP"))
        return parseDropAction(cursor, actions);
    if (cursor.accept("SET"))
        return parseSetAction(cursor, actions);
    if (cursor.accept("RENAME"))
        return parseRenameAction(cursor, actions);
    if (cursor.accept("ENABLE"))
        return parseSwitch(cursor, actions, true);
    if (cursor.accept("DISABLE"))
        return parseSwitch(cursor, actions, false);
    if (cursor.accept("READ", "ONLY")) {
        actions.push_back(action(AlterTableKind::ReadOnly));
    } else if (cursor.accept("READ", "WRITE")) {
        actions.push_back(action(AlterTableKind::ReadWrite));
    } else if (!acceptWithoutEffect(cursor, actions)) {
        cursor.fail(InvalidTableOption);
    }
}

Statement* parseAlterAccepted(TokenCursor& cursor, ObjectKind kind) {
    Accepted* const accepted = makeStatement<Accepted>(cursor, StatementKind::Accepted);
    accepted->verb = "ALTER";
    accepted->objectKind = kind;
    cursor.next();
    if (!cursor.accept("VIEW"))
        cursor.accept("SYNONYM");
    accepted->object = parseObjectName(cursor, InvalidTable);
    while (!cursor.atEnd() && !cursor.atSymbol(";"))
        cursor.next();
    return finishStatement(cursor, accepted);
}

} // namespace

Statement* parseAlterTable(TokenCursor& cursor) {
    AlterTable* const table = makeStatement<AlterTable>(cursor, StatementKind::AlterTable);
    cursor.next();
    table->name = parseObjectName(cursor, InvalidTable);
    constexpr int NoOptions = 2210;
    if (cursor.atEnd())
        throw OraError(NoOptions, "no options specified for ALTER TABLE", cursor.begin());
    Actions actions;
    do {
        parseTableAction(cursor, actions);
    } while (!cursor.atEnd() && !cursor.atSymbol(";"));
    table->actions = cursor.arena().list(actions);
    return finishStatement(cursor, table);
}

Statement* parseAlterIndex(TokenCursor& cursor) {
    AlterIndex* const index = makeStatement<AlterIndex>(cursor, StatementKind::AlterIndex);
    cursor.next();
    index->name = parseObjectName(cursor, InvalidIndexName);
    if (cursor.accept("RENAME")) {
        cursor.expect("TO", MissingTo);
        index->newName = parseObjectName(cursor, InvalidIndexName).name;
        return finishStatement(cursor, index);
    }
    constexpr int InvalidIndexOption = 2243;
    if (cursor.peek().kind != TokenKind::Word)
        throw OraError(InvalidIndexOption, "invalid ALTER INDEX or ALTER MATERIALIZED VIEW option",
                       cursor.begin());
    while (!cursor.atEnd() && !cursor.atSymbol(";"))
        cursor.next();
    return finishStatement(cursor, index);
}

Statement* parseAlterTrigger(TokenCursor& cursor) {
    AlterTrigger* const trigger = makeStatement<AlterTrigger>(cursor, StatementKind::AlterTrigger);
    cursor.next();
    trigger->name = parseObjectName(cursor, InvalidIdentifier);
    trigger->enable = cursor.accept("ENABLE");
    trigger->disable = !trigger->enable && cursor.accept("DISABLE");
    if (cursor.accept("RENAME")) {
        cursor.expect("TO", MissingTo);
        trigger->newName = cursor.name(InvalidIdentifier);
    } else if (!trigger->enable && !trigger->disable) {
        cursor.expect("COMPILE", MissingKeyword);
    }
    return finishStatement(cursor, trigger);
}

Statement* parseAlter(TokenCursor& cursor) {
    cursor.next();
    cursor.accept("PUBLIC");
    if (cursor.at("TABLE"))
        return parseAlterTable(cursor);
    if (cursor.at("INDEX"))
        return parseAlterIndex(cursor);
    if (cursor.at("SEQUENCE"))
        return parseAlterSequence(cursor);
    if (cursor.at("SESSION"))
        return parseAlterSession(cursor);
    if (cursor.at("TRIGGER"))
        return parseAlterTrigger(cursor);
    if (cursor.at("VIEW"))
        return parseAlterAccepted(cursor, ObjectKind::View);
    if (cursor.at("SYNONYM"))
        return parseAlterAccepted(cursor, ObjectKind::Synonym);
    if (cursor.atAnyOf({"MATERIALIZED", "PROCEDURE", "FUNCTION", "PACKAGE", "TYPE"}))
        return parseAlterAccepted(cursor, ObjectKind::Other);
    cursor.fail(cursor.atAnyOf({"USER", "SYSTEM", "DATABASE", "TABLESPACE", "ROLE", "PROFILE",
                                "PLUGGABLE", "CLUSTER", "RESOURCE", "ROLLBACK"})
                    ? InsufficientPrivileges
                    : InvalidAlter);
}

} // namespace ora
