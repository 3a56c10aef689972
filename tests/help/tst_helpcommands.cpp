#include "Desk.h"
#include "FlexGrid.h"
#include "HelpBook.h"
#include "HelpPages.h"
#include "frmHelp.h"

#include <QMessageBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextBrowser>

using namespace Qt::StringLiterals;

// Help as the whole program offers it: from the menu, and by F1 from wherever the focus is.
class tst_helpcommands : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void menuOpensContentsAndSearch();
    void f1ShowsThePageOfTheFocus();
    void f1InADialogCanBeUsed();
    void exitClosesTheHelp();
    void missingAndDamagedFileAreSaid();
    void everyWindowHasItsPage();

private:
    static frmHelp* shown() {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget* window : windows) {
            auto* help = qobject_cast<frmHelp*>(window);
            if (help && help->isVisible())
                return help;
        }
        return nullptr;
    }
    static QString page() {
        return shown() ? shown()->findChild<QTextBrowser*>()->source().path() : u"no help"_s;
    }
    QString file() const { return m_home.filePath(u"Help/TWX.CHM"_s); }

    QTemporaryDir m_home;
};

void tst_helpcommands::initTestCase() {
    qputenv("QUILLMATE_HOME", m_home.path().toLocal8Bit());
    QVERIFY(QDir(m_home.path()).mkpath(u"Help"_s));
}

void tst_helpcommands::init() {
    QFile::remove(file());
    QVERIFY(QFile::copy(QString::fromLatin1(HELP_FILE), file()));
}

void tst_helpcommands::menuOpensContentsAndSearch() {
    Desk desk;
    desk.start();
    desk.entry("mnuHelpContents")->trigger();
    QVERIFY(shown());
    QCOMPARE(page(), u"/index.htm"_s);
    auto* tabs = shown()->findChild<QTabWidget*>();
    QCOMPARE(tabs->currentIndex(), 0);
    const frmHelp* first = shown();
    desk.entry("mnuHelpSearch")->trigger();
    QCOMPARE(shown(), first); // one window, however often it is asked for
    QCOMPARE(tabs->currentIndex(), 2);
    QCOMPARE(desk.dialogs.problems(), QStringList());
}

void tst_helpcommands::f1ShowsThePageOfTheFocus() {
    Desk desk;
    desk.start();
    frmQuery* query = desk.window.New_Query();
    QTest::keyClick(query->txtSQL, Qt::Key_F1);
    QCOMPARE(page(), u"/editor.htm"_s);
    QTest::keyClick(desk.control<FlexGrid>("grdResults"), Qt::Key_F1);
    QCOMPARE(page(), u"/results.htm"_s);
    QTest::keyClick(&desk.window, Qt::Key_F1);
    QCOMPARE(page(), u"/mainwindow.htm"_s);
    QTest::keyClick(query->txtSQL, Qt::Key_F1, Qt::ControlModifier);
    QCOMPARE(page(), u"/mainwindow.htm"_s);
    QTest::keyClick(shown(), Qt::Key_F1);
    QCOMPARE(page(), u"/help.htm"_s);
    QVERIFY(!query->UnSavedChanges());
}

void tst_helpcommands::f1InADialogCanBeUsed() {
    Desk desk;
    desk.start();
    QString seen;
    bool takesInput = false;
    desk.dialogs.expect(u"frmOptions"_s, [&](QDialog& form) {
        QTest::keyClick(&form, Qt::Key_F1);
        seen = page();
        takesInput = shown() && QTest::qWaitForWindowActive(shown());
        form.reject();
    });
    desk.entry("mnuViewOptions")->trigger();
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(seen, u"/options.htm"_s);
    QVERIFY(takesInput);
    desk.entry("mnuHelpContents")->trigger();
    QCOMPARE(page(), u"/index.htm"_s);
}

void tst_helpcommands::exitClosesTheHelp() {
    Desk desk;
    desk.start();
    desk.entry("mnuHelpContents")->trigger();
    QVERIFY(shown());
    desk.window.perform(UserCommand::Exit);
    QVERIFY(!shown());
}

void tst_helpcommands::missingAndDamagedFileAreSaid() {
    Desk desk;
    desk.start();
    QStringList told;
    const auto expectMessage = [&] {
        desk.dialogs.expect(u"msgBox"_s, [&](QDialog& box) {
            told << dynamic_cast<QMessageBox&>(box).text();
            box.accept();
        });
    };
    QFile damaged(file());
    QVERIFY(damaged.resize(3000));
    expectMessage();
    desk.entry("mnuHelpContents")->trigger();
    // What is installed beside the program takes the place of a file that is missing here.
    QVERIFY(damaged.remove());
    desk.entry("mnuHelpSearch")->trigger();
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(told, QStringList(u"The help file '%1' is damaged and cannot be read."_s.arg(file())));
    QVERIFY(shown());
}

void tst_helpcommands::everyWindowHasItsPage() {
    const std::unique_ptr<HelpBook> book = HelpBook::open(QString::fromLatin1(HELP_FILE));
    QVERIFY(book);
    for (const char* name :
         {"MDIMain",       "frmQuery",      "frmLogin",   "frmOptions",    "frmFavorites",
          "frmSavePrompt", "frmDevExtract", "frmTrace",   "frmError",      "frmAbout",
          "frmHelp",       "txtSQL",        "grdResults", "txtResults",    "txtMessage",
          "lvwStats",      "grdEP",         "trvObjects", "trvDictionary", "trvQueries"}) {
        QWidget window;
        window.setObjectName(QString::fromLatin1(name));
        QWidget inner(&window);
        QVERIFY2(!book->file(helpPageOf(&inner)).isEmpty(), name);
    }
    QCOMPARE(helpPageOf(nullptr), QString());
}

QTEST_MAIN(tst_helpcommands)
#include "tst_helpcommands.moc"
