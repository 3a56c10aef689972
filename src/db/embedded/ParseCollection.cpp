#include "ParseCollection.h"

#include "ErrorText.h"
#include "Lexer.h"
#include "ParseExpression.h"
#include "ParseQuery.h"

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

// The statement that was explained last, as the server's package lays it out.
constexpr std::string_view planText =
    "WITH p AS (SELECT id, LPAD(' ', LEVEL - 1) || operation || NVL2(options, ' ' || options, '')"
    " op, NVL(object_name, ' ') nm, NVL(TO_CHAR(cardinality), ' ') rw, NVL(TO_CHAR(bytes), ' ') "
    "by_,"
    " NVL(TO_CHAR(cost), ' ') co FROM (SELECT t.*, ROWID ri FROM plan_table t) START WITH ri ="
    " (SELECT ri FROM (SELECT ROWID ri FROM plan_table WHERE id = 0 ORDER BY ROWID DESC) WHERE"
    " ROWNUM = 1) CONNECT BY PRIOR id = parent_id AND ri > PRIOR ri ORDER SIBLINGS BY position),"
    " w AS (SELECT GREATEST(MAX(LENGTH(op)), 9) o, GREATEST(MAX(LENGTH(nm)), 4) n,"
    " GREATEST(MAX(LENGTH(rw)), 5) r, GREATEST(MAX(LENGTH(by_)), 5) b, GREATEST(MAX(LENGTH(co)), 4)"
    " c FROM p), l AS (SELECT w.*, RPAD('-', o + n + r + b + c + 21, '-') bar FROM w)"
    " SELECT line plan_table_output FROM ("
    "SELECT 1 part, 0 id, 'Plan hash value: ' || (SELECT SUM(ORA_HASH(op || nm)) FROM p) line FROM "
    "l"
    " WHERE o IS NOT NULL"
    " UNION ALL SELECT 2, 0, ' ' FROM l WHERE o IS NOT NULL"
    " UNION ALL SELECT 3, 0, bar FROM l WHERE o IS NOT NULL"
    " UNION ALL SELECT 4, 0, '| Id  | ' || RPAD('Operation', o) || ' | ' || RPAD('Name', n) || ' | "
    "'"
    " || LPAD('Rows', r) || ' | ' || LPAD('Bytes', b) || ' | ' || LPAD('Cost', c) || ' |' FROM l"
    " WHERE o IS NOT NULL"
    " UNION ALL SELECT 5, 0, bar FROM l WHERE o IS NOT NULL"
    " UNION ALL SELECT 6, id, '|' || LPAD(id, 4) || ' | ' || RPAD(op, o) || ' | ' || RPAD(nm, n) ||"
    " ' | ' || LPAD(rw, r) || ' | ' || LPAD(by_, b) || ' | ' || LPAD(co, c) || ' |' FROM p, l"
    " UNION ALL SELECT 7, 0, bar FROM l WHERE o IS NOT NULL"
    " UNION ALL SELECT 8, 0, 'Error: cannot fetch last explain plan from PLAN_TABLE' FROM l WHERE o"
    " IS NULL"
    ") ORDER BY part, id";

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
    return parsedText(cursor, planText);
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
