#include "DdlParts.h"
#include "ErrorText.h"
#include "TableSql.h"

#include <algorithm>

// Constraints of tables, and the indexes that keep keys unique.
namespace ora {

namespace {

using Kind = ConstraintDefinition::Kind;

std::string qualified(const DdlContext& context, const ConstraintDefinition& constraint) {
    return context.catalog.user() + "." + constraint.name;
}

Kind kindOf(ConstraintKind kind) {
    switch (kind) {
    case ConstraintKind::PrimaryKey: return Kind::PrimaryKey;
    case ConstraintKind::Unique: return Kind::Unique;
    case ConstraintKind::ForeignKey: return Kind::ForeignKey;
    default: return Kind::Check;
    }
}

ConstraintDefinition::DeleteRule ruleOf(DeleteRule rule) {
    switch (rule) {
    case DeleteRule::Cascade: return ConstraintDefinition::DeleteRule::Cascade;
    case DeleteRule::SetNull: return ConstraintDefinition::DeleteRule::SetNull;
    default: return ConstraintDefinition::DeleteRule::NoAction;
    }
}

std::vector<int> columnNumbers(const TableDefinition& table, std::span<const Name> names) {
    std::vector<int> numbers;
    constexpr int duplicateColumn = 957;
    for (const Name& name : names) {
        const int number = requireColumn(table, name).number;
        if (std::find(numbers.begin(), numbers.end(), number) != numbers.end())
            raise(duplicateColumn, name.at.begin);
        numbers.push_back(number);
    }
    return numbers;
}

void setNullable(TableDefinition& table, int number, bool nullable) {
    for (ColumnDefinition& column : table.columns) {
        if (column.number == number)
            column.nullable = nullable;
    }
}

void requireNewKey(const TableDefinition& table, const ConstraintDefinition& constraint) {
    constexpr int lobKey = 2329;
    for (const int number : constraint.columns)
        requireKeyType(*table.columnNumbered(number), lobKey);
    constexpr int secondPrimaryKey = 2260;
    constexpr int sameKeyExists = 2261;
    for (const ConstraintDefinition& other : table.constraints) {
        if (constraint.kind == Kind::PrimaryKey && other.kind == Kind::PrimaryKey)
            raise(secondPrimaryKey);
        if ((other.kind == Kind::PrimaryKey || other.kind == Kind::Unique) &&
            other.columns == constraint.columns)
            raise(sameKeyExists);
    }
}

// The parent's key that the written columns name; its primary key when none are written.
const ConstraintDefinition& referencedKey(const TableDefinition& parent,
                                          const ConstraintDef& definition) {
    if (definition.referencedColumns.empty()) {
        const ConstraintDefinition* key = parent.primaryKey();
        if (!key)
            failDdl(DdlError::NoPrimaryKey);
        return *key;
    }
    const std::vector<int> wanted = columnNumbers(parent, definition.referencedColumns);
    for (const ConstraintDefinition& key : parent.constraints) {
        if ((key.kind == Kind::PrimaryKey || key.kind == Kind::Unique) && key.columns == wanted)
            return key;
    }
    failDdl(DdlError::NoMatchingKey);
}

void resolveReference(const DdlContext& context, const TableDefinition& table,
                      ConstraintDefinition& constraint, const ConstraintDef& definition) {
    const bool itself = definition.references.name.text == table.name &&
                        context.catalog.isOwn(definition.references.schema.text);
    const TableDefinition parent = itself ? table : requireTable(context, definition.references);
    if (!definition.referencedColumns.empty() &&
        definition.referencedColumns.size() != constraint.columns.size())
        failDdl(DdlError::NumberOfColumns);
    const ConstraintDefinition& key = referencedKey(parent, definition);
    if (key.columns.size() != constraint.columns.size())
        failDdl(DdlError::NumberOfColumns);
    for (size_t i = 0; i < key.columns.size(); ++i) {
        const TypeInfo& child = table.columnNumbered(constraint.columns[i])->type;
        const TypeInfo& referenced = parent.columnNumbered(key.columns[i])->type;
        if (familyOf(child.type) != familyOf(referenced.type))
            failDdl(DdlError::ColumnTypesDiffer);
    }
    for (const ConstraintDefinition& other : table.constraints) {
        if (other.kind == Kind::ForeignKey && other.columns == constraint.columns &&
            other.referenced == key.id)
            failDdl(other.id == 0 ? DdlError::ReferenceTwice : DdlError::ReferenceExists);
    }
    constraint.referenced = key.id;
    constraint.deleteRule = ruleOf(definition.onDelete);
    constraint.enabled = constraint.enabled && key.enabled;
    if (key.deferrable && definition.onDelete != DeleteRule::None)
        refuse("ON DELETE of a foreign key to a deferrable key");
}

std::string constraintName(const DdlContext& context, const TableDefinition& table,
                           const ConstraintDef& definition, bool& generated) {
    constexpr int constraintNameInUse = 2264;
    generated = !definition.name;
    if (generated)
        return context.store().nextSystemName();
    std::string name(definition.name.text);
    for (const ConstraintDefinition& other : table.constraints) {
        if (other.name == name)
            raise(constraintNameInUse);
    }
    if (context.store().findConstraint(name))
        raise(constraintNameInUse);
    return name;
}

void setNotNull(TableDefinition& table, ConstraintDefinition& constraint) {
    const ColumnDefinition& column = *table.columnNumbered(constraint.columns.front());
    constraint.notNull = true;
    constraint.conditionText = "\"" + column.name + "\" IS NOT NULL";
    if (constraint.enabled && !constraint.deferrable)
        setNullable(table, column.number, false);
}

// A check that stands with a column may name this column alone.
void requireOwnColumn(const TableDefinition& table, const Name* column,
                      const std::vector<int>& named) {
    constexpr int otherColumns = 2438;
    if (!column)
        return;
    const int own = requireColumn(table, *column).number;
    for (const int number : named) {
        if (number != own)
            raise(otherColumns);
    }
}

} // namespace

ConstraintDefinition& addConstraint(const DdlContext& context, TableDefinition& table,
                                    const ConstraintDef& definition, const Name* column) {
    ConstraintDefinition constraint;
    constraint.kind = kindOf(definition.kind);
    constraint.enabled = !definition.state.disabled;
    constraint.deferrable = definition.state.deferrable;
    constraint.deferred = definition.state.initiallyDeferred;
    constraint.validated = definition.state.validated;
    constraint.indexName = definition.state.index.text;
    constraint.name = constraintName(context, table, definition, constraint.generatedName);
    if (column)
        constraint.columns = {requireColumn(table, *column).number};
    else
        constraint.columns = columnNumbers(table, definition.columns);
    switch (definition.kind) {
    case ConstraintKind::NotNull: setNotNull(table, constraint); break;
    case ConstraintKind::Check:
        constraint.conditionText = definition.checkText;
        constraint.conditionSql =
            context.binder.conditionSql(*definition.check, relationOf(context, table));
        requireOwnColumn(table, column, columnsIn(constraint.conditionSql));
        constraint.columns = columnsIn(constraint.conditionSql);
        break;
    case ConstraintKind::ForeignKey:
        resolveReference(context, table, constraint, definition);
        break;
    default: requireNewKey(table, constraint);
    }
    if (constraint.kind == Kind::PrimaryKey && constraint.enabled) {
        for (const int number : constraint.columns)
            setNullable(table, number, false);
    }
    table.constraints.push_back(std::move(constraint));
    return table.constraints.back();
}

void addKeyIndex(const DdlContext& context, TableDefinition& table,
                 ConstraintDefinition& constraint) {
    const bool isKey = constraint.kind == Kind::PrimaryKey || constraint.kind == Kind::Unique;
    if (!isKey || !constraint.enabled || constraint.index != 0)
        return;
    IndexDefinition index;
    for (const int number : constraint.columns)
        index.keys.push_back({number, {}, {}, false});
    for (const IndexDefinition& other : context.store().indexesOf(table.id)) {
        const bool same = other.unique != constraint.deferrable &&
                          other.keys.size() == index.keys.size() &&
                          std::equal(other.keys.begin(), other.keys.end(), index.keys.begin(),
                                     [](const IndexKey& a, const IndexKey& b) {
                                         return a.column == b.column && a.column != 0;
                                     });
        if (same) {
            constraint.index = other.id;
            return;
        }
    }
    index.name = constraint.indexName.empty() ? constraint.name : constraint.indexName;
    index.table = table.id;
    index.unique = !constraint.deferrable;
    index.generatedName = constraint.generatedName && constraint.indexName.empty();
    requireFree(context, NameSpace::Index, index.name);
    index.id =
        context.store().addObject(NameSpace::Index, index.name, "INDEX", index.generatedName);
    context.store().saveIndex(index);
    constraint.index = index.id;
    const int duplicates = constraint.kind == Kind::PrimaryKey ? DdlError::PrimaryKeyViolated
                                                               : DdlError::DuplicatesFound;
    createStoredIndex(context, table, index, duplicates, qualified(context, constraint));
    if (constraint.deferrable && constraint.validated &&
        givesRow(context, violationSql(table, constraint, context.store())))
        failDdl(duplicates, qualified(context, constraint));
}

void dropKeyIndex(const DdlContext& context, ConstraintDefinition& constraint) {
    if (constraint.index == 0)
        return;
    const auto index = context.store().object(constraint.index);
    // One that was there before the constraint stays.
    if (index && index->name == constraint.name)
        dropIndexObject(context, constraint.index);
    constraint.index = 0;
}

void createStoredIndex(const DdlContext& context, const TableDefinition& table,
                       const IndexDefinition& index, int duplicatesCode,
                       const std::string& nameInError) {
    try {
        context.db.run(createIndexSql(index, table));
    } catch (const SqliteFailure& failure) {
        if (failure.primaryCode() == SQLITE_CONSTRAINT)
            failDdl(duplicatesCode, nameInError);
        throw;
    }
}

void dropIndexObject(const DdlContext& context, ObjectId index) {
    context.db.run("DROP INDEX IF EXISTS i" + std::to_string(index));
    context.store().removeObject(index);
}

void validate(const DdlContext& context, const TableDefinition& table,
              const ConstraintDefinition& constraint) {
    if (!constraint.enabled || !constraint.validated)
        return;
    const std::string from = "SELECT 1 FROM " + table.sqlName() + " WHERE ";
    if (constraint.notNull || constraint.kind == Kind::PrimaryKey) {
        const int nullsFound = constraint.notNull   ? DdlError::NullsFound
                               : constraint.id == 0 ? DdlError::NullsForPrimaryKey
                                                    : DdlError::PrimaryKeyViolated;
        // The server has no name yet for a NOT NULL without one.
        const std::string name = constraint.generatedName && constraint.notNull
                                     ? context.catalog.user() + "."
                                     : qualified(context, constraint);
        for (const int number : constraint.columns) {
            if (givesRow(context, from + "c" + std::to_string(number) + " IS NULL LIMIT 1"))
                failDdl(nullsFound, name);
        }
    } else if (constraint.kind == Kind::Check) {
        if (givesRow(context, violationSql(table, constraint, context.store())))
            failDdl(DdlError::CheckViolated, qualified(context, constraint));
    }
}

void detachDependents(const DdlContext& context, ObjectId key, Dependents what) {
    for (const auto& place : context.store().referencing(key)) {
        TableDefinition child = context.store().table(place.table);
        for (ConstraintDefinition& constraint : child.constraints) {
            if (constraint.id == place.id)
                constraint.enabled = false;
        }
        if (what == Dependents::Drop)
            std::erase_if(child.constraints,
                          [&](const auto& entry) { return entry.id == place.id; });
        context.store().saveTable(child);
        replaceTableSql(context.db, child, context.store());
    }
}

} // namespace ora
