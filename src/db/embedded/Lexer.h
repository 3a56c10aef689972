#pragma once

#include "Arena.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ora {

enum class TokenKind : std::uint8_t {
    End,
    Word,       // text: folded to upper case
    QuotedName, // text: what stands between the quotes
    Number,     // text: as written
    Text,       // text: decoded
    NationalText,
    Bind,    // :name; text: the name, folded unless quoted
    Symbol,  // text: canonical, so that ^= and <> read !=
    Invalid, // a character that no statement can hold; an error only when the parser gets there
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::uint32_t begin = 0; // byte offsets into the statement
    std::uint32_t end = 0;
    std::string_view text;

    bool isWord(std::string_view word) const { return kind == TokenKind::Word && text == word; }
    bool isSymbol(std::string_view symbol) const {
        return kind == TokenKind::Symbol && text == symbol;
    }
};

// The tokens of one statement; the last one is End. Comments and hints are skipped. Texts point
// into `source` or into the arena: both must outlive the tokens. Throws OraError 1756, 1740, 1741,
// 1742 and 972.
std::vector<Token> tokenize(std::string_view source, Arena& arena);

// A name as messages show it, in double quotes.
std::string displayName(std::string_view name);

// Upper case; letters beyond ASCII too.
std::string foldName(std::string_view name);

} // namespace ora
