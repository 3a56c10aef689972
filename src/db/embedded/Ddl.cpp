#include "Ddl.h"

#include "DdlParts.h"
#include "OraError.h"

#include <algorithm>

namespace ora {

namespace {

struct DdlText {
    int code;
    const char* text; // %: the named thing
};
constexpr DdlText ddlTexts[] = {
    {DdlError::NoSuchIndex, "specified index does not exist"},
    {DdlError::ColumnExists, "column being added already exists in table"},
    {DdlError::NoSuchSynonym, "private synonym to be dropped does not exist"},
    {DdlError::MustBeEmptyForType, "column to be modified must be empty to change datatype"},
    {DdlError::MustBeEmptyForPrecision,
     "column to be modified must be empty to decrease precision or scale"},
    {DdlError::ValueTooBig, "cannot decrease column length because some value is too big"},
    {DdlError::AlreadyNotNull, "column to be modified to NOT NULL is already NOT NULL"},
    {DdlError::AlreadyNull, "column to be modified to NULL cannot be modified to NULL"},
    {DdlError::NullsForPrimaryKey, "column contains NULL values; cannot alter to NOT NULL"},
    {DdlError::DuplicateKeys, "cannot CREATE UNIQUE INDEX; duplicate keys found"},
    {DdlError::NoSuchUser, "user '%' does not exist"},
    {DdlError::TruncateOfParent, "unique/primary keys in table referenced by enabled foreign keys"},
    {DdlError::ColumnTypesDiffer, "column type incompatible with referenced column type"},
    {DdlError::NoPrimaryKey, "referenced table does not have a primary key"},
    {DdlError::NoMatchingKey, "no matching unique or primary key for this column-list"},
    {DdlError::KeyIsReferenced, "this unique/primary key is referenced by some foreign keys"},
    {DdlError::CheckViolated, "cannot validate (%) - check constraint violated"},
    {DdlError::NullsFound, "cannot enable (%) - null values found"},
    {DdlError::DependenciesExist, "cannot disable constraint (%) - dependencies exist"},
    {DdlError::ParentsMissing, "cannot validate (%) - parent keys not found"},
    {DdlError::DuplicatesFound, "cannot validate (%) - duplicate keys found"},
    {DdlError::NumberOfColumns, "number of referencing columns must match referenced columns"},
    {DdlError::ReferenceTwice, "duplicate referential constraint specifications"},
    {DdlError::ReferenceExists, "such a referential constraint already exists in the table"},
    {DdlError::NoSuchConstraintToEnable, "cannot enable constraint (%) - no such constraint"},
    {DdlError::RenameOfNoConstraint, "The constraint does not exist"},
    {DdlError::IndexEnforcesKey, "cannot drop index used for enforcement of unique/primary key"},
    {DdlError::NoSuchConstraint, "cannot disable constraint (%) - no such constraint"},
    {DdlError::PrimaryKeyViolated, "cannot validate (%) - primary key violated"},
    {DdlError::DropOfNoPrimaryKey, "Cannot drop nonexistent primary key"},
    {DdlError::DropOfNoUniqueKey, "Cannot drop nonexistent unique key"},
    {DdlError::DropOfNoConstraint, "Cannot drop constraint  - nonexistent constraint"},
    {DdlError::TableIsReferenced, "unique/primary keys in table referenced by foreign keys"},
    {DdlError::NoSuchObject, "object % does not exist"},
    {DdlError::WouldDropAllColumns, "cannot drop all columns in a table"},
    {DdlError::InMultiColumnConstraint, "column is referenced in a multi-column constraint"},
    {DdlError::ParentKeyColumn, "cannot drop parent key column"},
};

template<typename Node, void (*run)(const DdlContext&, const Node&)>
void runAs(const DdlContext& context, const Statement& statement, std::string_view) {
    run(context, static_cast<const Node&>(statement));
}

void runTrigger(const DdlContext& context, const Statement& statement, std::string_view source) {
    createTrigger(context, static_cast<const CreateTrigger&>(statement), source);
}

void runView(const DdlContext& context, const Statement& statement, std::string_view source) {
    createView(context, static_cast<const CreateView&>(statement), source);
}

struct DdlRunner {
    StatementKind kind;
    void (*run)(const DdlContext&, const Statement&, std::string_view source);
};
constexpr DdlRunner runners[] = {
    {StatementKind::CreateTable, runAs<CreateTable, createTable>},
    {StatementKind::AlterTable, runAs<AlterTable, alterTable>},
    {StatementKind::CreateView, runView},
    {StatementKind::CreateIndex, runAs<CreateIndex, createIndex>},
    {StatementKind::AlterIndex, runAs<AlterIndex, alterIndex>},
    {StatementKind::CreateSequence, runAs<SequenceStatement, createSequence>},
    {StatementKind::AlterSequence, runAs<SequenceStatement, alterSequence>},
    {StatementKind::CreateSynonym, runAs<CreateSynonym, createSynonym>},
    {StatementKind::CreateTrigger, runTrigger},
    {StatementKind::AlterTrigger, runAs<AlterTrigger, alterTrigger>},
    {StatementKind::Drop, runAs<Drop, dropObject>},
    {StatementKind::Rename, runAs<Rename, renameObject>},
    {StatementKind::Truncate, runAs<Truncate, truncateTable>},
    {StatementKind::Comment, runAs<Comment, commentOn>},
    {StatementKind::Grant, runAs<Grant, grantOrRevoke>},
    {StatementKind::Accepted, runAs<Accepted, accept>},
};

const DdlRunner* runnerOf(StatementKind kind) {
    const auto* found = std::find_if(std::begin(runners), std::end(runners),
                                     [&](const DdlRunner& entry) { return entry.kind == kind; });
    return found == std::end(runners) ? nullptr : found;
}

} // namespace

void failDdl(int code, const std::string& name) {
    const auto* found = std::find_if(std::begin(ddlTexts), std::end(ddlTexts),
                                     [&](const DdlText& entry) { return entry.code == code; });
    std::string text = found == std::end(ddlTexts) ? "data definition failed" : found->text;
    if (const size_t mark = text.find('%'); mark != text.npos)
        text.replace(mark, 1, name);
    throw OraError(code, text);
}

void failDdl(int code) {
    failDdl(code, {});
}

bool isDdl(StatementKind kind) {
    return runnerOf(kind) != nullptr;
}

void runDdl(const DdlContext& context, const Statement& statement, std::string_view source) {
    if (const DdlRunner* runner = runnerOf(statement.kind))
        runner->run(context, statement, source);
    context.store().countChange();
}

} // namespace ora
