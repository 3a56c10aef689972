#pragma once

#include <QObject>
#include <QStringList>

class QWidget;

// Takes files that are dragged onto a window, also onto a control inside it that has no use for
// them itself.
class FileDrop : public QObject {
    Q_OBJECT
public:
    // Owned by the window.
    explicit FileDrop(QWidget& window);

Q_SIGNALS:
    // Full paths in the platform's form, after the drag has ended.
    void dropped(const QStringList& paths);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
