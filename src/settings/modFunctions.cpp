#include "modFunctions.h"

#include "Text.h"

#include <QFile>

#include <algorithm>
#include <limits>

QByteArray Read_Whole_File(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArrayLiteral("-1");
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return QByteArrayLiteral("-1");
    return content;
}

bool isUnreadable(QByteArrayView content) {
    return content == QByteArrayView("-1");
}

char16_t Digit_Filter(char16_t typed) {
    constexpr char16_t backspace = 8;
    return typed == backspace || (typed >= u'0' && typed <= u'9') ? typed : u'\0';
}

qint32 recordLimitOf(const QString& text) {
    const double largest = std::numeric_limits<qint32>::max();
    return roundHalfEven(std::min(leadingNumber(text), largest));
}
