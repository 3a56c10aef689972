#include "InkIconEngine.h"

#include "InkDrawing.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>

#include <optional>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

struct Ink {
    QRgb inFile; // as the drawings are written, for a light ground
    QRgb onDark;
};

constexpr Ink inks[] = {
    {0xff3b4252, 0xffdfe3ea}, // the outlines
    {0xff2f6fb5, 0xff7db8f2}, // blue
    {0xff2e8b4e, 0xff6fce8c}, // green
    {0xffc0392b, 0xfff08a7e}, // red
    {0xffa26a0c, 0xffe8bd62}, // amber
};

bool isDark() {
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

// The one colour of a drawing on a selected row, whose ground can have any colour; else none.
std::optional<QRgb> plainColour(QIcon::Mode mode) {
    if (mode != QIcon::Selected || InkIconEngine::keepsInksWhenSelected)
        return std::nullopt;
    return QGuiApplication::palette().color(QPalette::Active, QPalette::HighlightedText).rgb();
}

std::vector<InkExchange> exchangesFor(QIcon::Mode mode) {
    const auto plain = plainColour(mode);
    std::vector<InkExchange> exchanges;
    if (!plain && !isDark())
        return exchanges;
    for (const Ink& ink : inks)
        exchanges.push_back({ink.inFile, plain.value_or(ink.onDark)});
    return exchanges;
}

QPixmap drawn(const QString& file, const QSize& size, QIcon::Mode mode,
              std::span<const InkExchange> exchanges) {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    constexpr qreal disabledOpacity = 0.35;
    if (mode == QIcon::Disabled)
        painter.setOpacity(disabledOpacity);
    paintDrawing(painter, file, size, exchanges);
    return pixmap;
}

} // namespace

bool InkIconEngine::keepsInksWhenSelected = false;

InkIconEngine::InkIconEngine(QString file, Colours colours)
    : m_file(std::move(file))
    , m_colours(colours) {}

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
                               .arg(plainColour(mode).value_or(0))
                               .arg(int(isDark()));
    QPixmap pixmap;
    if (!QPixmapCache::find(cached, &pixmap)) {
        const auto exchanges =
            m_colours == Colours::Inks ? exchangesFor(mode) : std::vector<InkExchange>();
        pixmap = drawn(m_file, size, mode, exchanges);
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
