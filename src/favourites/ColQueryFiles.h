#pragma once

#include "CQueryFile.h"
#include "KeyedCollection.h"

// The favourites in the order of their file. Names and files may occur more than once.
class ColQueryFiles : public KeyedCollection<CQueryFile> {
public:
    CQueryFile& Add(const QString& QueryName, const QString& FileName,
                    const QString& sKey = QString()) {
        CQueryFile file;
        file.setFileName(FileName);
        file.setQueryName(QueryName);
        return KeyedCollection::Add(std::move(file), sKey);
    }
};
