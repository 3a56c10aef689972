#include "Binding.h"
#include "ErrorText.h"
#include "NamedRow.h"

#include <algorithm>

// PIVOT and UNPIVOT as the plain queries that they stand for.
namespace ora {

namespace {

constexpr int InvalidIdentifier = 904;

// Makes nodes; texts that are given must live as long as the statement.
class NodeMaker {
public:
    explicit NodeMaker(Binding& binding)
        : m_binding(binding) {}

    template<class T>
    std::span<T> list(const std::vector<T>& items) {
        return m_binding.arena.list(items);
    }

    Expr* column(std::string_view name) {
        return m_binding.arena.make<ColumnRef>(Expr{ExprKind::Column, {}},
                                               list(std::vector<Name>{{name, {}, true}}), false);
    }

    Expr* number(int value) {
        return m_binding.arena.make<Literal>(Expr{ExprKind::Number, {}},
                                             m_binding.text(std::to_string(value)));
    }

    Expr* textLiteral(std::string_view text) {
        return m_binding.arena.make<Literal>(Expr{ExprKind::Text, {}}, text);
    }

    Expr* equal(Expr* left, Expr* right) {
        return m_binding.arena.make<Comparison>(Expr{ExprKind::Comparison, {}}, CompareOp::Equal,
                                                left, right);
    }

    Expr* all(const std::vector<Expr*>& conditions, ListOp op) {
        if (conditions.size() == 1)
            return conditions[0];
        return m_binding.arena.make<ListExpr>(Expr{ExprKind::List, {}}, op, list(conditions));
    }

    Expr* caseOf(Expr* operand, const std::vector<CaseArm>& arms) {
        return m_binding.arena.make<Case>(Expr{ExprKind::Case, {}}, operand, list(arms), nullptr);
    }

    Name name(std::string_view text) { return {text, {}, true}; }

    const Query* query(const QueryBlock& block) {
        const std::vector<QueryTerm> terms{
            {SetOperator::None, m_binding.arena.make<QueryBlock>(block), nullptr}};
        Query* const made = m_binding.arena.make<Query>();
        made->terms = list(terms);
        return made;
    }

private:
    Binding& m_binding;
};

// The names of what the source gives out.
struct InputColumn {
    std::string_view name;
    TypeInfo type;
};

std::vector<InputColumn> columnsOf(Binding& binding, Scope& scope, TableRef* source) {
    Scope own(scope.outer);
    TableRef* const tables[] = {source};
    bindFrom(binding, own, tables, nullptr, false);
    std::vector<InputColumn> columns;
    for (const Source& one : own.sources)
        for (const SourceColumn& column : one.columns)
            if (column.merged == Merged::No)
                columns.push_back({binding.text(column.name), column.type});
    return columns;
}

void collectNames(const Expr& expr, std::vector<std::string_view>& names) {
    if (expr.kind == ExprKind::Column)
        names.push_back(static_cast<const ColumnRef&>(expr).parts.back().text);
    if (expr.kind == ExprKind::Function)
        for (const Expr* argument : static_cast<const Function&>(expr).arguments)
            collectNames(*argument, names);
    if (expr.kind == ExprKind::Arithmetic) {
        collectNames(*static_cast<const Arithmetic&>(expr).left, names);
        collectNames(*static_cast<const Arithmetic&>(expr).right, names);
    }
}

class PivotMaker {
public:
    PivotMaker(Binding& binding, const PivotTable& pivot)
        : m_binding(binding)
        , m_make(binding)
        , m_pivot(pivot) {}

