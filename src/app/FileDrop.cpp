#include "FileDrop.h"

#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace {

QStringList localFiles(const QMimeData& data) {
    QStringList paths;
    const QList<QUrl> urls = data.urls();
    for (const QUrl& url : urls)
        if (url.isLocalFile())
            paths << QDir::toNativeSeparators(url.toLocalFile());
    return paths;
}

} // namespace

FileDrop::FileDrop(QWidget& window)
    : QObject(&window) {
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

bool FileDrop::eventFilter(QObject* watched, QEvent* event) {
    const bool enters = event->type() == QEvent::DragEnter;
    if (!enters && event->type() != QEvent::Drop)
        return QObject::eventFilter(watched, event);
    auto& drop = static_cast<QDropEvent&>(*event);
    const QStringList paths = localFiles(*drop.mimeData());
    if (paths.isEmpty())
        return QObject::eventFilter(watched, event);
    // The files stay where they are, whatever the other program proposed.
    drop.setDropAction(Qt::CopyAction);
    drop.accept();
    if (!enters) // the other program waits until the event was handled, and messages may follow
        QMetaObject::invokeMethod(
            this, [this, paths] { Q_EMIT dropped(paths); }, Qt::QueuedConnection);
    return true;
}
