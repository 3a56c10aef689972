#include "MailOpener.h"

#include <QCoreApplication>
#include <QDir>
#include <QWidget>

#include <qt_windows.h>
#include <shellapi.h>

namespace {

const wchar_t* wide(const QString& text) {
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

} // namespace

bool openMail(const QString& address, const QWidget& window) {
    constexpr INT_PTR lastErrorCode = 32; // what is greater is a success
    const QString folder = QDir::toNativeSeparators(QCoreApplication::applicationDirPath());
    const HINSTANCE result = ShellExecuteW(reinterpret_cast<HWND>(window.winId()), L"open",
                                           wide(address), nullptr, wide(folder), SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(result) > lastErrorCode;
}
