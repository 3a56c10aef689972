#include "SqlText.h"

#include "ErrorText.h"
#include "OracleDate.h"
#include "OracleNumber.h"

#include <algorithm>
#include <optional>

namespace ora {

namespace {

constexpr int InvalidNumber = 1722;
constexpr int LiteralMismatch = 1861;

// Reads what a date literal is made of, from the front.
class LiteralReader {
public:
    explicit LiteralReader(std::string_view text)
        : m_text(text) {}

    int digits(std::size_t least, std::size_t most) {
        std::size_t count = 0;
        int value = 0;
        while (count < most && count < m_text.size() && m_text[count] >= '0' &&
               m_text[count] <= '9')
            value = value * 10 + (m_text[count++] - '0');
        if (count < least)
            fail();
        m_text.remove_prefix(count);
        return value;
    }

    bool take(char c) {
        if (m_text.empty() || m_text.front() != c)
            return false;
        m_text.remove_prefix(1);
        return true;
    }

    void expect(char c) {
        if (!take(c))
            fail();
    }

    void skipBlanks() {
        while (take(' ')) {
        }
    }

    std::string_view rest() const { return m_text; }

    [[noreturn]] static void fail() { raise(LiteralMismatch); }

private:
    std::string_view m_text;
};

void readDay(LiteralReader& reader, OracleDate& date) {
    constexpr int NotAValidMonth = 1843;
    constexpr int NotADayOfMonth = 1839;
    constexpr std::size_t YearDigits = 4;
    reader.skipBlanks();
    const bool before = reader.take('-');
    date.year = reader.digits(1, YearDigits) * (before ? -1 : 1);
    reader.expect('-');
    date.month = reader.digits(1, 2);
    reader.expect('-');
    date.day = reader.digits(1, 2);
    if (date.month < 1 || date.month > 12)
        throw OraError(NotAValidMonth, "not a valid month");
    if (!isCalendarDay(date.year, date.month, date.day))
        throw OraError(NotADayOfMonth, "date not valid for month specified");
}

void readTime(LiteralReader& reader, OracleDate& date) {
    constexpr int InvalidHour = 1850;
    constexpr int InvalidMinutes = 1851;
    constexpr int InvalidSeconds = 1852;
    date.hour = reader.digits(1, 2);
    if (reader.take(':'))
        date.minute = reader.digits(1, 2);
    if (reader.take(':'))
        date.second = reader.digits(1, 2);
    if (date.hour > 23)
        throw OraError(InvalidHour, "hour must be between 0 and 23");
    if (date.minute > 59)
        throw OraError(InvalidMinutes, "minutes must be between 0 and 59");
    if (date.second > 59)
        throw OraError(InvalidSeconds, "seconds must be between 0 and 59");
}

void readFraction(LiteralReader& reader, OracleDate& date) {
    constexpr int NanosecondDigits = 9;
    if (!reader.take('.'))
        return;
    const std::size_t before = reader.rest().size();
    date.nanosecond = reader.digits(0, NanosecondDigits);
    for (std::size_t read = before - reader.rest().size(); read < NanosecondDigits; ++read)
        date.nanosecond *= 10;
}

std::string doubleLiteral(std::string_view digits) {
    digits.remove_suffix(1);
    std::string text(digits);
    if (text.find_first_of(".eE") == std::string::npos)
        text += ".0";
    return text;
}

} // namespace

std::string textLiteral(std::string_view text) {
    std::string quoted = "'";
    quoted.reserve(text.size() + 2);
    for (const char c : text) {
        quoted += c;
        if (c == '\'')
            quoted += c;
    }
    return quoted += '\'';
}

std::string blobLiteral(std::string_view bytes) {
    constexpr std::string_view hexadecimal = "0123456789ABCDEF";
    std::string literal = "X'";
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        literal += hexadecimal[byte >> 4];
        literal += hexadecimal[byte & 15];
    }
    return literal += '\'';
}

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
    std::size_t size = 0;
    for (const std::string& part : parts)
        size += part.size() + separator.size();
    std::string text;
    text.reserve(size);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0)
            text += separator;
        text += parts[i];
    }
    return text;
}

std::string call(std::string_view name, const std::vector<std::string>& arguments) {
    return std::string(name) + '(' + joined(arguments, ",") + ')';
}

std::string call(std::string_view name, const std::string& argument) {
    if (name.empty())
        return argument;
    return std::string(name) + '(' + argument + ')';
}

std::string numberFromInteger(const std::string& integer) {
    return call("num_from_int", integer);
}

std::string displayPath(std::string_view first, std::string_view second, std::string_view third) {
    std::string path;
    for (const std::string_view part : {first, second, third}) {
        if (part.empty())
            continue;
        path += path.empty() ? "\"" : ".\"";
        path += part;
        path += '"';
    }
    return path;
}

std::string numberLiteral(std::string_view digits) {
    const char last = digits.back();
    if (last == 'f' || last == 'F' || last == 'd' || last == 'D')
        return doubleLiteral(digits);
    const std::optional<OracleNumber> number = OracleNumber::parse(digits);
    if (!number)
        raise(InvalidNumber);
    return blobLiteral(number->bytes());
}

std::string dateLiteral(std::string_view text) {
    LiteralReader reader(text);
    OracleDate date;
    readDay(reader, date);
    reader.skipBlanks();
    if (!reader.rest().empty())
        LiteralReader::fail();
    return blobLiteral(date.encoded());
}

std::string timestampLiteral(std::string_view text) {
    LiteralReader reader(text);
    OracleDate date;
    readDay(reader, date);
    reader.skipBlanks();
    if (!reader.rest().empty()) {
        readTime(reader, date);
        readFraction(reader, date);
    }
    reader.skipBlanks();
    if (!reader.rest().empty() && reader.rest().front() != '+' && reader.rest().front() != '-' &&
        !(reader.rest().front() >= 'A'))
        LiteralReader::fail();
    return blobLiteral(date.encoded());
}

int characterCount(std::string_view text) {
    return static_cast<int>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

} // namespace ora
