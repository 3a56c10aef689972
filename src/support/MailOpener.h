#pragma once

class QString;
class QWidget;

// Opens a "mailto:" address with whatever the system has for it, on behalf of the window. False
// when there is nothing.
bool openMail(const QString& address, const QWidget& window);
