#pragma once

#include "OracleNumber.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace ora {

// The exact sum of any NUMBERs, rounded only when it is read: independent of their order, and
// taking a number away again leaves nothing of it, which moving windows need.
class DecimalSum {
public:
    // A NUMBER's stored bytes.
    void add(std::string_view bytes) { accumulate(bytes, 1); }
    void subtract(std::string_view bytes) { accumulate(bytes, -1); }
    // Throws 1426.
    OracleNumber number() const;

private:
    // One place for each base-100 digit that a NUMBER can have, and room for carries above. 64 bits
    // hold the digits of 10^16 numbers.
    static constexpr int Lowest = OracleNumber::MinExponent - OracleNumber::MaxDigits + 1;
    static constexpr int Carries = 11;
    static constexpr int Places = OracleNumber::MaxExponent - Lowest + 1 + Carries;

    void accumulate(std::string_view bytes, int sign);

    std::array<std::int64_t, Places> m_place{}; // least significant first
    int m_first = Places;                       // places in use
    int m_last = -1;
};

} // namespace ora
