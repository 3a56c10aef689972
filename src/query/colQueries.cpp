#include "colQueries.h"

#include "Error.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// The run-time's own numbers for a keyed collection.
constexpr qint32 invalidArgument = 5;
constexpr qint32 subscriptOutOfRange = 9;
constexpr qint32 keyTaken = 457;

} // namespace

cQuery& colQueries::Add(const QString& queryType, const QString& queryString, bool queryValid,
                        const QString& key) {
    if (!key.isEmpty() && lookUp(key) != m_items.end())
        throw Error(keyTaken, QString(),
                    u"This key is already associated with an element of this collection"_s);
    return m_items.emplace_back(Entry{{queryValid, queryString, queryType}, key}).query;
}

const cQuery& colQueries::Item(qsizetype position) const {
    return find(position)->query;
}

const cQuery& colQueries::Item(const QString& key) const {
    return find(key)->query;
}

void colQueries::Remove(qsizetype position) {
    m_items.erase(find(position));
}

void colQueries::Remove(const QString& key) {
    m_items.erase(find(key));
}

colQueries::Entries::const_iterator colQueries::find(qsizetype position) const {
    if (position < 1 || position > Count())
        throw Error(subscriptOutOfRange, QString(), u"Subscript out of range"_s);
    return m_items.begin() + (position - 1);
}

colQueries::Entries::const_iterator colQueries::find(const QString& key) const {
    const auto found = key.isEmpty() ? m_items.end() : lookUp(key);
    if (found == m_items.end())
        throw Error(invalidArgument, QString(), u"Invalid procedure call or argument"_s);
    return found;
}

colQueries::Entries::const_iterator colQueries::lookUp(const QString& key) const {
    return std::find_if(m_items.begin(), m_items.end(), [&](const Entry& entry) {
        return entry.key.compare(key, Qt::CaseInsensitive) == 0;
    });
}
