#include "NumberFormat.h"

#include "AsciiText.h"
#include "OraError.h"

namespace ora {

namespace {

[[noreturn]] void throwNumber() {
    throw OraError(1722, "invalid number");
}

bool takeFront(std::string_view& text, std::string_view front) {
    if (front.empty() || !text.starts_with(front))
        return false;
    text.remove_prefix(front.size());
    return true;
}

bool takeBack(std::string_view& text, std::string_view back) {
    if (back.empty() || !text.ends_with(back))
        return false;
    text.remove_suffix(back.size());
    return true;
}

OracleNumber plainNumber(std::string_view text) {
    const auto number = OracleNumber::parse(text);
    if (!number)
        throwNumber();
    return *number;
}

OracleNumber hexNumber(std::string_view text, std::size_t mostDigits) {
    if (text.empty() || text.size() > mostDigits)
        throwNumber();
    constexpr std::string_view Digits = "0123456789ABCDEF";
    OracleNumber value;
    for (const char c : text) {
        const auto digit = Digits.find(upperAscii(c));
        if (digit == std::string_view::npos)
            throwNumber();
        value = value * OracleNumber(16) + OracleNumber(static_cast<std::int64_t>(digit));
    }
    return value;
}

// Digits and group marks, which must stand where the model has them counted from the point; a text
// without any mark passes too.
std::string plainWhole(std::string_view text, std::string_view model, std::string_view mark) {
    std::string digits;
    std::size_t slot = model.size();
    const bool marked = text.find(mark) != std::string_view::npos;
    while (!text.empty()) {
        if (!marked) {
            while (slot > 0 && model[slot - 1] == ',')
                --slot;
        }
        if (slot == 0)
            throwNumber();
        const bool wantsMark = model[--slot] == ',';
        if (wantsMark ? !takeBack(text, mark) : !isAsciiDigit(text.back()))
            throwNumber();
        if (wantsMark)
            continue;
        digits.insert(digits.begin(), text.back());
        text.remove_suffix(1);
    }
    return digits;
}

void requireDigits(std::string_view text, std::size_t most) {
    if (text.size() > most)
        throwNumber();
    for (const char c : text) {
        if (!isAsciiDigit(c))
            throwNumber();
    }
}

} // namespace

bool NumberFormat::takeSign(std::string_view& text) const {
    if (m_sign == SignPlace::Brackets && text.starts_with('<') && text.ends_with('>')) {
        text = text.substr(1, text.size() - 2);
        return true;
    }
    const bool behind = m_sign == SignPlace::TrailingAlways || m_sign == SignPlace::TrailingMinus;
    const auto take = behind ? takeBack : takeFront;
    if (take(text, "-"))
        return true;
    if (m_sign != SignPlace::TrailingMinus)
        take(text, "+");
    return false;
}

void NumberFormat::takeCurrency(std::string_view& text, const NumberSymbols& symbols) const {
    const auto take = m_currencyBehind ? takeBack : takeFront;
    text = trimmedAscii(text);
    if (take(text, currencyText(symbols)))
        text = trimmedAscii(text);
}

// The digits without group marks, with a point and perhaps an exponent.
std::string NumberFormat::plainDigits(std::string_view text, const NumberSymbols& symbols) const {
    std::string_view exponent;
    if (m_style == Style::Scientific) {
        const auto mark = text.find_first_of("eE");
        if (mark == std::string_view::npos)
            throwNumber();
        exponent = text.substr(mark);
        text = text.substr(0, mark);
    }
    const std::string decimal = m_nlsMarks ? symbols.decimal : ".";
    const auto point = text.find(decimal);
    std::string_view fraction;
    if (point != std::string_view::npos) {
        if (!m_hasPoint)
            throwNumber();
        fraction = text.substr(point + decimal.size());
        text = text.substr(0, point);
    }
    requireDigits(fraction, m_fraction.size());
    return plainWhole(text, m_whole, m_nlsMarks ? symbols.group : ",") + "." +
           std::string(fraction) + std::string(exponent);
}

OracleNumber NumberFormat::toNumber(std::string_view text, const NumberSymbols& symbols) const {
    text = trimmedAscii(text);
    if (m_style == Style::Hexadecimal)
        return hexNumber(text, m_whole.size());
    if (m_style == Style::Roman)
        throwNumber();
    if (m_style == Style::Minimal || m_style == Style::MinimalScientific)
        return plainNumber(text);
    const bool negative = takeSign(text);
    takeCurrency(text, symbols);
    OracleNumber value = plainNumber(plainDigits(text, symbols));
    for (int i = 0; i < m_shift; ++i)
        value = value / OracleNumber(10);
    return negative ? value.negated() : value;
}

} // namespace ora
