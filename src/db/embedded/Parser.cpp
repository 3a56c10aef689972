#include "Parser.h"

#include "ErrorText.h"
#include "ParseExpression.h"
#include "ParseQuery.h"
#include "ParseStatement.h"

namespace ora {

namespace {

constexpr int InvalidStatement = 900;

struct StatementStart {
    std::string_view word;
    Statement* (*parse)(TokenCursor&);
};
constexpr StatementStart statementStarts[] = {
    {"SELECT", parseQueryStatement},
    {"WITH", parseQueryStatement},
    {"INSERT", parseInsert},
    {"UPDATE", parseUpdate},
    {"DELETE", parseDelete},
    {"MERGE", parseMerge},
    {"CREATE", parseCreate},
    {"ALTER", parseAlter},
    {"DROP", parseDrop},
    {"RENAME", parseRename},
    {"TRUNCATE", parseTruncate},
    {"COMMENT", parseComment},
    {"GRANT", parseGrant},
    {"REVOKE", parseGrant},
    {"ANALYZE", parseAnalyze},
    {"COMMIT", parseCommit},
    {"ROLLBACK", parseRollback},
    {"SAVEPOINT", parseSavepoint},
    {"SET", parseSet},
    {"LOCK", parseLock},
    {"EXPLAIN", parseExplain},
    {"PURGE", parsePurge},
};

void refuseStatement(const TokenCursor& cursor) {
    constexpr int InsufficientPrivileges = 1031;
    if (cursor.atAnyOf({"BEGIN", "DECLARE", "CALL"}) || cursor.peek().isSymbol("<"))
        refuse("PL/SQL", cursor.begin());
    if (cursor.atAnyOf({"FLASHBACK", "ASSOCIATE", "DISASSOCIATE"}))
        refuse(std::string(cursor.peek().text), cursor.begin());
    if (cursor.atAnyOf({"AUDIT", "NOAUDIT"}))
        cursor.fail(InsufficientPrivileges);
}

template<class Parse>
std::unique_ptr<Tree> parseText(std::string_view text, Parse parse) {
    auto tree = std::make_unique<Tree>(text);
    const std::vector<Token> tokens = tokenize(tree->source, tree->arena);
    TokenCursor cursor(tree->source, tokens, tree->arena);
    parse(cursor, *tree);
    cursor.expectEnd();
    return tree;
}

} // namespace

Statement* parseAnyStatement(TokenCursor& cursor) {
    const Nesting nesting(cursor);
    for (const StatementStart& start : statementStarts)
        if (cursor.at(start.word))
            return start.parse(cursor);
    if (cursor.opensQuery() || cursor.opensOnlyQuery())
        return parseQueryStatement(cursor);
    refuseStatement(cursor);
    cursor.fail(InvalidStatement);
}

std::unique_ptr<Tree> parseStatement(std::string_view text) {
    return parseText(
        text, [](TokenCursor& cursor, Tree& tree) { tree.statement = parseAnyStatement(cursor); });
}

std::unique_ptr<Tree> parseQueryText(std::string_view text) {
    return parseText(text, [](TokenCursor& cursor, Tree& tree) {
        tree.query = parseQuery(cursor);
        if (cursor.at("WITH")) // READ ONLY or CHECK OPTION, at the end of a view's text
            while (!cursor.atEnd())
                cursor.next();
    });
}

std::unique_ptr<Tree> parseValueText(std::string_view text) {
    return parseText(text, [](TokenCursor& cursor, Tree& tree) { tree.expr = parseValue(cursor); });
}

std::unique_ptr<Tree> parseConditionText(std::string_view text) {
    return parseText(text,
                     [](TokenCursor& cursor, Tree& tree) { tree.expr = parseCondition(cursor); });
}

} // namespace ora
