#include "FrameRows.h"

#include <algorithm>

namespace ora {

namespace {

bool isNull(const StoredValue& value) {
    return sqlite3_value_type(value.get()) == SQLITE_NULL;
}

std::string_view keyOf(const StoredValue& value) {
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value.get()));
    return {bytes, static_cast<std::size_t>(sqlite3_value_bytes(value.get()))};
}

} // namespace

void FrameRows::add(Call& call) {
    Row& row = m_rows.emplace_back();
    const std::size_t own = call.count() - Bounds;
    for (std::size_t i = 0; i < own; ++i)
        row.arguments.push_back(row.kept.emplace_back(call.value(i)).get());
    if (!call.isNull(own))
        m_keys.emplace_back(call.bytes(own));
    row.low = StoredValue(call.value(own + 1));
    row.high = StoredValue(call.value(own + 2));
}

FrameRows::Range FrameRows::frame() const {
    if (m_current >= m_rows.size())
        return {m_rows.size(), m_rows.size()};
    const Row& row = m_rows[m_current];
    const Range range = m_keys.empty() ? byDistance(row) : byKey(row);
    return {range.first, std::max(range.first, range.end)};
}

FrameRows::Range FrameRows::byDistance(const Row& row) const {
    const auto here = static_cast<std::int64_t>(m_current);
    if (isNull(row.low) || isNull(row.high))
        return {m_current, m_current};
    return {within(here, sqlite3_value_int64(row.low.get())),
            within(here + 1, sqlite3_value_int64(row.high.get()))};
}

// So many rows away, no farther than the partition.
std::size_t FrameRows::within(std::int64_t from, std::int64_t distance) const {
    const auto end = static_cast<std::int64_t>(m_rows.size());
    return static_cast<std::size_t>(from +
                                    std::clamp(distance, -from, std::max(-from, end - from)));
}

FrameRows::Range FrameRows::byKey(const Row& row) const {
    const auto first = isNull(row.low)
                           ? m_keys.begin()
                           : std::lower_bound(m_keys.begin(), m_keys.end(), keyOf(row.low));
    const auto end = isNull(row.high)
                         ? m_keys.end()
                         : std::upper_bound(m_keys.begin(), m_keys.end(), keyOf(row.high));
    return {static_cast<std::size_t>(first - m_keys.begin()),
            static_cast<std::size_t>(end - m_keys.begin())};
}

} // namespace ora
