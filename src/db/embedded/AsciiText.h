#pragma once

#include <string>
#include <string_view>

// Letters and digits of the language itself (format models, units, keywords): ASCII whatever the
// locale is.
namespace ora {

constexpr bool isAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool isAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr char upperAscii(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

constexpr char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline std::string upperAscii(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        c = upperAscii(c);
    return result;
}

inline std::string lowerAscii(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        c = lowerAscii(c);
    return result;
}

// True when `text` begins with `word`, which is in upper case, in any case.
inline bool startsWithWord(std::string_view text, std::string_view word) {
    if (text.size() < word.size())
        return false;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (upperAscii(text[i]) != word[i])
            return false;
    }
    return true;
}

inline std::string_view trimmedAscii(std::string_view text) {
    constexpr std::string_view Blanks = " \t\n\r\f\v";
    const auto first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

} // namespace ora
