#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ora {

// The pattern of LIKE: % any characters, _ one, everything else itself, letters with their case.
class LikePattern {
public:
    explicit LikePattern(std::string_view pattern);
    // Throws 1425 unless the escape is one character and 1424 where it stands before anything but
    // %, _ or itself.
    LikePattern(std::string_view pattern, std::string_view escape);

    bool matches(std::string_view text) const;

private:
    enum class Kind { Literal, One, Any };

    struct Token {
        Kind kind;
        std::string text; // of a literal, as long as possible
    };

    void read(std::string_view pattern, std::string_view escape);
    void addLiteral(std::string_view text);

    std::vector<Token> m_tokens;
};

} // namespace ora
