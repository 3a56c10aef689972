#pragma once

#include <QString>

#include <optional>

// What a rule asks of the person and the platform: message boxes, the mouse pointer, file and print
// dialogs, the clipboard, the clock. The desktop implements it; tests answer from a list.

// The standard answer codes; NoToAll is the program's own.
enum class Answer { Ok = 1, Cancel = 2, Yes = 6, No = 7, NoToAll = 8 };

enum class MsgButtons { Ok, YesNoCancel };
enum class MsgIcon { None, Exclamation, Information };

// Values of the screen object's pointer property.
enum class MousePointer { Default = 0, Hourglass = 11 };

struct FileDialogRequest {
    QString title;            // empty: the platform's usual
    QString filter;           // "Text File (*.txt)|*.txt|All Files (*.*)|*.*"
    QString defaultExtension; // ".sql", appended to a name typed without one
    bool overwritePrompt = false;
};

struct PrintRequest {
    QString title;
    QString text;      // everything to print, lines separated by "\n" or "\r\n"
    QString selection; // empty when nothing is selected
};

class Host {
public:
    virtual ~Host() = default;

    // Modal; returns Ok for the one-button box. A box closed by its frame answers as Cancel where
    // Cancel exists. title: empty means the program's name.
    virtual Answer msgBox(const QString& text, MsgButtons buttons = MsgButtons::Ok,
                          MsgIcon icon = MsgIcon::None, const QString& title = QString()) = 0;

    // The error report; resets the mouse pointer first. Returns after the dialog was closed.
    virtual void showError(const QString& number, const QString& source,
                           const QString& description) = 0;

    virtual void setMousePointer(MousePointer pointer) = 0;

    // The chosen path, or nothing when the dialog was cancelled.
    virtual std::optional<QString> openFileName(const FileDialogRequest& request) = 0;
    virtual std::optional<QString> saveFileName(const FileDialogRequest& request) = 0;

    // Shows the print dialog and prints; false when it was cancelled. Throws Error on a failed job.
    virtual bool print(const PrintRequest& request) = 0;

    virtual QString clipboardText() = 0;
    virtual void setClipboardText(const QString& text) = 0;

    // Seconds since local midnight, single precision as the platform's own timer; jumps back at
    // midnight.
    virtual float timer() = 0;
};
