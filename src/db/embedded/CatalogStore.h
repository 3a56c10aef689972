#pragma once

#include "Definitions.h"
#include "SqliteDatabase.h"

#include <optional>
#include <string>
#include <string_view>

namespace ora {

// The catalog's tables as definitions: reading, and writing them whole. Knows no rules. Everything
// throws SqliteFailure. Names are as the dictionary has them.
class CatalogStore {
public:
    // db is not owned.
    explicit CatalogStore(const SqliteDatabase& db)
        : m_db(db) {}

    struct Object {
        ObjectId id = 0;
        std::string name;
        std::string kind; // TABLE, VIEW, SEQUENCE, SYNONYM, INDEX, TRIGGER
    };
    std::optional<Object> find(NameSpace space, std::string_view name) const;
    std::optional<Object> object(ObjectId id) const;
    std::vector<Object> objects(std::string_view kind) const;

    // A new object without anything that belongs to its kind. The name must be free.
    ObjectId addObject(NameSpace space, std::string_view name, std::string_view kind,
                       bool generatedName = false) const;
    void renameObject(ObjectId id, std::string_view name) const;
    void touchObject(ObjectId id) const;  // LAST_DDL_TIME
    void removeObject(ObjectId id) const; // with everything of its kind, not what depends on it
    void setComment(ObjectId id, std::string_view comment) const;

    TableDefinition table(ObjectId id) const;
    // Replaces columns and constraints; those without an id get one.
    void saveTable(TableDefinition& table) const;
    std::vector<ObjectId> temporaryTables() const;

    ViewDefinition view(ObjectId id) const;
    void saveView(const ViewDefinition& view) const;

    IndexDefinition index(ObjectId id) const;
    std::vector<IndexDefinition> indexesOf(ObjectId table) const;
    void saveIndex(const IndexDefinition& index) const;

    SynonymDefinition synonym(ObjectId id) const;
    void saveSynonym(ObjectId id, const SynonymDefinition& synonym) const;

    TriggerDefinition trigger(ObjectId id) const;
    std::vector<TriggerDefinition> triggersOf(ObjectId relation) const;
    void saveTrigger(const TriggerDefinition& trigger) const;

    // The constraint's owner; nothing when there is none of that name.
    struct ConstraintPlace {
        ObjectId id = 0;
        ObjectId table = 0;
    };
    std::optional<ConstraintPlace> findConstraint(std::string_view name) const;
    std::optional<ConstraintPlace> constraintPlace(ObjectId id) const;
    // Foreign keys that reference the key.
    std::vector<ConstraintPlace> referencing(ObjectId key) const;

    // "SYS_C0010001"
    std::string nextSystemName() const;

    // Counts changes of the catalog by anybody.
    std::int64_t changes() const;
    void countChange() const;

    // The stored DATE of now.
    static std::string now();

private:
    std::vector<ColumnDefinition> columns(ObjectId object) const;
    void saveColumns(ObjectId object, const std::vector<ColumnDefinition>& columns) const;
    std::vector<ConstraintDefinition> constraints(ObjectId table) const;
    std::vector<int> constraintColumns(ObjectId constraint) const;
    void saveConstraint(ObjectId table, ConstraintDefinition& constraint) const;
    void deleteConstraints(ObjectId table) const;
    std::vector<ObjectId> ids(std::string_view query, ObjectId id) const;
    void runWith(std::string_view sql, ObjectId id) const;

    const SqliteDatabase& m_db;
};

// Bytes of a stored column as the dictionary's DATA_LENGTH shows them.
int dataLength(const TypeInfo& type);

} // namespace ora
