#include "Desk.h"
#include "EditorRules.h"
#include "FlexGrid.h"
#include "ScriptedServer.h"
#include "TabStrip.h"
#include "TextView.h"

#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

// A person's session from the login dialog to Exit, on the sample database.
class tst_session : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cancelledLoginChangesNothing();
    void failedLoginIsToldAndLeavesTheMenus();
    void prefillIsShownAndThePasswordMasked();
    void logOnOpensTheFirstQuery();
    void refusedPlanTableIsReportedOnly();
    void disconnectAndConnectAgain();
    void errorInTheMiddleOfABatch();
    void outputsGoWhereTheyAreSent();
    void limitHoldsAndIsShown();
    void closedNumbersAreNotUsedAgain();
    void noToAllSilencesTheRest();
    void cancelKeepsTheProgramOpen();
    void questionsDifferByTheWayOfClosing();
    void failedSaveKeepsTheWindow();
    void yesSavesTheWindowThatIsClosed();
    void editCommandsOnTheEditor();
    void editCommandsOnResults();
    void printingRefusesAGrid();
    void printsWhatHasTheFocus();
    void arrangingMovesTheWindows();
    void windowMenuListsTheWindows();
    void outputMenuFollowsTheWindow();
    void commandsWithoutAWindowDoNothing();
    void traceWindowShowsWhatIsSent();

private:
    QTemporaryDir m_home;
};

