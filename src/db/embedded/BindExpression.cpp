#include "Binding.h"
#include "ErrorText.h"
#include "IntervalValue.h"
#include "NamedRow.h"
#include "OracleNumber.h"

#include <algorithm>

// Values.
namespace ora {

namespace {

constexpr int LongestText = 4000;
constexpr int NotAllowedHere = 936;

template<class Node>
const Node& as(const Expr& expr) {
    return static_cast<const Node&>(expr);
}

Value typed(std::string sql, SqlType type) {
    Value value;
    value.sql = std::move(sql);
    value.type = {type};
    return value;
}

Value bindNumber(const Literal& literal) {
    const char last = literal.text.back();
    const bool single = last == 'f' || last == 'F';
    const bool binary = single || last == 'd' || last == 'D';
    Value value = typed(numberLiteral(literal.text), !binary  ? SqlType::Number
                                                     : single ? SqlType::BinaryFloat
                                                              : SqlType::BinaryDouble);
    if (single)
        value = asFloat(value);
    value.nullable = false;
    return value;
}

constexpr std::string_view fieldNames[] = {"YEAR", "MONTH", "DAY", "HOUR", "MINUTE", "SECOND"};

DaySecondInterval rounded(DaySecondInterval interval, int digits) {
    std::int64_t unit = 1;
    for (constexpr int AllDigits = 9; digits < AllDigits; ++digits)
        unit *= 10;
    const std::int64_t half = interval.nanoseconds < 0 ? -unit / 2 : unit / 2;
    interval.nanoseconds = (interval.nanoseconds + half) / unit * unit;
    interval.seconds += interval.nanoseconds / OracleDate::NanosPerSecond;
    interval.nanoseconds %= OracleDate::NanosPerSecond;
    return interval;
}

Value bindInterval(const IntervalLiteral& literal) {
    const IntervalQualifier& fields = literal.qualifier;
    const std::string_view first = fieldNames[static_cast<int>(fields.first)];
    const std::string_view last = fieldNames[static_cast<int>(fields.last)];
    const bool months = fields.first <= DateField::Month;
    Value value = typed({}, months ? SqlType::IntervalYearToMonth : SqlType::IntervalDayToSecond);
    value.type.precision = fields.leadingDigits;
    value.type.scale = fields.last == DateField::Second ? fields.fractionDigits : 0;
    value.nullable = false;
    value.sql = blobLiteral(
        months ? yearMonthLiteral(literal.text, first, last, fields.leadingDigits).encoded()
               : rounded(daySecondLiteral(literal.text, first, last, fields.leadingDigits),
                         fields.fractionDigits)
                     .encoded());
    return value;
}

Value bindTimestamp(const Literal& literal) {
    constexpr int LiteralDigits = 9;
    const StoredTime stored = storedTimestamp(literal.text);
    Value value = typed(stored.sql, stored.zoned ? SqlType::TimestampTz : SqlType::Timestamp);
    value.type.scale = LiteralDigits;
    return value;
}

Value bindUnary(Binding& binding, Scope& scope, const Unary& unary) {
    switch (unary.op) {
    case UnaryOp::Prior: return bindPrior(binding, scope, *unary.operand);
    case UnaryOp::ConnectByRoot: return bindConnectByRoot(binding, scope, *unary.operand);
    default: break;
    }
    const Value operand = bindValue(binding, scope, *unary.operand);
    const OperatorChoice choice = findNegation(operand.type.type);
    if (unary.op == UnaryOp::Plus)
        return typed(convertTo(operand, choice.left), choice.result);
    if (unary.operand->kind == ExprKind::Number && choice.result == SqlType::Number)
        return typed(numberLiteral("-" + std::string(as<Literal>(*unary.operand).text)),
                     SqlType::Number);
    return typed(call(choice.sqliteName, convertTo(operand, choice.left)), choice.result);
}

Value bindText(const Literal& literal) {
    constexpr int LiteralTooLong = 1704;
    if (literal.text.size() > std::size_t(LongestText))
        raise(LiteralTooLong, literal.at.begin);
    return literalText(literal.text);
}

// Differences of times have the server's widest fields.
TypeInfo operatorResult(SqlType type, const TypeInfo& left, const TypeInfo& right) {
    constexpr int LeadingDigits = 9;
    const auto isTime = [](SqlType one) { return isDatetime(one) || isZoned(one); };
    const bool between = isTime(left.type) && isTime(right.type);
    if (type == SqlType::IntervalDayToSecond)
        return {type, 0, LeadingDigits,
                between ? std::max(left.scale, right.scale) : LeadingDigits};
    if (type == SqlType::IntervalYearToMonth)
        return {type, 0, LeadingDigits};
    if (type == SqlType::Timestamp || type == SqlType::TimestampTz)
        return {type, 0, 0, LeadingDigits};
    return {type};
}

// A sum of many terms as sums of halves: the engine takes only so many calls inside each other.
Value balancedSum(const std::vector<Value>& terms, std::size_t first, std::size_t count) {
    if (count == 1)
        return terms[first];
    const std::size_t half = count / 2;
    return arithmetic('+', balancedSum(terms, first, half),
                      balancedSum(terms, first + half, count - half));
}

// The chain a + b - c … is walked along its left side, which is as deep as the text is long.
Value bindArithmetic(Binding& binding, Scope& scope, const Arithmetic& expr) {
    constexpr std::size_t LongChain = 12;
    std::vector<const Arithmetic*> chain;
    const Expr* left = &expr;
    for (; left->kind == ExprKind::Arithmetic; left = as<Arithmetic>(*left).left)
        chain.push_back(static_cast<const Arithmetic*>(left));
    std::vector<Value> terms{bindValue(binding, scope, *left)};
    const auto collapse = [&terms] {
        Value sum = balancedSum(terms, 0, terms.size());
        terms.assign(1, std::move(sum));
    };
    for (auto step = chain.rbegin(); step != chain.rend(); ++step) {
        Value right = bindValue(binding, scope, *(*step)->right);
        const bool subtracts = (*step)->op == '-' && chain.size() > LongChain;
        const bool summable = ((*step)->op == '+' || subtracts) &&
                              terms.back().type.type == SqlType::Number &&
                              right.type.type == SqlType::Number;
        if (summable) {
            if (subtracts)
                right.sql = call("num_neg", right.sql);
            terms.push_back(std::move(right));
            continue;
        }
        collapse();
        terms[0] = arithmetic((*step)->op, terms[0], right);
    }
    collapse();
    return terms[0];
}

Value bindConcat(Binding& binding, Scope& scope, const ListExpr& list) {
    constexpr std::size_t MostArguments = 100;
    std::vector<std::string> parts;
    int length = 0;
    SqlType type = SqlType::Varchar2;
    for (const Expr* item : list.items) {
        const Value value = bindValue(binding, scope, *item);
        if (value.type.type == SqlType::Clob)
            type = SqlType::Clob;
        length += value.type.length > 0 ? value.type.length : LongestText / 2;
        parts.push_back(convertTo(value, SqlType::Varchar2));
    }
    const char* const function = type == SqlType::Clob ? "clob_concat" : "text_concat";
    while (parts.size() > MostArguments) {
        std::vector<std::string> joinedParts;
        for (std::size_t i = 0; i < parts.size(); i += MostArguments)
            joinedParts.push_back(call(
                function,
                std::vector<std::string>(parts.begin() + static_cast<std::ptrdiff_t>(i),
                                         parts.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                             parts.size(), i + MostArguments)))));
        parts = std::move(joinedParts);
    }
    Value value = typed(call(function, parts), type);
    if (type == SqlType::Varchar2)
        value.type.length = std::min(length, LongestText);
    return value;
}

