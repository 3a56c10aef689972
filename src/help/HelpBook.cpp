#include "HelpBook.h"

#include "ChmFile.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

enum SystemEntry : quint16 { ContentsFile = 0, IndexFile = 1, FirstPage = 2 };

quint16 shortAt(const QByteArray& bytes, qsizetype at) {
    constexpr int byteBits = 8;
    return quint16(quint8(bytes[at]) | quint8(bytes[at + 1]) << byteBits);
}

// The file "#SYSTEM": after a version, entries of a code, a length and that many bytes.
QHash<quint16, QString> systemEntries(const QByteArray& bytes) {
    QHash<quint16, QString> entries;
    qsizetype at = 4;
    constexpr qsizetype headSize = 4;
    while (at + headSize <= bytes.size()) {
        const quint16 code = shortAt(bytes, at);
        const quint16 size = shortAt(bytes, at + 2);
        at += headSize;
        const QByteArray value = bytes.mid(at, size);
        entries.insert(code, QString::fromUtf8(value.constData())); // ends at the first zero
        at += size;
    }
    return entries;
}

QString withoutAnchor(const QString& page) {
    return page.left(page.indexOf(u'#'));
}

QStringList wordsOf(const QString& text) {
    static const QRegularExpression between(u"[^\\w$#.]+"_s,
                                            QRegularExpression::UseUnicodePropertiesOption);
    return text.split(between, Qt::SkipEmptyParts);
}

QRegularExpression beginningOf(const QString& word) {
    return QRegularExpression(u"(?<!\\w)"_s + QRegularExpression::escape(word),
                              QRegularExpression::CaseInsensitiveOption |
                                  QRegularExpression::UseUnicodePropertiesOption);
}

QString excerptAt(const QString& text, qsizetype place) {
    constexpr qsizetype before = 40;
    constexpr qsizetype length = 120;
    const qsizetype begin = std::max<qsizetype>(0, place - before);
    const qsizetype wordBegin = begin == 0 ? 0 : text.indexOf(u' ', begin) + 1;
    const QString dots = u"…"_s;
    const QString middle = text.mid(wordBegin, length);
    return (wordBegin > 0 ? dots : QString()) + middle +
           (wordBegin + length < text.size() ? dots : QString());
}

} // namespace

QString plainText(const QString& html) {
    static const QRegularExpression head(u"<head>.*</head>"_s,
                                         QRegularExpression::CaseInsensitiveOption |
                                             QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression inlineTag(u"</?(code|b|i|em|strong|a|kbd|span)\\b[^<>]*>"_s,
                                              QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression tag(u"<[^<>]*>"_s);
    QString text = html;
    text.remove(head).remove(inlineTag).replace(tag, u" "_s);
    return withoutEntities(text).simplified();
}

std::unique_ptr<HelpBook> HelpBook::open(const QString& path) {
    std::unique_ptr<ChmFile> file = ChmFile::open(path);
    if (!file)
        return nullptr;
    std::unique_ptr<HelpBook> book(new HelpBook(std::move(file)));
    return book->m_contents.empty() || book->file(book->m_firstPage).isEmpty() ? nullptr
                                                                               : std::move(book);
}

HelpBook::HelpBook(std::unique_ptr<ChmFile> file)
    : m_file(std::move(file)) {
    const QHash<quint16, QString> entries = systemEntries(m_file->read(u"/#SYSTEM"_s));
    const auto sitemap = [&](SystemEntry entry) {
        return readSitemap(QString::fromUtf8(m_file->read(u'/' + entries.value(entry))));
    };
    m_firstPage = u'/' + entries.value(FirstPage);
    m_contents = sitemap(ContentsFile);
    m_index = sitemap(IndexFile);
    std::stable_sort(m_index.begin(), m_index.end(), [](const HelpEntry& a, const HelpEntry& b) {
        return a.title.compare(b.title, Qt::CaseInsensitive) < 0;
    });
}

HelpBook::~HelpBook() = default;

QByteArray HelpBook::file(const QString& name) const {
    return m_file->read(withoutAnchor(name));
}

const std::vector<HelpBook::PageText>& HelpBook::texts() const {
    if (!m_texts.empty())
        return m_texts;
    QSet<QString> seen;
    for (const HelpEntry& entry : m_contents) {
        const QString page = withoutAnchor(entry.page);
        if (page.isEmpty() || seen.contains(page))
            continue;
        seen.insert(page);
        m_texts.push_back({entry.title, page, plainText(QString::fromUtf8(file(page)))});
    }
    return m_texts;
}

std::vector<HelpBook::Match> HelpBook::search(const QString& text) const {
    struct Ranked {
        Match match;
        bool inTitle;
        qsizetype places;
    };
    const QStringList words = wordsOf(text);
    std::vector<Ranked> found;
    for (const PageText& page : texts()) {
        Ranked candidate{{page.title, page.page, {}}, false, 0};
        bool hasAll = !words.isEmpty();
        for (const QString& word : words) {
            const QRegularExpression pattern = beginningOf(word);
            const qsizetype places = page.text.count(pattern);
            hasAll = hasAll && places > 0;
            candidate.places += places;
            candidate.inTitle = candidate.inTitle || page.title.contains(pattern);
        }
        if (!hasAll)
            continue;
        candidate.match.excerpt =
            excerptAt(page.text, page.text.indexOf(beginningOf(words.constFirst())));
        found.push_back(std::move(candidate));
    }
    std::stable_sort(found.begin(), found.end(), [](const Ranked& a, const Ranked& b) {
        return std::pair(!a.inTitle, -a.places) < std::pair(!b.inTitle, -b.places);
    });
    std::vector<Match> matches;
    for (Ranked& ranked : found)
        matches.push_back(std::move(ranked.match));
    return matches;
}
