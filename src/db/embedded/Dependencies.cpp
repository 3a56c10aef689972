#include "Dependencies.h"

#include "Compiler.h"
#include "OraError.h"
#include "Parser.h"
#include "SchemaBinder.h"
#include "TreeStatements.h"

#include <map>

namespace ora {

namespace {

// Notes the names that a text itself looks up: a view is shown as something without a text.
class RecordingCatalog : public Catalog {
public:
    explicit RecordingCatalog(const DatabaseCatalog& catalog)
        : m_catalog(catalog) {}

    const std::string& user() const override { return m_catalog.user(); }

    RelationPtr relation(std::string_view owner, std::string_view name) const override {
        RelationPtr found = m_catalog.relation(owner, name);
        if (!found || found->kind == Relation::Kind::Dictionary)
            return found;
        note(owner, name, found->kind == Relation::Kind::View ? "VIEW" : "TABLE");
        if (found->kind != Relation::Kind::View)
            return found;
        auto shown = std::make_shared<Relation>(*found);
        shown->kind = Relation::Kind::Dictionary;
        return shown;
    }

    std::optional<SequenceRef> sequence(std::string_view owner,
                                        std::string_view name) const override {
        const auto found = m_catalog.sequence(owner, name);
        if (found)
            note(owner, name, "SEQUENCE");
        return found;
    }

    std::optional<double> constant(const std::string& sql) const override {
        return m_catalog.constant(sql);
    }

    // Their kinds by name.
    const std::map<std::string, std::string>& noted() const { return m_noted; }

private:
    void note(std::string_view owner, std::string_view name, const char* kind) const {
        m_noted[std::string(name)] = m_catalog.synonym(owner, name) ? "SYNONYM" : kind;
    }

    const DatabaseCatalog& m_catalog;
    mutable std::map<std::string, std::string> m_noted;
};

void bindView(const Catalog& catalog, const std::string& text) {
    const auto tree = parseQueryText(text);
    makeSchemaBinder(catalog)->describe(*tree->query, false);
}

void bindTrigger(const RecordingCatalog& catalog, const std::string& text,
                 const std::string& table) {
    const RelationPtr relation = catalog.relation({}, table);
    const auto tree = parseStatement(text);
    if (relation)
        makeSchemaBinder(catalog)->triggerSql(static_cast<const CreateTrigger&>(*tree->statement),
                                              *relation, RowAction::Update);
}

void addRows(std::string& json, const RecordingCatalog& catalog, const std::string& name,
             const char* type) {
    for (const auto& [referenced, kind] : catalog.noted()) {
        if (referenced == name)
            continue;
        json += json.empty() ? "" : ",";
        json += "{\"name\":" + jsonText(name) + ",\"type\":\"" + type +
                "\",\"owner\":" + jsonText(catalog.user()) +
                ",\"referenced\":" + jsonText(referenced) + ",\"kind\":\"" + kind + "\"}";
    }
}

} // namespace

std::string jsonText(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            quoted += '\\';
        quoted += c;
    }
    return quoted + '"';
}

bool viewIsValid(const DatabaseCatalog& catalog, const std::string& view) {
    const auto object = catalog.ownObject(view);
    if (!object || object->kind != "VIEW")
        return true;
    try {
        bindView(catalog, catalog.store().view(object->id).text);
        return true;
    } catch (const OraError&) {
        return false;
    }
}

std::string dependenciesJson(const DatabaseCatalog& catalog) {
    std::string json;
    const auto add = [&](const std::string& name, const char* type, const auto& bind) {
        const RecordingCatalog recording(catalog);
        try {
            bind(recording);
        } catch (const OraError&) {
            // What was found until then still holds.
        }
        addRows(json, recording, name, type);
    };
    for (const CatalogStore::Object& object : catalog.store().objects("VIEW"))
        add(object.name, "VIEW", [&](const RecordingCatalog& recording) {
            bindView(recording, catalog.store().view(object.id).text);
        });
    for (const CatalogStore::Object& object : catalog.store().objects("TRIGGER"))
        add(object.name, "TRIGGER", [&](const RecordingCatalog& recording) {
            const TriggerDefinition trigger = catalog.store().trigger(object.id);
            const auto table = catalog.store().object(trigger.table);
            bindTrigger(recording, trigger.text, table ? table->name : std::string());
        });
    return '[' + json + ']';
}

} // namespace ora
