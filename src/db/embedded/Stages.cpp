#include "Binding.h"

namespace ora {

std::string columnBelow(const Scope& scope, std::size_t stage, const Stage::Column& column) {
    if (stage > 0)
        return scope.stages[stage - 1].alias() + '.' +
               Stage::columnName(column.source, column.column);
    const Source& source = scope.sources[static_cast<std::size_t>(column.source)];
    return column.column == Stage::Rowid
               ? source.rowid
               : source.columns[static_cast<std::size_t>(column.column)].sql;
}

std::string stageColumns(const Scope& scope, std::size_t stage) {
    std::vector<std::string> columns;
    for (const Stage::Column& column : scope.stages[stage].columns)
        columns.push_back(columnBelow(scope, stage, column) + " AS " +
                          Stage::columnName(column.source, column.column));
    for (const Stage::Extra& extra : scope.stages[stage].extras)
        columns.push_back(extra.root + " AS " + extra.name);
    return columns.empty() ? "1" : joined(columns, ",");
}

void spreadUses(Scope& scope) {
    for (std::size_t stage = scope.stages.size(); stage > 1; --stage)
        scope.stages[stage - 2].useAllOf(scope.stages[stage - 1]);
}

} // namespace ora
