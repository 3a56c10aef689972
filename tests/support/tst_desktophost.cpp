#include "DesktopHost.h"
#include "DialogDriver.h"
#include "Error.h"
#include "FileDialogFilter.h"
#include "FileSizeLimit.h"
#include "TextPrinter.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPdfWriter>
#include <QPlainTextEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

// Takes mailto: links instead of the desktop's mail program.
class MailProgram : public QObject {
    Q_OBJECT
public:
    QUrl opened;
    MailProgram() { QDesktopServices::setUrlHandler(u"mailto"_s, this, "open"); }
    ~MailProgram() override { QDesktopServices::unsetUrlHandler(u"mailto"_s); }
public Q_SLOTS:
    void open(const QUrl& url) { opened = url; }
};

qsizetype pagesOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray pdf = file.readAll();
    return pdf.startsWith("%PDF") ? pdf.count("/Type /Page\n") : -1;
}

} // namespace

class tst_desktophost : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void messageBoxAnswers_data();
    void messageBoxAnswers();
    void errorReportShowsAndMails();
    void errorReportStaysWithoutAMailProgram();
    void filters_data();
    void filters();
    void savedNameGetsTheExtension();
    void overwritingIsAskedAbout();
    void cancelledDialogsGiveNothing();
    void printsSelectionOrAll();
    void longTextsTakeMorePages_data();
    void longTextsTakeMorePages();
    void failedPrinterIsAnError();
    void fullDiskIsAnError();
    void pointerIsSetAndReset();
};

void tst_desktophost::messageBoxAnswers_data() {
    QTest::addColumn<MsgButtons>("buttons");
    QTest::addColumn<QMessageBox::StandardButton>("click");
    QTest::addColumn<Answer>("answer");
    QTest::newRow("yes") << MsgButtons::YesNoCancel << QMessageBox::Yes << Answer::Yes;
    QTest::newRow("no") << MsgButtons::YesNoCancel << QMessageBox::No << Answer::No;
    QTest::newRow("left") << MsgButtons::YesNoCancel << QMessageBox::NoButton << Answer::Cancel;
    QTest::newRow("the one button") << MsgButtons::Ok << QMessageBox::Ok << Answer::Ok;
    QTest::newRow("the one button left") << MsgButtons::Ok << QMessageBox::NoButton << Answer::Ok;
}

void tst_desktophost::messageBoxAnswers() {
    QFETCH(const MsgButtons, buttons);
    QFETCH(const QMessageBox::StandardButton, click);
    DesktopHost host;
    DialogDriver dialogs;
    dialogs.expect(u"msgBox"_s, [&](QDialog& dialog) {
        auto& box = dynamic_cast<QMessageBox&>(dialog);
        QCOMPARE(box.text(), u"<b>as it stands</b>"_s);
        QCOMPARE(box.textFormat(), Qt::PlainText);
        if (click == QMessageBox::NoButton)
            QTest::keyClick(&box, Qt::Key_Escape);
        else
            QTest::mouseClick(box.button(click), Qt::LeftButton);
    });
    QTEST(host.msgBox(u"<b>as it stands</b>"_s, buttons, MsgIcon::Exclamation, QString()),
          "answer");
    QCOMPARE(dialogs.problems(), QStringList());
}

void tst_desktophost::errorReportShowsAndMails() {
    DesktopHost host;
    DialogDriver dialogs;
    MailProgram mail;
    host.setMousePointer(MousePointer::Hourglass);
    dialogs.expect(u"frmError"_s, [&](QDialog& report) {
        QVERIFY(!QApplication::overrideCursor());
        QCOMPARE(report.windowTitle(), u"Error Report"_s);
        QCOMPARE(report.findChild<QLineEdit*>(u"txtNo"_s)->text(), u"13"_s);
        QCOMPARE(report.findChild<QLineEdit*>(u"txtSource"_s)->text(), u"a..b.C"_s);
        QCOMPARE(report.findChild<QPlainTextEdit*>(u"txtDescription"_s)->toPlainText(),
                 u"Type mismatch"_s);
        QTest::mouseClick(report.findChild<QPushButton*>(u"cmdOK"_s), Qt::LeftButton);
    });
    host.showError(u"13"_s, u"a..b.C"_s, u"Type mismatch"_s);
    QCOMPARE(dialogs.problems(), QStringList());
    const QString link = mail.opened.toString(QUrl::FullyEncoded);
    QVERIFY2(link.startsWith(u"mailto:support@quillmate.example?subject=Bug%20Report&body="
                             "-----Error%20Report%20for%20Product:Quillmate%20"_s),
             qPrintable(link));
    QVERIFY2(link.contains(u"%0D%0A%20*****%20DESCRIPTION:Type%20mismatch"_s), qPrintable(link));
}

