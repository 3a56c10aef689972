#pragma once

#include "TokenCursor.h"
#include "TreeStatements.h"

// The parsers of one kind of statement each; all stand on its first word and stop behind the
// statement. Shared between the files that implement them and Parser.cpp.
namespace ora {

Statement* parseQueryStatement(TokenCursor& cursor);
Statement* parseInsert(TokenCursor& cursor);
Statement* parseUpdate(TokenCursor& cursor);
Statement* parseDelete(TokenCursor& cursor);
Statement* parseMerge(TokenCursor& cursor);
Statement* parseCreate(TokenCursor& cursor);
Statement* parseAlter(TokenCursor& cursor);
Statement* parseDrop(TokenCursor& cursor);
Statement* parseRename(TokenCursor& cursor);
Statement* parseTruncate(TokenCursor& cursor);
Statement* parseComment(TokenCursor& cursor);
Statement* parseGrant(TokenCursor& cursor);
Statement* parseAnalyze(TokenCursor& cursor);
Statement* parseCommit(TokenCursor& cursor);
Statement* parseRollback(TokenCursor& cursor);
Statement* parseSavepoint(TokenCursor& cursor);
Statement* parseSet(TokenCursor& cursor);
Statement* parseLock(TokenCursor& cursor);
Statement* parseExplain(TokenCursor& cursor);
Statement* parsePurge(TokenCursor& cursor);

// Behind CREATE and its modifiers, on the word TABLE, VIEW, …
Statement* parseCreateTable(TokenCursor& cursor, bool temporary);
Statement* parseCreateView(TokenCursor& cursor, bool replace, bool force);
Statement* parseCreateIndex(TokenCursor& cursor, bool unique, bool bitmap);
Statement* parseCreateSequence(TokenCursor& cursor);
Statement* parseCreateSynonym(TokenCursor& cursor, bool replace, bool isPublic);
Statement* parseCreateTrigger(TokenCursor& cursor, bool replace);

// Behind ALTER, on the word TABLE, INDEX, …
Statement* parseAlterTable(TokenCursor& cursor);
Statement* parseAlterIndex(TokenCursor& cursor);
Statement* parseAlterSequence(TokenCursor& cursor);
Statement* parseAlterSession(TokenCursor& cursor);
Statement* parseAlterTrigger(TokenCursor& cursor);

// Any statement that may stand alone or inside EXPLAIN PLAN or a trigger. Throws 900.
Statement* parseAnyStatement(TokenCursor& cursor);

// SEQUENCE's options, also those of identity columns; stops at what is none.
SequenceOptions parseSequenceOptions(TokenCursor& cursor);

// A column's constraint, or a table's when it names its columns itself.
bool startsConstraint(const TokenCursor& cursor);
ConstraintDef parseConstraint(TokenCursor& cursor);
bool startsTableConstraint(const TokenCursor& cursor);
ConstraintDef parseTableConstraint(TokenCursor& cursor);
ConstraintState parseConstraintState(TokenCursor& cursor);

// The name, type, default, identity and constraints of one column. In MODIFY the type may be
// absent.
ColumnDef parseColumnDef(TokenCursor& cursor, bool modify);

// Over storage and other physical clauses, which mean nothing here; throws `code` at what is none.
void skipPhysicalClauses(TokenCursor& cursor, int code);

template<class Node>
Node* makeStatement(TokenCursor& cursor, StatementKind kind) {
    Node* const node = cursor.arena().make<Node>();
    node->kind = kind;
    node->at.begin = cursor.begin();
    return node;
}

template<class Node>
Node* finishStatement(TokenCursor& cursor, Node* node) {
    node->at.end = cursor.lastEnd();
    return node;
}

} // namespace ora
