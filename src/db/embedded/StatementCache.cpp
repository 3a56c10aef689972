#include "StatementCache.h"

namespace ora {

std::shared_ptr<const CachedQuery> StatementCache::find(const std::string& text) {
    const auto place = m_places.find(text);
    if (place == m_places.end())
        return nullptr;
    m_recent.splice(m_recent.begin(), m_recent, place->second);
    return place->second->second;
}

std::shared_ptr<const CachedQuery> StatementCache::add(const std::string& text, CachedQuery query) {
    auto shared = std::make_shared<const CachedQuery>(std::move(query));
    if (text.size() > longestText)
        return shared;
    m_recent.emplace_front(text, shared);
    m_places[text] = m_recent.begin();
    if (m_recent.size() > mostQueries) {
        m_places.erase(m_recent.back().first);
        m_recent.pop_back();
    }
    return shared;
}

void StatementCache::clear() {
    m_places.clear();
    m_recent.clear();
}

} // namespace ora
