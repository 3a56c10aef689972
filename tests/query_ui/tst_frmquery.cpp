#include "DialogDriver.h"
#include "EditorRules.h"
#include "FlexGrid.h"
#include "Options.h"
#include "RecordingHost.h"
#include "RecordingWorkspace.h"
#include "RichTextBox.h"
#include "StatusPanels.h"
#include "TabStrip.h"
#include "TextView.h"
#include "Trace.h"
#include "Twips.h"
#include "frmQuery.h"
#include "modDatabase.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// A query window alone, without a main window or a database.
struct Alone {
    RecordingHost host;
    RecordingWorkspace workspace;
    TraceLog trace;
    modDatabase database{host, trace};
    int traceShown = 0;
    DialogDriver dialogs;
    frmQuery window{{host, database, workspace, [this] { ++traceShown; }}};

    Alone() {
        window.setCaption(u"7 Query - Untitled"_s);
        window.setUnSavedChanges(false);
    }
    template<typename Control>
    Control* control(const char* name) {
        return window.findChild<Control*>(QString::fromLatin1(name));
    }
    TabStrip& tabs() { return *control<TabStrip>("TabStrip1"); }
    QString tabTexts() {
        QStringList all;
        for (int i = 0; i < tabs().count(); ++i)
            all << (i == tabs().currentIndex() ? u"[%1]"_s : u"%1"_s).arg(tabs().tabText(i));
        return all.join(u' ');
    }
    // Names of the result views that are shown.
    QString shownViews() {
        QStringList shown;
        for (const char* name : {"grdResults", "txtResults", "txtMessage", "lvwStats", "grdEP"}) {
            if (!control<QWidget>(name)->isHidden())
                shown << QString::fromLatin1(name);
        }
        return shown.join(u' ');
    }
    QString restriction() { return control<StatusPanels>("StatusBar1")->text(3); }
};

} // namespace

class tst_frmquery : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { Options() = OptionsRecord(); }
    void loadsFromTheOptions();
    void unknownOutputModeChoosesNothing();
    void tabsComeAndGo();
    void outputModeChoosesTheResultView();
    void recordLimit_data();
    void recordLimit();
    void fileNameIsTheCaption();
    void keysAreSeenBeforeTheControls();
    void closing_data();
    void closing();
    void closingAsksForTheRightName();
    void savePromptAnswers_data();
    void savePromptAnswers();
    void messagesAreShownToTheirEnd();
    void hugeCellsAndTextsAreMeasuredAndShown();
    void narrowWindowCutsNothingOff();
    void tabKeyFollowsTheEye();
    void splitterStopsAtItsLimits_data();
    void splitterStopsAtItsLimits();
    void panelsKeepTheSplitterWhenTheFormGrows();
    void activatingColoursWithTheOptionsOfNow();
    void doubleClickSelectsTheLine();
    void pastedTextKeepsItsCharacters();
};

void tst_frmquery::loadsFromTheOptions() {
    Options() = {OutputMode::Text, 0, 1, u"SELECT\r\n  1"_s, 250, 0};
    Alone query;
    QCOMPARE(query.control<QComboBox>("cboResults")->currentText(), OutputMode::Text);
    QCOMPARE(query.tabTexts(), u"[Messages] Statistics Execution Plan"_s);
    QCOMPARE(query.shownViews(), u"txtMessage"_s);
    QCOMPARE(query.window.txtSQL->Text(), u"SELECT\r\n  1\r\n"_s);
    QCOMPARE(query.window.txtSQL->SelStart(), 11); // the end; a paragraph break counts as one
    QCOMPARE(query.window.MaxRecords(), 250);
    QCOMPARE(query.restriction(), u"250 Record Restriction  "_s);
    QCOMPARE(query.workspace.log.filter(u"tick"_s).constLast(), u"tick "_s + OutputMode::Text);
}

