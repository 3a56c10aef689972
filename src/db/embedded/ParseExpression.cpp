#include "ParseExpression.h"

#include "ErrorText.h"
#include "ParseOperand.h"
#include "ParseQuery.h"

namespace ora {

namespace {

constexpr int MissingKeyword = 905;
constexpr int MissingLeftParenthesis = 906;
constexpr int MissingRightParenthesis = 907;
constexpr int MissingNull = 908;
constexpr int InvalidOperator = 920;
constexpr int NotProperlyEnded = 933;

enum class Mode { Value, ValueOrRow, Condition };

enum Precedence { Open, Or, And, Not, Compare, Additive, Multiplicative, Prefix };

// What waits on the stack for its right operand; Open is a parenthesis.
struct Pending {
    Precedence precedence;
    std::uint32_t begin;
    UnaryOp unary = UnaryOp::Plus;
    char arithmetic = 0;
    CompareOp compare = CompareOp::Equal;
    int commas = 0; // of Open: items before the current one; of lists: operands before it
};

struct CompareSpelling {
    std::string_view symbol;
    CompareOp op;
};
constexpr CompareSpelling compareSpellings[] = {
    {"=", CompareOp::Equal},      {"!=", CompareOp::NotEqual}, {"<", CompareOp::Less},
    {"<=", CompareOp::LessEqual}, {">", CompareOp::Greater},   {">=", CompareOp::GreaterEqual},
};

struct PrefixSpelling {
    std::string_view text;
    bool word;
    UnaryOp op;
    Precedence precedence;
};
constexpr PrefixSpelling prefixSpellings[] = {
    {"-", false, UnaryOp::Minus, Prefix},
    {"+", false, UnaryOp::Plus, Prefix},
    {"NOT", true, UnaryOp::Not, Not},
    {"PRIOR", true, UnaryOp::Prior, Prefix},
    {"CONNECT_BY_ROOT", true, UnaryOp::ConnectByRoot, Prefix},
};

// An operator-precedence parser with its own stacks, so that ten thousand parentheses need no
// recursion; operands that hold expressions of their own (functions, CASE, queries) do recurse.
class ExpressionParser {
public:
    ExpressionParser(TokenCursor& cursor, Mode mode)
        : m_cursor(cursor)
        , m_mode(mode) {}

    Expr* run() {
        do {
            takePrefixes();
            m_operands.push_back(parseOperand(m_cursor));
        } while (continues());
        return finish();
    }

private:
    bool conditions() const { return m_mode == Mode::Condition; }

    void takePrefixes() {
        for (;;) {
            if (m_cursor.atSymbol("(") && !m_cursor.opensQuery())
                push({Open, m_cursor.begin()});
            else if (const PrefixSpelling* prefix = prefixHere())
                push({prefix->precedence, m_cursor.begin(), prefix->op});
            else
                return;
        }
    }

    void push(const Pending& pending) {
        m_open += pending.precedence == Open ? 1 : 0;
        m_pending.push_back(pending);
        m_cursor.next();
    }

    const PrefixSpelling* prefixHere() const {
        for (const PrefixSpelling& prefix : prefixSpellings) {
            const bool here =
                prefix.word ? m_cursor.at(prefix.text) : m_cursor.atSymbol(prefix.text);
            if (here && (prefix.op != UnaryOp::Not || conditions()))
                return &prefix;
        }
        return nullptr;
    }

    // After an operand: takes what can follow it; true when another operand must come.
    bool continues() {
        for (;;) {
            if (takeInfix() || takeComma())
                return true;
            if (!takeClose() && !takeDatePostfix() && !takePredicate())
                return false;
        }
    }

    bool takeInfix() {
        const Token& token = m_cursor.peek();
        if (token.kind == TokenKind::Symbol)
            return takeSymbol(token.text);
        if (!conditions() || token.kind != TokenKind::Word)
            return false;
        if (token.text == "AND")
            return takeLogical(And);
        return token.text == "OR" && takeLogical(Or);
    }

    bool takeSymbol(std::string_view symbol) {
        if (symbol == "*" || symbol == "/")
            return takeArithmetic(Multiplicative, symbol[0]);
        if (symbol == "+" || symbol == "-")
            return takeArithmetic(Additive, symbol[0]);
        if (symbol == "||")
            return takeArithmetic(Additive, '|');
        failForForeignOperator(symbol);
        return conditions() && takeComparison(symbol);
    }

