#include "RichTextBox.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QTextLayout>

using namespace Qt::StringLiterals;

namespace {

const QString header =
    u"{\\rtf1\\ansi{\\colortbl;\\red0\\green0\\blue255;\\red255\\green0\\blue0;}"_s;

void show(RichTextBox& box) {
    box.resize(300, 100);
    box.show();
    QVERIFY(QTest::qWaitForWindowActive(&box));
    box.setFocus();
}

// Whether the letters are painted in the colour anywhere in the control.
bool paints(RichTextBox& box, QColor colour) {
    const QImage image = box.viewport()->grab().toImage();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y) == colour)
                return true;
    return false;
}

QString formats(const RichTextBox& box, int block) {
    QString text;
    for (const auto& range : box.document()->findBlockByNumber(block).layout()->formats())
        text += u"%1+%2 %3;"_s.arg(range.start)
                    .arg(range.length)
                    .arg(range.format.foreground().color().name());
    return text;
}

// A filter like the SQL editor's.
class FilteringBox : public RichTextBox {
    void KeyPress(char16_t& KeyAscii) override {
        if (KeyAscii == 13)
            KeyAscii = u'~';
        if (KeyAscii == u'\\' || KeyAscii == u'{')
            KeyAscii = 0;
    }
};

} // namespace

