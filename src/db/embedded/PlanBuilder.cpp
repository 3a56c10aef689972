#include "PlanBuilder.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace ora {

namespace {

// Costs are in block reads, as the server counts them; these only need to be in proportion.
constexpr double rowsPerBlock = 50;
constexpr double scanStart = 2;
constexpr double indexStart = 1;
constexpr double rowCost = 0.01;
constexpr double rangeShare = 0.05; // of a table, where nothing tells how much a condition leaves
constexpr double sortShare = 0.002;

ObjectId idIn(std::string_view name) {
    ObjectId id = 0;
    if (name.size() > 1)
        std::from_chars(name.data() + 1, name.data() + name.size(), id);
    return id;
}

std::string_view wordAfter(std::string_view text, std::string_view start) {
    const size_t at = text.find(start);
    if (at == text.npos)
        return {};
    text.remove_prefix(at + start.size());
    return text.substr(0, text.find(' '));
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != text.npos;
}

PlanNode over(PlanNode child, std::string operation, std::string options) {
    PlanNode node;
    node.operation = std::move(operation);
    node.options = std::move(options);
    node.cost = child.cost;
    node.cardinality = child.cardinality;
    node.children.push_back(std::move(child));
    return node;
}

PlanNode sorted(PlanNode child, std::string operation, std::string options) {
    const double rows = child.cardinality;
    PlanNode node = over(std::move(child), std::move(operation), std::move(options));
    node.cost += 1 + sortShare * rows * std::log2(rows + 2);
    return node;
}

PlanNode join(PlanNode outer, PlanNode inner, bool hashed) {
    PlanNode node;
    node.operation = hashed ? "HASH JOIN" : "NESTED LOOPS";
    node.cardinality = std::max(1.0, outer.cardinality * inner.cardinality);
    node.cost = hashed ? outer.cost + inner.cost + rowCost * node.cardinality
                       : outer.cost + std::max(1.0, outer.cardinality) * inner.cost;
    node.children.push_back(std::move(outer));
    node.children.push_back(std::move(inner));
    return node;
}

struct SortWords {
    std::string_view purpose;
    const char* operation;
    const char* options;
};
constexpr SortWords sortWords[] = {
    {"GROUP BY", "SORT", "GROUP BY"},
    {"DISTINCT", "SORT", "UNIQUE"},
    {"ORDER BY", "SORT", "ORDER BY"},
};

struct SetWords {
    std::string_view start;
    const char* operation;
    bool sorts;
};
constexpr SetWords setWords[] = {
    {"UNION ALL", "UNION-ALL", false},
    {"UNION", "UNION-ALL", true},
    {"INTERSECT", "INTERSECTION", false},
    {"EXCEPT", "MINUS", false},
};

} // namespace

PlanBuilder::PlanBuilder(const SqliteDatabase& db, const DatabaseCatalog& catalog,
                         std::map<std::string, std::string> aliases)
    : m_catalog(catalog)
    , m_statistics(db)
    , m_aliases(std::move(aliases)) {}

std::string PlanBuilder::storedTable(const std::string& alias) const {
    const auto found = m_aliases.find(alias);
    return found == m_aliases.end() ? std::string() : found->second;
}

void PlanBuilder::setTable(PlanNode& node, const std::string& sqlTable) const {
    node.object = idIn(sqlTable);
    if (const auto object = m_catalog.store().object(node.object))
        node.objectName = object->name;
    node.objectType = "TABLE";
}

PlanNode PlanBuilder::fullScan(const std::string& table) {
    PlanNode node;
    node.operation = "TABLE ACCESS";
    node.options = "FULL";
    setTable(node, table);
    node.cardinality = m_statistics.rows(table);
    node.cost = scanStart + node.cardinality / rowsPerBlock;
    return node;
}

