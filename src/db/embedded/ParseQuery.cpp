#include "ParseQuery.h"

#include "ErrorText.h"
#include "ParseExpression.h"
#include "ParseOperand.h"

namespace ora {

namespace {

constexpr int MissingKeyword = 905;
constexpr int MissingLeftParenthesis = 906;
constexpr int MissingRightParenthesis = 907;
constexpr int MissingExpression = 936;
constexpr int MissingFrom = 923;
constexpr int MissingBy = 924;
constexpr int MissingSelect = 928;
constexpr int MissingIdentifier = 931;

bool atStar(const TokenCursor& cursor, std::size_t& parts) {
    parts = 0;
    while (cursor.peek(2 * parts + 1).isSymbol(".") &&
           (cursor.peek(2 * parts).kind == TokenKind::Word ||
            cursor.peek(2 * parts).kind == TokenKind::QuotedName))
        ++parts;
    return cursor.peek(2 * parts).isSymbol("*");
}

Expr* parseStar(TokenCursor& cursor, std::size_t parts) {
    const std::uint32_t begin = cursor.begin();
    std::vector<Name> qualifier;
    for (std::size_t i = 0; i < parts; ++i) {
        qualifier.push_back(nameOf(cursor.next()));
        cursor.next();
    }
    cursor.next();
    return makeExpr<Star>(cursor, ExprKind::Star, begin, cursor.arena().list(qualifier));
}

Name parseColumnAlias(TokenCursor& cursor) {
    if (cursor.accept("AS"))
        return cursor.name(MissingFrom);
    if (cursor.at("BULK", "COLLECT"))
        refuse("PL/SQL", cursor.begin());
    return cursor.atName() ? cursor.name(MissingFrom) : Name();
}

SelectItem parseSelectItem(TokenCursor& cursor) {
    std::size_t parts = 0;
    if (atStar(cursor, parts)) {
        Expr* const star = parseStar(cursor, parts);
        if (parts == 0 && cursor.atSymbol(","))
            throw OraError(MissingFrom, errorText(MissingFrom), cursor.begin());
        return {star, {}, {}};
    }
    const std::size_t first = cursor.index();
    SelectItem item{parseValue(cursor), {}, {}};
    const std::string_view heading = headingOf(cursor, first);
    item.alias = parseColumnAlias(cursor);
    if (!item.alias)
        item.heading = heading;
    return item;
}

bool parseDistinct(TokenCursor& cursor) {
    if (cursor.accept("DISTINCT") || cursor.accept("UNIQUE"))
        return true;
    cursor.accept("ALL");
    return false;
}

std::span<Expr*> parseGroupExprs(TokenCursor& cursor) {
    std::vector<Expr*> exprs;
    if (cursor.atSymbol("(") && cursor.peek(1).isSymbol(")")) {
        cursor.next();
        cursor.next();
        return {};
    }
    Expr* const expr = parseValueOrRow(cursor);
    const bool row =
        expr->kind == ExprKind::List && static_cast<ListExpr*>(expr)->op == ListOp::Row;
    if (row)
        return static_cast<ListExpr*>(expr)->items;
    exprs.push_back(expr);
    return cursor.arena().list(exprs);
}

std::span<GroupItem> parseGroupItems(TokenCursor& cursor);

GroupItem parseGroupItem(TokenCursor& cursor) {
    const Nesting nesting(cursor);
    GroupKind kind = GroupKind::Simple;
    if (cursor.at("ROLLUP") && cursor.peek(1).isSymbol("("))
        kind = GroupKind::Rollup;
    else if (cursor.at("CUBE") && cursor.peek(1).isSymbol("("))
        kind = GroupKind::Cube;
    else if (cursor.at("GROUPING", "SETS"))
        kind = GroupKind::Sets;
    if (kind == GroupKind::Simple)
        return {kind, parseGroupExprs(cursor), {}};
    cursor.next();
    if (kind == GroupKind::Sets)
        cursor.next();
    cursor.expectSymbol("(", MissingLeftParenthesis);
    const std::span<GroupItem> items = parseGroupItems(cursor);
    cursor.expectSymbol(")", MissingRightParenthesis);
    return {kind, {}, items};
}

std::span<GroupItem> parseGroupItems(TokenCursor& cursor) {
    std::vector<GroupItem> items;
    do {
        items.push_back(parseGroupItem(cursor));
    } while (cursor.acceptSymbol(","));
    return cursor.arena().list(items);
}

void parseHierarchy(TokenCursor& cursor, QueryBlock& block) {
    while (cursor.atAnyOf({"START", "CONNECT"})) {
        if (cursor.accept("START")) {
            cursor.expect("WITH", MissingKeyword);
            block.startWith = parseCondition(cursor);
            continue;
        }
        cursor.next();
        cursor.expect("BY", MissingBy);
        block.noCycle = cursor.accept("NOCYCLE");
        block.connectBy = parseCondition(cursor);
    }
    constexpr int ConnectByRequired = 1788;
    if (block.startWith && !block.connectBy)
        cursor.fail(ConnectByRequired);
}

void parseGrouping(TokenCursor& cursor, QueryBlock& block) {
    while (cursor.atAnyOf({"GROUP", "HAVING"})) {
        if (cursor.accept("HAVING")) {
            block.having = parseCondition(cursor);
            continue;
        }
        cursor.next();
        cursor.expect("BY", MissingBy);
        block.groupBy = parseGroupItems(cursor);
    }
}

// INTO :new.column of a trigger.
void parseInto(TokenCursor& cursor) {
    if (!cursor.at("INTO"))
        return;
    if (!cursor.selectInto)
        refuse("SELECT INTO", cursor.begin());
    do {
        cursor.next();
        const bool bound = cursor.peek().kind == TokenKind::Bind && cursor.peek(1).isSymbol(".");
        if (!bound)
            refuse("PL/SQL variables", cursor.begin());
        cursor.next();
        cursor.next();
        cursor.selectInto->push_back(cursor.name(MissingIdentifier));
    } while (cursor.atSymbol(","));
}

QueryBlock* parseBlock(TokenCursor& cursor) {
    QueryBlock* const block = cursor.arena().make<QueryBlock>();
    const std::uint32_t begin = cursor.begin();
    cursor.expect("SELECT", MissingSelect);
    block->distinct = parseDistinct(cursor);
    std::vector<SelectItem> items;
    do {
        if (!items.empty() && cursor.atSymbol("*")) // it stands alone
            cursor.fail(MissingExpression);
        items.push_back(parseSelectItem(cursor));
    } while (cursor.acceptSymbol(","));
    block->items = cursor.arena().list(items);
    parseInto(cursor);
    cursor.expect("FROM", MissingFrom);
    block->from = parseFrom(cursor);
    if (cursor.accept("WHERE"))
        block->where = parseCondition(cursor);
    parseHierarchy(cursor, *block);
    parseGrouping(cursor, *block);
    if (cursor.at("MODEL"))
        refuse("the MODEL clause", cursor.begin());
    block->at = cursor.extentFrom(begin);
    return block;
}

QueryTerm parseTerm(TokenCursor& cursor, SetOperator op) {
    if (cursor.atSymbol("("))
        return {op, nullptr, parseParenthesizedQuery(cursor)};
    return {op, parseBlock(cursor), nullptr};
}

SetOperator acceptSetOperator(TokenCursor& cursor) {
    if (cursor.accept("UNION"))
        return cursor.accept("ALL") ? SetOperator::UnionAll : SetOperator::Union;
    if (cursor.accept("INTERSECT"))
        return cursor.accept("ALL") ? SetOperator::IntersectAll : SetOperator::Intersect;
    if (cursor.accept("MINUS") || cursor.accept("EXCEPT"))
        return SetOperator::Minus;
    return SetOperator::None;
}

std::span<Name> parseColumnNames(TokenCursor& cursor) {
    std::vector<Name> names;
    do {
        names.push_back(cursor.name(MissingIdentifier));
    } while (cursor.acceptSymbol(","));
    return cursor.arena().list(names);
}

void parseSearch(TokenCursor& cursor, WithItem& item) {
    if (!cursor.accept("SEARCH"))
        return;
    item.depthFirst = cursor.accept("DEPTH");
    if (!item.depthFirst)
        cursor.expect("BREADTH", MissingKeyword);
    cursor.expect("FIRST", MissingKeyword);
    cursor.expect("BY", MissingBy);
    item.searchBy = parseOrderItems(cursor);
    cursor.expect("SET", MissingKeyword);
    item.searchColumn = cursor.name(MissingIdentifier);
}

void parseCycle(TokenCursor& cursor, WithItem& item) {
    if (!cursor.accept("CYCLE"))
        return;
    item.cycleColumns = parseColumnNames(cursor);
    cursor.expect("SET", MissingKeyword);
    item.cycleColumn = cursor.name(MissingIdentifier);
    cursor.expect("TO", MissingKeyword);
    item.cycleValue = parseValue(cursor);
    cursor.expect("DEFAULT", MissingKeyword);
    item.noCycleValue = parseValue(cursor);
}

WithItem parseWithItem(TokenCursor& cursor) {
    constexpr int InvalidTable = 903;
    if (cursor.atAnyOf({"FUNCTION", "PROCEDURE"}) && !cursor.peek(1).isWord("AS"))
        refuse("PL/SQL", cursor.begin());
    WithItem item{};
    item.name = cursor.name(InvalidTable);
    if (cursor.atSymbol("("))
        item.columns = parseNameList(cursor, MissingIdentifier);
    cursor.expect("AS", MissingKeyword);
    if (!cursor.atSymbol("("))
        cursor.fail(MissingLeftParenthesis);
    item.query = parseParenthesizedQuery(cursor);
    parseSearch(cursor, item);
    parseCycle(cursor, item);
    return item;
}

void parseWith(TokenCursor& cursor, Query& query) {
    if (!cursor.accept("WITH"))
        return;
    std::vector<WithItem> items;
    do {
        items.push_back(parseWithItem(cursor));
    } while (cursor.acceptSymbol(","));
    query.with = cursor.arena().list(items);
}

void parseOrderBy(TokenCursor& cursor, Query& query) {
    if (!cursor.accept("ORDER"))
        return;
    query.siblings = cursor.accept("SIBLINGS");
    cursor.expect("BY", MissingBy);
    query.orderBy = parseOrderItems(cursor);
}

void expectRows(TokenCursor& cursor) {
    if (!cursor.accept("ROWS"))
        cursor.expect("ROW", MissingKeyword);
}

void parseFetch(TokenCursor& cursor, RowLimit& limit) {
    if (!cursor.accept("FIRST"))
        cursor.expect("NEXT", MissingKeyword);
    if (cursor.atAnyOf({"ROW", "ROWS"})) {
        const std::uint32_t begin = cursor.begin();
        limit.count = makeExpr<Literal>(cursor, ExprKind::Number, begin, std::string_view("1"));
    } else {
        limit.count = parseValue(cursor);
        limit.percent = cursor.accept("PERCENT");
    }
    expectRows(cursor);
    if (cursor.accept("ONLY"))
        return;
    cursor.expect("WITH", MissingKeyword);
    cursor.expect("TIES", MissingKeyword);
    limit.withTies = true;
}

void parseLimit(TokenCursor& cursor, Query& query) {
    if (!cursor.atAnyOf({"OFFSET", "FETCH"}))
        return;
    query.limit = cursor.arena().make<RowLimit>();
    if (cursor.accept("OFFSET")) {
        query.limit->offset = parseValue(cursor);
        expectRows(cursor);
    }
    if (cursor.accept("FETCH"))
        parseFetch(cursor, *query.limit);
}

void parseForUpdate(TokenCursor& cursor, Query& query) {
    if (!cursor.accept("FOR", "UPDATE"))
        return;
    query.forUpdate = true;
    if (cursor.accept("OF")) {
        const std::span<Expr*> locked = parseValueList(cursor);
        if (query.terms.front().block)
            query.terms.front().block->locked = locked;
    }
    if (cursor.accept("NOWAIT") || cursor.accept("SKIP", "LOCKED"))
        return;
    if (cursor.accept("WAIT"))
        parseOperand(cursor);
}

} // namespace

Query* parseQuery(TokenCursor& cursor) {
    const Nesting nesting(cursor);
    Query* const query = cursor.arena().make<Query>();
    const std::uint32_t begin = cursor.begin();
    parseWith(cursor, *query);
    std::vector<QueryTerm> terms;
    SetOperator op = SetOperator::None;
    do {
        terms.push_back(parseTerm(cursor, op));
        op = acceptSetOperator(cursor);
    } while (op != SetOperator::None);
    query->terms = cursor.arena().list(terms);
    parseForUpdate(cursor, *query);
    parseOrderBy(cursor, *query);
    parseLimit(cursor, *query);
    parseForUpdate(cursor, *query);
    query->at = cursor.extentFrom(begin);
    return query;
}

Query* parseParenthesizedQuery(TokenCursor& cursor) {
    cursor.expectSymbol("(", MissingLeftParenthesis);
    Query* const query = parseQuery(cursor);
    if (query->forUpdate)
        raise(MissingRightParenthesis, query->at.begin);
    cursor.expectSymbol(")", MissingRightParenthesis);
    return query;
}

std::span<Name> parseNameList(TokenCursor& cursor, int code) {
    cursor.expectSymbol("(", MissingLeftParenthesis);
    std::vector<Name> names;
    do {
        names.push_back(cursor.name(code));
    } while (cursor.acceptSymbol(","));
    cursor.expectSymbol(")", MissingRightParenthesis);
    return cursor.arena().list(names);
}

std::string_view headingOf(TokenCursor& cursor, std::size_t firstToken) {
    const std::size_t end = cursor.index();
    cursor.rewind(firstToken);
    std::string heading;
    for (; cursor.index() < end; cursor.next()) {
        const Token& token = cursor.peek();
        for (const char c : cursor.source().substr(token.begin, token.end - token.begin))
            if (c != ' ' && c != '\n' && c != '\t' && c != '\r')
                heading += c;
    }
    return cursor.arena().text(foldName(heading));
}

} // namespace ora