    const Query* query(const std::vector<InputColumn>& columns) {
        std::vector<std::string_view> consumed;
        for (const Name& column : m_pivot.columns)
            consumed.push_back(column.text);
        for (const PivotAggregate& aggregate : m_pivot.aggregates)
            collectNames(*aggregate.function, consumed);
        std::vector<SelectItem> items;
        std::vector<GroupItem> groups;
        for (const auto& [column, type] : columns) {
            if (isOneOf(column, consumed))
                continue;
            items.push_back({m_make.column(column), m_make.name(column), {}});
            groups.push_back(
                {GroupKind::Simple, m_make.list(std::vector<Expr*>{m_make.column(column)}), {}});
        }
        for (const PivotValue& value : m_pivot.values)
            addValue(value, items);
        QueryBlock block{};
        block.items = m_make.list(items);
        block.groupBy = m_make.list(groups);
        block.from = m_make.list(std::vector<TableRef*>{m_pivot.source});
        return m_make.query(block);
    }

private:
    void addValue(const PivotValue& value, std::vector<SelectItem>& items) {
        for (const PivotAggregate& aggregate : m_pivot.aggregates) {
            std::string name(value.alias ? value.alias.text : value.heading);
            if (aggregate.alias)
                name += '_' + std::string(aggregate.alias.text);
            items.push_back({only(*static_cast<Function*>(aggregate.function), value),
                             m_make.name(m_binding.text(name)),
                             {}});
        }
    }

    Expr* condition(const PivotValue& value) {
        constexpr int WrongCount = 913;
        if (value.values.size() != m_pivot.columns.size())
            raise(WrongCount, m_pivot.at.begin);
        std::vector<Expr*> conditions;
        for (std::size_t i = 0; i < value.values.size(); ++i)
            conditions.push_back(
                m_make.equal(m_make.column(m_pivot.columns[i].text), value.values[i]));
        return m_make.all(conditions, ListOp::And);
    }

    // The group function over the rows of one value.
    Expr* only(const Function& function, const PivotValue& value) {
        constexpr int ExpectAggregate = 56902;
        if (!isAggregateCall(function) || function.arguments.empty())
            raise(ExpectAggregate, function.at.begin);
        Function* const copy = m_binding.arena.make<Function>(function);
        Expr* const argument = function.arguments[0]->kind == ExprKind::Star
                                   ? m_make.number(1)
                                   : function.arguments[0];
        std::vector<Expr*> arguments(function.arguments.begin(), function.arguments.end());
        arguments[0] = m_make.caseOf(nullptr, {{condition(value), argument}});
        copy->arguments = m_make.list(arguments);
        return copy;
    }

    Binding& m_binding;
    NodeMaker m_make;
    const PivotTable& m_pivot;
};

// Each row is joined with the numbers of the inputs, so that its parts stay together.
class UnpivotMaker {
public:
    UnpivotMaker(Binding& binding, const UnpivotTable& unpivot)
        : m_binding(binding)
        , m_make(binding)
        , m_unpivot(unpivot) {}

    const Query* query(const std::vector<InputColumn>& columns) {
        std::vector<std::string_view> consumed;
        const std::vector<TypeInfo> types = typesOf(m_unpivot.inputs[0], columns);
        for (const UnpivotInput& input : m_unpivot.inputs) {
            const std::vector<TypeInfo> others = typesOf(input, columns);
            for (std::size_t i = 0; i < std::min(types.size(), others.size()); ++i)
                unifyColumns(types[i], others[i]);
            for (const Name& column : input.columns)
                consumed.push_back(column.text);
        }
        std::vector<SelectItem> items;
        for (const auto& [column, type] : columns)
            if (!isOneOf(column, consumed))
                items.push_back({m_make.column(column), m_make.name(column), {}});
        addLabels(items);
        addMeasures(items);
        QueryBlock block{};
        block.items = m_make.list(items);
        block.from = m_make.list(std::vector<TableRef*>{source()});
        if (!m_unpivot.includeNulls)
            block.where = anyMeasure();
        return m_make.query(block);
    }

private:
    static TypeInfo typeOf(const Name& name, const std::vector<InputColumn>& columns) {
        for (const InputColumn& column : columns)
            if (column.name == name.text)
                return column.type;
        raiseNamed(InvalidIdentifier, displayPath(name.text), name.at.begin);
    }

    static std::vector<TypeInfo> typesOf(const UnpivotInput& input,
                                         const std::vector<InputColumn>& columns) {
        std::vector<TypeInfo> types;
        for (const Name& column : input.columns)
            types.push_back(typeOf(column, columns));
        return types;
    }

