#include "DateFormatCheck.h"

#include "OraError.h"

#include <array>

namespace ora {

namespace {

using Element = DateFormat::Element;

enum class Says { Nothing, Year, Month, Hour, Weekday, Meridian, Era, PrintOnly };

Says whatItSays(Element element) {
    switch (element) {
    case Element::Year4:
    case Element::SignedYear:
    case Element::CommaYear:
    case Element::Year3:
    case Element::Year2:
    case Element::Year1:
    case Element::RoundYear2:
    case Element::RoundYear4: return Says::Year;
    case Element::MonthNumber:
    case Element::MonthName:
    case Element::MonthShort:
    case Element::MonthRoman: return Says::Month;
    case Element::Hour24:
    case Element::Hour12: return Says::Hour;
    case Element::DayName:
    case Element::DayShort:
    case Element::DayOfWeek: return Says::Weekday;
    case Element::Meridian:
    case Element::MeridianDots: return Says::Meridian;
    case Element::Era:
    case Element::EraDots: return Says::Era;
    case Element::SpelledYear:
    case Element::SignedSpelledYear:
    case Element::IsoYear4:
    case Element::IsoYear3:
    case Element::IsoYear2:
    case Element::IsoYear1:
    case Element::Century:
    case Element::SignedCentury:
    case Element::Quarter:
    case Element::WeekOfYear:
    case Element::IsoWeek:
    case Element::WeekOfMonth: return Says::PrintOnly;
    default: return Says::Nothing;
    }
}

[[noreturn]] void throwTwice(Says what) {
    switch (what) {
    case Says::Year: throw OraError(1812, "year may only be specified once");
    case Says::Month: throw OraError(1816, "month may only be specified once");
    case Says::Hour: throw OraError(1813, "hour may only be specified once");
    case Says::Weekday: throw OraError(1815, "day of week may only be specified once");
    case Says::Meridian: throw OraError(1814, "AM/PM conflicts with use of A.M./P.M.");
    default: throw OraError(1817, "BC/AD conflicts with use of B.C./A.D.");
    }
}

constexpr std::size_t ElementCount = static_cast<std::size_t>(Element::ZoneDaylight) + 1;
constexpr std::size_t SaysCount = static_cast<std::size_t>(Says::PrintOnly) + 1;

} // namespace

void checkInputModel(std::span<const DateFormat::Item> items) {
    std::array<bool, ElementCount> seen{};
    std::array<bool, SaysCount> said{};
    for (const DateFormat::Item& item : items) {
        if (item.element == Element::Mark || item.element == Element::Quoted)
            continue;
        const Says what = whatItSays(item.element);
        if (what == Says::PrintOnly || item.spelled)
            throw OraError(1820, "format code cannot appear in date input format");
        bool& twice = seen[static_cast<std::size_t>(item.element)];
        if (twice)
            throw OraError(1810, "format code appears twice");
        twice = true;
        bool& again = said[static_cast<std::size_t>(what)];
        if (what != Says::Nothing && again)
            throwTwice(what);
        again = true;
    }
    if (seen[static_cast<std::size_t>(Element::Hour24)] &&
        said[static_cast<std::size_t>(Says::Meridian)])
        throw OraError(1818, "'HH24' precludes use of meridian indicator");
}

} // namespace ora