// "SEARCH a USING COVERING INDEX i5 (c1=? AND c2>?)"
PlanNode PlanBuilder::indexAccess(const std::string& table, std::string_view detail) {
    const std::string sqlIndex(wordAfter(detail, " INDEX "));
    const IndexDefinition index = m_catalog.store().index(idIn(sqlIndex));
    const bool searched = detail.starts_with("SEARCH");
    const auto equalities = std::count(detail.begin(), detail.end(), '=') -
                            (contains(detail, "<=") ? 1 : 0) - (contains(detail, ">=") ? 1 : 0);
    const bool exact = searched && index.unique && equalities == std::ptrdiff_t(index.keys.size());
    const double rows = m_statistics.rows(table);

    PlanNode scan;
    scan.operation = "INDEX";
    scan.options = exact ? "UNIQUE SCAN" : searched ? "RANGE SCAN" : "FULL SCAN";
    scan.object = index.id;
    scan.objectName = index.name;
    scan.objectType = index.unique ? "INDEX (UNIQUE)" : "INDEX";
    scan.cardinality = !searched ? rows : exact ? 1 : rows * rangeShare;
    if (searched && !exact && equalities > 0)
        scan.cardinality = m_statistics.rowsPerKey(table, sqlIndex, int(equalities));
    scan.cost = indexStart + scan.cardinality / (2 * rowsPerBlock);
    if (contains(detail, "COVERING INDEX"))
        return scan;
    PlanNode node = over(std::move(scan), "TABLE ACCESS", "BY INDEX ROWID");
    setTable(node, table);
    node.cost += 1 + node.cardinality / rowsPerBlock;
    return node;
}

// A subquery that was made apart: a view, or a WITH clause. Its generated name is not shown.
PlanNode PlanBuilder::namedBlock(const std::string& name) {
    const auto found = m_blocks.find(name);
    if (found == m_blocks.end()) {
        PlanNode node;
        node.operation = "VIEW";
        node.cardinality = 1;
        node.cost = 1;
        return node;
    }
    const EngineStep* step = found->second;
    if (!m_expanding.insert(name).second) { // the rows of the level before
        PlanNode pump;
        pump.operation = "CONNECT BY PUMP";
        pump.cardinality = pump.cost = 1;
        return pump;
    }
    const bool recurses = std::any_of(step->children.begin(), step->children.end(),
                                      [](const auto& line) { return line.detail == "SETUP"; });
    PlanNode view = over(recurses ? recursive(*step) : block(*step), "VIEW", {});
    m_expanding.erase(name);
    return view;
}

PlanNode PlanBuilder::access(const EngineStep& step) {
    const std::string_view detail = step.detail;
    const size_t blank = detail.find(' ');
    const std::string alias(detail.substr(blank + 1, detail.find(' ', blank + 1) - blank - 1));
    const std::string table = storedTable(alias);
    if (detail.starts_with("SCAN CONSTANT ROW") || contains(detail, "CONSTANT ROWS")) {
        PlanNode node;
        node.operation = "FAST DUAL";
        node.cardinality = 1;
        node.cost = scanStart;
        return node;
    }
    if (contains(detail, "VIRTUAL TABLE")) {
        PlanNode node;
        const bool lateral = contains(detail, ":LATERAL");
        node.operation = lateral ? "VIEW" : "FIXED TABLE";
        node.options = lateral ? "" : "FULL";
        node.cardinality = 1;
        node.cost = 1;
        return node;
    }
    if (table.empty())
        return namedBlock(alias);
    if (step.detail.starts_with("MULTI-INDEX"))
        return multiIndex(step);
    if (contains(detail, "AUTOMATIC"))
        return fullScan(table);
    if (contains(detail, "INTEGER PRIMARY KEY")) {
        PlanNode node = fullScan(table);
        node.options = contains(detail, "(rowid=?)") ? "BY USER ROWID" : "BY ROWID RANGE";
        node.cardinality = contains(detail, "(rowid=?)") ? 1 : node.cardinality * rangeShare;
        node.cost = 1 + node.cardinality / rowsPerBlock;
        return node;
    }
    if (contains(detail, " INDEX "))
        return indexAccess(table, detail);
    return fullScan(table);
}

