#include "DateFormat.h"

#include "AsciiText.h"
#include "DateNames.h"
#include "OraError.h"
#include "UnicodeText.h"
#include "Utf8.h"

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

NumberPart numberPart(Element element, const OracleDate& date, const DateLocale& locale) {
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
    case Element::DayOfWeek:
        return {(date.dayOfWeek() + DaysPerWeek - locale.firstWeekday) % DaysPerWeek + 1, 1};
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
    text = lowerText(text);
    if (letters == Letters::Lower)
        return text;
    const std::string capitals = upperText(text);
    bool first = true;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (first)
            text[i] = capitals[i];
        first = !isAsciiLetter(c) && !isAsciiDigit(c) && c != '.' && (c & 0x80) == 0;
    }
    return text;
}

std::string rightPadded(std::string text, std::size_t width, bool padded) {
    const std::size_t length = utf8::length(text);
    if (padded && length < width)
        text.append(width - length, ' ');
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

template<std::size_t Count>
std::string paddedName(const std::array<std::string_view, Count>& names, int index, bool padded) {
    return rightPadded(std::string(names[static_cast<std::size_t>(index)]),
                       DateLanguage::widthOf(names), padded);
}

std::string nameText(const Item& item, const OracleDate& date, const DateLanguage& language) {
    const bool afternoon = date.hour >= HoursOfMeridian;
    switch (item.element) {
    case Element::MonthName: return paddedName(language.months, date.month - 1, item.padded);
    case Element::MonthShort: return paddedName(language.shortMonths, date.month - 1, item.padded);
    case Element::MonthRoman:
        return rightPadded(std::string(romanMonths[date.month - 1]), RomanPadding, item.padded);
    case Element::DayName: return paddedName(language.days, date.dayOfWeek(), item.padded);
    case Element::DayShort: return paddedName(language.shortDays, date.dayOfWeek(), item.padded);
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

std::string offsetText(int minutes) {
    constexpr int MinutesPerHour = 60;
    char text[16];
    std::snprintf(text, sizeof text, "%c%02d:%02d", minutes < 0 ? '-' : '+',
                  std::abs(minutes) / MinutesPerHour, std::abs(minutes) % MinutesPerHour);
    return text;
}

std::string zonePart(Element element, const ZoneText& zone) {
    const std::string offset = offsetText(zone.minutes);
    switch (element) {
    case Element::ZoneHour: return offset.substr(0, 3);
    case Element::ZoneMinute: return offset.substr(4);
    case Element::ZoneName: return zone.region.empty() ? offset : zone.region;
    default: return zone.daylight;
    }
}

struct TextContext {
    int fractionDigits;
    const DateLocale& locale;
    const ZoneText* zone;
};

std::string itemText(const Item& item, const OracleDate& date, const TextContext& context) {
    if (context.fractionDigits == DateFormat::NoFraction && needsTimestamp(item.element))
        throw OraError(1821, "date format not recognized");
    switch (item.element) {
    case Element::Mark:
    case Element::Quoted: return item.text;
    case Element::CommaYear: return commaYear(item, std::abs(date.year));
    case Element::Fraction: return fractionText(item, date, context.fractionDigits);
    case Element::RadixMark: return std::string(1, context.locale.radix);
    case Element::ZoneHour:
    case Element::ZoneMinute:
    case Element::ZoneName:
    case Element::ZoneDaylight:
        return zonePart(item.element, context.zone ? *context.zone : ZoneText());
    default: break;
    }
    const NumberPart part = numberPart(item.element, date, context.locale);
    if (part.width > 0)
        return signPrefix(item, date) + numberText(item, part);
    return signPrefix(item, date) +
           lettered(nameText(item, date, *context.locale.language), item.letters);
}

} // namespace

std::string DateFormat::toText(const OracleDate& date, int fractionDigits, const DateLocale& locale,
                               const ZoneText* zone) const {
    const TextContext context{fractionDigits, locale, zone};
    std::string text;
    for (const Item& item : m_items)
        text += itemText(item, date, context);
    return text;
}

} // namespace ora
