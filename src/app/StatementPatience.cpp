#include "StatementPatience.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostEventMilliseconds = 20;

// What a person does; everything else (painting, timers, resizing) goes on.
bool isInput(QEvent::Type type) {
    switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::InputMethod:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::Close:
    case QEvent::Quit: return true;
    default: return false;
    }
}

bool isEscape(const QEvent& event) {
    return event.type() == QEvent::KeyPress &&
           static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape;
}

} // namespace

void StatementPatience::began() {
    m_stopAsked = false;
    m_shownSecond = 0;
    QCoreApplication::instance()->installEventFilter(this);
}

bool StatementPatience::wait(std::chrono::milliseconds elapsed) {
    const qint64 second = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
    if (second > m_shownSecond || (m_stopAsked && m_shownSecond >= 0)) {
        m_shownSecond = m_stopAsked ? -1 : second;
        m_showProgress(m_stopAsked ? u"Stopping the query..."_s
                                   : u"Running query... %1 s (Esc stops it)"_s.arg(second));
    }
    QCoreApplication::processEvents(QEventLoop::AllEvents, mostEventMilliseconds);
    return m_stopAsked;
}

void StatementPatience::ended() noexcept {
    QCoreApplication::instance()->removeEventFilter(this);
    m_showProgress({});
}

bool StatementPatience::eventFilter(QObject*, QEvent* event) {
    if (!isInput(event->type()))
        return false;
    m_stopAsked = m_stopAsked || isEscape(*event);
    event->ignore();
    return true;
}
