#include "TextView.h"

#include "ControlClipboard.h"

#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int margin = 4;
constexpr int caretWidth = 2;
constexpr int autoScrollInterval = 40;
constexpr qsizetype largestMiddleClickPaste = 16 * 1024 * 1024;

int toScrollValue(double value) {
    return int(std::clamp(value, 0.0, double(std::numeric_limits<int>::max())));
}

} // namespace

TextView::TextView(QWidget* parent)
    : QAbstractScrollArea(parent)
    , m_type(QFontDatabase::systemFont(QFontDatabase::FixedFont)) {
    setFont(m_type.font);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Text"));
    viewport()->setCursor(Qt::IBeamCursor);
}

TextView::~TextView() = default;

// --- text and layout ---------------------------------------------------------------------------

void TextView::setText(QByteArray utf8) {
    m_text.set(std::move(utf8));
    m_seenWidth = 0;
    setCaret(0, false);
    textChanged();
    layOut();
    verticalScrollBar()->setValue(0);
    horizontalScrollBar()->setValue(0);
}

void TextView::appendText(const QString& text) {
    m_text.append(text);
    textChanged();
}

void TextView::textChanged() {
    m_layoutStale = true;
    viewport()->update();
    if (std::exchange(m_layoutQueued, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_layoutQueued = false;
            layOut();
        },
        Qt::QueuedConnection);
}

// Bytes never are fewer than characters; tabs and wide letters may need more than a byte's cell,
// which is learnt when such a row is painted.
double TextView::contentWidth() const {
    return std::max(double(m_text.widestRow()) * m_type.charWidth, m_seenWidth) + 2 * margin;
}

void TextView::layOut() {
    if (!std::exchange(m_layoutStale, false))
        return;
    verticalScrollBar()->setPageStep(visibleRows());
    verticalScrollBar()->setRange(0, toScrollValue(double(m_text.rows() - visibleRows())));
    horizontalScrollBar()->setSingleStep(int(m_type.tabDistance));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setRange(0, toScrollValue(contentWidth() - viewport()->width()));
}

void TextView::scrollToEnd() {
    layOut();
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

qsizetype TextView::topRow() const {
    return verticalScrollBar()->value();
}

int TextView::visibleRows() const {
    return std::max(1, viewport()->height() / m_type.lineHeight);
}

TextRow TextView::shownRow(const TextBuffer::Row& row) const {
    return TextRow(m_text.bytes(row), m_type);
}

void TextView::scrollContentsBy(int, int) {
    viewport()->update();
}

void TextView::resizeEvent(QResizeEvent*) {
    m_layoutStale = true;
    layOut();
}

void TextView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        m_type = TextType(font());
        m_seenWidth = 0;
        m_layoutStale = true;
        layOut();
    }
    viewport()->update();
}

// --- painting ----------------------------------------------------------------------------------

void TextView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.fillRect(event->rect(), palette().color(QPalette::Base));
    painter.setFont(m_type.font);
    const double seen = m_seenWidth;
    int y = 0;
    for (TextBuffer::Row row = m_text.row(topRow());; row = m_text.rowAfter(row)) {
        paintRow(painter, row, y);
        y += m_type.lineHeight;
        if (row.next < 0 || y >= viewport()->height())
            break;
    }
    if (hasFocus())
        painter.fillRect(caretRect(m_caret), palette().color(QPalette::Text));
    if (m_seenWidth > seen)
        textChanged(); // the scroll bar must not move while painting
}

void TextView::paintRow(QPainter& painter, const TextBuffer::Row& row, int y) {
    const TextRow shown = shownRow(row);
    const double scroll = horizontalScrollBar()->value();
    m_seenWidth = std::max(m_seenWidth, std::ceil(shown.width()));
    const Selected marked = selected();
    const qsizetype begin = std::clamp(marked.begin, row.begin, row.end) - row.begin;
    const qsizetype end = std::clamp(marked.end, row.begin, row.end) - row.begin;
    const QPointF at(margin - scroll, y);
    shown.paint(painter, at, scroll - margin, scroll + viewport()->width(), palette(), begin, end);
    // A selected line end is seen as half a blank.
    if (row.next > row.end && marked.begin <= row.end && marked.end > row.end)
        painter.fillRect(QRectF(at.x() + shown.width(), y, m_type.charWidth / 2, m_type.lineHeight),
                         palette().color(QPalette::Highlight));
}

