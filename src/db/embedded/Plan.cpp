#include "Plan.h"

#include "OracleNumber.h"
#include "PlanBuilder.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <functional>
#include <variant>

namespace ora {

namespace {

bool isStoredTable(std::string_view word) {
    return word.size() > 1 && word.front() == 't' &&
           std::all_of(word.begin() + 1, word.end(),
                       [](unsigned char c) { return std::isdigit(c); });
}

bool isNameCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '$' || (c & 0x80);
}

// The emitted text's words and quoted names; other texts and signs are passed over, a sign as an
// empty word.
std::vector<std::string> wordsOf(const std::string& sql) {
    std::vector<std::string> words;
    for (size_t at = 0; at < sql.size();) {
        const char c = sql[at];
        size_t end = at + 1;
        if (c == '\'' || c == '"') {
            end = sql.find(c, at + 1);
            end = end == sql.npos ? sql.size() : end + 1;
            words.push_back(c == '"' ? sql.substr(at + 1, end - at - 2) : std::string());
        } else if (isNameCharacter(c)) {
            while (end < sql.size() && isNameCharacter(sql[end]))
                ++end;
            words.push_back(sql.substr(at, end - at));
        } else if (c != ' ' && c != '\n') {
            words.emplace_back();
        }
        at = end;
    }
    return words;
}

EngineStep
treeFrom(std::string detail, sqlite3_int64 id,
         const std::multimap<sqlite3_int64, std::pair<sqlite3_int64, std::string>>& lines) {
    EngineStep step{std::move(detail), {}};
    for (auto [line, end] = lines.equal_range(id); line != end; ++line)
        step.children.push_back(treeFrom(line->second.second, line->second.first, lines));
    return step;
}

} // namespace

std::map<std::string, std::string> tableAliases(const std::string& emittedSql) {
    std::map<std::string, std::string> aliases;
    const std::vector<std::string> words = wordsOf(emittedSql);
    for (size_t i = 0; i < words.size(); ++i) {
        if (!isStoredTable(words[i]))
            continue;
        aliases.emplace(words[i], words[i]);
        size_t next = i + 1;
        if (next < words.size() && words[next] == "AS")
            ++next;
        if (next < words.size() && !words[next].empty())
            aliases.emplace(words[next], words[i]);
    }
    return aliases;
}

EngineStep engineSteps(const SqliteDatabase& db, const std::string& emittedSql) {
    std::multimap<sqlite3_int64, std::pair<sqlite3_int64, std::string>> lines; // by parent
    SqliteStatement rows = db.prepare("EXPLAIN QUERY PLAN " + emittedSql);
    while (rows.step())
        lines.emplace(rows.integer(1), std::pair(rows.integer(0), rows.text(3)));
    return treeFrom({}, 0, lines);
}

double PlanStatistics::rows(const std::string& sqlTable) const {
    SqliteStatement row = m_db.prepare("SELECT max(rowid) FROM " + sqlTable);
    row.step();
    return double(row.integer(0));
}

double PlanStatistics::rowsPerKey(const std::string& sqlTable, const std::string& sqlIndex,
                                  int keys) const {
    constexpr double unknownShare = 0.01;
    const double all = rows(sqlTable);
    SqliteStatement known =
        m_db.prepare("SELECT 1 FROM main.sqlite_schema WHERE name = 'sqlite_stat1'");
    if (!known.step())
        return std::max(1.0, all * unknownShare);
    SqliteStatement row = m_db.prepare("SELECT stat FROM main.sqlite_stat1 WHERE idx = ?1");
    if (!row.bind(1, sqlIndex).step())
        return std::max(1.0, all * unknownShare);
    // "120000 375": all rows, then rows for one value of the first key, of the first two …
    const std::string text = row.text(0);
    const char* at = text.data();
    const char* const end = at + text.size();
    std::int64_t value = 1;
    for (int i = 0; i <= keys && at < end; ++i) {
        at = std::from_chars(at, end, value).ptr;
        while (at < end && *at == ' ')
            ++at;
    }
    return double(value);
}

