#include "ErrorText.h"
#include "ParseExpression.h"
#include "ParseQuery.h"
#include "ParseStatement.h"

// CREATE and DROP of everything but tables and triggers, RENAME, TRUNCATE, COMMENT.
namespace ora {

namespace {

constexpr int InvalidCreate = 901;
constexpr int InvalidTable = 903;
constexpr int InvalidIdentifier = 904;
constexpr int MissingKeyword = 905;
constexpr int MissingLeftParenthesis = 906;
constexpr int MissingRightParenthesis = 907;
constexpr int InvalidOption = 922;
constexpr int MissingIdentifier = 931;
constexpr int InvalidSequenceOption = 933;
constexpr int MissingTo = 946;
constexpr int InvalidDrop = 950;
constexpr int InvalidIndexName = 953;
constexpr int MissingOn = 969;
constexpr int InvalidSynonym = 995;
constexpr int InvalidViewName = 999;
constexpr int InsufficientPrivileges = 1031;

// What only an administrator may make or drop.
bool atAdministrators(const TokenCursor& cursor) {
    return cursor.atAnyOf({"USER", "ROLE", "TABLESPACE", "DIRECTORY", "PROFILE", "CONTEXT", "UNDO",
                           "BIGFILE", "ROLLBACK", "CONTROLFILE", "EDITION", "PFILE", "SPFILE",
                           "DATABASE"});
}

bool atStoredCode(const TokenCursor& cursor) {
    return cursor.atAnyOf(
        {"PROCEDURE", "FUNCTION", "PACKAGE", "TYPE", "LIBRARY", "JAVA", "OPERATOR", "INDEXTYPE"});
}

struct Modifiers {
    bool replace = false;
    bool force = false;
    bool isPublic = false;
};

Modifiers parseModifiers(TokenCursor& cursor) {
    Modifiers modifiers;
    for (;;) {
        if (cursor.accept("OR", "REPLACE"))
            modifiers.replace = true;
        else if (cursor.accept("FORCE"))
            modifiers.force = true;
        else if (cursor.accept("PUBLIC"))
            modifiers.isPublic = true;
        else if (!cursor.accept("NOFORCE") && !cursor.accept("NO", "FORCE") &&
                 !cursor.accept("EDITIONABLE") && !cursor.accept("NONEDITIONABLE"))
            return modifiers;
    }
}

Statement* parseCreateRest(TokenCursor& cursor) {
    if (cursor.accept("GLOBAL", "TEMPORARY") || cursor.accept("PRIVATE", "TEMPORARY")) {
        if (!cursor.at("TABLE"))
            cursor.fail(MissingKeyword);
        return parseCreateTable(cursor, true);
    }
    if (cursor.at("DATABASE", "LINK") || cursor.at("CLUSTER") || cursor.at("MATERIALIZED") ||
        cursor.at("SNAPSHOT"))
        refuse(cursor.at("DATABASE") ? "CREATE DATABASE LINK"
                                     : "CREATE " + std::string(cursor.peek().text),
               cursor.begin());
    if (atStoredCode(cursor))
        refuse("PL/SQL and stored code", cursor.begin());
    if (atAdministrators(cursor) || cursor.at("TEMPORARY", "TABLESPACE"))
        cursor.fail(InsufficientPrivileges);
    cursor.fail(InvalidCreate);
}

std::string_view parseSequenceNumber(TokenCursor& cursor) {
    const std::uint32_t begin = cursor.begin();
    if (!cursor.acceptSymbol("-"))
        cursor.acceptSymbol("+");
    if (cursor.peek().kind != TokenKind::Number)
        cursor.fail(InvalidSequenceOption);
    cursor.next();
    return cursor.textFrom(begin);
}

struct SequenceNumber {
    std::string_view word;
    std::string_view second;
    std::string_view SequenceOptions::*member;
};
constexpr SequenceNumber sequenceNumbers[] = {
    {"START", "WITH", &SequenceOptions::startWith},
    {"INCREMENT", "BY", &SequenceOptions::incrementBy},
    {"MINVALUE", "", &SequenceOptions::minValue},
    {"MAXVALUE", "", &SequenceOptions::maxValue},
    {"CACHE", "", &SequenceOptions::cache},
};

struct SequenceFlag {
    std::string_view word;
    bool SequenceOptions::*member; // null: accepted and of no effect
};
constexpr SequenceFlag sequenceFlags[] = {
    {"NOMINVALUE", &SequenceOptions::noMinValue},
    {"NOMAXVALUE", &SequenceOptions::noMaxValue},
    {"NOCACHE", &SequenceOptions::noCache},
    {"CYCLE", &SequenceOptions::cycle},
    {"NOCYCLE", &SequenceOptions::noCycle},
    {"ORDER", &SequenceOptions::order},
    {"RESTART", &SequenceOptions::restart},
    {"NOORDER", nullptr},
    {"KEEP", nullptr},
    {"NOKEEP", nullptr},
    {"GLOBAL", nullptr},
    {"SESSION", nullptr},
    {"SCALE", nullptr},
    {"NOSCALE", nullptr},
};

bool parseSequenceNumberOption(TokenCursor& cursor, SequenceOptions& options) {
    for (const SequenceNumber& number : sequenceNumbers) {
        if (!cursor.accept(number.word))
            continue;
        if (!number.second.empty())
            cursor.expect(number.second, MissingKeyword);
        if (number.word == "START" && cursor.accept("LIMIT", "VALUE"))
            return true;
        options.*number.member = parseSequenceNumber(cursor);
        return true;
    }
    return false;
}

bool parseSequenceFlag(TokenCursor& cursor, SequenceOptions& options) {
    for (const SequenceFlag& flag : sequenceFlags) {
        if (!cursor.accept(flag.word))
            continue;
        options.given = true;
        if (flag.member)
            options.*flag.member = true;
        return true;
    }
    return false;
}

std::span<IndexColumn> parseIndexColumns(TokenCursor& cursor) {
    cursor.expectSymbol("(", MissingLeftParenthesis);
    std::vector<IndexColumn> columns;
    do {
        const std::uint32_t begin = cursor.begin();
        IndexColumn column{parseValue(cursor), {}, false};
        column.text = cursor.textFrom(begin);
        column.descending = cursor.accept("DESC");
        if (!column.descending)
            cursor.accept("ASC");
        columns.push_back(column);
    } while (cursor.acceptSymbol(","));
    cursor.expectSymbol(")", MissingRightParenthesis);
    return cursor.arena().list(columns);
}

void parseViewTail(TokenCursor& cursor, CreateView& view) {
    if (!cursor.accept("WITH"))
        return;
    if (cursor.accept("READ")) {
        cursor.expect("ONLY", MissingKeyword);
        view.readOnly = true;
    } else {
        cursor.expect("CHECK", MissingKeyword);
        cursor.expect("OPTION", MissingKeyword);
        view.checkOption = true;
    }
    if (cursor.accept("CONSTRAINT"))
        view.constraint = cursor.name(MissingIdentifier);
}

// ( name [constraints], … ) before AS.
std::span<Name> parseViewColumns(TokenCursor& cursor) {
    if (!cursor.acceptSymbol("("))
        return {};
    std::vector<Name> names;
    do {
        names.push_back(cursor.name(InvalidIdentifier));
        while (startsConstraint(cursor))
            parseConstraint(cursor);
    } while (cursor.acceptSymbol(","));
    cursor.expectSymbol(")", MissingRightParenthesis);
    return cursor.arena().list(names);
}

struct DropWord {
    std::string_view word;
    ObjectKind kind;
    int missingName;
};
constexpr DropWord dropWords[] = {
    {"TABLE", ObjectKind::Table, InvalidTable},
    {"VIEW", ObjectKind::View, InvalidViewName},
    {"INDEX", ObjectKind::Index, InvalidIndexName},
    {"SEQUENCE", ObjectKind::Sequence, 2277},
    {"SYNONYM", ObjectKind::Synonym, InvalidSynonym},
    {"TRIGGER", ObjectKind::Trigger, 4070},
    {"PROCEDURE", ObjectKind::Other, MissingIdentifier},
    {"FUNCTION", ObjectKind::Other, MissingIdentifier},
    {"PACKAGE", ObjectKind::Other, MissingIdentifier},
    {"TYPE", ObjectKind::Other, MissingIdentifier},
    {"MATERIALIZED", ObjectKind::Other, MissingIdentifier},
};

void parseDropTail(TokenCursor& cursor, Drop& drop) {
    for (;;) {
        if (cursor.accept("CASCADE"))
            drop.cascadeConstraints = cursor.accept("CONSTRAINTS") || cursor.accept("CONSTRAINT");
        else if (cursor.accept("PURGE"))
            drop.purge = true;
        else if (cursor.accept("FORCE"))
            drop.force = true;
        else if (!cursor.accept("ONLINE"))
            return;
    }
}

} // namespace

Statement* parseCreate(TokenCursor& cursor) {
    cursor.next();
    const Modifiers modifiers = parseModifiers(cursor);
    if (modifiers.replace && cursor.atAnyOf({"TABLE", "SEQUENCE", "INDEX", "UNIQUE"}))
        cursor.fail(InvalidOption);
    if (cursor.at("TABLE"))
        return parseCreateTable(cursor, false);
    if (cursor.at("VIEW"))
        return parseCreateView(cursor, modifiers.replace, modifiers.force);
    if (cursor.at("SEQUENCE"))
        return parseCreateSequence(cursor);
    if (cursor.at("SYNONYM"))
        return parseCreateSynonym(cursor, modifiers.replace, modifiers.isPublic);
    if (cursor.at("TRIGGER"))
        return parseCreateTrigger(cursor, modifiers.replace);
    const bool unique = cursor.accept("UNIQUE");
    const bool bitmap = !unique && cursor.accept("BITMAP");
    if (cursor.at("INDEX"))
        return parseCreateIndex(cursor, unique, bitmap);
    if (unique || bitmap) {
        constexpr int MissingIndex = 968;
        cursor.fail(MissingIndex);
    }
    return parseCreateRest(cursor);
}

Statement* parseCreateView(TokenCursor& cursor, bool replace, bool force) {
    CreateView* const view = makeStatement<CreateView>(cursor, StatementKind::CreateView);
    cursor.next();
    view->replace = replace;
    view->force = force;
    view->name = parseObjectName(cursor, InvalidViewName);
    if (cursor.at("OF"))
        refuse("object views", cursor.begin());
    view->columns = parseViewColumns(cursor);
    cursor.expect("AS", MissingKeyword);
    const std::uint32_t begin = cursor.begin();
    view->query = parseQuery(cursor);
    parseViewTail(cursor, *view);
    view->queryAt = cursor.extentFrom(begin);
    return finishStatement(cursor, view);
}

Statement* parseCreateIndex(TokenCursor& cursor, bool unique, bool bitmap) {
    CreateIndex* const index = makeStatement<CreateIndex>(cursor, StatementKind::CreateIndex);
    cursor.next();
    index->unique = unique;
    index->bitmap = bitmap;
    index->name = parseObjectName(cursor, InvalidIndexName);
    cursor.expect("ON", MissingOn);
    if (cursor.at("CLUSTER"))
        refuse("clusters", cursor.begin());
    index->table = parseObjectName(cursor, InvalidTable);
    parseTableAlias(cursor);
    index->columns = parseIndexColumns(cursor);
    skipPhysicalClauses(cursor, InvalidOption);
    return finishStatement(cursor, index);
}

SequenceOptions parseSequenceOptions(TokenCursor& cursor) {
    SequenceOptions options{};
    while (parseSequenceNumberOption(cursor, options) || parseSequenceFlag(cursor, options)) {
    }
    return options;
}

namespace {

Statement* parseSequence(TokenCursor& cursor, StatementKind kind) {
    constexpr int InvalidSequenceName = 2277;
    SequenceStatement* const sequence = makeStatement<SequenceStatement>(cursor, kind);
    cursor.next();
    sequence->name = parseObjectName(cursor, InvalidSequenceName);
    sequence->options = parseSequenceOptions(cursor);
    return finishStatement(cursor, sequence);
}

} // namespace

Statement* parseCreateSequence(TokenCursor& cursor) {
    return parseSequence(cursor, StatementKind::CreateSequence);
}

Statement* parseAlterSequence(TokenCursor& cursor) {
    return parseSequence(cursor, StatementKind::AlterSequence);
}

Statement* parseCreateSynonym(TokenCursor& cursor, bool replace, bool isPublic) {
    CreateSynonym* const synonym =
        makeStatement<CreateSynonym>(cursor, StatementKind::CreateSynonym);
    cursor.next();
    synonym->replace = replace;
    synonym->isPublic = isPublic;
    synonym->name = parseObjectName(cursor, InvalidSynonym);
    cursor.expect("FOR", MissingKeyword);
    synonym->target = parseObjectName(cursor, InvalidSynonym);
    return finishStatement(cursor, synonym);
}

Statement* parseDrop(TokenCursor& cursor) {
    Drop* const drop = makeStatement<Drop>(cursor, StatementKind::Drop);
    cursor.next();
    drop->isPublic = cursor.accept("PUBLIC");
    for (const DropWord& word : dropWords) {
        if (!cursor.accept(word.word))
            continue;
        if (word.kind == ObjectKind::Other && !cursor.accept("BODY"))
            cursor.accept("VIEW");
        drop->object = word.kind;
        drop->name = parseObjectName(cursor, word.missingName);
        parseDropTail(cursor, *drop);
        return finishStatement(cursor, drop);
    }
    cursor.fail(atAdministrators(cursor) ? InsufficientPrivileges : InvalidDrop);
}

Statement* parseRename(TokenCursor& cursor) {
    Rename* const rename = makeStatement<Rename>(cursor, StatementKind::Rename);
    cursor.next();
    rename->from = cursor.name(InvalidTable);
    cursor.expect("TO", MissingTo);
    rename->to = cursor.name(InvalidTable);
    return finishStatement(cursor, rename);
}

Statement* parseTruncate(TokenCursor& cursor) {
    constexpr int InvalidTruncate = 3290;
    Truncate* const truncate = makeStatement<Truncate>(cursor, StatementKind::Truncate);
    cursor.next();
    cursor.expect("TABLE", InvalidTruncate);
    truncate->table = parseObjectName(cursor, InvalidTable);
    if (cursor.atAnyOf({"DROP", "REUSE"})) {
        cursor.next();
        cursor.accept("ALL");
        cursor.expect("STORAGE", MissingKeyword);
    }
    cursor.accept("CASCADE");
    return finishStatement(cursor, truncate);
}

Statement* parseComment(TokenCursor& cursor) {
    constexpr int TextRequired = 1780;
    constexpr int InvalidCategory = 32594;
    Comment* const comment = makeStatement<Comment>(cursor, StatementKind::Comment);
    cursor.next();
    cursor.expect("ON", MissingOn);
    if (cursor.atAnyOf({"INDEXTYPE", "OPERATOR", "MATERIALIZED", "MINING", "EDITION"}))
        refuse("COMMENT ON " + std::string(cursor.peek().text), cursor.begin());
    const bool column = cursor.accept("COLUMN");
    if (!column)
        cursor.expect("TABLE", InvalidCategory);
    std::vector<Name> parts{cursor.name(InvalidTable)};
    while (cursor.acceptSymbol("."))
        parts.push_back(cursor.name(InvalidIdentifier));
    const std::size_t longest = column ? 3 : 2;
    if (parts.size() > longest || (column && parts.size() < 2)) {
        constexpr int InvalidPath = 1747;
        cursor.fail(InvalidPath);
    }
    if (column) {
        comment->column = parts.back();
        parts.pop_back();
    }
    comment->object.name = parts.back();
    if (parts.size() == 2)
        comment->object.schema = parts.front();
    cursor.expect("IS", MissingKeyword);
    if (cursor.peek().kind != TokenKind::Text && cursor.peek().kind != TokenKind::NationalText)
        cursor.fail(TextRequired);
    comment->text = cursor.next().text;
    return finishStatement(cursor, comment);
}

} // namespace ora
