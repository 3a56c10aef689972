#include "OracleNumber.h"

#include "AsciiText.h"
#include "OraError.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace ora {

namespace {

constexpr int Ten = 10;

// "00" to "99", two characters each.
constexpr auto digitPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < pairs.size() / 2; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / Ten);
        pairs[2 * i + 1] = static_cast<char>('0' + i % Ten);
    }
    return pairs;
}();

// Decimal digits as they are read; those past the ones that can matter are only counted.
class DigitCollector {
public:
    void add(char c, bool afterPoint) {
        m_any = true;
        const int value = c - '0';
        if (m_count == 0 && value == 0) {
            m_pointShift -= afterPoint ? 1 : 0;
            return;
        }
        if (m_count < Most)
            m_digit[m_count] = static_cast<std::uint8_t>(value);
        ++m_count;
        if (!afterPoint)
            ++m_pointShift;
    }

    bool any() const { return m_any; }

    // exponent: what stood after the E.
    OracleNumber number(bool negative, int exponent) const {
        OracleNumber::Digits result;
        result.negative = negative;
        // The number is 0.ddd x 10^point; an odd point leaves the first base-100 digit half empty.
        const int point = m_pointShift + exponent;
        const bool half = (point & 1) != 0;
        result.exponent = (half ? point + 1 : point) / 2 - 1;
        const int used = std::min(m_count, Most);
        int at = 0;
        if (half && used > 0)
            result.digit[result.count++] = m_digit[at++];
        while (at < used && result.count < static_cast<int>(result.digit.size())) {
            const int tens = m_digit[at];
            const int ones = at + 1 < used ? m_digit[at + 1] : 0;
            result.digit[result.count++] = static_cast<std::uint8_t>(tens * Ten + ones);
            at += 2;
        }
        return OracleNumber::fromDigits(result);
    }

private:
    static constexpr int Most = 2 * (OracleNumber::MaxDigits + 1);

    std::array<std::uint8_t, Most> m_digit;
    int m_count = 0;
    int m_pointShift = 0;
    bool m_any = false;
};

// Reads "E+12" at `at`; false when something else stands there.
bool readExponent(std::string_view text, std::size_t& at, int& exponent) {
    constexpr int Limit = 100000; // farther than any value reaches
    std::size_t next = at + 1;
    bool negative = false;
    if (next < text.size() && (text[next] == '+' || text[next] == '-'))
        negative = text[next++] == '-';
    if (next >= text.size() || !isAsciiDigit(text[next]))
        return false;
    for (; next < text.size() && isAsciiDigit(text[next]); ++next)
        exponent = std::min(exponent * Ten + (text[next] - '0'), Limit);
    if (negative)
        exponent = -exponent;
    at = next;
    return true;
}

} // namespace

std::optional<OracleNumber> OracleNumber::parse(std::string_view text) {
    text = trimmedAscii(text);
    constexpr std::size_t MostText = 4000; // the longest text that the server converts
    if (text.size() > MostText)
        return std::nullopt;
    std::size_t at = 0;
    bool negative = false;
    if (at < text.size() && (text[at] == '+' || text[at] == '-'))
        negative = text[at++] == '-';
    DigitCollector digits;
    for (; at < text.size() && isAsciiDigit(text[at]); ++at)
        digits.add(text[at], false);
    if (at < text.size() && text[at] == '.') {
        for (++at; at < text.size() && isAsciiDigit(text[at]); ++at)
            digits.add(text[at], true);
    }
    if (!digits.any())
        return std::nullopt;
    int exponent = 0;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        if (!readExponent(text, at, exponent))
            return std::nullopt;
    }
    if (at != text.size())
        return std::nullopt;
    return digits.number(negative, exponent);
}

OracleNumber OracleNumber::fromDouble(double value) {
    if (!std::isfinite(value))
        throw OraError(1426, "numeric overflow");
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, value);
    return parse(std::string_view(text, static_cast<std::size_t>(end.ptr - text)))
        .value_or(OracleNumber());
}

double OracleNumber::toDouble() const {
    const Digits number = digits();
    char text[MaxTextSize];
    char* out = text;
    if (number.negative)
        *out++ = '-';
    *out++ = '0';
    for (int i = 0; i < number.count; ++i, out += 2)
        std::memcpy(out, &digitPairs[2 * number.digit[i]], 2);
    *out++ = 'e';
    out = std::to_chars(out, text + sizeof text, 2 * (number.exponent - number.count + 1)).ptr;
    double value = 0;
    std::from_chars(text, out, value);
    return value;
}

