#include "Binding.h"
#include "ErrorText.h"

// CONNECT BY as a recursive CTE whose queue gives the deepest rows first: that is the order in
// which the server returns the tree.
namespace ora {

namespace {

constexpr int ConnectByRequired = 1788;
constexpr int GroupFunctionNotAllowed = 934;

// Binds as seen from another stage while it lives.
class AtLevel {
public:
    AtLevel(Scope& scope, std::size_t level)
        : m_scope(scope)
        , m_level(scope.level) {
        scope.level = level;
    }
    ~AtLevel() { m_scope.level = m_level; }
    AtLevel(const AtLevel&) = delete;
    AtLevel& operator=(const AtLevel&) = delete;

private:
    Scope& m_scope;
    std::size_t m_level;
};

void requireHierarchy(const Scope& scope) {
    if (scope.hierarchy == 0)
        raise(ConnectByRequired);
}

std::size_t levelOfRows(const Scope& scope) {
    return scope.hierarchy - 1;
}

std::size_t levelOfHierarchy(const Scope& scope) {
    return scope.hierarchy;
}

// A column of the hierarchy by what it computes; the same one for the same text.
std::string extraColumn(Scope& scope, const std::string& root, const std::string& child) {
    Stage& stage = scope.stages[scope.hierarchy - 1];
    for (const Stage::Extra& extra : stage.extras)
        if (extra.root == root && extra.child == child)
            return scope.extraSql(scope.hierarchy - 1, extra);
    return scope.extraSql(scope.hierarchy - 1, {stage.nextExtraName(), root, child});
}

Value computed(Value value, std::string sql) {
    value.sql = std::move(sql);
    value.column = false;
    value.rowid.clear();
    value.literal.reset();
    value.nullable = true;
    return value;
}

Stage::Extra levelColumn(const Scope& scope) {
    return {"lvl", "1", scope.stages[scope.hierarchy - 1].alias() + ".lvl+1"};
}

} // namespace

Value bindPrior(Binding& binding, Scope& scope, const Expr& operand) {
    requireHierarchy(scope);
    if (scope.insideConnectBy) {
        scope.priors.push_back(&operand);
        const AtLevel parent(scope, levelOfHierarchy(scope));
        return bindValue(binding, scope, operand);
    }
    Value value;
    {
        const AtLevel parent(scope, levelOfHierarchy(scope));
        value = bindValue(binding, scope, operand);
    }
    return computed(value, extraColumn(scope, "NULL", value.sql));
}

Value bindConnectByRoot(Binding& binding, Scope& scope, const Expr& operand) {
    requireHierarchy(scope);
    Value value;
    {
        const AtLevel rows(scope, levelOfRows(scope));
        value = bindValue(binding, scope, operand);
    }
    Stage& stage = scope.stages[scope.hierarchy - 1];
    const std::string inherited = stage.alias() + '.' + stage.nextExtraName();
    for (const Stage::Extra& extra : stage.extras)
        if (extra.root == value.sql && extra.child == stage.alias() + '.' + extra.name)
            return computed(value, scope.extraSql(scope.hierarchy - 1, extra));
    return computed(value, extraColumn(scope, value.sql, inherited));
}

Value bindPath(Binding& binding, Scope& scope, const Function& function) {
    constexpr int WrongCount = 909;
    constexpr int LongestText = 4000;
    requireHierarchy(scope);
    if (function.arguments.size() != 2)
        raise(WrongCount, function.at.begin);
    std::string step;
    {
        const AtLevel rows(scope, levelOfRows(scope));
        const Value value = bindValue(binding, scope, *function.arguments[0]);
        const Value separator = bindValue(binding, scope, *function.arguments[1]);
        step = call("path_step",
                    {convertTo(separator, SqlType::Varchar2), convertTo(value, SqlType::Varchar2)});
    }
    Stage& stage = scope.stages[scope.hierarchy - 1];
    const std::string root = "text_concat(" + step + ')';
    const auto child = [&](const std::string& name) {
        return "text_concat(" + stage.alias() + '.' + name + ',' + step + ')';
    };
    std::string name = stage.nextExtraName();
    for (const Stage::Extra& extra : stage.extras)
        if (extra.root == root && extra.child == child(extra.name))
            name = extra.name;
    Value value;
    value.type = {SqlType::Varchar2, LongestText};
    value.sql = scope.extraSql(scope.hierarchy - 1, {name, root, child(name)});
    return value;
}

Value bindLevel(Scope& scope) {
    requireHierarchy(scope);
    Value value;
    value.type = {SqlType::Number};
    value.nullable = false;
    value.sql = numberFromInteger(scope.insideConnectBy
                                      ? scope.stages[scope.hierarchy - 1].alias() + ".lvl+1"
                                      : scope.extraSql(scope.hierarchy - 1, levelColumn(scope)));
    return value;
}

Value bindIsLeaf(Scope& scope) {
    requireHierarchy(scope);
    const std::string level = scope.stages[scope.hierarchy - 1].alias() + ".lvl";
    Value value;
    value.type = {SqlType::Number};
    value.nullable = false;
    value.sql = numberFromInteger(scope.extraSql(
        scope.leafStage - 1, {"leaf", "ifnull(lead(" + level + ") OVER (),0)<=" + level, {}}));
    return value;
}

// Each row takes the keys of its ancestors along, which its children are looked up in.
Value bindIsCycle(Scope& scope) {
    constexpr int NoCycleRequired = 30930;
    requireHierarchy(scope);
    if (!scope.noCycle)
        raise(NoCycleRequired);
    Value value;
    value.type = {SqlType::Number};
    value.nullable = false;
    value.sql = numberLiteral("0");
    if (scope.loopKey.empty())
        return value;
    Stage& stage = scope.stages[scope.hierarchy - 1];
    const std::string step = "hex(" + scope.loopKey + ")||'/'";
    stage.extra({"way", "'/'||" + step, stage.alias() + ".way||" + step});
    value.sql =
        numberFromInteger(scope.extraSql(scope.leafStage - 1, {"cycle", scope.cycleTest, {}}));
    return value;
}

void Hierarchy::start(std::string from, std::vector<std::string> conditions,
                      std::span<const OrderItem> siblings) {
    m_from = std::move(from);
    m_conditions = std::move(conditions);
    m_hasBase =
        m_scope.sources.size() != 1 || m_scope.sources[0].rowid.empty() || !m_conditions.empty();
    if (m_hasBase)
        m_scope.stages.emplace_back(m_binding.freshAlias('b'));
    m_scope.stages.emplace_back(m_binding.freshAlias('h'));
    m_scope.hierarchy = m_scope.stages.size();
    m_scope.stages.back().extra(levelColumn(m_scope));
    m_scope.level = levelOfRows(m_scope);
    m_scope.aggregateError = GroupFunctionNotAllowed;
    bindStart();
    bindConnect();
    bindSiblings(siblings);
    m_scope.aggregateError = 0;
    m_scope.level = levelOfHierarchy(m_scope);
}

void Hierarchy::bindStart() {
    if (m_block.startWith)
        m_startConditions.push_back(bindCondition(m_binding, m_scope, *m_block.startWith));
}

void Hierarchy::bindConnect() {
    m_scope.insideConnectBy = true;
    m_connectConditions.push_back(bindCondition(m_binding, m_scope, *m_block.connectBy));
    m_scope.insideConnectBy = false;
    m_scope.noCycle = m_block.noCycle;
    if (m_scope.priors.empty())
        return;
    const std::string key = loopKey();
    m_scope.loopKey = key;
    m_scope.cycleTest = "EXISTS (SELECT 1 FROM " + rows() + " WHERE " + m_connectConditions[0] +
                        " AND instr(" + alias() + ".way,'/'||hex(" + key + ")||'/')>0)";
    const std::string loop =
        call("connect_loop", {"'" + alias() + "'", alias() + ".lvl", alias() + ".lkey", key,
                              m_block.noCycle ? "1" : "0"});
    m_connectConditions.push_back("NOT " + loop);
}

// A row is its own ancestor when the values behind PRIOR come again on one path.
std::string Hierarchy::loopKey() {
    std::vector<std::string> values{{}};
    std::string letters;
    for (const Expr* prior : m_scope.priors) {
        values.push_back(bindValue(m_binding, m_scope, *prior).sql);
        letters += 'a';
    }
    if (values.size() == 2)
        return values[1];
    values[0] = textLiteral(letters);
    return call("sort_key", values);
}

void Hierarchy::bindSiblings(std::span<const OrderItem> siblings) {
    for (const OrderItem& item : siblings) {
        const Value value = bindValue(m_binding, m_scope, *item.expr);
        m_siblingValues.push_back(sortedBy(m_binding, value));
        m_siblingTerms.push_back(
            orderTerm("o" + std::to_string(m_siblingValues.size()), value.nullable, item));
    }
}

std::vector<std::string> Hierarchy::branch(bool root) const {
    const std::size_t index = m_scope.hierarchy - 1;
    const Stage& stage = m_scope.stages[index];
    std::vector<std::string> columns;
    const auto add = [&columns, root](const std::string& sql, const std::string& name) {
        columns.push_back(root ? sql + " AS " + name : sql);
    };
    for (const Stage::Extra& extra : stage.extras)
        add(root ? extra.root : extra.child, extra.name);
    if (!m_scope.loopKey.empty())
        add(m_scope.loopKey, "lkey");
    for (std::size_t i = 0; i < m_siblingValues.size(); ++i)
        add(m_siblingValues[i], "o" + std::to_string(i + 1));
    add(m_hasBase ? m_scope.stages[index - 1].alias() + ".seq" : m_scope.sources[0].rowid, "seq");
    for (const Stage::Column& column : stage.columns)
        add(columnBelow(m_scope, index, column), Stage::columnName(column.source, column.column));
    return columns;
}

std::string Hierarchy::baseItem() const {
    if (!m_hasBase)
        return {};
    std::string sql = m_scope.stages[0].alias() + " AS MATERIALIZED (SELECT " +
                      stageColumns(m_scope, 0) + ",row_number() OVER () AS seq FROM " + m_from;
    if (!m_conditions.empty())
        sql += " WHERE " + joinedConditions(m_conditions, "AND");
    return sql + "),";
}

const std::string& Hierarchy::rows() const {
    return m_hasBase ? m_scope.stages[m_scope.hierarchy - 2].alias() : m_from;
}

std::string Hierarchy::withItems() {
    const std::string& name = alias();
    std::string sql =
        baseItem() + name + " AS (SELECT " + joined(branch(true), ",") + " FROM " + rows();
    if (!m_startConditions.empty())
        sql += " WHERE " + joinedConditions(m_startConditions, "AND");
    sql += " UNION ALL SELECT " + joined(branch(false), ",") + " FROM " + name + " CROSS JOIN " +
           rows() + " WHERE " + joinedConditions(m_connectConditions, "AND") + " ORDER BY lvl DESC";
    for (const std::string& term : m_siblingTerms)
        sql += ',' + term;
    return sql + ",seq)";
}

} // namespace ora
