#include "DateFormat.h"

#include "AsciiText.h"
#include "DateNames.h"
#include "OraError.h"

#include <cstdio>
#include <cstdlib>

namespace ora {

namespace {

using Element = DateFormat::Element;
using Letters = DateFormat::Letters;
using Item = DateFormat::Item;

constexpr int HoursOfMeridian = 12;
constexpr int DaysPerWeek = 7;

struct NumberPart {
    int value;
    std::size_t width; // 0: not a number
};

NumberPart numberPart(Element element, const OracleDate& date) {
    const int year = std::abs(date.year);
    switch (element) {
    case Element::Year4:
    case Element::SignedYear:
    case Element::RoundYear4: return {year, 4};
    case Element::Year3: return {year % 1000, 3};
    case Element::Year2:
    case Element::RoundYear2: return {year % 100, 2};
    case Element::Year1: return {year % 10, 1};
    case Element::IsoYear4: return {std::abs(date.isoYear()), 4};
    case Element::IsoYear3: return {std::abs(date.isoYear()) % 1000, 3};
    case Element::IsoYear2: return {std::abs(date.isoYear()) % 100, 2};
    case Element::IsoYear1: return {std::abs(date.isoYear()) % 10, 1};
    case Element::Century:
    case Element::SignedCentury: return {(year + 99) / 100, 2};
    case Element::Quarter: return {(date.month - 1) / 3 + 1, 1};
    case Element::MonthNumber: return {date.month, 2};
    case Element::WeekOfYear: return {(date.dayOfYear() - 1) / DaysPerWeek + 1, 2};
    case Element::IsoWeek: return {date.isoWeek(), 2};
    case Element::WeekOfMonth: return {(date.day - 1) / DaysPerWeek + 1, 1};
    case Element::DayOfYear: return {date.dayOfYear(), 3};
    case Element::DayOfMonth: return {date.day, 2};
    case Element::DayOfWeek: return {date.dayOfWeek() + 1, 1};
    case Element::JulianDay: return {static_cast<int>(date.dayNumber()), 7};
    case Element::Hour24: return {date.hour, 2};
    case Element::Hour12: return {(date.hour + HoursOfMeridian - 1) % HoursOfMeridian + 1, 2};
    case Element::Minute: return {date.minute, 2};
    case Element::Second: return {date.second, 2};
    case Element::SecondOfDay: return {static_cast<int>(date.secondOfDay()), 5};
    default: return {0, 0};
    }
}

std::string lettered(std::string text, Letters letters) {
    if (letters == Letters::Upper)
        return text;
    bool first = letters == Letters::Capitalized;
    for (char& c : text) {
        if (!first)
            c = lowerAscii(c);
        first =
            letters == Letters::Capitalized && !isAsciiLetter(c) && !isAsciiDigit(c) && c != '.';
    }
    return text;
}

std::string rightPadded(std::string text, std::size_t width, bool padded) {
    if (padded && text.size() < width)
        text.append(width - text.size(), ' ');
    return text;
}

std::string signPrefix(const Item& item, const OracleDate& date) {
    const bool isSigned = item.element == Element::SignedYear ||
                          item.element == Element::SignedCentury ||
                          item.element == Element::SignedSpelledYear;
    if (!isSigned)
        return {};
    return date.year < 0 ? "-" : item.padded ? " " : "";
}

std::string numberText(const Item& item, const NumberPart& part) {
    if (item.spelled) {
        std::string words = spelledNumber(part.value);
        if (item.ordinal)
            words = spelledOrdinal(std::move(words));
        return lettered(std::move(words), item.letters);
    }
    std::string digits = std::to_string(part.value);
    if (item.padded && digits.size() < part.width)
        digits.insert(0, part.width - digits.size(), '0');
    if (item.ordinal)
        digits += lettered(std::string(ordinalSuffix(part.value)),
                           item.letters == Letters::Upper ? Letters::Upper : Letters::Lower);
    return digits;
}

std::string fractionText(const Item& item, const OracleDate& date, int fractionDigits) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%09d", date.nanosecond);
    return std::string(digits, item.digits > 0 ? item.digits : fractionDigits);
}

// Years are spelled in two pairs of digits, "NINETEEN NINETY-NINE".
std::string spelledYear(int year) {
    const int century = year / 100;
    const int rest = year % 100;
    if (year < 1000 || (century % 10 == 0 && rest < 10))
        return spelledNumber(year);
    if (rest == 0)
        return spelledNumber(century) + " HUNDRED";
    return spelledNumber(century) + " " + spelledNumber(rest);
}

std::string commaYear(const Item& item, int year) {
    char text[16];
    if (item.padded || year >= 1000)
        std::snprintf(text, sizeof text, "%d,%03d", year / 1000, year % 1000);
    else
        std::snprintf(text, sizeof text, "%d", year);
    return text;
}

std::string nameText(const Item& item, const OracleDate& date) {
    const bool afternoon = date.hour >= HoursOfMeridian;
    switch (item.element) {
    case Element::MonthName:
        return rightPadded(std::string(monthNames[date.month - 1]), NamePadding, item.padded);
    case Element::MonthShort:
        return std::string(monthNames[date.month - 1].substr(0, ShortNameSize));
    case Element::MonthRoman:
        return rightPadded(std::string(romanMonths[date.month - 1]), RomanPadding, item.padded);
    case Element::DayName:
        return rightPadded(std::string(dayNames[date.dayOfWeek()]), NamePadding, item.padded);
    case Element::DayShort: return std::string(dayNames[date.dayOfWeek()].substr(0, ShortNameSize));
    case Element::Meridian: return afternoon ? "PM" : "AM";
    case Element::MeridianDots: return afternoon ? "P.M." : "A.M.";
    case Element::Era: return date.year < 0 ? "BC" : "AD";
    case Element::EraDots: return date.year < 0 ? "B.C." : "A.D.";
    case Element::SpelledYear:
    case Element::SignedSpelledYear: return spelledYear(std::abs(date.year));
    default: return {};
    }
}

bool needsTimestamp(Element element) {
    return element == Element::Fraction || element == Element::ZoneHour ||
           element == Element::ZoneMinute || element == Element::ZoneName ||
           element == Element::ZoneDaylight;
}

std::string itemText(const Item& item, const OracleDate& date, int fractionDigits) {
    if (fractionDigits == DateFormat::NoFraction && needsTimestamp(item.element))
        throw OraError(1821, "date format not recognized");
    switch (item.element) {
    case Element::Mark:
    case Element::Quoted: return item.text;
    case Element::CommaYear: return commaYear(item, std::abs(date.year));
    case Element::Fraction: return fractionText(item, date, fractionDigits);
    case Element::RadixMark: return ".";
    case Element::ZoneHour: return "+00";
    case Element::ZoneMinute: return "00";
    case Element::ZoneName: return "+00:00";
    default: break;
    }
    const NumberPart part = numberPart(item.element, date);
    if (part.width > 0)
        return signPrefix(item, date) + numberText(item, part);
    return signPrefix(item, date) + lettered(nameText(item, date), item.letters);
}

} // namespace

std::string DateFormat::toText(const OracleDate& date, int fractionDigits) const {
    std::string text;
    for (const Item& item : m_items)
        text += itemText(item, date, fractionDigits);
    return text;
}

} // namespace ora
