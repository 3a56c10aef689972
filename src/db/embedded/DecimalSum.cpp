#include "DecimalSum.h"

#include <algorithm>

namespace ora {

namespace {

constexpr std::int64_t Base = 100;

// Carries up until every place holds one digit; returns what is left above the last place.
template<std::size_t Count>
std::int64_t carry(std::array<std::int64_t, Count>& places, int first) {
    std::int64_t rest = 0;
    for (auto i = static_cast<std::size_t>(first); i < Count; ++i) {
        const std::int64_t value = places[i] + rest;
        std::int64_t digit = value % Base;
        rest = value / Base;
        if (digit < 0) {
            digit += Base;
            --rest;
        }
        places[i] = digit;
    }
    return rest;
}

} // namespace

void DecimalSum::accumulate(std::string_view bytes, int sign) {
    const OracleNumber::Digits number =
        OracleNumber::fromBytes(bytes.data(), bytes.size()).digits();
    if (number.count == 0)
        return;
    const int top = number.exponent - Lowest;
    const int bottom = top - number.count + 1;
    // Only damaged bytes lie outside.
    if (bottom < 0 || top >= Places - Carries)
        return;
    const int factor = number.negative ? -sign : sign;
    for (int i = 0; i < number.count; ++i)
        m_place[static_cast<std::size_t>(top - i)] += factor * number.digit[i];
    m_first = std::min(m_first, bottom);
    m_last = std::max(m_last, top);
}

OracleNumber DecimalSum::number() const {
    if (m_last < 0)
        return OracleNumber();
    auto places = m_place;
    OracleNumber::Digits result;
    if (carry(places, m_first) < 0) {
        result.negative = true;
        places = m_place;
        for (std::int64_t& place : places)
            place = -place;
        carry(places, m_first);
    }
    int top = Places - 1;
    while (top >= m_first && places[static_cast<std::size_t>(top)] == 0)
        --top;
    result.exponent = top + Lowest;
    const int room = static_cast<int>(result.digit.size());
    for (int i = top; i >= m_first && result.count < room; --i)
        result.digit[result.count++] =
            static_cast<std::uint8_t>(places[static_cast<std::size_t>(i)]);
    return OracleNumber::fromDigits(result);
}

} // namespace ora
