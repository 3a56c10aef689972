#include "Workbench.h"

#include "FormParts.h"
#include "LeftPanel.h"
#include "Twips.h"

#include <QKeyEvent>
#include <QMdiArea>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int startWidth = 3660;    // twips
constexpr int leastBarLeft = 1935;  // twips; the bar goes no further left than just right of it
constexpr int leastAreaWidth = 120; // pixels that stay for the query windows
constexpr int barWidth = 5;
constexpr int keyStep = 8;

} // namespace

VerticalBar::VerticalBar(QWidget* parent)
    : QWidget(parent) {
    named(this, u"picVBar"_s, u"Splitter of the left panel"_s);
    setCursor(Qt::SplitHCursor);
    setFocusPolicy(Qt::TabFocus);
}

void VerticalBar::mousePressEvent(QMouseEvent* event) {
    m_dragging = event->button() == Qt::LeftButton;
    m_grip = event->position().toPoint().x();
}

void VerticalBar::mouseMoveEvent(QMouseEvent* event) {
    if (m_dragging)
        Q_EMIT dragged(event->position().toPoint().x() - m_grip);
}

void VerticalBar::mouseReleaseEvent(QMouseEvent*) {
    m_dragging = false;
}

void VerticalBar::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left: Q_EMIT dragged(-keyStep); break;
    case Qt::Key_Right: Q_EMIT dragged(keyStep); break;
    default: QWidget::keyPressEvent(event);
    }
}

void VerticalBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(hasFocus() ? QPalette::Highlight : QPalette::Window));
}

Workbench::Workbench(QWidget* parent)
    : QWidget(parent)
    , picLeft(new LeftPanel(this))
    , picVBar(new VerticalBar(this))
    , mdiArea(named(new QMdiArea(this), u"mdiArea"_s, u"Query windows"_s)) {
    connect(picVBar, &VerticalBar::dragged, this, &Workbench::moveBar);
    mdiArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mdiArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

void Workbench::Show_Browser(bool show) {
    picLeft->setVisible(show);
    picVBar->setVisible(show);
    if (show)
        m_panelWidth = twipsToPixels(startWidth);
    layOut();
}

void Workbench::moveBar(int offset) {
    const int newLeft = picVBar->x() + offset;
    if (pixelsToTwips(newLeft) <= leastBarLeft || newLeft > width() - barWidth - leastAreaWidth)
        return;
    m_panelWidth = newLeft;
    layOut();
}

void Workbench::setPanelWidth(int width) {
    if (pixelsToTwips(width) <= leastBarLeft)
        return;
    m_panelWidth = width;
    layOut();
}

void Workbench::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
}

void Workbench::layOut() {
    const bool showsPanel = !picLeft->isHidden();
    const int room = std::max(width() - barWidth - leastAreaWidth, twipsToPixels(leastBarLeft));
    const int panelWidth = std::min(m_panelWidth, room);
    const int areaLeft = showsPanel ? panelWidth + barWidth : 0;
    picLeft->setGeometry(0, 0, panelWidth, height());
    picVBar->setGeometry(panelWidth, 0, barWidth, height());
    mdiArea->setGeometry(areaLeft, 0, std::max(0, width() - areaLeft), height());
}
