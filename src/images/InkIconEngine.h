#pragma once

#include <QIconEngine>

// Paints an SVG file whose colours are the program's inks, which are exchanged for those that the
// palette and the icon's mode ask for.
class InkIconEngine : public QIconEngine {
public:
    explicit InkIconEngine(QString file);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    // size: in device pixels.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override;
    QString key() const override;

private:
    QString m_file;
};
