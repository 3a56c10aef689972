#include "Binding.h"
#include "ErrorText.h"

#include <algorithm>

// WITH: named queries, and recursions with SEARCH and CYCLE.
namespace ora {

namespace {

constexpr int InvalidIdentifier = 904;

bool namesTable(const TableRef& table, std::string_view name) {
    if (table.kind == TableKind::Join) {
        const auto& join = static_cast<const JoinTable&>(table);
        return namesTable(*join.left, name) || namesTable(*join.right, name);
    }
    if (table.kind != TableKind::Named)
        return false;
    const auto& named = static_cast<const NamedTable&>(table);
    return !named.name.schema && named.name.name.text == name;
}

bool isRecursive(const QueryTerm& term, std::string_view name) {
    return term.block &&
           std::any_of(term.block->from.begin(), term.block->from.end(),
                       [name](const TableRef* table) { return namesTable(*table, name); });
}

void renameColumns(const WithItem& item, std::vector<OutputColumn>& columns) {
    constexpr int WrongNameCount = 32038;
    if (item.columns.empty())
        return;
    if (item.columns.size() != columns.size())
        throw OraError(WrongNameCount,
                       "number of WITH clause column names does not match number of elements in "
                       "select list");
    for (std::size_t i = 0; i < columns.size(); ++i)
        columns[i].name = item.columns[i].text;
}

std::string head(const NamedQuery& query) {
    return query.alias + '(' + columnList(query.columns.size(), {}) + ") AS (";
}

std::string columnAt(std::size_t index) {
    return 'c' + std::to_string(index + 1);
}

bool joinNames(const TableRef& table, std::string_view column) {
    if (table.kind != TableKind::Join)
        return false;
    const auto& join = static_cast<const JoinTable&>(table);
    return namesColumn(join.on, column) || joinNames(*join.left, column) ||
           joinNames(*join.right, column);
}

bool joinsBy(const QueryBlock& block, std::string_view column) {
    return namesColumn(block.where, column) ||
           std::any_of(block.from.begin(), block.from.end(),
                       [column](const TableRef* table) { return joinNames(*table, column); });
}

// One recursive query. Its rows carry along what SEARCH and CYCLE need, in columns behind their
// own: a level, and the keys of the row's ancestors. Without CYCLE a row carries one ancestor's key
// along, further and further down the path, which a loop must meet.
class Recursion {
public:
    Recursion(Binding& binding, Scope* outer, const WithItem& item, std::size_t anchors)
        : m_binding(binding)
        , m_outer(outer)
        , m_item(item)
        , m_anchors(anchors) {}

    // The engine's items; the last named query is the recursion's.
    std::string bind() {
        constexpr int AliasListNeeded = 32039;
        if (m_item.columns.empty())
            raise(AliasListNeeded, m_item.name.at.begin);
        for (const QueryTerm& term : m_item.query->terms.subspan(m_anchors))
            requireSimple(term);
        m_keys = m_item.cycleColumn ? indexesOf(m_item.cycleColumns) : joinColumns();
        addCarried();
        const std::vector<QueryTerm> terms = carryingTerms();
        BoundQuery anchor = bindTerms(m_binding, std::span(terms).first(m_anchors), m_outer);
        m_binding.namedQueries.push_back(
            {m_item.name.text, m_binding.freshAlias('w'), columnsOf(anchor), derived(), {}});
        const std::string name = m_binding.namedQueries.back().alias;
        std::string sql = head(m_binding.namedQueries.back()) + asOperand(anchor);
        for (const QueryTerm& term : std::span(terms).subspan(m_anchors)) {
            const BoundQuery next = bindTerm(m_binding, term, m_outer);
            unifyWith(anchor, next);
            sql += wordsOf(term.op);
            sql += asOperand(next);
        }
        if (m_item.searchColumn)
            sql += searchOrder();
        return sql + ")," + finishedItem(name);
    }

private:
    // A column that the rows carry behind their own.
    struct Carried {
        std::string_view name;     // of the column
        Expr* first;               // its value in the anchor
        std::string_view children; // the derived column that the children take
        TypeInfo type;
    };

    static constexpr std::string_view Level = "level of the row";
    static constexpr std::string_view NextLevel = "level of the children";
    static constexpr std::string_view Way = "keys of the ancestors";
    static constexpr std::string_view NextWay = "keys of the children's ancestors";
    static constexpr std::string_view Ancestor = "key of an ancestor";
    static constexpr std::string_view NextAncestor = "key of an ancestor of the children";
    static constexpr std::string_view Ends = "whether the path ends";

    // Rows that one step finds are added as they come: it can neither group nor compare them.
    void requireSimple(const QueryTerm& term) const {
        constexpr int UnionAllNeeded = 32040;
        constexpr int Unsupported = 32486;
        if (term.op != SetOperator::UnionAll)
            raise(UnionAllNeeded, m_item.name.at.begin);
        if (!term.block)
            return;
        const QueryBlock& block = *term.block;
        const bool aggregates =
            std::any_of(block.items.begin(), block.items.end(),
                        [](const SelectItem& item) { return hasAggregate(item.expr); });
        if (block.distinct || aggregates || !block.groupBy.empty())
            raise(Unsupported, m_item.name.at.begin);
    }

