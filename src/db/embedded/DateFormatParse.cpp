#include "DateFormat.h"

#include "AsciiText.h"
#include "DateFormatCheck.h"
#include "DateNames.h"
#include "DateParts.h"
#include "OraError.h"

#include <optional>
#include <span>

namespace ora {

namespace {

using Element = DateFormat::Element;
using Item = DateFormat::Item;

struct NumberRule {
    Element element;
    int width;
    int least;
    int most;
    int errorCode;
    const char* errorText;
};

constexpr const char* MonthError = "not a valid month";
constexpr const char* WeekdayError = "not a valid day of the week";

constexpr NumberRule numberRules[] = {
    {Element::MonthNumber, 2, 1, 12, 1843, MonthError},
    {Element::DayOfMonth, 2, 1, 31, 1847, "day of month must be between 1 and last day of month"},
    {Element::DayOfYear, 3, 1, 366, 1848,
     "day of year must be between 1 and 365 (366 for leap year)"},
    {Element::DayOfWeek, 1, 1, 7, 1846, WeekdayError},
    {Element::JulianDay, 7, 1, 5373484, 1854, "julian date must be between 1 and 5373484"},
    {Element::Hour24, 2, 0, 23, 1850, "hour must be between 0 and 23"},
    {Element::Hour12, 2, 1, 12, 1849, "hour must be between 1 and 12"},
    {Element::Minute, 2, 0, 59, 1851, "minutes must be between 0 and 59"},
    {Element::Second, 2, 0, 59, 1852, "seconds must be between 0 and 59"},
    {Element::SecondOfDay, 5, 0, 86399, 1853, "seconds in day must be between 0 and 86399"},
};

const NumberRule* numberRule(Element element) {
    for (const NumberRule& rule : numberRules) {
        if (rule.element == element)
            return &rule;
    }
    return nullptr;
}

constexpr int YearWidth = 4;

int yearWidth(Element element) {
    switch (element) {
    case Element::Year4:
    case Element::SignedYear:
    case Element::RoundYear4: return YearWidth;
    case Element::Year3: return 3;
    case Element::Year2:
    case Element::RoundYear2: return 2;
    case Element::Year1: return 1;
    default: return 0;
    }
}

bool isNumeric(Element element) {
    return numberRule(element) || yearWidth(element) > 0 || element == Element::Fraction;
}

bool mayBeMissing(Element element) {
    switch (element) {
    case Element::Mark:
    case Element::Hour12:
    case Element::Hour24:
    case Element::Minute:
    case Element::Second:
    case Element::SecondOfDay:
    case Element::Fraction:
    case Element::RadixMark:
    case Element::Meridian:
    case Element::MeridianDots:
    case Element::ZoneHour:
    case Element::ZoneMinute:
    case Element::ZoneName:
    case Element::ZoneDaylight: return true;
    default: return false;
    }
}

bool isMark(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x80 && !isAsciiDigit(c) && !isAsciiLetter(c);
}

class Reader {
public:
    Reader(std::span<const Item> items, std::string_view text, const OracleDate& now,
           const DateLocale& locale, ZoneInput& zone)
        : m_items(items)
        , m_text(text)
        , m_now(now)
        , m_locale(locale)
        , m_zone(zone) {}

    DateParts read() {
        for (m_item = 0; m_item < m_items.size(); ++m_item) {
            const Item& item = m_items[m_item];
            m_itemStart = m_at;
            if (!item.exact)
                skipBlanks();
            m_afterBlank = m_at > m_itemStart;
            if (atEnd()) {
                finishEarly();
                return m_parts;
            }
            readItem(item);
        }
        skipBlanks();
        if (!atEnd())
            throw OraError(1830, "date format picture ends before converting entire input string");
        return m_parts;
    }

private:
    bool atEnd() const { return m_at >= m_text.size(); }
    std::string_view rest() const { return m_text.substr(m_at); }
    void skipBlanks() {
        while (!atEnd() && (m_text[m_at] == ' ' || m_text[m_at] == '\t'))
            ++m_at;
    }

