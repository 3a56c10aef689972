#include "Desk.h"

#include <QClipboard>
#include <QPlainTextEdit>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

// Code generation from the Query menu of the real main window.
class tst_code_commands : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { qputenv("QUILLMATE_HOME", m_home.path().toLocal8Bit()); }
    void generatedCodeIsShownAndOnTheClipboard();
    void shortScriptLeavesTheClipboard();
    void withoutAWindowNothingComes();

private:
    QTemporaryDir m_home;
};

void tst_code_commands::generatedCodeIsShownAndOnTheClipboard() {
    Desk desk;
    desk.start();
    desk.window.New_Query();
    QString sql;
    for (int i = 0; sql.size() < 130; ++i)
        sql += u"a%1, "_s.arg(i);
    desk.query()->txtSQL->setText(sql);
    desk.query()->txtSQL->setSelStart(0);
    desk.query()->txtSQL->setSelLength(3); // the whole text counts
    QString shown;
    QString copied;
    desk.dialogs.expect(u"frmDevExtract"_s, [&](QDialog& form) {
        auto* code = form.findChild<QPlainTextEdit*>(u"txtCode"_s);
        shown = code->toPlainText();
        QCOMPARE(desk.host.clipboardText().remove(u'\r'), shown);
        QTest::keyClick(code, Qt::Key_Home, Qt::ControlModifier);
        QTest::keyClick(code, Qt::Key_End, Qt::ShiftModifier);
        QTest::keyClick(code, Qt::Key_C, Qt::ControlModifier);
        copied = desk.host.clipboardText();
        QTest::keyClick(code, Qt::Key_Escape);
    });
    QTest::keyClick(desk.query()->txtSQL, Qt::Key_G, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(copied, u"Dim strSQL As String "_s);
    const qsizetype cut = sql.left(99).lastIndexOf(u',') + 1; // its last character never counts
    QCOMPARE(shown, u"Dim strSQL As String \n\nstrSQL = \""_s + sql.left(cut) +
                        u"\" _\n       & \""_s + sql.mid(cut) + u'"');
    desk.query()->setUnSavedChanges(false);
}

void tst_code_commands::shortScriptLeavesTheClipboard() {
    Desk desk;
    desk.start();
    desk.window.New_Query()->txtSQL->setText(u"a = b"_s);
    desk.host.setClipboardText(u"mine"_s);
    QString shown;
    desk.dialogs.expect(u"frmDevExtract"_s, [&](QDialog& form) {
        shown = form.findChild<QPlainTextEdit*>(u"txtCode"_s)->toPlainText();
        QTest::mouseClick(form.findChild<QPushButton*>(u"cmdClose"_s), Qt::LeftButton);
    });
    desk.entry("mnuQueryGenerateCode")->trigger();
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(shown, u"Dim strSQL As String \n\nstrSQL = \"a = b\""_s);
    QCOMPARE(desk.host.clipboardText(), u"mine"_s);
    desk.query()->setUnSavedChanges(false);
}

void tst_code_commands::withoutAWindowNothingComes() {
    Desk desk;
    desk.start();
    desk.entry("mnuQueryGenerateCode")->trigger();
    QCOMPARE(desk.dialogs.problems(), QStringList());
}

QTEST_MAIN(tst_code_commands)
#include "tst_code_commands.moc"
