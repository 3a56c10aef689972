#include "ErrorText.h"
#include "ParseExpression.h"
#include "ParseOperand.h"

// Calls: arguments with their odd forms, KEEP, WITHIN GROUP and OVER.
namespace ora {

namespace {

constexpr int MissingKeyword = 905;
constexpr int MissingLeftParenthesis = 906;
constexpr int MissingRightParenthesis = 907;
constexpr int MissingBy = 924;
constexpr int MissingWindowOrder = 30485;

NullsTreatment acceptNullsTreatment(TokenCursor& cursor) {
    if (cursor.accept("IGNORE", "NULLS"))
        return NullsTreatment::Ignore;
    if (cursor.accept("RESPECT", "NULLS"))
        return NullsTreatment::Respect;
    return NullsTreatment::Default;
}

bool acceptDistinct(TokenCursor& cursor) {
    if (cursor.accept("DISTINCT") || cursor.accept("UNIQUE"))
        return true;
    cursor.accept("ALL");
    return false;
}

Expr* parseStarArgument(TokenCursor& cursor) {
    const std::uint32_t begin = cursor.begin();
    std::vector<Name> qualifier;
    while (!cursor.atSymbol("*")) {
        qualifier.push_back(nameOf(cursor.next()));
        cursor.next();
    }
    cursor.next();
    return makeExpr<Star>(cursor, ExprKind::Star, begin, cursor.arena().list(qualifier));
}

bool atStarArgument(const TokenCursor& cursor) {
    std::size_t ahead = 0;
    while (cursor.peek(ahead).kind != TokenKind::Symbol && cursor.peek(ahead + 1).isSymbol("."))
        ahead += 2;
    return cursor.peek(ahead).isSymbol("*");
}

// LISTAGG(x, ',' ON OVERFLOW …): what happens beyond 4,000 bytes.
Overflow* acceptOverflow(TokenCursor& cursor) {
    if (!cursor.accept("ON", "OVERFLOW") || cursor.accept("ERROR"))
        return nullptr;
    cursor.expect("TRUNCATE", MissingKeyword);
    Overflow* const overflow = cursor.arena().make<Overflow>();
    overflow->counted = true;
    if (!cursor.atSymbol(")") && !cursor.atAnyOf({"WITH", "WITHOUT"}))
        overflow->filler = parseValue(cursor);
    if (cursor.accept("WITHOUT", "COUNT"))
        overflow->counted = false;
    else
        cursor.accept("WITH", "COUNT");
    return overflow;
}

// CHR(n USING NCHAR_CS) and TRANSLATE(text USING CHAR_CS): another function's name for either.
void acceptCharacterSet(TokenCursor& cursor, Function& function) {
    if (!cursor.at("USING"))
        return;
    const std::string_view name = function.name.back().text;
    if (name != "CHR" && name != "TRANSLATE")
        refuse("USING in a function", cursor.begin());
    cursor.next();
    const bool national = cursor.accept("NCHAR_CS");
    if (!national)
        cursor.expect("CHAR_CS", MissingKeyword);
    std::string_view plain = national ? "NCHR" : "CHR";
    if (name == "TRANSLATE")
        plain = national ? "TO_NCHAR" : "TO_CHAR";
    const std::vector<Name> path{{plain, function.name.back().at, false}};
    function.name = cursor.arena().list(path);
}

void parseArgument(TokenCursor& cursor, Function& function, std::vector<Expr*>& arguments) {
    if (cursor.peek(1).isSymbol("=>"))
        refuse("named arguments", cursor.begin());
    arguments.push_back(parseValueOrRow(cursor));
    acceptCharacterSet(cursor, function);
    if (Expr* const onError = acceptConversionDefault(cursor))
        function.onError = onError;
    if (Overflow* const overflow = acceptOverflow(cursor))
        function.overflow = overflow;
    if (function.nulls == NullsTreatment::Default)
        function.nulls = acceptNullsTreatment(cursor);
}

void parseArguments(TokenCursor& cursor, Function& function) {
    constexpr int MissingExpression = 936;
    cursor.expectSymbol("(", MissingLeftParenthesis);
    if (cursor.acceptSymbol(")"))
        return;
    std::vector<Expr*> arguments;
    function.distinct = acceptDistinct(cursor);
    if (atStarArgument(cursor)) {
        if (function.name.back().text != "COUNT")
            cursor.fail(MissingExpression);
        arguments.push_back(parseStarArgument(cursor));
    } else if (function.name.back().text == "LNNVL") {
        arguments.push_back(parseCondition(cursor));
    } else {
        do {
            parseArgument(cursor, function, arguments);
        } while (cursor.acceptSymbol(","));
    }
    cursor.expectSymbol(")", MissingRightParenthesis);
    function.arguments = cursor.arena().list(arguments);
}

FrameBound boundTowards(TokenCursor& cursor, FrameBound preceding, FrameBound following) {
    if (cursor.accept("PRECEDING"))
        return preceding;
    cursor.expect("FOLLOWING", MissingKeyword);
    return following;
}

FrameBound parseFrameBound(TokenCursor& cursor, Expr*& offset) {
    if (cursor.accept("UNBOUNDED"))
        return boundTowards(cursor, FrameBound::UnboundedPreceding, FrameBound::UnboundedFollowing);
    if (cursor.accept("CURRENT")) {
        cursor.expect("ROW", MissingKeyword);
        return FrameBound::CurrentRow;
    }
    offset = parseValue(cursor);
    return boundTowards(cursor, FrameBound::Preceding, FrameBound::Following);
}

WindowFrame* parseFrame(TokenCursor& cursor) {
    if (cursor.at("GROUPS"))
        refuse("GROUPS windows", cursor.begin());
    if (!cursor.atAnyOf({"ROWS", "RANGE"}))
        return nullptr;
    WindowFrame* const frame = cursor.arena().make<WindowFrame>();
    frame->rows = cursor.next().text == "ROWS";
    frame->end = FrameBound::CurrentRow;
    const bool between = cursor.accept("BETWEEN");
    frame->start = parseFrameBound(cursor, frame->startOffset);
    if (between) {
        cursor.expect("AND", MissingKeyword);
        frame->end = parseFrameBound(cursor, frame->endOffset);
    }
    if (cursor.at("EXCLUDE"))
        refuse("EXCLUDE in windows", cursor.begin());
    return frame;
}

std::span<Expr*> parsePartition(TokenCursor& cursor) {
    std::vector<Expr*> exprs;
    const bool parenthesized = cursor.atSymbol("(") && !cursor.opensQuery();
    do {
        exprs.push_back(parenthesized ? parseValueOrRow(cursor) : parseValue(cursor));
    } while (cursor.acceptSymbol(","));
    if (exprs.size() == 1 && exprs[0]->kind == ExprKind::List &&
        static_cast<ListExpr*>(exprs[0])->op == ListOp::Row)
        return static_cast<ListExpr*>(exprs[0])->items;
    return cursor.arena().list(exprs);
}

Window* parseWindow(TokenCursor& cursor) {
    cursor.expectSymbol("(", MissingLeftParenthesis);
    Window* const window = cursor.arena().make<Window>();
    if (cursor.accept("PARTITION")) {
        cursor.expect("BY", MissingBy);
        window->partition = parsePartition(cursor);
    }
    if (cursor.accept("ORDER")) {
        cursor.accept("SIBLINGS");
        cursor.expect("BY", MissingBy);
        window->order = parseOrderItems(cursor);
        window->frame = parseFrame(cursor);
    } else if (cursor.atAnyOf({"ROWS", "RANGE"})) {
        cursor.fail(MissingWindowOrder);
    }
    cursor.expectSymbol(")", MissingRightParenthesis);
    return window;
}

Keep* parseKeep(TokenCursor& cursor) {
    constexpr int FirstOrLast = 30492;
    cursor.expectSymbol("(", MissingLeftParenthesis);
    cursor.expect("DENSE_RANK", MissingKeyword);
    const bool first = cursor.accept("FIRST");
    if (!first)
        cursor.expect("LAST", FirstOrLast);
    cursor.expect("ORDER", MissingKeyword);
    cursor.expect("BY", MissingBy);
    Keep* const keep = cursor.arena().make<Keep>();
    keep->first = first;
    keep->order = parseOrderItems(cursor);
    cursor.expectSymbol(")", MissingRightParenthesis);
    return keep;
}

std::span<OrderItem> parseWithinGroup(TokenCursor& cursor) {
    cursor.expect("GROUP", MissingKeyword);
    cursor.expectSymbol("(", MissingLeftParenthesis);
    cursor.expect("ORDER", MissingKeyword);
    cursor.expect("BY", MissingBy);
    const std::span<OrderItem> items = parseOrderItems(cursor);
    cursor.expectSymbol(")", MissingRightParenthesis);
    return items;
}

void parseClauses(TokenCursor& cursor, Function& function) {
    if (cursor.at("WITHIN", "GROUP")) {
        cursor.next();
        function.withinGroup = parseWithinGroup(cursor);
    }
    if (cursor.at("KEEP") && cursor.peek(1).isSymbol("(")) {
        cursor.next();
        function.keep = parseKeep(cursor);
    }
    if (cursor.at("FROM") && cursor.peek(1).kind == TokenKind::Word &&
        (cursor.peek(2).isWord("OVER") || cursor.peek(3).isWord("NULLS"))) {
        cursor.next();
        function.fromLast = cursor.next().text == "LAST";
    }
    if (function.nulls == NullsTreatment::Default)
        function.nulls = acceptNullsTreatment(cursor);
    if (cursor.at("OVER") && cursor.peek(1).isSymbol("(")) {
        cursor.next();
        function.over = parseWindow(cursor);
    }
}

NullsOrder parseNullsOrder(TokenCursor& cursor) {
    if (!cursor.accept("NULLS"))
        return NullsOrder::Default;
    if (cursor.accept("FIRST"))
        return NullsOrder::First;
    cursor.expect("LAST", MissingKeyword);
    return NullsOrder::Last;
}

} // namespace

Expr* parseFunction(TokenCursor& cursor, std::span<Name> name) {
    Function* const function = cursor.arena().make<Function>();
    function->kind = ExprKind::Function;
    function->name = name;
    parseArguments(cursor, *function);
    parseClauses(cursor, *function);
    if (cursor.atSymbol("."))
        refuse("object types", cursor.begin());
    function->at = cursor.extentFrom(name[0].at.begin);
    return function;
}

std::span<OrderItem> parseOrderItems(TokenCursor& cursor) {
    std::vector<OrderItem> items;
    do {
        OrderItem item{parseValue(cursor)};
        item.descending = cursor.accept("DESC");
        if (!item.descending)
            cursor.accept("ASC");
        item.nulls = parseNullsOrder(cursor);
        items.push_back(item);
    } while (cursor.acceptSymbol(","));
    return cursor.arena().list(items);
}

} // namespace ora
