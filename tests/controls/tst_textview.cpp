#include "TextView.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QByteArrayList rows(const TextBuffer& buffer) {
    QByteArrayList all;
    for (qsizetype i = 0; i < buffer.rows(); ++i)
        all.append(buffer.bytes(buffer.row(i)).toByteArray());
    return all;
}

void show(TextView& view, const QByteArray& text) {
    view.setText(text);
    view.resize(500, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    view.setFocus();
}

} // namespace

class tst_TextView : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void rowsOfABuffer_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArrayList>("expected");
        const QByteArray full(TextBuffer::longestRow, 'x');
        QTest::newRow("empty") << ""_ba << QByteArrayList{""};
        QTest::newRow("line ends") << "a\r\nb\n\nc\rd"_ba << QByteArrayList{"a", "b", "", "c\rd"};
        QTest::newRow("line end last") << "a\r\n"_ba << QByteArrayList{"a", ""};
        QTest::newRow("just full") << full + "\r\ny" << QByteArrayList{full, "y"};
        QTest::newRow("one too many") << full + "z\r\ny" << QByteArrayList{full, "z", "y"};
        QTest::newRow("cut before a character")
            << full.first(full.size() - 1) + "é" + full + "yy"
            << QByteArrayList{full.first(full.size() - 1), "é" + full.first(full.size() - 2),
                              "xxyy"};
        QTest::newRow("malformed") << "a\xff\n\xc3"_ba << QByteArrayList{"a\ufffd", "\ufffd"};
    }
    void rowsOfABuffer() {
        QFETCH(QByteArray, text);
        TextBuffer buffer;
        buffer.set(text);
        QTEST(rows(buffer), "expected");

        TextBuffer appended; // must come to the same, whatever the pieces
        if (text.isValidUtf8()) {
            for (const QChar c : QString::fromUtf8(text))
                appended.append(c);
            QTEST(rows(appended), "expected");
        }
    }

    void rowsAndOffsetsAgree() {
        QByteArray text;
        for (int i = 0; i < 3000; ++i)
            text += QByteArray(i % 7 * 100 * (i % 11 == 0 ? 10 : 1), 'a') + (i % 2 ? "\n" : "\r\n");
        TextBuffer buffer;
        buffer.set(text);
        qsizetype next = 0;
        for (qsizetype i = 0; i < buffer.rows(); ++i) {
            const TextBuffer::Row row = buffer.row(i);
            QCOMPARE(row.begin, next);
            QCOMPARE(buffer.rowOf(row.begin), i);
            if (row.end != row.next)
                QCOMPARE(buffer.rowOf(row.end), i);
            next = row.next;
        }
        QCOMPARE(next, -1);
    }

    void unitsAndBytes() {
        const QByteArray text = "aé€😀b";
        QCOMPARE(utf16Length(text), QString::fromUtf8(text).size());
        const QList<qsizetype> offsets = {0, 1, 3, 6, 6, 10, 11, 11};
        for (int unit = 0; unit < offsets.size(); ++unit)
            QCOMPARE(utf8Offset(text, unit), offsets[unit]);
        const QByteArray long1 = QByteArray("é").repeated(100'000);
        QCOMPARE(utf8Offset(long1, 99'999), 199'998);
    }

    void selectionCountsCharactersAndLineEnds() {
        TextView view;
        show(view, "Zoë\r\nשלום😀\r\nend");
        view.setSelStart(2);
        view.setSelLength(5);
        QCOMPARE(view.SelText(), u"ë\r\nשל"_s);
        QCOMPARE(view.SelStart(), 2);
        QCOMPARE(view.SelLength(), 5);
        view.SelectAll();
        QCOMPARE(view.SelText(), view.Text());
        QCOMPARE(view.SelLength(), view.Text().size());
        QCOMPARE(view.Cut(), view.Text());
        view.Paste(u"x"_s);
        QCOMPARE(view.SelLength(), view.Text().size());
        view.setSelLength(10'000);
        QCOMPARE(view.SelLength(), view.Text().size());
        QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), view.Text().replace("\r\n"_L1, "\n"_L1));
    }

    void keys_data() {
        QTest::addColumn<int>("start");
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QString>("selected");
        const int shift = int(Qt::SHIFT);
        const int word = int(Qt::CTRL) | shift;
        // "one two\r\n\tZoë ü, end\r\n\r\nlast"
        QTest::newRow("over a line end")
            << 6 << QList<int>{shift | Qt::Key_Right, shift | Qt::Key_Right} << u"o\r\n"_s;
        QTest::newRow("back over a line end")
            << 9 << QList<int>{shift | Qt::Key_Left, shift | Qt::Key_Left} << u"o\r\n"_s;
        QTest::newRow("words") << 10 << QList<int>{word | Qt::Key_Right, word | Qt::Key_Right}
                               << u"Zoë ü"_s;
        QTest::newRow("word back") << 7 << QList<int>{word | Qt::Key_Left} << u"two"_s;
        QTest::newRow("Home and End")
            << 12 << QList<int>{Qt::Key_Home, shift | Qt::Key_End} << u"\tZoë ü, end"_s;
        QTest::newRow("column kept over a shorter line")
            << 20
            << QList<int>{Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Up, shift | Qt::Key_Home}
            << u"\tZoë ü, end"_s;
        QTest::newRow("to the end") << 23 << QList<int>{word | Qt::Key_End} << u"\nlast"_s;
        QTest::newRow("beyond the ends")
            << 3 << QList<int>{Qt::Key_PageUp, Qt::Key_Left, shift | Qt::Key_PageDown}
            << u"one two\r\n\tZoë ü, end\r\n\r\nlast"_s;
    }
    void keys() {
        QFETCH(int, start);
        QFETCH(QList<int>, keys);
        TextView view;
        show(view, "one two\r\n\tZoë ü, end\r\n\r\nlast");
        view.setSelStart(start);
        for (const int key : keys) {
            const auto combined = QKeyCombination::fromCombined(key);
            QTest::keyClick(&view, combined.key(), combined.keyboardModifiers());
        }
        QTEST(view.SelText(), "selected");
    }

    void mouseSelects() {
        TextView view;
        show(view, "plain ascii\twords\r\nשלום wide 日本 end");
        const auto at = [&view](int character) {
            return view.caretRect(utf8Offset(view.utf8(), character)).center();
        };
        for (const int character : {0, 6, 12, 14, 21, 25, 31}) {
            const qsizetype offset = utf8Offset(view.utf8(), character);
            QCOMPARE(view.offsetAt(view.caretRect(offset).center()), offset);
        }
        QTest::mousePress(view.viewport(), Qt::LeftButton, {}, at(6));
        QTest::mouseMove(view.viewport(), at(24));
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, at(24));
        QCOMPARE(view.SelText(), u"ascii\twords\r\nשלום "_s);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, at(8));
        QCOMPARE(view.SelText(), u"ascii"_s);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, at(26));
        QCOMPARE(view.SelText(), u"wide"_s);
    }

    void appendedTextIsSeenAtTheEnd() {
        TextView view;
        show(view, "");
        for (int i = 0; i < 100; ++i)
            view.appendText(u"\r\nmessage %1 é"_s.arg(i));
        view.scrollToEnd();
        QVERIFY(!view.caretRect(view.utf8().size()).isEmpty());
        QCOMPARE(view.SelLength(), 0);
        QVERIFY(view.Text().endsWith(u"message 99 é"_s));
        view.setText("new");
        QCOMPARE(view.topRow(), 0);
    }

    void oneEndlessLine() {
        TextView view;
        show(view, QByteArray("0123456789").repeated(1'000'000));
        QTest::keyClick(&view, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(view.SelStart(), 10'000'000);
        QVERIFY(view.viewport()->rect().intersects(view.caretRect(10'000'000)));
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(&view, Qt::Key_Left, Qt::ShiftModifier);
        QCOMPARE(view.SelText(), u"789"_s);

        // From row to row of the cut line and back, no place twice.
        view.setSelStart(TextBuffer::longestRow - 1);
        QTest::keyClick(&view, Qt::Key_Right);
        QCOMPARE(view.SelStart(), TextBuffer::longestRow);
        QTest::keyClick(&view, Qt::Key_Left);
        QCOMPARE(view.SelStart(), TextBuffer::longestRow - 1);
    }

    void nothingIsLostInControls() {
        TextView view;
        const QByteArray odd = "a\0b\x1b[1m\u2028\ttab\r\n"_ba;
        show(view, odd);
        QVERIFY(!view.grab().isNull());
        view.SelectAll();
        QCOMPARE(view.SelText().toUtf8(), odd);
    }
};

QTEST_MAIN(tst_TextView)
#include "tst_textview.moc"
