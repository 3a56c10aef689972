#include "FormParts.h"

#include <QScreen>
#include <QWidget>

void Centre_Form(QWidget& form) {
    const QScreen* screen = form.screen();
    if (!screen)
        return;
    if (!form.testAttribute(Qt::WA_Resized))
        form.adjustSize(); // a form that was never shown has no size of its own yet
    const QRect all = screen->geometry();
    form.move(all.left() + (all.width() - form.width()) / 2,
              all.top() + (all.height() - form.height()) / 2);
}
