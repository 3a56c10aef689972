#include "frmDevExtract.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_DevExtract : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void itsTextCanBeSelectedAndCopied() {
        frmDevExtract form(u"Dim s As String \r\n\r\ns = \"x\""_s, nullptr);
        form.show();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        QVERIFY(form.txtCode->hasFocus());
        QTest::keyClicks(form.txtCode, u"typed"_s);
        QTest::keyClick(form.txtCode, Qt::Key_Home, Qt::ControlModifier);
        QTest::keyClick(form.txtCode, Qt::Key_Down, Qt::ShiftModifier);
        QTest::keyClick(form.txtCode, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"Dim s As String \n"_s);
        QCOMPARE(form.txtCode->toPlainText(), u"Dim s As String \n\ns = \"x\""_s);
    }

    void closes_data() {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("Escape") << true;
        QTest::newRow("button") << false;
    }
    void closes() {
        QFETCH(bool, byKey);
        frmDevExtract form(u"x"_s, nullptr);
        form.show();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        if (byKey)
            QTest::keyClick(form.focusWidget(), Qt::Key_Escape);
        else
            QTest::mouseClick(form.findChild<QPushButton*>(u"cmdClose"_s), Qt::LeftButton);
        QVERIFY(!form.isVisible());
    }
};

QTEST_MAIN(tst_DevExtract)
#include "tst_devextract.moc"
