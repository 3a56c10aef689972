#include "ErrorText.h"
#include "ParseExpression.h"
#include "ParseQuery.h"
#include "ParseStatement.h"
#include "ParseType.h"

#include <algorithm>

// CREATE TABLE, its columns and constraints.
namespace ora {

namespace {

constexpr int NotEnabled = 439;
constexpr int InvalidTable = 903;
constexpr int InvalidIdentifier = 904;
constexpr int MissingKeyword = 905;
constexpr int MissingLeftParenthesis = 906;
constexpr int MissingRightParenthesis = 907;
constexpr int MissingNull = 908;
constexpr int InvalidOption = 922;
constexpr int InvalidConstraintName = 2250;
constexpr int NotAllowedHere = 2253;
constexpr int NeedDatatype = 2263;

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

void parseCheck(TokenCursor& cursor, ConstraintDef& constraint) {
    cursor.expectSymbol("(", MissingLeftParenthesis);
    const std::uint32_t begin = cursor.begin();
    constraint.check = parseCondition(cursor);
    constraint.checkText = trimmed(cursor.textFrom(begin));
    cursor.expectSymbol(")", MissingRightParenthesis);
}

void parseReferences(TokenCursor& cursor, ConstraintDef& constraint) {
    cursor.expect("REFERENCES", MissingKeyword);
    constraint.kind = ConstraintKind::ForeignKey;
    constraint.references = parseObjectName(cursor, InvalidTable);
    if (cursor.atSymbol("("))
        constraint.referencedColumns = parseNameList(cursor, InvalidIdentifier);
    if (!cursor.accept("ON"))
        return;
    cursor.expect("DELETE", MissingKeyword);
    if (cursor.accept("CASCADE"))
        constraint.onDelete = DeleteRule::Cascade;
    else if (cursor.accept("SET", "NULL"))
        constraint.onDelete = DeleteRule::SetNull;
    else
        cursor.fail(MissingKeyword);
}

void parseKeyColumns(TokenCursor& cursor, ConstraintDef& constraint) {
    if (cursor.atSymbol("("))
        constraint.columns = parseNameList(cursor, InvalidIdentifier);
}

void parseConstraintBody(TokenCursor& cursor, ConstraintDef& constraint) {
    if (cursor.accept("NOT")) {
        cursor.expect("NULL", MissingNull);
        constraint.kind = ConstraintKind::NotNull;
    } else if (cursor.accept("NULL")) {
        constraint.kind = ConstraintKind::Null;
    } else if (cursor.accept("UNIQUE")) {
        constraint.kind = ConstraintKind::Unique;
        parseKeyColumns(cursor, constraint);
    } else if (cursor.accept("PRIMARY")) {
        cursor.expect("KEY", MissingKeyword);
        constraint.kind = ConstraintKind::PrimaryKey;
        parseKeyColumns(cursor, constraint);
    } else if (cursor.accept("FOREIGN")) {
        cursor.expect("KEY", MissingKeyword);
        constraint.columns = parseNameList(cursor, InvalidIdentifier);
        parseReferences(cursor, constraint);
    } else if (cursor.accept("CHECK")) {
        constraint.kind = ConstraintKind::Check;
        parseCheck(cursor, constraint);
    } else {
        parseReferences(cursor, constraint);
    }
}

// What may stand among the physical clauses of tables, indexes and their like, with the number of
// words or numbers that belong to it.
struct PhysicalClause {
    std::string_view word;
    int operands;
};
constexpr PhysicalClause physicalClauses[] = {
    {"TABLESPACE", 1},   {"PCTFREE", 1},
    {"PCTUSED", 1},      {"INITRANS", 1},
    {"MAXTRANS", 1},     {"STORAGE", 1},
    {"LOGGING", 0},      {"NOLOGGING", 0},
    {"COMPRESS", 0},     {"NOCOMPRESS", 0},
    {"CACHE", 0},        {"NOCACHE", 0},
    {"MONITORING", 0},   {"NOMONITORING", 0},
    {"NOPARALLEL", 0},   {"ONLINE", 0},
    {"REVERSE", 0},      {"NOREVERSE", 0},
    {"VISIBLE", 0},      {"INVISIBLE", 0},
    {"PCTTHRESHOLD", 1}, {"INCLUDING", 1},
    {"OVERFLOW", 0},     {"RESULT_CACHE", 1},
    {"USABLE", 0},       {"UNUSABLE", 0},
    {"NOSORT", 0},       {"INDEXING", 1},
    {"READ", 1},         {"BASIC", 0},
    {"ADVANCED", 0},     {"COMPUTE", 0},
    {"STATISTICS", 0},   {"FILESYSTEM_LIKE_LOGGING", 0},
};

bool startsPhysicalClause(const TokenCursor& cursor) {
    for (const PhysicalClause& clause : physicalClauses)
        if (cursor.at(clause.word))
            return true;
    return false;
}

// ( CREATE INDEX … ): the index is the constraint's own, under the name it has there.
Name parseIndexInside(TokenCursor& cursor) {
    const std::size_t open = cursor.index();
    cursor.next();
    cursor.accept("CREATE");
    cursor.accept("UNIQUE");
    cursor.expect("INDEX", MissingKeyword);
    const Name name = parseObjectName(cursor, InvalidIdentifier).name;
    cursor.rewind(open);
    cursor.skipParentheses();
    return name;
}

Name parseIndexChoice(TokenCursor& cursor) {
    if (cursor.atSymbol("("))
        return parseIndexInside(cursor);
    const bool noName =
        cursor.atAnyOf({"ENABLE", "DISABLE", "NOVALIDATE", "RELY", "NORELY", "PARALLEL"});
    if (cursor.atName() && !noName && !startsPhysicalClause(cursor))
        return parseObjectName(cursor, InvalidIdentifier).name;
    return {};
}

bool parseOneState(TokenCursor& cursor, ConstraintState& state) {
    if (cursor.accept("NOT", "DEFERRABLE"))
        return true;
    if (cursor.accept("INITIALLY", "IMMEDIATE"))
        return state.timed = true;
    if (cursor.accept("DEFERRABLE"))
        return state.deferrable = true;
    if (cursor.accept("INITIALLY", "DEFERRED"))
        return state.timed = state.deferrable = state.initiallyDeferred = true;
    if (cursor.accept("ENABLE") || cursor.accept("VALIDATE") || cursor.accept("RELY") ||
        cursor.accept("NORELY"))
        return true;
    if (cursor.accept("DISABLE")) {
        state.disabled = true;
        state.validated = false;
        return true;
    }
    if (cursor.accept("NOVALIDATE")) {
        state.validated = false;
        return true;
    }
    if (cursor.accept("USING", "INDEX")) {
        state.index = parseIndexChoice(cursor);
        return true;
    }
    return false;
}

void skipOperand(TokenCursor& cursor) {
    if (cursor.atSymbol("("))
        return cursor.skipParentheses();
    if (!cursor.atEnd())
        cursor.next();
}

bool skipPhysicalClause(TokenCursor& cursor) {
    for (const PhysicalClause& clause : physicalClauses) {
        if (!cursor.accept(clause.word))
            continue;
        for (int i = 0; i < clause.operands; ++i)
            skipOperand(cursor);
        return true;
    }
    return false;
}

void skipWords(TokenCursor& cursor) {
    while (cursor.peek().kind == TokenKind::Word && !cursor.atAnyOf({"PARALLEL", "AS"}) &&
           !startsPhysicalClause(cursor))
        cursor.next();
    if (cursor.atSymbol("("))
        cursor.skipParentheses();
}

// STORE AS SECUREFILE name (…)
bool skipLobStorage(TokenCursor& cursor) {
    if (!cursor.accept("STORE", "AS"))
        return false;
    if (!cursor.accept("SECUREFILE"))
        cursor.accept("BASICFILE");
    if (cursor.peek(1).isSymbol("(") && !cursor.atSymbol("("))
        cursor.next();
    if (cursor.atSymbol("("))
        cursor.skipParentheses();
    return true;
}

bool skipOddClause(TokenCursor& cursor) {
    if (cursor.at("ORGANIZATION", "EXTERNAL"))
        refuse("external tables", cursor.begin());
    if (cursor.accept("PARALLEL") || cursor.accept("ORGANIZATION") || cursor.accept("COMPRESS")) {
        if (cursor.peek().kind == TokenKind::Number || cursor.atSymbol("(") ||
            cursor.atAnyOf({"HEAP", "INDEX"}))
            skipOperand(cursor);
        else if (cursor.accept("FOR"))
            skipWords(cursor);
        return true;
    }
    if (skipLobStorage(cursor))
        return true;
    if (cursor.at("SEGMENT", "CREATION")) {
        for (int i = 0; i < 3; ++i)
            skipOperand(cursor);
        return true;
    }
    if (!cursor.atAnyOf({"ROW", "COLUMN", "INMEMORY", "NO", "FLASHBACK", "LOB", "ENABLE", "DISABLE",
                         "ROWDEPENDENCIES", "NOROWDEPENDENCIES", "ADVANCED"}))
        return false;
    cursor.next();
    skipWords(cursor);
    return true;
}

void parseIdentity(TokenCursor& cursor, ColumnDef& column) {
    column.identityOptions = cursor.arena().make<SequenceOptions>();
    const bool open = cursor.acceptSymbol("(");
    *column.identityOptions = parseSequenceOptions(cursor);
    if (open)
        cursor.expectSymbol(")", MissingRightParenthesis);
}

void parseVirtual(TokenCursor& cursor, ColumnDef& column) {
    cursor.expectSymbol("(", MissingLeftParenthesis);
    const std::uint32_t begin = cursor.begin();
    column.virtualValue = parseValue(cursor);
    column.virtualText = trimmed(cursor.textFrom(begin));
    cursor.expectSymbol(")", MissingRightParenthesis);
    cursor.accept("VIRTUAL");
}

void parseGenerated(TokenCursor& cursor, ColumnDef& column) {
    constexpr int MissingAlways = 2000;
    bool byDefault = false;
    bool onNull = false;
    if (cursor.accept("GENERATED")) {
        byDefault = cursor.accept("BY", "DEFAULT");
        onNull = byDefault && cursor.accept("ON", "NULL");
        if (!byDefault && !cursor.accept("ALWAYS") && !cursor.at("AS"))
            cursor.fail(MissingAlways);
    }
    cursor.expect("AS", MissingKeyword);
    if (!cursor.accept("IDENTITY"))
        return parseVirtual(cursor, column);
    column.identity = onNull      ? IdentityKind::ByDefaultOnNull
                      : byDefault ? IdentityKind::ByDefault
                                  : IdentityKind::Always;
    parseIdentity(cursor, column);
}

void parseDefault(TokenCursor& cursor, ColumnDef& column) {
    column.defaultOnNull = cursor.accept("ON", "NULL");
    const std::uint32_t begin = cursor.begin();
    column.defaultValue = parseValue(cursor);
    column.defaultText = trimmed(cursor.textFrom(begin));
}

void requireOneNullRule(const std::vector<ConstraintDef>& constraints) {
    constexpr int ConflictingNull = 2258;
    const auto aboutNull = [](const ConstraintDef& constraint) {
        return constraint.kind == ConstraintKind::Null ||
               constraint.kind == ConstraintKind::NotNull;
    };
    if (std::count_if(constraints.begin(), constraints.end(), aboutNull) > 1)
        raise(ConflictingNull);
}

void parseColumnClauses(TokenCursor& cursor, ColumnDef& column) {
    std::vector<ConstraintDef> constraints;
    for (;;) {
        const bool constrained = !constraints.empty(); // nothing but constraints follows one
        if (!constrained && cursor.accept("DEFAULT"))
            parseDefault(cursor, column);
        else if (!constrained && cursor.at("GENERATED"))
            parseGenerated(cursor, column);
        else if ((cursor.at("AS") && cursor.peek(1).isSymbol("(")) || cursor.at("AS", "IDENTITY"))
            parseGenerated(cursor, column);
        else if (cursor.at("CONSTRAINT") && cursor.peek(2).isWord("FOREIGN"))
            cursor.fail(NotAllowedHere);
        else if (startsConstraint(cursor) && !cursor.at("FOREIGN"))
            constraints.push_back(parseConstraint(cursor));
        else if (cursor.accept("VISIBLE"))
            column.visibility = Visibility::Visible;
        else if (cursor.accept("INVISIBLE"))
            column.visibility = Visibility::Invisible;
        else if (!cursor.accept("SORT"))
            break;
    }
    requireOneNullRule(constraints);
    if (cursor.at("ENCRYPT"))
        refuse("encrypted columns", cursor.begin());
    column.constraints = cursor.arena().list(constraints);
}

bool startsType(const TokenCursor& cursor) {
    return cursor.peek().kind == TokenKind::Word && !startsConstraint(cursor) &&
           !cursor.atAnyOf(
               {"DEFAULT", "GENERATED", "AS", "VISIBLE", "INVISIBLE", "ENCRYPT", "DECRYPT"});
}

// CREATE TABLE … AS SELECT names its columns without types.
bool endsColumn(const TokenCursor& cursor) {
    return cursor.atSymbol(",") || cursor.atSymbol(")");
}

void parseTableItems(TokenCursor& cursor, CreateTable& table) {
    cursor.expectSymbol("(", MissingLeftParenthesis);
    std::vector<ColumnDef> columns;
    std::vector<ConstraintDef> constraints;
    do {
        if (startsTableConstraint(cursor))
            constraints.push_back(parseTableConstraint(cursor));
        else if (cursor.at("SUPPLEMENTAL"))
            refuse("supplemental logging", cursor.begin());
        else
            columns.push_back(parseColumnDef(cursor, false));
    } while (cursor.acceptSymbol(","));
    cursor.expectSymbol(")", MissingRightParenthesis);
    table.columns = cursor.arena().list(columns);
    table.constraints = cursor.arena().list(constraints);
}

void parseOnCommit(TokenCursor& cursor, CreateTable& table) {
    if (!cursor.accept("ON"))
        return;
    cursor.expect("COMMIT", MissingKeyword);
    table.preserveRows = cursor.accept("PRESERVE");
    if (!table.preserveRows)
        cursor.expect("DELETE", MissingKeyword);
    cursor.expect("ROWS", MissingKeyword);
}

void requireTypes(const CreateTable& table) {
    constexpr int TypeNotAllowed = 1773;
    for (const ColumnDef& column : table.columns) {
        if (column.hasType && table.query)
            raise(TypeNotAllowed, column.name.at.end);
        const bool elsewhere = table.query || column.virtualValue ||
                               (!column.constraints.empty() &&
                                column.constraints[0].kind == ConstraintKind::ForeignKey);
        if (!column.hasType && !elsewhere)
            raise(NeedDatatype, column.name.at.end);
    }
}

} // namespace

void skipPhysicalClauses(TokenCursor& cursor, int code) {
    while (!cursor.atEnd() && !cursor.at("AS") && !cursor.at("ON", "COMMIT")) {
        if (cursor.at("PARTITION", "BY") || cursor.at("LOCAL") || cursor.at("GLOBAL"))
            throw OraError(NotEnabled, "feature not enabled: Partitioning", cursor.begin());
        if (!skipOddClause(cursor) && !skipPhysicalClause(cursor))
            cursor.fail(code);
    }
}

bool startsConstraint(const TokenCursor& cursor) {
    return cursor.atAnyOf(
        {"CONSTRAINT", "NOT", "NULL", "UNIQUE", "PRIMARY", "CHECK", "REFERENCES", "FOREIGN"});
}

ConstraintState parseConstraintState(TokenCursor& cursor) {
    ConstraintState state;
    for (;;) {
        if (parseOneState(cursor, state))
            continue;
        const bool parallel = cursor.at("PARALLEL") || cursor.at("COMPRESS");
        if (!(parallel && skipOddClause(cursor)) && !skipPhysicalClause(cursor))
            return state;
    }
}

bool startsTableConstraint(const TokenCursor& cursor) {
    return cursor.at("CONSTRAINT") || cursor.at("PRIMARY", "KEY") || cursor.at("FOREIGN", "KEY") ||
           cursor.atAnyOf({"UNIQUE", "CHECK"});
}

ConstraintDef parseTableConstraint(TokenCursor& cursor) {
    const ConstraintDef constraint = parseConstraint(cursor);
    const bool key =
        constraint.kind == ConstraintKind::PrimaryKey || constraint.kind == ConstraintKind::Unique;
    if (key && constraint.columns.empty())
        cursor.fail(MissingLeftParenthesis);
    if (constraint.kind != ConstraintKind::Check && constraint.columns.empty())
        raiseNamed(InvalidIdentifier, "", constraint.at.begin);
    return constraint;
}

ConstraintDef parseConstraint(TokenCursor& cursor) {
    ConstraintDef constraint{};
    const std::uint32_t begin = cursor.begin();
    if (cursor.accept("CONSTRAINT"))
        constraint.name = cursor.name(InvalidConstraintName);
    parseConstraintBody(cursor, constraint);
    constraint.state = parseConstraintState(cursor);
    constraint.at = cursor.extentFrom(begin);
    return constraint;
}

ColumnDef parseColumnDef(TokenCursor& cursor, bool modify) {
    ColumnDef column{};
    if (!cursor.atName())
        raiseNamed(InvalidIdentifier, "", cursor.begin());
    column.name = nameOf(cursor.next());
    column.hasType = !endsColumn(cursor) && startsType(cursor);
    if (column.hasType)
        column.type = parseType(cursor);
    else if (!modify && !endsColumn(cursor) && !startsConstraint(cursor) &&
             !cursor.atAnyOf({"GENERATED", "AS", "DEFAULT"}))
        cursor.fail(NeedDatatype);
    parseColumnClauses(cursor, column);
    return column;
}

Statement* parseCreateTable(TokenCursor& cursor, bool temporary) {
    CreateTable* const table = makeStatement<CreateTable>(cursor, StatementKind::CreateTable);
    cursor.next();
    table->temporary = temporary;
    table->name = parseObjectName(cursor, InvalidTable);
    if (cursor.at("OF"))
        refuse("object tables", cursor.begin());
    const bool bare = cursor.at("AS") || cursor.at("ON", "COMMIT") || startsPhysicalClause(cursor);
    if (!bare && !cursor.atEnd() && !cursor.atSymbol("("))
        cursor.fail(InvalidOption);
    if (!bare)
        parseTableItems(cursor, *table);
    parseOnCommit(cursor, *table);
    skipPhysicalClauses(cursor, InvalidOption);
    parseOnCommit(cursor, *table);
    if (cursor.accept("AS")) {
        const std::uint32_t begin = cursor.begin();
        table->query = parseQuery(cursor);
        table->queryText = cursor.textFrom(begin);
    } else if (bare) {
        cursor.fail(MissingLeftParenthesis);
    }
    requireTypes(*table);
    return finishStatement(cursor, table);
}

} // namespace ora
