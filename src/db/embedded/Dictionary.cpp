#include "Dictionary.h"

#include "Dependencies.h"
#include "DictionaryView.h"
#include "Functions.h"
#include "NamedRow.h"
#include "SessionList.h"

#include <QDate>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTimeZone>

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>

namespace ora {

namespace {

constexpr const char* ownerSql = "ora_user()";

// Views whose ALL_ and DBA_ forms call the owner's column otherwise than OWNER.
struct OwnerNaming {
    std::string_view name; // of the view
    const char* owner;
    bool withTableOwner; // TABLE_OWNER before TABLE_NAME
};
constexpr OwnerNaming ownerNamings[] = {
    {"IND_COLUMNS", "INDEX_OWNER", true},    {"IND_EXPRESSIONS", "INDEX_OWNER", true},
    {"SEQUENCES", "SEQUENCE_OWNER", false},  {"TAB_PARTITIONS", "TABLE_OWNER", false},
    {"TRIGGER_COLS", "TRIGGER_OWNER", true},
};

TypeInfo typeOf(const char* code) {
    TypeInfo type;
    const int length = std::atoi(code + 1);
    switch (code[0]) {
    case 'N':
    case 'T': type.type = SqlType::Number; break;
    case 'D':
    case 'H': type.type = SqlType::Date; break;
    case 'L': type.type = SqlType::Long; break;
    case 'C': type.type = SqlType::Clob; break;
    case 'R':
        type.type = SqlType::Raw;
        type.length = length;
        break;
    default: type.length = length;
    }
    return type;
}

// The expression in the stored form of its type.
std::string typedSql(const DictionaryColumn& column) {
    if (!column.sql)
        return "NULL";
    switch (column.type[0]) {
    case 'N': return std::string("num_from_int(") + column.sql + ")";
    case 'T': return std::string("text_num(") + column.sql + ")";
    case 'H':
    case 'R': return std::string("ora_hextoraw(") + column.sql + ")";
    default: return column.sql;
    }
}

class RelationBuilder {
public:
    RelationBuilder(std::string name, const char* from) {
        m_relation.kind = Relation::Kind::Dictionary;
        m_relation.owner = "SYS";
        m_relation.name = std::move(name);
        m_relation.readOnly = true;
        m_from = from ? from : "(SELECT 1) WHERE 0";
    }
    void add(const DictionaryColumn& column) {
        CatalogColumn entry;
        entry.name = column.name;
        entry.type = typeOf(column.type);
        entry.sqlName = "c" + std::to_string(m_relation.columns.size() + 1);
        m_select += m_select.empty() ? "(SELECT " : ", ";
        m_select += typedSql(column) + " AS " + entry.sqlName;
        m_relation.columns.push_back(std::move(entry));
    }
    RelationPtr take() {
        m_relation.source = m_select + " FROM " + m_from + ")";
        return std::make_shared<const Relation>(std::move(m_relation));
    }

private:
    Relation m_relation;
    std::string m_select;
    std::string m_from;
};

struct Entry {
    const DictionaryView* view;
    bool withOwner;
};

// Every name under which a view is found. The texts live as long as the program.
using NameTable = std::map<std::string, Entry, std::less<>>;

void addForms(NameTable& names, const DictionaryView& view) {
    using enum DictionaryView::Form;
    if (view.form == Plain) {
        names.emplace(view.name, Entry{&view, false});
        return;
    }
    names.emplace(std::string("USER_") + view.name, Entry{&view, view.form == OwnerShown});
    names.emplace(std::string("ALL_") + view.name, Entry{&view, true});
    names.emplace(std::string("DBA_") + view.name, Entry{&view, true});
}

const NameTable& nameTable() {
    static const NameTable table = [] {
        NameTable names;
        for (const auto views : {objectViews(), serverViews(), absentViews()})
            for (const DictionaryView& view : views)
                addForms(names, view);
        return names;
    }();
    return table;
}

std::string_view withoutAlias(std::string_view name) {
    const DictionaryAlias* const alias = findNamed(dictionaryAliases(), name);
    return alias ? alias->target : name;
}

OwnerNaming ownerNaming(const DictionaryView& view) {
    const OwnerNaming* const naming = findNamed(ownerNamings, view.name);
    return naming ? *naming : OwnerNaming{view.name, "OWNER", false};
}

std::vector<DictionaryColumn> columnsOf(const Entry& entry) {
    const auto own = entry.view->columns;
    std::vector<DictionaryColumn> columns(own.begin(), own.end());
    if (!entry.withOwner)
        return columns;
    const OwnerNaming naming = ownerNaming(*entry.view);
    if (naming.withTableOwner) {
        const auto table =
            std::find_if(columns.begin(), columns.end(), [](const DictionaryColumn& column) {
                return std::string_view(column.name) == "TABLE_NAME";
            });
        columns.insert(table, {"TABLE_OWNER", "V128", ownerSql});
    }
    columns.insert(columns.begin(), {naming.owner, "V128", ownerSql});
    return columns;
}

RelationPtr build(const std::string& name, const Entry& entry) {
    RelationBuilder builder(name, entry.view->from);
    for (const DictionaryColumn& column : columnsOf(entry))
        builder.add(column);
    return builder.take();
}

// [{"name": …, "comment": …, "columns": […]}]
std::string dictionaryJson() {
    std::string json;
    for (const auto& [name, entry] : nameTable()) {
        if (!entry.view->comment)
            continue;
        json += json.empty() ? "[" : ",";
        json += "{\"name\":" + jsonText(name) + ",\"comment\":" + jsonText(entry.view->comment) +
                ",\"columns\":[";
        for (const DictionaryColumn& column : columnsOf(entry))
            json += jsonText(column.name) + ",";
        json.back() = ']';
        json += "}";
    }
    return json + "]";
}

void resultText(sqlite3_context* context, const std::string& text) {
    sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void dictionaryFunction(sqlite3_context* context, int, sqlite3_value**) {
    static const std::string json = dictionaryJson();
    resultText(context, json);
}

const FunctionContext& sessionOf(sqlite3_context* context) {
    return *static_cast<const FunctionContext*>(sqlite3_user_data(context));
}

void sessionsFunction(sqlite3_context* context, int, sqlite3_value**) {
    resultText(context, sessionsJson(int(sessionOf(context).sid)));
}

// [[name, abbreviation], …] of the time zones that the system knows.
void zoneNamesFunction(sqlite3_context* context, int, sqlite3_value**) {
    constexpr int Months[] = {1, 7}; // one of them has daylight saving time
    const int year = QDate::currentDate().year();
    QJsonArray rows;
    for (const QByteArray& id : QTimeZone::availableTimeZoneIds()) {
        const QTimeZone zone(id);
        QStringList abbreviations;
        for (const int month : Months)
            abbreviations << zone.abbreviation(QDate(year, month, 1).startOfDay(zone));
        abbreviations.removeDuplicates();
        for (const QString& abbreviation : std::as_const(abbreviations))
            rows << QJsonArray{QString::fromLatin1(id), abbreviation};
    }
    resultText(context, QJsonDocument(rows).toJson(QJsonDocument::Compact).toStdString());
}

void dependenciesFunction(sqlite3_context* context, int, sqlite3_value**) {
    resultText(context, sessionOf(context).dependencies());
}

void viewIsValidFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
    const auto* name = reinterpret_cast<const char*>(sqlite3_value_text(arguments[0]));
    sqlite3_result_int(context, name && sessionOf(context).viewIsValid(name));
}

} // namespace

RelationPtr dictionaryRelation(std::string_view name) {
    static const auto relations = [] {
        std::map<std::string, RelationPtr, std::less<>> built;
        for (const auto& [viewName, entry] : nameTable())
            built.emplace(viewName, build(viewName, entry));
        return built;
    }();
    const auto found = relations.find(withoutAlias(name));
    return found == relations.end() ? nullptr : found->second;
}

void registerDictionaryFunctions(sqlite3* db, const FunctionContext& session) {
    using Function = void (*)(sqlite3_context*, int, sqlite3_value**);
    struct Entry {
        const char* name;
        int arguments;
        Function function;
    };
    const Entry functions[] = {
        {"ora_dictionary", 0, dictionaryFunction},     {"ora_sessions", 0, sessionsFunction},
        {"ora_dependencies", 0, dependenciesFunction}, {"ora_zone_names", 0, zoneNamesFunction},
        {"ora_view_valid", 1, viewIsValidFunction},
    };
    for (const auto& [name, arguments, function] : functions)
        sqlite3_create_function_v2(db, name, arguments, SQLITE_UTF8,
                                   const_cast<FunctionContext*>(&session), function, nullptr,
                                   nullptr, nullptr);
}

} // namespace ora
