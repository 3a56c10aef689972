#pragma once

#include <QString>

#include <memory>

// What shows the help file: a window of the program's, or the system's own viewer where it has one.
// It shows the same file each time it is asked.
class HelpViewer {
public:
    virtual ~HelpViewer() = default;

    // page: its path in the file; empty for the first one. False when the file cannot be shown.
    virtual bool showPage(const QString& file, const QString& page) = 0;
    virtual bool showSearch(const QString& file) = 0;
    virtual void close() = 0;
};

std::unique_ptr<HelpViewer> makeHelpViewer();
