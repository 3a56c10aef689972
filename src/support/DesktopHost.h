#pragma once

#include "Host.h"

class QFileDialog;

// The host of the desktop program: real dialogs over the active window, found in tests by their
// object names "msgBox", "frmError", "dlgFile" and "dlgPrint".
class DesktopHost : public Host {
public:
    Answer msgBox(const QString& text, MsgButtons buttons, MsgIcon icon,
                  const QString& title) override;
    void showError(const QString& number, const QString& source,
                   const QString& description) override;
    void setMousePointer(MousePointer pointer) override;
    std::optional<QString> openFileName(const FileDialogRequest& request) override;
    std::optional<QString> saveFileName(const FileDialogRequest& request) override;
    bool print(const PrintRequest& request) override;
    QString clipboardText() override;
    void setClipboardText(const QString& text) override;
    float timer() override;

private:
    std::optional<QString> chooseFile(QFileDialog& dialog, const FileDialogRequest& request);

    QString m_lastFolder; // where the next file dialog starts; empty: the current folder
};
