#pragma once

#include "cQuery.h"

#include <deque>

// The statements of one run in order. Positions count from 1. Keys ignore case; a statement without
// one is reached by its position only.
class colQueries {
    struct Entry {
        cQuery query;
        QString key;
    };
    using Entries = std::deque<Entry>;

public:
    // The new statement; the reference is good until the next Remove. Throws Error (457) when the
    // key is taken.
    cQuery& Add(const QString& queryType, const QString& queryString, bool queryValid,
                const QString& key = QString());

    // Throws Error: 9 for a position outside 1 to Count, 5 for an unknown key.
    const cQuery& Item(qsizetype position) const;
    const cQuery& Item(const QString& key) const;
    void Remove(qsizetype position);
    void Remove(const QString& key);

    qsizetype Count() const { return qsizetype(m_items.size()); }

    // Iterates over the statements in the order in which they were added.
    class iterator {
    public:
        explicit iterator(Entries::const_iterator at)
            : m_at(at) {}
        const cQuery& operator*() const { return m_at->query; }
        iterator& operator++() {
            ++m_at;
            return *this;
        }
        bool operator==(const iterator& other) const = default;

    private:
        Entries::const_iterator m_at;
    };
    iterator begin() const { return iterator(m_items.begin()); }
    iterator end() const { return iterator(m_items.end()); }

private:
    Entries::const_iterator find(qsizetype position) const;
    Entries::const_iterator find(const QString& key) const;
    Entries::const_iterator lookUp(const QString& key) const;

    Entries m_items;
};
