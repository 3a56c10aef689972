#include "EditorRules.h"

#include "SqlDocument.h"
#include "Text.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t enter = 13;
constexpr char16_t swallowed = 0;
constexpr int emptyLines = 174;

// Where the caret stands in a text whose line ends are two characters.
qsizetype placeInText(const QString& text, int caret) {
    qsizetype at = 0;
    for (int left = caret; left > 0 && at < text.size(); --left)
        at += text[at] == u'\r' ? 2 : 1;
    return at;
}

} // namespace

void Filter_Key(char16_t& KeyAscii, bool& EnterPressed) {
    EnterPressed = KeyAscii == enter;
    if (EnterPressed)
        KeyAscii = u'~';
    if (KeyAscii == u'\\' || KeyAscii == u'{')
        KeyAscii = swallowed;
}

bool isBlankScript(QStringView text) {
    return trimBlanks(text).isEmpty();
}

QString emptyScript() {
    return u"\r\n"_s.repeated(emptyLines);
}

int breaksPerTilde(bool onLastLine) {
    return onLastLine ? 2 : 1;
}

ScriptDocument Rebuild_Script(const QString& text, int caret, bool EnterPressed, bool colour) {
    int breaks = 0;
    if (EnterPressed) {
        // From the character just before the caret on.
        const qsizetype place = std::max<qsizetype>(placeInText(text, caret) - 1, 0);
        breaks = breaksPerTilde(text.indexOf(u'\r', place) < 0);
        const qsizetype tildesBefore = QStringView(text).left(place).count(u'~');
        caret += int(tildesBefore) * (breaks - 1);
    }
    const QString document = Build_Document(text, breaks);
    return {colour ? Colour_Document(document) : document, caret};
}