    // Operators of other dialects.
    void failForForeignOperator(std::string_view symbol) const {
        constexpr int SingleBar = 996;
        constexpr int MissingExpression = 936;
        constexpr int InvalidCharacter = 911;
        if (symbol == "|")
            m_cursor.fail(SingleBar);
        if (symbol == "**")
            m_cursor.fail(MissingExpression);
        if (symbol == "%")
            m_cursor.fail(InvalidCharacter);
    }

    bool takeArithmetic(Precedence precedence, char op) {
        Pending* top = reduceAbove(precedence);
        if (op == '|' && top && top->precedence == precedence && top->arithmetic == '|') {
            ++top->commas;
            m_cursor.next();
            return true;
        }
        reduceFrom(precedence);
        requireValue();
        Pending pending{precedence, m_operands.back()->at.begin};
        pending.arithmetic = op;
        pending.commas = 1;
        push(pending);
        return true;
    }

    bool takeComparison(std::string_view symbol) {
        for (const CompareSpelling& spelling : compareSpellings) {
            if (symbol != spelling.symbol)
                continue;
            reduceFrom(Compare);
            requireValue();
            Pending pending{Compare, m_operands.back()->at.begin};
            pending.compare = spelling.op;
            m_cursor.next();
            if (m_cursor.atAnyOf({"ANY", "SOME", "ALL"})) {
                takeQuantified(spelling.op);
                return continues();
            }
            m_pending.push_back(pending);
            return true;
        }
        return false;
    }

    bool takeLogical(Precedence precedence) {
        Pending* top = reduceAbove(precedence);
        requireCondition();
        if (top && top->precedence == precedence) {
            ++top->commas;
            m_cursor.next();
            return true;
        }
        Pending pending{precedence, m_operands.back()->at.begin};
        pending.commas = 1;
        push(pending);
        return true;
    }

    bool takeComma() {
        if (m_open == 0 || m_mode == Mode::Value || !m_cursor.atSymbol(","))
            return false;
        Pending* top = reduceAbove(Open);
        requireValue();
        ++top->commas;
        m_cursor.next();
        return true;
    }

    // A row behind a comparison needs parentheses of its own.
    bool comparesWithRow() const {
        const Expr& last = *m_operands.back();
        return last.kind == ExprKind::List &&
               static_cast<const ListExpr&>(last).op == ListOp::Row && !m_pending.empty() &&
               m_pending.back().precedence == Compare;
    }

    bool takeClose() {
        if (m_open == 0 || !m_cursor.atSymbol(")"))
            return false;
        const Pending open = *reduceAbove(Open);
        m_pending.pop_back();
        --m_open;
        m_cursor.next();
        if (open.commas > 0)
            joinOperands(ListOp::Row, open.commas, open.begin);
        else if (comparesWithRow())
            joinOperands(ListOp::Row, 0, open.begin);
        return true;
    }

    // AT TIME ZONE, AT LOCAL, DAY TO SECOND, YEAR TO MONTH behind a value.
    bool takeDatePostfix() {
        Expr* const postfixed = parseDatePostfix(m_cursor, m_operands.back());
        if (!postfixed)
            return false;
        m_operands.back() = postfixed;
        return true;
    }

    bool takePredicate() {
        if (!conditions() || m_cursor.peek().kind != TokenKind::Word)
            return false;
        const bool negated = m_cursor.at("NOT");
        const Token& word = m_cursor.peek(negated ? 1 : 0);
        const bool like = word.isWord("LIKE") || word.isWord("LIKEC") || word.isWord("LIKE2") ||
                          word.isWord("LIKE4");
        const bool known = like || word.isWord("IN") || word.isWord("BETWEEN");
        if (!known && (negated || !word.isWord("IS")))
            return refusePredicate(word);
        reduceFrom(Compare);
        requireValue();
        if (negated)
            m_cursor.next();
        takePredicate(negated, like);
        return true;
    }

    bool refusePredicate(const Token& word) {
        for (const char* unknown : {"MEMBER", "SUBMULTISET", "MULTISET", "OVERLAPS"})
            if (word.isWord(unknown))
                refuse(std::string(unknown) + " conditions", word.begin);
        return false;
    }

