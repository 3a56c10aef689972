#pragma once

#include <QRect>

#include <vector>

class QMdiArea;

// Where n windows go inside an area, in order. Pure arithmetic.
std::vector<QRect> cascadedRects(QSize area, int count, int step);
std::vector<QRect> horizontallyTiledRects(QSize area, int count); // one above another
std::vector<QRect> verticallyTiledRects(QSize area, int count);   // side by side

// Where a new window goes: the next step of a cascade. number counts from 0.
QRect newWindowRect(const QMdiArea& area, int number);

enum class Arrangement { Cascade, TileHorizontal, TileVertical };

// Arranges the area's windows in the order in which they were made. Minimised ones stay minimised
// and keep their row at the bottom; a maximised one is restored first.
void arrangeWindows(QMdiArea& area, Arrangement arrangement);
