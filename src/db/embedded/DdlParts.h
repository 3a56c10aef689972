#pragma once

#include "Ddl.h"

namespace ora {

// The steps that the data-definition statements share.

// Throws a listed error of data definition.
[[noreturn]] void failDdl(int code);
// The same with the named thing in place of %: "cannot validate (%) - check constraint violated".
[[noreturn]] void failDdl(int code, const std::string& name);

// Numbers of failDdl.
namespace DdlError {
constexpr int ColumnExists = 1430;
constexpr int NoSuchIndex = 1418;
constexpr int DuplicateKeys = 1452;
constexpr int MustBeEmptyForType = 1439;
constexpr int MustBeEmptyForPrecision = 1440;
constexpr int ValueTooBig = 1441;
constexpr int AlreadyNotNull = 1442;
constexpr int AlreadyNull = 1451;
constexpr int NullsForPrimaryKey = 1449;
constexpr int NoSuchSynonym = 1434;
constexpr int NoSuchUser = 1918;
constexpr int ColumnTypesDiffer = 2267;
constexpr int NoPrimaryKey = 2268;
constexpr int NoMatchingKey = 2270;
constexpr int KeyIsReferenced = 2273;
constexpr int CheckViolated = 2293;
constexpr int NullsFound = 2296;
constexpr int DependenciesExist = 2297;
constexpr int ParentsMissing = 2298;
constexpr int DuplicatesFound = 2299;
constexpr int NumberOfColumns = 2256;
constexpr int ReferenceTwice = 2274;
constexpr int ReferenceExists = 2275;
constexpr int NoSuchConstraintToEnable = 2430;
constexpr int IndexEnforcesKey = 2429;
constexpr int NoSuchConstraint = 2431;
constexpr int PrimaryKeyViolated = 2437;
constexpr int DropOfNoPrimaryKey = 2441;
constexpr int DropOfNoUniqueKey = 2442;
constexpr int DropOfNoConstraint = 2443;
constexpr int TableIsReferenced = 2449;
constexpr int TruncateOfParent = 2266;
constexpr int NoSuchObject = 4043;
constexpr int RenameOfNoConstraint = 23292;
constexpr int WouldDropAllColumns = 12983;
constexpr int InMultiColumnConstraint = 12991;
constexpr int ParentKeyColumn = 12992;
} // namespace DdlError

// The name itself, when the schema in front of it is the user's own or absent. Throws 1918.
std::string ownName(const DdlContext& context, const ObjectName& name);
// Throws 955 when the name is taken.
void requireFree(const DdlContext& context, NameSpace space, const std::string& name);
// Throws 942 when there is no such table of the user's.
TableDefinition requireTable(const DdlContext& context, const ObjectName& name);
const ColumnDefinition& requireColumn(const TableDefinition& table, const Name& name);

// The table as the binder sees it.
Relation relationOf(const DdlContext& context, const TableDefinition& table);

// The type that a column is declared with in this session.
TypeInfo declaredType(const DdlContext& context, const ColumnDef& definition);

// A column without its constraints, not yet in the table; its number is new.
ColumnDefinition newColumn(const DdlContext& context, TableDefinition& table,
                           const ColumnDef& definition);
// Throws when the DEFAULT names what it may not, or is of a type that the column cannot take.
void requireSoundDefault(const DdlContext& context, const TableDefinition& table,
                         const ColumnDefinition& column, const ColumnDef& definition);
std::string identitySequenceName(const TableDefinition& table);
// Its identity sequence, when it has one; after the table has its id.
void addIdentity(const DdlContext& context, const TableDefinition& table, ColumnDefinition& column,
                 const ColumnDef& definition);

// Throws for columns that no key and no index can have: LONG and LOB. code: for the latter.
void requireKeyType(const ColumnDefinition& column, int lobCode);

// The text of an expression as the dictionary shows it: the table's columns in quotes, everything
// else in upper case without blanks that do not separate words.
std::string canonicalText(std::string_view expression, const TableDefinition& table);

// Adds the constraint to the definition alone; column: the one it was written with, or null. NULL
// and NOT NULL change the column as well. The parents of foreign keys must be stored.
ConstraintDefinition& addConstraint(const DdlContext& context, TableDefinition& table,
                                    const ConstraintDef& definition, const Name* column);
// The index of an enabled key, made or found. Throws what the rows violate.
void addKeyIndex(const DdlContext& context, TableDefinition& table,
                 ConstraintDefinition& constraint);
void dropKeyIndex(const DdlContext& context, ConstraintDefinition& constraint);
// Throws when rows violate a check, NOT NULL or foreign key.
void validate(const DdlContext& context, const TableDefinition& table,
              const ConstraintDefinition& constraint);
// Takes foreign keys that reference the key away, or disables them.
enum class Dependents { Drop, Disable };
void detachDependents(const DdlContext& context, ObjectId key, Dependents what);

void createStoredIndex(const DdlContext& context, const TableDefinition& table,
                       const IndexDefinition& index, int duplicatesCode,
                       const std::string& nameInError);
void dropIndexObject(const DdlContext& context, ObjectId index);

// The id that a CREATE OR REPLACE keeps, or a new one. Throws 955 when the name is another's.
ObjectId objectFor(const DdlContext& context, NameSpace space, const std::string& name,
                   std::string_view kind, bool replace);

// The engine's triggers of the relation; made again after its columns changed.
void dropStoredTriggers(const DdlContext& context, const TriggerDefinition& trigger);
void createStoredTriggers(const DdlContext& context, const TriggerDefinition& trigger);

bool hasRows(const DdlContext& context, const TableDefinition& table);
// Whether the engine's query gives a row.
bool givesRow(const DdlContext& context, const std::string& sql);

// One file a family of statements.
void createTable(const DdlContext& context, const CreateTable& statement);
void alterTable(const DdlContext& context, const AlterTable& statement);
void dropTable(const DdlContext& context, const Drop& statement);
void truncateTable(const DdlContext& context, const Truncate& statement);
void createView(const DdlContext& context, const CreateView& statement, std::string_view source);
void createIndex(const DdlContext& context, const CreateIndex& statement);
void alterIndex(const DdlContext& context, const AlterIndex& statement);
void createSequence(const DdlContext& context, const SequenceStatement& statement);
void alterSequence(const DdlContext& context, const SequenceStatement& statement);
void createSynonym(const DdlContext& context, const CreateSynonym& statement);
void createTrigger(const DdlContext& context, const CreateTrigger& statement,
                   std::string_view source);
void alterTrigger(const DdlContext& context, const AlterTrigger& statement);
void dropTrigger(const DdlContext& context, const Drop& statement);
void dropObject(const DdlContext& context, const Drop& statement);
void renameObject(const DdlContext& context, const Rename& statement);
void commentOn(const DdlContext& context, const Comment& statement);
void grantOrRevoke(const DdlContext& context, const Grant& grant);
void accept(const DdlContext& context, const Accepted& statement);

// The sequence of the options, named for messages. Throws 4002 to 4013.
SequenceDefinition sequenceFrom(const SequenceOptions& options);

} // namespace ora
