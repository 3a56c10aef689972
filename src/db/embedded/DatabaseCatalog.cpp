#include "DatabaseCatalog.h"

#include "Dictionary.h"
#include "Functions.h"
#include "OraError.h"
#include "Parser.h"

namespace ora {

namespace {

constexpr int mostSynonyms = 32; // a longer chain is a loop
constexpr int synonymLoop = 1775;
constexpr int synonymInvalid = 980;

CatalogColumn catalogColumn(const ColumnDefinition& column) {
    CatalogColumn entry;
    entry.name = column.name;
    entry.type = column.type;
    entry.nullable = column.nullable;
    entry.sqlName = column.sqlName();
    entry.defaultText = column.defaultText;
    entry.defaultOnNull = column.defaultOnNull;
    entry.identityAlways = column.identity == ColumnDefinition::Identity::Always;
    entry.virtualText = column.virtualText;
    entry.invisible = column.invisible;
    return entry;
}

void addColumns(Relation& relation, const std::vector<ColumnDefinition>& columns) {
    relation.columns.reserve(columns.size());
    for (const ColumnDefinition& column : columns)
        relation.columns.push_back(catalogColumn(column));
}

int placeOf(const TableDefinition& table, int number) {
    int place = 0;
    while (table.columns[size_t(place)].number != number)
        ++place;
    return place;
}

void addConstraints(Relation& relation, const TableDefinition& table) {
    using Kind = ConstraintDefinition::Kind;
    for (const ConstraintDefinition& constraint : table.constraints) {
        if (!constraint.enabled)
            continue;
        if (constraint.notNull)
            relation.columns[size_t(placeOf(table, constraint.columns.front()))].copiesNotNull =
                true;
        const bool isKey = constraint.kind == Kind::PrimaryKey || constraint.kind == Kind::Unique;
        if (!isKey || constraint.deferrable)
            continue;
        std::vector<int>& key = relation.keys.emplace_back();
        for (const int number : constraint.columns)
            key.push_back(placeOf(table, number));
    }
}

// Others are stored as triggers of the engine.
void addTriggers(Relation& relation, const std::vector<TriggerDefinition>& triggers) {
    for (const TriggerDefinition& definition : triggers) {
        if (!definition.enabled)
            continue;
        const std::shared_ptr<const Tree> tree = parseStatement(definition.text);
        const auto* trigger = static_cast<const CreateTrigger*>(tree->statement);
        if (trigger->timing == TriggerTiming::InsteadOf)
            relation.insteadTriggers.push_back({tree, trigger});
        else if (!trigger->forEachRow)
            relation.statementTriggers.push_back({tree, trigger});
        else if (!trigger->assignments.empty())
            relation.beforeTriggers.push_back({tree, trigger});
    }
}

} // namespace

DatabaseCatalog::DatabaseCatalog(const SqliteDatabase& db, const FunctionContext& session,
                                 std::string user)
    : m_db(db)
    , m_session(session)
    , m_store(db)
    , m_dataVersion(db.prepare("PRAGMA data_version"))
    , m_user(std::move(user)) {
    forgetIfChanged();
}

std::optional<double> DatabaseCatalog::constant(const std::string& sql) const {
    SqliteStatement statement = m_db.prepare("SELECT " + sql);
    if (!statement.step() || statement.isNull(0))
        return std::nullopt;
    return sqlite3_column_double(statement.get(), 0);
}

std::string DatabaseCatalog::sort() const {
    return m_session.sort;
}

bool DatabaseCatalog::comparesBySort() const {
    return m_session.comparison == "LINGUISTIC";
}

bool DatabaseCatalog::countsCharacters() const {
    return m_session.lengthSemantics == "CHAR";
}

void DatabaseCatalog::forget() {
    m_relations.clear();
    m_seenChanges = m_store.changes();
}

bool DatabaseCatalog::forgetIfChanged() {
    m_dataVersion.step();
    const std::int64_t version = m_dataVersion.integer(0);
    m_dataVersion.reset();
    if (version == m_seenDataVersion)
        return false;
    m_seenDataVersion = version;
    const bool changed = m_store.changes() != m_seenChanges;
    if (changed)
        forget();
    return changed;
}

std::optional<CatalogStore::Object> DatabaseCatalog::ownObject(std::string_view name) const {
    return m_store.find(NameSpace::Relation, name);
}

std::optional<CatalogStore::Object> DatabaseCatalog::synonym(std::string_view owner,
                                                             std::string_view name) const {
    if (isOwn(owner)) {
        if (const auto object = ownObject(name))
            return object->kind == "SYNONYM" ? object : std::nullopt;
    }
    const bool mayBePublic = owner.empty() || owner == "PUBLIC";
    return mayBePublic ? m_store.find(NameSpace::PublicSynonym, name) : std::nullopt;
}

// The name that a chain of synonyms ends at; itself when it is none.
std::optional<DatabaseCatalog::Name> DatabaseCatalog::throughSynonyms(std::string_view owner,
                                                                      std::string_view name) const {
    Name target{std::string(owner), std::string(name)};
    for (int followed = 0; followed < mostSynonyms; ++followed) {
        const auto found = synonym(target.owner, target.name);
        if (!found)
            return target;
        const SynonymDefinition definition = m_store.synonym(found->id);
        target = {definition.targetOwner, definition.targetName};
    }
    throw OraError(synonymLoop, "looping chain of synonyms");
}

RelationPtr DatabaseCatalog::relation(std::string_view owner, std::string_view name) const {
    if (isOwn(owner)) {
        if (const auto known = m_relations.find(name); known != m_relations.end())
            return known->second;
    }
    const auto target = throughSynonyms(owner, name);
    if (isOwn(target->owner)) {
        if (const auto object = ownObject(target->name)) {
            if (RelationPtr relation = load(*object)) {
                if (isOwn(owner))
                    m_relations.emplace(name, relation);
                return relation;
            }
        }
    }
    const bool dictionary =
        target->owner.empty() || target->owner == "SYS" || target->owner == "PUBLIC";
    RelationPtr found = dictionary ? dictionaryRelation(target->name) : nullptr;
    if (!found && target->owner != owner && target->name == name)
        throw OraError(synonymLoop, "looping chain of synonyms"); // a public one of its own name
    if (!found && (target->owner != owner || target->name != name))
        throw OraError(synonymInvalid, "synonym translation is no longer valid");
    return found;
}

std::optional<SequenceRef> DatabaseCatalog::sequence(std::string_view owner,
                                                     std::string_view name) const {
    const auto target = throughSynonyms(owner, name);
    if (!isOwn(target->owner))
        return std::nullopt;
    const auto object = ownObject(target->name);
    if (!object || object->kind != "SEQUENCE")
        return std::nullopt;
    return SequenceRef{m_user, object->name, m_user + "." + object->name};
}

RelationPtr DatabaseCatalog::load(const CatalogStore::Object& object) const {
    if (object.kind == "TABLE")
        return loadTable(object.id);
    if (object.kind == "VIEW")
        return loadView(object.id);
    return nullptr;
}

RelationPtr DatabaseCatalog::loadTable(ObjectId id) const {
    const TableDefinition table = m_store.table(id);
    auto relation = std::make_shared<Relation>();
    relation->owner = m_user;
    relation->name = table.name;
    relation->source = table.sqlName();
    relation->readOnly = table.readOnly;
    addColumns(*relation, table.columns);
    addConstraints(*relation, table);
    addTriggers(*relation, m_store.triggersOf(id));
    return relation;
}

RelationPtr DatabaseCatalog::loadView(ObjectId id) const {
    const ViewDefinition view = m_store.view(id);
    auto relation = std::make_shared<Relation>();
    relation->kind = Relation::Kind::View;
    relation->owner = m_user;
    relation->name = view.name;
    relation->viewText = view.text;
    relation->readOnly = view.readOnly;
    relation->checkOption = view.checkOption;
    addColumns(*relation, view.columns);
    addTriggers(*relation, m_store.triggersOf(id));
    return relation;
}

} // namespace ora
