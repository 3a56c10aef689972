#pragma once

#include "Types.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ora {

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
};

// A single-statement BEFORE trigger for each row that sets one :NEW value. It is applied to the
// values before they are stored, in the order of the list.
struct RowAssignment {
    bool onInsert = false;
    bool onUpdate = false;
    std::vector<std::string> updateColumns; // UPDATE OF these; empty: any
    std::string column;                     // the one whose :NEW value is set
    std::string expression;                 // as written, with :NEW. and :OLD.
    std::string when;                       // as written, with NEW. and OLD.; empty: always
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

    std::vector<RowAssignment> assignments;

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
};

} // namespace ora
