#include "InkDrawing.h"

#include <QImage>
#include <QPainter>

#include <algorithm>

namespace {

int squared(int value) {
    return value * value;
}

int distance(QRgb a, QRgb b) {
    return squared(qRed(a) - qRed(b)) + squared(qGreen(a) - qGreen(b)) +
           squared(qBlue(a) - qBlue(b));
}

// The nearest ink's: where translucent inks overlap and where edges meet, pixels are mixtures.
QRgb exchanged(QRgb pixel, std::span<const InkExchange> inks) {
    const auto ink = std::min_element(
        inks.begin(), inks.end(), [pixel](const InkExchange& a, const InkExchange& b) {
            return distance(a.inFile, pixel) < distance(b.inFile, pixel);
        });
    return qRgba(qRed(ink->painted), qGreen(ink->painted), qBlue(ink->painted), qAlpha(pixel));
}

void exchangeInks(QImage& picture, std::span<const InkExchange> inks) {
    for (int y = 0; y < picture.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(picture.scanLine(y));
        std::transform(line, line + picture.width(), line,
                       [inks](QRgb pixel) { return exchanged(pixel, inks); });
    }
}

} // namespace

QString drawingFile(const QString& name) {
    return QStringLiteral(":/images/%1.png").arg(name);
}

// The pictures are larger than any icon, so scaling them down is as good as drawing.
void paintDrawing(QPainter& painter, const QString& file, const QSize& size,
                  std::span<const InkExchange> inks) {
    QImage picture = QImage(file).convertToFormat(QImage::Format_ARGB32);
    if (!inks.empty())
        exchangeInks(picture, inks);
    const QImage scaled = picture.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    painter.drawImage(QPointF(size.width() - scaled.width(), size.height() - scaled.height()) / 2,
                      scaled);
}