void tst_frmquery::unknownOutputModeChoosesNothing() {
    Options().OutputResults = u"0"_s;
    Alone unknown;
    QCOMPARE(unknown.window.outputMode(), QString());
    Options().OutputResults = u"FILE"_s; // compared ignoring case
    Alone file;
    QCOMPARE(file.window.outputMode(), OutputMode::File);
}

void tst_frmquery::tabsComeAndGo() {
    Alone query;
    auto* results = query.control<QCheckBox>("chkShowResults");
    auto* plan = query.control<QCheckBox>("chkShowPlan");
    QCOMPARE(query.tabTexts(), u"[Results] Messages Statistics"_s);
    QCOMPARE(query.shownViews(), u"grdResults"_s);
    plan->click();
    QCOMPARE(query.tabTexts(), u"Results Messages Statistics [Execution Plan]"_s);
    QCOMPARE(query.shownViews(), u"grdEP"_s);
    plan->click();
    QCOMPARE(query.tabTexts(), u"Results Messages [Statistics]"_s);
    QCOMPARE(query.shownViews(), u"lvwStats"_s);
    results->click();
    QCOMPARE(query.tabTexts(), u"[Messages] Statistics"_s);
    QCOMPARE(query.shownViews(), u"txtMessage"_s);
    results->click();
    QCOMPARE(query.tabTexts(), u"[Results] Messages Statistics"_s);
    query.tabs().select(u"statistics"_s);
    QCOMPARE(query.shownViews(), u"lvwStats"_s);
}

void tst_frmquery::outputModeChoosesTheResultView() {
    Alone query;
    query.window.setResultText("a,b\r\n");
    query.window.appendMessage(u"old"_s);
    query.workspace.log.clear();
    query.window.chooseOutputMode(OutputMode::Text);
    QCOMPARE(query.shownViews(), u"txtResults"_s);
    QCOMPARE(query.control<TextView>("txtResults")->Text(), QString());
    QCOMPARE(query.control<TextView>("txtMessage")->Text(), QString());
    QVERIFY(query.workspace.log.contains(u"tick "_s + OutputMode::Text));
    query.window.chooseOutputMode(OutputMode::File);
    QCOMPARE(query.shownViews(), u"txtResults"_s);
    query.tabs().select(u"messages"_s);
    query.window.chooseOutputMode(OutputMode::Grid);
    QCOMPARE(query.shownViews(), u"txtMessage"_s);
    query.tabs().select(u"results"_s);
    QCOMPARE(query.shownViews(), u"grdResults"_s);
}

void tst_frmquery::recordLimit_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("letters have no effect") << u"a1b2-+.e "_s << u"12 Record Restriction  "_s;
    QTest::newRow("no digits left") << u"\b\b\b"_s << u"No Record Restriction  "_s;
    QTest::newRow("more than 32 bits") << u"99999999999"_s << u"2147483647 Record Restriction  "_s;
}

void tst_frmquery::recordLimit() {
    QFETCH(const QString, typed);
    QFETCH(const QString, shown);
    Alone query;
    auto* box = query.control<QLineEdit>("txtMaxRecords");
    box->clear();
    for (const QChar key : typed) {
        if (key == u'\b')
            QTest::keyClick(box, Qt::Key_Backspace);
        else
            QTest::keyClick(box, key.toLatin1());
    }
    QCOMPARE(query.restriction(), shown);
}

void tst_frmquery::fileNameIsTheCaption() {
    Alone query;
    const QString path = u"/tmp/a[*].sql"_s;
    query.window.setFileName(path);
    QCOMPARE(query.window.Caption(), u"Query - "_s + path);
    query.window.setFileName(QString());
    QCOMPARE(query.window.Caption(), u"Query - "_s + path);
    QCOMPARE(query.workspace.log.mid(query.workspace.log.size() - 2),
             QStringList({u"has a file"_s, u"has no file"_s}));
}

