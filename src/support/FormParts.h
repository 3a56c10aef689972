#pragma once

#include <QString>

class QLabel;
class QWidget;

// Places the form in the middle of its screen, ignoring what panels and docks take, but makes it
// smaller when it would not fit between them, as on a small screen of a high scale.
void Centre_Form(QWidget& form);

// Breaks a text of more than a dialog's width, a long path for instance, into lines.
void wrapWhenWide(QLabel& label);

// The product's name in large letters; the caller's layout takes it.
QLabel* productLabel();

// A drawing in a square of so many pixels, sharp at the form's scale; the caller's layout takes it.
constexpr int messageIconSize = 48;
QLabel* imageLabel(const QString& drawing, int size, const QWidget& form);

// Gives a control its name in code and the name that a screen reader speaks; returns it.
template<typename Control>
Control* named(Control* control, const QString& name, const QString& accessibleName) {
    control->setObjectName(name);
    control->setAccessibleName(accessibleName);
    return control;
}
