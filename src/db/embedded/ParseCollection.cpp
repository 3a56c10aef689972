#include "ParseCollection.h"

#include "ErrorText.h"
#include "Lexer.h"
#include "ParseExpression.h"
#include "ParseQuery.h"
#include "PlanDisplay.h"

#include <algorithm>

namespace ora {

namespace {

constexpr int MissingLeftParenthesis = 906;
constexpr int MissingRightParenthesis = 907;

struct ListType {
    std::string_view name;
    TypeInfo element;
};
constexpr int LongestText = 4000;
constexpr int DebugText = 1000;
const ListType listTypes[] = {
    {"ODCIVARCHAR2LIST", {SqlType::Varchar2, LongestText}},
    {"ODCINUMBERLIST", {SqlType::Number}},
    {"ODCIDATELIST", {SqlType::Date}},
    {"ODCIRAWLIST", {SqlType::Raw, LongestText / 2}},
    {"DBMS_DEBUG_VC2COLL", {SqlType::Varchar2, DebugText}},
    {"KU$_VCNT", {SqlType::Varchar2, LongestText}},
};

// A query of our own in the statement's tree.
Query* parsedText(TokenCursor& cursor, std::string_view text) {
    const std::vector<Token> tokens = tokenize(text, cursor.arena());
    TokenCursor own(text, tokens, cursor.arena());
    return parseQuery(own);
}

// SELECT CAST(value AS element) COLUMN_VALUE FROM DUAL
QueryBlock* elementBlock(TokenCursor& cursor, Expr* value, const TypeInfo& element) {
    Arena& arena = cursor.arena();
    Cast* const cast = arena.make<Cast>();
    cast->kind = ExprKind::Cast;
    cast->at = value->at;
    cast->operand = value;
    cast->type = element;
    NamedTable* const dual = arena.make<NamedTable>();
    dual->kind = TableKind::Named;
    dual->name.schema = {"SYS", {}, false};
    dual->name.name = {"DUAL", {}, false};
    QueryBlock* const block = arena.make<QueryBlock>();
    block->items = arena.list(std::vector<SelectItem>{{cast, {"COLUMN_VALUE", {}, false}, {}}});
    block->from = arena.list(std::vector<TableRef*>{dual});
    return block;
}

Query* parseList(TokenCursor& cursor, const TypeInfo& element) {
    std::vector<QueryTerm> terms;
    const std::uint32_t begin = cursor.begin();
    cursor.expectSymbol("(", MissingLeftParenthesis);
    if (!cursor.atSymbol(")"))
        for (Expr* value : parseValueList(cursor))
            terms.push_back({terms.empty() ? SetOperator::None : SetOperator::UnionAll,
                             elementBlock(cursor, value, element), nullptr});
    cursor.expectSymbol(")", MissingRightParenthesis);
    if (terms.empty())
        return parsedText(cursor, "SELECT NULL column_value FROM dual WHERE 1 = 0");
    Query* const query = cursor.arena().make<Query>();
    query->at = cursor.extentFrom(begin);
    query->terms = cursor.arena().list(terms);
    return query;
}

Query* parsePlanDisplay(TokenCursor& cursor) {
    for (int i = 0; i < 3; ++i) // DBMS_XPLAN . DISPLAY…
        cursor.next();
    if (cursor.atSymbol("("))
        cursor.skipParentheses();
    return parsedText(cursor, planDisplayQuery);
}

// How many tokens a schema's name in front takes.
std::size_t ownerTokens(const TokenCursor& cursor) {
    return cursor.peek(1).isSymbol(".") && !cursor.at("DBMS_XPLAN") ? 2 : 0;
}

Query* parseKnown(TokenCursor& cursor) {
    const std::size_t owner = ownerTokens(cursor);
    if (cursor.at("DBMS_XPLAN") && cursor.peek(1).isSymbol(".") &&
        cursor.peek(2).text.starts_with("DISPLAY"))
        return parsePlanDisplay(cursor);
    for (const ListType& type : listTypes) {
        if (!cursor.peek(owner).isWord(type.name) || !cursor.peek(owner + 1).isSymbol("("))
            continue;
        for (std::size_t i = 0; i <= owner; ++i)
            cursor.next();
        return parseList(cursor, type.element);
    }
    return nullptr;
}

} // namespace

Query* parseCollection(TokenCursor& cursor) {
    if (!cursor.at("TABLE") || !cursor.peek(1).isSymbol("("))
        return parseKnown(cursor);
    const std::uint32_t begin = cursor.begin();
    cursor.next();
    cursor.next();
    Query* const query = parseKnown(cursor);
    if (!query)
        refuse("collections as tables", begin);
    cursor.expectSymbol(")", MissingRightParenthesis);
    return query;
}

} // namespace ora