    void takePredicate(bool negated, bool like) {
        if (like)
            return takeLike(negated);
        if (m_cursor.accept("BETWEEN"))
            return takeBetween(negated);
        if (m_cursor.accept("IN"))
            return takeIn(negated);
        m_cursor.next();
        takeIs();
    }

    void takeLike(bool negated) {
        m_cursor.next();
        Expr* const operand = m_operands.back();
        Expr* const pattern = parseValue(m_cursor);
        Expr* const escape = m_cursor.accept("ESCAPE") ? parseValue(m_cursor) : nullptr;
        m_operands.back() = makeExpr<Like>(m_cursor, ExprKind::Like, operand->at.begin, negated,
                                           operand, pattern, escape);
    }

    void takeBetween(bool negated) {
        Expr* const operand = m_operands.back();
        Expr* const low = parseValue(m_cursor);
        m_cursor.expect("AND", MissingKeyword);
        Expr* const high = parseValue(m_cursor);
        m_operands.back() = makeExpr<Between>(m_cursor, ExprKind::Between, operand->at.begin,
                                              negated, operand, low, high);
    }

    void takeIn(bool negated) {
        Expr* const operand = m_operands.back();
        std::span<Expr*> list;
        Query* query = nullptr;
        takeListOrQuery(list, query);
        m_operands.back() =
            makeExpr<In>(m_cursor, ExprKind::In, operand->at.begin, negated, operand, list, query);
    }

    void takeQuantified(CompareOp op) {
        Expr* const left = m_operands.back();
        const bool all = m_cursor.next().text == "ALL";
        if (!m_cursor.atSymbol("("))
            m_cursor.fail(MissingLeftParenthesis);
        std::span<Expr*> list;
        Query* query = nullptr;
        takeListOrQuery(list, query);
        m_operands.back() = makeExpr<Quantified>(m_cursor, ExprKind::Quantified, left->at.begin, op,
                                                 all, left, list, query);
    }

    void takeListOrQuery(std::span<Expr*>& list, Query*& query) {
        if (m_cursor.opensOnlyQuery()) {
            query = parseParenthesizedQuery(m_cursor);
            return;
        }
        std::vector<Expr*> items;
        if (!m_cursor.acceptSymbol("(")) {
            items.push_back(parseValue(m_cursor));
        } else {
            do {
                items.push_back(parseValueOrRow(m_cursor));
            } while (m_cursor.acceptSymbol(","));
            m_cursor.expectSymbol(")", MissingRightParenthesis);
        }
        list = m_cursor.arena().list(items);
    }

    void takeIs() {
        Expr* const operand = m_operands.back();
        const bool negated = m_cursor.accept("NOT");
        NullTest test = NullTest::Null;
        if (m_cursor.accept("NAN"))
            test = NullTest::Nan;
        else if (m_cursor.accept("INFINITE"))
            test = NullTest::Infinite;
        else if (m_cursor.atAnyOf({"JSON", "OF", "EMPTY", "A"}))
            refuse("IS " + std::string(m_cursor.peek().text) + " conditions", m_cursor.begin());
        else
            m_cursor.expect("NULL", MissingNull);
        m_operands.back() =
            makeExpr<IsNull>(m_cursor, ExprKind::IsNull, operand->at.begin, negated, test, operand);
    }

    void requireValue() const {
        if (isCondition(*m_operands.back()))
            m_cursor.fail(NotProperlyEnded);
    }

    void requireCondition() const {
        if (!isCondition(*m_operands.back()))
            m_cursor.fail(InvalidOperator);
    }

    // Reduces what binds tighter than `precedence`; the entry that then is on top, or null.
    Pending* reduceAbove(Precedence precedence) {
        while (!m_pending.empty() && m_pending.back().precedence > precedence)
            reduce();
        return m_pending.empty() ? nullptr : &m_pending.back();
    }

    // Reduces what binds as tight as `precedence` too.
    void reduceFrom(Precedence precedence) {
        while (!m_pending.empty() && m_pending.back().precedence >= precedence)
            reduce();
    }

