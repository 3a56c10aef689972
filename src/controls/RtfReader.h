#pragma once

#include "RtfText.h"

#include <QStringView>

#include <vector>

// Reads the part of RTF that the program writes: groups, the colour table, \cf, \par, escapes and
// \u. Other control words are passed over; so are groups that begin with \* or hold a font table,
// a picture and the like. Whatever the input, all its text comes out: a brace too many is passed
// over, and a group that is never closed is never passed over.
class RtfReader {
public:
    static bool isRtf(QStringView text) { return text.startsWith(u"{\\rtf"); }

    // At least one paragraph. A text that is not RTF is plain text. The \par at the very end of a
    // document ends its last paragraph and begins no new one.
    static std::vector<RtfParagraph> read(QStringView text);

private:
    struct Format {
        int colour = 0;    // index in the colour table
        int fallbacks = 1; // characters that follow a \u for readers that do not know it
    };
    struct Word {
        QStringView name;
        bool hasParameter = false;
        int parameter = 0;
    };

    explicit RtfReader(QStringView text)
        : m_text(text) {}
    void readDocument();
    void openGroup();
    void closeGroup();
    void readControl();
    void readSymbol(QChar symbol);
    void readHex();
    Word readWord();
    void actOn(const Word& word, bool beginsGroup);
    bool skipGroup();
    void readColours();
    void addUnicode(int code);
    void addText(QStringView text);
    void addCharacter(QChar c);
    void endParagraph();

    QStringView m_text;
    qsizetype m_at = 0;
    Format m_format;
    std::vector<Format> m_outer;
    qsizetype m_unsavedDepth = 0;   // groups open beyond those that m_outer holds
    qsizetype m_groupContent = -1;  // where the group that was opened last has its content
    qsizetype m_fallbacksLeft = 0;  // to be passed over after a \u
    bool m_groupsMayBeOpen = false; // a group without end was found
    std::vector<quint32> m_colours;
    std::vector<bool> m_colourGiven; // an empty entry means the default colour
    std::vector<RtfParagraph> m_paragraphs{1};
};
