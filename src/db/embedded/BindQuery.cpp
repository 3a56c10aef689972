#include "Binding.h"
#include "ErrorText.h"

#include <algorithm>

// Whole queries: set operations and what sorts and limits them.
namespace ora {

namespace {

constexpr int NoSuchPlace = 1785;

// The result of set operations as a table that ORDER BY can name columns of.
Scope resultScope(Binding& binding, const BoundQuery& query) {
    Scope scope(nullptr);
    Source source;
    for (std::size_t i = 0; i < query.columns.size(); ++i)
        source.columns.push_back({binding.text(query.columns[i].name), query.columns[i].type,
                                  "q.c" + std::to_string(i + 1), true, Merged::No, false});
    scope.sources.push_back(std::move(source));
    return scope;
}

std::string resultOrderTerm(Binding& binding, Scope& scope, const BoundQuery& query,
                            const OrderItem& item) {
    if (item.expr->kind != ExprKind::Number)
        return orderTerm(sortedBy(binding, bindValue(binding, scope, *item.expr)), true, item);
    const std::string_view text = static_cast<const Literal*>(item.expr)->text;
    const bool whole = text.find_first_not_of("0123456789") == std::string_view::npos;
    constexpr std::size_t LongestPlace = 6;
    const std::size_t place =
        whole && text.size() <= LongestPlace ? std::stoul(std::string(text)) : 0;
    if (place < 1 || place > query.columns.size())
        raise(NoSuchPlace, item.expr->at.begin);
    Value value;
    value.sql = "q.c" + std::to_string(place);
    value.type = query.columns[place - 1].type;
    return orderTerm(sortedBy(binding, value), true, item);
}

void sortResult(Binding& binding, const Query& query, BoundQuery& bound) {
    if (query.orderBy.empty() && !query.limit)
        return;
    Scope scope = resultScope(binding, bound);
    std::vector<std::string> terms;
    for (const OrderItem& item : query.orderBy)
        terms.push_back(resultOrderTerm(binding, scope, bound, item));
    if (limitsByPlace(query.limit))
        return limitByPlace(binding, bound, *query.limit, terms);
    sortRows(bound, terms);
    limitRows(binding, bound, query.limit);
}

BoundQuery bindBody(Binding& binding, const Query& query, Scope* outer) {
    if (query.terms.size() == 1 && query.terms[0].block)
        return bindBlock(binding, *query.terms[0].block, query, outer);
    BoundQuery bound = bindTerms(binding, query.terms, outer);
    sortResult(binding, query, bound);
    return bound;
}

} // namespace

std::string_view wordsOf(SetOperator op) {
    switch (op) {
    case SetOperator::UnionAll: return " UNION ALL ";
    case SetOperator::Union: return " UNION ";
    case SetOperator::Intersect: return " INTERSECT ";
    case SetOperator::Minus: return " EXCEPT ";
    default: refuse("INTERSECT ALL");
    }
}

std::string asOperand(const BoundQuery& query) {
    return query.operand ? query.sql : "SELECT * FROM (" + query.sql + ')';
}

BoundQuery bindTerm(Binding& binding, const QueryTerm& term, Scope* outer) {
    if (term.nested)
        return bindQuery(binding, *term.nested, outer);
    static const Query plain{};
    return bindBlock(binding, *term.block, plain, outer);
}

void unifyWith(BoundQuery& query, const BoundQuery& other) {
    constexpr int WrongColumnCount = 1789;
    if (query.columns.size() != other.columns.size())
        raise(WrongColumnCount);
    for (std::size_t i = 0; i < query.columns.size(); ++i) {
        query.columns[i].type = unifyColumns(query.columns[i].type, other.columns[i].type);
        query.columns[i].nullable = query.columns[i].nullable || other.columns[i].nullable;
    }
}

namespace {

// The type that both columns take where their values have different forms.
TypeInfo commonForm(const TypeInfo& left, const TypeInfo& right) {
    if (isNumeric(left.type) && isNumeric(right.type))
        return familyOf(right.type) == TypeFamily::Binary ? right : left;
    const auto isTime = [](SqlType type) { return isDatetime(type) || isZoned(type); };
    const bool zoned = isZoned(left.type) || isZoned(right.type);
    if (zoned && isTime(left.type) && isTime(right.type) && left.type != right.type)
        return {SqlType::TimestampTz, 0, 0, std::max(left.scale, right.scale)};
    return left;
}

void convertColumns(BoundQuery& query, const std::vector<OutputColumn>& others) {
    if (query.columns.size() != others.size())
        return;
    std::string list;
    bool converts = false;
    for (std::size_t i = 0; i < others.size(); ++i) {
        TypeInfo& type = query.columns[i].type;
        const std::string name = 'c' + std::to_string(i + 1);
        const TypeInfo common = commonForm(type, others[i].type);
        const bool converted = familyOf(common.type) != familyOf(type.type);
        Value value;
        value.sql = name;
        value.type = type;
        list += (list.empty() ? "" : ",") +
                (converted ? convertTo(value, common.type) + " AS " + name : name);
        type = converted ? common : type;
        converts = converts || converted;
    }
    if (!converts)
        return;
    query.sql = "SELECT " + list + " FROM (" + query.sql + ')';
    query.operand = true;
}

} // namespace

// The engine takes only so many in one chain.
BoundQuery bindTerms(Binding& binding, std::span<const QueryTerm> terms, Scope* outer) {
    constexpr std::size_t MostInOneChain = 400;
    BoundQuery query = bindTerm(binding, terms[0], outer);
    if (terms.size() == 1)
        return query;
    query.sql = asOperand(query);
    std::size_t inChain = 1;
    for (const QueryTerm& term : terms.subspan(1)) {
        BoundQuery next = bindTerm(binding, term, outer);
        convertColumns(query, next.columns);
        convertColumns(next, query.columns);
        unifyWith(query, next);
        if (term.op != SetOperator::UnionAll)
            for (const OutputColumn& column : query.columns)
                requireComparable(column.type.type);
        if (++inChain > MostInOneChain) {
            query.sql = "SELECT * FROM (" + query.sql + ')';
            inChain = 2;
        }
        query.sql += wordsOf(term.op);
        query.sql += asOperand(next);
    }
    query.singleRow = false;
    query.ordered = false;
    query.operand = false; // as a later operand it needs its own parentheses
    return query;
}

std::string columnList(std::size_t count, const std::string& alias) {
    std::string list;
    for (std::size_t i = 1; i <= count; ++i) {
        if (i > 1)
            list += ',';
        if (!alias.empty())
            list += alias + '.';
        list += 'c' + std::to_string(i);
        if (!alias.empty())
            list += " AS c" + std::to_string(i);
    }
    return list;
}

Value singleRowColumn(const BoundQuery& query, std::size_t column) {
    Value value;
    value.type = query.columns[column].type;
    value.sql = "(SELECT ora_single(c" + std::to_string(column + 1) + ") FROM (" + query.sql + "))";
    return value;
}

BoundQuery bindQuery(Binding& binding, const Query& query, Scope* outer) {
    const BindDepth depth(binding);
    if (binding.subqueryError != 0)
        raise(binding.subqueryError, query.at.begin);
    const SequenceRegion none(binding, false);
    if (query.with.empty())
        return bindBody(binding, query, outer);
    const std::size_t known = binding.namedQueries.size();
    const WithText with = bindWith(binding, query.with, outer);
    BoundQuery bound = bindBody(binding, query, outer);
    binding.namedQueries.erase(binding.namedQueries.begin() + static_cast<std::ptrdiff_t>(known),
                               binding.namedQueries.end());
    // The body may begin with a WITH of its own, which CONNECT BY needs.
    if (bound.sql.starts_with("WITH "))
        bound.sql = "SELECT * FROM (" + bound.sql + ')';
    bound.sql = (with.recursive ? "WITH RECURSIVE " : "WITH ") + with.items + ' ' + bound.sql;
    bound.operand = false;
    return bound;
}

BoundQuery bindRootQuery(Binding& binding, const Query& query) {
    binding.hoists = !binding.insideTrigger;
    const bool single = binding.sequencesAllowed && query.terms.size() == 1;
    binding.sequenceBlock = single ? query.terms[0].block : nullptr;
    BoundQuery bound = bindQuery(binding, query, nullptr);
    binding.hoists = false;
    if (binding.hoisted.empty())
        return bound;
    std::string items = joined(binding.hoisted, ",");
    binding.hoisted.clear();
    for (const std::string_view start : {"WITH RECURSIVE ", "WITH "}) {
        if (!bound.sql.starts_with(start))
            continue;
        bound.sql.erase(0, start.size());
        items += ',';
        break;
    }
    bound.sql = "WITH RECURSIVE " + items + ' ' + bound.sql;
    bound.operand = false;
    return bound;
}

} // namespace ora
