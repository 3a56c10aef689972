#include "Options.h"
#include "RecordingHost.h"
#include "frmOptions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_frmoptions : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void okSavesEveryOption();
    void cancelLeavesEverything_data();
    void cancelLeavesEverything();
    void recordLimit_data();
    void recordLimit();
    void lettersAreSwallowed();
    void unknownOutputStays();
    void pastedLinesBecomeOne();
    void failedSaveKeepsTheDialog();
    void keyboardReachesEverything();

private:
    QString file() const { return m_folder->filePath(u"Options.DAT"_s); }
    QByteArray content() const {
        QFile options(file());
        return options.open(QIODevice::ReadOnly) ? options.readAll() : QByteArray("<none>");
    }
    static void changeEverything(const frmOptions& form) {
        form.findChild<QComboBox*>(u"cboResults"_s)->setCurrentIndex(1);
        for (const char* name : {"chkShowResults", "chkShowPlan", "chkColourCode"})
            form.findChild<QCheckBox*>(QString::fromLatin1(name))->toggle();
        form.findChild<QLineEdit*>(u"txtMaxRecords"_s)->setText(u"250"_s);
        form.findChild<QLineEdit*>(u"txtDefaultText"_s)->setText(u"SELECT 'ä|b' FROM "_s);
    }
    static void click(const frmOptions& form, const QString& button) {
        QTest::mouseClick(form.findChild<QPushButton*>(button), Qt::LeftButton);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    RecordingHost m_host;
};

void tst_frmoptions::init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_host.log.clear();
    Options() = OptionsRecord();
}

void tst_frmoptions::okSavesEveryOption() {
    frmOptions form(m_host, file());
    form.show();
    changeEverything(form);
    click(form, u"cmdOK"_s);
    QVERIFY(!form.Cancelled && !form.isVisible());
    QCOMPARE(content(), QByteArray("OutputResults|Comma Seperated Values(CSV)\r\nShowResults|0\r\n"
                                   "ShowEP|1\r\nQueryTemplate|SELECT 'ä|b' FROM \r\n"
                                   "RecordLimit|250\r\nColourCodeScript|0\r\n"));
    OptionsRecord loaded;
    Load_Options(loaded, file());
    QCOMPARE(loaded.QueryTemplate, Options().QueryTemplate);
    // What was saved is what the next dialog shows.
    frmOptions again(m_host, file());
    click(again, u"cmdOK"_s);
    QCOMPARE(loaded.RecordLimit, Options().RecordLimit);
    QCOMPARE(Options().OutputResults, OutputMode::Text);
    QCOMPARE(m_host.log, QStringList());
}

