#pragma once

#include "Types.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ora {

// What the catalog keeps about each object. Expressions are kept twice: as they were written, for
// the dictionary and the binder, and as the engine's SQL.

using ObjectId = std::int64_t; // also names the stored object: table t17, index i17

// Objects of one space share their names.
enum class NameSpace { Relation = 1, PublicSynonym = 2, Trigger = 3, Index = 4, Constraint = 5 };

struct ColumnDefinition {
    enum class Identity { None, Always, ByDefault };

    std::string name;
    int number = 0; // the stored column is c<number>; never used again after a DROP
    TypeInfo type;
    bool nullable = true;
    std::string defaultText;
    bool defaultOnNull = false;
    std::string virtualText;
    Identity identity = Identity::None;
    bool invisible = false;
    std::string comment;

    std::string sqlName() const { return "c" + std::to_string(number); }
};

struct ConstraintDefinition {
    enum class Kind : char {
        PrimaryKey = 'P',
        Unique = 'U',
        Check = 'C',
        ForeignKey = 'R',
        ViewCheck = 'V',   // WITH CHECK OPTION
        ViewReadOnly = 'O' // WITH READ ONLY
    };
    enum class DeleteRule { NoAction, Cascade, SetNull };

    ObjectId id = 0;
    std::string name;
    bool generatedName = false; // SYS_C…
    Kind kind = Kind::Check;
    std::vector<int> columns; // numbers, in order
    std::string conditionText;
    std::string conditionSql;
    bool notNull = false;    // a check of one column that says nothing else
    ObjectId referenced = 0; // the key constraint of the parent
    DeleteRule deleteRule = DeleteRule::NoAction;
    bool enabled = true;
    bool deferrable = false;
    bool deferred = false;
    bool validated = true;
    std::string indexName; // the one that USING INDEX asks for; not kept
    ObjectId index = 0;    // of a key
};

struct TableDefinition {
    ObjectId id = 0;
    std::string name;
    std::vector<ColumnDefinition> columns;
    std::vector<ConstraintDefinition> constraints;
    int lastColumnNumber = 0;
    enum class Rows { Kept, OfTransaction, OfSession }; // the latter two: GLOBAL TEMPORARY
    Rows rows = Rows::Kept;
    bool readOnly = false;

    std::string sqlName() const { return "t" + std::to_string(id); }
    bool temporary() const { return rows != Rows::Kept; }
    ColumnDefinition* column(const std::string& columnName);
    const ColumnDefinition* column(const std::string& columnName) const;
    const ColumnDefinition* columnNumbered(int number) const;
    ConstraintDefinition* constraint(const std::string& constraintName);
    const ConstraintDefinition* primaryKey() const;
};

struct IndexKey {
    int column = 0; // its number; 0: an expression
    std::string expressionText;
    std::string expressionSql;
    bool descending = false;
};

struct IndexDefinition {
    ObjectId id = 0;
    std::string name;
    ObjectId table = 0;
    bool unique = false;
    bool bitmap = false;
    bool generatedName = false;
    std::vector<IndexKey> keys;

    std::string sqlName() const { return "i" + std::to_string(id); }
};

struct ViewDefinition {
    ObjectId id = 0;
    std::string name;
    std::string text;
    std::vector<ColumnDefinition> columns;
    bool readOnly = false;
    bool checkOption = false;
    ConstraintDefinition constraint; // of either; its name is empty without
};

struct SynonymDefinition {
    std::string name;
    std::string targetOwner;
    std::string targetName;
};

struct TriggerDefinition {
    ObjectId id = 0;
    std::string name;
    ObjectId table = 0;
    std::string text;        // the whole statement as it was written
    std::string timing;      // BEFORE, AFTER, INSTEAD OF
    std::string events;      // "INSERT OR UPDATE"
    std::string when;        // as written, without parentheses
    std::string body;        // from BEGIN to END
    std::string description; // what stands before WHEN and the body
    bool enabled = true;

    // The stored triggers, one for each event: g<id>_INSERT.
    std::string sqlName(const std::string& event) const {
        return "g" + std::to_string(id) + "_" + event;
    }
};

} // namespace ora
