#include "RtfReader.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

// Deeper nesting is read, but its formats are not kept apart.
constexpr size_t deepestFormat = 10000;
constexpr int mostFallbacks = 16;
constexpr quint32 opaque = 0xff000000;

constexpr std::array<QStringView, 12> skippedGroups = {
    u"fonttbl", u"stylesheet", u"info",      u"pict",      u"object",  u"header",
    u"footer",  u"footnote",   u"listtable", u"generator", u"filetbl", u"fldinst"};

// Windows-1252, 0x80 to 0x9f.
constexpr std::array<char16_t, 32> ansiControls = {
    0x20ac, 0x81,   0x201a, 0x192,  0x201e, 0x2026, 0x2020, 0x2021, 0x2c6,  0x2030, 0x160,
    0x2039, 0x152,  0x8d,   0x17d,  0x8f,   0x90,   0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x2dc,  0x2122, 0x161,  0x203a, 0x153,  0x9d,   0x17e,  0x178};

QChar fromAnsi(int byte) {
    return byte >= 0x80 && byte < 0xa0 ? QChar(ansiControls[size_t(byte - 0x80)])
                                       : QChar(char16_t(byte));
}

bool isLetter(QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

int hexDigit(QChar c) {
    if (isDigit(c))
        return c.unicode() - u'0';
    if (c >= u'a' && c <= u'f')
        return c.unicode() - u'a' + 10;
    return c >= u'A' && c <= u'F' ? c.unicode() - u'A' + 10 : -1;
}

bool endsText(QChar c) {
    return c == u'\\' || c == u'{' || c == u'}' || c == u'\r' || c == u'\n' ||
           c == QChar::ParagraphSeparator;
}

} // namespace

std::vector<RtfParagraph> RtfReader::read(QStringView text) {
    if (!isRtf(text))
        return plainParagraphs(text);
    RtfReader reader(text);
    reader.readDocument();
    return std::move(reader.m_paragraphs);
}

void RtfReader::readDocument() {
    while (m_at < m_text.size()) {
        switch (m_text[m_at].unicode()) {
        case u'{': openGroup(); break;
        case u'}': closeGroup(); break;
        case u'\\': readControl(); break;
        case u'\r':
        case u'\n': ++m_at; break;
        case QChar::ParagraphSeparator:
            endParagraph();
            ++m_at;
            break;
        default: {
            const auto end = std::find_if(m_text.begin() + m_at, m_text.end(), endsText);
            const qsizetype length = end - m_text.begin() - m_at;
            addText(m_text.sliced(m_at, length));
            m_at += length;
        }
        }
    }
    if (m_paragraphs.size() > 1 && m_paragraphs.back().text.isEmpty())
        m_paragraphs.pop_back();
}

void RtfReader::openGroup() {
    if (m_outer.size() < deepestFormat)
        m_outer.push_back(m_format);
    else
        ++m_unsavedDepth;
    m_fallbacksLeft = 0;
    m_groupContent = ++m_at;
}

void RtfReader::closeGroup() {
    if (m_unsavedDepth > 0) {
        --m_unsavedDepth;
    } else if (!m_outer.empty()) {
        m_format = m_outer.back();
        m_outer.pop_back();
    }
    m_fallbacksLeft = 0;
    ++m_at;
}

void RtfReader::readControl() {
    const bool beginsGroup = m_at == m_groupContent;
    if (++m_at == m_text.size())
        return;
    const QChar symbol = m_text[m_at];
    if (isLetter(symbol))
        return actOn(readWord(), beginsGroup);
    ++m_at;
    if (symbol == u'*' && beginsGroup)
        skipGroup();
    else
        readSymbol(symbol);
}

void RtfReader::readSymbol(QChar symbol) {
    switch (symbol.unicode()) {
    case u'\'': return readHex();
    case u'\r':
    case u'\n': return endParagraph();
    case u'~': return addCharacter(QChar::Nbsp);
    case u'_': return addCharacter(QChar(0x2011)); // a hyphen that does not break
    case u'*':
    case u'-':
    case u'|':
    case u':': return;
    default: return addCharacter(symbol);
    }
}

void RtfReader::readHex() {
    if (m_text.size() - m_at < 2)
        return;
    const int high = hexDigit(m_text[m_at]);
    const int low = hexDigit(m_text[m_at + 1]);
    if (high < 0 || low < 0)
        return;
    m_at += 2;
    addCharacter(fromAnsi(high * 16 + low));
}

