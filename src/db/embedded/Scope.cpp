#include "Scope.h"

#include "ErrorText.h"

#include <algorithm>

namespace ora {

namespace {

constexpr int AmbiguousColumn = 918;

void requireUnmerged(const SourceColumn& column) {
    constexpr int UsingQualified = 25154;
    constexpr int NaturalQualified = 25155;
    if (column.merged != Merged::No)
        raise(column.merged == Merged::ByUsing ? UsingQualified : NaturalQualified);
}

} // namespace

std::string Stage::columnName(int source, int column) {
    return "k" + std::to_string(source) + "_" + (column == Rowid ? "r" : std::to_string(column));
}

bool Stage::uses(int source, int column) const {
    return std::any_of(columns.begin(), columns.end(), [&](const Column& used) {
        return used.source == source && used.column == column;
    });
}

std::string Stage::use(int source, int column) {
    if (!uses(source, column))
        columns.push_back({source, column});
    return m_alias + '.' + columnName(source, column);
}

void Stage::useAllOf(const Stage& upper) {
    for (const Column& column : upper.columns)
        use(column.source, column.column);
}

std::string Stage::extra(const Extra& wanted) {
    const auto known = std::find_if(extras.begin(), extras.end(),
                                    [&](const Extra& one) { return one.name == wanted.name; });
    if (known == extras.end())
        extras.push_back(wanted);
    return m_alias + '.' + wanted.name;
}

Scope::Found Scope::find(std::string_view name) const {
    Found found;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const auto& columns = sources[i].columns;
        for (std::size_t j = 0; j < columns.size(); ++j) {
            if (columns[j].name != name || columns[j].merged != Merged::No)
                continue;
            if (found.source >= 0)
                raise(AmbiguousColumn);
            found = {static_cast<int>(i), static_cast<int>(j)};
        }
    }
    return found;
}

int Scope::findSource(std::string_view owner, std::string_view label) const {
    for (std::size_t i = 0; i < sources.size(); ++i)
        if (!sources[i].common && sources[i].label == label &&
            (owner.empty() || owner == sources[i].owner))
            return static_cast<int>(i);
    return -1;
}

Scope::Found Scope::find(std::string_view owner, std::string_view label,
                         std::string_view name) const {
    Found found;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const Source& source = sources[i];
        if (source.common || source.label != label || (!owner.empty() && owner != source.owner))
            continue;
        for (std::size_t j = 0; j < source.columns.size(); ++j) {
            if (source.columns[j].name != name)
                continue;
            if (found.source >= 0)
                raise(AmbiguousColumn);
            requireUnmerged(source.columns[j]);
            found = {static_cast<int>(i), static_cast<int>(j)};
        }
    }
    return found;
}

std::string OuterValues::parameter(const std::string& sql) {
    auto known = std::find(m_values.begin(), m_values.end(), sql);
    if (known == m_values.end())
        known = m_values.insert(known, sql);
    return '?' + std::to_string(known - m_values.begin() + 1);
}

std::string Scope::columnSql(int source, int column) {
    if (original)
        return outerValues->parameter(original->columnSql(source, column));
    constexpr int MostMarked = 64;
    if (source < MostMarked)
        named |= std::uint64_t(1) << source;
    const Source& from = sources[static_cast<std::size_t>(source)];
    if (level > 0)
        return stages[level - 1].use(source, column);
    return column == Stage::Rowid ? from.rowid : from.columns[static_cast<std::size_t>(column)].sql;
}

Value Scope::columnValue(const Found& found) {
    const SourceColumn& column = sources[static_cast<std::size_t>(found.source)]
                                     .columns[static_cast<std::size_t>(found.column)];
    Value value;
    value.sql = columnSql(found.source, found.column);
    value.type = column.type;
    value.nullable = column.nullable;
    value.column = true;
    value.declaredNotNull = column.declaredNotNull;
    return value;
}

Value Scope::rowidValue(int source) {
    constexpr int NoRowid = 1445;
    constexpr int RowidCharacters = 18;
    if (sources[static_cast<std::size_t>(source)].rowid.empty())
        raise(NoRowid);
    Value value;
    value.rowid = columnSql(source, Stage::Rowid);
    value.sql = "rowid_text(" + value.rowid + ")";
    value.type = {SqlType::Rowid, RowidCharacters};
    value.nullable = false;
    return value;
}

std::string Scope::extraSql(std::size_t stage, const Stage::Extra& extra) {
    std::string sql = stages[stage].extra(extra);
    for (std::size_t above = stage + 1; above < level; ++above)
        sql = stages[above].extra({extra.name, sql, sql});
    return sql;
}

} // namespace ora