PlanNode explainPlan(const SqliteDatabase& db, const DatabaseCatalog& catalog,
                     const std::string& emittedSql, const std::string& root,
                     const Relation* target) {
    const EngineStep steps = engineSteps(db, emittedSql);
    PlanBuilder builder(db, catalog, tableAliases(emittedSql));
    PlanNode work = builder.block(steps);
    if (target) {
        PlanNode change;
        change.operation =
            root == "INSERT STATEMENT" ? "LOAD TABLE CONVENTIONAL" : root.substr(0, root.find(' '));
        change.objectName = target->name;
        change.objectType = "TABLE";
        change.cost = work.cost;
        change.cardinality = work.cardinality;
        change.children.push_back(std::move(work));
        work = std::move(change);
    }
    PlanNode plan;
    plan.operation = root;
    plan.cost = work.cost;
    plan.cardinality = work.cardinality;
    plan.children.push_back(std::move(work));
    return plan;
}

namespace {

// One row of the plan table, by column name.
class PlanRow {
public:
    PlanRow(const SqliteDatabase& db, const Relation& table)
        : m_db(db)
        , m_table(table) {}

    void set(const char* column, const std::string& text) {
        if (!text.empty())
            m_values[column] = text;
    }
    void set(const char* column, double number) {
        m_values[column] = OracleNumber(std::int64_t(std::llround(number)));
    }
    void insert() const;

private:
    using Value = std::variant<std::string, OracleNumber>;
    const SqliteDatabase& m_db;
    const Relation& m_table;
    std::map<std::string, Value> m_values;
};

void PlanRow::insert() const {
    std::string columns;
    std::string marks;
    std::vector<const Value*> values;
    for (const CatalogColumn& column : m_table.columns) {
        const auto value = m_values.find(column.name);
        if (value == m_values.end())
            continue;
        values.push_back(&value->second);
        columns += (columns.empty() ? "" : ", ") + column.sqlName;
        marks += (marks.empty() ? "?" : ", ?") + std::to_string(values.size());
    }
    SqliteStatement statement =
        m_db.prepare("INSERT INTO " + m_table.source + " (" + columns + ") VALUES (" + marks + ")");
    for (size_t i = 0; i < values.size(); ++i) {
        if (const auto* text = std::get_if<std::string>(values[i]))
            statement.bind(int(i) + 1, *text);
        else
            statement.bindBlob(int(i) + 1, std::get<OracleNumber>(*values[i]).bytes());
    }
    statement.step();
}

struct PlanPlace {
    int id = 0;
    int parent = -1;
    int position = 0;
};

} // namespace

void storePlan(const SqliteDatabase& db, const PlanNode& plan, const Relation& planTable,
               const std::string& statementId, const std::string& owner) {
    int lastId = -1;
    const std::function<void(const PlanNode&, PlanPlace)> store = [&](const PlanNode& node,
                                                                      PlanPlace place) {
        place.id = ++lastId;
        PlanRow row(db, planTable);
        row.set("STATEMENT_ID", statementId);
        row.set("OPERATION", node.operation);
        row.set("OPTIONS", node.options);
        row.set("OBJECT_NAME", node.objectName);
        row.set("OBJECT_TYPE", node.objectType);
        row.set("OBJECT_OWNER", node.objectName.empty() ? std::string() : owner);
        row.set("ID", place.id);
        if (place.parent >= 0)
            row.set("PARENT_ID", place.parent);
        else
            row.set("OPTIMIZER", std::string("ALL_ROWS"));
        // The root's position is the whole cost, as on the server.
        row.set("POSITION", place.parent >= 0 ? place.position : std::ceil(node.cost));
        row.set("COST", std::ceil(node.cost));
        row.set("CARDINALITY", std::max(1.0, std::ceil(node.cardinality)));
        row.insert();
        int position = 0;
        const int parent = place.id;
        for (const PlanNode& child : node.children)
            store(child, {0, parent, ++position});
    };
    store(plan, {});
}

} // namespace ora
