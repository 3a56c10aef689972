#pragma once

#include <QPointer>
#include <QWidget>

// Shows which of the window's views has the focus: a border around the editor, the trees and the
// results, which the desktop's style draws alike with and without the focus.
class FocusBorder : public QObject {
    Q_OBJECT
public:
    // window is not owned and outlives this.
    explicit FocusBorder(QWidget& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow(QWidget* focus);

    QWidget& m_window;
    QPointer<QWidget> m_border; // a child of the view that has the focus
};
