#include "Binding.h"
#include "ErrorText.h"
#include "Requirements.h"

#include <algorithm>

namespace ora {

namespace {

constexpr int DuplicateColumn = 957;
constexpr int ColumnNotAllowed = 984;

// Columns whose values come from elsewhere; DEFAULT may be given for them.
void requireGiven(const CatalogColumn& column) {
    constexpr int GeneratedAlways = 32795;
    constexpr int VirtualColumn = 54013;
    if (!column.virtualText.empty())
        throw OraError(VirtualColumn, "INSERT operation disallowed on virtual columns");
    if (column.identityAlways)
        throw OraError(GeneratedAlways, "cannot insert into a generated always identity column");
}

// Where the values go: the named columns of the table, or all that can be given.
std::vector<int> insertColumns(const ChangeTarget& target, std::span<const Name> names) {
    std::vector<int> columns;
    if (names.empty()) {
        for (const int base : target.baseColumns) {
            if (base < 0 || !target.table->columns[static_cast<std::size_t>(base)].invisible)
                columns.push_back(base);
        }
        return columns;
    }
    for (const Name& name : names) {
        const int column = targetColumn(target, name);
        if (std::find(columns.begin(), columns.end(), column) != columns.end())
            raise(DuplicateColumn, name.at.begin);
        columns.push_back(column);
    }
    return columns;
}

JoinChange insertion(std::span<const Name> names) {
    if (names.empty())
        return {JoinChange::Kind::AllColumns, {}};
    return {JoinChange::Kind::Columns, {names.begin(), names.end()}};
}

void setValues(Binding& binding, Scope& scope, const ChangeTarget& target,
               const std::vector<int>& columns, std::span<Expr* const> exprs, TableValues& values) {
    constexpr int VirtualColumn = 1733;
    requireCount(columns.size(), exprs.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i] < 0)
            raise(VirtualColumn);
        if (exprs[i]->kind == ExprKind::Default) {
            values.setDefault(columns[i]);
            continue;
        }
        requireGiven(target.table->columns[static_cast<std::size_t>(columns[i])]);
        values.set(columns[i], bindValue(binding, scope, *exprs[i]));
    }
}

std::vector<Value> columnsOf(const BoundQuery& query, const std::string& alias) {
    std::vector<Value> values;
    for (std::size_t i = 0; i < query.columns.size(); ++i) {
        Value& value = values.emplace_back();
        value.sql = alias + ".c" + std::to_string(i + 1);
        value.type = query.columns[i].type;
        value.column = true;
    }
    return values;
}

std::string insertQuery(Binding& binding, const Insert& insert, const ChangeTarget& target,
                        const std::vector<int>& columns, TableValues& values) {
    const BoundQuery query = bindRootQuery(binding, *insert.query);
    requireCount(columns.size(), query.columns.size());
    const std::string alias = binding.freshAlias('s');
    const std::vector<Value> given = columnsOf(query, alias);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        requireGiven(target.table->columns[static_cast<std::size_t>(columns[i])]);
        values.set(columns[i], given[i]);
    }
    // A row's values are computed once, whatever the engine makes of the query.
    const bool once = query.sql.find("seq_row(") != query.sql.npos;
    return '(' + query.sql + (once ? firstRows("-1") : std::string()) + ") AS " + alias;
}

Source rowsSource(Binding& binding, const BoundQuery& query, const std::string& alias) {
    Source source;
    source.alias = alias;
    for (std::size_t i = 0; i < query.columns.size(); ++i)
        source.columns.push_back({binding.text(query.columns[i].name), query.columns[i].type,
                                  alias + ".c" + std::to_string(i + 1), true, Merged::No});
    return source;
}

// INSERT ALL: the query's rows are kept, and each target takes its part of them.
class MultiInserter {
public:
    MultiInserter(Binding& binding, const MultiInsert& insert)
        : m_binding(binding)
        , m_insert(insert)
        , m_scope(nullptr) {}

