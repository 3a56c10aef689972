#include "DdlParts.h"
#include "ErrorText.h"
#include "TableSql.h"

// CREATE TABLE, DROP TABLE, TRUNCATE TABLE.

namespace ora {

namespace {

constexpr int duplicateColumn = 957;
constexpr int wrongNumberOfNames = 1730;
constexpr int zeroLengthColumn = 1723;

void requireNewName(const TableDefinition& table, const Name& name) {
    if (table.column(std::string(name.text)))
        raise(duplicateColumn, name.at.begin);
}

// What the query gives, under the written names where there are any.
void addQueryColumns(const DdlContext& context, TableDefinition& table,
                     const CreateTable& statement, const SchemaBinder::DescribedQuery& query) {
    constexpr int mustNameExpression = 998;
    const auto& named = statement.columns;
    if (!named.empty() && named.size() != query.columns.size())
        raise(wrongNumberOfNames);
    for (size_t i = 0; i < query.columns.size(); ++i) {
        ColumnDefinition column;
        column.name = named.empty() ? query.columns[i].name : std::string(named[i].name.text);
        if (column.name.empty())
            raise(mustNameExpression);
        if (table.column(column.name))
            raise(duplicateColumn);
        column.number = ++table.lastColumnNumber;
        column.type = query.columns[i].type;
        if (column.type.type == SqlType::Varchar2 && query.columns[i].onlyNull)
            raise(zeroLengthColumn);
        column.defaultText = named.empty() ? std::string() : std::string(named[i].defaultText);
        table.columns.push_back(std::move(column));
        if (!query.columns[i].copiesNotNull)
            continue;
        ConstraintDef notNull{};
        notNull.kind = ConstraintKind::NotNull;
        Name name{};
        name.text = table.columns.back().name;
        addConstraint(context, table, notNull, &name);
    }
}

void addColumns(const DdlContext& context, TableDefinition& table, const CreateTable& statement) {
    for (const ColumnDef& definition : statement.columns) {
        requireNewName(table, definition.name);
        table.columns.push_back(newColumn(context, table, definition));
    }
}

// A foreign key column may take its type from its parent.
void takeParentType(const DdlContext& context, TableDefinition& table, const ColumnDef& definition,
                    const ConstraintDef& constraint) {
    if (definition.hasType || constraint.kind != ConstraintKind::ForeignKey)
        return;
    const TableDefinition parent = requireTable(context, constraint.references);
    const ConstraintDefinition* key = parent.primaryKey();
    if (!constraint.referencedColumns.empty())
        table.column(std::string(definition.name.text))->type =
            requireColumn(parent, constraint.referencedColumns.front()).type;
    else if (key)
        table.column(std::string(definition.name.text))->type =
            parent.columnNumbered(key->columns.front())->type;
}

// Keys and checks first: a foreign key may reference the table itself.
void addConstraints(const DdlContext& context, TableDefinition& table, const CreateTable& statement,
                    bool foreignKeys) {
    const auto wanted = [&](const ConstraintDef& constraint) {
        return constraint.kind != ConstraintKind::Null &&
               (constraint.kind == ConstraintKind::ForeignKey) == foreignKeys;
    };
    for (const ColumnDef& column : statement.columns) {
        for (const ConstraintDef& constraint : column.constraints) {
            if (!wanted(constraint))
                continue;
            takeParentType(context, table, column, constraint);
            addConstraint(context, table, constraint, &column.name);
        }
    }
    for (const ConstraintDef& constraint : statement.constraints) {
        if (wanted(constraint))
            addConstraint(context, table, constraint, nullptr);
    }
}

void fillFromQuery(const DdlContext& context, const TableDefinition& table,
                   const SchemaBinder::DescribedQuery& query) {
    std::string columns;
    for (const ColumnDefinition& column : table.columns)
        columns += (columns.empty() ? "" : ", ") + column.sqlName();
    context.db.run("INSERT INTO " + table.sqlName() + " (" + columns + ") " + query.sql);
}

void requireNoParents(const DdlContext& context, const TableDefinition& table, int code) {
    for (const ConstraintDefinition& key : table.constraints) {
        for (const auto& place : context.store().referencing(key.id)) {
            if (place.table != table.id)
                failDdl(code);
        }
    }
}

void removeOwned(const DdlContext& context, const TableDefinition& table) {
    for (const TriggerDefinition& trigger : context.store().triggersOf(table.id)) {
        dropStoredTriggers(context, trigger);
        context.store().removeObject(trigger.id);
    }
    for (const IndexDefinition& index : context.store().indexesOf(table.id))
        dropIndexObject(context, index.id);
    SqliteStatement sequences =
        context.db.prepare("SELECT id FROM ora_sequences WHERE identity_of = ?1");
    sequences.bind(1, table.id);
    std::vector<ObjectId> owned;
    while (sequences.step())
        owned.push_back(sequences.integer(0));
    for (const ObjectId id : owned)
        context.store().removeObject(id);
}

} // namespace

void createTable(const DdlContext& context, const CreateTable& statement) {
    TableDefinition table;
    table.name = ownName(context, statement.name);
    requireFree(context, NameSpace::Relation, table.name);
    if (statement.temporary)
        table.rows = statement.preserveRows ? TableDefinition::Rows::OfSession
                                            : TableDefinition::Rows::OfTransaction;
    SchemaBinder::DescribedQuery query;
    if (statement.query) {
        query = context.binder.describe(*statement.query, true);
        addQueryColumns(context, table, statement, query);
    } else {
        addColumns(context, table, statement);
    }
    addConstraints(context, table, statement, false);
    table.id = context.store().addObject(NameSpace::Relation, table.name, "TABLE");
    for (size_t i = 0; i < statement.columns.size(); ++i)
        addIdentity(context, table, table.columns[i], statement.columns[i]);
    context.store().saveTable(table); // keys get the ids that foreign keys name
    addConstraints(context, table, statement, true);
    context.store().saveTable(table);
    context.db.run(createTableSql(table, context.store()));
    if (statement.query)
        fillFromQuery(context, table, query);
    for (ConstraintDefinition& constraint : table.constraints)
        addKeyIndex(context, table, constraint);
    context.store().saveTable(table);
}

void dropTable(const DdlContext& context, const Drop& statement) {
    const TableDefinition table = requireTable(context, statement.name);
    if (!statement.cascadeConstraints)
        requireNoParents(context, table, DdlError::TableIsReferenced);
    for (const ConstraintDefinition& key : table.constraints) {
        if (key.kind != ConstraintDefinition::Kind::ForeignKey)
            detachDependents(context, key.id, Dependents::Drop);
    }
    removeOwned(context, table);
    context.db.run("DROP TABLE IF EXISTS " + table.sqlName());
    context.store().removeObject(table.id);
}

void truncateTable(const DdlContext& context, const Truncate& statement) {
    const TableDefinition table = requireTable(context, statement.table);
    if (table.readOnly)
        failReadOnly(context.catalog.user(), table.name);
    for (const ConstraintDefinition& key : table.constraints) {
        for (const auto& place : context.store().referencing(key.id)) {
            if (place.table == table.id)
                continue;
            for (const ConstraintDefinition& child :
                 context.store().table(place.table).constraints) {
                if (child.id == place.id && child.enabled)
                    failDdl(DdlError::TruncateOfParent);
            }
        }
    }
    // Delete triggers do not fire: they are taken away and put back as they were.
    SqliteStatement stored = context.db.prepare(
        "SELECT sql FROM main.sqlite_schema WHERE type = 'trigger' AND tbl_name = ?1");
    stored.bind(1, table.sqlName());
    std::vector<std::string> texts;
    while (stored.step())
        texts.push_back(stored.text(0));
    for (const TriggerDefinition& trigger : context.store().triggersOf(table.id))
        dropStoredTriggers(context, trigger);
    context.db.run("DELETE FROM " + table.sqlName());
    for (const std::string& text : texts)
        context.db.run(text);
}

} // namespace ora