RtfReader::Word RtfReader::readWord() {
    Word word;
    const qsizetype begin = m_at;
    while (m_at < m_text.size() && isLetter(m_text[m_at]))
        ++m_at;
    word.name = m_text.sliced(begin, m_at - begin);

    const bool negative =
        m_at + 1 < m_text.size() && m_text[m_at] == u'-' && isDigit(m_text[m_at + 1]);
    m_at += negative;
    qint64 value = 0;
    for (; m_at < m_text.size() && isDigit(m_text[m_at]); ++m_at) {
        word.hasParameter = true;
        value = std::min<qint64>(value * 10 + (m_text[m_at].unicode() - u'0'),
                                 std::numeric_limits<int>::max());
    }
    word.parameter = int(negative ? -value : value);
    if (m_at < m_text.size() && m_text[m_at] == u' ')
        ++m_at;
    return word;
}

void RtfReader::actOn(const Word& word, bool beginsGroup) {
    if (word.name == u"par" || word.name == u"line")
        endParagraph();
    else if (word.name == u"cf")
        m_format.colour = word.parameter;
    else if (word.name == u"plain")
        m_format.colour = 0;
    else if (word.name == u"tab")
        addCharacter(u'\t');
    else if (word.name == u"u" && word.hasParameter)
        addUnicode(word.parameter);
    else if (word.name == u"uc")
        m_format.fallbacks = std::clamp(word.parameter, 0, mostFallbacks);
    else if (word.name == u"colortbl" && beginsGroup)
        readColours();
    else if (beginsGroup && std::find(skippedGroups.begin(), skippedGroups.end(), word.name) !=
                                skippedGroups.end())
        skipGroup();
}

// Goes to the brace that closes the group. A group without one is text like any other; then the
// rest is not searched again for each further group.
bool RtfReader::skipGroup() {
    if (m_groupsMayBeOpen)
        return false;
    qsizetype depth = 1;
    for (qsizetype i = m_at; i < m_text.size(); ++i) {
        if (m_text[i] == u'\\')
            ++i;
        else if (m_text[i] == u'{')
            ++depth;
        else if (m_text[i] == u'}' && --depth == 0) {
            m_at = i;
            return true;
        }
    }
    m_groupsMayBeOpen = true;
    return false;
}

void RtfReader::readColours() {
    const qsizetype begin = m_at;
    if (!skipGroup())
        return;
    const qsizetype end = m_at;
    quint32 red = 0;
    quint32 green = 0;
    quint32 blue = 0;
    bool given = false;
    for (m_at = begin; m_at < end;) {
        const QChar c = m_text[m_at++];
        if (c == u'\\' && isLetter(m_text[m_at])) {
            const Word word = readWord();
            const auto part = quint32(std::clamp(word.parameter, 0, 255));
            (word.name == u"red" ? red : word.name == u"green" ? green : blue) = part;
            given = true;
        } else if (c == u';') {
            m_colours.push_back(opaque | red << 16 | green << 8 | blue);
            m_colourGiven.push_back(given);
            red = green = blue = 0;
            given = false;
        }
    }
    m_at = end;
}

void RtfReader::addUnicode(int code) {
    if (code < 0)
        code += 0x10000;
    const bool valid = code >= 0 && code <= int(QChar::LastValidCodePoint);
    m_fallbacksLeft = 0; // a \u stands for itself, also after another
    if (!valid)
        addCharacter(QChar::ReplacementCharacter);
    else if (QChar::requiresSurrogates(char32_t(code)))
        addText(QString::fromUcs4(reinterpret_cast<const char32_t*>(&code), 1));
    else
        addCharacter(QChar(char16_t(code)));
    m_fallbacksLeft = m_format.fallbacks;
}

void RtfReader::addText(QStringView text) {
    const qsizetype passed = std::min(m_fallbacksLeft, text.size());
    m_fallbacksLeft -= passed;
    text = text.sliced(passed);
    if (text.isEmpty())
        return;
    RtfParagraph& paragraph = m_paragraphs.back();
    const int start = int(paragraph.text.size());
    paragraph.text += text;

    const auto colour = size_t(m_format.colour);
    if (m_format.colour < 0 || colour >= m_colours.size() || !m_colourGiven[colour])
        return;
    ColourRun* last = paragraph.runs.empty() ? nullptr : &paragraph.runs.back();
    if (last && last->start + last->length == start && last->colour == m_colours[colour])
        last->length += int(text.size());
    else
        paragraph.runs.push_back({start, int(text.size()), m_colours[colour]});
}

void RtfReader::addCharacter(QChar c) {
    // A line end that hides in an escape must not get into the text of a paragraph.
    if (m_fallbacksLeft == 0 && (c == u'\r' || c == u'\n' || c == QChar::ParagraphSeparator))
        endParagraph();
    else
        addText(QStringView(&c, 1));
}

void RtfReader::endParagraph() {
    m_fallbacksLeft = 0;
    m_paragraphs.emplace_back();
}
