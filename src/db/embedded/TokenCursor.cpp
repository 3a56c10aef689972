#include "TokenCursor.h"

#include "ErrorText.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace ora {

namespace {

constexpr int InvalidCharacter = 911;
constexpr int NotProperlyEnded = 933;

// Deep enough for any written statement, and far within a thread's stack.
constexpr int DeepestNesting = 200;

// Sorted.
constexpr std::string_view reservedWords[] = {
    "ACCESS",    "ADD",     "ALL",        "ALTER",      "AND",        "ANY",       "AS",
    "ASC",       "AUDIT",   "BETWEEN",    "BY",         "CHAR",       "CHECK",     "CLUSTER",
    "COLUMN",    "COMMENT", "COMPRESS",   "CONNECT",    "CREATE",     "CURRENT",   "DATE",
    "DECIMAL",   "DEFAULT", "DELETE",     "DESC",       "DISTINCT",   "DROP",      "ELSE",
    "EXCLUSIVE", "EXISTS",  "FILE",       "FLOAT",      "FOR",        "FROM",      "GRANT",
    "GROUP",     "HAVING",  "IDENTIFIED", "IMMEDIATE",  "IN",         "INCREMENT", "INDEX",
    "INITIAL",   "INSERT",  "INTEGER",    "INTERSECT",  "INTO",       "IS",        "LEVEL",
    "LIKE",      "LOCK",    "LONG",       "MAXEXTENTS", "MINUS",      "MLSLABEL",  "MODE",
    "MODIFY",    "NOAUDIT", "NOCOMPRESS", "NOT",        "NOWAIT",     "NULL",      "NUMBER",
    "OF",        "OFFLINE", "ON",         "ONLINE",     "OPTION",     "OR",        "ORDER",
    "PCTFREE",   "PRIOR",   "PUBLIC",     "RAW",        "RENAME",     "RESOURCE",  "REVOKE",
    "ROW",       "ROWID",   "ROWNUM",     "ROWS",       "SELECT",     "SESSION",   "SET",
    "SHARE",     "SIZE",    "SMALLINT",   "START",      "SUCCESSFUL", "SYNONYM",   "SYSDATE",
    "TABLE",     "THEN",    "TO",         "TRIGGER",    "UID",        "UNION",     "UNIQUE",
    "UPDATE",    "USER",    "VALIDATE",   "VALUES",     "VARCHAR",    "VARCHAR2",  "VIEW",
    "WHENEVER",  "WHERE",   "WITH",
};

} // namespace

bool isReservedWord(std::string_view folded) {
    return std::binary_search(std::begin(reservedWords), std::end(reservedWords), folded);
}

Name nameOf(const Token& token) {
    return {token.text, {token.begin, token.end}, token.kind == TokenKind::QuotedName};
}

const Token& TokenCursor::peek(std::size_t ahead) const {
    return m_tokens[std::min(m_at + ahead, m_tokens.size() - 1)];
}

const Token& TokenCursor::next() {
    const Token& token = peek();
    if (m_at + 1 < m_tokens.size())
        ++m_at;
    return token;
}

bool TokenCursor::at(std::string_view word, std::string_view second) const {
    return peek().isWord(word) && peek(1).isWord(second);
}

bool TokenCursor::atAnyOf(std::initializer_list<std::string_view> words) const {
    return peek().kind == TokenKind::Word &&
           std::find(words.begin(), words.end(), peek().text) != words.end();
}

bool TokenCursor::accept(std::string_view word) {
    if (!at(word))
        return false;
    next();
    return true;
}

bool TokenCursor::accept(std::string_view word, std::string_view second) {
    if (!at(word, second))
        return false;
    next();
    next();
    return true;
}

bool TokenCursor::acceptSymbol(std::string_view symbol) {
    if (!atSymbol(symbol))
        return false;
    next();
    return true;
}

void TokenCursor::expect(std::string_view word, int code) {
    if (!accept(word))
        fail(code);
}

void TokenCursor::expectSymbol(std::string_view symbol, int code) {
    if (!acceptSymbol(symbol))
        fail(code);
}

void TokenCursor::fail(int code) const {
    const Token& token = peek();
    const bool unusable = token.kind == TokenKind::Invalid || token.isSymbol(";");
    raise(unusable ? InvalidCharacter : code, token.begin);
}

void TokenCursor::expectEnd() const {
    if (!atEnd())
        fail(NotProperlyEnded);
}

bool TokenCursor::atName() const {
    const Token& token = peek();
    return token.kind == TokenKind::QuotedName ||
           (token.kind == TokenKind::Word && !isReservedWord(token.text));
}

Name TokenCursor::name(int code) {
    if (!atName())
        fail(code);
    return nameOf(next());
}

int TokenCursor::integer(int code) {
    const Token& token = peek();
    int value = 0;
    const char* const end = token.text.data() + token.text.size();
    if (token.kind != TokenKind::Number ||
        std::from_chars(token.text.data(), end, value).ptr != end)
        fail(code);
    next();
    return value;
}

std::string_view TokenCursor::textFrom(std::uint32_t begin) const {
    return lastEnd() <= begin ? std::string_view() : m_source.substr(begin, lastEnd() - begin);
}

void TokenCursor::matchParentheses() const {
    m_closes.assign(m_tokens.size(), static_cast<std::uint32_t>(m_tokens.size() - 1));
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i < m_tokens.size(); ++i) {
        if (m_tokens[i].isSymbol("(")) {
            open.push_back(i);
        } else if (m_tokens[i].isSymbol(")") && !open.empty()) {
            m_closes[open.back()] = static_cast<std::uint32_t>(i);
            open.pop_back();
        }
    }
}

std::size_t TokenCursor::closeOf(std::size_t open) const {
    if (m_closes.empty())
        matchParentheses();
    return m_closes[open];
}

bool TokenCursor::opensQuery(std::size_t ahead) const {
    std::size_t at = m_at + ahead;
    while (at + 1 < m_tokens.size() && m_tokens[at].isSymbol("(")) {
        const Token& first = m_tokens[at + 1];
        if (first.isWord("SELECT") || first.isWord("WITH"))
            return true;
        if (!first.isSymbol("("))
            return false;
        const Token& after = m_tokens[std::min(closeOf(at + 1) + 1, m_tokens.size() - 1)];
        const bool continued = after.isWord("UNION") || after.isWord("MINUS") ||
                               after.isWord("INTERSECT") || after.isWord("EXCEPT") ||
                               after.isWord("ORDER") || after.isWord("FETCH") ||
                               after.isWord("OFFSET");
        if (!continued)
            return false;
        ++at;
    }
    return false;
}

bool TokenCursor::opensOnlyQuery() const {
    std::size_t at = m_at;
    while (at + 1 < m_tokens.size() && m_tokens[at].isSymbol("(") &&
           m_tokens[at + 1].isSymbol("(") && closeOf(at + 1) + 1 == closeOf(at))
        ++at;
    return opensQuery(at - m_at);
}

void TokenCursor::skipParentheses() {
    constexpr int MissingParenthesis = 907;
    int open = 0;
    do {
        if (atEnd())
            fail(MissingParenthesis);
        open += atSymbol("(") ? 1 : atSymbol(")") ? -1 : 0;
        next();
    } while (open > 0);
}

Nesting::Nesting(TokenCursor& cursor)
    : m_cursor(cursor) {
    if (cursor.depth >= DeepestNesting)
        refuse("text nested deeper than " + std::to_string(DeepestNesting) + " levels",
               cursor.begin());
    ++cursor.depth;
}

} // namespace ora
