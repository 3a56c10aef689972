#pragma once

#include "KeyedCollection.h"
#include "cQuery.h"

// The statements of one run in order.
class colQueries : public KeyedCollection<cQuery> {
public:
    cQuery& Add(const QString& queryType, const QString& queryString, bool queryValid,
                const QString& key = QString()) {
        return KeyedCollection::Add({queryValid, queryString, queryType}, key);
    }
};
