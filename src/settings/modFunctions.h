#pragma once

#include <QByteArray>
#include <QChar>
#include <QString>

// The file's entire content, or the text "-1" when it cannot be read. A file whose whole content is
// "-1" is therefore taken as unreadable; that is accepted.
QByteArray Read_Whole_File(const QString& path);

// The reader's failure marker.
bool isUnreadable(QByteArrayView content);

// The typed character when it is a digit or backspace (8), else 0, which swallows the key.
char16_t Digit_Filter(char16_t typed);

// The number in a record-limit box; 0 when there is none. A limit beyond the number's range is as
// good as the largest.
qint32 recordLimitOf(const QString& text);
