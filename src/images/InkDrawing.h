#pragma once

#include <QColor>

#include <span>

class QPainter;
class QSize;
class QString;

// How the drawings are kept in the program and painted: as SVG by Qt's module for it, or as
// pictures made of the same files when the program is built, where that module is not at hand.

// A colour of the files and the one to paint instead.
struct InkExchange {
    QRgb inFile;
    QRgb painted;
};

// The resource of a drawing ("toolbar/run"), which need not exist.
QString drawingFile(const QString& name);

// Paints a drawing from (0, 0) on, as large as fits into the size, in pixels of the painter.
void paintDrawing(QPainter& painter, const QString& file, const QSize& size,
                  std::span<const InkExchange> inks);
