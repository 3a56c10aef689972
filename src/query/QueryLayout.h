#pragma once

// Where the panels of a query window and what they hold lie. All measures are in twips.
namespace QueryLayout {

struct Rect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    bool operator==(const Rect&) const = default;
};

// A form that was made lower than the smallest height goes back to it.
int formHeight(int height);

// Where the visible bar is while it is dragged to the candidate position. innerHeight: the form's.
int draggedBarTop(int candidate, int innerHeight);

// The right-hand panels for a splitter at a position. Its limits differ from those of dragging, on
// purpose.
struct Panels {
    int splitterTop = 0;
    int bottomTop = 0;
    int bottomHeight = 0;
    int topHeight = 0;
    bool operator==(const Panels&) const = default;
};
// topPanelTop: of the editor panel; bottomHeight: the result panel's height so far, which stays
// when the form leaves no room.
Panels panelsAt(int position, int innerHeight, int topPanelTop, int bottomHeight);

// Inside the editor panel.
Rect editor(int panelWidth, int panelHeight);
// Inside the result panel: the tab strip, and the one place that all result views share.
Rect tabStrip(int panelWidth, int panelHeight);
Rect resultViews(int panelWidth, int panelHeight);

} // namespace QueryLayout
