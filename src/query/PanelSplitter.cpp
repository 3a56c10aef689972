#include "PanelSplitter.h"

#include "FormParts.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

constexpr int keyStep = 8;

} // namespace

PanelSplitter::PanelSplitter(QWidget* form)
    : QWidget(form) {
    named(this, u"imgSplitterVertical"_s, u"Splitter between editor and results"_s);
    setCursor(Qt::SplitVCursor);
    setFocusPolicy(Qt::TabFocus);
}

void PanelSplitter::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_dragging = true;
    Q_EMIT pressed();
}

void PanelSplitter::mouseMoveEvent(QMouseEvent* event) {
    if (m_dragging)
        Q_EMIT moved(event->position().toPoint().y());
}

void PanelSplitter::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !std::exchange(m_dragging, false))
        return;
    Q_EMIT released();
}

void PanelSplitter::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Up: Q_EMIT stepped(-keyStep); break;
    case Qt::Key_Down: Q_EMIT stepped(keyStep); break;
    default: QWidget::keyPressEvent(event);
    }
}

void PanelSplitter::paintEvent(QPaintEvent*) {
    if (hasFocus())
        QPainter(this).fillRect(rect(), palette().color(QPalette::Highlight));
}
