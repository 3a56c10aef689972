#include "InkIconEngine.h"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace {

struct Ink {
    QByteArrayView inFile; // as the drawings are written, for a light ground
    QByteArrayView onDark;
};

constexpr Ink inks[] = {
    {"#3b4252", "#dfe3ea"}, // the outlines
    {"#2f6fb5", "#7db8f2"}, // blue
    {"#2e8b4e", "#6fce8c"}, // green
    {"#c0392b", "#f08a7e"}, // red
    {"#a26a0c", "#e8bd62"}, // amber
};

bool isDark() {
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

// The one colour of a drawing on a selected row, whose ground can have any colour; else none.
QByteArray plainColour(QIcon::Mode mode) {
    if (mode != QIcon::Selected)
        return {};
    return QGuiApplication::palette()
        .color(QPalette::Active, QPalette::HighlightedText)
        .name()
        .toLatin1();
}

QByteArray inked(QByteArray drawing, QIcon::Mode mode) {
    const QByteArray plain = plainColour(mode);
    if (plain.isEmpty() && !isDark())
        return drawing;
    for (const Ink& ink : inks)
        drawing.replace(ink.inFile, plain.isEmpty() ? ink.onDark : QByteArrayView(plain));
    return drawing;
}

QPixmap drawn(const QString& fileName, const QSize& size, QIcon::Mode mode) {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return pixmap;
    QSvgRenderer renderer(inked(file.readAll(), mode));
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter(&pixmap);
    constexpr qreal disabledOpacity = 0.35;
    if (mode == QIcon::Disabled)
        painter.setOpacity(disabledOpacity);
    renderer.render(&painter, QRectF(QPointF(), size));
    return pixmap;
}

} // namespace

InkIconEngine::InkIconEngine(QString file)
    : m_file(std::move(file)) {}

void InkIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
                          QIcon::State state) {
    const qreal scale = painter->device()->devicePixelRatio();
    QPixmap drawing = pixmap((QSizeF(rect.size()) * scale).toSize(), mode, state);
    drawing.setDevicePixelRatio(scale);
    painter->drawPixmap(rect.topLeft(), drawing);
}

QPixmap InkIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) {
    if (size.isEmpty())
        return {};
    const QString cached = u"%1 %2x%3 %4 %5 %6"_s.arg(m_file)
                               .arg(size.width())
                               .arg(size.height())
                               .arg(int(mode))
                               .arg(QLatin1StringView(plainColour(mode)))
                               .arg(int(isDark()));
    QPixmap pixmap;
    if (!QPixmapCache::find(cached, &pixmap)) {
        pixmap = drawn(m_file, size, mode);
        QPixmapCache::insert(cached, pixmap);
    }
    return pixmap;
}

QIconEngine* InkIconEngine::clone() const {
    return new InkIconEngine(*this);
}

QString InkIconEngine::key() const {
    return u"ink"_s;
}
