#pragma once

#include "Types.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ora {

class Tree;           // Parser.h
struct CreateTrigger; // TreeStatements.h

// What the binder asks the database about names. Names here are as the dictionary has them: folded
// to upper case unless they were quoted, and compared letter by letter.

struct CatalogColumn {
    std::string name;
    TypeInfo type;
    bool nullable = true;

    // The engine's name of the column, ready to stand after an alias and a point; needs no quotes.
    // Never derived from `name`: renaming a column does not touch the stored table.
    std::string sqlName;

    // The DEFAULT expression as it was written; empty when there is none (its value is null then).
    // An identity column has the call of its sequence here.
    std::string defaultText;
    bool defaultOnNull = false; // also replaces a null that was given

    // GENERATED ALWAYS AS IDENTITY: a value given for it is ORA-32795.
    bool identityAlways = false;

    // The expression of a virtual column as it was written; empty for a stored one. It is computed
    // where the column is read, and a value given for it is ORA-54013.
    std::string virtualText;

    bool invisible = false;     // not part of * and of an INSERT that names no columns
    bool copiesNotNull = false; // NOT NULL was declared, so that CREATE TABLE … AS takes it over
};

// A trigger that the emitter sees to; all others are stored ones that the engine fires itself. The
// statement lives in the tree.
struct ParsedTrigger {
    std::shared_ptr<const Tree> tree;
    const CreateTrigger* trigger;
};

struct Relation {
    enum class Kind {
        Table,      // stored; has a rowid
        View,       // the binder puts viewText's query in its place
        Dictionary, // computed and read-only: DUAL, USER_TABLES, V$SESSION
    };
    Kind kind = Kind::Table;
    std::string owner; // the schema; SYS for the dictionary
    std::string name;
    std::vector<CatalogColumn> columns;

    // Table and Dictionary: what stands in an emitted FROM clause, a plain name or a whole
    // "(SELECT …)"; give it an alias. Its columns are the sqlNames. Empty for a view.
    std::string source;

    // View: its query as it was written. `columns` renames and types the query's, in order.
    std::string viewText;
    bool readOnly = false;    // WITH READ ONLY, or a dictionary view
    bool checkOption = false; // WITH CHECK OPTION

    std::vector<std::vector<int>> keys; // primary and unique ones in force, by places in columns

    // Enabled BEFORE triggers for each row that set :NEW values, applied to the values in this
    // order before they are stored.
    std::vector<ParsedTrigger> beforeTriggers;
    std::vector<ParsedTrigger> statementTriggers; // enabled ones that fire once a statement
    std::vector<ParsedTrigger> insteadTriggers;   // of a view: enabled ones

    bool isStored() const { return kind == Kind::Table; }
};

using RelationPtr = std::shared_ptr<const Relation>;

// A sequence that a statement names. key is what seq_next and seq_curr take: "OWNER.NAME".
struct SequenceRef {
    std::string owner;
    std::string name;
    std::string key;
};

class Catalog {
public:
    virtual ~Catalog() = default;

    // Who is logged on, the owner of what has no owner in front of it.
    virtual const std::string& user() const = 0;

    // owner is empty when none was written: then the user's own tables and views come first, then
    // synonyms, then the dictionary. Null when there is no such table or view (ORA-00942). Valid
    // whatever DDL follows, but then out of date.
    virtual RelationPtr relation(std::string_view owner, std::string_view name) const = 0;

    // Synonyms are followed. Nothing: ORA-02289.
    virtual std::optional<SequenceRef> sequence(std::string_view owner,
                                                std::string_view name) const = 0;

    // The session's NLS_SORT in upper case, and whether NLS_COMP has texts compared by it too.
    virtual std::string sort() const { return "BINARY"; }
    virtual bool comparesBySort() const { return false; }

    // What an expression of the engine gives that names no column: the engine wants some values
    // written out. Nothing where there is no engine to ask, or for a null.
    virtual std::optional<double> constant(const std::string& /*sql*/) const {
        return std::nullopt;
    }
};

} // namespace ora