// CASE inside ELSE is the same as more arms; the engine takes only so many CASEs inside each other.
void collectArms(const Case& outermost, std::vector<CaseArm>& arms, const Expr*& otherwise) {
    const Case* node = &outermost;
    for (;;) {
        arms.insert(arms.end(), node->arms.begin(), node->arms.end());
        otherwise = node->otherwise;
        const bool more = otherwise && otherwise->kind == ExprKind::Case && !node->operand &&
                          !as<Case>(*otherwise).operand;
        if (!more)
            return;
        node = static_cast<const Case*>(otherwise);
    }
}

std::vector<std::string> bindWhens(Binding& binding, Scope& scope, const Case& node,
                                   const std::vector<CaseArm>& arms) {
    std::vector<std::string> conditions;
    if (!node.operand) {
        for (const CaseArm& arm : arms)
            conditions.push_back(bindCondition(binding, scope, *arm.when));
        return conditions;
    }
    const Value operand = bindValue(binding, scope, *node.operand);
    for (const CaseArm& arm : arms) {
        const Operands sides = comparable(binding, operand, bindValue(binding, scope, *arm.when));
        conditions.push_back(sides.left + '=' + sides.right);
    }
    return conditions;
}

Value bindCase(Binding& binding, Scope& scope, const Case& node) {
    std::vector<CaseArm> arms;
    const Expr* otherwise = nullptr;
    collectArms(node, arms, otherwise);
    const std::vector<std::string> conditions = bindWhens(binding, scope, node, arms);
    std::vector<Value> results;
    for (const CaseArm& arm : arms)
        results.push_back(bindValue(binding, scope, *arm.then));
    if (otherwise)
        results.push_back(bindValue(binding, scope, *otherwise));
    Value value;
    value.type = unify(results);
    value.sql = "CASE";
    for (std::size_t i = 0; i < arms.size(); ++i)
        value.sql += " WHEN " + conditions[i] + " THEN " + results[i].sql;
    if (otherwise)
        value.sql += " ELSE " + results.back().sql;
    value.sql += " END";
    return value;
}

