#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

// The names of months and days in a language, in upper case.
namespace ora {

struct DateLanguage {
    std::string_view name;    // as NLS_DATE_LANGUAGE has it
    std::string_view isoName; // as USERENV('LANG') has it
    std::string_view sort;    // the NLS_SORT that NLS_LANGUAGE brings with it
    std::array<std::string_view, 12> months;
    std::array<std::string_view, 12> shortMonths;
    std::array<std::string_view, 7> days; // from Sunday
    std::array<std::string_view, 7> shortDays;

    // The characters to which format models fill up a name.
    template<std::size_t Count>
    static constexpr std::size_t widthOf(const std::array<std::string_view, Count>& names) {
        std::size_t width = 0;
        for (const std::string_view one : names)
            width = std::max(
                width, static_cast<std::size_t>(std::count_if(one.begin(), one.end(), [](char c) {
                    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
                })));
        return width;
    }
};

const DateLanguage& englishDates();
// In any case; null when there is no such language.
const DateLanguage* findDateLanguage(std::string_view name);

// What a date's text depends on besides its model.
struct DateLocale {
    const DateLanguage* language = &englishDates();
    int firstWeekday = 0; // 0 is Sunday
    char radix = '.';
};

// How many bytes `text` has in common with the whole of `upperName`, whatever the case; 0 when
// something else stands there.
std::size_t matchedName(std::string_view text, std::string_view upperName);

} // namespace ora
