#pragma once

#include <QString>

class Host;

// Packs named values into one text and reads them: " NODETYPE [TABLE] PARENTID [666]". A tag is a
// name with its opening bracket ("NODETYPE ["). Searches are case-sensitive. A bad input gives "".
class modNodeKeys {
public:
    // host tells of a malformed token; not owned.
    explicit modNodeKeys(Host& host)
        : m_host(host) {}

    // "FOLDER_TYPE [" for 1000, else "".
    static QString gfsFieldTag(qint32 code);
    static QString gfsGetValue(qint32 code, const QString& key, qint16& occurrence);
    // occurrence counts from 1; 0 asks for the first, more than there are for the last. It is set
    // to the one that was found, and left alone when there is none.
    static QString gfsGetTagValue(const QString& key, const QString& tag, qint16& occurrence);
    // Replaces the first value of the tag, or adds one. Two blanks stay behind a replaced value.
    QString gfsSetTagValue(const QString& key, const QString& tag, const QString& value);
    // reset 1 drops the key. An empty token gives ""; so does one without both brackets, with a
    // message.
    QString gfsAddText(const QString& key, const QString& token, int reset = 0);

private:
    Host& m_host;
};
