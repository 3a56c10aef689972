#include "modNodeKeys.h"

#include "Host.h"
#include "Text.h"

using namespace Qt::StringLiterals;

QString modNodeKeys::gfsFieldTag(qint32 code) {
    constexpr qint32 folderType = 1000;
    return code == folderType ? u"FOLDER_TYPE ["_s : QString();
}

QString modNodeKeys::gfsGetValue(qint32 code, const QString& key, qint16& occurrence) {
    return gfsGetTagValue(key, gfsFieldTag(code), occurrence);
}

QString modNodeKeys::gfsGetTagValue(const QString& key, const QString& tag, qint16& occurrence) {
    if (tag.isEmpty() || !key.contains(tag))
        return QString();
    qsizetype at = key.indexOf(tag);
    qint16 number = 1;
    for (qsizetype next = key.indexOf(tag, at + 1); next >= 0 && occurrence != 0; ++number) {
        if (number == occurrence)
            break;
        at = next;
        next = key.indexOf(tag, at + 1);
    }
    occurrence = number;
    const qsizetype begin = at + tag.size();
    const qsizetype end = key.indexOf(u']', at);
    return end < begin ? QString() : key.sliced(begin, end - begin);
}

QString modNodeKeys::gfsSetTagValue(const QString& key, const QString& tag, const QString& value) {
    if (tag.isEmpty())
        return key;
    const qsizetype at = key.indexOf(tag);
    if (at < 0)
        return gfsAddText(key, tag + value + u']');
    const qsizetype begin = at + tag.size();
    const qsizetype end = key.indexOf(u']', begin);
    const QString rest = end < 0 ? QString() : key.sliced(end + 1);
    return key.left(begin) + trimBlanks(value) + u"] "_s + rest;
}

QString modNodeKeys::gfsAddText(const QString& key, const QString& token, int reset) {
    if (token.isEmpty())
        return QString();
    if (token.contains(u']') && token.contains(u'['))
        return (reset == 1 ? QString() : key) + u' ' + token;
    m_host.msgBox(u"Error in gfsaddtext"_s, MsgButtons::Ok, MsgIcon::Information);
    return QString();
}
