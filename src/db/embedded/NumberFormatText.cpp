#include "NumberFormat.h"

#include "AsciiText.h"
#include "OraError.h"

#include <cstdlib>

namespace ora {

namespace {

constexpr std::size_t LocalCurrencyWidth = 10; // the server keeps room for any symbol
constexpr std::size_t IsoCurrencyWidth = 7;
constexpr std::size_t ExponentWidth = 5; // E+123
constexpr std::size_t RomanWidth = 15;
constexpr std::size_t MinimalWidth = 64; // TM9 goes over to an exponent past this

std::string leftPadded(std::string text, std::size_t width) {
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

// Significant digits without leading or trailing zeros, and the power of ten of the first.
struct Significand {
    std::string digits;
    int exponent = 0;
};

Significand significandOf(const OracleNumber& value) {
    Significand result;
    std::string cell = value.absolute().cellText();
    const auto point = cell.find('.');
    const int wholeSize = static_cast<int>(point == std::string::npos ? cell.size() : point);
    if (point != std::string::npos)
        cell.erase(point, 1);
    const auto first = cell.find_first_not_of('0');
    if (first == std::string::npos)
        return {"0", 0};
    result.exponent = wholeSize - 1 - static_cast<int>(first);
    result.digits = cell.substr(first, cell.find_last_not_of('0') - first + 1);
    return result;
}

std::string exponentText(int exponent) {
    const std::string power = std::to_string(std::abs(exponent));
    return std::string(exponent < 0 ? "E-" : "E+") + (power.size() < 2 ? "0" : "") + power;
}

} // namespace

std::size_t NumberFormat::currencyWidth() const {
    switch (m_currency) {
    case Currency::None: return 0;
    case Currency::Dollar: return 1;
    case Currency::Iso: return IsoCurrencyWidth;
    default: return LocalCurrencyWidth;
    }
}

std::size_t NumberFormat::width() const {
    if (m_style == Style::Roman)
        return RomanWidth;
    const std::size_t sign = m_sign == SignPlace::Brackets ? 2 : 1;
    return m_whole.size() + (m_hasPoint ? 1 : 0) + m_fraction.size() + sign + currencyWidth() +
           (m_style == Style::Scientific ? ExponentWidth : 0);
}

const std::string& NumberFormat::currencyText(const NumberSymbols& symbols) const {
    static const std::string none;
    static const std::string dollar = "$";
    switch (m_currency) {
    case Currency::None: return none;
    case Currency::Dollar: return dollar;
    case Currency::Iso: return symbols.isoCurrency;
    case Currency::Dual: return symbols.dualCurrency;
    default: return symbols.currency;
    }
}

// Digits and group marks from the first that shows; blanks before it are padding.
std::string NumberFormat::wholeText(const std::string& digits, bool zero,
                                    const NumberSymbols& symbols) const {
    const std::string group = m_nlsMarks ? symbols.group : ",";
    std::string text;
    bool started = false;
    std::size_t slotsLeft = static_cast<std::size_t>(m_wholeDigits);
    for (const char slot : m_whole) {
        if (slot == ',') {
            text += started ? group : "";
            continue;
        }
        const bool digit = slotsLeft <= digits.size();
        started = started || digit || (slot == '0' && !m_blankZero);
        if (started)
            text += digit ? digits[digits.size() - slotsLeft] : '0';
        --slotsLeft;
    }
    // A zero shows one digit where nothing else would.
    const bool alone = zero && (m_fraction.empty() || !m_fill) && m_wholeDigits > 0;
    return text.empty() && alone ? "0" : text;
}

std::string NumberFormat::fractionText(std::string digits, const NumberSymbols& symbols) const {
    if (!m_hasPoint)
        return {};
    digits.resize(m_fraction.size(), '0');
    if (!m_fill) { // FM drops zeros that only a 9 asked for
        while (!digits.empty() && digits.back() == '0' && m_fraction[digits.size() - 1] == '9' &&
               m_fraction.find('0', digits.size()) == std::string::npos)
            digits.pop_back();
    }
    return (m_nlsMarks ? symbols.decimal : ".") + digits;
}

// The sign and currency round the digits, blanks before them.
std::string NumberFormat::framed(std::string body, bool negative,
                                 const NumberSymbols& symbols) const {
    body = m_currencyBehind ? body + currencyText(symbols) : currencyText(symbols) + body;
    const std::string blank = m_fill ? " " : "";
    const std::string plain = negative ? "-" : blank;
    const std::string always = negative ? "-" : "+";
    switch (m_sign) {
    case SignPlace::Before: body = plain + body; break;
    case SignPlace::LeadingAlways: body = always + body; break;
    case SignPlace::TrailingAlways: body += always; break;
    case SignPlace::TrailingMinus: body += plain; break;
    case SignPlace::Brackets: body = negative ? "<" + body + ">" : blank + body + blank; break;
    }
    return m_fill ? leftPadded(std::move(body), width()) : body;
}

std::string NumberFormat::fixedText(const OracleNumber& value, const NumberSymbols& symbols) const {
    OracleNumber scaled = value;
    for (int i = 0; i < m_shift; ++i)
        scaled = scaled * OracleNumber(10);
    const OracleNumber rounded = scaled.absolute().rounded(static_cast<int>(m_fraction.size()));
    std::string cell = rounded.cellText();
    const auto point = cell.find('.');
    std::string fraction = point == std::string::npos ? "" : cell.substr(point + 1);
    std::string whole = cell.substr(0, point);
    if (whole == "0")
        whole.clear();
    if (whole.size() > static_cast<std::size_t>(m_wholeDigits))
        return std::string(width(), '#');
    if (m_blankZero && rounded.isZero())
        return m_fill ? std::string(width(), ' ') : std::string();
    const std::string body =
        wholeText(whole, rounded.isZero(), symbols) + fractionText(std::move(fraction), symbols);
    return framed(body, value.isNegative(), symbols);
}

std::string NumberFormat::scientificText(const OracleNumber& value,
                                         const NumberSymbols& symbols) const {
    const int places = static_cast<int>(m_fraction.size());
    Significand parts = significandOf(value);
    if (!value.isZero()) // rounding may carry into another digit
        parts = significandOf(value.absolute().rounded(places - parts.exponent));
    const std::string body = parts.digits.substr(0, 1) +
                             fractionText(parts.digits.substr(1), symbols) +
                             exponentText(parts.exponent);
    return framed(body, value.isNegative(), symbols);
}

std::string NumberFormat::hexText(const OracleNumber& value) const {
    const std::string full = std::string(m_whole.size() + 1, '#');
    const OracleNumber whole = value.rounded(0);
    if (whole.isNegative())
        return full;
    constexpr int Base = 16;
    const OracleNumber base(Base);
    std::string digits;
    // Whole numbers of 40 digits are exact, so is every step.
    for (OracleNumber rest = whole; !rest.isZero() && digits.size() <= m_whole.size();) {
        const OracleNumber next = (rest / base).truncated(0);
        const auto digit = (rest - next * base).toInteger();
        digits.insert(digits.begin(), "0123456789ABCDEF"[static_cast<std::size_t>(digit) % Base]);
        rest = next;
    }
    if (digits.empty())
        digits = "0";
    if (digits.size() > m_whole.size())
        return full;
    if (m_whole.starts_with('0'))
        digits.insert(0, m_whole.size() - digits.size(), '0');
    if (m_lowerCase)
        digits = lowerAscii(digits);
    return m_fill ? leftPadded(digits, m_whole.size() + 1) : digits;
}

std::string NumberFormat::romanText(const OracleNumber& value) const {
    struct Numeral {
        int value;
        const char* text;
    };
    constexpr Numeral numerals[] = {{1000, "M"}, {900, "CM"}, {500, "D"}, {400, "CD"}, {100, "C"},
                                    {90, "XC"},  {50, "L"},   {40, "XL"}, {10, "X"},   {9, "IX"},
                                    {5, "V"},    {4, "IV"},   {1, "I"}};
    constexpr std::int64_t MostRoman = 3999;
    std::int64_t rest = value.rounded(0).toInteger();
    if (rest < 1 || rest > MostRoman)
        return std::string(RomanWidth, '#');
    std::string text;
    for (const Numeral& numeral : numerals) {
        for (; rest >= numeral.value; rest -= numeral.value)
            text += numeral.text;
    }
    if (m_lowerCase)
        text = lowerAscii(text);
    return m_fill ? leftPadded(text, RomanWidth) : text;
}

namespace {

std::string minimalScientific(const OracleNumber& value) {
    const Significand parts = significandOf(value);
    std::string text = value.isNegative() ? "-" : "";
    text += parts.digits.substr(0, 1);
    if (parts.digits.size() > 1)
        text += "." + parts.digits.substr(1);
    return text + exponentText(parts.exponent);
}

std::string minimal(const OracleNumber& value) {
    std::string text = value.cellText();
    const std::size_t first = value.isNegative() ? 1 : 0;
    if (text.compare(first, 2, "0.") == 0)
        text.erase(first, 1);
    return text.size() > MinimalWidth ? minimalScientific(value) : text;
}

} // namespace

std::string NumberFormat::toText(const OracleNumber& value, const NumberSymbols& symbols) const {
    switch (m_style) {
    case Style::Fixed: return fixedText(value, symbols);
    case Style::Scientific: return scientificText(value, symbols);
    case Style::Hexadecimal: return hexText(value);
    case Style::Roman: return romanText(value);
    case Style::Minimal: return minimal(value);
    case Style::MinimalScientific: return minimalScientific(value);
    }
    return {};
}

} // namespace ora
