#include "ControlClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QString>

using namespace Qt::StringLiterals;

namespace {

void put(QString text, QClipboard::Mode mode) {
    if (text.isEmpty())
        return;
    // Qt gives a bare line feed the platform's form; a CR LF it would hand out as it stands.
    text.replace("\r\n"_L1, "\n"_L1);
    QGuiApplication::clipboard()->setText(text, mode);
}

} // namespace

void putOnClipboard(const QString& text) {
    put(text, QClipboard::Clipboard);
}

void putOnSelectionClipboard(const QString& text) {
    if (QGuiApplication::clipboard()->supportsSelection())
        put(text, QClipboard::Selection);
}
