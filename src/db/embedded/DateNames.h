#pragma once

#include <array>
#include <string>
#include <string_view>

// English names of dates and numbers, in upper case.
namespace ora {

constexpr std::array<std::string_view, 12> monthNames = {
    "JANUARY", "FEBRUARY", "MARCH",     "APRIL",   "MAY",      "JUNE",
    "JULY",    "AUGUST",   "SEPTEMBER", "OCTOBER", "NOVEMBER", "DECEMBER"};

constexpr std::array<std::string_view, 7> dayNames = {"SUNDAY",   "MONDAY", "TUESDAY", "WEDNESDAY",
                                                      "THURSDAY", "FRIDAY", "SATURDAY"};

constexpr std::array<std::string_view, 12> romanMonths = {"I",   "II",   "III", "IV", "V",  "VI",
                                                          "VII", "VIII", "IX",  "X",  "XI", "XII"};

constexpr std::size_t ShortNameSize = 3;
constexpr std::size_t NamePadding = 9; // WEDNESDAY, SEPTEMBER
constexpr std::size_t RomanPadding = 4;

// "TWO THOUSAND TWENTY-SIX"; 0 to 9,999,999.
std::string spelledNumber(int value);
// "TWENTY-FIRST" of "TWENTY-ONE"
std::string spelledOrdinal(std::string spelled);
// "ST", "ND", "RD", "TH"
std::string_view ordinalSuffix(int value);

} // namespace ora