QRect TextView::caretRect(qsizetype offset) const {
    const qsizetype number = m_text.rowOf(offset);
    if (number < topRow() || number > topRow() + visibleRows())
        return {};
    const TextBuffer::Row row = m_text.row(number);
    const double x = shownRow(row).xOf(std::min(offset, row.end) - row.begin);
    return {int(std::lround(x)) + margin - horizontalScrollBar()->value(),
            int(number - topRow()) * m_type.lineHeight, caretWidth, m_type.lineHeight};
}

void TextView::focusInEvent(QFocusEvent*) {
    viewport()->update();
}

void TextView::focusOutEvent(QFocusEvent*) {
    viewport()->update();
}

// --- selection ---------------------------------------------------------------------------------

TextView::Selected TextView::selected() const {
    return {std::min(m_anchor, m_caret), std::max(m_anchor, m_caret)};
}

void TextView::setCaret(qsizetype offset, bool extend) {
    m_goalX = -1;
    const qsizetype anchor = extend ? m_anchor : offset;
    if (offset == m_caret && anchor == m_anchor)
        return;
    m_caret = offset;
    m_anchor = anchor;
    viewport()->update();
    Q_EMIT SelChange();
}

qsizetype TextView::SelStart() const {
    return utf16Length(QByteArrayView(utf8()).first(selected().begin));
}

void TextView::setSelStart(qsizetype start) {
    setCaret(utf8Offset(utf8(), std::max<qsizetype>(start, 0)), false);
    showCaret();
}

qsizetype TextView::SelLength() const {
    return utf16Length(
        QByteArrayView(utf8()).sliced(selected().begin, selected().end - selected().begin));
}

void TextView::setSelLength(qsizetype length) {
    const qsizetype begin = selected().begin;
    const QByteArrayView rest = QByteArrayView(utf8()).sliced(begin);
    setCaret(begin, false);
    setCaret(begin + utf8Offset(rest, std::max<qsizetype>(length, 0)), true);
}

QString TextView::SelText() const {
    const Selected range = selected();
    return QString::fromUtf8(QByteArrayView(utf8()).sliced(range.begin, range.end - range.begin));
}

void TextView::SelectAll() {
    setCaret(0, false);
    setCaret(m_text.size(), true);
}

void TextView::showCaret() {
    layOut();
    const qsizetype row = m_text.rowOf(m_caret);
    QScrollBar* vertical = verticalScrollBar();
    if (row < topRow())
        vertical->setValue(toScrollValue(double(row)));
    else if (row >= topRow() + visibleRows())
        vertical->setValue(toScrollValue(double(row - visibleRows() + 1)));

    QScrollBar* horizontal = horizontalScrollBar();
    const QRect caret = caretRect(m_caret);
    if (caret.left() < margin)
        horizontal->setValue(horizontal->value() + caret.left() - margin);
    else if (caret.right() > viewport()->width() - margin)
        horizontal->setValue(horizontal->value() + caret.right() - viewport()->width() + margin);
}

// --- keyboard ----------------------------------------------------------------------------------

void TextView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy))
        putOnClipboard(Copy());
    else if (event->matches(QKeySequence::SelectAll))
        SelectAll();
    else if (!moveByKey(event->key(), event->modifiers()))
        QAbstractScrollArea::keyPressEvent(event);
}

bool TextView::moveByKey(int key, Qt::KeyboardModifiers modifiers) {
    const bool extend = modifiers.testFlag(Qt::ShiftModifier);
    const bool far = modifiers.testFlag(Qt::ControlModifier);
    const TextBuffer::Row row = m_text.row(m_text.rowOf(m_caret));
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right: {
        const bool forward = key == Qt::Key_Right;
        setCaret(far ? steppedWord(m_caret, forward) : stepped(m_caret, forward), extend);
        break;
    }
    case Qt::Key_Up: moveRows(-1, extend); break;
    case Qt::Key_Down: moveRows(1, extend); break;
    case Qt::Key_PageUp: moveRows(-visibleRows(), extend); break;
    case Qt::Key_PageDown: moveRows(visibleRows(), extend); break;
    case Qt::Key_Home: setCaret(far ? 0 : row.begin, extend); break;
    case Qt::Key_End: setCaret(far ? m_text.size() : rowEnd(row), extend); break;
    default: return false;
    }
    showCaret();
    return true;
}

// The end of a cut line is the beginning of its next row, so the last place on the row is before
// its last character.
qsizetype TextView::rowEnd(const TextBuffer::Row& row) const {
    if (row.next != row.end)
        return row.end;
    return row.begin + shownRow(row).previous(row.end - row.begin);
}

