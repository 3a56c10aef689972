#pragma once

#include <QString>

#include <exception>

// A trapped run-time error: what ends a statement or an event. A procedure that cannot handle it
// appends ".." + module + "." + procedure to the source and rethrows; the top of an event hands it
// to Host::showError.
class Error : public std::exception {
public:
    // The run-time's own numbers, as far as this program raises them.
    enum Number : qint32 {
        Overflow = 6,
        OutOfMemory = 7,
        TypeMismatch = 13,
        FileNotFound = 53,
        PathFileAccess = 75,
        InvalidUseOfNull = 94,
        ObjectNotSet = 91,
    };

    // source: the failing component's own name; may be empty. description: plain text, may hold
    // line feeds as a server sends them.
    Error(qint32 number, QString source, QString description);

    qint32 number() const { return m_number; }
    const QString& source() const { return m_source; }
    const QString& description() const { return m_description; }

    // Appends the text as it stands (the caller brings the leading "..") and returns *this, so that
    // a handler reads: catch (Error& e) { throw e.trailed(u"..modDatabase.Get_Recordset"); }
    // Throw the reference's copy only where the dynamic type may be lost; else append and `throw;`.
    Error& trailed(QStringView procedure);

    // The description in UTF-8, for what() of foreign handlers.
    const char* what() const noexcept override { return m_what.constData(); }

private:
    qint32 m_number;
    QString m_source;
    QString m_description;
    QByteArray m_what;
};