    bool guards() const { return !m_item.cycleColumn && !m_keys.empty(); }
    std::size_t own() const { return m_item.columns.size(); }

    void addCarried() {
        if (m_item.searchColumn || guards())
            m_carried.push_back(
                {Level, literal(ExprKind::Number, "1"), NextLevel, {SqlType::Number}});
        if (m_item.cycleColumn)
            m_carried.push_back({Way, literal(ExprKind::Text, "/"), NextWay, {SqlType::Varchar2}});
        else if (guards())
            m_carried.push_back(
                {Ancestor, literal(ExprKind::Text, "/"), NextAncestor, {SqlType::Varchar2}});
    }

    Expr* literal(ExprKind kind, std::string_view text) {
        return m_binding.arena.make<Literal>(Expr{kind, {}}, text);
    }

    Expr* column(std::string_view name) {
        const std::vector<Name> path{{name, {}, true}};
        return m_binding.arena.make<ColumnRef>(Expr{ExprKind::Column, {}},
                                               m_binding.arena.list(path), false);
    }

    std::size_t indexOf(std::string_view name) const {
        for (std::size_t i = 0; i < own(); ++i)
            if (m_item.columns[i].text == name)
                return i;
        raiseNamed(InvalidIdentifier, displayPath(name));
    }

    std::vector<std::size_t> indexesOf(std::span<const Name> names) const {
        std::vector<std::size_t> indexes;
        for (const Name& name : names)
            indexes.push_back(indexOf(name.text));
        return indexes;
    }

    // The columns by which children find their parents: a row that has those of an ancestor is in
    // a loop. Children of any parent are told by all that they have.
    std::vector<std::size_t> joinColumns() const {
        std::vector<std::size_t> indexes;
        for (std::size_t i = 0; i < own(); ++i)
            for (const QueryTerm& term : m_item.query->terms.subspan(m_anchors))
                if (term.block && joinsBy(*term.block, m_item.columns[i].text)) {
                    indexes.push_back(i);
                    break;
                }
        if (indexes.empty())
            for (std::size_t i = 0; i < own(); ++i)
                indexes.push_back(i);
        return indexes;
    }

    std::vector<QueryTerm> carryingTerms() {
        std::vector<QueryTerm> terms(m_item.query->terms.begin(), m_item.query->terms.end());
        for (std::size_t i = 0; i < terms.size(); ++i)
            if (terms[i].block)
                terms[i].block = carryingBlock(*terms[i].block, i < m_anchors);
        return terms;
    }

    QueryBlock* carryingBlock(const QueryBlock& written, bool anchor) {
        QueryBlock* const block = m_binding.arena.make<QueryBlock>(written);
        std::vector<SelectItem> items(block->items.begin(), block->items.end());
        for (const Carried& carried : m_carried)
            items.push_back(
                {anchor ? carried.first : column(carried.children), {carried.name, {}, true}, {}});
        block->items = m_binding.arena.list(items);
        if (!anchor && !m_keys.empty())
            block->where = withEnd(block->where);
        return block;
    }

    // The row's children are not looked for when its path ends.
    Expr* withEnd(Expr* where) {
        Expr* const goesOn =
            m_binding.arena.make<Comparison>(Expr{ExprKind::Comparison, {}}, CompareOp::Equal,
                                             column(Ends), literal(ExprKind::Number, "0"));
        if (!where)
            return goesOn;
        const std::vector<Expr*> both{where, goesOn};
        return m_binding.arena.make<ListExpr>(Expr{ExprKind::List, {}}, ListOp::And,
                                              m_binding.arena.list(both));
    }

    std::vector<OutputColumn> columnsOf(const BoundQuery& anchor) const {
        std::vector<OutputColumn> columns = anchor.columns;
        if (columns.size() < m_carried.size())
            return columns;
        columns.resize(columns.size() - m_carried.size());
        renameColumns(m_item, columns);
        for (const Carried& carried : m_carried) {
            OutputColumn column{std::string(carried.name), carried.type};
            column.invisible = true;
            columns.push_back(std::move(column));
        }
        return columns;
    }

    // '/' || the key || '/' of a row.
    std::string key(const std::string& prefix) const {
        std::string sql = "'/'";
        for (const std::size_t index : m_keys)
            sql += "||hex(" + prefix + columnAt(index) + ")||'/'";
        return sql;
    }

    std::size_t placeOf(std::string_view carried) const {
        const auto found =
            std::find_if(m_carried.begin(), m_carried.end(),
                         [carried](const Carried& one) { return one.name == carried; });
        return own() + static_cast<std::size_t>(found - m_carried.begin());
    }

