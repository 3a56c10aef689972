#pragma once

#include "OracleNumber.h"

#include <string>
#include <string_view>

namespace ora {

// What the elements D, G, L, C and U stand for. parameters: TO_CHAR's third argument,
// "NLS_NUMERIC_CHARACTERS = ',.' NLS_CURRENCY = 'EUR'"; throws 12702 when it reads otherwise.
struct NumberSymbols {
    std::string decimal = ".";
    std::string group = ",";
    std::string currency = "$";
    std::string isoCurrency = "USD";
    std::string dualCurrency = "$";

    // The decimal mark and the group mark. False, and nothing set, unless these are two.
    bool setMarks(std::string_view marks);
    NumberSymbols withParameters(std::string_view parameters) const;
};

// A number format model: TO_CHAR(n, '9,990.00') and TO_NUMBER(t, '9,990.00').
class NumberFormat {
public:
    // Throws 1481.
    static NumberFormat parse(std::string_view model);

    // All '#' when the number does not fit.
    std::string toText(const OracleNumber& value, const NumberSymbols& symbols = {}) const;
    // Throws 1722.
    OracleNumber toNumber(std::string_view text, const NumberSymbols& symbols = {}) const;

private:
    friend class NumberFormatReader;

    enum class Style { Fixed, Scientific, Hexadecimal, Roman, Minimal, MinimalScientific };
    enum class SignPlace { Before, LeadingAlways, TrailingAlways, TrailingMinus, Brackets };
    enum class Currency { None, Dollar, Local, Iso, Dual };

    std::size_t width() const;
    std::size_t currencyWidth() const;
    const std::string& currencyText(const NumberSymbols& symbols) const;
    std::string wholeText(const std::string& digits, bool zero, const NumberSymbols& symbols) const;
    std::string fractionText(std::string digits, const NumberSymbols& symbols) const;
    std::string framed(std::string body, bool negative, const NumberSymbols& symbols) const;
    std::string fixedText(const OracleNumber& value, const NumberSymbols& symbols) const;
    std::string scientificText(const OracleNumber& value, const NumberSymbols& symbols) const;
    bool takeSign(std::string_view& text) const; // true for a negative one
    void takeCurrency(std::string_view& text, const NumberSymbols& symbols) const;
    std::string plainDigits(std::string_view text, const NumberSymbols& symbols) const;
    std::string hexText(const OracleNumber& value) const;
    std::string romanText(const OracleNumber& value) const;

    Style m_style = Style::Fixed;
    SignPlace m_sign = SignPlace::Before;
    Currency m_currency = Currency::None;
    bool m_currencyBehind = false;
    bool m_fill = true; // no FM
    bool m_blankZero = false;
    bool m_lowerCase = false;
    bool m_nlsMarks = false; // D and G rather than . and ,
    bool m_hasPoint = false;
    int m_shift = 0;        // digits after V
    int m_wholeDigits = 0;  // 9 and 0 before the point
    std::string m_whole;    // 9 0 and , for each group mark
    std::string m_fraction; // 9 and 0
};

} // namespace ora