void tst_frmquery::keysAreSeenBeforeTheControls() {
    Alone query;
    for (const char* name : {"txtSQL", "grdResults", "txtMaxRecords", "cboResults"}) {
        query.window.txtSQL->setText(u"script"_s);
        QTest::keyClick(query.control<QWidget>(name), Qt::Key_F12, Qt::ControlModifier);
        QCOMPARE(query.window.txtSQL->Text(), emptyScript());
        QTest::keyClick(query.control<QWidget>(name), Qt::Key_F8,
                        Qt::ControlModifier | Qt::ShiftModifier);
    }
    QCOMPARE(query.traceShown, 4);
    query.window.txtSQL->Undo(); // a slip can be taken back
    QCOMPARE(query.window.txtSQL->Text(), u"script"_s);
}

void tst_frmquery::closing_data() {
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("saves");
    QTest::addColumn<bool>("closed");
    QTest::addColumn<bool>("stillChanged");
    QTest::newRow("cancel") << Answer::Cancel << true << false << true;
    QTest::newRow("yes") << Answer::Yes << true << true << false;
    QTest::newRow("yes, but nothing was saved") << Answer::Yes << false << false << true;
    QTest::newRow("no") << Answer::No << true << true << false;
}

void tst_frmquery::closing() {
    QFETCH(const Answer, answer);
    QFETCH(const bool, saves);
    QFETCH(const bool, closed);
    QFETCH(const bool, stillChanged);
    Alone query;
    query.workspace.saves = saves;
    query.window.show();
    QVERIFY(query.window.close()); // nothing changed, nothing asked
    query.window.show();
    query.window.txtSQL->setSelText(u"x"_s);
    query.host.answers = {answer};
    QCOMPARE(query.window.close(), closed);
    QCOMPARE(query.window.UnSavedChanges(), stillChanged);
    QCOMPARE(query.workspace.log.contains(u"save as"_s), answer == Answer::Yes);
    QCOMPARE(query.host.log.filter(u"msgbox"_s).size(), 1);
    query.workspace.noToAll = true;
    QVERIFY(query.window.Unload(UnloadMode::Code));
}

void tst_frmquery::closingAsksForTheRightName() {
    Alone query;
    query.window.show();
    query.window.setUnSavedChanges(true);
    query.host.answers = {Answer::Cancel, Answer::Yes};
    query.window.close();
    query.window.setFileName(u"/tmp/a.sql"_s);
    query.window.close();
    const QString end = u"' has unsaved changes.\r\nDo you wish to save the changes ?"_s;
    QCOMPARE(query.host.log.filter(u"msgbox"_s),
             QStringList({u"msgbox[yes/no/cancel!] The query '7 Query - Untitled"_s + end,
                          u"msgbox[yes/no/cancel!] The query '/tmp/a.sql"_s + end}));
    QCOMPARE(query.workspace.log.constLast(), u"save"_s);
}

void tst_frmquery::savePromptAnswers_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("closed");
    QTest::addColumn<bool>("noToAll");
    QTest::addColumn<bool>("stillChanged");
    QTest::newRow("yes") << u"cmdYes"_s << true << false << false;
    QTest::newRow("no") << u"cmdNo"_s << true << false << false;
    QTest::newRow("no to all") << u"cmdNoToAll"_s << true << true << true;
    QTest::newRow("cancel") << u"cmdCancel"_s << false << false << true;
}

void tst_frmquery::savePromptAnswers() {
    QFETCH(const QString, button);
    Alone query;
    query.window.show();
    query.window.setUnSavedChanges(true);
    query.dialogs.expect(u"frmSavePrompt"_s, [&](QDialog& prompt) {
        QTest::mouseClick(prompt.findChild<QPushButton*>(button), Qt::LeftButton);
    });
    QTEST(query.window.Unload(UnloadMode::Code), "closed");
    QTEST(query.workspace.noToAll, "noToAll");
    QTEST(query.window.UnSavedChanges(), "stillChanged");
    QCOMPARE(query.dialogs.problems(), QStringList());
}

