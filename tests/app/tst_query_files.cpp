#include "Desk.h"
#include "FileSizeLimit.h"
#include "QueryText.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QMimeData>
#include <QTemporaryDir>
#include <QToolButton>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
}

// Waits for the file dialog and chooses a path in it.
void expectPath(Desk& desk, const QString& path) {
    desk.dialogs.expect(u"dlgFile"_s, [path](QDialog& dialog) {
        dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(path);
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
}

void expectCancel(Desk& desk) {
    desk.dialogs.expect(u"dlgFile"_s, [](QDialog& dialog) { dialog.reject(); });
}

// Waits for a message box and keeps its text.
void expectMessage(Desk& desk, QString& text) {
    desk.dialogs.expect(u"msgBox"_s, [&text](QDialog& box) {
        text = dynamic_cast<QMessageBox&>(box).text();
        box.accept();
    });
}

// Drags the data onto the widget and lets it go; false when it was not taken.
bool drop(QWidget* target, const QMimeData& data) {
    const QPoint place = target->rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    enter.ignore();
    QApplication::sendEvent(target, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent drop(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(target, &drop);
    return drop.isAccepted() && drop.dropAction() == Qt::CopyAction;
}

} // namespace

// Query files from the menu, the toolbar and a file manager, on the real main window.
class tst_query_files : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void newTextComesBackAsItWas();
    void openedEditedSaved_data();
    void openedEditedSaved();
    void openingAndSavingAddsNothing();
    void typedTextIsFoundAgain();
    void saveAsAsksAndKeepsTheEncoding();
    void cancelledDialogsChangeNothing();
    void unreadableFiles_data();
    void unreadableFiles();
    void failedSaveLeavesAll_data();
    void failedSaveLeavesAll();
    void droppedFilesOpen();
    void openedFromElsewhereHasItsFrame();
    void droppedTextIsNoFile();
    void saveAllIsAMessage();

private:
    QString file(const QString& name) const { return m_home.filePath(name); }
    QString written(const QString& name, const QByteArray& bytes) const {
        QFile file(m_home.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()
                   ? QDir::toNativeSeparators(file.fileName())
                   : QString();
    }
    // As File > Open does.
    static void open(Desk& desk, const QString& path) {
        expectPath(desk, path);
        desk.entry("mnuFileOpen")->trigger();
        QCOMPARE(desk.dialogs.problems(), QStringList());
        QCOMPARE(desk.query()->Caption(), u"Query - "_s + path);
        QVERIFY(!desk.query()->UnSavedChanges());
    }

    QTemporaryDir m_home;
};

void tst_query_files::initTestCase() {
    qputenv("QUILLMATE_HOME", m_home.path().toLocal8Bit());
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void tst_query_files::newTextComesBackAsItWas() {
    Desk desk;
    desk.start();
    const QString path = file(u"new"_s); // gets the extension
    desk.window.New_Query();
    QTest::keyClicks(desk.query()->txtSQL, u"select 'a' from dual"_s);
    QTest::keyClick(desk.query()->txtSQL, Qt::Key_Return);
    const QString text = desk.query()->txtSQL->Text();
    QVERIFY(desk.query()->UnSavedChanges());
    QVERIFY(!desk.entry("mnuFileAddFav")->isEnabled());
    expectPath(desk, path);
    QTest::mouseClick(desk.window.findChild<QToolButton*>(u"Toolbar_save"_s), Qt::LeftButton);
    QCOMPARE(desk.query()->FileName(), path + u".sql"_s);
    QVERIFY(!desk.query()->UnSavedChanges());
    QVERIFY(desk.entry("mnuFileAddFav")->isEnabled());
    QCOMPARE(contentOf(path + u".sql"_s), text.toUtf8() + "\r\n");

    expectPath(desk, path + u".sql"_s);
    QTest::mouseClick(desk.window.findChild<QToolButton*>(u"Toolbar_open"_s), Qt::LeftButton);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(desk.query()->txtSQL->Text(), text);
    const QString caption = u"Query - "_s + path + u".sql"_s;
    QCOMPARE(desk.captions(), QStringList({caption, caption}));
}

void tst_query_files::openedEditedSaved_data() {
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("typed"); // at the end
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("what RTF gives a meaning")
        << "a \\b {c} }\\par\r\n{x\r\n"_ba << u"\\}"_s << "a \\b {c} }\\par\r\n{x\\}\r\n"_ba;
    QTest::newRow("UTF-8") << "Łódź 🦆\r\n"_ba << u"€"_s << "Łódź 🦆€\r\n"_ba;
    QTest::newRow("UTF-8's mark is read over") << "\xEF\xBB\xBFz\r\n"_ba << u"y"_s << "zy\r\n"_ba;
    QTest::newRow("Windows-1252 stays")
        << "caf\xE9\r\n"_ba << u" €“"_s << "caf\xE9 \x80\x93\r\n"_ba;
    QTest::newRow("until a letter does not fit") << "caf\xE9\r\n"_ba << u"Ł"_s << "caféŁ\r\n"_ba;
    QTest::newRow("or it would be read as UTF-8") << "caf\xE9\r\n"_ba << u"€“"_s << "café€“\r\n"_ba;
    QTest::newRow("UTF-16 stays") << QByteArray("\xFF\xFEs\0", 4) << u"Ł"_s
                                  << QByteArray("\xFF\xFEs\0\x41\x01\r\0\n\0", 10);
    QTest::newRow("no line end at the end") << "a\r\nb"_ba << u"c"_s << "a\r\nbc\r\n"_ba;
    QTest::newRow("other line ends") << "a\nb\rc\n"_ba << u"d"_s << "a\r\nb\r\ncd\r\n"_ba;
    QTest::newRow("empty lines at the end") << "a\r\n\r\n\r\n"_ba << u"b"_s << "a\r\n\r\nb\r\n"_ba;
    QTest::newRow("blanks, tabs and odd spaces")
        << " \t a\xC2\xA0\xE2\x80\x83 \r\n"_ba << u" "_s << " \t a\xC2\xA0\xE2\x80\x83  \r\n"_ba;
}

void tst_query_files::openedEditedSaved() {
    QFETCH(QByteArray, before);
    QFETCH(QString, typed);
    const QString path = written(u"edited.sql"_s, before);
    Desk desk;
    desk.start();
    open(desk, path);
    desk.query()->txtSQL->moveCursor(QTextCursor::End);
    desk.query()->txtSQL->setSelText(typed);
    QVERIFY(desk.query()->UnSavedChanges());
    desk.entry("mnuFileSave")->trigger();
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QVERIFY(!desk.query()->UnSavedChanges());
    QTEST(contentOf(path), "after");
    desk.entry("mnuFileSave")->trigger(); // once more appends nothing
    QTEST(contentOf(path), "after");
}

void tst_query_files::openingAndSavingAddsNothing() {
    const QByteArray bytes = "x {1}\r\n\r\n y \\ \xE9\r\n";
    const QString path = written(u"again.sql"_s, bytes);
    Desk desk;
    desk.start();
    for (int i = 0; i < 3; ++i) {
        open(desk, path);
        desk.entry("mnuFileSave")->trigger();
        QCOMPARE(contentOf(path), bytes);
    }
}

void tst_query_files::typedTextIsFoundAgain() {
    const QString path = written(u"typed.sql"_s, "");
    Desk desk;
    desk.start();
    open(desk, path);
    desk.query()->txtSQL->SelectAll();
    QTest::keyClicks(desk.query()->txtSQL, u"update t set a = 'q}' where b = 1;"_s);
    desk.expectClick(u"frmSavePrompt"_s, u"cmdYes"_s);
    desk.entry("mnuFileClose")->trigger();
    QCOMPARE(contentOf(path), "UPDATE t SET a = 'q}' WHERE b = 1;\r\n"_ba);
    open(desk, path);
    QCOMPARE(desk.query()->txtSQL->Text(), u"UPDATE t SET a = 'q}' WHERE b = 1;"_s);
}

void tst_query_files::saveAsAsksAndKeepsTheEncoding() {
    const QString path = written(u"first.sql"_s, "\xE9\r\n");
    Desk desk;
    desk.start();
    open(desk, path);
    desk.query()->txtSQL->setSelText(u"ü"_s);
    expectPath(desk, file(u"second.txt"_s));
    desk.entry("mnuFileSaveAs")->trigger();
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(desk.query()->FileName(), file(u"second.txt"_s));
    QCOMPARE(contentOf(file(u"second.txt"_s)), "\xFC\xE9\r\n"_ba);
    QCOMPARE(contentOf(path), "\xE9\r\n"_ba);
}

void tst_query_files::cancelledDialogsChangeNothing() {
    Desk desk;
    desk.start();
    desk.window.New_Query();
    expectCancel(desk);
    desk.entry("mnuFileOpen")->trigger();
    QCOMPARE(desk.captions(), QStringList(u"1 Query - Untitled"_s));
    desk.query()->txtSQL->setSelText(u"changed"_s);
    for (const char* entry : {"mnuFileSave", "mnuFileSaveAs"}) {
        expectCancel(desk);
        desk.entry(entry)->trigger();
        QCOMPARE(desk.query()->FileName(), QString());
        QVERIFY(desk.query()->UnSavedChanges());
    }
    QCOMPARE(desk.dialogs.problems(), QStringList());
    desk.query()->setUnSavedChanges(false);
}

void tst_query_files::unreadableFiles_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing") << file(u"gone.sql"_s) << u"No such file or directory"_s;
    QTest::newRow("folder") << m_home.path() << u"It is a folder."_s;
    QTest::newRow("NUL") << written(u"binary"_s, QByteArray("a\0b", 3))
                         << u"It is not a text file: it holds a NUL character."_s;
    QTest::newRow("the failure marker")
        << written(u"marker"_s, "-1")
        << u"A file that holds nothing but \"-1\" cannot be opened."_s;
    const QString large = written(u"large"_s, "");
    QFile(large).resize(largestQueryFile + 1);
    QTest::newRow("too large") << large
                               << u"It has 32 MB, and a query window takes at most 32 MB. "
                                  "Such a script can be run with quillmate-console."_s;
#ifdef Q_OS_UNIX
    QTest::newRow("endless") << u"/dev/zero"_s << u"It is a device, not a file."_s;
#endif
}

void tst_query_files::unreadableFiles() {
    QFETCH(QString, path);
    QFETCH(QString, reason);
    Desk desk;
    desk.start();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QString told;
    expectMessage(desk, told);
    QVERIFY(drop(&desk.window, data));
    QTRY_VERIFY(!told.isEmpty());
    QCOMPARE(told, u"There was a problem opening the file '"_s + path + u"'.  "_s + reason);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(desk.captions(), QStringList());
    desk.window.New_Query();
    QCOMPARE(desk.captions(), QStringList(u"1 Query - Untitled"_s)); // no number was used
}

void tst_query_files::failedSaveLeavesAll_data() {
    QTest::addColumn<bool>("fullDisk");
    QTest::newRow("full disk") << true;
    QTest::newRow("vanished folder") << false;
}

void tst_query_files::failedSaveLeavesAll() {
#ifdef Q_OS_UNIX
    QFETCH(bool, fullDisk);
    QVERIFY(QDir().mkpath(file(u"folder"_s)));
    const QString path = written(u"folder/old.sql"_s, "old\r\n");
    Desk desk;
    desk.start();
    open(desk, path);
    desk.query()->txtSQL->setSelText(u"a longer text than the disk takes "_s);
    desk.dialogs.expect(u"frmError"_s, [&](QDialog& report) {
        QVERIFY(report.findChild<QLineEdit*>(u"txtSource"_s)
                    ->text()
                    .endsWith(u"..MDIMain.Save_File"_s));
        report.reject();
    });
    if (fullDisk) {
        const FileSizeLimit full(8);
        desk.entry("mnuFileSave")->trigger();
        QCOMPARE(contentOf(path), "old\r\n"_ba);
    } else {
        QVERIFY(QDir(file(u"folder"_s)).removeRecursively());
        desk.entry("mnuFileSave")->trigger();
    }
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(desk.query()->FileName(), path);
    QVERIFY(desk.query()->UnSavedChanges());
    desk.query()->setUnSavedChanges(false);
#endif
}

void tst_query_files::droppedFilesOpen() {
    const QString first = written(u"first.sql"_s, "one\r\n");
    const QString second = written(u"sécond ü.sql"_s, "two\r\n");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(first), QUrl::fromLocalFile(second)});
    data.setText(first + u'\n' + second); // as file managers do
    Desk desk;
    desk.start();
    QStringList captions{u"1 Query - Untitled"_s};
    desk.window.New_Query();
    QWidget* const targets[] = {&desk.window, desk.query()->txtSQL->viewport(),
                                desk.control<QWidget>("grdResults"),
                                desk.control<QWidget>("txtMaxRecords"), desk.area()->viewport()};
    for (QWidget* target : targets) {
        QVERIFY2(drop(target, data), qPrintable(target->objectName()));
        captions << u"Query - "_s + first << u"Query - "_s + second;
        QTRY_COMPARE(desk.captions(), captions);
        QCOMPARE(desk.query()->txtSQL->Text(), u"two"_s);
    }
    QVERIFY(!qobject_cast<frmQuery*>(desk.area()->subWindowList().constFirst()->widget())
                 ->UnSavedChanges());
}

// The main window gets the focus back later than the file is opened.
void tst_query_files::openedFromElsewhereHasItsFrame() {
    const QString path = written(u"first.sql"_s, "one\r\n");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    Desk desk;
    desk.start();
    desk.window.New_Query();
    QWidget fileManager;
    fileManager.show();
    fileManager.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&fileManager));
    QVERIFY(drop(&desk.window, data));
    QTRY_COMPARE(desk.captions().size(), 2);
    desk.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&desk.window));
    QCoreApplication::processEvents();
    const QMdiSubWindow* opened = desk.area()->subWindowList().constLast();
    QVERIFY(!opened->isMaximized());
    QVERIFY(opened->contentsMargins().top() > 10); // the title
    QVERIFY(desk.query()->txtSQL->hasFocus());
}

void tst_query_files::droppedTextIsNoFile() {
    Desk desk;
    desk.start();
    desk.window.New_Query();
    QMimeData text;
    text.setText(u"dragged"_s);
    QVERIFY(!drop(&desk.window, text));
    QVERIFY(drop(desk.query()->txtSQL->viewport(), text));
    QVERIFY(desk.query()->txtSQL->Text().contains(u"dragged"_s));
    desk.query()->setUnSavedChanges(false);
    QMimeData page;
    page.setUrls({QUrl(u"https://example.org/a.sql"_s)});
    QVERIFY(!drop(&desk.window, page));
}

void tst_query_files::saveAllIsAMessage() {
    Desk desk;
    desk.start();
    desk.window.New_Query()->txtSQL->setSelText(u"changed"_s);
    QString told;
    expectMessage(desk, told);
    desk.entry("mnuFileSaveAll")->trigger();
    QCOMPARE(told, u"Save All Code goes here!"_s);
    QVERIFY(desk.query()->UnSavedChanges());
    desk.query()->setUnSavedChanges(false);
    QCOMPARE(desk.dialogs.problems(), QStringList());
}

QTEST_MAIN(tst_query_files)
#include "tst_query_files.moc"
