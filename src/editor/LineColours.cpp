#include "LineColours.h"

#include "KeywordTables.h"
#include "RtfReader.h"
#include "SqlDocument.h"

#include <array>

namespace {

constexpr int letters = 26;
constexpr char16_t longS = 0x17f;       // folds to s
constexpr char16_t kelvinSign = 0x212a; // folds to k

// 0 to 25 for what matches a letter when case is ignored, else -1.
int letterOf(char16_t c) {
    const char16_t small = c | 0x20;
    if (small >= u'a' && small <= u'z' && c < 0x80)
        return small - u'a';
    if (c == longS)
        return 's' - 'a';
    return c == kelvinSign ? 'k' - 'a' : -1;
}

std::vector<ColourRun> runsOfPasses(const QString& line) {
    return RtfReader::read(Colour_Document(Build_Document(line, 0))).front().runs;
}

// The searched words as a tree, read from their blank backwards. Each node stands for the letters
// on the way to it and knows what the passes make of them and the blank.
class WordTails {
public:
    struct Node {
        std::array<quint16, letters> before{}; // node of one letter more, 0: no word has it
        std::vector<ColourRun> runs;           // starts count from the first letter
        int length = 0;                        // letters
    };

    WordTails() {
        for (const KeywordTable& table : keywordTables())
            for (const KeywordSlot& slot : table.words)
                add(slot.search);
        for (const QString& text : operatorTexts())
            if (text.endsWith(u' '))
                add(text);
            else
                m_symbolColour = runsOfPasses(text).front().colour;
    }

    // For the blank at the offset.
    const Node& find(const char16_t* line, qsizetype blank) const {
        const Node* node = &m_nodes.front();
        while (blank > 0) {
            const int letter = letterOf(line[--blank]);
            const int next = letter < 0 ? 0 : node->before[size_t(letter)];
            if (next == 0)
                break;
            node = &m_nodes[size_t(next)];
        }
        return *node;
    }
    quint32 symbolColour() const { return m_symbolColour; }

private:
    void add(const QString& search) {
        size_t at = 0;
        for (qsizetype i = search.size() - 2; i >= 0; --i) {
            const auto letter = size_t(letterOf(search[i].unicode()));
            if (m_nodes[at].before[letter] == 0) {
                m_nodes[at].before[letter] = quint16(m_nodes.size());
                m_nodes.push_back({{}, runsOfPasses(search.mid(i)), int(search.size() - 1 - i)});
            }
            at = m_nodes[at].before[letter];
        }
    }

    std::vector<Node> m_nodes = std::vector<Node>(1);
    quint32 m_symbolColour = 0;
};

// Groups of one colour that touch are one stretch to the reader of a document.
void append(std::vector<ColourRun>& runs, const ColourRun& run) {
    if (!runs.empty() && runs.back().start + runs.back().length == run.start &&
        runs.back().colour == run.colour)
        runs.back().length += run.length;
    else
        runs.push_back(run);
}

} // namespace

std::vector<ColourRun> colourRuns(QStringView line) {
    static const WordTails tails;
    std::vector<ColourRun> runs;
    const char16_t* text = line.utf16();
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (text[i] > u'>')
            continue;
        if (text[i] >= u'<') { // these three follow one another
            append(runs, {int(i), 1, tails.symbolColour()});
        } else if (text[i] == u' ') {
            const WordTails::Node& tail = tails.find(text, i);
            for (const ColourRun& run : tail.runs)
                append(runs, {int(i) - tail.length + run.start, run.length, run.colour});
        }
    }
    return runs;
}

ChangedPart putInCapitals(QChar* line, const std::vector<ColourRun>& runs) {
    ChangedPart changed;
    for (const ColourRun& run : runs) {
        for (int i = run.start; i < run.start + run.length; ++i) {
            const int letter = letterOf(line[i].unicode());
            const QChar capital = letter < 0 ? line[i] : QChar(char16_t(u'A' + letter));
            if (capital == line[i])
                continue;
            line[i] = capital;
            changed = {changed.isEmpty() ? i : changed.begin, i + 1};
        }
    }
    return changed;
}