qsizetype TextView::stepped(qsizetype offset, bool forward) const {
    const qsizetype number = m_text.rowOf(offset);
    const TextBuffer::Row row = m_text.row(number);
    if (forward) {
        if (offset >= row.end)
            return row.next < 0 ? row.end : row.next;
        return row.begin + shownRow(row).next(offset - row.begin);
    }
    if (offset > row.begin)
        return row.begin + shownRow(row).previous(std::min(offset, row.end) - row.begin);
    return number == 0 ? 0 : rowEnd(m_text.row(number - 1));
}

qsizetype TextView::steppedWord(qsizetype offset, bool forward) const {
    const auto onBlank = [this](qsizetype at) {
        return at < m_text.size() && static_cast<unsigned char>(utf8()[at]) <= ' ';
    };
    const TextBuffer::Row row = m_text.row(m_text.rowOf(offset));
    const TextRow shown = shownRow(row);
    if (forward) {
        if (offset >= row.end)
            return stepped(offset, true);
        qsizetype at = row.begin + shown.wordAt(offset - row.begin).second;
        while (at < row.end && onBlank(at))
            ++at;
        return at;
    }
    if (offset == row.begin)
        return stepped(offset, false);
    qsizetype at = row.begin + shown.previous(std::min(offset, row.end) - row.begin);
    while (at > row.begin && onBlank(at))
        --at;
    return row.begin + shown.wordAt(at - row.begin).first;
}

void TextView::moveRows(qsizetype rows, bool extend) {
    const qsizetype number = m_text.rowOf(m_caret);
    const TextBuffer::Row from = m_text.row(number);
    const double x =
        m_goalX >= 0 ? m_goalX : shownRow(from).xOf(std::min(m_caret, from.end) - from.begin);
    const qsizetype to = number + rows;
    if (to < 0)
        setCaret(0, extend);
    else if (to >= m_text.rows())
        setCaret(m_text.size(), extend);
    else {
        const TextBuffer::Row row = m_text.row(to);
        setCaret(std::min(row.begin + shownRow(row).byteAt(x), rowEnd(row)), extend);
    }
    m_goalX = x;
}

// --- mouse -------------------------------------------------------------------------------------

qsizetype TextView::offsetAt(QPoint position) const {
    const double line = std::floor(double(position.y()) / m_type.lineHeight);
    const qsizetype number =
        std::clamp<qsizetype>(topRow() + qsizetype(line), 0, m_text.rows() - 1);
    const TextBuffer::Row row = m_text.row(number);
    const double x = position.x() - margin + horizontalScrollBar()->value();
    return std::min(row.begin + shownRow(row).byteAt(x), rowEnd(row));
}

void TextView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    layOut();
    m_dragging = true;
    setCaret(offsetAt(event->position().toPoint()), event->modifiers() & Qt::ShiftModifier);
}

void TextView::mouseMoveEvent(QMouseEvent* event) {
    if (m_dragging)
        dragTo(event->position().toPoint());
}

void TextView::dragTo(QPoint position) {
    setCaret(offsetAt(position), true);
    if (viewport()->rect().contains(position)) {
        m_autoScroll.stop();
        return;
    }
    showCaret();
    if (!m_autoScroll.isActive())
        m_autoScroll.start(autoScrollInterval, this);
}

void TextView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_autoScroll.timerId())
        dragTo(viewport()->mapFromGlobal(QCursor::pos()));
    else
        QAbstractScrollArea::timerEvent(event);
}

void TextView::mouseReleaseEvent(QMouseEvent*) {
    m_autoScroll.stop();
    const Selected range = selected();
    if (std::exchange(m_dragging, false) && range.end - range.begin <= largestMiddleClickPaste)
        putOnSelectionClipboard(SelText());
}

void TextView::mouseDoubleClickEvent(QMouseEvent* event) {
    const qsizetype at = offsetAt(event->position().toPoint());
    const TextBuffer::Row row = m_text.row(m_text.rowOf(at));
    const auto [begin, end] = shownRow(row).wordAt(at - row.begin);
    setCaret(row.begin + begin, false);
    setCaret(row.begin + end, true);
    putOnSelectionClipboard(SelText());
}

void TextView::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("&Copy"), this, [this] { putOnClipboard(Copy()); })
        ->setEnabled(m_anchor != m_caret);
    menu->addAction(tr("Select &All"), this, [this] { SelectAll(); })
        ->setEnabled(m_text.size() > 0);
    menu->popup(event->globalPos());
}