    std::function<std::vector<SourceColumn>(const std::string&)> derived() const {
        return [this](const std::string& alias) {
            const std::string prefix = alias + '.';
            std::vector<SourceColumn> columns;
            const auto add = [&columns](std::string_view name, SqlType type, std::string sql) {
                columns.push_back({name, {type}, std::move(sql), true, Merged::No, true});
            };
            const std::string level = prefix + columnAt(placeOf(Level));
            if (m_item.searchColumn || guards())
                add(NextLevel, SqlType::Number, call("num_add", {level, numberLiteral("1")}));
            if (m_item.cycleColumn) {
                const std::string way = prefix + columnAt(placeOf(Way));
                add(NextWay, SqlType::Varchar2, way + "||" + key(prefix));
                add(Ends, SqlType::Number, numberFromInteger(cycleTest(prefix)));
            } else if (guards()) {
                const std::string ancestor = prefix + columnAt(placeOf(Ancestor));
                add(NextAncestor, SqlType::Varchar2,
                    "CASE WHEN num_int(" + level + ")&(num_int(" + level + ")-1) THEN " + ancestor +
                        " ELSE " + key(prefix) + " END");
                add(Ends, SqlType::Number, numberFromInteger(guardTest(ancestor, prefix)));
            }
            return columns;
        };
    }

    std::string cycleTest(const std::string& prefix) const {
        return "instr(" + prefix + columnAt(placeOf(Way)) + ',' + key(prefix) + ")>0";
    }

    std::string guardTest(const std::string& ancestor, const std::string& prefix) const {
        constexpr int CycleDetected = 32044;
        return "CASE WHEN " + ancestor + '=' + key(prefix) + " THEN ora_raise(" +
               std::to_string(CycleDetected) + ',' + textLiteral(errorText(CycleDetected)) +
               ") ELSE 0 END";
    }

    std::string searchOrder() const {
        std::string order =
            " ORDER BY " + columnAt(placeOf(Level)) + (m_item.depthFirst ? " DESC" : "");
        for (const OrderItem& by : m_item.searchBy) {
            const std::string_view name =
                by.expr->kind == ExprKind::Column
                    ? static_cast<const ColumnRef*>(by.expr)->parts.back().text
                    : std::string_view();
            order += ',' + orderTerm(columnAt(indexOf(name)), true, by);
        }
        return order;
    }

    // The recursion's own columns with those that SEARCH and CYCLE set.
    std::string finishedItem(const std::string& rows) {
        NamedQuery query = m_binding.namedQueries.back();
        m_binding.namedQueries.pop_back();
        query.columns.resize(std::min(query.columns.size(), own()));
        query.derived = nullptr;
        query.alias = m_binding.freshAlias('w');
        std::string sql = "SELECT " + columnList(query.columns.size(), {});
        if (m_item.searchColumn) {
            sql += ',' + numberFromInteger("row_number() OVER ()");
            query.columns.push_back({std::string(m_item.searchColumn.text), {SqlType::Number}});
        }
        if (m_item.cycleColumn)
            sql += ',' + cycleValue(query.columns);
        m_binding.namedQueries.push_back(std::move(query));
        return head(m_binding.namedQueries.back()) + sql + " FROM " + rows + ')';
    }

    std::string cycleValue(std::vector<OutputColumn>& columns) const {
        Scope none(nullptr);
        std::vector<Value> values{bindValue(m_binding, none, *m_item.cycleValue),
                                  bindValue(m_binding, none, *m_item.noCycleValue)};
        const TypeInfo type = unify(values);
        columns.push_back({std::string(m_item.cycleColumn.text), type});
        return "CASE WHEN " + cycleTest({}) + " THEN " + values[0].sql + " ELSE " + values[1].sql +
               " END";
    }

    Binding& m_binding;
    Scope* m_outer;
    const WithItem& m_item;
    std::size_t m_anchors;
    std::vector<std::size_t> m_keys; // what tells a row from its ancestors, by place
    std::vector<Carried> m_carried;
};

std::string bindPlain(Binding& binding, const WithItem& item, Scope* outer) {
    BoundQuery bound = bindQuery(binding, *item.query, outer);
    renameColumns(item, bound.columns);
    binding.namedQueries.push_back(
        {item.name.text, binding.freshAlias('w'), std::move(bound.columns), {}, {}});
    return head(binding.namedQueries.back()) + bound.sql + ')';
}

} // namespace

WithText bindWith(Binding& binding, std::span<const WithItem> items, Scope* outer) {
    WithText text;
    for (const WithItem& item : items) {
        const auto terms = item.query->terms;
        std::size_t anchors = 0;
        while (anchors < terms.size() && !isRecursive(terms[anchors], item.name.text))
            ++anchors;
        const bool recursive = anchors < terms.size() && anchors > 0;
        std::string sql = recursive ? Recursion(binding, outer, item, anchors).bind()
                                    : bindPlain(binding, item, outer);
        text.recursive |= recursive;
        text.items += (text.items.empty() ? "" : ",") + sql;
        binding.namedQueries.back().item = std::move(sql);
    }
    return text;
}

} // namespace ora
