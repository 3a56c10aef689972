#include "RegexpPattern.h"

#include "AsciiText.h"
#include "OraError.h"

#include <string>

namespace ora {

namespace {

using Options = QRegularExpression::PatternOptions;

Options optionsOf(std::string_view parameters) {
    Options options = QRegularExpression::UseUnicodePropertiesOption;
    for (const char c : parameters) {
        switch (c) {
        case 'i': options |= QRegularExpression::CaseInsensitiveOption; break;
        case 'c': options &= ~Options(QRegularExpression::CaseInsensitiveOption); break;
        case 'n': options |= QRegularExpression::DotMatchesEverythingOption; break;
        case 'm': options |= QRegularExpression::MultilineOption; break;
        case 'x': options |= QRegularExpression::ExtendedPatternSyntaxOption; break;
        default: throw OraError(1760, "illegal argument for function");
        }
    }
    return options;
}

// Rewrites the parts that mean something else to the library.
class Translation {
public:
    Translation(std::string_view pattern, bool multiline)
        : m_pattern(pattern)
        , m_multiline(multiline) {}

    std::string run() {
        while (m_at < m_pattern.size())
            step();
        return std::move(m_result);
    }

private:
    void step() {
        const char c = m_pattern[m_at++];
        if (c == '\\' && m_at < m_pattern.size())
            return escape();
        if (c == '[')
            return brackets();
        if (c == '$' && !m_multiline)
            m_result += "\\z";
        else
            m_result += c;
    }

    void escape() {
        constexpr std::string_view Meaningful = "dDwWsSAZz";
        const char c = m_pattern[m_at++];
        if (isAsciiLetter(c) && Meaningful.find(c) == std::string_view::npos)
            m_result += c;
        else
            (m_result += '\\') += c;
    }

    void brackets() {
        m_result += '[';
        if (m_at < m_pattern.size() && m_pattern[m_at] == '^')
            m_result += m_pattern[m_at++];
        if (m_at < m_pattern.size() && m_pattern[m_at] == ']') { // a first ] is a member
            m_result += "\\]";
            ++m_at;
        }
        while (m_at < m_pattern.size() && m_pattern[m_at] != ']')
            member();
        if (m_at < m_pattern.size())
            m_result += m_pattern[m_at++];
    }

    void member() {
        const std::string_view rest = m_pattern.substr(m_at);
        if (rest.starts_with("[:") || rest.starts_with("[=") || rest.starts_with("[.")) {
            const std::string close = std::string(1, rest[1]) + "]";
            const auto end = rest.find(close, 2);
            if (end != std::string_view::npos) {
                m_result += rest[1] == ':' ? rest.substr(0, end + 2) : rest.substr(2, end - 2);
                m_at += end + 2;
                return;
            }
        }
        if (rest.front() == '[' || rest.front() == '\\')
            m_result += '\\';
        m_result += rest.front();
        ++m_at;
    }

    std::string_view m_pattern;
    bool m_multiline;
    std::size_t m_at = 0;
    std::string m_result;
};

// The library's sentence tells which of the server's it is.
[[noreturn]] void throwPattern(const QString& reason) {
    using namespace Qt::StringLiterals;
    if (reason.contains("parenthes"_L1) || reason.contains("(?"_L1))
        throw OraError(12725, "unmatched parentheses in regular expression");
    if (reason.contains("terminating ]"_L1))
        throw OraError(12726, "unmatched bracket in regular expression");
    if (reason.contains("reference"_L1) || reason.contains("subpattern"_L1))
        throw OraError(12727, "invalid back reference in regular expression");
    if (reason.contains("quantifier"_L1))
        throw OraError(12732, "invalid interval value in regular expression");
    if (reason.contains("range"_L1))
        throw OraError(12728, "invalid range in regular expression");
    if (reason.contains("class"_L1))
        throw OraError(12729, "invalid character class in regular expression");
    throw OraError(12733, "regular expression too long");
}

} // namespace

QRegularExpression regexpPattern(std::string_view pattern, std::string_view parameters) {
    const Options options = optionsOf(parameters);
    const bool multiline = options.testFlag(QRegularExpression::MultilineOption);
    QRegularExpression result(QString::fromStdString(Translation(pattern, multiline).run()),
                              options);
    if (!result.isValid())
        throwPattern(result.errorString());
    return result;
}

} // namespace ora
