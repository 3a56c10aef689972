#include "ErrorText.h"
#include "ParseQuery.h"
#include "ParseStatement.h"

// Transactions, the session's settings, statistics and EXPLAIN PLAN.
namespace ora {

namespace {

constexpr int InvalidStatement = 900;
constexpr int InvalidTable = 903;
constexpr int MissingKeyword = 905;
constexpr int InvalidOption = 922;
constexpr int MissingEqual = 927;
constexpr int MissingIdentifier = 931;
constexpr int TextRequired = 1780;
constexpr int InvalidRollback = 2181;
constexpr int TokenAfterCommit = 2185;
constexpr int InvalidSessionOption = 2248;

Accepted* makeAccepted(TokenCursor& cursor) {
    Accepted* const accepted = makeStatement<Accepted>(cursor, StatementKind::Accepted);
    accepted->verb = cursor.next().text;
    return accepted;
}

Statement* acceptRest(TokenCursor& cursor, Accepted* accepted) {
    while (!cursor.atEnd() && !cursor.atSymbol(";"))
        cursor.next();
    return finishStatement(cursor, accepted);
}

std::string_view parseText(TokenCursor& cursor) {
    if (cursor.peek().kind != TokenKind::Text)
        cursor.fail(TextRequired);
    return cursor.next().text;
}

Statement* parseSetTransaction(TokenCursor& cursor, SetTransaction* set) {
    if (cursor.accept("READ", "ONLY")) {
        set->readOnly = true;
    } else if (cursor.accept("ISOLATION", "LEVEL")) {
        if (!cursor.accept("READ", "COMMITTED"))
            cursor.expect("SERIALIZABLE", MissingKeyword);
    } else if (cursor.accept("USE", "ROLLBACK")) {
        cursor.expect("SEGMENT", MissingKeyword);
        cursor.name(MissingIdentifier);
    } else if (!cursor.accept("READ", "WRITE") && !cursor.at("NAME")) {
        cursor.fail(InvalidStatement);
    }
    if (cursor.accept("NAME"))
        parseText(cursor);
    return finishStatement(cursor, set);
}

Statement* parseSetConstraints(TokenCursor& cursor) {
    SetConstraints* const set =
        makeStatement<SetConstraints>(cursor, StatementKind::SetConstraints);
    cursor.next();
    cursor.next();
    std::vector<ObjectName> names;
    if (!cursor.accept("ALL")) {
        do {
            names.push_back(parseObjectName(cursor, MissingIdentifier));
        } while (cursor.acceptSymbol(","));
    }
    set->names = cursor.arena().list(names);
    set->deferred = cursor.accept("DEFERRED");
    if (!set->deferred)
        cursor.expect("IMMEDIATE", MissingKeyword);
    return finishStatement(cursor, set);
}

// The value may be more than one token, as READ COMMITTED: up to the next name and equal sign.
std::string_view parseSettingValue(TokenCursor& cursor) {
    const std::uint32_t begin = cursor.begin();
    if (cursor.peek().kind == TokenKind::Text)
        return cursor.next().text;
    if (cursor.atEnd())
        cursor.fail(InvalidSessionOption);
    while (!cursor.atEnd() && !cursor.atSymbol(";") && !cursor.peek(1).isSymbol("="))
        cursor.next();
    return cursor.textFrom(begin);
}

SessionParameter parseSetting(TokenCursor& cursor) {
    SessionParameter setting{};
    if (cursor.peek().kind != TokenKind::Word && !cursor.atName()) // or quoted: "_a_secret"
        cursor.fail(InvalidSessionOption);
    setting.name = cursor.next().text;
    if (setting.name == "EVENTS" && cursor.peek().kind == TokenKind::Text) {
        setting.value = cursor.next().text;
        return setting;
    }
    while (!cursor.atEnd() && !cursor.atSymbol("=")) // ROW ARCHIVAL VISIBILITY
        cursor.next();
    cursor.expectSymbol("=", MissingEqual);
    setting.value = parseSettingValue(cursor);
    return setting;
}

} // namespace

Statement* parseCommit(TokenCursor& cursor) {
    Statement* const commit = makeStatement<Statement>(cursor, StatementKind::Commit);
    cursor.next();
    cursor.accept("WORK");
    if (cursor.accept("COMMENT"))
        parseText(cursor);
    if (cursor.accept("WRITE"))
        while (cursor.atAnyOf({"WAIT", "NOWAIT", "IMMEDIATE", "BATCH"}))
            cursor.next();
    if (!cursor.atEnd())
        cursor.fail(TokenAfterCommit);
    return finishStatement(cursor, commit);
}

Statement* parseRollback(TokenCursor& cursor) {
    Rollback* const rollback = makeStatement<Rollback>(cursor, StatementKind::Rollback);
    cursor.next();
    cursor.accept("WORK");
    if (cursor.accept("TO")) {
        cursor.accept("SAVEPOINT");
        rollback->savepoint = cursor.name(MissingIdentifier);
    }
    if (!cursor.atEnd())
        cursor.fail(InvalidRollback);
    return finishStatement(cursor, rollback);
}

Statement* parseSavepoint(TokenCursor& cursor) {
    Savepoint* const savepoint = makeStatement<Savepoint>(cursor, StatementKind::Savepoint);
    cursor.next();
    savepoint->name = cursor.name(MissingIdentifier);
    return finishStatement(cursor, savepoint);
}

Statement* parseSet(TokenCursor& cursor) {
    if (cursor.peek(1).isWord("ROLE"))
        return acceptRest(cursor, makeAccepted(cursor));
    if (cursor.peek(1).isWord("CONSTRAINT") || cursor.peek(1).isWord("CONSTRAINTS"))
        return parseSetConstraints(cursor);
    SetTransaction* const set =
        makeStatement<SetTransaction>(cursor, StatementKind::SetTransaction);
    cursor.next();
    cursor.expect("TRANSACTION", InvalidOption);
    return parseSetTransaction(cursor, set);
}

Statement* parseAlterSession(TokenCursor& cursor) {
    AlterSession* const alter = makeStatement<AlterSession>(cursor, StatementKind::AlterSession);
    cursor.next();
    if (cursor.atAnyOf({"ENABLE", "DISABLE", "FORCE", "ADVISE", "CLOSE", "SYNC"})) {
        while (!cursor.atEnd() && !cursor.atSymbol(";"))
            cursor.next();
        return finishStatement(cursor, alter);
    }
    cursor.expect("SET", InvalidSessionOption);
    std::vector<SessionParameter> settings;
    do {
        settings.push_back(parseSetting(cursor));
    } while (!cursor.atEnd() && !cursor.atSymbol(";"));
    alter->parameters = cursor.arena().list(settings);
    return finishStatement(cursor, alter);
}

Statement* parseLock(TokenCursor& cursor) {
    LockTable* const lock = makeStatement<LockTable>(cursor, StatementKind::LockTable);
    cursor.next();
    cursor.expect("TABLE", MissingKeyword);
    std::vector<ObjectName> tables;
    do {
        tables.push_back(parseObjectName(cursor, InvalidTable));
    } while (cursor.acceptSymbol(","));
    lock->tables = cursor.arena().list(tables);
    cursor.expect("IN", MissingKeyword);
    while (cursor.atAnyOf({"ROW", "SHARE", "EXCLUSIVE", "UPDATE"}))
        cursor.next();
    cursor.expect("MODE", MissingKeyword);
    if (!cursor.accept("NOWAIT") && cursor.accept("WAIT"))
        cursor.integer(MissingKeyword);
    return finishStatement(cursor, lock);
}

// There is no recycle bin: nothing has to be thrown out of it, and no object is in it.
Statement* parsePurge(TokenCursor& cursor) {
    constexpr int NotInRecycleBin = 38307;
    Accepted* const purge = makeAccepted(cursor);
    if (cursor.accept("RECYCLEBIN") || cursor.accept("DBA_RECYCLEBIN"))
        return finishStatement(cursor, purge);
    if (!cursor.accept("TABLE"))
        cursor.expect("INDEX", MissingKeyword);
    parseObjectName(cursor, InvalidTable);
    throw OraError(NotInRecycleBin, "object not in RECYCLE BIN", cursor.begin());
}

Statement* parseAnalyze(TokenCursor& cursor) {
    Accepted* const analyze = makeAccepted(cursor);
    analyze->objectKind = cursor.at("INDEX") ? ObjectKind::Index : ObjectKind::Table;
    if (!cursor.accept("TABLE"))
        cursor.expect("INDEX", MissingKeyword);
    analyze->object = parseObjectName(cursor, InvalidTable);
    if (!cursor.atAnyOf({"COMPUTE", "ESTIMATE", "VALIDATE", "DELETE", "LIST"}))
        cursor.fail(MissingKeyword);
    return acceptRest(cursor, analyze);
}

Statement* parseExplain(TokenCursor& cursor) {
    ExplainPlan* const explain = makeStatement<ExplainPlan>(cursor, StatementKind::ExplainPlan);
    cursor.next();
    cursor.expect("PLAN", MissingKeyword);
    if (cursor.accept("SET")) {
        cursor.expect("STATEMENT_ID", MissingKeyword);
        cursor.expectSymbol("=", MissingEqual);
        explain->statementId = parseText(cursor);
    }
    if (cursor.accept("INTO"))
        explain->into = parseObjectName(cursor, InvalidTable);
    cursor.expect("FOR", MissingKeyword);
    explain->statement = parseAnyStatement(cursor);
    return finishStatement(cursor, explain);
}

} // namespace ora
