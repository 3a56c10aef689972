#pragma once

#include <QByteArray>
#include <QString>

// Builds a long UTF-8 text by repeated appending. `Length` and `Increment` count characters (code
// points), as everywhere in the program; the buffer's capacity counts bytes, the room that the
// growth rule is about. For ASCII the two are the same.
//
// Each member that fails throws Error with ", CConCat.<member>" appended to its source.
class CConCat {
public:
    // The finished text as UTF-8, copied.
    QByteArray Text() const;
    // The same without the copy; leaves the builder as new but for its Increment.
    QByteArray takeText();
    // Replaces the content; no spare capacity is kept, so the next Cat grows the buffer.
    void setText(QByteArrayView utf8);

    qint32 Increment() const { return m_increment; }
    // A value of 0 or less is ignored and the old step stays.
    void setIncrement(qint32 characters);

    qint32 Length() const { return m_length; }

    // Bytes that the buffer offers now, used ones included.
    qsizetype bufferLength() const { return m_capacity; }

    // Makes room at once for a text of about so many bytes, which then need not be moved while it
    // grows. What Cat and bufferLength go by stays as it is.
    void reserve(qsizetype bytes) { m_bytes.reserve(bytes); }

    // Appends UTF-8. Grows when the part would fill the buffer or exceed it, so that at least one
    // spare byte follows every append. Throws Error::Overflow when Length leaves 32 bits; the text
    // is then as before.
    void Cat(QByteArrayView part);
    void Cat(QStringView part) { Cat(part.toUtf8()); }

private:
    QByteArray m_bytes;       // its size is the used part; what lies beyond is reserved
    qsizetype m_capacity = 0; // the buffer's length by the growth rule
    qint32 m_length = 0;
    qint32 m_increment = 50000;
};
