#include "Sequences.h"

#include "OraError.h"

#include <algorithm>

namespace ora {

namespace {

constexpr int noSuchSequence = 2289;
constexpr int currentNotDefined = 8002;
constexpr int sequenceExhausted = 8004;

OracleNumber numberOf(const std::string& text) {
    return OracleNumber::parse(text).value_or(OracleNumber());
}

} // namespace

OracleNumber SequenceDefinition::after(const OracleNumber& number, const std::string& name) const {
    const bool upwards = !increment.isNegative();
    const OracleNumber following = number + increment;
    if (upwards ? following <= maximum : following >= minimum)
        return following;
    if (cycle)
        return upwards ? minimum : maximum;
    throw OraError(sequenceExhausted, "sequence " + name + ".NEXTVAL " +
                                          (upwards ? "exceeds MAXVALUE" : "goes below MINVALUE") +
                                          " and cannot be instantiated");
}

SequenceDefinition Sequences::load(const SqliteDatabase& db, ObjectId id) {
    SequenceDefinition sequence;
    SqliteStatement row =
        db.prepare("SELECT min_value, max_value, increment, cycle, ordered, cache, last_number,"
                   " identity_of FROM ora_sequences WHERE id = ?1");
    if (!row.bind(1, id).step())
        return sequence;
    sequence.id = id;
    sequence.minimum = numberOf(row.text(0));
    sequence.maximum = numberOf(row.text(1));
    sequence.increment = numberOf(row.text(2));
    sequence.cycle = row.integer(3) != 0;
    sequence.ordered = row.integer(4) != 0;
    sequence.cache = int(row.integer(5));
    sequence.next = numberOf(row.text(6));
    sequence.identityOf = row.integer(7);
    return sequence;
}

void Sequences::save(const SqliteDatabase& db, const SequenceDefinition& sequence) {
    SqliteStatement row = db.prepare(
        "INSERT OR REPLACE INTO ora_sequences VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)");
    row.bind(1, sequence.id).bind(2, sequence.minimum.cellText());
    row.bind(3, sequence.maximum.cellText()).bind(4, sequence.increment.cellText());
    row.bind(5, sqlite3_int64(sequence.cycle)).bind(6, sqlite3_int64(sequence.ordered));
    row.bind(7, sqlite3_int64(sequence.cache)).bind(8, sequence.next.cellText());
    sequence.identityOf == 0 ? row.bindNull(9) : row.bind(9, sequence.identityOf);
    row.step();
}

Sequences::Sequences(const SqliteDatabase& db, std::string owner)
    : m_db(db)
    , m_owner(std::move(owner)) {}

std::string Sequences::bareName(const std::string& name) const {
    const std::string prefix = m_owner + ".";
    return name.starts_with(prefix) ? name.substr(prefix.size()) : name;
}

Sequences::State& Sequences::stateOf(const std::string& name) {
    if (const auto known = m_states.find(name); known != m_states.end())
        return known->second;
    SqliteStatement find = m_db.prepare("SELECT id FROM ora_objects WHERE space = 1 AND"
                                        " kind = 'SEQUENCE' AND name = ?1");
    if (!find.bind(1, name).step())
        throw OraError(noSuchSequence, "sequence does not exist");
    State state;
    state.definition = load(m_db, find.integer(0));
    return m_states.emplace(name, std::move(state)).first->second;
}

// Takes the next numbers from the file, which then names the one after them.
void Sequences::refill(State& state, const std::string& name) {
    state.definition = load(m_db, state.definition.id); // another session may have taken some
    SequenceDefinition& definition = state.definition;
    const bool upwards = !definition.increment.isNegative();
    const bool used =
        upwards ? definition.next > definition.maximum : definition.next < definition.minimum;
    if (used && !definition.cycle)
        definition.after(definition.next, name); // throws
    if (used)
        definition.next = upwards ? definition.minimum : definition.maximum;
    state.coming = definition.next;
    state.left = std::max(definition.cache, 1);
    // The last of the cache may be the last of all; the number after it is then past the end, and
    // the next refill says so.
    definition.next = definition.next + definition.increment * OracleNumber(state.left);
    save(m_db, definition);
}

OracleNumber Sequences::nextValue(const std::string& name) {
    const std::string bare = bareName(name);
    State& state = stateOf(bare);
    const bool upwards = !state.definition.increment.isNegative();
    const bool pastEnd =
        upwards ? state.coming > state.definition.maximum : state.coming < state.definition.minimum;
    if (state.left == 0 || pastEnd)
        refill(state, bare);
    --state.left;
    state.current = state.coming;
    state.coming = state.coming + state.definition.increment;
    return *state.current;
}

OracleNumber Sequences::currentValue(const std::string& name) const {
    const std::string bare = bareName(name);
    const auto state = m_states.find(bare);
    if (state == m_states.end() || !state->second.current)
        throw OraError(currentNotDefined,
                       "sequence " + bare + ".CURRVAL is not yet defined in this session");
    return *state->second.current;
}

OracleNumber Sequences::rowValue(const std::string& name, int place) {
    State& state = stateOf(bareName(name));
    const bool sameRow = state.lastPlace && (place == 0 || place > *state.lastPlace);
    const OracleNumber number = sameRow ? *state.current : nextValue(name);
    state.lastPlace = place;
    return number;
}

void Sequences::beginStatement() {
    for (auto& [name, state] : m_states)
        state.lastPlace.reset();
}

void Sequences::noteAgain() {
    for (auto state = m_states.begin(); state != m_states.end();) {
        const SequenceDefinition stored = load(m_db, state->second.definition.id);
        if (stored.id == 0) { // its creation was undone
            state = m_states.erase(state);
            continue;
        }
        const SequenceDefinition& known = state->second.definition;
        const bool upwards = !known.increment.isNegative();
        if (upwards ? stored.next < known.next : stored.next > known.next)
            save(m_db, known);
        ++state;
    }
}

void Sequences::giveBack(const std::string& name) {
    const auto state = m_states.find(name);
    if (state == m_states.end() || state->second.left == 0)
        return;
    SequenceDefinition stored = load(m_db, state->second.definition.id);
    if (stored.next != state->second.definition.next)
        return;
    stored.next = state->second.coming;
    save(m_db, stored);
}

void Sequences::forget(const std::string& name) {
    if (const auto state = m_states.find(name); state != m_states.end())
        m_states.erase(state);
}

} // namespace ora
