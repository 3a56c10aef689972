#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

// The terminal that the program was started from, whatever standard input and output are: without
// echo and line editing while this lives. The keys that end a program are read like others, because
// a program killed here would leave the terminal so.
class Terminal {
public:
    // Null when there is no terminal.
    static std::unique_ptr<Terminal> open();
    virtual ~Terminal() = default;

    virtual void write(const QString& text) = 0;
    // The next piece of what is typed, in the order of its UTF-8 bytes; empty at the end.
    virtual QByteArray read() = 0;
};
