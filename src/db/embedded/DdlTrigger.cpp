#include "DdlParts.h"
#include "ErrorText.h"
#include "Parser.h"
#include "Requirements.h"
#include "SqlText.h"
#include "TriggerEvents.h"

#include <algorithm>

// Triggers: those that only set the row's values are the emitter's part, the others the engine's.

namespace ora {

namespace {

constexpr int missingTable = 942;
constexpr int noSuchTrigger = 4080;

CatalogStore::Object requireTrigger(const DdlContext& context, const ObjectName& name) {
    const auto object = context.catalog.isOwn(name.schema.text)
                            ? context.store().find(NameSpace::Trigger, name.name.text)
                            : std::nullopt;
    if (!object)
        throw OraError(noSuchTrigger,
                       "trigger '" + std::string(name.name.text) + "' does not exist");
    return *object;
}

const char* timingWord(TriggerTiming timing) {
    switch (timing) {
    case TriggerTiming::Before: return "BEFORE";
    case TriggerTiming::After: return "AFTER";
    default: return "INSTEAD OF";
    }
}

std::string eventsText(const CreateTrigger& statement) {
    std::string text;
    for (const TriggerEvent& event : triggerEvents) {
        if (statement.*event.on)
            text += (text.empty() ? "" : " OR ") + std::string(event.word);
    }
    return text;
}

// The statement's text from the trigger's name to its body, as the dictionary has it.
std::string descriptionOf(const CreateTrigger& statement, std::string_view source) {
    const size_t begin =
        statement.name.schema ? statement.name.schema.at.begin : statement.name.name.at.begin;
    const size_t body = size_t(statement.bodyText.data() - source.data());
    std::string_view text = source.substr(begin, body - begin);
    if (statement.when)
        text = text.substr(0, size_t(statement.whenText.data() - text.data()));
    return std::string(text.substr(0, text.find_last_not_of(" (\r\n\t") + 1));
}

std::string updateColumnsSql(const CreateTrigger& trigger, const Relation& relation) {
    std::string list;
    for (const Name& name : trigger.updateColumns) {
        for (const CatalogColumn& column : relation.columns) {
            if (column.name == name.text)
                list += (list.empty() ? " OF " : ", ") + column.sqlName;
        }
    }
    return list;
}

// Others set values of the row, fire for the whole statement or stand for it.
bool isEmitted(const CreateTrigger& trigger) {
    return !trigger.forEachRow || trigger.timing == TriggerTiming::InsteadOf ||
           (!trigger.body && !trigger.raise);
}

// Throws what its statement will throw.
void checkEmitted(const DdlContext& context, const CreateTrigger& trigger,
                  const Relation& relation) {
    for (const TriggerEvent& event : triggerEvents)
        if (trigger.*event.on)
            context.binder.triggerSql(trigger, relation, event.action);
}

void requireTimingFor(const CreateTrigger& trigger, const Relation& relation) {
    constexpr int notOnViews = 25001;
    constexpr int onlyOnViews = 25002;
    const bool view = relation.kind == Relation::Kind::View;
    const bool instead = trigger.timing == TriggerTiming::InsteadOf;
    if (view != instead)
        raise(view ? notOnViews : onlyOnViews);
}

void createForEvent(const DdlContext& context, const TriggerDefinition& definition,
                    const CreateTrigger& trigger, const Relation& relation,
                    const TriggerEvent& event) {
    const SchemaBinder::TriggerSql sql = context.binder.triggerSql(trigger, relation, event.action);
    const bool ofColumns = event.action == RowAction::Update;
    context.db.run(
        "CREATE TRIGGER " + definition.sqlName(event.word) + " " + definition.timing + " " +
        event.word + (ofColumns ? updateColumnsSql(trigger, relation) : std::string()) + " ON " +
        relation.source + " FOR EACH ROW" + (sql.when.empty() ? "" : " WHEN " + sql.when) +
        " BEGIN " + joined(sql.steps, ";") + "; END");
}

} // namespace

void dropStoredTriggers(const DdlContext& context, const TriggerDefinition& trigger) {
    for (const TriggerEvent& event : triggerEvents)
        context.db.run("DROP TRIGGER IF EXISTS " + trigger.sqlName(event.word));
}

void createStoredTriggers(const DdlContext& context, const TriggerDefinition& definition) {
    if (!definition.enabled)
        return;
    const auto tree = parseStatement(definition.text);
    const auto& trigger = static_cast<const CreateTrigger&>(*tree->statement);
    if (isEmitted(trigger))
        return;
    // The text may name the table as it was called before a rename.
    const auto table = context.store().object(definition.table);
    const RelationPtr relation = table ? context.catalog.relation({}, table->name) : nullptr;
    if (!relation)
        raise(missingTable);
    for (const TriggerEvent& event : triggerEvents) {
        if (trigger.*event.on)
            createForEvent(context, definition, trigger, *relation, event);
    }
}

void createTrigger(const DdlContext& context, const CreateTrigger& statement,
                   std::string_view source) {
    TriggerDefinition trigger;
    trigger.name = ownName(context, statement.name);
    const RelationPtr relation =
        context.catalog.relation(statement.table.schema.text, statement.table.name.text);
    if (!relation || relation->kind == Relation::Kind::Dictionary)
        raise(missingTable);
    for (const Name& name : statement.updateColumns)
        requireColumn(*relation, name);
    requireTimingFor(statement, *relation);
    trigger.table = context.catalog.ownObject(relation->name)->id;
    trigger.text = source;
    trigger.timing = timingWord(statement.timing);
    if (!statement.forEachRow)
        trigger.timing += " STATEMENT";
    trigger.events = eventsText(statement);
    trigger.when = statement.whenText;
    trigger.body = statement.bodyText;
    trigger.description = descriptionOf(statement, source);
    trigger.enabled = !statement.disabled;
    trigger.id = objectFor(context, NameSpace::Trigger, trigger.name, "TRIGGER", statement.replace);
    dropStoredTriggers(context, trigger);
    context.store().saveTrigger(trigger);
    createStoredTriggers(context, trigger);
    if (isEmitted(statement) && statement.assignments.empty())
        checkEmitted(context, statement, *relation);
}

void alterTrigger(const DdlContext& context, const AlterTrigger& statement) {
    const auto object = requireTrigger(context, statement.name);
    if (statement.newName) {
        requireFree(context, NameSpace::Trigger, std::string(statement.newName.text));
        context.store().renameObject(object.id, statement.newName.text);
    }
    if (!statement.enable && !statement.disable)
        return;
    TriggerDefinition trigger = context.store().trigger(object.id);
    trigger.enabled = statement.enable;
    context.store().saveTrigger(trigger);
    dropStoredTriggers(context, trigger);
    createStoredTriggers(context, trigger);
}

void dropTrigger(const DdlContext& context, const Drop& statement) {
    const auto object = requireTrigger(context, statement.name);
    dropStoredTriggers(context, context.store().trigger(object.id));
    context.store().removeObject(object.id);
}

} // namespace ora