// The fields of the time are UTC's.
Value extractZoned(const Value& operand, std::string_view field) {
    const std::string sql = convertTo(operand, SqlType::TimestampTz);
    const std::string name = textLiteral(field);
    if (!field.starts_with("TIMEZONE"))
        return typed(call("ora_extract", {call("tz_utc", sql), name}), SqlType::Number);
    const bool isName = field == "TIMEZONE_REGION" || field == "TIMEZONE_ABBR";
    return typed(call("ora_extract_tz", {sql, name}), isName ? SqlType::Varchar2 : SqlType::Number);
}

// AT TIME ZONE and AT LOCAL.
Value bindAtTimeZone(Binding& binding, Scope& scope, const AtTimeZone& node) {
    const Value operand = bindValue(binding, scope, *node.operand);
    const std::string sql = convertTo(operand, SqlType::TimestampTz);
    Value value = typed({}, SqlType::TimestampTz);
    value.type.scale = operand.type.scale;
    value.sql =
        node.zone ? call("tz_at",
                         {sql, convertTo(bindValue(binding, scope, *node.zone), SqlType::Varchar2)})
                  : call("tz_at_session", sql);
    return value;
}

Value bindExtract(Binding& binding, Scope& scope, const Extract& extract) {
    std::vector<Value> arguments{bindValue(binding, scope, *extract.operand),
                                 literalText(extract.field)};
    constexpr int InvalidField = 30076;
    if (isZoned(arguments[0].type.type))
        return extractZoned(arguments[0], extract.field);
    if (extract.field.starts_with("TIMEZONE"))
        raise(InvalidField, extract.at.begin);
    constexpr std::string_view timeFields[] = {"HOUR", "MINUTE", "SECOND"};
    if (arguments[0].type.type == SqlType::Date && isOneOf(extract.field, timeFields))
        raise(InvalidField, extract.at.begin);
    const std::vector<SqlType> types{arguments[0].type.type, SqlType::Varchar2};
    return applyEntry(*findFunction("EXTRACT", types), arguments);
}

Value bindTrim(Binding& binding, Scope& scope, const Trim& trim) {
    const Value operand = bindValue(binding, scope, *trim.operand);
    const std::string characters =
        trim.characters ? convertTo(bindValue(binding, scope, *trim.characters), SqlType::Varchar2)
                        : "' '";
    Value value = typed(call("ora_trim", {convertTo(operand, SqlType::Varchar2), characters,
                                          "'" + std::string(1, trim.side) + "'"}),
                        SqlType::Varchar2);
    value.type.length = operand.type.length;
    return value;
}

// (SELECT value FROM DUAL): the value alone, which then is computed for each row, NEXTVAL included.
const Expr* onlyValue(const Binding& binding, const Query& query) {
    if (query.terms.size() != 1 || !query.terms[0].block || !query.with.empty() || query.limit)
        return nullptr;
    const QueryBlock& block = *query.terms[0].block;
    if (block.items.size() != 1 || block.from.size() != 1 || block.where || block.connectBy ||
        !block.groupBy.empty() || block.having || block.from[0]->kind != TableKind::Named)
        return nullptr;
    const auto& table = static_cast<const NamedTable&>(*block.from[0]);
    const Expr* const value = block.items[0].expr;
    const bool plain = value->kind == ExprKind::Column || value->kind == ExprKind::Arithmetic;
    const bool dual = table.name.name.text == "DUAL" && !binding.namedQuery("DUAL");
    return plain && dual && !namesColumn(value, "DUMMY") && !hasAggregate(value) &&
                   !namesRowNumber(value) && !hasWindow(value)
               ? value
               : nullptr;
}

Value bindSubquery(Binding& binding, Scope& scope, const SubqueryExpr& subquery) {
    constexpr int TooManyValues = 913;
    // A query's list has no numbers of sequences in subqueries; a trigger's query is one.
    const SequenceRegion region(
        binding, binding.sequencesAllowed && (binding.trigger || !binding.sequenceBlock),
        binding.sequenceRow);
    if (const Expr* const value = onlyValue(binding, *subquery.query))
        return bindValue(binding, scope, *value);
    const BoundQuery query = bindQuery(binding, *subquery.query, &scope);
    if (query.columns.size() != 1)
        raise(TooManyValues, subquery.at.begin);
    Value value;
    value.type = query.columns[0].type;
    value.sql = query.singleRow ? '(' + query.sql + ')'
                                : "(SELECT ora_single(c1) FROM (" + query.sql + "))";
    return value;
}

