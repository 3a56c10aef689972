#include "DdlParts.h"
#include "ErrorText.h"
#include "Parser.h"
#include "TableSql.h"

#include <algorithm>

// Views, indexes, synonyms, comments, and what renames and drops them.

namespace ora {

namespace {

constexpr int missingTable = 942;
constexpr int mustNameExpression = 998;
constexpr int duplicateColumn = 957;
constexpr int wrongNumberOfNames = 1730;

CatalogStore::Object requireObject(const DdlContext& context, const ObjectName& name,
                                   NameSpace space, std::string_view kind, int code) {
    const auto object = context.catalog.isOwn(name.schema.text)
                            ? context.store().find(space, name.name.text)
                            : std::nullopt;
    if (!object || object->kind != kind)
        code == missingTable ? raise(code) : failDdl(code);
    return *object;
}

// --- views -------------------------------------------------------------------------------------

void addViewColumns(ViewDefinition& view, const CreateView& statement,
                    const SchemaBinder::DescribedQuery& query) {
    if (!statement.columns.empty() && statement.columns.size() != query.columns.size())
        raise(wrongNumberOfNames);
    for (size_t i = 0; i < query.columns.size(); ++i) {
        ColumnDefinition column;
        column.name = statement.columns.empty() ? query.columns[i].name
                                                : std::string(statement.columns[i].text);
        if (column.name.empty())
            raise(mustNameExpression);
        const bool taken =
            std::any_of(view.columns.begin(), view.columns.end(),
                        [&](const auto& other) { return other.name == column.name; });
        if (taken)
            raise(duplicateColumn);
        column.number = int(i) + 1;
        column.type = query.columns[i].type;
        column.nullable = query.columns[i].nullable;
        view.columns.push_back(std::move(column));
    }
}

// The query as written, but with the columns that its stars stand for: later columns of a table
// are none of the view's.
std::string withoutStars(std::string_view source, const Extent& query,
                         const SchemaBinder::DescribedQuery& described) {
    std::string text;
    size_t copied = query.begin;
    for (const auto& star : described.stars) {
        text += source.substr(copied, star.at.begin - copied);
        const std::string_view qualifier =
            source.substr(star.at.begin, star.at.end - star.at.begin - 1);
        for (const std::string& column : star.columns)
            text.append(&column == &star.columns.front() ? "" : ",").append(qualifier) += column;
        copied = star.at.end;
    }
    return text.append(source.substr(copied, query.end - copied));
}

void addViewConstraint(const DdlContext& context, ViewDefinition& view,
                       const CreateView& statement) {
    constexpr int constraintNameInUse = 2264;
    if (!view.readOnly && !view.checkOption)
        return;
    const std::string name(statement.constraint.text);
    if (!name.empty()) {
        const auto known = context.store().findConstraint(name);
        const auto replaced = context.store().find(NameSpace::Relation, view.name);
        if (known && !(replaced && known->table == replaced->id))
            raise(constraintNameInUse);
    }
    view.constraint.kind = view.readOnly ? ConstraintDefinition::Kind::ViewReadOnly
                                         : ConstraintDefinition::Kind::ViewCheck;
    view.constraint.generatedName = name.empty();
    view.constraint.name = name.empty() ? context.store().nextSystemName() : name;
}

void removeTriggers(const DdlContext& context, ObjectId view) {
    for (const TriggerDefinition& trigger : context.store().triggersOf(view))
        context.store().removeObject(trigger.id);
}

} // namespace

void createView(const DdlContext& context, const CreateView& statement, std::string_view source) {
    ViewDefinition view;
    view.name = ownName(context, statement.name);
    view.readOnly = statement.readOnly;
    view.checkOption = statement.checkOption;
    addViewConstraint(context, view, statement);
    try {
        const auto query = context.binder.describe(*statement.query, false);
        addViewColumns(view, statement, query);
        view.text = withoutStars(source, statement.queryAt, query);
    } catch (const OraError&) {
        if (!statement.force) // CREATE FORCE VIEW may come before its tables
            throw;
        view.text =
            source.substr(statement.queryAt.begin, statement.queryAt.end - statement.queryAt.begin);
    }
    view.id = objectFor(context, NameSpace::Relation, view.name, "VIEW", statement.replace);
    removeTriggers(context, view.id); // a new view has none
    context.store().saveView(view);
}

// --- indexes -----------------------------------------------------------------------------------

namespace {

constexpr int lobIndex = 2327;

// A plain column of the table, or nothing for an expression.
const ColumnDefinition* plainColumn(const TableDefinition& table, const Expr& expr) {
    if (expr.kind != ExprKind::Column)
        return nullptr;
    const ColumnDefinition* column =
        table.column(std::string(static_cast<const ColumnRef&>(expr).parts.back().text));
    if (column)
        requireKeyType(*column, lobIndex);
    return column;
}

IndexKey indexKey(const DdlContext& context, const TableDefinition& table,
                  const IndexColumn& written) {
    IndexKey key;
    key.descending = written.descending;
    const ColumnDefinition* column = plainColumn(table, *written.expr);
    if (column && column->virtualText.empty()) {
        key.column = column->number;
        return key;
    }
    constexpr int impureIndex = 1743;
    const auto value =
        context.binder.valueSql(*written.expr, relationOf(context, table), impureIndex);
    ColumnDefinition whole;
    whole.type = value.type;
    requireKeyType(whole, lobIndex);
    key.expressionText = canonicalText(written.text, table);
    key.expressionSql = value.sql;
    return key;
}

void requireNoView(const DdlContext& context, const ObjectName& name) {
    constexpr int viewNotAppropriate = 1702;
    const auto object = context.catalog.isOwn(name.schema.text)
                            ? context.catalog.ownObject(name.name.text)
                            : std::nullopt;
    if (object && object->kind == "VIEW")
        raise(viewNotAppropriate);
}

// The last column of the index stands in it once.
void requireNewKey(const IndexDefinition& index) {
    for (size_t i = 0; i + 1 < index.keys.size(); ++i) {
        if (index.keys[i].column != 0 && index.keys[i].column == index.keys.back().column)
            raise(duplicateColumn);
    }
}

void requireNewColumnList(const DdlContext& context, const IndexDefinition& index) {
    constexpr int columnsIndexed = 1408;
    const auto same = [](const IndexKey& a, const IndexKey& b) {
        return a.column == b.column && a.expressionSql == b.expressionSql &&
               a.descending == b.descending;
    };
    for (const IndexDefinition& other : context.store().indexesOf(index.table)) {
        if (std::equal(other.keys.begin(), other.keys.end(), index.keys.begin(), index.keys.end(),
                       same))
            raise(columnsIndexed);
    }
}

} // namespace

void createIndex(const DdlContext& context, const CreateIndex& statement) {
    requireNoView(context, statement.table);
    const TableDefinition table = requireTable(context, statement.table);
    IndexDefinition index;
    index.name = ownName(context, statement.name);
    index.table = table.id;
    index.unique = statement.unique;
    index.bitmap = statement.bitmap;
    requireFree(context, NameSpace::Index, index.name);
    for (const IndexColumn& written : statement.columns) {
        index.keys.push_back(indexKey(context, table, written));
        requireNewKey(index);
    }
    requireNewColumnList(context, index);
    index.id = context.store().addObject(NameSpace::Index, index.name, "INDEX");
    context.store().saveIndex(index);
    createStoredIndex(context, table, index, DdlError::DuplicateKeys, {});
}

void alterIndex(const DdlContext& context, const AlterIndex& statement) {
    const auto object =
        requireObject(context, statement.name, NameSpace::Index, "INDEX", DdlError::NoSuchIndex);
    if (!statement.newName)
        return;
    requireFree(context, NameSpace::Index, std::string(statement.newName.text));
    context.store().renameObject(object.id, statement.newName.text);
}

namespace {

void dropIndex(const DdlContext& context, const Drop& statement) {
    const auto object =
        requireObject(context, statement.name, NameSpace::Index, "INDEX", DdlError::NoSuchIndex);
    const IndexDefinition index = context.store().index(object.id);
    for (const ConstraintDefinition& key : context.store().table(index.table).constraints) {
        if (key.index == index.id)
            failDdl(DdlError::IndexEnforcesKey);
    }
    dropIndexObject(context, index.id);
}

} // namespace

// --- synonyms ----------------------------------------------------------------------------------

constexpr const char* publicSynonym = "PUBLIC SYNONYM";

void createSynonym(const DdlContext& context, const CreateSynonym& statement) {
    constexpr int nameOfItsTarget = 1471;
    SynonymDefinition synonym;
    synonym.name = statement.isPublic ? std::string(statement.name.name.text)
                                      : ownName(context, statement.name);
    synonym.targetOwner = statement.target.schema.text;
    synonym.targetName = statement.target.name.text;
    const bool own = context.catalog.isOwn(synonym.targetOwner);
    if (!statement.isPublic && own && synonym.targetName == synonym.name)
        throw OraError(nameOfItsTarget, "cannot create a synonym with same name as object");
    if (synonym.targetOwner.empty())
        synonym.targetOwner = context.catalog.user();
    const ObjectId id =
        statement.isPublic
            ? objectFor(context, NameSpace::PublicSynonym, synonym.name, publicSynonym,
                        statement.replace)
            : objectFor(context, NameSpace::Relation, synonym.name, "SYNONYM", statement.replace);
    context.store().saveSynonym(id, synonym);
}

namespace {

// --- drop, rename, comment, accepted -----------------------------------------------------------

constexpr int noSuchSequence = 2289;

struct DropRule {
    ObjectKind kind;
    const char* stored;
    int missing;
};
constexpr DropRule plainDrops[] = {
    {ObjectKind::View, "VIEW", missingTable},
    {ObjectKind::Sequence, "SEQUENCE", noSuchSequence},
    {ObjectKind::Synonym, "SYNONYM", DdlError::NoSuchSynonym},
};

void dropPlain(const DdlContext& context, const Drop& statement, const DropRule& rule) {
    const auto object = context.catalog.isOwn(statement.name.schema.text)
                            ? context.catalog.ownObject(statement.name.name.text)
                            : std::nullopt;
    if (!object || object->kind != rule.stored)
        rule.missing == DdlError::NoSuchSynonym ? failDdl(rule.missing) : raise(rule.missing);
    context.sequences.forget(object->name);
    removeTriggers(context, object->id);
    context.store().removeObject(object->id);
}

void dropPublicSynonym(const DdlContext& context, const Drop& statement) {
    constexpr int noSuchPublicSynonym = 1432;
    const auto object = context.store().find(NameSpace::PublicSynonym, statement.name.name.text);
    if (!object)
        throw OraError(noSuchPublicSynonym, "public synonym to be dropped does not exist");
    context.store().removeObject(object->id);
}

} // namespace

void dropObject(const DdlContext& context, const Drop& statement) {
    if (statement.isPublic && statement.object == ObjectKind::Synonym)
        return dropPublicSynonym(context, statement);
    for (const DropRule& rule : plainDrops) {
        if (rule.kind == statement.object)
            return dropPlain(context, statement, rule);
    }
    switch (statement.object) {
    case ObjectKind::Table: return dropTable(context, statement);
    case ObjectKind::Index: return dropIndex(context, statement);
    case ObjectKind::Trigger: return dropTrigger(context, statement);
    default: failDdl(DdlError::NoSuchObject, std::string(statement.name.name.text));
    }
}

void renameObject(const DdlContext& context, const Rename& statement) {
    const auto object = context.catalog.ownObject(statement.from.text);
    if (!object)
        failDdl(DdlError::NoSuchObject, std::string(statement.from.text));
    requireFree(context, NameSpace::Relation, std::string(statement.to.text));
    context.store().renameObject(object->id, statement.to.text);
    context.store().touchObject(object->id);
    context.sequences.forget(object->name);
}

void commentOn(const DdlContext& context, const Comment& statement) {
    const auto object = context.catalog.isOwn(statement.object.schema.text)
                            ? context.catalog.ownObject(statement.object.name.text)
                            : std::nullopt;
    if (!object || (object->kind != "TABLE" && object->kind != "VIEW"))
        raise(missingTable);
    if (!statement.column) {
        context.store().setComment(object->id, statement.text);
        return;
    }
    SqliteStatement update = context.db.prepare(
        "UPDATE ora_columns SET comment = nullif(?3, '') WHERE object = ?1 AND name = ?2");
    update.bind(1, object->id).bind(2, statement.column.text).bind(3, statement.text).step();
    constexpr int invalidIdentifier = 904;
    if (sqlite3_changes(context.db.get()) == 0)
        raiseNamed(invalidIdentifier, "\"" + std::string(statement.column.text) + "\"");
}

namespace {

// Counts the table's rows and lets the engine measure its indexes.
void analyze(const DdlContext& context, const TableDefinition& table) {
    context.db.run("ANALYZE " + table.sqlName());
    SqliteStatement count =
        context.db.prepare("UPDATE ora_tables SET num_rows = (SELECT count(*) FROM " +
                           table.sqlName() + "), analyzed = ?2 WHERE id = ?1");
    count.bind(1, table.id).bindBlob(2, CatalogStore::now()).step();
}

} // namespace

// GRANT and the like change nothing here, but what they name must exist.
void accept(const DdlContext& context, const Accepted& statement) {
    if (!statement.object.name)
        return;
    const bool own = context.catalog.isOwn(statement.object.schema.text);
    const auto object = own ? context.catalog.ownObject(statement.object.name.text) : std::nullopt;
    const bool index =
        own && statement.objectKind == ObjectKind::Index &&
        context.store().find(NameSpace::Index, statement.object.name.text).has_value();
    if (!object && !index &&
        !context.catalog.relation(statement.object.schema.text, statement.object.name.text))
        raise(missingTable);
    if (statement.verb == "ANALYZE" && object && object->kind == "TABLE")
        analyze(context, context.store().table(object->id));
}

} // namespace ora
