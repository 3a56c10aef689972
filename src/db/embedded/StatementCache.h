#pragma once

#include "SqliteDatabase.h"
#include "TypedCursor.h"

#include <list>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace ora {

// A compiled query, with statements of the engine that are ready to run it again.
struct CachedQuery {
    std::string sql; // the engine's
    std::vector<ResultColumn> columns;
    mutable std::vector<SqliteStatement> idle;
};

// The queries that ran last, by their text. Emptied when the schema changes.
class StatementCache {
public:
    std::shared_ptr<const CachedQuery> find(const std::string& text);
    std::shared_ptr<const CachedQuery> add(const std::string& text, CachedQuery query);
    void clear();

private:
    static constexpr size_t mostQueries = 64;
    static constexpr size_t longestText = 4096; // longer ones hardly come twice

    using Entry = std::pair<std::string, std::shared_ptr<const CachedQuery>>;
    std::list<Entry> m_recent; // the last one first
    std::unordered_map<std::string, std::list<Entry>::iterator> m_places;
};

} // namespace ora
