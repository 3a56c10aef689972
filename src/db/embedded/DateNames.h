#pragma once

#include <array>
#include <string>
#include <string_view>

// Names of numbers, in upper case; English in every language, as the server has them.
namespace ora {

constexpr std::array<std::string_view, 12> romanMonths = {"I",   "II",   "III", "IV", "V",  "VI",
                                                          "VII", "VIII", "IX",  "X",  "XI", "XII"};

constexpr std::size_t RomanPadding = 4;

// "TWO THOUSAND TWENTY-SIX"; 0 to 9,999,999.
std::string spelledNumber(int value);
// "TWENTY-FIRST" of "TWENTY-ONE"
std::string spelledOrdinal(std::string spelled);
// "ST", "ND", "RD", "TH"
std::string_view ordinalSuffix(int value);

} // namespace ora
