#include "InkDrawing.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

QString drawingFile(const QString& name) {
    return QStringLiteral(":/images/%1.svg").arg(name);
}

void paintDrawing(QPainter& painter, const QString& file, const QSize& size,
                  std::span<const InkExchange> inks) {
    QFile drawing(file);
    if (!drawing.open(QIODevice::ReadOnly))
        return;
    QByteArray text = drawing.readAll();
    for (const InkExchange& ink : inks)
        text.replace(QColor(ink.inFile).name().toLatin1(), QColor(ink.painted).name().toLatin1());
    QSvgRenderer renderer(text);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    renderer.render(&painter, QRectF(QPointF(), size));
}
