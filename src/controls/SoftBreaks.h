#pragma once

#include "RtfText.h"

#include <QTextBlock>

class QTextCursor;
class QTextDocument;

// A paragraph of a million letters would be laid out as a whole at each key. It is kept as several
// blocks instead. The breaks between them are no part of the text; a character format of their own
// tells them, which comes and goes with them through any edit, undo and redo.
//
// So no text may be inserted behind such a break with the format that stands there: line ends in it
// would become soft, too.
namespace SoftBreaks {

constexpr int longestBlock = 20'000;

// A paragraph too long for one block.
bool isNeeded(const QString& text);

// The block goes on with the paragraph of the block before it.
bool continuesParagraph(const QTextBlock& block);
QTextBlock firstOfParagraph(QTextBlock block);
QTextBlock lastOfParagraph(QTextBlock block);

// In the whole document, or before a position of it.
int count(const QTextDocument& document);
int countBefore(const QTextDocument& document, int position);
// Of a place in the text, which counts no soft breaks. At a soft break: the position before it.
int positionOf(const QTextDocument& document, int place);

// Stretch of the document with a paragraph separator between paragraphs.
QString text(const QTextDocument& document, int begin, int end);

// Splits the blocks in a stretch that are too long; part of the cursor's edit block.
void split(QTextCursor& cursor, int begin, int end);

// What of a paragraph's runs lies in a part of it, counted from the part's beginning.
std::vector<ColourRun> runsOfPart(const std::vector<ColourRun>& runs, int begin, int length);
// Puts the runs of the next part behind those of the parts before it.
void appendPart(std::vector<ColourRun>& runs, std::vector<ColourRun> part, int begin);

} // namespace SoftBreaks
