#include "Trace.h"

void TraceLog::Trace(const QString& text) {
    m_entries.push_front(text);
    if (m_listener)
        m_listener();
}

QString TraceLog::text() const {
    QString all;
    for (const QString& entry : m_entries)
        all += entry + QStringLiteral("\r\n\r\n");
    return all;
}
