#include "EditorRules.h"
#include "Options.h"
#include "RandomScript.h"
#include "RecordingHost.h"
#include "SqlEditor.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

void show(QWidget& box) {
    box.resize(400, 200);
    box.show();
    QVERIFY(QTest::qWaitForWindowActive(&box));
    box.setFocus();
}

QString colours(const RichTextBox& box, int line) {
    QString text;
    for (const ColourRun& run : box.runs(box.document()->findBlockByNumber(line)))
        text += u"%1+%2 %3;"_s.arg(run.start).arg(run.length).arg(run.colour & 0xffffff, 0, 16);
    return text;
}

// An editor without a change handler, on which a person does the same.
class PlainTwin : public RichTextBox {
public:
    bool enterPressed = false;

    // What the handler would show.
    void handleChange() {
        const int caret = SelStart();
        if (isBlankScript(Text())) {
            setText(emptyScript());
            handleChange();
            return;
        }
        const ScriptDocument document = Rebuild_Script(Text(), caret, enterPressed, true);
        setTextRTF(document.rtf);
        setSelStart(document.caret);
        enterPressed = false;
    }

protected:
    void KeyPress(char16_t& KeyAscii) override { Filter_Key(KeyAscii, enterPressed); }
};

void pressKey(RichTextBox& box, Qt::Key key) {
    QTest::keyClick(&box, key);
}

void type(RichTextBox& box, QChar c) {
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
    QCoreApplication::sendEvent(&box, &press);
}

void editAtRandom(RichTextBox& box, QRandomGenerator& random) {
    box.setSelStart(random.bounded(box.document()->characterCount()));
    if (random.bounded(4) == 0)
        box.setSelLength(random.bounded(40));
    switch (random.bounded(7)) {
    case 0: return pressKey(box, Qt::Key_Return);
    case 1: return pressKey(box, Qt::Key_Backspace);
    case 2: return pressKey(box, Qt::Key_Delete);
    case 3: return box.Paste(randomScript(random, 8));
    default: type(box, randomPiece(random).at(0));
    }
}

} // namespace

class tst_SqlEditor : public QObject {
    Q_OBJECT
    RecordingHost m_host;

private Q_SLOTS:
    void init() { Options() = OptionsRecord(); }

    void coloursWhileTyping() {
        SqlEditor box(m_host);
        show(box);
        QTest::keyClicks(&box, u"select"_s);
        QCOMPARE(colours(box, 0), u""_s);
        QTest::keyClicks(&box, u" a>=b for x"_s);
        QCOMPARE(box.document()->firstBlock().text(), u"SELECT a>=b FOR x"_s);
        QCOMPARE(colours(box, 0), u"0+7 ff;8+2 808080;12+1 ff;13+3 808080;"_s);
        QCOMPARE(box.SelStart(), 17);
        QTest::keyClicks(&box, u"\\{}"_s);
        QCOMPARE(box.document()->firstBlock().text(), u"SELECT a>=b FOR x}"_s);
    }

