#pragma once

#include "Arena.h"
#include "Lexer.h"
#include "Tree.h"

#include <initializer_list>
#include <string_view>
#include <vector>

namespace ora {

// Where the parser stands in the tokens. Words are matched folded; a quoted name never matches one.
class TokenCursor {
public:
    TokenCursor(std::string_view source, const std::vector<Token>& tokens, Arena& arena)
        : m_source(source)
        , m_tokens(tokens)
        , m_arena(arena) {}

    Arena& arena() const { return m_arena; }
    std::string_view source() const { return m_source; }

    const Token& peek(std::size_t ahead = 0) const;
    const Token& next();
    std::size_t index() const { return m_at; }
    void rewind(std::size_t index) { m_at = index; }

    bool atEnd() const { return peek().kind == TokenKind::End; }
    bool at(std::string_view word) const { return peek().isWord(word); }
    bool at(std::string_view word, std::string_view second) const;
    bool atSymbol(std::string_view symbol) const { return peek().isSymbol(symbol); }
    bool atAnyOf(std::initializer_list<std::string_view> words) const;

    bool accept(std::string_view word);
    bool accept(std::string_view word, std::string_view second);
    bool acceptSymbol(std::string_view symbol);

    void expect(std::string_view word, int code);
    void expectSymbol(std::string_view symbol, int code);

    // Throws `code` at the current token; a character that no statement can hold is told instead.
    [[noreturn]] void fail(int code) const;

    // Throws 933 unless nothing is left.
    void expectEnd() const;

    // A name that a person may give: any quoted name or a word that is not reserved.
    bool atName() const;
    Name name(int code);
    // An unsigned whole number; throws `code`.
    int integer(int code);

    Extent extentFrom(std::uint32_t begin) const { return {begin, lastEnd()}; }
    std::uint32_t begin() const { return peek().begin; }
    // Where the last consumed token ended.
    std::uint32_t lastEnd() const { return m_at == 0 ? 0 : m_tokens[m_at - 1].end; }
    std::string_view textFrom(std::uint32_t begin) const;

    // The parenthesis that `ahead` tokens from here opens begins a query: (SELECT …) or
    // ((SELECT …) UNION …).
    bool opensQuery(std::size_t ahead = 0) const;

    // The same where a value cannot stand: ((SELECT …)) is one as well.
    bool opensOnlyQuery() const;

    // Over a bracketed part whose content means nothing here; stands on the opening parenthesis.
    void skipParentheses();

    // Set while a trigger's body is read: its SELECT may name where the value goes.
    std::vector<Name>* selectInto = nullptr;

    // Nested constructs that recurse count their depth here; see Nesting.
    int depth = 0;

private:
    std::size_t closeOf(std::size_t open) const;
    void matchParentheses() const;

    std::string_view m_source;
    const std::vector<Token>& m_tokens;
    Arena& m_arena;
    std::size_t m_at = 0;
    mutable std::vector<std::uint32_t> m_closes; // for each token that opens; made when first asked
};

// Guards one level of recursion: a text nested deeper than the stack allows is refused.
class Nesting {
public:
    explicit Nesting(TokenCursor& cursor);
    ~Nesting() { --m_cursor.depth; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

private:
    TokenCursor& m_cursor;
};

// Words that cannot name anything unless quoted.
bool isReservedWord(std::string_view folded);

Name nameOf(const Token& token);

} // namespace ora
