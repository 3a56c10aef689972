#pragma once

#include <QTimer>
#include <QWidget>

// The window seen while the program starts. It waits for nothing: the program goes on as soon as
// the splash was painted once.
class frmSplash : public QWidget {
    Q_OBJECT
public:
    frmSplash();

Q_SIGNALS:
    // Once: by Timer1, or by a key that ends the waiting. What shows the main window; the splash
    // unloads itself afterwards.
    void Timer();

protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void goOn();

    QTimer* Timer1;
};
