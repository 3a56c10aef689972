#pragma once

#include <QString>

// The rules of the editor as functions of its text. Line ends of a text are CR LF; a caret counts a
// line end as one character, as the editor does.

// What becomes of a typed character (13 for Enter): Enter becomes "~", which the change handler
// turns into a paragraph break; "\" and "{" are swallowed (0). "}" passes, on purpose.
void Filter_Key(char16_t& KeyAscii, bool& EnterPressed);

// Blanks only; a text of line ends is not blank.
bool isBlankScript(QStringView text);
// What a blank text is replaced by.
QString emptyScript();

// How many paragraph breaks each "~" of the text becomes after Enter: two on the last line, since a
// single mark at the very end would not show an empty line.
int breaksPerTilde(bool onLastLine);

struct ScriptDocument {
    QString rtf;
    int caret;
};

// The whole change handler: the document to be shown for a text and where the caret goes, behind
// the new line break after Enter. The text is not blank.
ScriptDocument Rebuild_Script(const QString& text, int caret, bool EnterPressed, bool colour);
