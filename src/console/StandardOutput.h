#pragma once

#include <QByteArrayView>
#include <QFile>
#include <QString>

// The program's standard output, for rows, as bytes. A pipe that its reader closed or a full disk
// is a failure to be asked for, not a signal that ends the program.
class StandardOutput {
public:
    StandardOutput();

    // After a failure nothing more is written.
    void write(QByteArrayView bytes);
    // Empty while all was written.
    const QString& problem() const { return m_problem; }

private:
    QFile m_file;
    QString m_problem;
};

// A line on standard error.
void say(const QString& line);