void tst_desktophost::errorReportStaysWithoutAMailProgram() {
    DesktopHost host;
    DialogDriver dialogs;
    QString told;
    dialogs.expect(u"frmError"_s, [&](QDialog& report) {
        QTest::mouseClick(report.findChild<QPushButton*>(u"cmdOK"_s), Qt::LeftButton);
    });
    dialogs.expect(u"msgBox"_s, [&](QDialog& box) {
        told = dynamic_cast<QMessageBox&>(box).text();
        box.accept();
    });
    dialogs.expect(u"frmError"_s,
                   [](QDialog& report) { QTest::keyClick(&report, Qt::Key_Escape); });
    host.showError(u"1"_s, QString(), u"x"_s);
    QCOMPARE(dialogs.problems(), QStringList());
    QVERIFY(told.endsWith(u"email to support@quillmate.example"_s));
}

void tst_desktophost::filters_data() {
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("expected");
    QTest::newRow("patterns named in the description")
        << u"Text File (*.txt)|*.txt|All Files (*.*)|*.*"_s
        << u"Text File (*.txt);;All Files (*)"_s;
    QTest::newRow("several patterns") << u"Pictures|*.png;*.jpg"_s << u"Pictures (*.png *.jpg)"_s;
    QTest::newRow("half a pair is dropped") << u"A|*.a|B"_s << u"A (*.a)"_s;
}

void tst_desktophost::filters() {
    QFETCH(const QString, filter);
    QTEST(toolkitFilter(filter), "expected");
}

