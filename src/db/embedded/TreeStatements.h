#pragma once

#include "Tree.h"

// The syntax tree of whole statements; the rules of Tree.h hold.
namespace ora {

enum class StatementKind : std::uint8_t {
    Query,
    Insert,
    MultiInsert,
    Update,
    Delete,
    Merge,
    CreateTable,
    AlterTable,
    CreateView,
    CreateIndex,
    AlterIndex,
    CreateSequence,
    AlterSequence,
    CreateSynonym,
    CreateTrigger,
    AlterTrigger,
    Drop,
    Rename,
    Truncate,
    Comment,
    Commit,
    Rollback,
    Savepoint,
    SetTransaction,
    SetConstraints,
    AlterSession,
    ExplainPlan,
    LockTable,
    Grant,
    Accepted, // changes nothing here: ANALYZE, ALTER … COMPILE
};

struct Statement {
    StatementKind kind;
    Extent at;
};

struct QueryStatement : Statement {
    Query* query;
};

// What a DML statement changes: a table or view, or an inline view.
struct Target {
    ObjectName name;
    Query* query;
    bool checkOption; // of the inline view
    Name alias;
};

struct Insert : Statement {
    Target target;
    std::span<Name> columns;
    std::span<Expr*> values;
    Query* query; // instead of values
};

struct InsertInto {
    ObjectName table;
    std::span<Name> columns;
    std::span<Expr*> values; // empty: all columns of the query
};

struct InsertArm {
    Expr* when; // null for ELSE and for an unconditional INSERT ALL
    std::span<InsertInto> targets;
};

struct MultiInsert : Statement {
    bool first;
    std::span<InsertArm> arms;
    Query* query;
};

// a = value, or (a, b) = (query)
struct Assignment {
    std::span<Name> columns;
    Expr* value; // null with a query
    Query* query;
};

struct Update : Statement {
    Target target;
    std::span<Assignment> assignments;
    Expr* where;
};

struct Delete : Statement {
    Target target;
    Expr* where;
};

struct Merge : Statement {
    Target target;
    TableRef* source;
    Expr* on;
    std::span<Assignment> assignments;
    Expr* updateWhere;
    Expr* deleteWhere;
    bool inserts;
    std::span<Name> columns;
    std::span<Expr*> values;
    Expr* insertWhere;
};

enum class ConstraintKind : std::uint8_t { NotNull, Null, Unique, PrimaryKey, ForeignKey, Check };
enum class DeleteRule : std::uint8_t { None, Cascade, SetNull };

struct ConstraintState {
    bool deferrable = false;
    bool initiallyDeferred = false;
    bool timed = false; // INITIALLY was written
    bool disabled = false;
    bool validated = true;
    Name index; // USING INDEX name, or the one that USING INDEX (CREATE …) makes
};

struct ConstraintDef {
    ConstraintKind kind;
    Extent at;
    Name name;
    std::span<Name> columns; // empty when written with its column
    ObjectName references;
    std::span<Name> referencedColumns;
    DeleteRule onDelete;
    Expr* check;
    std::string_view checkText; // as written, without the parentheses
    ConstraintState state;
};

// Numbers of sequences go beyond 64 bits: as written, sign included; empty when absent.
struct SequenceOptions {
    std::string_view startWith;
    std::string_view incrementBy;
    std::string_view minValue;
    std::string_view maxValue;
    std::string_view cache;
    bool noMinValue;
    bool noMaxValue;
    bool noCache;
    bool cycle;
    bool noCycle;
    bool order;
    bool restart;
    bool given; // any of these words
};

enum class Visibility : std::uint8_t { Unsaid, Visible, Invisible };
enum class IdentityKind : std::uint8_t { None, Always, ByDefault, ByDefaultOnNull };

struct ColumnDef {
    Name name;
    bool
        hasType; // false: MODIFY leaves it, a virtual or foreign key column takes it from elsewhere
    TypeInfo type;
    Expr* defaultValue;
    std::string_view defaultText;
    bool defaultOnNull;
    IdentityKind identity;
    SequenceOptions* identityOptions;
    Expr* virtualValue;
    std::string_view virtualText;
    Visibility visibility;
    std::span<ConstraintDef> constraints;
};

struct CreateTable : Statement {
    ObjectName name;
    bool temporary;
    bool preserveRows; // ON COMMIT PRESERVE ROWS
    std::span<ColumnDef> columns;
    std::span<ConstraintDef> constraints;
    Query* query;
    std::string_view queryText;
};

enum class AlterTableKind : std::uint8_t {
    AddColumn,
    AddConstraint,
    ModifyColumn,
    ModifyConstraint,
    DropColumn,
    DropConstraint, // by constraint.name, by columns (UNIQUE) or as the primary key
    EnableConstraint,
    DisableConstraint,
    RenameColumn,
    RenameConstraint,
    RenameTable,
    EnableTriggers,
    DisableTriggers,
    ReadOnly,
    ReadWrite,
    Accepted,
};

struct AlterTableAction {
    AlterTableKind kind;
    ColumnDef* column;         // AddColumn, ModifyColumn
    ConstraintDef* constraint; // AddConstraint; which one and its new state for the others
    Name name;                 // DropColumn, Rename…
    Name newName;
    bool cascade;
};

struct AlterTable : Statement {
    ObjectName name;
    std::span<AlterTableAction> actions;
};

struct CreateView : Statement {
    ObjectName name;
    bool replace;
    bool force;
    std::span<Name> columns;
    Query* query;
    Extent queryAt; // with what follows the query
    bool readOnly;
    bool checkOption;
    Name constraint;
};

struct IndexColumn {
    Expr* expr;
    std::string_view text;
    bool descending;
};

struct CreateIndex : Statement {
    ObjectName name;
    ObjectName table;
    bool unique;
    bool bitmap;
    std::span<IndexColumn> columns;
};

struct AlterIndex : Statement {
    ObjectName name;
    Name newName; // absent: anything else than RENAME, which changes nothing here
};

// CREATE and ALTER.
struct SequenceStatement : Statement {
    ObjectName name;
    SequenceOptions options;
};

struct CreateSynonym : Statement {
    ObjectName name;
    ObjectName target;
    bool replace;
    bool isPublic;
};

enum class TriggerTiming : std::uint8_t { Before, After, InsteadOf };

// :new.column := value
struct TriggerAssignment {
    Name column;
    Expr* value;
};

// RAISE_APPLICATION_ERROR (number, text)
struct TriggerRaise {
    Expr* number;
    Expr* text;
    int line; // of the body, from 1
};

// A trigger of one statement: assignments, an error or one DML statement.
struct CreateTrigger : Statement {
    ObjectName name;
    bool replace;
    TriggerTiming timing;
    bool onInsert;
    bool onUpdate;
    bool onDelete;
    bool forEachRow;
    bool disabled;
    std::span<Name> updateColumns;
    ObjectName table;
    std::string_view oldName; // "OLD" unless REFERENCING says otherwise
    std::string_view newName;
    Expr* when;
    std::string_view whenText;
    Expr* guard; // IF … THEN around the whole body
    std::span<TriggerAssignment> assignments;
    Statement* body;
    TriggerRaise* raise;
    std::string_view bodyText; // from BEGIN to END
};

struct AlterTrigger : Statement {
    ObjectName name;
    bool enable;
    bool disable;
    Name newName;
};

enum class ObjectKind : std::uint8_t {
    Table,
    View,
    Index,
    Sequence,
    Synonym,
    Trigger,
    Other, // procedures, types …: there are none
};

struct Drop : Statement {
    ObjectKind object;
    ObjectName name;
    bool cascadeConstraints;
    bool purge;
    bool isPublic;
    bool force;
};

struct Rename : Statement {
    Name from;
    Name to;
};

struct Truncate : Statement {
    ObjectName table;
};

struct Comment : Statement {
    ObjectName object;
    Name column; // absent: the table's comment
    std::string_view text;
};

struct Rollback : Statement {
    Name savepoint; // absent: the whole transaction
};

struct Savepoint : Statement {
    Name name;
};

struct SetTransaction : Statement {
    bool readOnly;
};

struct SetConstraints : Statement {
    std::span<ObjectName> names; // empty: ALL
    bool deferred;
};

struct SessionParameter {
    std::string_view name;
    std::string_view value;
};

struct AlterSession : Statement {
    std::span<SessionParameter> parameters;
};

struct ExplainPlan : Statement {
    std::string_view statementId;
    ObjectName into; // absent: PLAN_TABLE
    Statement* statement;
};

struct LockTable : Statement {
    std::span<ObjectName> tables;
};

enum class PrivilegeKind : std::uint8_t { Object, System, Role };

struct Privilege {
    std::string_view name; // "SELECT", "CREATE TABLE", a role
    std::span<Name> columns;
    PrivilegeKind kind;

    bool isAll() const { return name == "ALL" || name == "ALL PRIVILEGES"; }
};

// GRANT and REVOKE.
struct Grant : Statement {
    bool revokes;
    std::span<Privilege> privileges;
    bool onObject;
    ObjectName object; // absent: nothing of a schema
    std::span<Name> grantees;
    bool grantable;
};

// ANALYZE …: what must exist for the server to accept it.
struct Accepted : Statement {
    ObjectKind objectKind;
    ObjectName object;     // absent: nothing
    std::string_view verb; // "ANALYZE", the first word
};

} // namespace ora