void tst_frmquery::messagesAreShownToTheirEnd() {
    Alone query;
    query.window.resize(500, 400);
    query.window.showMessagesTab();
    query.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&query.window));
    for (int i = 0; i < 500; ++i)
        query.window.appendMessage(QString::number(i));
    auto* messages = query.control<TextView>("txtMessage");
    QVERIFY(messages->topRow() + messages->visibleRows() >= 500);
    QVERIFY(messages->Text().startsWith(u"\r\n0\r\n1\r\n"_s));
}

void tst_frmquery::hugeCellsAndTextsAreMeasuredAndShown() {
    Alone query;
    query.window.show();
    const int ten = query.window.textWidth(u"MMMMMMMMMM"_s);
    QVERIFY(ten > 500 && ten < 3000);
    QVERIFY(query.window.textWidth(QString(10'000'000, u'M')) > 1'000'000);
    query.window.chooseOutputMode(OutputMode::Text);
    query.window.setResultText(QByteArray(100'000'000, 'x'));
    query.window.repaintNow();
    QCOMPARE(query.control<TextView>("txtResults")->utf8().size(), 100'000'000);
}

void tst_frmquery::narrowWindowCutsNothingOff() {
    Alone query;
    query.window.show();
    int rows = 0;
    for (const int width : {900, 340}) {
        query.window.resize(width, 420);
        QCOMPARE(query.window.width(), width);
        QSet<int> tops;
        for (const char* name : {"cboResults", "chkShowResults", "chkShowPlan", "txtMaxRecords"}) {
            auto* control = query.control<QWidget>(name);
            const QRect place(control->mapTo(&query.window, QPoint()), control->size());
            QVERIFY(query.window.rect().contains(place));
            QVERIFY(control->width() >= control->minimumSizeHint().width());
            tops << place.center().y() / 10;
        }
        QVERIFY(tops.size() > rows); // the narrow one takes more rows
        rows = int(tops.size());
    }
    QVERIFY(query.control<QWidget>("txtSQL")->height() > 40);
}

void tst_frmquery::tabKeyFollowsTheEye() {
    Alone query;
    query.window.show();
    auto* first = query.control<QWidget>("cboResults");
    QStringList order;
    for (QWidget* next = first; next != first || order.isEmpty(); next = next->nextInFocusChain()) {
        if (next->focusPolicy() & Qt::TabFocus && next->isVisible())
            order << next->objectName();
    }
    order.removeAll(QString());
    QCOMPARE(order.join(u' '), u"cboResults chkShowResults chkShowPlan txtMaxRecords txtSQL "
                               "imgSplitterVertical TabStrip1 grdResults"_s);
}

namespace {

int twipsTop(const QWidget* widget) {
    return widget->y() * twipsPerPixel;
}

void dragTo(QWidget* splitter, int y) {
    QTest::mousePress(splitter, Qt::LeftButton, {}, QPoint(30, 0));
    QTest::mouseMove(splitter, QPoint(30, y - splitter->y()));
}

} // namespace

void tst_frmquery::splitterStopsAtItsLimits_data() {
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("bar");
    QTest::newRow("between") << 200 << 200 * twipsPerPixel;
    QTest::newRow("the very top") << -300 << 1000;
    QTest::newRow("far down") << 5000 << 9000 - 1500;
}

