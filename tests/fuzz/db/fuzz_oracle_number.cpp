#include "DecimalSum.h"
#include "NumberMath.h"
#include "OraError.h"
#include "OracleNumber.h"

#include <cstdlib>
#include <string_view>

// Any text as a number, and any bytes as two stored ones: no crash; what is a number prints and
// reads back as itself, and sound values obey their laws.

namespace {

using ora::OracleNumber;

void require(bool held) {
    if (!held)
        std::abort();
}

void checkText(std::string_view text) {
    const auto number = OracleNumber::parse(text);
    if (!number)
        return;
    const std::string cell = number->cellText();
    require(cell.size() <= OracleNumber::MaxTextSize);
    require(*OracleNumber::parse(cell) == *number);
    require(OracleNumber::parse(number->text()).has_value());
    require(number->negated().negated() == *number);
    require(number->truncated(0) <= number->absolute());
    require(number->floor() <= *number && *number <= number->ceiling());
}

// Damaged bytes may give any result or a failure.
void exercise(const OracleNumber& a, const OracleNumber& b) {
    const auto attempt = [](auto action) {
        try {
            (void)action().cellText();
        } catch (const ora::OraError&) {
        }
    };
    attempt([&] { return a + b; });
    attempt([&] { return a - b; });
    attempt([&] { return a * b; });
    attempt([&] { return a / b; });
    attempt([&] { return a.rounded(b.toInteger() % 100); });
    attempt([&] { return a.fitted(10, 2); });
    attempt([&] { return ora::math::modulo(a, b); });
    attempt([&] { return ora::math::remainder(a, b); });
    attempt([&] { return ora::math::power(a, b); });
    attempt([&] { return ora::math::ln(a); });
    attempt([&] { return ora::math::sin(a); });
    attempt([&] { return ora::math::squareRoot(a); });
    attempt([&] { return OracleNumber::fromDouble(a.toDouble()); });
    attempt([&] {
        ora::DecimalSum sum;
        sum.add(a.bytes());
        sum.subtract(b.bytes());
        return sum.number();
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        checkText({reinterpret_cast<const char*>(data), size});
    } catch (const ora::OraError& error) {
        require(error.code() == 1426);
    }
    const std::size_t half = size / 2;
    exercise(OracleNumber::fromBytes(data, half),
             OracleNumber::fromBytes(data + half, size - half));
    return 0;
}