void tst_desktophost::savedNameGetsTheExtension() {
    QTemporaryDir folder;
    DesktopHost host;
    DialogDriver dialogs;
    FileDialogRequest request;
    request.filter = u"All Files (*.*)|*.*"_s;
    request.defaultExtension = u".sql"_s;
    for (const QString& typed : {u"plain"_s, u"named.txt"_s}) {
        dialogs.expect(u"dlgFile"_s, [&](QDialog& dialog) {
            dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(folder.filePath(typed));
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
    }
    QCOMPARE(host.saveFileName(request), folder.filePath(u"plain.sql"_s));
    QCOMPARE(host.saveFileName(request), folder.filePath(u"named.txt"_s));
    QCOMPARE(dialogs.problems(), QStringList());
}

void tst_desktophost::overwritingIsAskedAbout() {
    QTemporaryDir folder;
    const QString path = folder.filePath(u"there.sql"_s);
    QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    DesktopHost host;
    for (const bool asks : {true, false}) {
        DialogDriver dialogs;
        FileDialogRequest request;
        request.overwritePrompt = asks;
        dialogs.expect(u"dlgFile"_s, [&](QDialog& dialog) {
            dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(path);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        const std::optional<QString> chosen = host.saveFileName(request);
        if (!asks)
            QCOMPARE(chosen, path);
        // The toolkit's own question has no name of ours and is dismissed by the driver, which
        // leaves the file dialog open to be dismissed too.
        QCOMPARE(dialogs.problems().isEmpty(), !asks);
    }
}

void tst_desktophost::cancelledDialogsGiveNothing() {
    DesktopHost host;
    DialogDriver dialogs;
    dialogs.expect(u"dlgFile"_s, [](QDialog& dialog) { dialog.reject(); });
    dialogs.expect(u"dlgFile"_s, [](QDialog& dialog) { dialog.close(); });
    dialogs.expect(u"dlgPrint"_s, [](QDialog& dialog) { dialog.reject(); });
    QVERIFY(!host.openFileName({}));
    QVERIFY(!host.saveFileName({}));
    QVERIFY(!host.print({u"t"_s, u"text"_s, QString()}));
    QCOMPARE(dialogs.problems(), QStringList());
}

void tst_desktophost::printsSelectionOrAll() {
    QTemporaryDir folder;
    const QString lines = u"line\n"_s.repeated(300);
    DesktopHost host;
    DialogDriver dialogs;
    const auto printTo = [&](const QString& path) {
        dialogs.expect(u"dlgPrint"_s, [path](QDialog& dialog) {
            auto& print = dynamic_cast<QPrintDialog&>(dialog);
            print.printer()->setOutputFileName(path);
            print.done(QDialog::Accepted);
        });
    };
    printTo(folder.filePath(u"all.pdf"_s));
    QVERIFY(host.print({u"t"_s, lines, QString()}));
    printTo(folder.filePath(u"selection.pdf"_s));
    QVERIFY(host.print({u"t"_s, lines, u"one line"_s}));
    QCOMPARE(dialogs.problems(), QStringList());
    QVERIFY(pagesOf(folder.filePath(u"all.pdf"_s)) > 1);
    QCOMPARE(pagesOf(folder.filePath(u"selection.pdf"_s)), 1);
}

void tst_desktophost::longTextsTakeMorePages_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("onePage");
    QTest::newRow("empty") << QString() << true;
    QTest::newRow("short, both line ends") << u"a\r\nb\n\tc"_s << true;
    QTest::newRow("many lines") << u"x\n"_s.repeated(500) << false;
    QTest::newRow("blank lines") << u"\n"_s.repeated(500) << false;
    QTest::newRow("one endless line, letters of all scripts")
        << u"x ü Ł 日 ع \u200d\u0301"_s.repeated(5'000) << false;
    QTest::newRow("marks that take no room") << u"\u0301"_s.repeated(20'000) << true;
    QTest::newRow("one endless line") << QString(50'000, u'x') << false;
    QTest::newRow("one endless line of pairs")
        << QString::fromUtf8("\xF0\x9F\xA6\x86").repeated(20'000) << false;
}

void tst_desktophost::longTextsTakeMorePages() {
    QFETCH(const QString, text);
    QFETCH(const bool, onePage);
    QTemporaryDir folder;
    const QString path = folder.filePath(u"a.pdf"_s);
    QPdfWriter device(path);
    printText(text, device);
    QCOMPARE(pagesOf(path) == 1, onePage);
}

void tst_desktophost::failedPrinterIsAnError() {
    QPdfWriter device(u"/no such folder/a.pdf"_s);
    QVERIFY_THROWS_EXCEPTION(Error, printText(u"x"_s, device));
}

void tst_desktophost::fullDiskIsAnError() {
#ifdef Q_OS_UNIX
    QTemporaryDir folder;
    DesktopHost host;
    DialogDriver dialogs;
    dialogs.expect(u"dlgPrint"_s, [&](QDialog& dialog) {
        auto& print = dynamic_cast<QPrintDialog&>(dialog);
        print.printer()->setOutputFileName(folder.filePath(u"cut.pdf"_s));
        print.done(QDialog::Accepted);
    });
    const FileSizeLimit full(2000);
    QVERIFY_THROWS_EXCEPTION(Error, host.print({u"t"_s, u"line\n"_s.repeated(300), QString()}));
#endif
}

void tst_desktophost::pointerIsSetAndReset() {
    DesktopHost host;
    host.setMousePointer(MousePointer::Hourglass);
    host.setMousePointer(MousePointer::Hourglass);
    QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    host.setMousePointer(MousePointer::Default);
    QVERIFY(!QApplication::overrideCursor());
}

QTEST_MAIN(tst_desktophost)
#include "tst_desktophost.moc"
