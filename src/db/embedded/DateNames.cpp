#include "DateNames.h"

namespace ora {

namespace {

constexpr std::string_view small[] = {"ZERO",    "ONE",     "TWO",       "THREE",    "FOUR",
                                      "FIVE",    "SIX",     "SEVEN",     "EIGHT",    "NINE",
                                      "TEN",     "ELEVEN",  "TWELVE",    "THIRTEEN", "FOURTEEN",
                                      "FIFTEEN", "SIXTEEN", "SEVENTEEN", "EIGHTEEN", "NINETEEN"};
constexpr std::string_view tens[] = {"",      "",      "TWENTY",  "THIRTY", "FORTY",
                                     "FIFTY", "SIXTY", "SEVENTY", "EIGHTY", "NINETY"};

struct Irregular {
    std::string_view cardinal;
    std::string_view ordinal;
};

constexpr Irregular irregular[] = {{"ONE", "FIRST"},     {"TWO", "SECOND"},   {"THREE", "THIRD"},
                                   {"FIVE", "FIFTH"},    {"EIGHT", "EIGHTH"}, {"NINE", "NINTH"},
                                   {"TWELVE", "TWELFTH"}};

void append(std::string& text, const std::string& part) {
    if (part.empty())
        return;
    text += text.empty() ? part : " " + part;
}

std::string belowHundred(int value) {
    constexpr int FirstTens = 20;
    if (value < FirstTens)
        return std::string(small[value]);
    std::string text(tens[value / 10]);
    if (value % 10 != 0)
        text += "-" + std::string(small[value % 10]);
    return text;
}

std::string belowThousand(int value) {
    std::string text;
    if (value >= 100)
        text = std::string(small[value / 100]) + " HUNDRED";
    if (value % 100 != 0)
        append(text, belowHundred(value % 100));
    return text;
}

} // namespace

std::string spelledNumber(int value) {
    constexpr int Million = 1000000;
    constexpr int Thousand = 1000;
    if (value <= 0)
        return "ZERO";
    std::string text;
    if (value >= Million)
        append(text, belowThousand(value / Million % Thousand) + " MILLION");
    if (value / Thousand % Thousand != 0)
        append(text, belowThousand(value / Thousand % Thousand) + " THOUSAND");
    append(text, belowThousand(value % Thousand));
    return text;
}

std::string spelledOrdinal(std::string spelled) {
    const auto cut = spelled.find_last_of(" -");
    const std::size_t last = cut == std::string::npos ? 0 : cut + 1;
    const std::string word = spelled.substr(last);
    spelled.erase(last);
    for (const Irregular& entry : irregular) {
        if (entry.cardinal == word)
            return spelled + std::string(entry.ordinal);
    }
    if (word.ends_with('Y'))
        return spelled + word.substr(0, word.size() - 1) + "IETH";
    return spelled + word + "TH";
}

std::string_view ordinalSuffix(int value) {
    const int teens = value % 100 / 10;
    if (teens == 1)
        return "TH";
    switch (value % 10) {
    case 1: return "ST";
    case 2: return "ND";
    case 3: return "RD";
    default: return "TH";
    }
}

} // namespace ora
