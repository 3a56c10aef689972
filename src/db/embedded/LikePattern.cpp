#include "LikePattern.h"

#include "OraError.h"
#include "Utf8.h"

namespace ora {

LikePattern::LikePattern(std::string_view pattern) {
    read(pattern, {});
}

LikePattern::LikePattern(std::string_view pattern, std::string_view escape) {
    if (utf8::length(escape) != 1)
        throw OraError(1425, "escape character must be character string of length 1");
    read(pattern, escape);
}

void LikePattern::addLiteral(std::string_view text) {
    if (m_tokens.empty() || m_tokens.back().kind != Kind::Literal)
        m_tokens.push_back({Kind::Literal, {}});
    m_tokens.back().text += text;
}

void LikePattern::read(std::string_view pattern, std::string_view escape) {
    for (std::size_t at = 0; at < pattern.size();) {
        const std::string_view rest = pattern.substr(at);
        if (!escape.empty() && rest.starts_with(escape)) {
            const std::string_view escaped = rest.substr(escape.size());
            if (!escaped.starts_with('%') && !escaped.starts_with('_') &&
                !escaped.starts_with(escape))
                throw OraError(1424, "missing or illegal character following the escape character");
            const std::size_t size = escaped.starts_with(escape) ? escape.size() : 1;
            addLiteral(escaped.substr(0, size));
            at += escape.size() + size;
        } else if (rest.front() == '%') {
            if (m_tokens.empty() || m_tokens.back().kind != Kind::Any)
                m_tokens.push_back({Kind::Any, {}});
            ++at;
        } else if (rest.front() == '_') {
            m_tokens.push_back({Kind::One, {}});
            ++at;
        } else {
            const std::size_t size = utf8::next(rest, 0);
            addLiteral(rest.substr(0, size));
            at += size;
        }
    }
}

// After a failure only the last % can take one character more, so the work is at most text times
// pattern.
bool LikePattern::matches(std::string_view text) const {
    std::size_t token = 0;
    std::size_t at = 0;
    std::size_t anyToken = m_tokens.size();
    std::size_t anyAt = 0;
    for (;;) {
        if (token == m_tokens.size() && at == text.size())
            return true;
        if (token < m_tokens.size()) {
            const Token& wanted = m_tokens[token];
            if (wanted.kind == Kind::Any) {
                if (token + 1 == m_tokens.size())
                    return true;
                anyToken = token++;
                anyAt = at;
                continue;
            }
            if (wanted.kind == Kind::One && at < text.size()) {
                at = utf8::next(text, at);
                ++token;
                continue;
            }
            if (wanted.kind == Kind::Literal && text.substr(at).starts_with(wanted.text)) {
                at += wanted.text.size();
                ++token;
                continue;
            }
        }
        if (anyToken == m_tokens.size() || anyAt >= text.size())
            return false;
        anyAt = utf8::next(text, anyAt);
        at = anyAt;
        token = anyToken + 1;
    }
}

} // namespace ora
