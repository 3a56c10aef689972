#include "CConCat.h"

#include "Error.h"
#include "Text.h"

#include <QtNumeric>

#include <algorithm>
#include <limits>

namespace {

qint32 checkedLength(qint64 characters, const QString& trail) {
    if (characters > std::numeric_limits<qint32>::max())
        throw Error(Error::Overflow, trail, QStringLiteral("Overflow"));
    return static_cast<qint32>(characters);
}

} // namespace

QByteArray CConCat::Text() const {
    return QByteArray(m_bytes.constData(), m_bytes.size());
}

QByteArray CConCat::takeText() {
    QByteArray text = std::move(m_bytes);
    m_bytes = QByteArray();
    m_capacity = 0;
    m_length = 0;
    return text;
}

void CConCat::setText(QByteArrayView utf8) {
    const qint32 length = checkedLength(countUtf8Characters(utf8.data(), utf8.size()),
                                        QStringLiteral(", CConCat.Text"));
    m_bytes = utf8.toByteArray();
    m_capacity = m_bytes.size();
    m_length = length;
}

void CConCat::setIncrement(qint32 characters) {
    if (characters > 0)
        m_increment = characters;
}

void CConCat::Cat(QByteArrayView part) {
    const qint32 length =
        checkedLength(qint64(m_length) + countUtf8Characters(part.data(), part.size()),
                      QStringLiteral(", CConCat.Cat"));
    if (m_bytes.size() + part.size() >= m_capacity)
        m_capacity += std::max<qsizetype>(part.size(), m_increment);
    // The array's own growth is geometric, which keeps appending linear however small the step is.
    m_bytes.append(part);
    m_length = length;
}
