#pragma once

#include <QRect>
#include <QString>

#include <optional>

// How the main window was left, kept in a file of its own between two runs. Device-independent
// pixels.
struct WindowPlace {
    QRect window; // when it is not maximised; position of the frame, size without it
    bool maximised = false;
    int panelWidth = 0;  // of the left panel; 0: not known
    int splitterTop = 0; // of a query window's splitter, in twips; 0: not known
    bool operator==(const WindowPlace&) const = default;
};

// Nothing for a file that is missing, damaged or says something no screen could show.
std::optional<WindowPlace> Load_Window_Place(const QString& path);

// Replaces the file whole. Throws Error when it cannot be written.
void Save_Window_Place(const WindowPlace& place, const QString& path);

// Where the window goes: on the screen that shows most of it, no larger than that and within it.
// Nothing when too little of it would be seen, because its screen is gone. screens: what each
// offers to windows.
std::optional<QRect> placeOnScreens(const QRect& window, const QList<QRect>& screens);
