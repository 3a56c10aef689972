#pragma once

#include "FunctionCall.h"
#include "StoredValue.h"

#include <string>
#include <vector>

namespace ora {

// The rows of a partition, in order, and the frame of the first one that has not left. Behind its
// own arguments each row brings a key, its frame's lower and its upper end:
// key a sort_key: ends are keys too, NULL for those of the partition, and the rows' keys rise
// (RANGE); key NULL: ends are distances in rows, below zero for rows before it, NULL for no rows
// (ROWS).
class FrameRows {
public:
    static constexpr int Bounds = 3;
    static constexpr const char* AllBefore = "-9223372036854775807";
    static constexpr const char* AllBehind = "9223372036854775807";

    struct Range {
        std::size_t first;
        std::size_t end; // not less than first
    };

    void add(Call& call);
    void leave() { ++m_current; }
    Range frame() const;
    std::span<sqlite3_value*> arguments(std::size_t row) { return m_rows[row].arguments; }

private:
    struct Row {
        std::vector<StoredValue> kept;
        std::vector<sqlite3_value*> arguments;
        StoredValue low;
        StoredValue high;
    };

    Range byDistance(const Row& row) const;
    Range byKey(const Row& row) const;
    std::size_t within(std::int64_t from, std::int64_t distance) const;

    std::vector<Row> m_rows;
    std::vector<std::string> m_keys; // with RANGE
    std::size_t m_current = 0;
};

} // namespace ora
