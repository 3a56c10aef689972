#include "DdlParts.h"

#include "ErrorText.h"
#include "Lexer.h"

#include <algorithm>
#include <cctype>

namespace ora {

namespace {

constexpr int nameInUse = 955;

} // namespace

std::string ownName(const DdlContext& context, const ObjectName& name) {
    if (name.schema && !context.catalog.isOwn(name.schema.text))
        failDdl(DdlError::NoSuchUser, std::string(name.schema.text));
    return std::string(name.name.text);
}

void requireFree(const DdlContext& context, NameSpace space, const std::string& name) {
    if (context.store().find(space, name))
        raise(nameInUse);
}

TableDefinition requireTable(const DdlContext& context, const ObjectName& name) {
    constexpr int missingTable = 942;
    const bool own = context.catalog.isOwn(name.schema.text);
    const auto object = own ? context.catalog.ownObject(name.name.text) : std::nullopt;
    if (!object || object->kind != "TABLE")
        raise(missingTable);
    return context.store().table(object->id);
}

const ColumnDefinition& requireColumn(const TableDefinition& table, const Name& name) {
    constexpr int invalidIdentifier = 904;
    const ColumnDefinition* column = table.column(std::string(name.text));
    if (!column)
        raiseNamed(invalidIdentifier, "\"" + std::string(name.text) + "\"", name.at.begin);
    return *column;
}

Relation relationOf(const DdlContext& context, const TableDefinition& table) {
    Relation relation;
    relation.owner = context.catalog.user();
    relation.name = table.name;
    relation.source = table.sqlName();
    for (const ColumnDefinition& column : table.columns) {
        CatalogColumn entry;
        entry.name = column.name;
        entry.type = column.type;
        entry.nullable = column.nullable;
        entry.sqlName = column.sqlName();
        entry.virtualText = column.virtualText;
        relation.columns.push_back(std::move(entry));
    }
    return relation;
}

bool givesRow(const DdlContext& context, const std::string& sql) {
    return context.db.prepare(sql).step();
}

bool hasRows(const DdlContext& context, const TableDefinition& table) {
    return givesRow(context, "SELECT 1 FROM " + table.sqlName() + " LIMIT 1");
}

// --- columns -----------------------------------------------------------------------------------

namespace {

ColumnDefinition::Identity identityOf(IdentityKind kind) {
    switch (kind) {
    case IdentityKind::None: return ColumnDefinition::Identity::None;
    case IdentityKind::Always: return ColumnDefinition::Identity::Always;
    default: return ColumnDefinition::Identity::ByDefault;
    }
}

TypeInfo defaultNumber() {
    TypeInfo type;
    type.type = SqlType::Number;
    return type;
}

} // namespace

void requireSoundDefault(const DdlContext& context, const TableDefinition& table,
                         const ColumnDefinition& column, const ColumnDef& definition) {
    if (!definition.defaultValue)
        return;
    CatalogColumn entry;
    entry.name = column.name;
    entry.type = column.type;
    context.binder.defaultSql(*definition.defaultValue, entry, relationOf(context, table));
}

namespace {

void requireSoundIdentity(const TableDefinition& table, const ColumnDefinition& column) {
    constexpr int notNumeric = 30675;
    constexpr int secondIdentity = 30669;
    if (column.type.type != SqlType::Number)
        raise(notNumeric);
    for (const ColumnDefinition& other : table.columns) {
        if (other.identity != ColumnDefinition::Identity::None)
            raise(secondIdentity);
    }
}

void requireOneLong(const TableDefinition& table, const TypeInfo& type) {
    constexpr int secondLong = 1754;
    const auto isLong = [](const TypeInfo& info) {
        return info.type == SqlType::Long || info.type == SqlType::LongRaw;
    };
    for (const ColumnDefinition& column : table.columns) {
        if (isLong(type) && isLong(column.type))
            raise(secondLong);
    }
}

} // namespace

void requireKeyType(const ColumnDefinition& column, int lobCode) {
    constexpr int illegalLong = 997;
    constexpr int lobIndex = 2327;
    switch (column.type.type) {
    case SqlType::Long:
    case SqlType::LongRaw: raise(illegalLong);
    case SqlType::Clob:
    case SqlType::Nclob:
    case SqlType::Blob:
    case SqlType::Bfile:
        throw OraError(lobCode, lobCode == lobIndex
                                    ? "cannot create index on expression with datatype LOB"
                                    : "column of datatype LOB cannot be unique or a primary key");
    default: return;
    }
}

std::string canonicalText(std::string_view expression, const TableDefinition& table) {
    Arena arena;
    std::string text;
    const auto isWordEnd = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '$' || c == '#';
    };
    for (const Token& token : tokenize(expression, arena)) {
        if (token.kind == TokenKind::End)
            break;
        const bool column =
            (token.kind == TokenKind::Word || token.kind == TokenKind::QuotedName) &&
            table.column(std::string(token.text));
        std::string part(expression.substr(token.begin, token.end - token.begin));
        if (column)
            part = displayName(token.text);
        else if (token.kind == TokenKind::Word)
            part = token.text;
        const bool words = !text.empty() && token.kind != TokenKind::Symbol &&
                           (isWordEnd(text.back()) || text.back() == '"' || text.back() == '\'' ||
                            text.back() == ')');
        const bool closed = !text.empty() && text.back() == ')' && token.kind == TokenKind::Symbol;
        text += (words && !closed ? " " : "") + part;
    }
    return text;
}

