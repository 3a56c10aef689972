#include "MailOpener.h"

#include <QDesktopServices>
#include <QUrl>

bool openMail(const QString& address, const QWidget&) {
    return QDesktopServices::openUrl(QUrl(address));
}
