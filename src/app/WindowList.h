#pragma once

class QMdiArea;
class QMenu;

// Lists the open query windows below the Window menu's own entries, the active one ticked, anew
// each time the menu opens. Both outlive what is installed.
void installWindowList(QMenu& menu, QMdiArea& area);
