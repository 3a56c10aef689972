#include "CatalogStore.h"

#include "LocalTime.h"

#include <algorithm>

namespace ora {

namespace {

using Place = CatalogStore::ConstraintPlace;

CatalogStore::Object objectOf(const SqliteStatement& row) {
    return {row.integer(0), row.text(1), row.text(2)};
}

} // namespace

std::string CatalogStore::now() {
    return localNow().withoutFraction().encoded();
}

void CatalogStore::runWith(std::string_view sql, ObjectId id) const {
    m_db.prepare(sql).bind(1, id).step();
}

std::vector<ObjectId> CatalogStore::ids(std::string_view query, ObjectId id) const {
    SqliteStatement rows = m_db.prepare(query);
    rows.bind(1, id);
    std::vector<ObjectId> found;
    while (rows.step())
        found.push_back(rows.integer(0));
    return found;
}

// --- objects -----------------------------------------------------------------------------------

std::optional<CatalogStore::Object> CatalogStore::find(NameSpace space,
                                                       std::string_view name) const {
    SqliteStatement row =
        m_db.prepare("SELECT id, name, kind FROM ora_objects WHERE space = ?1 AND name = ?2");
    if (!row.bind(1, sqlite3_int64(space)).bind(2, name).step())
        return std::nullopt;
    return objectOf(row);
}

std::optional<CatalogStore::Object> CatalogStore::object(ObjectId id) const {
    SqliteStatement row = m_db.prepare("SELECT id, name, kind FROM ora_objects WHERE id = ?1");
    if (!row.bind(1, id).step())
        return std::nullopt;
    return objectOf(row);
}

std::vector<CatalogStore::Object> CatalogStore::objects(std::string_view kind) const {
    SqliteStatement row =
        m_db.prepare("SELECT id, name, kind FROM ora_objects WHERE kind = ?1 ORDER BY name");
    row.bind(1, kind);
    std::vector<Object> found;
    while (row.step())
        found.push_back(objectOf(row));
    return found;
}

ObjectId CatalogStore::addObject(NameSpace space, std::string_view name, std::string_view kind,
                                 bool generatedName) const {
    SqliteStatement insert =
        m_db.prepare("INSERT INTO ora_objects (space, name, kind, generated, created, changed)"
                     " VALUES (?1, ?2, ?3, ?4, ?5, ?5)");
    insert.bind(1, sqlite3_int64(space)).bind(2, name).bind(3, kind);
    insert.bind(4, sqlite3_int64(generatedName)).bindBlob(5, now()).step();
    return sqlite3_last_insert_rowid(m_db.get());
}

void CatalogStore::renameObject(ObjectId id, std::string_view name) const {
    m_db.prepare("UPDATE ora_objects SET name = ?2 WHERE id = ?1").bind(1, id).bind(2, name).step();
}

void CatalogStore::touchObject(ObjectId id) const {
    SqliteStatement update = m_db.prepare("UPDATE ora_objects SET changed = ?2 WHERE id = ?1");
    update.bind(1, id).bindBlob(2, now()).step();
}

void CatalogStore::setComment(ObjectId id, std::string_view comment) const {
    SqliteStatement update = m_db.prepare("UPDATE ora_objects SET comment = ?2 WHERE id = ?1");
    update.bind(1, id);
    comment.empty() ? update.bindNull(2).step() : update.bind(2, comment).step();
}

void CatalogStore::removeObject(ObjectId id) const {
    deleteConstraints(id);
    constexpr const char* statements[] = {
        "DELETE FROM ora_columns WHERE object = ?1",
        "DELETE FROM ora_index_columns WHERE index_id = ?1",
        "DELETE FROM ora_tables WHERE id = ?1",
        "DELETE FROM ora_views WHERE id = ?1",
        "DELETE FROM ora_indexes WHERE id = ?1",
        "DELETE FROM ora_sequences WHERE id = ?1",
        "DELETE FROM ora_synonyms WHERE id = ?1",
        "DELETE FROM ora_triggers WHERE id = ?1",
        "DELETE FROM ora_grants WHERE object = ?1",
        "DELETE FROM ora_objects WHERE id = ?1",
    };
    for (const char* statement : statements)
        runWith(statement, id);
}

// --- indexes -----------------------------------------------------------------------------------

IndexDefinition CatalogStore::index(ObjectId id) const {
    IndexDefinition index;
    index.id = id;
    SqliteStatement row =
        m_db.prepare("SELECT o.name, o.generated, i.object, i.is_unique FROM ora_objects o"
                     " JOIN ora_indexes i USING (id) WHERE id = ?1");
    if (!row.bind(1, id).step())
        return index;
    index.name = row.text(0);
    index.generatedName = row.integer(1) != 0;
    index.table = row.integer(2);
    index.unique = row.integer(3) != 0;
    SqliteStatement keys =
        m_db.prepare("SELECT number, expression_text, expression_sql, descending"
                     " FROM ora_index_columns WHERE index_id = ?1 ORDER BY position");
    keys.bind(1, id);
    while (keys.step())
        index.keys.push_back(
            {int(keys.integer(0)), keys.text(1), keys.text(2), keys.integer(3) != 0});
    return index;
}

std::vector<IndexDefinition> CatalogStore::indexesOf(ObjectId table) const {
    std::vector<IndexDefinition> indexes;
    for (const ObjectId id : ids("SELECT id FROM ora_indexes WHERE object = ?1 ORDER BY id", table))
        indexes.push_back(index(id));
    return indexes;
}

void CatalogStore::saveIndex(const IndexDefinition& index) const {
    SqliteStatement insert =
        m_db.prepare("INSERT OR REPLACE INTO ora_indexes (id, object, is_unique, bitmap)"
                     " VALUES (?1, ?2, ?3, ?4)");
    insert.bind(1, index.id).bind(2, index.table).bind(3, sqlite3_int64(index.unique));
    insert.bind(4, sqlite3_int64(index.bitmap)).step();
    runWith("DELETE FROM ora_index_columns WHERE index_id = ?1", index.id);
    sqlite3_int64 position = 0;
    for (const IndexKey& key : index.keys) {
        SqliteStatement row =
            m_db.prepare("INSERT INTO ora_index_columns VALUES (?1, ?2, ?3, ?4, ?5, ?6)");
        row.bind(1, index.id).bind(2, ++position).bind(3, sqlite3_int64(key.column));
        row.bind(4, key.expressionText).bind(5, key.expressionSql);
        row.bind(6, sqlite3_int64(key.descending)).step();
    }
}

// --- synonyms, triggers ------------------------------------------------------------------------

SynonymDefinition CatalogStore::synonym(ObjectId id) const {
    SqliteStatement row = m_db.prepare("SELECT o.name, s.owner, s.target FROM ora_objects o"
                                       " JOIN ora_synonyms s USING (id) WHERE id = ?1");
    if (!row.bind(1, id).step())
        return {};
    return {row.text(0), row.text(1), row.text(2)};
}

void CatalogStore::saveSynonym(ObjectId id, const SynonymDefinition& synonym) const {
    SqliteStatement insert =
        m_db.prepare("INSERT OR REPLACE INTO ora_synonyms VALUES (?1, ?2, ?3)");
    insert.bind(1, id).bind(2, synonym.targetOwner).bind(3, synonym.targetName).step();
}

TriggerDefinition CatalogStore::trigger(ObjectId id) const {
    TriggerDefinition trigger;
    SqliteStatement row = m_db.prepare(
        "SELECT o.name, t.object, t.text, t.timing, t.events, t.when_text, t.body, t.description,"
        " t.enabled FROM ora_objects o JOIN ora_triggers t USING (id) WHERE id = ?1");
    if (!row.bind(1, id).step())
        return trigger;
    trigger.id = id;
    trigger.name = row.text(0);
    trigger.table = row.integer(1);
    trigger.text = row.text(2);
    trigger.timing = row.text(3);
    trigger.events = row.text(4);
    trigger.when = row.text(5);
    trigger.body = row.text(6);
    trigger.description = row.text(7);
    trigger.enabled = row.integer(8) != 0;
    return trigger;
}

std::vector<TriggerDefinition> CatalogStore::triggersOf(ObjectId relation) const {
    std::vector<TriggerDefinition> triggers;
    for (const ObjectId id :
         ids("SELECT id FROM ora_triggers WHERE object = ?1 ORDER BY id", relation))
        triggers.push_back(trigger(id));
    return triggers;
}

void CatalogStore::saveTrigger(const TriggerDefinition& trigger) const {
    SqliteStatement insert = m_db.prepare(
        "INSERT OR REPLACE INTO ora_triggers VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)");
    insert.bind(1, trigger.id).bind(2, trigger.table).bind(3, trigger.text);
    insert.bind(4, trigger.timing).bind(5, trigger.events).bind(6, trigger.when);
    insert.bind(7, trigger.body).bind(8, trigger.description);
    insert.bind(9, sqlite3_int64(trigger.enabled)).step();
}

// --- state -------------------------------------------------------------------------------------

std::string CatalogStore::nextSystemName() const {
    SqliteStatement next = m_db.prepare(
        "UPDATE ora_state SET next_constraint = next_constraint + 1 RETURNING next_constraint");
    next.step();
    constexpr size_t digits = 7;
    std::string number = std::to_string(next.integer(0));
    next.step(); // the update takes effect at its end
    return "SYS_C" + std::string(digits - std::min(digits, number.size()), '0') + number;
}

std::int64_t CatalogStore::changes() const {
    SqliteStatement row = m_db.prepare("SELECT changes FROM ora_state");
    row.step();
    return row.integer(0);
}

void CatalogStore::countChange() const {
    m_db.run("UPDATE ora_state SET changes = changes + 1");
}

} // namespace ora
