#include "StandardOutput.h"

#include <csignal>
#include <cstdio>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#include <qt_windows.h>
#endif

using namespace Qt::StringLiterals;

namespace {

constexpr int standardOutput = 1;

// The rows are UTF-8 and hold their own line ends.
void takeBytesAsTheyAre() {
#ifdef Q_OS_WIN
    _setmode(standardOutput, _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
#else
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

} // namespace

StandardOutput::StandardOutput() {
    takeBytesAsTheyAre();
    if (!m_file.open(standardOutput, QIODevice::WriteOnly | QIODevice::Unbuffered))
        m_problem = m_file.errorString();
}

void StandardOutput::write(QByteArrayView bytes) {
    if (m_problem.isEmpty() && m_file.write(bytes.data(), bytes.size()) != bytes.size())
        m_problem = m_file.errorString();
}

void say(const QString& line) {
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stderr);
}
