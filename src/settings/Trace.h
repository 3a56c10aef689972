#pragma once

#include <QByteArray>
#include <QString>

#include <deque>
#include <functional>

// The text of the "Trace Log" window: every statement that the database layer sends and its
// outcome, newest first.
class TraceLog {
public:
    // Puts the text, followed by two line breaks (CR LF), in front of the log.
    void Trace(const QString& text);

    // The whole log. Built when asked for, so that tracing costs the new entry alone.
    QString text() const;

    // Called after each entry while somebody looks; empty: nobody does.
    void setListener(std::function<void()> listener) { m_listener = std::move(listener); }

private:
    std::deque<QString> m_entries; // newest first
    std::function<void()> m_listener;
};