    void finishEarly() {
        for (const Item& item : m_items.subspan(m_item)) {
            if (!mayBeMissing(item.element) || item.exact)
                throw OraError(1840, "input value not long enough for date format");
        }
    }

    const Item* next() const {
        return m_item + 1 < m_items.size() ? &m_items[m_item + 1] : nullptr;
    }

    void readItem(const Item& item) {
        if (yearWidth(item.element) > 0)
            return readYear(item);
        if (item.element == Element::MonthNumber && isAsciiLetter(m_text[m_at]))
            return readMonth();
        if (const NumberRule* rule = numberRule(item.element))
            return store(*rule, readNumber(item, rule->width));
        switch (item.element) {
        case Element::Mark: return readMark(item);
        case Element::Quoted: return readQuoted(item);
        case Element::CommaYear: return readCommaYear(item);
        case Element::MonthName:
        case Element::MonthShort: return readMonth();
        case Element::MonthRoman: return readRoman();
        case Element::DayName:
        case Element::DayShort: return readWeekday();
        case Element::Fraction: return readFraction(item);
        case Element::RadixMark: return readRadix();
        case Element::Meridian: return readMeridian("AM", "PM");
        case Element::MeridianDots: return readMeridian("A.M.", "P.M.");
        case Element::Era: return readEra("AD", "BC");
        case Element::EraDots: return readEra("A.D.", "B.C.");
        case Element::ZoneHour: return readZoneHour();
        case Element::ZoneMinute: return readZoneMinute(item);
        case Element::ZoneName: return readZoneName();
        default: return skipZone();
        }
    }

    static bool takesSign(const Item* item) {
        return item && (item->element == Element::ZoneHour || item->element == Element::ZoneName);
    }

    // A mark in the model stands for any mark or blank, or for nothing when what follows it in the
    // text is what the next element reads.
    void readMark(const Item& item) {
        const char c = m_text[m_at];
        if (item.exact) {
            if (c != item.text.front())
                throwLiteral();
            ++m_at;
            return;
        }
        if (isMark(c) || m_afterBlank) {
            const bool sign = m_afterBlank && (c == '-' || c == '+') && takesSign(next());
            m_at += isMark(c) && !sign ? 1 : 0;
            m_complete = true; // of two marks in a row the text may have one
            return;
        }
        const Item* following = next();
        const bool numeric = following && isNumeric(following->element);
        if (!following || numeric != isAsciiDigit(c) || !m_complete)
            throwLiteral();
    }

    void readQuoted(const Item& item) {
        if (!rest().starts_with(item.text))
            throwLiteral();
        m_at += item.text.size();
    }

    [[noreturn]] static void throwLiteral() {
        throw OraError(1861, "literal does not match format string");
    }

    int digitsAhead() const {
        std::size_t end = m_at;
        while (end < m_text.size() && isAsciiDigit(m_text[end]))
            ++end;
        return static_cast<int>(end - m_at);
    }

    std::int64_t readNumber(const Item& item, int width) {
        const int digits = std::min(digitsAhead(), width);
        if (digits == 0)
            throw OraError(1858, "a non-numeric character was found where a numeric was expected");
        if (item.exact && item.padded && digits != width)
            throw OraError(1862, "the numeric value does not match the length of the format item");
        std::int64_t value = 0;
        for (int i = 0; i < digits; ++i)
            value = value * 10 + (m_text[m_at++] - '0');
        m_complete = digits == width;
        return value;
    }

