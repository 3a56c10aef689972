#pragma once

#include "Catalog.h"
#include "CatalogStore.h"

#include <map>

namespace ora {

struct FunctionContext;

// The catalog of an open database file, and the dictionary beside it. What was looked up is kept
// until the catalog changes, here or in another program.
class DatabaseCatalog : public Catalog {
public:
    // Neither is owned. user: who is logged on, in upper case.
    DatabaseCatalog(const SqliteDatabase& db, const FunctionContext& session, std::string user);

    const std::string& user() const override { return m_user; }
    RelationPtr relation(std::string_view owner, std::string_view name) const override;
    std::optional<SequenceRef> sequence(std::string_view owner,
                                        std::string_view name) const override;
    std::string sort() const override;
    bool comparesBySort() const override;
    std::optional<double> constant(const std::string& sql) const override;

    // Whether a text column that is declared without a unit is as long in characters.
    bool countsCharacters() const;

    const CatalogStore& store() const { return m_store; }

    // True for no owner, and the user's own name.
    bool isOwn(std::string_view owner) const { return owner.empty() || owner == m_user; }

    // Forgets what was looked up; after DDL of this session.
    void forget();
    // The same when another program changed the catalog; to be called before each statement. True
    // when it did.
    bool forgetIfChanged();

    // The synonym of that name: the user's own, else a public one.
    std::optional<CatalogStore::Object> synonym(std::string_view owner,
                                                std::string_view name) const;

    // The table, view or the like of the user's own, synonyms not followed.
    std::optional<CatalogStore::Object> ownObject(std::string_view name) const;

private:
    struct Name {
        std::string owner;
        std::string name;
    };
    std::optional<Name> throughSynonyms(std::string_view owner, std::string_view name) const;
    RelationPtr load(const CatalogStore::Object& object) const;
    RelationPtr loadTable(ObjectId id) const;
    RelationPtr loadView(ObjectId id) const;

    const SqliteDatabase& m_db;
    const FunctionContext& m_session;
    CatalogStore m_store;
    SqliteStatement m_dataVersion;
    std::string m_user;
    std::int64_t m_seenDataVersion = 0;
    std::int64_t m_seenChanges = 0;
    mutable std::map<std::string, RelationPtr, std::less<>> m_relations; // own ones, by name
};

} // namespace ora
