#pragma once

#include <QIconEngine>

// Paints a drawing. Where its colours are the program's inks, they are exchanged for those that the
// palette and the icon's mode ask for.
class InkIconEngine : public QIconEngine {
public:
    enum class Colours { Inks, Own }; // Own: painted as they are in the file

    InkIconEngine(QString file, Colours colours);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    // size: in device pixels.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override;
    QString key() const override;

    static bool keepsInksWhenSelected; // of all; false at first

private:
    QString m_file;
    Colours m_colours;
};