void tst_session::initTestCase() {
    QVERIFY(m_home.isValid());
    qputenv("QUILLMATE_HOME", m_home.path().toLocal8Bit());
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void tst_session::cancelledLoginChangesNothing() {
    Desk desk;
    desk.start();
    for (const bool byEscape : {true, false}) {
        desk.dialogs.expect(u"frmLogin"_s, [byEscape](QDialog& login) {
            login.findChild<QLineEdit*>(u"txtUserId"_s)->setText(u"demo"_s);
            if (byEscape)
                QTest::keyClick(&login, Qt::Key_Escape);
            else
                login.close();
        });
        desk.window.perform(UserCommand::Connect);
    }
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QVERIFY(!desk.window.Connected());
    QCOMPARE(desk.status(1) + desk.status(2) + desk.status(3), QString());
    QCOMPARE(desk.window.UserID(), QString());
}

void tst_session::failedLoginIsToldAndLeavesTheMenus() {
    Desk desk;
    desk.startOnDemo();
    desk.expectLogin(u"demo"_s, u"wrong"_s, u"DEMO"_s);
    QString told;
    desk.dialogs.expect(u"msgBox"_s, [&](QDialog& box) {
        told = dynamic_cast<QMessageBox&>(box).text();
        box.accept();
    });
    desk.window.perform(UserCommand::Connect);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(told, u"Database connection problem encountered.  Please review your SQLNet/Net8 "
                   "service name and login credentials."_s);
    QVERIFY(!desk.window.Connected());
    QCOMPARE(desk.status(2) + desk.status(3), QString());
    QVERIFY(desk.entry("mnuFileDisconnect")->isEnabled());
    QCOMPARE(desk.captions().size(), 1);
    desk.window.close();
}

void tst_session::prefillIsShownAndThePasswordMasked() {
    Desk desk;
    desk.start();
    desk.window.setLoginPrefill({u"ann"_s, u"a long password"_s, u"ORCL"_s});
    desk.dialogs.expect(u"frmLogin"_s, [](QDialog& login) {
        const auto field = [&](const QString& name) { return login.findChild<QLineEdit*>(name); };
        QCOMPARE(login.windowTitle(), u"Quillmate Database Login"_s);
        QCOMPARE(field(u"txtUserId"_s)->text(), u"ann"_s);
        QCOMPARE(field(u"txtServiceName"_s)->text(), u"ORCL"_s);
        QCOMPARE(field(u"txtPassword"_s)->text(), u"a long password"_s);
        QVERIFY(!field(u"txtPassword"_s)->displayText().contains(u'a'));
        QVERIFY(QTest::qWaitForWindowActive(&login));
        QTRY_VERIFY(field(u"txtUserId"_s)->hasFocus());
        QCOMPARE(field(u"txtUserId"_s)->selectedText(), u"ann"_s);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QTRY_VERIFY(field(u"txtPassword"_s)->hasFocus());
        QTest::keyClick(&login, Qt::Key_Escape);
    });
    desk.window.perform(UserCommand::Connect);
    QCOMPARE(desk.dialogs.problems(), QStringList());
}

void tst_session::logOnOpensTheFirstQuery() {
    Desk desk;
    desk.startOnDemo();
    QCOMPARE(desk.status(1), QSysInfo::machineHostName().left(32));
    QCOMPARE(desk.status(2), u"DEMO"_s);
    QCOMPARE(desk.status(3), u"demo"_s);
    QVERIFY(!desk.entry("mnuFileConnect")->isEnabled());
    QVERIFY(desk.entry("mnuFileDisconnect")->isEnabled());
    QCOMPARE(desk.captions(), QStringList(u"1 Query - Untitled"_s));
    QVERIFY(desk.area()->currentSubWindow()->isMaximized());
    QTRY_VERIFY(desk.query()->txtSQL->hasFocus());
    QVERIFY(!desk.query()->UnSavedChanges());
    QCOMPARE(desk.database.Get_Recordset(u"SELECT COUNT(*) N FROM PLAN_TABLE"_s, 0)->text(u"N"),
             u"0"_s);
}

void tst_session::refusedPlanTableIsReportedOnly() {
    QStringList log;
    ScriptedServer server(log); // knows no statement
    Desk desk([&] { return server.connection(); });
    desk.start();
    desk.expectLogin(u"ann"_s, u"pw"_s, u"ORCL"_s);
    QString trail;
    desk.dialogs.expect(u"frmError"_s, [&](QDialog& report) {
        trail = report.findChild<QLineEdit*>(u"txtSource"_s)->text();
        report.reject();
    });
    desk.window.perform(UserCommand::Connect);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(trail, u"server..MDIMain.Create_Plan_Table..MDIMain.mnuFileConnect_Click"_s);
    QVERIFY(desk.window.Connected());
    QCOMPARE(desk.captions(), QStringList(u"1 Query - Untitled"_s));
}

void tst_session::disconnectAndConnectAgain() {
    Desk desk;
    desk.startOnDemo();
    desk.window.perform(UserCommand::Disconnect);
    QVERIFY(!desk.window.Connected());
    QCOMPARE(desk.status(2), u"DISCONNECTED"_s);
    QCOMPARE(desk.status(3), QString());
    QVERIFY(desk.entry("mnuFileConnect")->isEnabled());
    QVERIFY(!desk.entry("mnuFileDisconnect")->isEnabled());

    desk.query()->txtSQL->setText(u"SELECT 1 FROM DUAL"_s);
    desk.window.perform(UserCommand::Execute);
    QCOMPARE(desk.control<TabStrip>("TabStrip1")->selectedKey(), u"messages"_s);
    desk.query()->setUnSavedChanges(false);

    desk.expectLogin(u"demo"_s, u"demo"_s, u"DEMO"_s);
    desk.window.perform(UserCommand::Connect);
    QVERIFY(desk.window.Connected());
    QCOMPARE(desk.captions(), QStringList({u"1 Query - Untitled"_s, u"2 Query - Untitled"_s}));
}

void tst_session::errorInTheMiddleOfABatch() {
    Desk desk;
    desk.startOnDemo();
    QTest::keyClicks(desk.query()->txtSQL, u"select 1 AS A from dual; select * from no_such; "
                                           "select 2 AS B from dual;"_s);
    QTest::keyClick(desk.query()->txtSQL, Qt::Key_F5);
    QCOMPARE(desk.control<TabStrip>("TabStrip1")->selectedKey(), u"messages"_s);
    QVERIFY(desk.control<TextView>("txtMessage")->isVisible());
    QVERIFY(!desk.control<FlexGrid>("grdResults")->isVisible());
    QCOMPARE(desk.control<TextView>("txtMessage")->Text(),
             u"\r\nQuery Complete.\r\nORA-00942: table or view does not exist"
             "    (SELECT * FROM no_such...)\r\nQuery Complete."_s);
    QCOMPARE(desk.control<StatusPanels>("StatusBar1")->text(1),
             u"Query batch complete with errors."_s);
    const GridData& grid = desk.query()->resultGrid();
    QCOMPARE(grid.text(0, 1) + '/' + grid.text(1, 1), QByteArray("B/2"));
    desk.query()->setUnSavedChanges(false);
}

void tst_session::outputsGoWhereTheyAreSent() {
    Desk desk;
    desk.startOnDemo();
    desk.query()->txtSQL->setText(u"select 1 AS A, 'x' AS B from dual"_s);
    QTest::keyClick(desk.query(), Qt::Key_T, Qt::ControlModifier);
    desk.window.perform(UserCommand::Execute);
    QVERIFY(desk.control<TextView>("txtResults")->isVisible());
    QCOMPARE(desk.control<TextView>("txtResults")->Text(), u"A,B\r\n1,x\r\n"_s);

    const QString path = m_home.filePath(u"out.txt"_s);
    desk.control<QComboBox>("cboResults")->setCurrentText(OutputMode::File);
    QCOMPARE(desk.control<TextView>("txtResults")->Text(), QString()); // the mode's change resets
    desk.dialogs.expect(u"dlgFile"_s, [path](QDialog& dialog) {
        QCOMPARE(dynamic_cast<QFileDialog&>(dialog).nameFilters().constLast(), u"All Files (*)"_s);
        dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(path);
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    desk.window.perform(UserCommand::Execute);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("A,B\r\n1,x\r\n"));

    desk.window.perform(UserCommand::ResultsInGrid);
    desk.window.perform(UserCommand::Execute);
    QVERIFY(desk.control<FlexGrid>("grdResults")->isVisible());
    QCOMPARE(desk.query()->resultGrid().text(1, 2), QByteArray("x"));
    desk.query()->setUnSavedChanges(false);
}

void tst_session::limitHoldsAndIsShown() {
    Desk desk;
    desk.startOnDemo();
    auto* limit = desk.control<QLineEdit>("txtMaxRecords");
    limit->clear();
    QTest::keyClicks(limit, u"1x0"_s);
    QCOMPARE(desk.control<StatusPanels>("StatusBar1")->text(3), u"10 Record Restriction  "_s);
    desk.query()->txtSQL->setText(u"select * from order_lines"_s);
    desk.window.perform(UserCommand::Execute);
    QCOMPARE(desk.query()->resultGrid().Rows(), qsizetype(11));
    QCOMPARE(desk.control<StatusPanels>("StatusBar1")->text(2), u"10 rows"_s);
    desk.query()->setUnSavedChanges(false);
}

void tst_session::closedNumbersAreNotUsedAgain() {
    Desk desk;
    desk.start();
    desk.window.perform(UserCommand::NewQuery);
    QVERIFY(desk.area()->currentSubWindow()->isMaximized());
    desk.window.perform(UserCommand::NewQuery);
    const QMdiSubWindow* second = desk.area()->currentSubWindow();
    QVERIFY(!second->isMaximized());
    QCoreApplication::processEvents();
    QVERIFY(desk.query()->txtSQL->hasFocus());
    QVERIFY(second->width() > desk.area()->width() / 2);
    QVERIFY(desk.area()->viewport()->rect().contains(second->geometry()));
    desk.window.perform(UserCommand::CloseQuery);
    desk.window.perform(UserCommand::CloseQuery);
    QTRY_COMPARE(desk.captions(), QStringList());
    desk.window.perform(UserCommand::NewQuery);
    QCOMPARE(desk.captions(), QStringList(u"3 Query - Untitled"_s));
    QVERIFY(!desk.area()->currentSubWindow()->isMaximized());
    QCOMPARE(desk.dialogs.problems(), QStringList());
}

void tst_session::noToAllSilencesTheRest() {
    Desk desk;
    desk.startOnDemo();
    for (int i = 0; i < 3; ++i)
        desk.window.New_Query()->txtSQL->setSelText(u"changed"_s);
    desk.expectClick(u"frmSavePrompt"_s, u"cmdNoToAll"_s);
    QVERIFY(desk.window.close());
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QVERIFY(!desk.window.Connected());
    QVERIFY(!desk.window.NoToAll());
}

void tst_session::cancelKeepsTheProgramOpen() {
    Desk desk;
    desk.startOnDemo();
    for (int i = 0; i < 2; ++i)
        desk.window.New_Query()->txtSQL->setSelText(u"changed"_s);
    desk.expectClick(u"frmSavePrompt"_s, u"cmdNo"_s);
    desk.dialogs.expect(u"frmSavePrompt"_s,
                        [](QDialog& prompt) { QTest::keyClick(&prompt, Qt::Key_Escape); });
    QVERIFY(!desk.window.close());
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QVERIFY(desk.window.isVisible() && desk.window.Connected());
    QTRY_COMPARE(desk.captions(), QStringList(u"3 Query - Untitled"_s));
    QVERIFY(desk.query()->UnSavedChanges());
    desk.query()->setUnSavedChanges(false);
}

void tst_session::questionsDifferByTheWayOfClosing() {
    Desk desk;
    desk.start();
    desk.window.New_Query()->txtSQL->setSelText(u"changed"_s);
    QStringList asked;
    desk.dialogs.expect(u"msgBox"_s, [&](QDialog& box) {
        asked << dynamic_cast<QMessageBox&>(box).text();
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    QVERIFY(!desk.area()->currentSubWindow()->close());
    desk.dialogs.expect(u"frmSavePrompt"_s, [&](QDialog& prompt) {
        asked << prompt.findChild<QLabel*>(u"lblMessage"_s)->text();
        prompt.close();
    });
    desk.window.perform(UserCommand::CloseQuery);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(asked, QStringList({u"The query '1 Query - Untitled' has unsaved changes.\r\n"
                                 "Do you wish to save the changes ?"_s,
                                 u"The query '1 Query - Untitled' has unsaved changes.  "_s}));
    QCOMPARE(desk.captions().size(), 1);
    desk.query()->setUnSavedChanges(false);
}

void tst_session::failedSaveKeepsTheWindow() {
    Desk desk;
    desk.start();
    frmQuery* query = desk.window.New_Query();
    query->setFileName(m_home.filePath(u"no such folder/a.sql"_s));
    query->txtSQL->setSelText(u"changed"_s);
    QString trail;
    desk.expectClick(u"frmSavePrompt"_s, u"cmdYes"_s);
    desk.dialogs.expect(u"frmError"_s, [&](QDialog& report) {
        trail = report.findChild<QLineEdit*>(u"txtSource"_s)->text();
        QTest::keyClick(&report, Qt::Key_Return);
    });
    desk.window.perform(UserCommand::CloseQuery);
    // A dialog for the name that is cancelled keeps it too.
    query->setFileName(QString());
    desk.expectClick(u"frmSavePrompt"_s, u"cmdYes"_s);
    desk.dialogs.expect(u"dlgFile"_s, [](QDialog& dialog) { dialog.reject(); });
    desk.window.perform(UserCommand::CloseQuery);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QVERIFY2(trail.endsWith(u"..MDIMain.Save_File"_s), qPrintable(trail));
    QCOMPARE(desk.captions().size(), 1);
    QVERIFY(query->UnSavedChanges());
    query->setUnSavedChanges(false);
}

void tst_session::yesSavesTheWindowThatIsClosed() {
    Desk desk;
    desk.start();
    const QString path = m_home.filePath(u"kept.sql"_s);
    frmQuery* first = desk.window.New_Query();
    first->setFileName(path);
    first->txtSQL->setText(u"select 'ä' from dual"_s);
    frmQuery* second = desk.window.New_Query();
    second->txtSQL->setText(u"not this one"_s);
    second->setUnSavedChanges(false);
    QCOMPARE(first->Caption(), u"Query - "_s + path);
    desk.expectClick(u"frmSavePrompt"_s, u"cmdYes"_s);
    QVERIFY(desk.window.close());
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("SELECT 'ä' FROM dual\r\n"));
}

void tst_session::editCommandsOnTheEditor() {
    Desk desk;
    desk.start();
    frmQuery* query = desk.window.New_Query();
    query->txtSQL->setText(u"one two"_s);
    query->txtSQL->setFocus();
    query->txtSQL->setSelStart(0);
    query->txtSQL->setSelLength(4);
    desk.window.perform(UserCommand::Cut);
    QCOMPARE(query->txtSQL->Text(), u"two"_s);
    QCOMPARE(desk.host.clipboardText(), u"one "_s);
    desk.window.perform(UserCommand::SelectAll);
    QCOMPARE(query->txtSQL->SelLength(), 3);
    desk.window.perform(UserCommand::Paste);
    QCOMPARE(query->txtSQL->Text(), u"one "_s);
    desk.window.perform(UserCommand::ClearWindow);
    QCOMPARE(query->txtSQL->Text(), emptyScript());
    desk.window.Undo();
    QCOMPARE(query->txtSQL->Text(), u"one "_s);
    query->setUnSavedChanges(false);
}

void tst_session::editCommandsOnResults() {
    Desk desk;
    desk.startOnDemo();
    desk.query()->txtSQL->setText(
        u"select 1 a, 2 b from dual union all select 3, null from dual"_s);
    desk.window.perform(UserCommand::Execute);
    desk.control<FlexGrid>("grdResults")->setFocus();
    desk.window.perform(UserCommand::SelectAll);
    for (const UserCommand command : {UserCommand::Copy, UserCommand::Cut, UserCommand::Paste}) {
        desk.window.perform(command);
        QCOMPARE(QString(desk.host.clipboardText()).remove(u'\r'), u"1\t2\n3\t"_s);
        QCOMPARE(desk.query()->resultGrid().text(1, 2), QByteArray("2"));
    }
    auto* limit = desk.control<QLineEdit>("txtMaxRecords");
    limit->setFocus();
    desk.host.setClipboardText(u"abc"_s);
    desk.window.perform(UserCommand::Paste);
    QCOMPARE(limit->text(), u"0"_s);
    desk.query()->setUnSavedChanges(false);
}

void tst_session::printingRefusesAGrid() {
    Desk desk;
    desk.start();
    desk.window.New_Query();
    desk.control<FlexGrid>("grdResults")->setFocus();
    QString told;
    desk.dialogs.expect(u"msgBox"_s, [&](QDialog& box) {
        told = dynamic_cast<QMessageBox&>(box).text();
        box.accept();
    });
    desk.window.perform(UserCommand::Print);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(told, u"Please change output to CSV to print results."_s);
}

void tst_session::printsWhatHasTheFocus() {
    Desk desk;
    desk.start();
    desk.window.New_Query();
    const QString path = m_home.filePath(u"printed.pdf"_s);
    // Gives the number of pages, and whether the dialog offered the selection.
    const auto print = [&](bool* offersSelection) {
        desk.dialogs.expect(u"dlgPrint"_s, [=](QDialog& dialog) {
            auto& printing = dynamic_cast<QPrintDialog&>(dialog);
            *offersSelection = printing.testOption(QAbstractPrintDialog::PrintSelection);
            printing.printer()->setOutputFileName(path);
            printing.done(QDialog::Accepted);
        });
        desk.entry("mnuFilePrint")->trigger();
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll().count("/Type /Page\n") : -1;
    };
    bool offersSelection = true;
    desk.query()->txtSQL->setText(u"a line\n"_s.repeated(300));
    QVERIFY(print(&offersSelection) > 1);
    QVERIFY(!offersSelection);
    desk.query()->txtSQL->setSelStart(0);
    desk.query()->txtSQL->setSelLength(10);
    QCOMPARE(print(&offersSelection), 1);
    QVERIFY(offersSelection);
    desk.query()->chooseOutputMode(OutputMode::Text);
    desk.query()->setResultText("a,b\r\n1,2\r\n");
    desk.control<TextView>("txtResults")->setFocus();
    QCOMPARE(print(&offersSelection), 1);
    QVERIFY(!offersSelection);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    desk.query()->setUnSavedChanges(false);
}

void tst_session::arrangingMovesTheWindows() {
    Desk desk;
    desk.start();
    for (int i = 0; i < 3; ++i)
        desk.window.New_Query();
    const QList<QMdiSubWindow*> windows = desk.area()->subWindowList();
    windows[2]->showMinimized();
    const QSize room = desk.area()->viewport()->size();
    desk.window.perform(UserCommand::TileVertical);
    QVERIFY(windows[2]->isMinimized());
    QCOMPARE(windows[0]->geometry().right() + 1, windows[1]->geometry().left());
    QCOMPARE(windows[0]->y(), windows[1]->y());
    QCOMPARE(windows[1]->geometry().right() + 1, room.width());
    desk.window.perform(UserCommand::TileHorizontal);
    QCOMPARE(windows[0]->geometry().bottom() + 1, windows[1]->geometry().top());
    QCOMPARE(windows[0]->width(), room.width());
    QVERIFY(windows[1]->geometry().bottom() < room.height()); // the minimised one stays in sight
    desk.window.perform(UserCommand::Cascade);
    QVERIFY(windows[1]->x() > windows[0]->x() && windows[1]->y() > windows[0]->y());
    QVERIFY(windows[2]->isMinimized());
}

void tst_session::windowMenuListsTheWindows() {
    Desk desk;
    desk.start();
    desk.window.New_Query();
    frmQuery* second = desk.window.New_Query();
    second->setCaption(u"R&D"_s);
    auto* menu = desk.window.findChild<QMenu*>(u"mnuWindow"_s);
    for (int i = 0; i < 2; ++i) { // twice: a second opening must not list them again
        menu->popup({});
        menu->hide();
    }
    QStringList listed;
    for (const QAction* action : menu->actions().mid(4))
        listed << action->text() + (action->isChecked() ? u" *"_s : QString());
    QCOMPARE(listed, QStringList({QString(), u"&1 1 Query - Untitled"_s, u"&2 R&&D *"_s}));
    menu->actions().at(5)->trigger();
    QCOMPARE(desk.query()->Caption(), u"1 Query - Untitled"_s);
}

void tst_session::outputMenuFollowsTheWindow() {
    Desk desk;
    desk.start();
    const auto ticks = [&] {
        return QStringList{desk.entry("mnuQueryRGrid")->isChecked() ? u"grid"_s : u"-"_s,
                           desk.entry("mnuQueryRText")->isChecked() ? u"text"_s : u"-"_s,
                           desk.entry("mnuQueryRFile")->isChecked() ? u"file"_s : u"-"_s}
            .join(u' ');
    };
    desk.window.New_Query();
    QCOMPARE(ticks(), u"grid - -"_s);
    desk.entry("mnuQueryRFile")->trigger();
    QCOMPARE(ticks(), u"- - file"_s);
    desk.entry("mnuQueryRFile")->trigger(); // choosing it again must not untick it
    QCOMPARE(ticks(), u"- - file"_s);
    desk.window.New_Query();
    QCOMPARE(ticks(), u"grid - -"_s);
    desk.area()->setActiveSubWindow(desk.area()->subWindowList().constFirst());
    QCOMPARE(ticks(), u"- - file"_s);
}

void tst_session::commandsWithoutAWindowDoNothing() {
    Desk desk;
    desk.start();
    using enum UserCommand;
    // Only commands of a window; the others have an answer of their own.
    for (const UserCommand command :
         {CloseQuery, Save, SaveAs, UserCommand::Print, Cut, Copy, Paste, SelectAll, ClearWindow,
          Execute, ResultsInGrid, ResultsInText, ResultsInFile, GenerateCode, OpenFavourite,
          Cascade, TileHorizontal, TileVertical, ToolbarUndo})
        desk.window.perform(command);
    desk.entry("mnuQueryRText")->trigger();
    QVERIFY(!desk.entry("mnuQueryRText")->isChecked());
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QVERIFY(!desk.window.Save_File(false));
}

void tst_session::traceWindowShowsWhatIsSent() {
    Desk desk;
    desk.startOnDemo();
    QTest::keyClick(desk.query()->txtSQL, Qt::Key_F8, Qt::ControlModifier | Qt::ShiftModifier);
    QWidget* shown = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->objectName() == u"frmTrace"_s)
            shown = window;
    }
    QVERIFY(shown && shown->isVisible());
    QCOMPARE(shown->windowTitle(), u"Trace Log"_s);
    auto* log = shown->findChild<QPlainTextEdit*>();
    QVERIFY(log->toPlainText().contains(u"CREATE TABLE PLAN_TABLE ("_s));
    desk.database.Get_Recordset(u"SELECT 1 FROM DUAL"_s, 0);
    QTRY_VERIFY(log->toPlainText().startsWith(u"<SUCCESS>\n\nSELECT 1 FROM DUAL\n\n"_s));
    QVERIFY(desk.window.close());
    QVERIFY(!shown->isVisible());
}

QTEST_MAIN(tst_session)
#include "tst_session.moc"
