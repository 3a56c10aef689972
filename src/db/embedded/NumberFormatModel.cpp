#include "NumberFormat.h"

#include "AsciiText.h"
#include "OraError.h"

namespace ora {

namespace {

[[noreturn]] void throwModel() {
    throw OraError(1481, "invalid number format model");
}

} // namespace

// Reads a model from left to right, one element a call.
class NumberFormatReader {
public:
    explicit NumberFormatReader(std::string_view model)
        : m_model(model)
        , m_upper(upperAscii(model)) {}

    NumberFormat read() {
        constexpr std::size_t MostModel = 64; // characters that the server takes
        if (m_upper.empty() || m_upper.size() > MostModel)
            throwModel();
        if (take("FM"))
            m_format.m_fill = false;
        if (readWholeModel())
            return m_format;
        while (m_at < m_upper.size())
            readElement();
        finish();
        return m_format;
    }

private:
    using Style = NumberFormat::Style;
    using SignPlace = NumberFormat::SignPlace;
    using Currency = NumberFormat::Currency;

    bool take(std::string_view element) {
        if (m_upper.compare(m_at, element.size(), element) != 0)
            return false;
        m_at += element.size();
        return true;
    }
    bool atEnd() const { return m_at == m_upper.size(); }
    static void require(bool condition) {
        if (!condition)
            throwModel();
    }

    // RN, TM and X stand alone.
    bool readWholeModel() {
        m_format.m_lowerCase = m_at < m_model.size() && m_model[m_at] >= 'a';
        if (take("RN")) {
            m_format.m_style = Style::Roman;
        } else if (take("TM")) {
            m_format.m_style = take("E") ? Style::MinimalScientific : Style::Minimal;
            take("9");
        } else if (m_upper.find('X', m_at) != std::string::npos) {
            readHexadecimal();
        } else {
            return false;
        }
        require(atEnd());
        return true;
    }

    void readHexadecimal() {
        m_format.m_style = Style::Hexadecimal;
        const std::size_t first = m_upper.find('X', m_at);
        m_format.m_lowerCase = m_model[first] == 'x';
        for (; !atEnd(); ++m_at) {
            require(m_upper[m_at] == 'X' || (m_upper[m_at] == '0' && m_at < first));
            m_format.m_whole += m_upper[m_at];
        }
    }

    void readElement() {
        if (readDigit() || readMark() || readCurrency() || readSign())
            return;
        if (take("B")) {
            require(!m_format.m_blankZero);
            m_format.m_blankZero = true;
        } else if (take("V")) {
            require(!m_afterV && !m_format.m_hasPoint);
            m_afterV = true;
        } else if (take("EEEE")) {
            require(m_format.m_style == Style::Fixed && m_format.m_wholeDigits > 0 && !m_group);
            m_format.m_style = Style::Scientific;
        } else {
            throwModel();
        }
    }

    bool readDigit() {
        const char c = m_upper[m_at];
        if (c != '9' && c != '0')
            return false;
        require(m_format.m_style == Style::Fixed && !m_signBehind &&
                !(m_format.m_currencyBehind && m_format.m_currency != Currency::Dollar));
        ++m_at;
        m_digits = true;
        if (m_format.m_hasPoint) {
            m_format.m_fraction += c;
            return true;
        }
        m_format.m_whole += c;
        ++m_format.m_wholeDigits;
        m_format.m_shift += m_afterV ? 1 : 0;
        return true;
    }

    bool readMark() {
        const char c = m_upper[m_at];
        if (c == ',' || c == 'G') {
            require(m_digits && !m_format.m_hasPoint && !m_afterV);
            m_format.m_whole += ',';
            m_group = true;
        } else if (c == '.' || c == 'D') {
            require(!m_format.m_hasPoint && !m_afterV);
            m_format.m_hasPoint = true;
        } else {
            return false;
        }
        ++m_at;
        const bool nls = c == 'G' || c == 'D';
        require(!m_marks || m_format.m_nlsMarks == nls);
        m_marks = true;
        m_format.m_nlsMarks = nls;
        return true;
    }

    bool readCurrency() {
        Currency currency = Currency::None;
        if (take("$"))
            currency = Currency::Dollar;
        else if (take("L"))
            currency = Currency::Local;
        else if (take("C"))
            currency = Currency::Iso;
        else if (take("U"))
            currency = Currency::Dual;
        else
            return false;
        require(m_format.m_currency == Currency::None);
        m_format.m_currency = currency;
        // A dollar sign leads wherever it is written.
        m_format.m_currencyBehind = m_digits && currency != Currency::Dollar;
        return true;
    }

    bool readSign() {
        const bool first = !m_digits && !m_signed && m_format.m_currency == Currency::None;
        SignPlace place = SignPlace::Before;
        if (take("S"))
            place = first && !atEnd() ? SignPlace::LeadingAlways : SignPlace::TrailingAlways;
        else if (take("MI"))
            place = SignPlace::TrailingMinus;
        else if (take("PR"))
            place = SignPlace::Brackets;
        else
            return false;
        require(!m_signed);
        m_signed = true;
        m_format.m_sign = place;
        m_signBehind = place != SignPlace::LeadingAlways;
        require(!m_signBehind || (atEnd() && m_digits));
        return true;
    }

    void finish() { require(m_digits || m_format.m_hasPoint); }

    std::string_view m_model;
    std::string m_upper;
    std::size_t m_at = 0;
    NumberFormat m_format;
    bool m_digits = false;
    bool m_afterV = false;
    bool m_group = false;
    bool m_marks = false;
    bool m_signed = false;
    bool m_signBehind = false;
};

NumberFormat NumberFormat::parse(std::string_view model) {
    return NumberFormatReader(model).read();
}

} // namespace ora
