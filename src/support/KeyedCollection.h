#pragma once

#include "Error.h"

#include <QString>

#include <algorithm>
#include <deque>

// Items in the order in which they were added. Positions count from 1. Keys ignore case; an item
// without one is reached by its position only. Errors carry the run-time's own numbers.
template<typename T>
class KeyedCollection {
    struct Entry {
        T item;
        QString key;
    };
    using Entries = std::deque<Entry>;

public:
    static constexpr qint32 invalidArgument = 5;
    static constexpr qint32 subscriptOutOfRange = 9;
    static constexpr qint32 keyTaken = 457;

    // The item in the collection; the reference is good until the next Remove. Throws Error
    // (keyTaken).
    T& Add(T item, const QString& key = QString()) {
        if (!key.isEmpty() && lookUp(key) != m_entries.end())
            throw Error(keyTaken, QString(),
                        QStringLiteral("This key is already associated with an element of this "
                                       "collection"));
        return m_entries.emplace_back(Entry{std::move(item), key}).item;
    }

    // Throws Error: subscriptOutOfRange outside 1 to Count, invalidArgument for an unknown key.
    const T& Item(qsizetype position) const { return find(position)->item; }
    const T& Item(const QString& key) const { return find(key)->item; }
    void Remove(qsizetype position) { m_entries.erase(find(position)); }
    void Remove(const QString& key) { m_entries.erase(find(key)); }

    qsizetype Count() const { return qsizetype(m_entries.size()); }

    class iterator {
    public:
        explicit iterator(typename Entries::const_iterator at)
            : m_at(at) {}
        const T& operator*() const { return m_at->item; }
        iterator& operator++() {
            ++m_at;
            return *this;
        }
        bool operator==(const iterator& other) const = default;

    private:
        typename Entries::const_iterator m_at;
    };
    iterator begin() const { return iterator(m_entries.begin()); }
    iterator end() const { return iterator(m_entries.end()); }

private:
    using Place = typename Entries::const_iterator;

    Place find(qsizetype position) const {
        if (position < 1 || position > Count())
            throw Error(subscriptOutOfRange, QString(), QStringLiteral("Subscript out of range"));
        return m_entries.begin() + (position - 1);
    }
    Place find(const QString& key) const {
        const Place found = key.isEmpty() ? m_entries.end() : lookUp(key);
        if (found == m_entries.end())
            throw Error(invalidArgument, QString(),
                        QStringLiteral("Invalid procedure call or argument"));
        return found;
    }
    Place lookUp(const QString& key) const {
        return std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
            return entry.key.compare(key, Qt::CaseInsensitive) == 0;
        });
    }

    Entries m_entries;
};
