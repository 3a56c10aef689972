#include "DeferredConstraints.h"

#include "AsciiText.h"
#include "ErrorText.h"
#include "TableSql.h"

#include <algorithm>

namespace ora {

namespace {

OraError rolledBack(const OraError& cause) {
    constexpr int TransactionRolledBack = 2091;
    return {TransactionRolledBack, "transaction rolled back\n" + cause.message()};
}

} // namespace

const std::vector<DeferredConstraints::Entry>& DeferredConstraints::entries() const {
    if (!m_entries)
        m_entries = load();
    return *m_entries;
}

std::vector<DeferredConstraints::Entry> DeferredConstraints::load() const {
    SqliteStatement row = m_db.prepare(
        "SELECT k.id, k.object, p.object FROM ora_constraints k LEFT JOIN ora_constraints p ON "
        "p.id = k.referenced WHERE k.enabled AND (k.can_defer OR p.can_defer) ORDER BY k.id");
    std::vector<Entry> entries;
    while (row.step()) {
        const TableDefinition table = m_catalog.store().table(row.integer(1));
        for (const ConstraintDefinition& constraint : table.constraints)
            if (constraint.id == row.integer(0))
                entries.push_back({constraint, table.id, row.integer(2),
                                   violationSql(table, constraint, m_catalog.store())});
    }
    return entries;
}

bool DeferredConstraints::waits(const Entry& entry) const {
    if (!entry.constraint.deferrable)
        return false;
    const auto said = m_waits.find(entry.constraint.id);
    if (said != m_waits.end())
        return said->second;
    return m_sessionWaits.value_or(entry.constraint.deferred);
}

// Triggers and what follows a deleted parent change other tables.
bool DeferredConstraints::reaches(std::optional<ObjectId> target, RowAction action,
                                  const Entry& entry) const {
    return !target || entry.table == *target || entry.parent == *target ||
           action == RowAction::Delete || !m_catalog.store().triggersOf(*target).empty();
}

bool DeferredConstraints::isBroken(const Entry& entry) const {
    return m_db.prepare(entry.violation).step();
}

void DeferredConstraints::check(std::optional<ObjectId> target, RowAction action, bool commits) {
    for (const Entry& entry : entries()) {
        if (!reaches(target, action, entry))
            continue;
        const bool waiting = waits(entry);
        const bool removesParent =
            target == entry.parent && (action == RowAction::Delete || entry.parent != entry.table);
        if (waiting && !commits) {
            m_pending[entry.constraint.id] |= !removesParent;
            continue;
        }
        if (!isBroken(entry))
            continue;
        const OraError broken = violated(m_catalog, entry.constraint, !removesParent);
        throw waiting ? rolledBack(broken) : broken;
    }
}

std::optional<OraError> DeferredConstraints::firstBroken(const std::vector<ObjectId>& of) const {
    for (const Entry& entry : entries()) {
        const auto pending = m_pending.find(entry.constraint.id);
        const bool asked = std::find(of.begin(), of.end(), entry.constraint.id) != of.end();
        if (asked && pending != m_pending.end() && isBroken(entry))
            return violated(m_catalog, entry.constraint, pending->second);
    }
    return std::nullopt;
}

std::optional<OraError> DeferredConstraints::brokenAtCommit() const {
    std::vector<ObjectId> all;
    for (const auto& [id, ofOwnRows] : m_pending)
        all.push_back(id);
    if (all.empty())
        return std::nullopt;
    const auto broken = firstBroken(all);
    return broken ? std::optional(rolledBack(*broken)) : std::nullopt;
}

std::vector<ObjectId> DeferredConstraints::chosen(const SetConstraints& statement) const {
    constexpr int NotDeferrable = 2447;
    constexpr int NoSuchConstraint = 2448;
    std::vector<ObjectId> ids;
    if (statement.names.empty())
        for (const Entry& entry : entries())
            if (entry.constraint.deferrable)
                ids.push_back(entry.constraint.id);
    for (const ObjectName& name : statement.names) {
        const auto place = m_catalog.isOwn(name.schema.text)
                               ? m_catalog.store().findConstraint(name.name.text)
                               : std::nullopt;
        if (!place)
            raise(NoSuchConstraint);
        const auto entry = std::find_if(entries().begin(), entries().end(), [&](const Entry& one) {
            return one.constraint.id == place->id;
        });
        if (statement.deferred && (entry == entries().end() || !entry->constraint.deferrable))
            raise(NotDeferrable);
        ids.push_back(place->id);
    }
    return ids;
}

void DeferredConstraints::set(const SetConstraints& statement, bool inTransaction) {
    const std::vector<ObjectId> ids = chosen(statement);
    if (!inTransaction) // each statement is a transaction of its own
        return;
    if (!statement.deferred)
        if (const auto broken = firstBroken(ids))
            throw *broken;
    for (const ObjectId id : ids) {
        m_waits[id] = statement.deferred;
        if (!statement.deferred)
            m_pending.erase(id);
    }
}

void DeferredConstraints::setSession(std::string_view value) {
    constexpr int InvalidOption = 2248;
    const std::string word = upperAscii(value);
    if (word == "DEFAULT")
        m_sessionWaits.reset();
    else if (word == "DEFERRED" || word == "IMMEDIATE")
        m_sessionWaits = word == "DEFERRED";
    else
        raise(InvalidOption);
}

void DeferredConstraints::endTransaction() {
    m_waits.clear();
    m_pending.clear();
}

} // namespace ora
