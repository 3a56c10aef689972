#include "ConsoleHost.h"

#include "StandardOutput.h"

#include <QFileInfo>
#include <QTime>

using namespace Qt::StringLiterals;

ConsoleHost::ConsoleHost(QString outputPath)
    : m_outputPath(std::move(outputPath)) {}

Answer ConsoleHost::msgBox(const QString& text, MsgButtons, MsgIcon, const QString&) {
    m_failed = true;
    say(text);
    return Answer::Ok;
}

void ConsoleHost::showError(const QString& number, const QString& source,
                            const QString& description) {
    m_failed = true;
    say(u"Error %1 in %2: %3"_s.arg(number, source, description));
}

std::optional<QString> ConsoleHost::saveFileName(const FileDialogRequest&) {
    if (++m_files == 1)
        return m_outputPath;
    const QFileInfo first(m_outputPath);
    const QString suffix = first.suffix().isEmpty() ? QString() : u'.' + first.suffix();
    return m_outputPath.chopped(suffix.size()) + u'-' + QString::number(m_files) + suffix;
}

float ConsoleHost::timer() {
    constexpr float millisecondsPerSecond = 1000;
    return float(QTime::currentTime().msecsSinceStartOfDay()) / millisecondsPerSecond;
}