void tst_frmoptions::cancelLeavesEverything_data() {
    QTest::addColumn<QString>("way");
    for (const char* way : {"button", "escape", "frame"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void tst_frmoptions::cancelLeavesEverything() {
    QFETCH(const QString, way);
    Save_Options(Options(), file());
    const QByteArray before = content();
    frmOptions form(m_host, file());
    form.show();
    changeEverything(form);
    if (way == u"button")
        click(form, u"cmdCancel"_s);
    else if (way == u"escape")
        QTest::keyClick(&form, Qt::Key_Escape);
    else
        form.close();
    QVERIFY(form.Cancelled && !form.isVisible());
    QCOMPARE(content(), before);
    QCOMPARE(Options().OutputResults, OutputMode::Grid);
    QCOMPARE(Options().QueryTemplate, QString());
}

void tst_frmoptions::recordLimit_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("empty is none") << QString() << QByteArray("RecordLimit|\r\n");
    QTest::newRow("nought is none") << u"0"_s << QByteArray("RecordLimit|\r\n");
    QTest::newRow("leading noughts") << u"007"_s << QByteArray("RecordLimit|7\r\n");
    QTest::newRow("beyond the number's range")
        << u"99999999999"_s << QByteArray("RecordLimit|2147483647\r\n");
}

void tst_frmoptions::recordLimit() {
    QFETCH(const QString, typed);
    QFETCH(const QByteArray, line);
    Options().RecordLimit = 5;
    frmOptions form(m_host, file());
    auto* limit = form.findChild<QLineEdit*>(u"txtMaxRecords"_s);
    QCOMPARE(limit->text(), u"5"_s);
    limit->clear();
    QTest::keyClicks(limit, typed);
    click(form, u"cmdOK"_s);
    QVERIFY2(content().contains(line), content().constData());
    frmOptions again(m_host, file());
    QCOMPARE(again.findChild<QLineEdit*>(u"txtMaxRecords"_s)->text().isEmpty(),
             Options().RecordLimit == 0);
}

void tst_frmoptions::lettersAreSwallowed() {
    frmOptions form(m_host, file());
    auto* limit = form.findChild<QLineEdit*>(u"txtMaxRecords"_s);
    QTest::keyClicks(limit, u"1a-2. 3"_s);
    limit->insert(u"\u0663"_s); // a digit elsewhere
    QCOMPARE(limit->text(), u"123"_s);
    QTest::keyClick(limit, Qt::Key_Backspace);
    QCOMPARE(limit->text(), u"12"_s);
}

void tst_frmoptions::unknownOutputStays() {
    Options().OutputResults = u"Printer"_s; // of an Options.DAT that another editor has saved
    frmOptions form(m_host, file());
    click(form, u"cmdOK"_s);
    QVERIFY(content().startsWith("OutputResults|Printer\r\n"));
}

void tst_frmoptions::pastedLinesBecomeOne() {
    frmOptions form(m_host, file());
    form.findChild<QLineEdit*>(u"txtDefaultText"_s)->insert(u"SELECT 1\nFROM DUAL\r\nWHERE 1=1"_s);
    click(form, u"cmdOK"_s);
    QCOMPARE(content().count("\r\n"), 6);
    OptionsRecord loaded;
    Load_Options(loaded, file());
    QVERIFY2(loaded.QueryTemplate.contains(u"SELECT 1 FROM DUAL"_s),
             qPrintable(loaded.QueryTemplate));
    QCOMPARE(loaded.ColourCodeScript, qint16(1));
}

void tst_frmoptions::failedSaveKeepsTheDialog() {
    // A folder in the file's place cannot be replaced, whoever runs the test.
    QVERIFY(QDir().mkpath(file() + u"/full"_s));
    frmOptions form(m_host, file());
    form.show();
    changeEverything(form);
    click(form, u"cmdOK"_s);
    QCOMPARE(m_host.log.size(), 1);
    QVERIFY2(m_host.log[0].contains(u"..frmOptions.cmdOK_Click"_s), qPrintable(m_host.log[0]));
    QVERIFY(form.isVisible() && form.Cancelled);
    QCOMPARE(Options().OutputResults, OutputMode::Grid);
    // Once it can be written, nothing has to be entered again.
    QVERIFY(QDir(file()).removeRecursively());
    click(form, u"cmdOK"_s);
    QVERIFY(!form.Cancelled);
    QVERIFY(content().contains("RecordLimit|250\r\n"));
}

void tst_frmoptions::keyboardReachesEverything() {
    frmOptions form(m_host, file());
    form.show();
    QVERIFY(QTest::qWaitForWindowActive(&form));
    QStringList order;
    for (int i = 0; i < 8; ++i) {
        order << QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(order.join(u' '), u"cboResults chkShowResults chkShowPlan txtMaxRecords chkColourCode "
                               "cmdOK cmdCancel qt_tabwidget_tabbar"_s);
    QTest::keyClick(&form, Qt::Key_Q, Qt::AltModifier);
    QCOMPARE(form.findChild<QTabWidget*>()->currentIndex(), 1);
    QTest::keyClick(&form, Qt::Key_D, Qt::AltModifier);
    QCOMPARE(QApplication::focusWidget()->objectName(), u"txtDefaultText"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!form.Cancelled);
}

QTEST_MAIN(tst_frmoptions)
#include "tst_frmoptions.moc"
