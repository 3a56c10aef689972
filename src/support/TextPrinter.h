#pragma once

#include <QString>

class QPagedPaintDevice;

// Prints plain text in a fixed-pitch font, long lines wrapped, with a page number at the foot of
// each page. Lines end at LF or CR LF. Throws Error when the device fails.
void printText(const QString& text, QPagedPaintDevice& device);
