#include "DdlParts.h"
#include "ErrorText.h"
#include "Lexer.h"
#include "TableSql.h"

#include <algorithm>

// ALTER TABLE. Each action is checked and carried out for itself; the statement as a whole is
// undone when one fails.

namespace ora {

namespace {

using Kind = ConstraintDefinition::Kind;

// Saves the definition and gives the stored table its text.
void store(const DdlContext& context, TableDefinition& table) {
    context.store().saveTable(table);
    context.store().touchObject(table.id);
    replaceTableSql(context.db, table, context.store());
}

// --- columns -----------------------------------------------------------------------------------

void fillWithDefault(const DdlContext& context, const TableDefinition& table,
                     const ColumnDefinition& column, const ColumnDef& definition) {
    if (definition.identity != IdentityKind::None)
        context.db.run("UPDATE " + table.sqlName() + " SET " + column.sqlName() + " = seq_next('" +
                       context.catalog.user() + "." + identitySequenceName(table) + "')");
    if (!definition.defaultValue)
        return;
    const Relation relation = relationOf(context, table);
    for (const CatalogColumn& entry : relation.columns) {
        if (entry.name == column.name)
            context.db.run("UPDATE " + table.sqlName() + " SET " + column.sqlName() + " = " +
                           context.binder.defaultSql(*definition.defaultValue, entry, relation));
    }
}

bool isMandatory(const ColumnDef& definition) {
    for (const ConstraintDef& constraint : definition.constraints) {
        if (constraint.kind == ConstraintKind::NotNull ||
            constraint.kind == ConstraintKind::PrimaryKey)
            return !constraint.state.disabled;
    }
    return false;
}

void addConstraintNow(const DdlContext& context, TableDefinition& table,
                      const ConstraintDef& definition, const Name* column);

void addColumn(const DdlContext& context, TableDefinition& table, const ColumnDef& definition) {
    constexpr int mustBeEmpty = 1758;
    if (table.column(std::string(definition.name.text)))
        failDdl(DdlError::ColumnExists);
    if (isMandatory(definition) && !definition.defaultValue && hasRows(context, table))
        raise(mustBeEmpty);
    table.columns.push_back(newColumn(context, table, definition));
    addIdentity(context, table, table.columns.back(), definition);
    const bool nullable = table.columns.back().nullable;
    table.columns.back().nullable = true; // until the rows have their values
    store(context, table);
    fillWithDefault(context, table, table.columns.back(), definition);
    table.columns.back().nullable = nullable;
    store(context, table);
    for (const ConstraintDef& constraint : definition.constraints) {
        if (constraint.kind != ConstraintKind::Null)
            addConstraintNow(context, table, constraint, &definition.name);
    }
}

std::string sqlCount(const TableDefinition& table, const std::string& condition) {
    return "SELECT 1 FROM " + table.sqlName() + " WHERE " + condition + " LIMIT 1";
}

bool hasValues(const DdlContext& context, const TableDefinition& table,
               const ColumnDefinition& column) {
    return givesRow(context, sqlCount(table, column.sqlName() + " IS NOT NULL"));
}

bool isText(const TypeInfo& type) {
    return type.type == SqlType::Varchar2 || type.type == SqlType::Char ||
           type.type == SqlType::Nvarchar2 || type.type == SqlType::Nchar;
}

// Rows keep their values where the new type holds them; else the server asks for an empty column.
void changeText(const DdlContext& context, const TableDefinition& table,
                const ColumnDefinition& column, const TypeInfo& type) {
    const std::string size = type.charLength ? "length(" + column.sqlName() + ")"
                                             : "length(CAST(" + column.sqlName() + " AS BLOB))";
    const std::string limit = std::to_string(type.length);
    const std::string trimmed =
        isPadded(column.type.type) ? "length(rtrim(" + column.sqlName() + "))" : size;
    if (givesRow(context, sqlCount(table, trimmed + " > " + limit)))
        failDdl(DdlError::ValueTooBig);
}

void changeNumber(const DdlContext& context, const TableDefinition& table,
                  const ColumnDefinition& column, const TypeInfo& type) {
    const TypeInfo& old = column.type;
    const int unlimited = 1000;
    const auto whole = [&](const TypeInfo& info) {
        return info.precision == 0 ? unlimited : info.precision - info.scale;
    };
    const auto fraction = [&](const TypeInfo& info) {
        return info.precision == 0 && !info.scaleGiven ? unlimited : info.scale;
    };
    const bool narrower = whole(type) < whole(old) || fraction(type) < fraction(old);
    if (narrower && hasValues(context, table, column))
        failDdl(DdlError::MustBeEmptyForPrecision);
}

void changeType(const DdlContext& context, TableDefinition& table, ColumnDefinition& column,
                const TypeInfo& type) {
    const bool number = column.type.type == SqlType::Number && type.type == SqlType::Number;
    if (isText(column.type) && isText(type))
        changeText(context, table, column, type);
    else if (number)
        changeNumber(context, table, column, type);
    else if (column.type.type != type.type && hasValues(context, table, column))
        failDdl(DdlError::MustBeEmptyForType);
    const TypeInfo old = column.type;
    column.type = type;
    if (!isPadded(type.type) || old == type)
        return;
    const Relation relation = relationOf(context, table);
    for (const CatalogColumn& entry : relation.columns) {
        if (entry.name == column.name)
            context.db.run(
                "UPDATE " + table.sqlName() + " SET " + column.sqlName() + " = " +
                context.binder.storedSql("rtrim(" + column.sqlName() + ")", old, entry, relation));
    }
}

bool hasColumn(const ConstraintDefinition& constraint, int number) {
    return std::find(constraint.columns.begin(), constraint.columns.end(), number) !=
           constraint.columns.end();
}

void dropNotNull(TableDefinition& table, ColumnDefinition& column) {
    const ConstraintDefinition* key = table.primaryKey();
    if (column.nullable || (key && key->enabled && hasColumn(*key, column.number)))
        failDdl(DdlError::AlreadyNull);
    column.nullable = true;
    std::erase_if(table.constraints, [&](const ConstraintDefinition& constraint) {
        return constraint.notNull && constraint.columns.front() == column.number;
    });
}

// A column that is shown again becomes the last one.
void setVisibility(TableDefinition& table, const ColumnDef& definition) {
    if (definition.visibility == Visibility::Unsaid)
        return;
    const auto found = std::find_if(
        table.columns.begin(), table.columns.end(),
        [&](const ColumnDefinition& entry) { return entry.name == definition.name.text; });
    const bool invisible = definition.visibility == Visibility::Invisible;
    if (found->invisible && !invisible)
        std::rotate(found, found + 1, table.columns.end());
    for (ColumnDefinition& column : table.columns) {
        if (column.name == definition.name.text)
            column.invisible = invisible;
    }
}

void modifyColumn(const DdlContext& context, TableDefinition& table, const ColumnDef& definition) {
    requireColumn(table, definition.name);
    ColumnDefinition& column = *table.column(std::string(definition.name.text));
    if (definition.hasType)
        changeType(context, table, column, declaredType(context, definition));
    if (definition.defaultValue) {
        requireSoundDefault(context, table, column, definition);
        column.defaultText = definition.defaultText;
        column.defaultOnNull = definition.defaultOnNull;
    }
    for (const ConstraintDef& constraint : definition.constraints) {
        if (constraint.kind == ConstraintKind::Null) {
            dropNotNull(table, column);
            continue;
        }
        if (constraint.kind == ConstraintKind::NotNull && !column.nullable)
            failDdl(DdlError::AlreadyNotNull);
        addConstraintNow(context, table, constraint, &definition.name);
    }
    setVisibility(table, definition);
    store(context, table);
}

// Constraints of the column alone go with it; others stop the drop, unless they may go as well.
void dropConstraintsOf(const DdlContext& context, TableDefinition& table, int number,
                       bool cascade) {
    for (const ConstraintDefinition& constraint : table.constraints) {
        if (!hasColumn(constraint, number))
            continue;
        if (constraint.columns.size() > 1 && !cascade)
            failDdl(DdlError::InMultiColumnConstraint);
        if (!context.store().referencing(constraint.id).empty() && !cascade)
            failDdl(DdlError::ParentKeyColumn);
    }
    for (ConstraintDefinition& constraint : table.constraints) {
        if (!hasColumn(constraint, number))
            continue;
        detachDependents(context, constraint.id, Dependents::Drop);
        dropKeyIndex(context, constraint);
    }
    std::erase_if(table.constraints, [&](const ConstraintDefinition& constraint) {
        return hasColumn(constraint, number);
    });
}

void dropIndexesOf(const DdlContext& context, const TableDefinition& table, int number) {
    const auto uses = [&](const IndexKey& key) {
        const std::vector<int> columns = columnsIn(key.expressionSql);
        return key.column == number ||
               std::find(columns.begin(), columns.end(), number) != columns.end();
    };
    for (const IndexDefinition& index : context.store().indexesOf(table.id)) {
        if (std::any_of(index.keys.begin(), index.keys.end(), uses))
            dropIndexObject(context, index.id);
    }
}

void dropColumn(const DdlContext& context, TableDefinition& table, const AlterTableAction& action) {
    const ColumnDefinition column = requireColumn(table, action.name);
    if (table.columns.size() == 1)
        failDdl(DdlError::WouldDropAllColumns);
    dropConstraintsOf(context, table, column.number, action.cascade);
    dropIndexesOf(context, table, column.number);
    store(context, table); // without the constraints
    const auto triggers = context.store().triggersOf(table.id);
    for (const TriggerDefinition& trigger : triggers)
        dropStoredTriggers(context, trigger);
    if (column.virtualText.empty())
        context.db.run("ALTER TABLE " + table.sqlName() + " DROP COLUMN " + column.sqlName());
    std::erase_if(table.columns, [&](const auto& entry) { return entry.number == column.number; });
    context.store().saveTable(table);
    context.catalog.forget();
    for (const TriggerDefinition& trigger : triggers)
        createStoredTriggers(context, trigger);
}

// A name inside an expression's text, as the dictionary shows it after a rename.
std::string renamedIn(const std::string& text, std::string_view from, const std::string& to) {
    Arena arena;
    std::string renamed;
    size_t copied = 0;
    for (const Token& token : tokenize(text, arena)) {
        const bool name = token.kind == TokenKind::Word || token.kind == TokenKind::QuotedName;
        if (!name || token.text != from)
            continue;
        renamed += text.substr(copied, token.begin - copied);
        renamed += token.kind == TokenKind::QuotedName ? displayName(to) : to;
        copied = token.end;
    }
    return renamed + text.substr(copied);
}

void renameColumn(const DdlContext& context, TableDefinition& table,
                  const AlterTableAction& action) {
    constexpr int duplicateColumn = 957;
    requireColumn(table, action.name);
    const std::string newName(action.newName.text);
    if (table.column(newName))
        raise(duplicateColumn);
    for (ConstraintDefinition& constraint : table.constraints)
        constraint.conditionText = renamedIn(constraint.conditionText, action.name.text, newName);
    for (ColumnDefinition& column : table.columns)
        column.virtualText = renamedIn(column.virtualText, action.name.text, newName);
    table.column(std::string(action.name.text))->name = newName;
    context.store().saveTable(table);
    context.store().touchObject(table.id);
}

// --- constraints -------------------------------------------------------------------------------

void requireParents(const DdlContext& context, const TableDefinition& table,
                    const ConstraintDefinition& constraint) {
    if (givesRow(context, violationSql(table, constraint, context.store())))
        failDdl(DdlError::ParentsMissing, context.catalog.user() + "." + constraint.name);
}

// Everything that makes an enabled constraint hold for the stored rows.
void enforce(const DdlContext& context, TableDefinition& table, const std::string& name) {
    ConstraintDefinition* constraint = table.constraint(name);
    addKeyIndex(context, table, *constraint);
    validate(context, table, *constraint);
    store(context, table);
    constraint = table.constraint(name);
    if (constraint->kind == Kind::ForeignKey && constraint->enabled && constraint->validated)
        requireParents(context, table, *constraint);
}

void addConstraintNow(const DdlContext& context, TableDefinition& table,
                      const ConstraintDef& definition, const Name* column) {
    const std::string name = addConstraint(context, table, definition, column).name;
    enforce(context, table, name);
}

// By name, as the primary key, or as the unique key of the columns.
ConstraintDefinition* named(TableDefinition& table, const ConstraintDef& which) {
    if (which.name)
        return table.constraint(std::string(which.name.text));
    for (ConstraintDefinition& constraint : table.constraints) {
        if (which.kind == ConstraintKind::PrimaryKey && constraint.kind == Kind::PrimaryKey)
            return &constraint;
        if (which.kind != ConstraintKind::Unique || constraint.kind != Kind::Unique)
            continue;
        std::vector<int> columns;
        for (const Name& name : which.columns)
            columns.push_back(requireColumn(table, name).number);
        if (columns == constraint.columns)
            return &constraint;
    }
    return nullptr;
}

void restoreNullable(TableDefinition& table, const ConstraintDefinition& gone) {
    if (!gone.notNull && gone.kind != Kind::PrimaryKey)
        return;
    for (const int number : gone.columns) {
        bool mandatory = false;
        for (const ConstraintDefinition& other : table.constraints) {
            const bool forces = other.enabled && (other.notNull || other.kind == Kind::PrimaryKey);
            mandatory =
                mandatory || (forces && other.name != gone.name && hasColumn(other, number));
        }
        for (ColumnDefinition& column : table.columns) {
            if (column.number == number)
                column.nullable = !mandatory;
        }
    }
}

[[noreturn]] void failNoSuchDrop(const ConstraintDef& which) {
    failDdl(which.name                                 ? DdlError::DropOfNoConstraint
            : which.kind == ConstraintKind::PrimaryKey ? DdlError::DropOfNoPrimaryKey
                                                       : DdlError::DropOfNoUniqueKey);
}

void dropConstraint(const DdlContext& context, TableDefinition& table,
                    const AlterTableAction& action) {
    ConstraintDefinition* constraint = named(table, *action.constraint);
    if (!constraint)
        failNoSuchDrop(*action.constraint);
    if (!context.store().referencing(constraint->id).empty()) {
        if (!action.cascade)
            failDdl(DdlError::KeyIsReferenced);
        detachDependents(context, constraint->id, Dependents::Drop);
        std::erase_if(table.constraints, [&, id = constraint->id](const auto& entry) {
            return entry.referenced == id;
        });
        constraint = named(table, *action.constraint);
    }
    restoreNullable(table, *constraint);
    const ConstraintDefinition gone = *constraint;
    dropKeyIndex(context, *constraint);
    std::erase_if(table.constraints, [&](const auto& entry) { return entry.name == gone.name; });
    store(context, table);
}

void disableConstraint(const DdlContext& context, TableDefinition& table,
                       ConstraintDefinition& constraint, bool cascade) {
    for (const auto& place : context.store().referencing(constraint.id)) {
        for (const ConstraintDefinition& child : context.store().table(place.table).constraints) {
            if (child.id == place.id && child.enabled && !cascade)
                failDdl(DdlError::DependenciesExist,
                        context.catalog.user() + "." + constraint.name);
        }
    }
    detachDependents(context, constraint.id, Dependents::Disable);
    restoreNullable(table, constraint);
    dropKeyIndex(context, constraint);
    constraint.enabled = false;
    store(context, table);
}

void enableConstraint(const DdlContext& context, TableDefinition& table,
                      ConstraintDefinition& constraint, bool validated) {
    const std::string name = constraint.name;
    constraint.enabled = true;
    constraint.validated = validated;
    if (constraint.notNull || constraint.kind == Kind::PrimaryKey) {
        validate(context, table, constraint);
        for (const int number : constraint.columns) {
            for (ColumnDefinition& column : table.columns) {
                if (column.number == number)
                    column.nullable = constraint.notNull && constraint.deferrable;
            }
        }
    }
    enforce(context, table, name);
}

void switchConstraint(const DdlContext& context, TableDefinition& table,
                      const AlterTableAction& action, bool enable) {
    ConstraintDefinition* constraint = named(table, *action.constraint);
    if (!constraint)
        failDdl(enable ? DdlError::NoSuchConstraintToEnable : DdlError::NoSuchConstraint,
                std::string(action.constraint->name.text));
    if (constraint->enabled == enable)
        return;
    if (enable)
        enableConstraint(context, table, *constraint, action.constraint->state.validated);
    else
        disableConstraint(context, table, *constraint, action.cascade);
}

// MODIFY CONSTRAINT: when it is checked, or whether.
void modifyConstraint(const DdlContext& context, TableDefinition& table,
                      const AlterTableAction& action) {
    constexpr int notDeferrable = 2447;
    const ConstraintState& state = action.constraint->state;
    ConstraintDefinition* constraint = named(table, *action.constraint);
    if (!constraint || !state.timed)
        return switchConstraint(context, table, action, !state.disabled);
    if (!constraint->deferrable)
        raise(notDeferrable);
    constraint->deferred = state.initiallyDeferred;
    context.store().saveTable(table);
}

void renameConstraint(const DdlContext& context, TableDefinition& table,
                      const AlterTableAction& action) {
    constexpr int constraintNameInUse = 2264;
    ConstraintDefinition* constraint = table.constraint(std::string(action.name.text));
    if (!constraint)
        failDdl(DdlError::RenameOfNoConstraint);
    if (context.store().findConstraint(action.newName.text))
        raise(constraintNameInUse);
    constraint->name = action.newName.text;
    constraint->generatedName = false;
    context.store().saveTable(table);
}

void switchTriggers(const DdlContext& context, const TableDefinition& table, bool enable) {
    for (TriggerDefinition trigger : context.store().triggersOf(table.id)) {
        trigger.enabled = enable;
        context.store().saveTrigger(trigger);
        dropStoredTriggers(context, trigger);
        createStoredTriggers(context, trigger);
    }
}

void renameTable(const DdlContext& context, const TableDefinition& table, const Name& newName) {
    const std::string name(newName.text);
    requireFree(context, NameSpace::Relation, name);
    context.store().renameObject(table.id, name);
    context.store().touchObject(table.id);
}

void setReadOnly(const DdlContext& context, TableDefinition& table, bool readOnly) {
    table.readOnly = readOnly;
    context.store().saveTable(table);
}

void run(const DdlContext& context, TableDefinition& table, const AlterTableAction& action) {
    switch (action.kind) {
    case AlterTableKind::AddColumn: return addColumn(context, table, *action.column);
    case AlterTableKind::AddConstraint:
        return addConstraintNow(context, table, *action.constraint, nullptr);
    case AlterTableKind::ModifyColumn: return modifyColumn(context, table, *action.column);
    case AlterTableKind::ModifyConstraint: return modifyConstraint(context, table, action);
    case AlterTableKind::DropColumn: return dropColumn(context, table, action);
    case AlterTableKind::DropConstraint: return dropConstraint(context, table, action);
    case AlterTableKind::EnableConstraint: return switchConstraint(context, table, action, true);
    case AlterTableKind::DisableConstraint: return switchConstraint(context, table, action, false);
    case AlterTableKind::RenameColumn: return renameColumn(context, table, action);
    case AlterTableKind::RenameConstraint: return renameConstraint(context, table, action);
    case AlterTableKind::RenameTable: return renameTable(context, table, action.newName);
    case AlterTableKind::EnableTriggers: return switchTriggers(context, table, true);
    case AlterTableKind::DisableTriggers: return switchTriggers(context, table, false);
    case AlterTableKind::ReadOnly: return setReadOnly(context, table, true);
    case AlterTableKind::ReadWrite: return setReadOnly(context, table, false);
    case AlterTableKind::Accepted: return;
    }
}

} // namespace

void alterTable(const DdlContext& context, const AlterTable& statement) {
    const ObjectId id = requireTable(context, statement.name).id;
    for (const AlterTableAction& action : statement.actions) {
        TableDefinition table = context.store().table(id); // as the action before left it
        run(context, table, action);
        context.catalog.forget();
    }
}

} // namespace ora
