#pragma once

#include "DateLanguage.h"
#include "OracleDate.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ora {

// What TZH, TZM, TZR and TZD of a time stand for.
struct ZoneText {
    int minutes = 0;      // from UTC
    std::string region;   // as TZR prints it; empty: the offset
    std::string daylight; // as TZD prints it
};

// What a text said about its time zone: a region, hours and minutes, or nothing.
struct ZoneInput {
    std::string region; // upper case; an offset stands here too when the model says TZR
    std::optional<int> hours;
    int minutes = 0;
    bool negative = false;

    bool given() const { return !region.empty() || hours; }
};

// A date format model: TO_CHAR(d, 'fmDay, DD Month YYYY') and TO_DATE(t, 'DD-MON-RR').
class DateFormat {
public:
    // Throws 1821.
    static DateFormat parse(std::string_view model);

    static constexpr int NoFraction = -1;
    // fractionDigits: of FF without a number; with NoFraction the date is a DATE, whose model may
    // name neither fraction nor time zone. Without a zone its elements are +00:00. Throws
    // 1821.
    std::string toText(const OracleDate& date, int fractionDigits = NoFraction,
                       const DateLocale& locale = {}, const ZoneText* zone = nullptr) const;

    // `now` gives the parts that the model does not have: this year and month; the first day;
    // midnight. Blanks before an element do not count, any mark stands for any other, and time
    // elements at the end may be missing. Throws the server's numbers between 1810 and 1880.
    OracleDate toDate(std::string_view text, const OracleDate& now, const DateLocale& locale = {},
                      ZoneInput* zone = nullptr) const;

    enum class Element {
        Mark,   // a punctuation mark or blank
        Quoted, // "text" in quotation marks
        Year4,
        SignedYear,
        CommaYear,
        Year3,
        Year2,
        Year1,
        RoundYear2,
        RoundYear4,
        SpelledYear,
        SignedSpelledYear,
        IsoYear4,
        IsoYear3,
        IsoYear2,
        IsoYear1,
        Century,
        SignedCentury,
        Quarter,
        MonthNumber,
        MonthName,
        MonthShort,
        MonthRoman,
        WeekOfYear,
        IsoWeek,
        WeekOfMonth,
        DayOfYear,
        DayOfMonth,
        DayName,
        DayShort,
        DayOfWeek,
        JulianDay,
        Hour24,
        Hour12,
        Minute,
        Second,
        SecondOfDay,
        Fraction,
        RadixMark,
        Meridian,
        MeridianDots,
        Era,
        EraDots,
        ZoneHour,
        ZoneMinute,
        ZoneName,
        ZoneDaylight,
    };

    // How the letters of a name come out, taken from the model's own letters.
    enum class Letters { Upper, Capitalized, Lower };

    struct Item {
        Element element = Element::Mark;
        Letters letters = Letters::Upper;
        bool padded = true;   // no FM
        bool exact = false;   // FX
        bool ordinal = false; // TH
        bool spelled = false; // SP
        int digits = 0;       // FF3: 3, FF: 0
        std::string text;     // of Mark and Quoted
    };

private:
    void read(std::string_view model, bool& padded, bool& exact);

    std::vector<Item> m_items;
};

// DATE 'YYYY-MM-DD' and TIMESTAMP 'YYYY-MM-DD HH24:MI:SS.FF' with an optional zone. Throw as toDate
// does.
OracleDate dateLiteral(std::string_view text);
OracleDate timestampLiteral(std::string_view text, ZoneInput* zone = nullptr);

} // namespace ora
