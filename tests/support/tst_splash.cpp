#include "FormParts.h"
#include "Version.h"
#include "VersionText.h"
#include "frmAbout.h"
#include "frmSplash.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_splash : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void versionHasThreeParts();
    void timerShowsTheProgramOnce();
    void keyEndsTheWaiting();
    void aboutTellsTheVersion();
    void formsFitTheScreen();
    void longTextsAreWrapped();
};

void tst_splash::versionHasThreeParts() {
    QCOMPARE(versionText(), u"Version "_s + QLatin1StringView(QUILLMATE_VERSION));
    QCOMPARE(versionText().count(u'.'), 2);
}

void tst_splash::timerShowsTheProgramOnce() {
    frmSplash splash;
    bool wasSeen = false;
    connect(&splash, &frmSplash::Timer, &splash, [&] { wasSeen = splash.isVisible(); });
    const QSignalSpy fired(&splash, &frmSplash::Timer);
    splash.show();
    QCOMPARE(splash.findChild<QLabel*>(u"lblVersion"_s)->text(), versionText());
    QTRY_VERIFY(!splash.isVisible());
    QVERIFY(wasSeen); // the main window is there before the splash goes
    QTest::qWait(250);
    QCOMPARE(fired.size(), 1);
}

void tst_splash::keyEndsTheWaiting() {
    frmSplash splash;
    const QSignalSpy fired(&splash, &frmSplash::Timer);
    splash.show();
    QTest::keyClick(&splash, Qt::Key_Space);
    QVERIFY(!splash.isVisible());
    QTest::qWait(250);
    QCOMPARE(fired.size(), 1);
}

void tst_splash::aboutTellsTheVersion() {
    frmAbout about;
    about.show();
    QCOMPARE(about.windowTitle(), u"About Quillmate"_s);
    QCOMPARE(about.findChild<QLabel*>(u"lblVersion"_s)->text(), versionText());
    QVERIFY(!about.findChild<QLabel*>(u"lblCopyright"_s)->text().isEmpty());
    QTest::keyClick(&about, Qt::Key_Return);
    QVERIFY(!about.isVisible());
}

void tst_splash::formsFitTheScreen() {
    QWidget small;
    small.resize(300, 201);
    Centre_Form(small);
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    QCOMPARE(small.size(), QSize(300, 201));
    QCOMPARE(small.pos(), QPoint((screen.width() - 300) / 2, (screen.height() - 201) / 2));

    QWidget large;
    large.resize(screen.size() * 2);
    Centre_Form(large);
    QVERIFY(screen.contains(large.geometry()));
    QVERIFY(large.y() > 0); // room for its title
}

void tst_splash::longTextsAreWrapped() {
    QLabel shortText(u"The query 'a.sql' has unsaved changes."_s);
    QLabel path(u"The query '"_s + u"/folder of some length"_s.repeated(40) + u"'"_s);
    wrapWhenWide(shortText);
    wrapWhenWide(path);
    QVERIFY(!shortText.wordWrap());
    path.adjustSize();
    QVERIFY(path.width() < 800);
    QVERIFY(path.height() > 3 * shortText.sizeHint().height());
}

QTEST_MAIN(tst_splash)
#include "tst_splash.moc"
