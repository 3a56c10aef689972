#include "Lexer.h"

#include "AsciiText.h"
#include "ErrorText.h"
#include "UnicodeText.h"

#include <QList>
#include <QString>

#include <algorithm>
#include <array>

namespace ora {

namespace {

constexpr std::size_t LongestName = 128;
constexpr unsigned char FirstBeyondAscii = 0x80;

// Longest first where one begins another.
struct SymbolSpelling {
    std::string_view written;
    std::string_view canonical;
};
constexpr SymbolSpelling symbolSpellings[] = {
    {"||", "||"}, {"!=", "!="}, {"<>", "!="}, {"^=", "!="}, {"~=", "!="}, {"<=", "<="},
    {">=", ">="}, {":=", ":="}, {"=>", "=>"}, {"..", ".."}, {"**", "**"}, {"(", "("},
    {")", ")"},   {",", ","},   {".", "."},   {";", ";"},   {"+", "+"},   {"-", "-"},
    {"*", "*"},   {"/", "/"},   {"=", "="},   {"<", "<"},   {">", ">"},   {"@", "@"},
    {"|", "|"},   {"[", "["},   {"]", "]"},   {"%", "%"},
};

bool isBeyondAscii(char c) {
    return static_cast<unsigned char>(c) >= FirstBeyondAscii;
}

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r') || c == '\0';
}

char closingDelimiter(char open) {
    switch (open) {
    case '[': return ']';
    case '{': return '}';
    case '(': return ')';
    case '<': return '>';
    default: return open;
    }
}

class Scanner {
public:
    Scanner(std::string_view source, Arena& arena)
        : m_source(source)
        , m_arena(arena) {}

    std::vector<Token> run() {
        constexpr std::size_t BytesPerToken = 5;
        m_tokens.reserve(m_source.size() / BytesPerToken + 2);
        while (skipBlanksAndComments(), m_at < m_source.size())
            scanToken();
        m_start = m_at;
        add(TokenKind::End, {});
        return std::move(m_tokens);
    }

private:
    char peek(std::size_t ahead = 0) const {
        return m_at + ahead < m_source.size() ? m_source[m_at + ahead] : '\0';
    }

    [[noreturn]] void fail(int code) const { raise(code, static_cast<long>(m_start)); }

    void add(TokenKind kind, std::string_view text) {
        m_tokens.push_back(
            {kind, static_cast<std::uint32_t>(m_start), static_cast<std::uint32_t>(m_at), text});
    }

    void skipBlanksAndComments() {
        while (m_at < m_source.size()) {
            if (isBlank(peek()))
                ++m_at;
            else if (peek() == '-' && peek(1) == '-')
                m_at = std::min(m_source.find('\n', m_at), m_source.size());
            else if (peek() == '/' && peek(1) == '*')
                skipBlockComment();
            else
                return;
        }
    }

    void skipBlockComment() {
        constexpr int UnterminatedComment = 1742;
        m_start = m_at;
        const std::size_t close = m_source.find("*/", m_at + 2);
        if (close == std::string_view::npos)
            fail(UnterminatedComment);
        m_at = close + 2;
    }

    void scanToken() {
        m_start = m_at;
        const char c = peek();
        if (isAsciiDigit(c) || (c == '.' && isAsciiDigit(peek(1))))
            return scanNumber();
        if (c == '\'')
            return scanText(TokenKind::Text);
        if (c == '"')
            return add(TokenKind::QuotedName, scanQuotedName());
        if (isAsciiLetter(c) || letterBeyondAscii() > 0)
            return scanWord();
        if (c == ':' && scanBind())
            return;
        if (!scanSymbol())
            scanInvalid();
    }

    void scanInvalid() {
        ++m_at;
        while (m_at < m_source.size() && isBeyondAscii(m_source[m_start]) &&
               (static_cast<unsigned char>(peek()) & 0xC0) == FirstBeyondAscii)
            ++m_at;
        add(TokenKind::Invalid, m_source.substr(m_start, m_at - m_start));
    }

    bool scanSymbol() {
        if (scanSplitComparison())
            return true;
        const std::string_view rest = m_source.substr(m_at);
        for (const SymbolSpelling& spelling : symbolSpellings) {
            if (!rest.starts_with(spelling.written))
                continue;
            m_at += spelling.written.size();
            add(TokenKind::Symbol, spelling.canonical);
            return true;
        }
        return false;
    }

    // The server reads "> =" as ">=".
    bool scanSplitComparison() {
        constexpr std::string_view openers = "<>!^";
        if (openers.find(peek()) == std::string_view::npos || !isBlank(peek(1)))
            return false;
        std::size_t equals = m_at + 1;
        while (equals < m_source.size() && isBlank(m_source[equals]))
            ++equals;
        if (equals == m_source.size() || m_source[equals] != '=')
            return false;
        const char opener = peek();
        m_at = equals + 1;
        add(TokenKind::Symbol, opener == '<' ? "<=" : opener == '>' ? ">=" : "!=");
        return true;
    }

    // Bytes of the letter that starts here beyond ASCII, 0 when there is none.
    std::size_t letterBeyondAscii() const {
        if (!isBeyondAscii(peek()))
            return 0;
        std::size_t size = 1;
        while ((static_cast<unsigned char>(peek(size)) & 0xC0) == FirstBeyondAscii)
            ++size;
        const QString decoded =
            QString::fromUtf8(m_source.data() + m_at, static_cast<qsizetype>(size));
        const char32_t letter = decoded.toUcs4().value(0);
        return QChar::isLetterOrNumber(letter) ? size : 0;
    }

