#include "StandardOutput.h"

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int standardOutput = 1;

} // namespace

StandardOutput::StandardOutput() {
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