    void reduce() {
        const Pending pending = m_pending.back();
        m_pending.pop_back();
        switch (pending.precedence) {
        case Or: return joinConditions(ListOp::Or, pending);
        case And: return joinConditions(ListOp::And, pending);
        case Not: requireCondition(); return reducePrefix(pending);
        case Prefix: requireValue(); return reducePrefix(pending);
        case Compare: return reduceComparison(pending);
        default: return reduceArithmetic(pending);
        }
    }

    void joinConditions(ListOp op, const Pending& pending) {
        requireCondition();
        joinOperands(op, pending.commas, pending.begin);
    }

    void joinOperands(ListOp op, int before, std::uint32_t begin) {
        const auto first = m_operands.end() - before - 1;
        const std::vector<Expr*> items(first, m_operands.end());
        m_operands.erase(first, m_operands.end());
        m_operands.push_back(
            makeExpr<ListExpr>(m_cursor, ExprKind::List, begin, op, m_cursor.arena().list(items)));
    }

    void reducePrefix(const Pending& pending) {
        m_operands.back() = makeExpr<Unary>(m_cursor, ExprKind::Unary, pending.begin, pending.unary,
                                            m_operands.back());
    }

    Expr* popOperand() {
        Expr* const operand = m_operands.back();
        m_operands.pop_back();
        return operand;
    }

    void reduceComparison(const Pending& pending) {
        requireValue();
        Expr* const right = popOperand();
        m_operands.back() = makeExpr<Comparison>(m_cursor, ExprKind::Comparison, pending.begin,
                                                 pending.compare, m_operands.back(), right);
    }

    void reduceArithmetic(const Pending& pending) {
        requireValue();
        if (pending.arithmetic == '|')
            return joinOperands(ListOp::Concat, pending.commas, pending.begin);
        Expr* const right = popOperand();
        m_operands.back() = makeExpr<Arithmetic>(m_cursor, ExprKind::Arithmetic, pending.begin,
                                                 pending.arithmetic, m_operands.back(), right);
    }

    Expr* finish() {
        while (!m_pending.empty()) {
            if (m_pending.back().precedence == Open)
                failInParentheses();
            reduce();
        }
        if (conditions())
            requireCondition();
        return m_operands.back();
    }

    // A closing parenthesis is missing; a value where a condition must stand is told first.
    [[noreturn]] void failInParentheses() const {
        const bool condition = isCondition(*m_operands.back());
        const bool directly = m_pending.size() == 1 && conditions() && !condition;
        m_cursor.fail(directly && m_cursor.peek().kind == TokenKind::Word
                          ? InvalidOperator
                          : MissingRightParenthesis);
    }

    TokenCursor& m_cursor;
    const Mode m_mode;
    std::vector<Expr*> m_operands;
    std::vector<Pending> m_pending;
    int m_open = 0;
};

Expr* parse(TokenCursor& cursor, Mode mode) {
    const Nesting nesting(cursor);
    return ExpressionParser(cursor, mode).run();
}

bool isConditionFunction(const Function& function) {
    if (function.name.size() != 1)
        return false;
    const std::string_view name = function.name[0].text;
    return name == "REGEXP_LIKE" || name == "LNNVL";
}

} // namespace

Expr* parseValue(TokenCursor& cursor) {
    return parse(cursor, Mode::Value);
}

Expr* parseValueOrRow(TokenCursor& cursor) {
    return parse(cursor, Mode::ValueOrRow);
}

Expr* parseCondition(TokenCursor& cursor) {
    return parse(cursor, Mode::Condition);
}

std::span<Expr*> parseValueList(TokenCursor& cursor) {
    std::vector<Expr*> values;
    do {
        values.push_back(parseValue(cursor));
    } while (cursor.acceptSymbol(","));
    return cursor.arena().list(values);
}

bool isCondition(const Expr& expr) {
    switch (expr.kind) {
    case ExprKind::Comparison:
    case ExprKind::Quantified:
    case ExprKind::Like:
    case ExprKind::Between:
    case ExprKind::In:
    case ExprKind::IsNull:
    case ExprKind::Exists: return true;
    case ExprKind::Unary: return static_cast<const Unary&>(expr).op == UnaryOp::Not;
    case ExprKind::List: {
        const ListOp op = static_cast<const ListExpr&>(expr).op;
        return op == ListOp::And || op == ListOp::Or;
    }
    case ExprKind::Function: return isConditionFunction(static_cast<const Function&>(expr));
    default: return false;
    }
}

} // namespace ora
