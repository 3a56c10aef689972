#include "DesktopHost.h"

#include "Error.h"
#include "ErrorReport.h"
#include "FileDialogFilter.h"
#include "Images.h"
#include "TextPrinter.h"
#include "Version.h"
#include "frmError.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QStyle>
#include <QTime>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

Answer answerOf(int button, MsgButtons buttons) {
    switch (button) {
    case QMessageBox::Yes: return Answer::Yes;
    case QMessageBox::No: return Answer::No;
    default: return buttons == MsgButtons::Ok ? Answer::Ok : Answer::Cancel;
    }
}

// The kind decides what the platform says and sounds; the drawing then takes its place.
void showIcon(QMessageBox& box, MsgIcon icon) {
    if (icon == MsgIcon::None)
        return;
    const bool warns = icon == MsgIcon::Exclamation;
    box.setIcon(warns ? QMessageBox::Warning : QMessageBox::Information);
    const int size = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &box);
    const QIcon drawing = image(warns ? u"message/exclamation"_s : u"message/information"_s);
    box.setIconPixmap(drawing.pixmap(QSize(size, size), box.devicePixelRatio()));
}

// The toolkit does not tell that the disk was full.
void checkPrintedFile(const QPrinter& printer) {
    if (printer.outputFormat() != QPrinter::PdfFormat)
        return;
    QFile file(printer.outputFileName());
    const bool isWhole = file.open(QIODevice::ReadOnly) && [&file] {
        constexpr qint64 tail = 16; // bytes; more than the mark at the end and its line ends
        file.seek(std::max<qint64>(0, file.size() - tail));
        return file.readAll().trimmed().endsWith("%%EOF");
    }();
    if (!isWhole)
        throw Error(Error::PathFileAccess, QString(),
                    u"The file '%1' could not be written whole."_s.arg(file.fileName()));
}

} // namespace

Answer DesktopHost::msgBox(const QString& text, MsgButtons buttons, MsgIcon icon,
                           const QString& title) {
    QMessageBox box(QApplication::activeWindow());
    box.setObjectName(u"msgBox"_s);
    box.setWindowTitle(title.isEmpty() ? QString::fromLatin1(QUILLMATE_NAME) : title);
    box.setTextFormat(Qt::PlainText); // a server's text may look like markup
    box.setText(text);
    showIcon(box, icon);
    box.setStandardButtons(buttons == MsgButtons::Ok
                               ? QMessageBox::StandardButtons(QMessageBox::Ok)
                               : QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    return answerOf(box.exec(), buttons);
}

void DesktopHost::showError(const QString& number, const QString& source,
                            const QString& description) {
    setMousePointer(MousePointer::Default);
    frmError(*this, {number, source, description}, QApplication::activeWindow()).exec();
}

void DesktopHost::setMousePointer(MousePointer pointer) {
    while (QApplication::overrideCursor())
        QApplication::restoreOverrideCursor();
    if (pointer == MousePointer::Hourglass)
        QApplication::setOverrideCursor(Qt::WaitCursor);
}

std::optional<QString> DesktopHost::chooseFile(QFileDialog& dialog,
                                               const FileDialogRequest& request) {
    dialog.setObjectName(u"dlgFile"_s);
    if (!request.title.isEmpty())
        dialog.setWindowTitle(request.title);
    if (!m_lastFolder.isEmpty())
        dialog.setDirectory(m_lastFolder);
    dialog.setNameFilter(toolkitFilter(request.filter));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    const QString path = dialog.selectedFiles().constFirst();
    m_lastFolder = QFileInfo(path).absolutePath();
    return QDir::toNativeSeparators(path);
}

std::optional<QString> DesktopHost::openFileName(const FileDialogRequest& request) {
    QFileDialog dialog(QApplication::activeWindow());
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return chooseFile(dialog, request);
}

std::optional<QString> DesktopHost::saveFileName(const FileDialogRequest& request) {
    QFileDialog dialog(QApplication::activeWindow());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(request.defaultExtension); // drops the leading dot itself
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !request.overwritePrompt);
    return chooseFile(dialog, request);
}

bool DesktopHost::print(const PrintRequest& request) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(request.title);
    QPrintDialog dialog(&printer, QApplication::activeWindow());
    dialog.setObjectName(u"dlgPrint"_s);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
    dialog.setOption(QAbstractPrintDialog::PrintSelection, !request.selection.isEmpty());
    if (!request.selection.isEmpty())
        dialog.setPrintRange(QAbstractPrintDialog::Selection);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    const bool selectionOnly = dialog.printRange() == QAbstractPrintDialog::Selection;
    printText(selectionOnly ? request.selection : request.text, printer);
    checkPrintedFile(printer);
    return true;
}

QString DesktopHost::clipboardText() {
    return QApplication::clipboard()->text();
}

void DesktopHost::setClipboardText(const QString& text) {
    QApplication::clipboard()->setText(text);
}

float DesktopHost::timer() {
    constexpr float msecsPerSecond = 1000.0f;
    return float(QTime::currentTime().msecsSinceStartOfDay()) / msecsPerSecond;
}