void tst_frmquery::splitterStopsAtItsLimits() {
    QFETCH(const int, to);
    QFETCH(const int, bar);
    Alone query;
    query.window.resize(900, 9000 / twipsPerPixel);
    query.window.show();
    auto* splitter = query.control<QWidget>("imgSplitterVertical");
    auto* shownBar = query.control<QWidget>("picSplitterVertical");
    auto* top = query.control<QWidget>("picPanelTopRight");
    auto* bottom = query.control<QWidget>("picPanelBottomRight");
    const QRect before = bottom->geometry();
    QVERIFY(!shownBar->isVisible());
    dragTo(splitter, to);
    QVERIFY(shownBar->isVisible());
    QVERIFY(std::abs(twipsTop(shownBar) - bar) < twipsPerPixel);
    QCOMPARE(bottom->geometry(), before); // only the bar moves
    QTest::mouseRelease(splitter, Qt::LeftButton);
    QVERIFY(!shownBar->isVisible());
    QVERIFY(std::abs(twipsTop(splitter) - bar) < twipsPerPixel);
    QVERIFY(std::abs(twipsTop(bottom) - (bar + 100)) < twipsPerPixel);
    const int results = 9000 - (bar + 100) - 690;
    QVERIFY(std::abs(bottom->height() * twipsPerPixel - results) <= twipsPerPixel);
    QVERIFY(std::abs(top->geometry().bottom() + 1 - splitter->y()) <= 1);
    QVERIFY(top->height() >= 20);
    QCOMPARE(query.window.txtSQL->height(), top->height());
}

void tst_frmquery::panelsKeepTheSplitterWhenTheFormGrows() {
    Alone query;
    query.window.resize(900, 600);
    query.window.show();
    auto* splitter = query.control<QWidget>("imgSplitterVertical");
    dragTo(splitter, 321);
    QTest::mouseRelease(splitter, Qt::LeftButton);
    query.window.resize(900, 900);
    QCOMPARE(splitter->y(), 321);
    query.window.resize(900, 50);
    QCOMPARE(query.window.height(), 3000 / twipsPerPixel);
    for (const char* view : {"txtResults", "txtMessage", "lvwStats", "grdEP"})
        QCOMPARE(query.control<QWidget>(view)->geometry(),
                 query.control<QWidget>("grdResults")->geometry());
    splitter->setFocus(); // and by the keyboard
    query.window.resize(900, 600);
    const int before = splitter->y();
    QTest::keyClick(splitter, Qt::Key_Up);
    QVERIFY(splitter->y() < before);
}

void tst_frmquery::activatingColoursWithTheOptionsOfNow() {
    Options().ColourCodeScript = 0;
    Alone query;
    query.window.txtSQL->setText(u"select 1"_s);
    QCOMPARE(query.window.txtSQL->Text(), u"select 1"_s);
    Options().ColourCodeScript = 1;
    query.window.Activate();
    QCOMPARE(query.window.txtSQL->Text(), u"SELECT 1"_s);
    QCOMPARE(query.window.txtSQL->SelStart(), 8);
    query.window.setUnSavedChanges(false);
    query.window.Activate(); // colours alone are no change of the script
    QVERIFY(!query.window.UnSavedChanges());
}

void tst_frmquery::doubleClickSelectsTheLine() {
    Alone query;
    query.window.resize(900, 600);
    query.window.show();
    query.window.txtSQL->setText(u"one two\r\nthree"_s);
    const QPoint place = query.window.txtSQL->cursorRect().center();
    QTest::mouseDClick(query.window.txtSQL->viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(query.window.txtSQL->SelText(), u"one two"_s);
    QCOMPARE(query.window.scriptText(), u"one two"_s);
}

void tst_frmquery::pastedTextKeepsItsCharacters() {
    Alone query;
    const QString text = u"{\\rtf1 \\par}}{ 'C:\\new {x}' ~"_s;
    query.window.txtSQL->setText(u"x"_s);
    query.window.txtSQL->SelectAll();
    query.window.txtSQL->Paste(text);
    QCOMPARE(query.window.scriptText(), text);
    QTest::keyClicks(query.window.txtSQL, u"{\\}"_s); // typed ones are filtered
    QCOMPARE(query.window.scriptText(), text + u'}');
}

QTEST_MAIN(tst_frmquery)
#include "tst_frmquery.moc"
