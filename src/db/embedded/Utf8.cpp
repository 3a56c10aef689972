#include "Utf8.h"

namespace ora::utf8 {

std::size_t length(std::string_view text) {
    std::size_t count = 0;
    for (const char c : text)
        count += isContinuation(c) ? 0 : 1;
    return count;
}

std::size_t next(std::string_view text, std::size_t at) {
    ++at;
    while (at < text.size() && isContinuation(text[at]))
        ++at;
    return at;
}

std::size_t offsetOf(std::string_view text, std::size_t index) {
    std::size_t at = 0;
    for (; index > 0 && at < text.size(); --index)
        at = next(text, at);
    return at;
}

char32_t decode(std::string_view text, std::size_t at) {
    constexpr char32_t Replacement = 0xFFFD;
    const auto lead = static_cast<unsigned char>(text[at]);
    if (lead < 0x80)
        return lead;
    const std::size_t following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC0 || at + following >= text.size())
        return Replacement;
    char32_t value = lead & (0x3F >> following);
    for (std::size_t i = 1; i <= following; ++i) {
        if (!isContinuation(text[at + i]))
            return Replacement;
        value = value << 6 | (static_cast<unsigned char>(text[at + i]) & 0x3F);
    }
    return value;
}

void append(std::string& text, char32_t codePoint) {
    const auto tail = [&](int shift) {
        text += static_cast<char>(0x80 | (codePoint >> shift & 0x3F));
    };
    if (codePoint < 0x80) {
        text += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        text += static_cast<char>(0xC0 | codePoint >> 6);
        tail(0);
    } else if (codePoint < 0x10000) {
        text += static_cast<char>(0xE0 | codePoint >> 12);
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | (codePoint >> 18 & 0x07));
        tail(12);
        tail(6);
        tail(0);
    }
}

} // namespace ora::utf8