    void aBlankTextBecomesEmptyLines() {
        SqlEditor box(m_host);
        show(box);
        box.setText(u"select "_s);
        box.setText(u"  "_s);
        QCOMPARE(box.Text(), emptyScript());
        QTest::keyClicks(&box, u"select 1"_s);
        QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&box, Qt::Key_Delete);
        QCOMPARE(box.Text(), emptyScript());
        QCOMPARE(box.SelStart(), 0);
        QCOMPARE(colours(box, 0), u""_s);
        box.Undo();
        QCOMPARE(box.Text(), u"SELECT 1"_s + emptyScript());
    }

    void enterBreaksTheLine() {
        SqlEditor box(m_host);
        show(box);
        box.setText(u"a\r\nb"_s);
        box.setSelStart(1);
        QTest::keyClick(&box, Qt::Key_Return);
        QCOMPARE(box.Text(), u"a\r\n\r\nb"_s);
        QCOMPARE(box.SelStart(), 2);
        box.moveCursor(QTextCursor::End);
        QTest::keyClicks(&box, u"~x"_s);
        QTest::keyClick(&box, Qt::Key_Enter, Qt::KeypadModifier);
        QCOMPARE(box.Text(), u"a\r\n\r\nb\r\n\r\nx\r\n"_s);
        QCOMPARE(box.SelStart(), box.document()->characterCount() - 1);
        box.Undo();
        QVERIFY2(!box.Text().contains(u"x~"_s), qPrintable(box.Text()));
        while (box.document()->isUndoAvailable())
            box.Undo();
        QCOMPARE(box.Text(), u"a\r\nb"_s);
    }

    void openedTextKeepsItsCharacters() {
        SqlEditor box(m_host);
        box.setText(u"select '{\\rtf1}' from a\\b;\r\n"_s);
        QCOMPARE(box.Text(), u"SELECT '{\\rtf1}' FROM a\\b;\r\n"_s);
        QCOMPARE(colours(box, 0), u"0+7 ff;17+5 ff;"_s);
    }

    void showsWhatTheWholeDocumentProcedureShows() {
        QRandomGenerator random(815);
        for (int round = 0; round < 20; ++round) {
            SqlEditor box(m_host);
            PlainTwin twin;
            const QString start = randomScript(random, 60);
            box.setText(start);
            twin.setText(start);
            twin.handleChange();
            for (int i = 0; i < 100; ++i) {
                QRandomGenerator same = random;
                editAtRandom(box, random);
                editAtRandom(twin, same);
                twin.handleChange();
                QCOMPARE(box.Text(), twin.Text());
                QCOMPARE(box.TextRTF(), twin.TextRTF());
                QCOMPARE(box.SelStart(), twin.SelStart());
            }
        }
    }

    void anOverlongLineIsColouredAsOne() {
        QRandomGenerator random(77);
        QString start;
        while (start.size() < 21'000) // keywords wherever the line is split
            start += u"select by order in "_s;
        start += u"\r\nfrom dual"_s;
        SqlEditor box(m_host);
        PlainTwin twin;
        box.setText(start);
        twin.setText(start);
        twin.handleChange();
        QCOMPARE(box.blockCount(), 6);
        for (int i = 0; i < 40; ++i) {
            QCOMPARE(box.Text(), twin.Text());
            QCOMPARE(box.TextRTF(), twin.TextRTF());
            QCOMPARE(box.SelStart(), twin.SelStart());
            const int at = 5000 * (1 + random.bounded(3)) - 5 + random.bounded(10);
            const int length = random.bounded(3) == 0 ? random.bounded(9) : 0;
            const int action = random.bounded(9);
            const QChar typed = randomPiece(random).at(0);
            for (RichTextBox* each :
                 {static_cast<RichTextBox*>(&box), static_cast<RichTextBox*>(&twin)}) {
                each->setSelStart(at);
                each->setSelLength(length);
                if (action == 0)
                    pressKey(*each, Qt::Key_Return);
                else if (action < 3)
                    pressKey(*each, action == 1 ? Qt::Key_Backspace : Qt::Key_Delete);
                else if (action == 3)
                    each->Paste(u"for\r\n~group "_s);
                else
                    type(*each, typed);
            }
            twin.handleChange();
        }
        const QString text = box.Text();
        while (box.document()->isUndoAvailable())
            box.Undo();
        QCOMPARE(box.Text(), start);
        while (box.document()->isRedoAvailable())
            box.redo();
        QCOMPARE(box.Text(), text);
    }

    void undoRestoresWhatWasTyped() {
        SqlEditor box(m_host);
        show(box);
        box.setText(u"start\r\n"_s);
        box.moveCursor(QTextCursor::End);
        QTest::keyClicks(&box, u"select "_s);
        QCOMPARE(box.Text(), u"start\r\nSELECT "_s);
        QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(box.Text(), u"start\r\nselect "_s);
        QCOMPARE(colours(box, 1), u"0+7 ff;"_s);
        box.txtSQL_Change(); // the window becomes active: what can be redone stays so
        QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(box.Text(), u"start\r\nSELECT "_s);
        box.Undo();
        box.Undo();
        QCOMPARE(box.Text(), u"start\r\n"_s);
        QVERIFY(!box.document()->isUndoAvailable());
    }

    void linesFromTheHistoryGetTheirCapitalsWithTheNextChange() {
        SqlEditor box(m_host);
        show(box);
        box.setText(u"one\r\ntwo\r\nthree"_s);
        box.setSelStart(4);
        QTest::keyClicks(&box, u"by "_s);
        box.Undo();
        QCOMPARE(box.Text(), u"one\r\nby two\r\nthree"_s);
        box.setSelStart(0);
        QTest::keyClicks(&box, u"x"_s);
        QCOMPARE(box.Text(), u"xone\r\nBY two\r\nthree"_s);
        QCOMPARE(box.SelStart(), 1);
    }

    void theHistoryLeadsBackAndForthThroughAnyEdits() {
        QRandomGenerator random(33);
        for (int round = 0; round < 10; ++round) {
            SqlEditor box(m_host);
            const QString start = u"a line\r\nanother\r\n"_s;
            box.setText(start);
            for (int i = 0; i < 60; ++i)
                editAtRandom(box, random);
            const QString text = box.Text();
            const QString rtf = box.TextRTF();
            while (box.document()->isUndoAvailable())
                box.Undo();
            QCOMPARE(box.Text(), start);
            while (box.document()->isRedoAvailable())
                box.redo();
            QCOMPARE(box.Text(), text);
            QCOMPARE(box.TextRTF(), rtf);
        }
    }

    void theOptionCountsAtEachChange() {
        SqlEditor box(m_host);
        show(box);
        box.setText(u"select 1\r\nby 2"_s);
        Options().ColourCodeScript = 0;
        QTest::keyClicks(&box, u"x"_s);
        QCOMPARE(colours(box, 0), u""_s);
        QCOMPARE(colours(box, 1), u"0+3 ff;"_s); // not touched yet
        box.txtSQL_Change();
        QCOMPARE(colours(box, 1), u""_s);
        box.setSelStart(0);
        QTest::keyClicks(&box, u"select "_s);
        QCOMPARE(box.Text(), u"select xSELECT 1\r\nBY 2"_s);
        Options().ColourCodeScript = 1;
        box.txtSQL_Change();
        QCOMPARE(box.Text(), u"SELECT xSELECT 1\r\nBY 2"_s);
        QCOMPARE(colours(box, 0), u"0+7 ff;8+7 ff;"_s);
        QVERIFY(m_host.log.endsWith(u"pointer 0"_s));
    }

    void coloursAloneAreNoChange() {
        SqlEditor box(m_host);
        box.setText(u"SELECT 1"_s);
        QSignalSpy change(&box, &RichTextBox::Change);
        box.txtSQL_Change();
        QCOMPARE(change.count(), 0);
    }

    void doubleClickSelects() {
        SqlEditor box(m_host);
        show(box);
        box.setText(u"one\r\ntwo words\r\nthree"_s);
        box.setSelStart(6);
        QTest::mouseDClick(box.viewport(), Qt::LeftButton, {}, box.cursorRect().center());
        QCOMPARE(box.SelText(), u"two words"_s);
        QCOMPARE(box.textCursor().position(), 4);
        box.setText(u"one\r\n"_s + QString(500, u'x'));
        QTest::mouseDClick(box.viewport(), Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(box.SelLength(), 504);
    }

    void theEditorGetsTheFocus() {
        QWidget window;
        auto* box = new SqlEditor(m_host, &window);
        auto* other = new RichTextBox(&window);
        show(window);
        other->setFocus();
        box->Paste(u"x"_s);
        QVERIFY(box->hasFocus());
    }
};

QTEST_MAIN(tst_SqlEditor)
#include "tst_sqleditor.moc"
