#pragma once

#include <span>
#include <string_view>

namespace ora {

// One data-dictionary view as data: a query over the catalog's tables, column by column.

struct DictionaryColumn {
    const char* name;
    // V30: VARCHAR2(30), N: NUMBER of an integer, T: NUMBER of a text, D: stored DATE, H: the
    // same in hexadecimal, R8: RAW(8) of hexadecimal, L: LONG, C: CLOB
    const char* type;
    const char* sql; // the engine's expression; nullptr: always null
};

struct DictionaryView {
    enum class Form {
        Plain,      // under its name alone: DUAL, V$SESSION
        Owned,      // USER_, and with OWNER in front ALL_ and DBA_
        OwnerShown, // the same, but the USER_ form has its OWNER column too
    };
    const char* name; // without USER_ and the like
    Form form;
    const char* comment; // in DICTIONARY; nullptr: not listed there
    std::span<const DictionaryColumn> columns;
    const char* from; // FROM and WHERE; nullptr: never any row
};

struct DictionaryAlias {
    const char* name;
    const char* target;
};

std::span<const DictionaryView> objectViews(); // what the user owns
std::span<const DictionaryView> serverViews(); // session, server, settings
std::span<const DictionaryView> absentViews(); // what there is none of
std::span<const DictionaryAlias> dictionaryAliases();

} // namespace ora
