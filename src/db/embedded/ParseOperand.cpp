#include "ParseOperand.h"

#include "ErrorText.h"
#include "ParseExpression.h"
#include "ParseQuery.h"
#include "ParseType.h"

namespace ora {

namespace {

constexpr int MissingKeyword = 905;
constexpr int MissingLeftParenthesis = 906;
constexpr int MissingRightParenthesis = 907;
constexpr int MissingExpression = 936;
constexpr int InvalidColumn = 1747;

Expr* makeLiteral(TokenCursor& cursor, ExprKind kind) {
    const std::uint32_t begin = cursor.begin();
    const std::string_view text = cursor.next().text;
    return makeExpr<Literal>(cursor, kind, begin, text);
}

// DATE '…', TIMESTAMP '…', INTERVAL '…' …; null when the word is a name here.
Expr* parseDateLiteral(TokenCursor& cursor) {
    if (cursor.peek(1).kind != TokenKind::Text)
        return nullptr;
    const std::uint32_t begin = cursor.begin();
    const std::string_view word = cursor.peek().text;
    if (word != "DATE" && word != "TIMESTAMP" && word != "INTERVAL")
        return nullptr;
    cursor.next();
    const std::string_view text = cursor.next().text;
    if (word == "INTERVAL") {
        const IntervalQualifier qualifier = parseIntervalQualifier(cursor);
        return makeExpr<IntervalLiteral>(cursor, ExprKind::Interval, begin, text, qualifier);
    }
    return makeExpr<Literal>(cursor, word == "DATE" ? ExprKind::Date : ExprKind::Timestamp, begin,
                             text);
}

Expr* parseCase(TokenCursor& cursor) {
    const std::uint32_t begin = cursor.begin();
    cursor.next();
    Expr* const operand = cursor.at("WHEN") ? nullptr : parseValue(cursor);
    std::vector<CaseArm> arms;
    while (cursor.accept("WHEN")) {
        Expr* const when = operand ? parseValue(cursor) : parseCondition(cursor);
        cursor.expect("THEN", MissingKeyword);
        arms.push_back({when, parseValue(cursor)});
    }
    if (arms.empty())
        cursor.fail(MissingKeyword);
    Expr* const otherwise = cursor.accept("ELSE") ? parseValue(cursor) : nullptr;
    cursor.expect("END", MissingKeyword);
    return makeExpr<Case>(cursor, ExprKind::Case, begin, operand, cursor.arena().list(arms),
                          otherwise);
}

Expr* parseCast(TokenCursor& cursor, std::uint32_t begin, bool validates) {
    cursor.expectSymbol("(", MissingLeftParenthesis);
    if (cursor.at("MULTISET"))
        refuse("collections", cursor.begin());
    Expr* const operand = parseValue(cursor);
    cursor.expect("AS", MissingKeyword);
    const TypeInfo type = parseType(cursor);
    Expr* const onError = acceptConversionDefault(cursor);
    std::span<Expr*> model;
    if (cursor.acceptSymbol(","))
        model = parseValueList(cursor);
    cursor.expectSymbol(")", MissingRightParenthesis);
    return makeExpr<Cast>(cursor, ExprKind::Cast, begin, operand, type, model, onError, validates);
}

Expr* parseExtract(TokenCursor& cursor, std::uint32_t begin) {
    cursor.expectSymbol("(", MissingLeftParenthesis);
    if (cursor.peek().kind != TokenKind::Word || !cursor.peek(1).isWord("FROM"))
        refuse("XML operators", cursor.begin());
    const std::string_view field = cursor.next().text;
    cursor.next();
    Expr* const operand = parseValue(cursor);
    cursor.expectSymbol(")", MissingRightParenthesis);
    return makeExpr<Extract>(cursor, ExprKind::Extract, begin, field, operand);
}

char trimSide(TokenCursor& cursor) {
    if (cursor.accept("LEADING"))
        return 'L';
    if (cursor.accept("TRAILING"))
        return 'T';
    cursor.accept("BOTH");
    return 'B';
}

Expr* parseTrim(TokenCursor& cursor, std::uint32_t begin) {
    cursor.expectSymbol("(", MissingLeftParenthesis);
    const char side = trimSide(cursor);
    Expr* characters = nullptr;
    Expr* operand = cursor.at("FROM") ? nullptr : parseValue(cursor);
    if (cursor.accept("FROM")) {
        characters = operand;
        operand = parseValue(cursor);
    }
    cursor.expectSymbol(")", MissingRightParenthesis);
    return makeExpr<Trim>(cursor, ExprKind::Trim, begin, side, characters, operand);
}

Expr* parseSubquery(TokenCursor& cursor, ExprKind kind, std::uint32_t begin) {
    Query* const query = parseParenthesizedQuery(cursor);
    return makeExpr<SubqueryExpr>(cursor, kind, begin, query);
}

bool isRefusedCall(std::string_view word) {
    return word.starts_with("XML") || word.starts_with("JSON_") || word == "CURSOR" ||
           word == "MULTISET" || word == "SET" || word == "TREAT" || word == "COLLECT" ||
           word == "DEREF";
}

// The operand that a keyword before a parenthesis begins; null when the word is a function's name.
Expr* parseKeywordCall(TokenCursor& cursor) {
    const std::uint32_t begin = cursor.begin();
    const std::string_view word = cursor.peek().text;
    if (isRefusedCall(word))
        refuse(std::string(word) + " expressions", begin);
    if (word == "EXISTS") {
        cursor.next();
        if (!cursor.opensOnlyQuery())
            cursor.fail(MissingExpression);
        return parseSubquery(cursor, ExprKind::Exists, begin);
    }
    if (word == "CAST")
        return cursor.next(), parseCast(cursor, begin, false);
    if (word == "VALIDATE_CONVERSION")
        return cursor.next(), parseCast(cursor, begin, true);
    if (word == "EXTRACT")
        return cursor.next(), parseExtract(cursor, begin);
    if (word == "TRIM")
        return cursor.next(), parseTrim(cursor, begin);
    return nullptr;
}

// Reserved words that stand for a value without parentheses.
bool isValueWord(const Token& token) {
    return token.isWord("LEVEL") || token.isWord("ROWNUM") || token.isWord("ROWID") ||
           token.isWord("SYSDATE") || token.isWord("UID") || token.isWord("USER");
}

bool startsName(const TokenCursor& cursor) {
    return cursor.atName() || isValueWord(cursor.peek()) ||
           (cursor.peek().kind == TokenKind::Bind && cursor.peek(1).isSymbol("."));
}

std::span<Name> parsePath(TokenCursor& cursor) {
    std::vector<Name> parts{nameOf(cursor.next())};
    while (cursor.atSymbol(".")) {
        cursor.next();
        if (!cursor.atName() && !isValueWord(cursor.peek()))
            cursor.fail(InvalidColumn);
        parts.push_back(nameOf(cursor.next()));
    }
    return cursor.arena().list(parts);
}

bool acceptOuterMark(TokenCursor& cursor) {
    if (!cursor.atSymbol("(") || !cursor.peek(1).isSymbol("+") || !cursor.peek(2).isSymbol(")"))
        return false;
    for (int i = 0; i < 3; ++i)
        cursor.next();
    return true;
}

Expr* parseNamed(TokenCursor& cursor) {
    const std::uint32_t begin = cursor.begin();
    const bool bind = cursor.peek().kind == TokenKind::Bind;
    const bool valueWord = isValueWord(cursor.peek()) && !cursor.peek(1).isSymbol(".");
    const std::span<Name> path = parsePath(cursor);
    if (bind) // :new.column of a trigger; no other name begins with a colon
        path[0].text = cursor.arena().text(":" + std::string(path[0].text));
    const bool outer = acceptOuterMark(cursor);
    if (!outer && cursor.atSymbol("(") && !bind && !valueWord)
        return parseFunction(cursor, path);
    if (cursor.atSymbol("@")) {
        constexpr int NoRemoteDatabase = 2019;
        cursor.fail(NoRemoteDatabase);
    }
    return makeExpr<ColumnRef>(cursor, ExprKind::Column, begin, path, outer);
}

} // namespace

Expr* parseOperand(TokenCursor& cursor) {
    const Token& token = cursor.peek();
    switch (token.kind) {
    case TokenKind::Number: return makeLiteral(cursor, ExprKind::Number);
    case TokenKind::Text: return makeLiteral(cursor, ExprKind::Text);
    case TokenKind::NationalText: return makeLiteral(cursor, ExprKind::NationalText);
    case TokenKind::Bind:
        return cursor.peek(1).isSymbol(".") ? parseNamed(cursor)
                                            : makeLiteral(cursor, ExprKind::Bind);
    case TokenKind::Symbol:
        if (cursor.opensQuery())
            return parseSubquery(cursor, ExprKind::Subquery, cursor.begin());
        cursor.fail(MissingExpression);
    case TokenKind::Word:
        if (Expr* const literal = parseDateLiteral(cursor))
            return literal;
        if (token.text == "NULL")
            return makeLiteral(cursor, ExprKind::Null);
        if (token.text == "CASE" && !cursor.peek(1).isSymbol("."))
            return parseCase(cursor);
        if (cursor.peek(1).isSymbol("("))
            if (Expr* const call = parseKeywordCall(cursor))
                return call;
        break;
    default: break;
    }
    if (!startsName(cursor))
        cursor.fail(MissingExpression);
    return parseNamed(cursor);
}

Expr* acceptConversionDefault(TokenCursor& cursor) {
    if (!cursor.accept("DEFAULT"))
        return nullptr;
    Expr* const value = parseValue(cursor);
    for (const std::string_view word : {"ON", "CONVERSION", "ERROR"})
        cursor.expect(word, MissingKeyword);
    return value;
}

Expr* parseDatePostfix(TokenCursor& cursor, Expr* operand) {
    if (cursor.peek().kind != TokenKind::Word)
        return nullptr;
    const std::uint32_t begin = operand->at.begin;
    if (cursor.accept("AT", "LOCAL"))
        return makeExpr<AtTimeZone>(cursor, ExprKind::AtTimeZone, begin, operand, nullptr);
    if (cursor.at("AT", "TIME") && cursor.peek(2).isWord("ZONE")) {
        for (int i = 0; i < 3; ++i)
            cursor.next();
        Expr* const zone = parseOperand(cursor);
        return makeExpr<AtTimeZone>(cursor, ExprKind::AtTimeZone, begin, operand, zone);
    }
    if (!cursor.atAnyOf({"DAY", "YEAR"}))
        return nullptr;
    const bool plain = cursor.peek(1).isWord("TO");
    const bool sized = cursor.peek(1).isSymbol("(") && cursor.peek(4).isWord("TO");
    if (!plain && !sized)
        return nullptr;
    const IntervalQualifier qualifier = parseIntervalQualifier(cursor);
    return makeExpr<IntervalCast>(cursor, ExprKind::IntervalCast, begin, operand, qualifier);
}

} // namespace ora
