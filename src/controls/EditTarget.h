#pragma once

#include <QString>

// What the edit commands ask of the control that has the focus. Line ends in texts are CR LF.
class EditTarget {
public:
    virtual ~EditTarget() = default;

    // A view: Cut, Paste and Undo leave its content alone.
    virtual bool isReadOnly() const = 0;
    // The selected text; empty when nothing is selected. A result selected whole can be as large as
    // the result.
    virtual QString Copy() const = 0;
    // Returns the selected text and, unless read-only, removes it.
    QString Cut() {
        QString text = Copy();
        if (!isReadOnly() && !text.isEmpty())
            Paste(QString());
        return text;
    }
    // Replaces the selection; nothing when read-only.
    virtual void Paste(const QString& text) = 0;
    virtual void SelectAll() = 0;
    // Takes the last edit back, if there is one.
    virtual void Undo() = 0;
};
