#include "QueryLayout.h"

#include <algorithm>

namespace QueryLayout {

namespace {

constexpr int smallestForm = 3000;

constexpr int highestBar = 1000;       // from the form's inner top, dragging and sizing alike
constexpr int lowestDraggedBar = 1500; // from the form's inner bottom
constexpr int lowestSplitter = 1000;   // from the form's inner bottom
constexpr int splitterGap = 100;       // between the splitter and the result panel
constexpr int bottomAllowance = 690;   // below the result panel
constexpr int editorRightMargin = 70;

constexpr int tabInset = 30;
constexpr int tabWidthMargin = 130;
constexpr int tabHeightMargin = 120;

constexpr int viewInset = 45;
constexpr int viewWidthMargin = 180;
constexpr int viewHeightMargin = 500;

int notNegative(int length) {
    return std::max(length, 0);
}

} // namespace

int formHeight(int height) {
    return std::max(height, smallestForm);
}

int draggedBarTop(int candidate, int innerHeight) {
    if (candidate < highestBar)
        return highestBar;
    return std::min(candidate, innerHeight - lowestDraggedBar);
}

Panels panelsAt(int position, int innerHeight, int topPanelTop, int bottomHeight) {
    Panels panels;
    panels.splitterTop = std::max(std::min(position, innerHeight - lowestSplitter), highestBar);
    panels.bottomTop = panels.splitterTop + splitterGap;
    const int room = innerHeight - panels.bottomTop - bottomAllowance;
    panels.bottomHeight = room < 0 ? bottomHeight : room;
    panels.topHeight = notNegative(panels.splitterTop - topPanelTop);
    return panels;
}

Rect editor(int panelWidth, int panelHeight) {
    return {0, 0, notNegative(panelWidth - editorRightMargin), notNegative(panelHeight)};
}

Rect tabStrip(int panelWidth, int panelHeight) {
    return {tabInset, tabInset, notNegative(panelWidth - tabWidthMargin),
            notNegative(panelHeight - tabHeightMargin)};
}

Rect resultViews(int panelWidth, int panelHeight) {
    // The inset holds at the left and at the strip's lower edge; what is left above is the tabs'.
    const int top = viewHeightMargin - (tabHeightMargin - tabInset) - viewInset;
    return {viewInset, top, notNegative(panelWidth - viewWidthMargin),
            notNegative(panelHeight - viewHeightMargin)};
}

} // namespace QueryLayout
