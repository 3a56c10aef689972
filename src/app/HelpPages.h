#pragma once

#include <QString>

class QWidget;

// The help page for a control: its own, or that of the nearest window around it; empty when there
// is none. A null control has none.
QString helpPageOf(const QWidget* control);