TypeInfo declaredType(const DdlContext& context, const ColumnDef& definition) {
    TypeInfo type = definition.type;
    const bool counted = type.type == SqlType::Varchar2 || type.type == SqlType::Char;
    if (counted && !type.unitGiven)
        type.charLength = context.catalog.countsCharacters();
    type.unitGiven = false;
    return type;
}

ColumnDefinition newColumn(const DdlContext& context, TableDefinition& table,
                           const ColumnDef& definition) {
    constexpr size_t mostColumns = 1000;
    constexpr int tooManyColumns = 1792;
    if (table.columns.size() == mostColumns)
        raise(tooManyColumns, definition.name.at.begin);
    ColumnDefinition column;
    column.name = definition.name.text;
    column.number = ++table.lastColumnNumber;
    column.type = definition.hasType ? declaredType(context, definition) : defaultNumber();
    column.defaultText = definition.defaultText;
    column.defaultOnNull = definition.defaultOnNull;
    column.invisible = definition.visibility == Visibility::Invisible;
    requireOneLong(table, column.type);
    requireSoundDefault(context, table, column, definition);
    column.identity = identityOf(definition.identity);
    if (column.identity != ColumnDefinition::Identity::None)
        requireSoundIdentity(table, column);
    if (column.identity != ColumnDefinition::Identity::None || column.defaultOnNull)
        column.nullable = false;
    if (definition.virtualValue) {
        constexpr int impureVirtual = 54002;
        column.virtualText = canonicalText(definition.virtualText, table);
        const auto value = context.binder.valueSql(*definition.virtualValue,
                                                   relationOf(context, table), impureVirtual);
        if (!definition.hasType)
            column.type = value.type;
    }
    return column;
}

std::string identitySequenceName(const TableDefinition& table) {
    return "ISEQ$$_" + std::to_string(table.id);
}

void addIdentity(const DdlContext& context, const TableDefinition& table, ColumnDefinition& column,
                 const ColumnDef& definition) {
    if (definition.identity == IdentityKind::None)
        return;
    const std::string name = identitySequenceName(table);
    SequenceDefinition sequence = sequenceFrom(*definition.identityOptions);
    sequence.id = context.store().addObject(NameSpace::Relation, name, "SEQUENCE", true);
    sequence.identityOf = table.id;
    Sequences::save(context.db, sequence);
    column.defaultText = "\"" + context.catalog.user() + "\".\"" + name + "\".nextval";
    column.defaultOnNull = definition.identity == IdentityKind::ByDefaultOnNull;
}

ObjectId objectFor(const DdlContext& context, NameSpace space, const std::string& name,
                   std::string_view kind, bool replace) {
    const auto known = context.store().find(space, name);
    if (!known)
        return context.store().addObject(space, name, kind);
    if (!replace || known->kind != kind)
        raise(nameInUse);
    context.store().touchObject(known->id);
    return known->id;
}

} // namespace ora