    Compiled compile() {
        const BoundQuery query = bindRows();
        m_alias = m_binding.freshAlias('m');
        m_scope.sources.push_back(rowsSource(m_binding, query, m_alias));
        m_compiled.sql.emplace_back();
        m_row.kept = &m_sequences;
        m_row.keptAlias = m_alias;
        for (const InsertArm& arm : m_insert.arms)
            addArm(arm);
        m_compiled.sql.front() = keepRows(query.sql);
        m_compiled.sql.push_back("DROP TABLE temp." + m_alias);
        return std::move(m_compiled);
    }

private:
    BoundQuery bindRows() {
        const SequenceRegion none(m_binding, false);
        return bindRootQuery(m_binding, *m_insert.query);
    }

    // A row has one number of each sequence, whatever tables it goes to.
    std::string keepRows(const std::string& query) const {
        std::string numbers;
        for (const auto& [key, sql] : m_sequences)
            numbers += ',' + sql + " AS \"" + key + '"';
        return "CREATE TEMP TABLE " + m_alias + " AS " +
               (numbers.empty() ? query : "SELECT *" + numbers + " FROM (" + query + ')');
    }

    // A row takes the first arm that fits, or all of them; ELSE takes what fits none.
    void addArm(const InsertArm& arm) {
        std::vector<std::string> conditions;
        if (arm.when) {
            const std::string when = bindCondition(m_binding, m_scope, *arm.when);
            if (m_insert.first)
                conditions = m_failed;
            conditions.push_back('(' + when + ')');
            m_failed.push_back('(' + when + ") IS NOT TRUE");
        } else {
            conditions = m_failed;
        }
        for (const InsertInto& into : arm.targets)
            addTarget(into, conditions);
    }

    void addTarget(const InsertInto& into, const std::vector<std::string>& conditions) {
        const ChangeTarget target =
            bindTarget(m_binding, {into.table, nullptr, false, {}}, insertion(into.columns));
        const std::vector<int> columns = insertColumns(target, into.columns);
        TableValues values(m_binding, *target.table);
        if (into.values.empty()) {
            requireCount(columns.size(), m_scope.sources[0].columns.size());
            for (std::size_t i = 0; i < columns.size(); ++i)
                values.set(columns[i], m_scope.columnValue({0, static_cast<int>(i)}));
        } else {
            const SequenceRegion region(m_binding, true, &m_row);
            setValues(m_binding, m_scope, target, columns, into.values, values);
        }
        values.completeWithDefaults();
        std::string from = "temp." + m_alias + " AS " + m_alias;
        if (!conditions.empty())
            from += " WHERE " + joined(conditions, " AND ");
        m_compiled.sql.push_back("INSERT INTO " + target.table->source +
                                 values.insertText(from, target));
        if (!m_compiled.target)
            m_compiled.target = target.table;
    }

    Binding& m_binding;
    const MultiInsert& m_insert;
    Scope m_scope;
    std::string m_alias;
    std::vector<std::string> m_failed;
    std::map<std::string, std::string> m_sequences;
    SequenceRow m_row;
    Compiled m_compiled;
};

} // namespace

Compiled compileInsert(Binding& binding, const Insert& insert) {
    const ChangeTarget target = bindTarget(binding, insert.target, insertion(insert.columns));
    const std::vector<int> columns = insertColumns(target, insert.columns);
    TableValues values(binding, *target.table);
    std::string from;
    if (insert.query) {
        from = insertQuery(binding, insert, target, columns, values);
    } else {
        Scope none(nullptr);
        constexpr int GroupFunctionNotAllowed = 934;
        none.aggregateError = GroupFunctionNotAllowed;
        SequenceRow row;
        row.onlyRow = true;
        for (const Expr* value : insert.values)
            collectSequences(value, row.references);
        const SequenceRegion region(binding, true, &row);
        binding.columnError = ColumnNotAllowed;
        setValues(binding, none, target, columns, insert.values, values);
        binding.columnError = 0;
    }
    values.completeWithDefaults();
    Compiled compiled;
    compiled.sql.push_back("INSERT INTO " + target.table->source + values.insertText(from, target));
    compiled.action = RowAction::Insert;
    compiled.target = target.table;
    return compiled;
}

Compiled compileMultiInsert(Binding& binding, const MultiInsert& insert) {
    if (binding.insideTrigger)
        refuse("INSERT ALL in a trigger", insert.at.begin);
    return MultiInserter(binding, insert).compile();
}

} // namespace ora