    void store(const NumberRule& rule, std::int64_t value) {
        if (value < rule.least || value > rule.most)
            throw OraError(rule.errorCode, rule.errorText);
        const int number = static_cast<int>(value);
        switch (rule.element) {
        case Element::MonthNumber: m_parts.month = number; break;
        case Element::DayOfMonth: m_parts.day = number; break;
        case Element::DayOfYear: m_parts.dayOfYear = number; break;
        case Element::DayOfWeek: m_parts.weekday = (number - 1 + m_locale.firstWeekday) % 7; break;
        case Element::JulianDay: m_parts.julianDay = value; break;
        case Element::Hour24: m_parts.hour = number; break;
        case Element::Hour12:
            m_parts.hour = number;
            m_parts.hourOfMeridian = true;
            break;
        case Element::Minute: m_parts.minute = number; break;
        case Element::Second: m_parts.second = number; break;
        default: m_parts.secondOfDay = number; break;
        }
    }

    // YY and RR take four digits too where the next element cannot be meant.
    void readYear(const Item& item) {
        int width = yearWidth(item.element);
        bool negative = false;
        if (item.element == Element::SignedYear || item.element == Element::Year4) {
            negative = m_text[m_at] == '-';
            if (negative || m_text[m_at] == '+')
                ++m_at;
        }
        const Item* following = next();
        const bool alone = !following || !isNumeric(following->element);
        if (width == 2 && alone && !item.exact && digitsAhead() == YearWidth)
            width = YearWidth;
        const std::size_t start = m_at;
        if (width == YearWidth && digitsAhead() == 0)
            throwYear();
        const int value = static_cast<int>(readNumber(item, width));
        setYear(item.element, value, static_cast<int>(m_at - start));
        if (negative)
            m_parts.year = -*m_parts.year;
    }

    void setYear(Element element, int value, int digits) {
        const int now = m_now.year;
        const bool rounds = element == Element::RoundYear2 || element == Element::RoundYear4;
        if (digits >= YearWidth || (digits > 2 && rounds))
            m_parts.year = value;
        else if (rounds)
            m_parts.year = roundedYear(value, now);
        else if (element == Element::Year2)
            m_parts.year = now / 100 * 100 + value;
        else if (element == Element::Year3)
            m_parts.year = now / 1000 * 1000 + value;
        else if (element == Element::Year1)
            m_parts.year = now / 10 * 10 + value;
        else
            m_parts.year = value;
        if (m_parts.year == 0)
            throwYear();
    }

    [[noreturn]] static void throwYear() {
        throw OraError(1841, "(full) year must be between -4713 and +9999, and not be 0");
    }

    // The nearest century: halves of a century decide on both sides.
    static int roundedYear(int value, int now) {
        constexpr int Half = 50;
        const int century = now / 100 * 100;
        const bool late = now % 100 >= Half;
        if (value < Half)
            return late ? century + 100 + value : century + value;
        return late ? century + value : century - 100 + value;
    }

    void readCommaYear(const Item& item) {
        const auto thousands = static_cast<int>(readNumber(item, 1));
        if (atEnd() || m_text[m_at] != ',')
            throwLiteral();
        ++m_at;
        setYear(item.element, thousands * 1000 + static_cast<int>(readNumber(item, 3)), YearWidth);
    }

    // Takes the longest name that stands here, whole or short; -1 when none does.
    template<std::size_t Count>
    int readName(const std::array<std::string_view, Count>& names,
                 const std::array<std::string_view, Count>& shortNames) {
        int best = -1;
        std::size_t taken = 0;
        const auto consider = [&](std::string_view name, std::size_t i) {
            const std::size_t size = matchedName(rest(), name);
            if (size <= taken)
                return;
            taken = size;
            best = static_cast<int>(i);
        };
        for (std::size_t i = 0; i < Count; ++i) {
            consider(shortNames[i], i);
            if (shortNames[i].ends_with('.'))
                consider(shortNames[i].substr(0, shortNames[i].size() - 1), i);
            consider(names[i], i);
        }
        m_at += taken;
        return best;
    }

    void readMonth() {
        const int month = readName(m_locale.language->months, m_locale.language->shortMonths);
        if (month < 0)
            throw OraError(1843, MonthError);
        m_parts.month = month + 1;
        m_complete = true;
    }

    void readWeekday() {
        const int weekday = readName(m_locale.language->days, m_locale.language->shortDays);
        if (weekday < 0)
            throw OraError(1846, WeekdayError);
        m_parts.weekday = weekday;
    }

