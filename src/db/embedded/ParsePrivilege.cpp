#include "ErrorText.h"
#include "NamedRow.h"
#include "ParseQuery.h"
#include "ParseStatement.h"

// GRANT and REVOKE.
namespace ora {

namespace {

constexpr int InvalidTable = 903;
constexpr int MissingKeyword = 905;
constexpr int InvalidIdentifier = 904;
constexpr int InvalidGrantee = 987;
constexpr int InvalidPrivilege = 990;

constexpr std::string_view objectPrivileges[] = {
    "ALL",    "ALL PRIVILEGES", "ALTER",  "DEBUG",  "DELETE",     "EXECUTE",
    "INDEX",  "FLASHBACK",      "INSERT", "READ",   "REFERENCES", "MERGE VIEW",
    "SELECT", "QUERY REWRITE",  "UNDER",  "UPDATE", "USE",        "WRITE",
};
// What the names of system privileges begin with.
constexpr std::string_view systemVerbs[] = {
    "ADMINISTER", "ADVISOR",    "ALTER",     "ANALYZE", "AUDIT",  "BACKUP",
    "BECOME",     "CHANGE",     "COMMENT",   "CREATE",  "DEBUG",  "DROP",
    "EXEMPT",     "EXPORT",     "FLASHBACK", "FORCE",   "GLOBAL", "GRANT",
    "IMPORT",     "LOCK",       "MANAGE",    "MERGE",   "ON",     "PURGE",
    "QUERY",      "RESTRICTED", "RESUMABLE", "SELECT",  "UNDER",  "UNLIMITED",
};

bool endsPrivilege(const TokenCursor& cursor, std::string_view direction) {
    return cursor.atEnd() || cursor.atSymbol(",") || cursor.atSymbol("(") || cursor.at("ON") ||
           cursor.at(direction);
}

Privilege parsePrivilege(TokenCursor& cursor, std::string_view direction) {
    const bool quoted = cursor.peek().kind == TokenKind::QuotedName;
    if (!quoted && cursor.peek().kind != TokenKind::Word)
        cursor.fail(InvalidPrivilege);
    const std::string_view first = cursor.next().text;
    std::string name(first);
    const bool single = endsPrivilege(cursor, direction);
    if (!single && isOneOf(first, objectPrivileges) && !cursor.at("ANY") &&
        !isOneOf(name + ' ' + std::string(cursor.peek().text), objectPrivileges) &&
        !isOneOf(first, systemVerbs))
        cursor.fail(MissingKeyword);
    if (!single && first == "SELECT" && !cursor.at("ANY"))
        cursor.fail(MissingKeyword);
    while (!endsPrivilege(cursor, direction))
        name += ' ' + std::string(cursor.next().text);
    Privilege privilege{cursor.arena().text(name), {}, PrivilegeKind::Role};
    if (cursor.atSymbol("("))
        privilege.columns = parseNameList(cursor, InvalidIdentifier);
    if (isOneOf(name, objectPrivileges))
        privilege.kind = PrivilegeKind::Object;
    else if (!single)
        privilege.kind = PrivilegeKind::System;
    if (privilege.kind == PrivilegeKind::System && !cursor.at("ON") &&
        !isOneOf(first, systemVerbs) && !isOneOf(first, objectPrivileges))
        cursor.fail(InvalidPrivilege);
    return privilege;
}

// The object behind ON, when it is one of the schema and not DIRECTORY and the like.
void parseObject(TokenCursor& cursor, Grant& grant) {
    if (!cursor.accept("ON"))
        return;
    grant.onObject = true;
    if (cursor.atAnyOf({"DIRECTORY", "JAVA", "EDITION", "USER"})) {
        cursor.next();
        cursor.name(InvalidIdentifier);
        return;
    }
    grant.object = parseObjectName(cursor, InvalidTable);
}

// Privileges on an object need one, others may have none.
void checkKinds(const TokenCursor& cursor, const Grant& grant) {
    for (const Privilege& privilege : grant.privileges) {
        const bool onObject = privilege.kind == PrivilegeKind::Object;
        if (onObject != grant.onObject && !(privilege.isAll() && !grant.onObject))
            cursor.fail(InvalidPrivilege);
    }
}

Name parseGrantee(TokenCursor& cursor) {
    if (cursor.at("PUBLIC"))
        return nameOf(cursor.next());
    return cursor.name(InvalidGrantee);
}

void parseOptions(TokenCursor& cursor, Grant& grant) {
    while (cursor.accept("WITH")) {
        grant.grantable = cursor.at("GRANT") || grant.grantable;
        if (!cursor.accept("GRANT") && !cursor.accept("ADMIN") && !cursor.accept("HIERARCHY"))
            cursor.fail(MissingKeyword);
        cursor.expect("OPTION", MissingKeyword);
    }
    if (cursor.accept("CASCADE"))
        cursor.expect("CONSTRAINTS", MissingKeyword);
    if (cursor.accept("IDENTIFIED", "BY"))
        cursor.next();
}

} // namespace

Statement* parseGrant(TokenCursor& cursor) {
    Grant* const grant = makeStatement<Grant>(cursor, StatementKind::Grant);
    grant->revokes = cursor.next().text == "REVOKE";
    const std::string_view direction = grant->revokes ? "FROM" : "TO";
    std::vector<Privilege> privileges;
    do {
        privileges.push_back(parsePrivilege(cursor, direction));
    } while (cursor.acceptSymbol(","));
    grant->privileges = cursor.arena().list(privileges);
    parseObject(cursor, *grant);
    cursor.expect(direction, MissingKeyword);
    checkKinds(cursor, *grant);
    std::vector<Name> grantees;
    do {
        grantees.push_back(parseGrantee(cursor));
    } while (cursor.acceptSymbol(","));
    grant->grantees = cursor.arena().list(grantees);
    parseOptions(cursor, *grant);
    return finishStatement(cursor, grant);
}

} // namespace ora