// "MULTI-INDEX OR" over "INDEX 1", "INDEX 2": each reads an index, the rows are put together.
PlanNode PlanBuilder::multiIndex(const EngineStep& step) {
    PlanNode node;
    node.operation = "CONCATENATION";
    for (const EngineStep& index : step.children) {
        for (const EngineStep& line : index.children) {
            node.children.push_back(access(line));
            node.cost += node.children.back().cost;
            node.cardinality += node.children.back().cardinality;
        }
    }
    return node;
}

PlanNode PlanBuilder::joined(const std::vector<const EngineStep*>& accesses) {
    PlanNode result;
    bool first = true;
    for (const EngineStep* line : accesses) {
        const bool hashed = contains(line->detail, "AUTOMATIC");
        PlanNode source =
            line->detail.starts_with("MULTI-INDEX") ? multiIndex(*line) : access(*line);
        if (hashed) // one of many rows fits, as far as anybody knows
            source.cardinality = std::max(1.0, std::sqrt(source.cardinality));
        result = first ? std::move(source) : join(std::move(result), std::move(source), hashed);
        if (!first && contains(line->detail, "LEFT-JOIN"))
            result.options = "OUTER";
        first = false;
    }
    return result;
}

PlanNode PlanBuilder::recursive(const EngineStep& step) {
    PlanNode node;
    node.operation = "CONNECT BY";
    node.options = "WITHOUT FILTERING";
    for (const EngineStep& line : step.children) {
        node.children.push_back(block(line));
        node.cost += node.children.back().cost;
        node.cardinality += node.children.back().cardinality;
    }
    return node;
}

PlanNode PlanBuilder::compound(const EngineStep& step) {
    PlanNode result;
    bool sorts = false;
    for (const EngineStep& part : step.children) {
        PlanNode branch = block(part);
        for (const SetWords& words : setWords) {
            if (!part.detail.starts_with(words.start))
                continue;
            result.operation = words.operation;
            sorts = sorts || words.sorts;
            break;
        }
        result.cost += branch.cost;
        result.cardinality += branch.cardinality;
        result.children.push_back(std::move(branch));
    }
    if (result.operation.empty())
        result.operation = "UNION-ALL";
    return sorts ? sorted(std::move(result), "SORT", "UNIQUE") : result;
}

PlanBuilder::Sources PlanBuilder::sortLines(const EngineStep& step) {
    Sources sources;
    for (const EngineStep& line : step.children) {
        const std::string_view detail = line.detail;
        if (detail.starts_with("CO-ROUTINE ") || detail.starts_with("MATERIALIZE "))
            m_blocks[std::string(detail.substr(detail.find(' ') + 1))] = &line;
        else if (detail.starts_with("USE TEMP B-TREE"))
            sources.sorts.push_back(&line);
        else if (contains(detail, "SUBQUERY") && !detail.starts_with("SCAN"))
            sources.subqueries.push_back(&line);
        else if (detail.starts_with("COMPOUND QUERY") || detail.starts_with("MERGE ("))
            sources.compound = &line;
        else if (detail.starts_with("SCAN") || detail.starts_with("SEARCH") ||
                 detail.starts_with("MULTI-INDEX"))
            sources.accesses.push_back(&line);
    }
    return sources;
}

PlanNode PlanBuilder::block(const EngineStep& step) {
    const Sources sources = sortLines(step);
    PlanNode node = sources.compound ? compound(*sources.compound) : joined(sources.accesses);
    if (node.operation.empty()) {
        node.operation = "FAST DUAL";
        node.cardinality = 1;
        node.cost = scanStart;
    }
    for (const EngineStep* line : sources.subqueries) {
        const double repeated = contains(line->detail, "CORRELATED") ? node.cardinality : 1;
        PlanNode inner = block(*line);
        PlanNode filter = over(std::move(node), "FILTER", {});
        filter.cost += inner.cost * std::max(1.0, repeated);
        filter.children.push_back(std::move(inner));
        node = std::move(filter);
    }
    for (const EngineStep* line : sources.sorts) {
        for (const SortWords& words : sortWords) {
            if (contains(line->detail, words.purpose)) {
                node = sorted(std::move(node), words.operation, words.options);
                break;
            }
        }
    }
    return node;
}

} // namespace ora
