#include "IntervalValue.h"

#include "AsciiText.h"
#include "OraError.h"

#include <array>

namespace ora {

namespace {

[[noreturn]] void throwInvalid() {
    throw OraError(1867, "the interval is invalid");
}

// Reads numbers and marks from left to right.
class Reader {
public:
    explicit Reader(std::string_view text)
        : m_text(trimmedAscii(text)) {}

    bool atEnd() const { return m_at == m_text.size(); }
    bool take(char c) {
        if (atEnd() || upperAscii(m_text[m_at]) != c)
            return false;
        ++m_at;
        return true;
    }
    // +1 or -1
    int sign() {
        if (take('-'))
            return -1;
        take('+');
        return 1;
    }
    void skipBlanks() {
        while (take(' ')) {
        }
    }
    std::int64_t number(int& digits) {
        constexpr int MostDigits = 9;
        std::int64_t value = 0;
        digits = 0;
        for (; !atEnd() && isAsciiDigit(m_text[m_at]); ++m_at, ++digits)
            value = digits < MostDigits ? value * 10 + (m_text[m_at] - '0') : value;
        if (digits == 0)
            throwInvalid();
        if (digits > MostDigits)
            throw OraError(1873, "the leading precision of the interval is too small");
        return value;
    }
    std::int64_t number() {
        int digits = 0;
        return number(digits);
    }
    // Decimals of a second, as nanoseconds; the tenth and later ones are dropped.
    std::int64_t fraction() {
        constexpr int Places = 9;
        std::int64_t value = 0;
        int digits = 0;
        for (; !atEnd() && isAsciiDigit(m_text[m_at]); ++m_at, ++digits)
            value = digits < Places ? value * 10 + (m_text[m_at] - '0') : value;
        for (; digits < Places; ++digits)
            value *= 10;
        return value;
    }
    void expectEnd() const {
        if (!atEnd())
            throwInvalid();
    }

private:
    std::string_view m_text;
    std::size_t m_at = 0;
};

struct Field {
    std::string_view name;
    char before; // the mark between it and the field before
    std::int64_t seconds;
    std::int64_t most; // when it does not lead
    int errorCode;
    const char* errorText;
};

constexpr std::array<Field, 4> dayFields = {{
    {"DAY", '\0', 86400, 0, 0, ""},
    {"HOUR", ' ', 3600, 23, 1850, "hour must be between 0 and 23"},
    {"MINUTE", ':', 60, 59, 1851, "minutes must be between 0 and 59"},
    {"SECOND", ':', 1, 59, 1852, "seconds must be between 0 and 59"},
}};

std::size_t fieldIndex(std::string_view name) {
    for (std::size_t i = 0; i < dayFields.size(); ++i) {
        if (dayFields[i].name == name)
            return i;
    }
    throwInvalid();
}

void checkDigits(int digits, int allowed) {
    if (digits > allowed)
        throw OraError(1873, "the leading precision of the interval is too small");
}

YearMonthInterval isoYearMonth(Reader& in, int sign) {
    std::int64_t months = 0;
    while (!in.atEnd()) {
        const std::int64_t value = in.number();
        if (in.take('Y'))
            months += value * 12;
        else if (in.take('M'))
            months += value;
        else
            throwInvalid();
    }
    return {sign * months};
}

DaySecondInterval isoDaySecond(Reader& in, int sign) {
    DaySecondInterval result;
    bool time = false;
    while (!in.atEnd()) {
        if (!time && in.take('T')) {
            time = true;
            continue;
        }
        const std::int64_t value = in.number();
        if (!time && in.take('D'))
            result.seconds += sign * value * 86400;
        else if (time && in.take('H'))
            result.seconds += sign * value * 3600;
        else if (time && in.take('M'))
            result.seconds += sign * value * 60;
        else {
            if (time && in.take('.'))
                result.nanoseconds = sign * in.fraction();
            if (!time || !in.take('S'))
                throwInvalid();
            result.seconds += sign * value;
        }
    }
    return result;
}

constexpr int AnyDigits = 9;

} // namespace

DaySecondInterval daySecondLiteral(std::string_view text, std::string_view first,
                                   std::string_view last, int leadingDigits) {
    Reader in(text);
    const int sign = in.sign();
    const std::size_t leading = fieldIndex(first);
    const std::size_t end = fieldIndex(last);
    if (end < leading)
        throwInvalid();
    DaySecondInterval result;
    for (std::size_t i = leading; i <= end; ++i) {
        const Field& field = dayFields[i];
        if (i > leading) {
            if (!in.take(field.before))
                throwInvalid();
            in.skipBlanks();
        }
        int digits = 0;
        const std::int64_t value = in.number(digits);
        if (i == leading)
            checkDigits(digits, leadingDigits);
        else if (value > field.most)
            throw OraError(field.errorCode, field.errorText);
        result.seconds += sign * value * field.seconds;
    }
    if (end + 1 == dayFields.size() && in.take('.'))
        result.nanoseconds = sign * in.fraction();
    in.expectEnd();
    return result;
}

YearMonthInterval yearMonthLiteral(std::string_view text, std::string_view first,
                                   std::string_view last, int leadingDigits) {
    constexpr std::int64_t MonthsPerYear = 12;
    Reader in(text);
    const int sign = in.sign();
    int digits = 0;
    std::int64_t months = in.number(digits);
    checkDigits(digits, leadingDigits);
    if (first == "YEAR")
        months *= MonthsPerYear;
    if (first == "YEAR" && last == "MONTH") {
        if (!in.take('-'))
            throwInvalid();
        const std::int64_t rest = in.number();
        if (rest >= MonthsPerYear)
            throw OraError(1843, "not a valid month");
        months += rest;
    }
    in.expectEnd();
    return {sign * months};
}

YearMonthInterval YearMonthInterval::parse(std::string_view text) {
    Reader in(text);
    const int sign = in.sign();
    if (in.take('P'))
        return isoYearMonth(in, sign);
    return yearMonthLiteral(text, "YEAR", "MONTH", AnyDigits);
}

DaySecondInterval DaySecondInterval::parse(std::string_view text) {
    Reader in(text);
    const int sign = in.sign();
    if (in.take('P'))
        return isoDaySecond(in, sign);
    return daySecondLiteral(text, "DAY", "SECOND", AnyDigits);
}

} // namespace ora
