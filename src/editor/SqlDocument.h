#pragma once

#include <QString>

// The editor's text as one RTF document, and its colouring by plain replacement over that document.
// This is the rule; the editor itself colours line by line (LineColours.h) and must show the same.

// A line end becomes "\par ". With a breaksPerTilde above 0 each "~" becomes so many, too. "\", "{"
// and "}" of the text are escaped. A break at the very end is doubled where it stands for an empty
// last line: readers take the last \par for the end of the document.
QString Build_Document(const QString& text, int breaksPerTilde);

// Takes a whole document, header included. No tokens: each search text is replaced wherever it
// stands, ignoring case, and later passes run over the output of earlier ones.
QString Colour_Document(const QString& document);