    void skipWordCharacters() {
        while (m_at < m_source.size()) {
            const char c = peek();
            if (isAsciiLetter(c) || isAsciiDigit(c) || c == '_' || c == '$' || c == '#')
                ++m_at;
            else if (const std::size_t size = letterBeyondAscii(); size > 0)
                m_at += size;
            else
                return;
        }
    }

    void scanWord() {
        skipWordCharacters();
        const std::string_view written = m_source.substr(m_start, m_at - m_start);
        if (peek() == '\'' && scanPrefixedText(written))
            return;
        add(TokenKind::Word, folded(written));
    }

    std::string_view folded(std::string_view written) {
        constexpr int NameTooLong = 972;
        if (written.size() > LongestName)
            fail(NameTooLong);
        if (std::none_of(written.begin(), written.end(),
                         [](char c) { return (c >= 'a' && c <= 'z') || isBeyondAscii(c); }))
            return written;
        return m_arena.text(foldName(written));
    }

    // n'…', q'[…]' and nq'[…]'; false when the word before the quote is none of these.
    bool scanPrefixedText(std::string_view prefix) {
        const std::string upper = upperAscii(prefix.substr(0, 3));
        if (upper == "N")
            scanText(TokenKind::NationalText);
        else if (upper == "Q")
            scanDelimitedText(TokenKind::Text);
        else if (upper == "NQ")
            scanDelimitedText(TokenKind::NationalText);
        else
            return false;
        return true;
    }

    static constexpr int UnterminatedText = 1756;

    void scanText(TokenKind kind) {
        const std::size_t first = ++m_at;
        bool doubled = false;
        for (;; m_at += 2, doubled = true) {
            m_at = m_source.find('\'', m_at);
            if (m_at == std::string_view::npos)
                fail(UnterminatedText);
            if (peek(1) != '\'')
                break;
        }
        const std::string_view inside = m_source.substr(first, m_at - first);
        ++m_at;
        add(kind, doubled ? withSingleQuotes(inside) : inside);
    }

    std::string_view withSingleQuotes(std::string_view doubled) {
        std::string text;
        text.reserve(doubled.size());
        for (std::size_t i = 0; i < doubled.size(); ++i) {
            text += doubled[i];
            if (doubled[i] == '\'')
                ++i;
        }
        return m_arena.text(text);
    }

    void scanDelimitedText(TokenKind kind) {
        const char open = peek(1);
        if (isBlank(open))
            fail(UnterminatedText);
        const std::array<char, 2> closing = {closingDelimiter(open), '\''};
        const std::size_t first = m_at + 2;
        const std::size_t last = m_source.find(std::string_view(closing.data(), 2), first);
        if (last == std::string_view::npos)
            fail(UnterminatedText);
        m_at = last + 2;
        add(kind, m_source.substr(first, last - first));
    }

    std::string_view scanQuotedName() {
        constexpr int MissingQuote = 1740;
        constexpr int EmptyName = 1741;
        constexpr int NameTooLong = 972;
        const std::size_t first = m_at + 1;
        const std::size_t last = m_source.find('"', first);
        if (last == std::string_view::npos)
            fail(MissingQuote);
        m_at = last + 1;
        if (last == first)
            fail(EmptyName);
        if (last - first > LongestName)
            fail(NameTooLong);
        return m_source.substr(first, last - first);
    }

    bool scanBind() {
        std::size_t at = m_at + 1;
        while (at < m_source.size() && isBlank(m_source[at]))
            ++at;
        const char c = at < m_source.size() ? m_source[at] : '\0';
        if (!isAsciiDigit(c) && !isAsciiLetter(c) && c != '"')
            return false;
        m_at = at;
        if (c == '"') {
            const std::string_view name = scanQuotedName();
            add(TokenKind::Bind, name);
            return true;
        }
        skipWordCharacters();
        add(TokenKind::Bind, folded(m_source.substr(at, m_at - at)));
        return true;
    }

    void scanNumber() {
        skipDigits();
        if (peek() == '.' && peek(1) != '.') {
            ++m_at;
            skipDigits();
        }
        skipExponent();
        const char suffix = upperAscii(peek());
        if ((suffix == 'F' || suffix == 'D') && !isWordCharacter(peek(1)))
            ++m_at;
        add(TokenKind::Number, m_source.substr(m_start, m_at - m_start));
    }

    static bool isWordCharacter(char c) {
        return isAsciiLetter(c) || isAsciiDigit(c) || c == '_' || c == '$' || c == '#';
    }

    void skipDigits() {
        while (isAsciiDigit(peek()))
            ++m_at;
    }

    // Without digits after it, the E belongs to a name.
    void skipExponent() {
        if (upperAscii(peek()) != 'E')
            return;
        const std::size_t sign = peek(1) == '+' || peek(1) == '-' ? 1 : 0;
        if (!isAsciiDigit(peek(1 + sign)))
            return;
        m_at += 1 + sign;
        skipDigits();
    }

    std::string_view m_source;
    Arena& m_arena;
    std::vector<Token> m_tokens;
    std::size_t m_at = 0;
    std::size_t m_start = 0;
};

} // namespace

std::vector<Token> tokenize(std::string_view source, Arena& arena) {
    return Scanner(source, arena).run();
}

std::string foldName(std::string_view name) {
    return upperText(name);
}

std::string displayName(std::string_view name) {
    return '"' + std::string(name) + '"';
}

} // namespace ora
