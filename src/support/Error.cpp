#include "Error.h"

Error::Error(qint32 number, QString source, QString description)
    : m_number(number)
    , m_source(std::move(source))
    , m_description(std::move(description))
    , m_what(m_description.toUtf8()) {}

Error& Error::trailed(QStringView procedure) {
    m_source.append(procedure);
    return *this;
}