namespace {

char* writePair(char* out, int digit) {
    std::memcpy(out, &digitPairs[2 * digit], 2);
    return out + 2;
}

// The part before the point, without leading zero; nothing when it is zero.
char* writeWhole(char* out, const OracleNumber::Digits& number) {
    for (int i = 0; i <= number.exponent; ++i) {
        const int digit = i < number.count ? number.digit[i] : 0;
        if (i == 0 && digit < Ten)
            *out++ = static_cast<char>('0' + digit);
        else
            out = writePair(out, digit);
    }
    return out;
}

// The digits after the point, without trailing zeros.
char* writeFraction(char* out, const OracleNumber::Digits& number) {
    for (int i = number.exponent + 1; i < 0; ++i)
        out = writePair(out, 0);
    for (int i = std::max(number.exponent + 1, 0); i < number.count; ++i)
        out = writePair(out, number.digit[i]);
    return out[-1] == '0' ? out - 1 : out;
}

bool hasFraction(const OracleNumber::Digits& number) {
    return number.exponent - number.count + 1 < 0;
}

} // namespace

std::size_t OracleNumber::writeCell(char* out) const {
    const Digits number = digits();
    char* const start = out;
    if (number.count == 0) {
        *out = '0';
        return 1;
    }
    if (number.negative)
        *out++ = '-';
    if (number.exponent < 0)
        *out++ = '0';
    else
        out = writeWhole(out, number);
    if (hasFraction(number)) {
        *out++ = '.';
        out = writeFraction(out, number);
    }
    return static_cast<std::size_t>(out - start);
}

std::string OracleNumber::cellText() const {
    char text[MaxTextSize];
    return std::string(text, writeCell(text));
}

namespace {

constexpr std::size_t TextWidth = 40; // characters that the server gives a number, without sign
constexpr int ExponentDigits = 35;    // significant ones when it has an exponent

// Power of ten of the first digit.
int decimalExponent(const OracleNumber::Digits& number) {
    return 2 * number.exponent + (number.digit[0] >= Ten ? 1 : 0);
}

std::string withExponent(const OracleNumber& value) {
    const int exponent = decimalExponent(value.digits());
    const OracleNumber rounded = value.rounded(ExponentDigits - 1 - exponent);
    const int shown = decimalExponent(rounded.digits()); // rounding may carry into a new digit
    std::string digits;
    const OracleNumber::Digits number = rounded.digits();
    for (int i = 0; i < number.count; ++i)
        digits.append(&digitPairs[2 * number.digit[i]], 2);
    if (digits.front() == '0')
        digits.erase(0, 1);
    digits.resize(ExponentDigits, '0');
    std::string text = value.isNegative() ? "-" : "";
    text += digits[0];
    text += '.';
    text.append(digits, 1);
    text += shown < 0 ? "E-" : "E+";
    const std::string power = std::to_string(std::abs(shown));
    return text + (power.size() < 2 ? "0" + power : power);
}

// Without the zero before the point.
std::string withoutLeadingZero(std::string cell) {
    const std::size_t first = cell.starts_with('-') ? 1 : 0;
    if (cell.compare(first, 2, "0.") == 0)
        cell.erase(first, 1);
    return cell;
}

std::size_t widthOf(const std::string& text) {
    return text.size() - (text.starts_with('-') ? 1 : 0);
}

} // namespace

std::string OracleNumber::text() const {
    std::string plain = withoutLeadingZero(cellText());
    if (widthOf(plain) <= TextWidth)
        return plain;
    const int exponent = decimalExponent(digits());
    const int most = static_cast<int>(TextWidth);
    if (exponent >= most)
        return withExponent(*this);
    // Fewer digits fit when zeros stand after the point; an exponent then keeps more of them.
    const int wholeDigits = std::max(exponent + 1, 0);
    const int places = most - 1 - wholeDigits;
    if (exponent < 0 && places + exponent + 1 < ExponentDigits)
        return withExponent(*this);
    return withoutLeadingZero(rounded(places).cellText());
}

} // namespace ora