Value bindIntervalCast(Binding& binding, Scope& scope, const IntervalCast& cast) {
    const Value operand = bindValue(binding, scope, *cast.operand);
    if (operand.type.type == SqlType::IntervalDayToSecond ||
        operand.type.type == SqlType::IntervalYearToMonth)
        return operand;
    if (cast.qualifier.first > DateField::Month && operand.type.type == SqlType::Number) {
        Value value = typed(call("ora_numtodsinterval", {operand.sql, "'DAY'"}),
                            SqlType::IntervalDayToSecond);
        value.type.precision = cast.qualifier.leadingDigits;
        value.type.scale = cast.qualifier.fractionDigits;
        return value;
    }
    constexpr int InvalidIntervalArithmetic = 30081;
    throw OraError(InvalidIntervalArithmetic, "invalid data type for datetime/interval arithmetic");
}

Value bindNode(Binding& binding, Scope& scope, const Expr& expr) {
    switch (expr.kind) {
    case ExprKind::Number: return bindNumber(as<Literal>(expr));
    case ExprKind::Text:
    case ExprKind::NationalText: return bindText(as<Literal>(expr));
    case ExprKind::Date: return typed(storedDate(as<Literal>(expr).text), SqlType::Date);
    case ExprKind::Timestamp: return bindTimestamp(as<Literal>(expr));
    case ExprKind::Interval: return bindInterval(as<IntervalLiteral>(expr));
    case ExprKind::Null: return nullValue();
    case ExprKind::Bind: raise(1008, expr.at.begin);
    case ExprKind::Column: return bindColumn(binding, scope, as<ColumnRef>(expr));
    case ExprKind::Unary: return bindUnary(binding, scope, as<Unary>(expr));
    case ExprKind::Arithmetic: return bindArithmetic(binding, scope, as<Arithmetic>(expr));
    case ExprKind::Function: return bindFunction(binding, scope, as<Function>(expr));
    case ExprKind::Case: return bindCase(binding, scope, as<Case>(expr));
    case ExprKind::Cast: return bindCast(binding, scope, as<Cast>(expr));
    case ExprKind::Extract: return bindExtract(binding, scope, as<Extract>(expr));
    case ExprKind::Trim: return bindTrim(binding, scope, as<Trim>(expr));
    case ExprKind::Subquery: return bindSubquery(binding, scope, as<SubqueryExpr>(expr));
    case ExprKind::IntervalCast: return bindIntervalCast(binding, scope, as<IntervalCast>(expr));
    case ExprKind::AtTimeZone: return bindAtTimeZone(binding, scope, as<AtTimeZone>(expr));
    case ExprKind::List:
        if (as<ListExpr>(expr).op == ListOp::Concat)
            return bindConcat(binding, scope, as<ListExpr>(expr));
        raise(907, expr.at.begin);
    default: raise(NotAllowedHere, expr.at.begin);
    }
}

} // namespace

Value arithmetic(char op, const Value& left, const Value& right) {
    const OperatorChoice choice = findOperator(op, left.type.type, right.type.type);
    std::vector<std::string> operands{convertTo(left, choice.left), convertTo(right, choice.right)};
    if (choice.swapped)
        std::swap(operands[0], operands[1]);
    Value value;
    value.sql = call(choice.sqliteName, operands);
    value.type = operatorResult(choice.result, left.type, right.type);
    const bool doubles = value.type.type == SqlType::BinaryDouble;
    const bool single = doubles && left.type.type != SqlType::BinaryDouble &&
                        right.type.type != SqlType::BinaryDouble;
    return single ? asFloat(value) : value;
}

Value nullValue() {
    return typed("NULL", SqlType::Null);
}

Value literalText(std::string_view text) {
    Value value = typed(text.empty() ? "NULL" : textLiteral(text), SqlType::Char);
    value.type.length = characterCount(text);
    value.nullable = text.empty();
    if (!text.empty())
        value.literal = text;
    return value;
}

Value bindValue(Binding& binding, Scope& scope, const Expr& expr) {
    const BindDepth depth(binding);
    const std::size_t ungrouped = scope.ungrouped.size();
    Value value = bindNode(binding, scope, expr);
    if (scope.groupKeys.empty() || scope.insideAggregate > 0)
        return value;
    const auto key = scope.groupKeys.find(value.sql);
    if (key == scope.groupKeys.end() || scope.nested)
        return value;
    scope.ungrouped.resize(ungrouped);
    if (scope.nulledKeys[key->second]) {
        value.sql = "NULL";
        value.literal.reset();
        value.rowid.clear();
        value.column = false;
        value.nullable = true;
    }
    return value;
}

std::vector<Value> bindValues(Binding& binding, Scope& scope, std::span<Expr* const> exprs) {
    std::vector<Value> values;
    values.reserve(exprs.size());
    for (const Expr* expr : exprs)
        values.push_back(bindValue(binding, scope, *expr));
    return values;
}

} // namespace ora