    void readRoman() {
        int best = -1;
        for (std::size_t i = 0; i < romanMonths.size(); ++i) {
            const bool longer = best < 0 || romanMonths[i].size() > romanMonths[best].size();
            if (longer && startsWithWord(rest(), romanMonths[i]))
                best = static_cast<int>(i);
        }
        if (best < 0)
            throw OraError(1843, MonthError);
        m_at += romanMonths[best].size();
        m_parts.month = best + 1;
    }

    void readFraction(const Item& item) {
        constexpr int Places = 9;
        const int width = item.digits > 0 ? item.digits : Places;
        const std::size_t start = m_at;
        std::int64_t value = readNumber(item, width);
        for (auto digits = m_at - start; digits < Places; ++digits)
            value *= 10;
        m_parts.nanosecond = static_cast<int>(value);
    }

    // The fraction may be missing together with its mark.
    void readRadix() {
        const Item* const following = next();
        if (m_text[m_at] == '.' || m_text[m_at] == ',')
            ++m_at;
        else if (following && following->element == Element::Fraction && !following->exact)
            skipFraction();
        else
            throwLiteral();
    }

    void skipFraction() {
        m_at = m_itemStart;
        ++m_item;
    }

    void readMeridian(std::string_view morning, std::string_view afternoon) {
        m_parts.afternoon = startsWithWord(rest(), afternoon);
        if (!m_parts.afternoon && !startsWithWord(rest(), morning))
            throw OraError(1855, "AM/A.M. or PM/P.M. required");
        m_at += morning.size();
    }

    void readEra(std::string_view after, std::string_view before) {
        m_parts.beforeChrist = startsWithWord(rest(), before);
        if (!m_parts.beforeChrist && !startsWithWord(rest(), after))
            throw OraError(1856, "BC/B.C. or AD/A.D. required");
        m_at += after.size();
    }

    void readZoneHour() {
        const bool negative = m_text[m_at] == '-';
        if (negative || m_text[m_at] == '+')
            ++m_at;
        constexpr int Width = 2;
        m_zone.negative = negative;
        m_zone.hours = static_cast<int>(readNumber({}, Width));
    }

    void readZoneMinute(const Item& item) {
        constexpr int Width = 2;
        m_zone.minutes = static_cast<int>(readNumber(item, Width));
        if (!m_zone.hours)
            m_zone.hours = 0;
    }

    void readZoneName() {
        const std::size_t start = m_at;
        skipZone();
        m_zone.region = upperAscii(m_text.substr(start, m_at - start));
    }

    void skipZone() {
        while (!atEnd() && m_text[m_at] != ' ')
            ++m_at;
    }

    std::span<const Item> m_items;
    std::string_view m_text;
    const OracleDate& m_now;
    const DateLocale& m_locale;
    ZoneInput& m_zone;
    std::size_t m_item = 0;
    std::size_t m_at = 0;
    std::size_t m_itemStart = 0; // before the blanks in front of the element
    bool m_afterBlank = false;   // blanks stood before this element
    bool m_complete = false;     // the last element had all its digits, or was a name
    DateParts m_parts;
};

} // namespace

OracleDate DateFormat::toDate(std::string_view text, const OracleDate& now,
                              const DateLocale& locale, ZoneInput* zone) const {
    checkInputModel(m_items);
    ZoneInput unused;
    return Reader(m_items, text, now, locale, zone ? *zone : unused).read().date(now);
}

OracleDate dateLiteral(std::string_view text) {
    static const DateFormat format = DateFormat::parse("SYYYY-MM-DD");
    return format.toDate(text, OracleDate());
}

OracleDate timestampLiteral(std::string_view text, ZoneInput* zone) {
    static const DateFormat format = DateFormat::parse("SYYYY-MM-DD HH24:MI:SSXFF TZR");
    return format.toDate(text, OracleDate(), {}, zone);
}

} // namespace ora
