#include "HelpBook.h"
#include "frmHelp.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScreen>
#include <QTabWidget>
#include <QTest>
#include <QTextBrowser>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

class tst_frmhelp : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_help.reset(); }
    void contentsFollowThePage();
    void linksGoBackAndForward();
    void indexIsFilteredByTyping();
    void searchShowsAndMarks();
    void searchWithoutAMatch();
    void findInThePageGoesRound();
    void keyboardAlone();
    void missingPageIsSaid();

private:
    template<typename Control>
    Control* control(const char* name) {
        return m_help->findChild<Control*>(QString::fromLatin1(name));
    }
    QString page() { return control<QTextBrowser>("txtPage")->source().path(); }

    std::unique_ptr<frmHelp> m_help;
};

void tst_frmhelp::init() {
    std::unique_ptr<HelpBook> book = HelpBook::open(QString::fromLatin1(HELP_FILE));
    QVERIFY(book);
    m_help = std::make_unique<frmHelp>(std::move(book));
    m_help->show();
    QVERIFY(QTest::qWaitForWindowActive(m_help.get()));
    QVERIFY(m_help->screen()->geometry().contains(m_help->geometry()));
}

void tst_frmhelp::contentsFollowThePage() {
    m_help->showPage({});
    QCOMPARE(page(), u"/index.htm"_s);
    auto* contents = control<QTreeWidget>("trvContents");
    QCOMPARE(contents->currentItem()->text(0), u"Welcome to Quillmate"_s);
    m_help->showPage(u"/editor.htm"_s);
    QCOMPARE(contents->currentItem()->text(0), u"The editor"_s);
    QCOMPARE(contents->currentItem()->parent()->text(0), u"The query window"_s);
    contents->setFocus();
    QTest::keyClick(contents, Qt::Key_Down);
    QCOMPARE(page(), u"/colouring.htm"_s);
    QVERIFY(control<QTextBrowser>("txtPage")->toPlainText().startsWith(u"How colouring matches"_s));
}

void tst_frmhelp::linksGoBackAndForward() {
    m_help->showPage({});
    auto* browser = control<QTextBrowser>("txtPage");
    auto* back = control<QAction>("cmdBack");
    QVERIFY(!back->isEnabled());
    // The keyboard's way: Tab to the first link, Enter follows it.
    QTest::keyClick(browser, Qt::Key_Tab);
    QTest::keyClick(browser, Qt::Key_Return);
    QCOMPARE(page(), u"/connecting.htm"_s);
    QVERIFY(back->isEnabled());
    back->trigger();
    QCOMPARE(page(), u"/index.htm"_s);
    control<QAction>("cmdForward")->trigger();
    QCOMPARE(page(), u"/connecting.htm"_s);
}

void tst_frmhelp::indexIsFilteredByTyping() {
    control<QTabWidget>("tabHelp")->setCurrentIndex(1);
    auto* list = control<QListWidget>("lstIndex");
    QTest::keyClicks(control<QLineEdit>("txtIndex"), u"tild"_s);
    QStringList shown;
    for (int row = 0; row < list->count(); ++row) {
        if (!list->item(row)->isHidden())
            shown << list->item(row)->text();
    }
    QCOMPARE(shown, QStringList(u"tilde"_s));
    list->setCurrentItem(list->findItems(u"tilde"_s, Qt::MatchExactly).constFirst());
    QCOMPARE(page(), u"/editor.htm"_s);
}

void tst_frmhelp::searchShowsAndMarks() {
    m_help->showSearch();
    auto* text = control<QLineEdit>("txtSearch");
    QVERIFY(text->hasFocus());
    QTest::keyClicks(text, u"tilde"_s);
    QTest::keyClick(text, Qt::Key_Return);
    auto* results = control<QListWidget>("lstResults");
    QVERIFY(results->count() >= 2);
    QVERIFY(results->hasFocus());
    QCOMPARE(control<QLabel>("lblResults")->text(), u"%1 pages"_s.arg(results->count()));
    const auto marks = control<QTextBrowser>("txtPage")->extraSelections();
    QVERIFY(!marks.isEmpty());
    QCOMPARE(marks[0].cursor.selectedText().toLower(), u"tilde"_s);
    const QString first = page();
    QTest::keyClick(results, Qt::Key_Down);
    QVERIFY(page() != first);
}

void tst_frmhelp::searchWithoutAMatch() {
    m_help->showSearch();
    QCOMPARE(page(), u"/index.htm"_s); // not an empty page beside the search
    auto* text = control<QLineEdit>("txtSearch");
    QTest::keyClicks(text, u"xyzzy"_s);
    QTest::keyClick(text, Qt::Key_Return);
    QCOMPARE(control<QListWidget>("lstResults")->count(), 0);
    QCOMPARE(control<QLabel>("lblResults")->text(), u"No page holds all of these words."_s);
    QVERIFY(text->hasFocus());
}

void tst_frmhelp::findInThePageGoesRound() {
    m_help->showPage(u"/keys.htm"_s);
    auto* browser = control<QTextBrowser>("txtPage");
    auto* find = control<QLineEdit>("txtFind");
    QTest::keyClick(browser, Qt::Key_F, Qt::ControlModifier);
    QVERIFY(find->hasFocus());
    QTest::keyClicks(find, u"trace log"_s);
    QTest::keyClick(find, Qt::Key_Return);
    QCOMPARE(browser->textCursor().selectedText(), u"trace log"_s);
    const int place = browser->textCursor().position();
    QTest::keyClick(find, Qt::Key_Return); // the only one: found again from the top
    QCOMPARE(browser->textCursor().position(), place);
    QTest::keyClick(m_help.get(), Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(browser->textCursor().position(), place);
}

void tst_frmhelp::keyboardAlone() {
    m_help->showPage({});
    auto* tabs = control<QTabWidget>("tabHelp");
    QTest::keyClick(m_help.get(), Qt::Key_S, Qt::AltModifier);
    QCOMPARE(tabs->currentIndex(), 2);
    QTest::keyClick(m_help.get(), Qt::Key_I, Qt::AltModifier);
    QCOMPARE(tabs->currentIndex(), 1);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QVERIFY(!m_help->isVisible());
}

void tst_frmhelp::missingPageIsSaid() {
    m_help->showPage(u"/nowhere.htm"_s);
    QVERIFY(control<QTextBrowser>("txtPage")->toPlainText().contains(u"/nowhere.htm"_s));
}

QTEST_MAIN(tst_frmhelp)
#include "tst_frmhelp.moc"
