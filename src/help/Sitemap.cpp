#include "Sitemap.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr size_t mostEntries = 10000;

// Gathers entries from tags in their order.
class Reader {
public:
    void tag(const QString& name, const QString& attributes) {
        if (name == "ul"_L1)
            ++m_depth;
        else if (name == "/ul"_L1)
            m_depth = std::max(0, m_depth - 1);
        else if (name == "object"_L1)
            m_params.clear();
        else if (name == "param"_L1)
            m_params.insert(valueOf(attributes, u"name"_s).toLower(),
                            valueOf(attributes, u"value"_s));
        else if (name == "/object"_L1)
            finishObject();
    }

    std::vector<HelpEntry> entries;

private:
    static QString valueOf(const QString& attributes, const QString& name) {
        const QRegularExpression pattern(u"\\b"_s + name + u"\\s*=\\s*\"([^\"]*)\""_s,
                                         QRegularExpression::CaseInsensitiveOption);
        return withoutEntities(pattern.match(attributes).captured(1));
    }

    void finishObject() {
        const QString title = m_params.value(u"name"_s);
        if (title.isEmpty() || entries.size() >= mostEntries)
            return;
        const QString local = m_params.value(u"local"_s);
        const int deepest = entries.empty() ? 0 : entries.back().level + 1;
        entries.push_back({title, local.isEmpty() ? QString() : u'/' + local,
                           std::clamp(m_depth - 1, 0, deepest)});
        m_params.clear();
    }

    int m_depth = 0;
    QHash<QString, QString> m_params;
};

} // namespace

QString withoutEntities(QString text) {
    static const std::pair<QLatin1StringView, QLatin1StringView> names[] = {
        {"&lt;"_L1, "<"_L1},   {"&gt;"_L1, ">"_L1},  {"&quot;"_L1, "\""_L1}, {"&#39;"_L1, "'"_L1},
        {"&nbsp;"_L1, " "_L1}, {"&amp;"_L1, "&"_L1}, // last, or it would make others
    };
    for (const auto& [entity, character] : names)
        text.replace(entity, character);
    return text;
}

std::vector<HelpEntry> readSitemap(const QString& html) {
    static const QRegularExpression tags(u"<(/?[a-zA-Z]+)([^<>]*)>"_s);
    Reader reader;
    QRegularExpressionMatchIterator found = tags.globalMatch(html);
    while (found.hasNext()) {
        const QRegularExpressionMatch match = found.next();
        reader.tag(match.captured(1).toLower(), match.captured(2));
    }
    return reader.entries;
}
