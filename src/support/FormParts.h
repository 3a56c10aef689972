#pragma once

#include <QString>

class QWidget;

// Places the form in the middle of its screen, ignoring what panels and docks take.
void Centre_Form(QWidget& form);

// Gives a control its name in code and the name that a screen reader speaks; returns it.
template<typename Control>
Control* named(Control* control, const QString& name, const QString& accessibleName) {
    control->setObjectName(name);
    control->setAccessibleName(accessibleName);
    return control;
}
