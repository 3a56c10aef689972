#pragma once

#include <QByteArrayView>
#include <QString>

// How a text that may hold anything is shown on one line: each control character and each line end
// becomes one visible character, so that positions stay true. Tabs stay.
QChar shownCharacter(QChar character);
void makeShown(QString& text);

// The beginning of a UTF-8 text as shown in a cell, tabs as blanks. Never longer than maxCharacters
// and never reads further than that needs, whatever the size of the text.
QString shownBeginning(QByteArrayView utf8, qsizetype maxCharacters);
