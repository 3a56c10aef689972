#include "FormParts.h"

#include "Images.h"
#include "Version.h"

#include <QLabel>
#include <QScreen>
#include <QWidget>

void Centre_Form(QWidget& form) {
    const QScreen* screen = form.screen();
    if (!screen)
        return;
    if (!form.testAttribute(Qt::WA_Resized))
        form.adjustSize();         // a form that was never shown has no size of its own yet
    constexpr QSize frame(40, 60); // what a window manager may put around it
    const QSize room = screen->availableSize() - frame;
    if (form.size().boundedTo(room) != form.size())
        form.resize(form.size().boundedTo(room));
    const QRect all = screen->geometry();
    form.move(all.left() + (all.width() - form.width()) / 2,
              all.top() + (all.height() - form.height()) / 2);
}

void wrapWhenWide(QLabel& label) {
    constexpr int widest = 520;
    if (label.sizeHint().width() <= widest)
        return;
    label.setWordWrap(true);
    label.setMinimumWidth(widest);
}

QLabel* productLabel() {
    auto* label = new QLabel(QString::fromLatin1(QUILLMATE_NAME));
    QFont font = label->font();
    constexpr qreal enlarged = 1.8;
    font.setPointSizeF(font.pointSizeF() * enlarged);
    label->setFont(font);
    return label;
}

QLabel* imageLabel(const QString& drawing, int size, const QWidget& form) {
    auto* label = new QLabel;
    label->setPixmap(image(drawing).pixmap(QSize(size, size), form.devicePixelRatio()));
    label->setAlignment(Qt::AlignTop);
    return label;
}
