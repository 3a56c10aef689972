#include "FocusBorder.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

class Border : public QWidget {
public:
    explicit Border(QWidget* view)
        : QWidget(view) {
        setObjectName(u"focusBorder"_s);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setGeometry(view->rect());
        raise();
        show();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
};

} // namespace

FocusBorder::FocusBorder(QWidget& window)
    : QObject(&window)
    , m_window(window) {
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* focus) { follow(focus); });
}

void FocusBorder::follow(QWidget* focus) {
    if (m_border) {
        m_border->parentWidget()->removeEventFilter(this);
        delete m_border;
    }
    auto* view = qobject_cast<QAbstractScrollArea*>(focus);
    if (!view || !m_window.isAncestorOf(view))
        return;
    m_border = new Border(view);
    view->installEventFilter(this);
}

bool FocusBorder::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && m_border && watched == m_border->parent())
        m_border->setGeometry(m_border->parentWidget()->rect());
    return QObject::eventFilter(watched, event);
}
