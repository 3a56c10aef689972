#include "ShownText.h"

#include <algorithm>

namespace {

constexpr char16_t firstControlPicture = 0x2400; // the pictures follow the order of the controls
constexpr char16_t deletePicture = 0x2421;
constexpr char16_t lineEndSign = 0x21b5;
constexpr char16_t lineSeparator = 0x2028;
constexpr char16_t paragraphSeparator = 0x2029;
constexpr qsizetype mostBytesOfCharacter = 4;

} // namespace

QChar shownCharacter(QChar character) {
    switch (character.unicode()) {
    case u'\t': return character;
    case u'\r': return u' ';
    case u'\n':
    case lineSeparator:
    case paragraphSeparator: return lineEndSign;
    case 0x7f: return deletePicture;
    default:
        return character < u' ' ? QChar(char16_t(firstControlPicture + character.unicode()))
                                : character;
    }
}

void makeShown(QString& text) {
    const auto needed = [](QChar c) { return shownCharacter(c) != c; };
    if (std::none_of(text.cbegin(), text.cend(), needed))
        return;
    std::transform(text.cbegin(), text.cend(), text.begin(), shownCharacter);
}

QString shownBeginning(QByteArrayView utf8, qsizetype maxCharacters) {
    const qsizetype bytes = std::min(utf8.size(), maxCharacters * mostBytesOfCharacter);
    QString text = QString::fromUtf8(utf8.first(bytes));
    if (text.size() > maxCharacters)
        text.truncate(text.at(maxCharacters - 1).isHighSurrogate() ? maxCharacters - 1
                                                                   : maxCharacters);
    text.replace(u'\t', u' ');
    makeShown(text);
    return text;
}
