#include "Binding.h"
#include "ErrorText.h"

// What a name without parentheses means: a column, a pseudo column, a sequence, a constant.
namespace ora {

namespace {

constexpr int InvalidIdentifier = 904;
constexpr int NotAllowedHere = 976;

std::string displayOf(const ColumnRef& ref) {
    std::string names;
    for (const Name& part : ref.parts)
        names += (names.empty() ? "\"" : ".\"") + std::string(part.text) + '"';
    return names;
}

// Columns of an outer block inside a subquery of a grouped one must be grouped there.
void noteGrouping(Scope& scope, const Value& value, const ColumnRef& ref, bool outer) {
    if (scope.insideAggregate > 0)
        return;
    if (outer && scope.groupKeys.contains(value.sql))
        return;
    scope.ungrouped.push_back(displayOf(ref));
}

void noteOuterMark(Scope& scope, const Scope::Found& found, const ColumnRef& ref) {
    constexpr int MostMarked = 64;
    if (ref.outer && found.source < MostMarked)
        scope.marked |= std::uint64_t(1) << found.source;
}

Scope::Found findIn(const Scope& scope, const ColumnRef& ref) {
    const auto& parts = ref.parts;
    switch (parts.size()) {
    case 1: return scope.find(parts[0].text);
    case 2: return scope.find({}, parts[0].text, parts[1].text);
    case 3: return scope.find(parts[0].text, parts[1].text, parts[2].text);
    default: return {};
    }
}

bool isRowid(const ColumnRef& ref) {
    return ref.parts.back().text == "ROWID" && !ref.parts.back().quoted;
}

bool isNamed(const ColumnRef& ref, std::string_view word) {
    return ref.parts.size() == 1 && !ref.parts[0].quoted && ref.parts[0].text == word;
}

bool bindRowid(Scope& scope, const ColumnRef& ref, Value& value) {
    int source = -1;
    if (ref.parts.size() > 1) {
        const bool owned = ref.parts.size() > 2;
        source = scope.findSource(owned ? ref.parts[0].text : std::string_view(),
                                  ref.parts[ref.parts.size() - 2].text);
        if (source < 0)
            return false;
    } else {
        constexpr int Ambiguous = 918;
        if (scope.sources.empty())
            return false;
        if (scope.sources.size() > 1)
            raise(Ambiguous, ref.at.begin);
        source = 0;
    }
    value = scope.rowidValue(source);
    return true;
}

bool bindInBlock(Scope& scope, const ColumnRef& ref, bool outer, Value& value) {
    const Scope::Found found = findIn(scope, ref);
    if (found.source < 0)
        return isRowid(ref) && bindRowid(scope, ref, value);
    value = scope.columnValue(found);
    noteOuterMark(scope, found, ref);
    noteGrouping(scope, value, ref, outer);
    return true;
}

bool bindAlias(const Scope& scope, const ColumnRef& ref, Value& value) {
    if (!scope.aliases || ref.parts.size() != 1)
        return false;
    for (const AliasedValue& alias : *scope.aliases) {
        if (alias.name != ref.parts[0].text)
            continue;
        value = alias.value;
        return true;
    }
    return false;
}

Value bindRowNumber(Scope& scope) {
    Value value;
    value.type = {SqlType::Number};
    value.nullable = false;
    if (scope.insideConnectBy)
        return bindLevel(scope);
    if (scope.rowNumbers > 0) {
        const std::string sql =
            scope.extraSql(scope.rowNumbers - 1, {"n", "row_number() OVER ()", {}});
        value.sql = numberFromInteger(sql);
        return value;
    }
    if (!scope.countsRows)
        raise(NotAllowedHere);
    value.sql = numberFromInteger("row_number() OVER ()");
    return value;
}

bool bindPseudoColumn(Scope& scope, const ColumnRef& ref, Value& value) {
    if (isNamed(ref, "ROWNUM"))
        value = bindRowNumber(scope);
    else if (isNamed(ref, "LEVEL"))
        value = bindLevel(scope);
    else if (isNamed(ref, "CONNECT_BY_ISLEAF"))
        value = bindIsLeaf(scope);
    else if (isNamed(ref, "CONNECT_BY_ISCYCLE"))
        value = bindIsCycle(scope);
    else
        return false;
    noteGrouping(scope, value, ref, false);
    return true;
}

bool isNextValue(const ColumnRef& ref) {
    return ref.parts.back().text == "NEXTVAL";
}

// NEXTVAL of a row that names the sequence more than once: seq_row(key, place), where a place that
// is not behind the last one begins another row, and 0 is any place of the statement's only row.
std::string sequenceSql(const SequenceRow* row, const ColumnRef& ref, const std::string& key) {
    const std::string literal = textLiteral(key);
    const std::string plain = call(isNextValue(ref) ? "seq_next" : "seq_curr", literal);
    if (!row)
        return plain;
    if (row->kept) {
        std::string& computed = (*row->kept)[key];
        if (computed.empty() || isNextValue(ref))
            computed = plain;
        return row->keptAlias + ".\"" + key + '"';
    }
    std::size_t place = 0;
    std::size_t count = 0;
    bool next = false;
    for (const ColumnRef* other : row->references) {
        if (other->parts[other->parts.size() - 2].text != ref.parts[ref.parts.size() - 2].text)
            continue;
        ++count;
        next = next || isNextValue(*other);
        if (other == &ref)
            place = count;
    }
    if (!next || count < 2)
        return plain;
    return call("seq_row", {literal, std::to_string(row->onlyRow ? 0 : place)});
}

bool bindSequence(Binding& binding, const ColumnRef& ref, Value& value) {
    constexpr int NoSuchSequence = 2289;
    constexpr int SequenceNotAllowed = 2287;
    if (ref.parts.size() < 2 || (!isNextValue(ref) && ref.parts.back().text != "CURRVAL"))
        return false;
    const bool owned = ref.parts.size() > 2;
    const auto sequence = binding.catalog.sequence(owned ? ref.parts[0].text : std::string_view(),
                                                   ref.parts[ref.parts.size() - 2].text);
    if (!sequence)
        raise(NoSuchSequence, ref.at.begin);
    if (!binding.sequencesAllowed)
        raise(SequenceNotAllowed, ref.at.begin);
    value.sql = sequenceSql(binding.sequenceRow, ref, sequence->key);
    value.type = {SqlType::Number};
    return true;
}

// :NEW.column and, in the trigger's WHEN, NEW.column.
bool bindTriggerColumn(const Binding& binding, const ColumnRef& ref, Value& value) {
    if (!binding.trigger || ref.parts.size() != 2)
        return false;
    const TriggerRow& row = *binding.trigger;
    std::string_view which = ref.parts[0].text;
    if (which.starts_with(':'))
        which.remove_prefix(1);
    const bool isNew = which == row.newName;
    if (!isNew && which != row.oldName)
        return false;
    const auto& values = isNew ? row.newValues : row.oldValues;
    for (std::size_t i = 0; i < row.table->columns.size(); ++i) {
        if (row.table->columns[i].name != ref.parts[1].text)
            continue;
        value.type = row.table->columns[i].type;
        value.sql = values.empty() ? "NULL" : values[i];
        return true;
    }
    constexpr int BadBind = 4076;
    throw OraError(BadBind, "invalid NEW or OLD specification", ref.at.begin);
}

} // namespace

bool bindConstant(std::string_view name, Value& value) {
    if (!isSessionConstant(name))
        return false;
    value = applyEntry(*findFunction(name, {}), {});
    return true;
}

Value bindColumn(Binding& binding, Scope& scope, const ColumnRef& ref) {
    Value value;
    if (bindTriggerColumn(binding, ref, value))
        return value;
    for (Scope* block = &scope; block; block = block->outer) {
        if (bindInBlock(*block, ref, block != &scope, value))
            return value;
        if (bindAlias(*block, ref, value))
            return value;
        if (block == &scope && bindPseudoColumn(scope, ref, value))
            return value;
    }
    const SequenceRegion region(binding, binding.sequencesAllowed && scope.insideAggregate == 0,
                                binding.sequenceRow);
    if (bindSequence(binding, ref, value))
        return value;
    if (ref.parts.size() == 1 && !ref.parts[0].quoted && bindConstant(ref.parts[0].text, value)) {
        if (binding.impureError != 0)
            raise(binding.impureError, ref.at.begin);
        return value;
    }
    if (ref.parts.size() > 1) {
        const Function call{{ExprKind::Function, ref.at}, ref.parts, {}, {}};
        if (!functionsNamed(std::string(ref.parts[0].text) + '.' + std::string(ref.parts[1].text))
                 .empty())
            return bindFunction(binding, scope, call);
    }
    if (binding.columnError != 0)
        raise(binding.columnError, ref.at.begin);
    raiseNamed(InvalidIdentifier, displayOf(ref), ref.at.begin);
}

} // namespace ora
