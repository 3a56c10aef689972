#pragma once

#include "Host.h"

// Answers without a person: what a message box would say goes to standard error, files are named
// by the command line.
class ConsoleHost : public Host {
public:
    // outputPath: of the first result file; the next ones get a number.
    explicit ConsoleHost(QString outputPath);

    // A message was shown, which here is always about a failure.
    bool failed() const { return m_failed; }

    Answer msgBox(const QString& text, MsgButtons buttons, MsgIcon icon,
                  const QString& title) override;
    void showError(const QString& number, const QString& source,
                   const QString& description) override;
    void setMousePointer(MousePointer) override {}
    std::optional<QString> openFileName(const FileDialogRequest&) override { return std::nullopt; }
    std::optional<QString> saveFileName(const FileDialogRequest&) override;
    bool print(const PrintRequest&) override { return false; }
    QString clipboardText() override { return {}; }
    void setClipboardText(const QString&) override {}
    float timer() override;

private:
    QString m_outputPath;
    int m_files = 0;
    bool m_failed = false;
};