class tst_RichTextBox : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void textRoundTrip_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("paragraphs") << u"a\r\n\r\nb\r\n"_s;
        QTest::newRow("empty") << u""_s;
        QTest::newRow("174 empty lines") << u"\r\n"_s.repeated(174);
        QTest::newRow("NUL") << u"a"_s + QChar(0) + u"b"_s;
        QTest::newRow("lone surrogates") << u"a"_s + QChar(0xd83d) + u"b"_s + QChar(0xde00);
        QTest::newRow("no-break space, tab, line separator") << u"a\u00a0b\tc\u2028d"_s;
        QTest::newRow("braces and backslashes") << u"{\\rtf1 {a}}\\"_s;
        QTest::newRow("beyond the BMP") << u"😀 שלום"_s;
    }
    void textRoundTrip() {
        QFETCH(QString, text);
        RichTextBox box;
        box.setText(text);
        QCOMPARE(box.Text(), text);
        box.selectAll();
        QCOMPARE(box.SelText(), text);
        box.setTextRTF(box.TextRTF());
        QCOMPARE(box.Text(), QString(text).replace(QChar::LineSeparator, u'\u2028'));
    }

    void otherLineEndsBecomeParagraphs() {
        RichTextBox box;
        box.setText(u"a\nb\rc\r\nd"_s);
        QCOMPARE(box.Text(), u"a\r\nb\r\nc\r\nd"_s);
    }

    void aParagraphBreakCountsAsOne() {
        RichTextBox box;
        box.setText(u"ab\r\ncd\r\nef"_s);
        box.setSelStart(1);
        box.setSelLength(4);
        QCOMPARE(box.SelText(), u"b\r\ncd"_s);
        QCOMPARE(box.SelStart(), 1);
        QCOMPARE(box.SelLength(), 4);
        box.setSelText(u"1\r\n2\r\n3"_s);
        QCOMPARE(box.Text(), u"a1\r\n2\r\n3\r\nef"_s);
        QCOMPARE(box.SelStart(), 6);
        QCOMPARE(box.SelLength(), 0);
        box.Undo();
        QCOMPARE(box.Text(), u"ab\r\ncd\r\nef"_s);
        box.setSelStart(1000);
        QCOMPARE(box.SelStart(), 8);
        box.setSelStart(-5);
        box.setSelLength(1000);
        QCOMPARE(box.SelLength(), 8);
    }

    void rtfBringsColours() {
        RichTextBox box;
        box.setTextRTF(header + u"{\\cf0 {\\cf1 SELECT }1\\par plain\\par {\\cf2 x}}}"_s);
        show(box);
        QCOMPARE(box.Text(), u"SELECT 1\r\nplain\r\nx"_s);
        QCOMPARE(formats(box, 0), u"0+7 #0000ff;"_s);
        QCOMPARE(formats(box, 1), u""_s);
        QVERIFY(paints(box, Qt::blue) && paints(box, Qt::red));
        box.setTextRTF(header + u"SELECT 1}"_s);
        QVERIFY(!paints(box, Qt::blue) && !paints(box, Qt::red));
    }

    void coloursStayAtTheirLetters() {
        RichTextBox box;
        box.setTextRTF(header + u"a {\\cf1 BY }c {\\cf2 D}\\par e}"_s);
        box.setSelStart(0);
        box.setSelText(u"12"_s);
        QCOMPARE(formats(box, 0), u"4+3 #0000ff;9+1 #ff0000;"_s);
        box.setSelStart(5);
        box.setSelLength(1);
        box.setSelText(u""_s);
        QCOMPARE(formats(box, 0), u"4+2 #0000ff;8+1 #ff0000;"_s);
        box.setSelStart(5);
        box.setSelText(u"\r\n"_s);
        QCOMPARE(formats(box, 0), u"4+1 #0000ff;"_s);
    }

    void undoIsAboutTheTextAlone() {
        RichTextBox box;
        show(box);
        QTest::keyClicks(&box, u"select "_s);
        box.setTextRTF(header + u"{\\cf1 select }}"_s); // colours only: no step
        QTest::keyClicks(&box, u"x"_s);
        box.setTextRTF(header + u"{\\cf1 SELECT }x}"_s);
        QCOMPARE(box.SelStart(), 8);
        box.Undo();
        QCOMPARE(box.Text(), u"select x"_s);
        QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(box.Text(), u"SELECT x"_s);
        while (box.document()->isUndoAvailable())
            box.Undo();
        QCOMPARE(box.Text(), u""_s);
    }

    void onlyWhatDiffersIsTouched() {
        RichTextBox box;
        QString rtf = header;
        for (int i = 0; i < 200; ++i)
            rtf += u"{\\cf1 line} %1\\par "_s.arg(i);
        box.setTextRTF(rtf);
        QList<QPair<int, int>> touched;
        connect(box.document(), &QTextDocument::contentsChange, &box,
                [&](int position, int, int added) {
                    touched.append({position, added});
                });
        box.setSelStart(30);
        box.setTextRTF(rtf);
        QVERIFY(touched.isEmpty());
        box.setTextRTF(QString(rtf).replace(u"{\\cf1 line} 100"_s, u"{\\cf2 line} 10x"_s));
        QVERIFY(!touched.isEmpty());
        const QTextBlock block = box.document()->findBlockByNumber(100);
        for (const auto& [position, added] : touched) {
            QVERIFY(position >= block.position());
            QVERIFY(position + added <= block.position() + block.length());
        }
        QCOMPARE(formats(box, 100), u"0+4 #ff0000;"_s);
        QCOMPARE(formats(box, 101), u"0+4 #0000ff;"_s);
        QCOMPARE(box.SelStart(), 30);
    }

    void changeIsToldForTextOnly() {
        RichTextBox box;
        show(box);
        QSignalSpy changed(&box, &RichTextBox::Change);
        QTest::keyClicks(&box, u"ab"_s);
        QCOMPARE(changed.count(), 2);
        box.setTextRTF(header + u"{\\cf1 ab}}"_s);
        QCOMPARE(changed.count(), 2);
        box.setTextRTF(header + u"{\\cf1 AB}}"_s);
        QCOMPARE(changed.count(), 3);
        box.setText(u"c"_s);
        QCOMPARE(changed.count(), 4);
    }

    void typedCharactersAreFiltered() {
        FilteringBox box;
        show(box);
        QTest::keyClicks(&box, u"a\\{b}"_s);
        QTest::keyClick(&box, Qt::Key_Return);
        QTest::keyClick(&box, Qt::Key_Enter, Qt::KeypadModifier);
        QTest::keyClick(&box, Qt::Key_Return, Qt::ShiftModifier);
        QInputMethodEvent composed;
        composed.setCommitString(u"{日"_s);
        QCoreApplication::sendEvent(&box, &composed);
        QCOMPARE(box.Text(), u"ab}~~~日"_s);
        QTest::keyClick(&box, Qt::Key_Backspace);
        QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
        box.Paste(u"{\\pasted}"_s);
        QCOMPARE(box.Text(), u"{\\pasted}"_s);
        box.setReadOnly(true);
        QTest::keyClicks(&box, u"x"_s);
        box.Paste(u"x"_s);
        box.selectAll();
        QCOMPARE(box.Cut(), u"{\\pasted}"_s);
        QCOMPARE(box.Text(), u"{\\pasted}"_s);
    }

    void anOverlongLineIsWrapped() {
        RichTextBox box;
        show(box);
        box.setText(u"short"_s);
        box.Paste(QString(30'000, u'x') + u"\r\nend"_s);
        QCOMPARE(box.lineWrapMode(), QPlainTextEdit::WidgetWidth);
        QTest::keyClick(&box, Qt::Key_Y);
        QCOMPARE(box.Text().size(), 30'000 + 2 + 3 + 1 + 5);
        box.selectAll();
        box.Paste(u"short"_s);
        QCOMPARE(box.lineWrapMode(), QPlainTextEdit::NoWrap);
    }

    // Against a plain string, with the caret mostly where the line is kept in two blocks.
    void anOverlongLineIsOneLine() {
        RichTextBox box;
        show(box);
        QRandomGenerator random(5);
        QString text = QString(12'000, u'a') + QString(13'000, u'b');
        box.setText(text);
        QVERIFY(box.blockCount() > 3);
        for (int i = 0; i < 400; ++i) {
            const auto end = int(text.size());
            const int boundary = random.bounded(box.blockCount() + 1) * 5000;
            const int at = std::clamp(boundary - 3 + random.bounded(7), 0, end);
            const int length = random.bounded(3) == 0 ? random.bounded(60) : 0;
            box.setSelStart(at);
            box.setSelLength(length);
            const int selected = std::min(length, end - at);
            QCOMPARE(box.SelStart(), at);
            QCOMPARE(box.SelLength(), selected);
            QCOMPARE(box.SelText().remove(u'\r'), text.mid(at, selected));
            int caret = at;
            switch (random.bounded(7)) {
            case 0: // in one step or by the keys
            case 1:
                QTest::keyClick(&box, Qt::Key_Backspace);
                caret = selected > 0 ? at : std::max(at - 1, 0);
                text.remove(caret, selected > 0 ? selected : at - caret);
                break;
            case 2:
                QTest::keyClick(&box, Qt::Key_Delete);
                text.remove(at, std::max(selected, 1));
                break;
            case 3:
                box.Paste(u"p\r\nq"_s);
                text.replace(at, selected, u"p\nq"_s);
                caret = at + 3;
                break;
            case 4:
                QTest::keyClick(&box, Qt::Key_Return);
                text.replace(at, selected, u'\n');
                caret = at + 1;
                break;
            case 5:
                QTest::keyClick(&box, Qt::Key_X);
                text.replace(at, selected, u'x');
                caret = at + 1;
                break;
            default:
                if (selected > 0) {
                    box.Paste(QString(6000, u'c'));
                    text.replace(at, selected, QString(6000, u'c'));
                    caret = at + 6000;
                } else {
                    QTest::keyClick(&box, Qt::Key_Right);
                    caret = std::min(at + 1, end);
                }
            }
            QCOMPARE(box.Text().remove(u'\r'), text);
            QCOMPARE(box.SelStart(), caret);
        }
        while (box.document()->isUndoAvailable())
            box.Undo();
        QCOMPARE(box.Text(), QString(12'000, u'a') + QString(13'000, u'b'));
        while (box.document()->isRedoAvailable())
            box.redo();
        QCOMPARE(box.Text().remove(u'\r'), text);
        box.setText(u"a\r\nb"_s);
        QCOMPARE(box.Text(), u"a\r\nb"_s);
        QCOMPARE(box.blockCount(), 2);
    }

    void arrowsPassOneCharacterAtATime() {
        RichTextBox box;
        show(box);
        box.setText(QString(25'000, u'x'));
        box.setSelStart(4998);
        for (int place = 4999; place < 5004; ++place) {
            QTest::keyClick(&box, Qt::Key_Right);
            QCOMPARE(box.SelStart(), place);
        }
        for (int length = 1; length < 6; ++length) {
            QTest::keyClick(&box, Qt::Key_Left, Qt::ShiftModifier);
            QCOMPARE(box.SelLength(), length);
        }
    }

    void aLineThatGrowsByTypingIsSplit() {
        RichTextBox box;
        show(box);
        box.setText(QString(19'990, u'x'));
        QCOMPARE(box.blockCount(), 1);
        QTest::keyClicks(&box, QString(20, u'y'));
        QVERIFY(box.blockCount() > 1);
        QCOMPARE(box.Text(), QString(20, u'y') + QString(19'990, u'x'));
        QCOMPARE(box.SelStart(), 20);
        while (box.document()->isUndoAvailable())
            box.Undo();
        QCOMPARE(box.Text(), QString(19'990, u'x'));
    }

    void clipboardKeys() {
        RichTextBox box;
        show(box);
        box.setText(u"a\u00a0b\r\nc"_s);
        QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&box, Qt::Key_X, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"a\u00a0b\nc"_s);
        QCOMPARE(box.Text(), u""_s);
        QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(box.Text(), u"a\u00a0b\r\nc"_s);
    }

    void darkOnLightUnderADarkPalette() {
        QPalette dark;
        dark.setColor(QPalette::Base, Qt::black);
        dark.setColor(QPalette::Text, Qt::white);
        const QPalette usual = QGuiApplication::palette();
        QGuiApplication::setPalette(dark);
        RichTextBox box;
        box.setText(u"text"_s);
        show(box);
        QVERIFY(paints(box, Qt::white) && paints(box, Qt::black));
        QCOMPARE(box.viewport()->grab().toImage().pixelColor(200, 80), QColor(Qt::white));
        QGuiApplication::setPalette(usual);
    }
};

QTEST_MAIN(tst_RichTextBox)
#include "tst_richtextbox.moc"
