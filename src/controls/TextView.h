#pragma once

#include "EditTarget.h"
#include "TextBuffer.h"
#include "TextRow.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>

// A read-only view of a text of any size: only what is visible is laid out. Keeps the text as UTF-8
// and hardly more. A line of more than TextBuffer::longestRow bytes continues on the next row; the
// text itself has no line end there.
//
// SelStart and SelLength count the characters of Text (UTF-16 units); a line end counts as the
// characters it is made of, two for CR LF. Both cost a pass over the text before them.
class TextView : public QAbstractScrollArea, public EditTarget {
    Q_OBJECT
public:
    explicit TextView(QWidget* parent = nullptr);
    ~TextView() override;

    // Takes the bytes over, caret and view go to the beginning. Malformed UTF-8 is shown as U+FFFD.
    void setText(QByteArray utf8);
    // The caret and what is shown stay.
    void appendText(const QString& text);
    void scrollToEnd();

    QString Text() const { return QString::fromUtf8(m_text.utf8()); }
    const QByteArray& utf8() const { return m_text.utf8(); }

    qsizetype SelStart() const;
    // Puts the caret there and selects nothing.
    void setSelStart(qsizetype start);
    qsizetype SelLength() const;
    void setSelLength(qsizetype length);
    QString SelText() const;

    bool isReadOnly() const override { return true; }
    QString Copy() const override { return SelText(); }
    void Paste(const QString&) override {}
    void SelectAll() override;
    void Undo() override {}

    // Rows, counted from 0.
    qsizetype topRow() const;
    int visibleRows() const;
    // Where the character lies in the viewport, as wide as a caret; empty when its row is not
    // shown. offset: a byte of utf8().
    QRect caretRect(qsizetype offset) const;
    qsizetype offsetAt(QPoint position) const;

Q_SIGNALS:
    void SelChange();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    struct Selected {
        qsizetype begin;
        qsizetype end;
    };
    Selected selected() const;
    void setCaret(qsizetype offset, bool extend);
    void showCaret();
    void textChanged();
    void layOut();
    double contentWidth() const;
    TextRow shownRow(const TextBuffer::Row& row) const;
    void paintRow(QPainter& painter, const TextBuffer::Row& row, int y);
    bool moveByKey(int key, Qt::KeyboardModifiers modifiers);
    qsizetype stepped(qsizetype offset, bool forward) const;
    qsizetype steppedWord(qsizetype offset, bool forward) const;
    qsizetype rowEnd(const TextBuffer::Row& row) const;
    void moveRows(qsizetype rows, bool extend);
    void dragTo(QPoint position);

    TextBuffer m_text;
    TextType m_type;
    qsizetype m_anchor = 0;
    qsizetype m_caret = 0;
    double m_goalX = -1;    // the column that Up and Down keep; -1 while it is the caret's own
    double m_seenWidth = 0; // of the widest row laid out so far
    bool m_layoutStale = true;
    bool m_layoutQueued = false;
    bool m_dragging = false;
    QBasicTimer m_autoScroll;
};
