#pragma once

#include <QString>

// What a query window asks of the main window.
class Workspace {
public:
    virtual ~Workspace() = default;

    // Saves the active query window's text; asks for a name when saveAs is true or it has none.
    // False when nothing was saved (a cancelled dialog, a failure that was reported).
    virtual bool Save_File(bool saveAs) = 0;

    // No more questions during a close-all.
    virtual bool NoToAll() const = 0;
    virtual void setNoToAll(bool on) = 0;

    // Ticks the menu entry of the output mode and clears the other two.
    virtual void tickOutputMode(const QString& mode) = 0;
    // Enables or disables the entry that needs a saved file.
    virtual void enableSavedFileEntry(bool on) = 0;
};
