#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Characters in UTF-8 text are its code points; a malformed byte counts with the one before it.
namespace ora::utf8 {

constexpr bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

std::size_t length(std::string_view text);
// The byte where character number `index` (from 0) begins; text.size() past the end.
std::size_t offsetOf(std::string_view text, std::size_t index);
// The byte after the character that begins at `at`.
std::size_t next(std::string_view text, std::size_t at);
// The code point at `at`; U+FFFD where the bytes are none.
char32_t decode(std::string_view text, std::size_t at);
void append(std::string& text, char32_t codePoint);

} // namespace ora::utf8
