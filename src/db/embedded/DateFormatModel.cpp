#include "DateFormat.h"

#include "AsciiText.h"
#include "OraError.h"

namespace ora {

namespace {

using Element = DateFormat::Element;
using Letters = DateFormat::Letters;

struct ElementName {
    std::string_view name;
    Element element;
};

constexpr ElementName elementNames[] = {
    {"SYYYY", Element::SignedYear},
    {"YYYY", Element::Year4},
    {"Y,YYY", Element::CommaYear},
    {"YYY", Element::Year3},
    {"YY", Element::Year2},
    {"Y", Element::Year1},
    {"RRRR", Element::RoundYear4},
    {"RR", Element::RoundYear2},
    {"SYEAR", Element::SignedSpelledYear},
    {"YEAR", Element::SpelledYear},
    {"IYYY", Element::IsoYear4},
    {"IYY", Element::IsoYear3},
    {"IY", Element::IsoYear2},
    {"I", Element::IsoYear1},
    {"SCC", Element::SignedCentury},
    {"CC", Element::Century},
    {"Q", Element::Quarter},
    {"MONTH", Element::MonthName},
    {"MON", Element::MonthShort},
    {"MM", Element::MonthNumber},
    {"RM", Element::MonthRoman},
    {"WW", Element::WeekOfYear},
    {"IW", Element::IsoWeek},
    {"W", Element::WeekOfMonth},
    {"DDD", Element::DayOfYear},
    {"DD", Element::DayOfMonth},
    {"DAY", Element::DayName},
    {"DY", Element::DayShort},
    {"D", Element::DayOfWeek},
    {"J", Element::JulianDay},
    {"HH24", Element::Hour24},
    {"HH12", Element::Hour12},
    {"HH", Element::Hour12},
    {"MI", Element::Minute},
    {"SSSSS", Element::SecondOfDay},
    {"SS", Element::Second},
    {"FF", Element::Fraction},
    {"X", Element::RadixMark},
    {"AM", Element::Meridian},
    {"PM", Element::Meridian},
    {"A.M.", Element::MeridianDots},
    {"P.M.", Element::MeridianDots},
    {"AD", Element::Era},
    {"BC", Element::Era},
    {"A.D.", Element::EraDots},
    {"B.C.", Element::EraDots},
    {"TZH", Element::ZoneHour},
    {"TZM", Element::ZoneMinute},
    {"TZR", Element::ZoneName},
    {"TZD", Element::ZoneDaylight},
};

// Elements that stand for a whole model.
struct Abbreviation {
    std::string_view name;
    std::string_view model;
};

constexpr Abbreviation abbreviations[] = {
    {"DL", "fmDay, Month DD, YYYYfm"},
    {"DS", "fmMM/DD/YYYYfm"},
    {"TS", "HH:MI:SS AM"},
};

[[noreturn]] void throwModel() {
    throw OraError(1821, "date format not recognized");
}

const ElementName* longestElement(std::string_view model) {
    const ElementName* best = nullptr;
    for (const ElementName& entry : elementNames) {
        if (startsWithWord(model, entry.name) && (!best || entry.name.size() > best->name.size()))
            best = &entry;
    }
    return best;
}

const Abbreviation* abbreviationAt(std::string_view model) {
    for (const Abbreviation& entry : abbreviations) {
        if (startsWithWord(model, entry.name))
            return &entry;
    }
    return nullptr;
}

// "Month" is capitalized, "MOnth" upper, "month" lower.
Letters lettersOf(std::string_view written) {
    const bool firstLower = written.front() >= 'a';
    if (firstLower)
        return Letters::Lower;
    for (const char c : written.substr(1)) {
        if (isAsciiLetter(c))
            return c >= 'a' ? Letters::Capitalized : Letters::Upper;
    }
    return Letters::Upper;
}

// SP, TH, SPTH or THSP after a number.
std::size_t readSuffixes(std::string_view rest, DateFormat::Item& item) {
    std::size_t size = 0;
    for (int i = 0; i < 2; ++i) {
        if (startsWithWord(rest.substr(size), "SP") && !item.spelled)
            item.spelled = true;
        else if (startsWithWord(rest.substr(size), "TH") && !item.ordinal)
            item.ordinal = true;
        else
            break;
        size += 2;
    }
    return size;
}

} // namespace

DateFormat DateFormat::parse(std::string_view model) {
    constexpr std::size_t MostModel = 512;
    if (model.size() > MostModel)
        throw OraError(1801, "date format is too long for internal buffer");
    DateFormat format;
    bool padded = true;
    bool exact = false;
    format.read(model, padded, exact);
    return format;
}

void DateFormat::read(std::string_view model, bool& padded, bool& exact) {
    for (std::size_t at = 0; at < model.size();) {
        const std::string_view rest = model.substr(at);
        Item item;
        item.padded = padded;
        item.exact = exact;
        if (startsWithWord(rest, "FM")) {
            padded = !padded;
            at += 2;
        } else if (startsWithWord(rest, "FX")) {
            exact = !exact;
            at += 2;
        } else if (rest.front() == '"') {
            const auto end = rest.find('"', 1);
            if (end == std::string_view::npos)
                throwModel();
            item.element = Element::Quoted;
            item.text = rest.substr(1, end - 1);
            m_items.push_back(std::move(item));
            at += end + 1;
        } else if (const Abbreviation* whole = abbreviationAt(rest)) {
            read(whole->model, padded, exact);
            at += whole->name.size();
        } else if (const ElementName* entry = longestElement(rest)) {
            item.element = entry->element;
            item.letters = lettersOf(rest.substr(0, entry->name.size()));
            at += entry->name.size();
            if (entry->element == Element::Fraction && at < model.size() && model[at] >= '1' &&
                model[at] <= '9')
                item.digits = model[at++] - '0';
            at += readSuffixes(model.substr(at), item);
            m_items.push_back(std::move(item));
        } else if (isAsciiLetter(rest.front()) || isAsciiDigit(rest.front())) {
            throwModel();
        } else {
            item.text = rest.substr(0, 1);
            m_items.push_back(std::move(item));
            ++at;
        }
    }
}

} // namespace ora
