#include "Desk.h"

#include <QCheckBox>
#include <QLabel>
#include <QTabBar>
#include <QTemporaryDir>
#include <QToolButton>

using namespace Qt::StringLiterals;

// The main window's own windows, and how it comes back at the next start.
class tst_windows : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init() { QFile::remove(m_home.filePath(u"Window.DAT"_s)); }
    void optionsReachNewWindows();
    void colouringReachesAnOpenWindowWhenActivated();
    void aboutOpens();
    void windowComesBackAsItWasLeft();
    void damagedPlaceIsHarmless();
    void panelGivesWayInASmallWindow();
    void everyWindowShowsTheProgramsIcon();
    void newWindowsTakeWhatIsTyped();

private:
    QTemporaryDir m_home;
};

void tst_windows::initTestCase() {
    qputenv("QUILLMATE_HOME", m_home.path().toLocal8Bit());
}

void tst_windows::optionsReachNewWindows() {
    Desk desk;
    desk.start();
    frmQuery* before = desk.window.New_Query();
    desk.dialogs.expect(u"frmOptions"_s, [](QDialog& form) {
        form.findChild<QLineEdit*>(u"txtMaxRecords"_s)->setText(u"7"_s);
        form.findChild<QLineEdit*>(u"txtDefaultText"_s)->setText(u"SELECT"_s);
        form.findChild<QCheckBox*>(u"chkShowPlan"_s)->setChecked(true);
        QTest::keyClick(&form, Qt::Key_Return);
    });
    desk.entry("mnuViewOptions")->trigger();
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(before->MaxRecords(), 0);
    frmQuery* after = desk.window.New_Query();
    QCOMPARE(after->MaxRecords(), 7);
    QVERIFY(after->showPlan() && !before->showPlan());
    QVERIFY(after->txtSQL->Text().startsWith(u"SELECT"_s));
}

void tst_windows::colouringReachesAnOpenWindowWhenActivated() {
    Desk desk;
    desk.start();
    frmQuery* open = desk.window.New_Query();
    open->txtSQL->setText(u"SELECT 1 FROM DUAL"_s);
    desk.window.New_Query();
    const auto colours = [&] {
        QTextCursor first(open->txtSQL->document());
        first.setPosition(1);
        return first.charFormat().foreground().color() != QColor(Qt::black) ||
               !open->txtSQL->document()->firstBlock().layout()->formats().isEmpty();
    };
    const auto activateAnew = [&] {
        desk.area()->setActiveSubWindow(desk.area()->subWindowList().constLast());
        desk.area()->setActiveSubWindow(desk.area()->subWindowList().constFirst());
    };
    activateAnew();
    QVERIFY(colours());
    desk.dialogs.expect(u"frmOptions"_s, [](QDialog& form) {
        form.findChild<QCheckBox*>(u"chkColourCode"_s)->setChecked(false);
        QTest::keyClick(&form, Qt::Key_Return);
    });
    desk.entry("mnuViewOptions")->trigger();
    QVERIFY(colours());
    activateAnew();
    QVERIFY(!colours());
    open->setUnSavedChanges(false);
}

void tst_windows::aboutOpens() {
    Desk desk;
    desk.start();
    QString version;
    desk.dialogs.expect(u"frmAbout"_s, [&](QDialog& about) {
        version = about.findChild<QLabel*>(u"lblVersion"_s)->text();
        about.accept();
    });
    desk.entry("mnuHelpAbout")->trigger();
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QVERIFY(version.startsWith(u"Version "_s));
}

void tst_windows::windowComesBackAsItWasLeft() {
    QRect left;
    int panel = 0;
    int splitterTop = 0;
    {
        Desk desk;
        desk.start();
        desk.window.setGeometry(40, 60, 610, 470);
        auto* bar = desk.window.findChild<QWidget*>(u"picVBar"_s);
        bar->setFocus();
        for (int i = 0; i < 5; ++i)
            QTest::keyClick(bar, Qt::Key_Right);
        panel = desk.window.findChild<QWidget*>(u"picLeft"_s)->width();
        desk.window.New_Query();
        auto* splitter = desk.control<QWidget>("imgSplitterVertical");
        splitter->setFocus();
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(splitter, Qt::Key_Down);
        splitterTop = splitter->y();
        left = desk.window.geometry();
        desk.window.perform(UserCommand::Exit);
        QVERIFY(!desk.window.isVisible());
    }
    QFile options(m_home.filePath(u"Options.DAT"_s));
    QVERIFY(options.open(QIODevice::ReadOnly));
    QCOMPARE(options.readAll().count("\r\n"), 6);
    Desk again;
    again.start();
    QCOMPARE(again.window.geometry(), left);
    QCOMPARE(again.window.findChild<QWidget*>(u"picLeft"_s)->width(), panel);
    again.window.New_Query();
    QCOMPARE(again.control<QWidget>("imgSplitterVertical")->y(), splitterTop);
    // The toolbar's button still brings the panel at its start width.
    auto* browser = again.window.findChild<QToolButton*>(u"Toolbar_browser"_s);
    browser->click();
    browser->click();
    QVERIFY(again.window.findChild<QWidget*>(u"picLeft"_s)->width() < panel);
}

void tst_windows::damagedPlaceIsHarmless() {
    QRect usual;
    {
        Desk desk;
        desk.start();
        usual = desk.window.geometry();
    }
    for (const QByteArray bytes :
         {"Left|90000\r\nTop|0\r\nWidth|500\r\nHeight|400\r\nPanelWidth|1\r\n",
          "Left|x\r\nWidth|500\r\nHeight|400\r\n", "\x01\x02"}) {
        QFile place(m_home.filePath(u"Window.DAT"_s));
        QVERIFY(place.open(QIODevice::WriteOnly));
        place.write(bytes);
        place.close();
        Desk desk;
        desk.start();
        QCOMPARE(desk.window.geometry(), usual);
        QCOMPARE(desk.dialogs.problems(), QStringList());
        QVERIFY(desk.window.findChild<QWidget*>(u"picLeft"_s)->width() > 100);
    }
}

void tst_windows::panelGivesWayInASmallWindow() {
    QFile place(m_home.filePath(u"Window.DAT"_s));
    QVERIFY(place.open(QIODevice::WriteOnly));
    place.write("Left|0\r\nTop|0\r\nWidth|600\r\nHeight|400\r\nPanelWidth|5000\r\n");
    place.close();
    Desk desk;
    desk.start();
    QVERIFY(desk.area()->width() >= 100);
}

void tst_windows::everyWindowShowsTheProgramsIcon() {
    Desk desk;
    desk.start();
    desk.window.New_Query();
    const QImage icon = QApplication::windowIcon().pixmap(32).toImage();
    QVERIFY(!icon.isNull());
    QCOMPARE(desk.window.windowIcon().pixmap(32).toImage(), icon);
    QCOMPARE(desk.area()->currentSubWindow()->windowIcon().pixmap(32).toImage(), icon);
    for (QToolButton* button :
         desk.window.findChildren<QToolButton*>(QRegularExpression(u"^Toolbar_"_s)))
        QVERIFY2(!button->icon().isNull(), qPrintable(button->objectName()));
}

void tst_windows::newWindowsTakeWhatIsTyped() {
    Desk desk;
    desk.start();
    for (int i = 0; i < 3; ++i) { // the first is maximised, which tells on the second
        const frmQuery* query = desk.window.New_Query();
        QTRY_COMPARE(QApplication::focusWidget(), query->txtSQL);
    }
}

QTEST_MAIN(tst_windows)
#include "tst_windows.moc"