    static constexpr std::string_view NumberName = "number of the input";

    Expr* byInput(const std::vector<Expr*>& values) {
        std::vector<CaseArm> arms;
        for (std::size_t i = 0; i < values.size(); ++i)
            arms.push_back({m_make.number(static_cast<int>(i) + 1), values[i]});
        return m_make.caseOf(m_make.column(NumberName), arms);
    }

    std::string joinedNames(const UnpivotInput& input) const {
        std::string name;
        for (const Name& column : input.columns)
            name += (name.empty() ? "" : "_") + std::string(column.text);
        return name;
    }

    void addLabels(std::vector<SelectItem>& items) {
        for (std::size_t i = 0; i < m_unpivot.labels.size(); ++i) {
            std::vector<Expr*> values;
            for (const UnpivotInput& input : m_unpivot.inputs)
                values.push_back(i < input.labels.size()
                                     ? input.labels[i]
                                     : m_make.textLiteral(m_binding.text(joinedNames(input))));
            items.push_back({byInput(values), m_make.name(m_unpivot.labels[i].text), {}});
        }
    }

    Expr* measure(std::size_t index) {
        constexpr int WrongCount = 56901;
        std::vector<Expr*> values;
        for (const UnpivotInput& input : m_unpivot.inputs) {
            if (index >= input.columns.size())
                raise(WrongCount, m_unpivot.at.begin);
            values.push_back(m_make.column(input.columns[index].text));
        }
        return byInput(values);
    }

    void addMeasures(std::vector<SelectItem>& items) {
        for (std::size_t i = 0; i < m_unpivot.measures.size(); ++i)
            items.push_back({measure(i), m_make.name(m_unpivot.measures[i].text), {}});
    }

    Expr* anyMeasure() {
        std::vector<Expr*> tests;
        for (std::size_t i = 0; i < m_unpivot.measures.size(); ++i)
            tests.push_back(m_binding.arena.make<IsNull>(Expr{ExprKind::IsNull, {}}, true,
                                                         NullTest::Null, measure(i)));
        return m_make.all(tests, ListOp::Or);
    }

    TableRef* source() {
        std::vector<QueryTerm> terms;
        for (std::size_t i = 0; i < m_unpivot.inputs.size(); ++i)
            terms.push_back({i == 0 ? SetOperator::None : SetOperator::UnionAll,
                             numberBlock(static_cast<int>(i) + 1), nullptr});
        DerivedTable* const numbers = m_binding.arena.make<DerivedTable>();
        numbers->kind = TableKind::Derived;
        Query* const query = m_binding.arena.make<Query>();
        query->terms = m_make.list(terms);
        query->limit = m_binding.arena.make<RowLimit>(); // keeps the engine from joining it apart
        numbers->query = query;
        JoinTable* const join = m_binding.arena.make<JoinTable>();
        join->kind = TableKind::Join;
        join->join = JoinKind::Cross;
        join->left = m_unpivot.source;
        join->right = numbers;
        return join;
    }

    QueryBlock* numberBlock(int value) {
        NamedTable* const dual = m_binding.arena.make<NamedTable>();
        dual->kind = TableKind::Named;
        dual->name.name = m_make.name("DUAL");
        QueryBlock* const block = m_binding.arena.make<QueryBlock>();
        block->items = m_make.list(
            std::vector<SelectItem>{{m_make.number(value), m_make.name(NumberName), {}}});
        block->from = m_make.list(std::vector<TableRef*>{dual});
        return block;
    }

    Binding& m_binding;
    NodeMaker m_make;
    const UnpivotTable& m_unpivot;
};

} // namespace

const Query* pivotAsQuery(Binding& binding, Scope& scope, const PivotTable& pivot) {
    return PivotMaker(binding, pivot).query(columnsOf(binding, scope, pivot.source));
}

const Query* unpivotAsQuery(Binding& binding, Scope& scope, const UnpivotTable& unpivot) {
    return UnpivotMaker(binding, unpivot).query(columnsOf(binding, scope, unpivot.source));
}

} // namespace ora
