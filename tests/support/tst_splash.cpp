#include "Version.h"
#include "VersionText.h"
#include "frmAbout.h"
#include "frmSplash.h"

#include <QLabel>
#include <QPushButton>
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

QTEST_MAIN(tst_splash)
#include "tst_splash.moc"
