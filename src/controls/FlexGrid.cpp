#include "FlexGrid.h"

#include "ControlClipboard.h"
#include "ShownText.h"
#include "TextWidth.h"
#include "Twips.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int linePadding = 6;
constexpr int autoScrollInterval = 40;
constexpr int fittedExtraTwips = 400; // as columns are sized when a result is loaded
constexpr qsizetype tipCharacters = 600;
constexpr int horizontalStep = 40;

// Rows at a time, faster the further the mouse is outside.
int dragStep(int distance) {
    constexpr int pixelsPerRow = 4;
    return 1 + distance / pixelsPerRow;
}

int toScrollValue(qsizetype value) {
    return int(std::clamp<qsizetype>(value, 0, std::numeric_limits<int>::max()));
}

} // namespace

FlexGrid::FlexGrid(QWidget* parent)
    : QAbstractScrollArea(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Grid"));
    viewport()->setMouseTracking(true);
    horizontalScrollBar()->setSingleStep(horizontalStep);
    measureFont();
    m_data.setListener([this] { dataChanged(); });
}

FlexGrid::~FlexGrid() = default;

// --- layout ------------------------------------------------------------------------------------

void FlexGrid::measureFont() {
    m_rowHeight = fontMetrics().height() + linePadding;
    m_layoutStale = true;
}

void FlexGrid::dataChanged() {
    m_layoutStale = true;
    if (m_generation != m_data.generation()) {
        m_generation = m_data.generation();
        m_scrollHome = true;
        m_drag = Drag::None;
        setSelection(clamped(1, 1), clamped(1, 1));
    }
    setSelection(clamped(m_current.row, m_current.col), clamped(m_end.row, m_end.col));
    viewport()->update();
    // A header of thousands of names arrives cell by cell; one layout serves them all.
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

void FlexGrid::layOut() {
    if (!std::exchange(m_layoutStale, false))
        return;
    m_columns.measure(m_data);
    const bool home = std::exchange(m_scrollHome, false);
    const int room = std::max(0, viewport()->width() - m_columns.fixedWidth());
    horizontalScrollBar()->setPageStep(room);
    horizontalScrollBar()->setRange(0, toScrollValue(m_columns.scrolledWidth() - room));
    verticalScrollBar()->setPageStep(visibleRows());
    verticalScrollBar()->setRange(0, toScrollValue(m_data.Rows() - 1 - visibleRows()));
    if (home) {
        horizontalScrollBar()->setValue(0);
        verticalScrollBar()->setValue(0);
    }
    m_columns.setScroll(horizontalScrollBar()->value());
}

int FlexGrid::visibleRows() const {
    return std::max(1, viewport()->height() / m_rowHeight - 1);
}

qsizetype FlexGrid::TopRow() const {
    return verticalScrollBar()->value() + 1;
}

void FlexGrid::setTopRow(qsizetype row) {
    layOut();
    verticalScrollBar()->setValue(toScrollValue(row - 1));
}

QRect FlexGrid::cellRect(qsizetype row, int col) const {
    const qsizetype line = row == 0 ? 0 : row - TopRow() + 1;
    if (row < 0 || line < (row > 0) || line > viewport()->height() / m_rowHeight || col < 0 ||
        col >= m_columns.count())
        return {};
    const qint64 left = m_columns.left(col);
    const QRect rect(int(std::clamp<qint64>(left, -GridColumns::widest, viewport()->width())),
                     int(line) * m_rowHeight, m_columns.width(col), m_rowHeight);
    const int visibleFrom = col == 0 ? 0 : m_columns.fixedWidth();
    return rect.right() < visibleFrom || rect.left() >= viewport()->width() ? QRect() : rect;
}

void FlexGrid::showCell(qsizetype row, int col) {
    layOut();
    if (row < TopRow())
        setTopRow(row);
    else if (row >= TopRow() + visibleRows())
        setTopRow(row - visibleRows() + 1);

    const qint64 left = m_columns.left(col) - m_columns.fixedWidth();
    const int room = viewport()->width() - m_columns.fixedWidth();
    QScrollBar* bar = horizontalScrollBar();
    if (left < 0 || m_columns.width(col) > room)
        bar->setValue(toScrollValue(bar->value() + left));
    else if (left + m_columns.width(col) > room)
        bar->setValue(toScrollValue(bar->value() + left + m_columns.width(col) - room));
}

void FlexGrid::scrollContentsBy(int, int) {
    m_columns.setScroll(horizontalScrollBar()->value());
    viewport()->update();
}

void FlexGrid::resizeEvent(QResizeEvent*) {
    m_layoutStale = true;
    layOut();
}

void FlexGrid::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        measureFont();
        layOut();
    }
    viewport()->update();
}

// --- painting ----------------------------------------------------------------------------------

GridPainter::Look FlexGrid::lookOf(qsizetype row, int col) const {
    const auto [top, bottom] = std::minmax(m_current.row, m_end.row);
    const auto [left, right] = std::minmax(m_current.col, m_end.col);
    const bool rowSelected = hasCells() && row >= top && row <= bottom;
    const bool colSelected = hasCells() && col >= left && col <= right;
    if (row == 0 || col == 0)
        return (row == 0 && colSelected) || (col == 0 && rowSelected)
                   ? GridPainter::Look::FixedSelected
                   : GridPainter::Look::Fixed;
    const bool current = Place{row, col} == m_current;
    return rowSelected && colSelected && !current ? GridPainter::Look::Selected
                                                  : GridPainter::Look::Cell;
}

// Walks the cells of the row once; the row number stands still.
void FlexGrid::paintRow(GridPainter& cells, QPainter& painter, qsizetype row, int y) {
    const auto paintCell = [&](int col, QByteArrayView text) {
        cells.cell({int(m_columns.left(col)), y, m_columns.width(col), m_rowHeight}, text,
                   lookOf(row, col));
    };
    const int firstCol = std::max(1, m_columns.at(m_columns.fixedWidth()));
    const int lastCol = std::min(m_columns.at(viewport()->width() - 1), m_data.Cols() - 1);
    painter.setClipRect(viewport()->rect().adjusted(m_columns.fixedWidth(), 0, 0, 0));
    m_data.visitRow(row, firstCol, lastCol, paintCell);
    painter.setClipping(false);
    m_data.visitRow(row, 0, 0, paintCell);
}

void FlexGrid::paintEvent(QPaintEvent* event) {
    if (m_layoutStale) // the scroll bars follow later: they must not move while painting
        m_columns.measure(m_data);
    QPainter painter(viewport());
    painter.fillRect(event->rect(), palette().color(QPalette::Base));
    GridPainter cells(painter, palette());
    const int lines = viewport()->height() / m_rowHeight;
    for (int line = 0; line <= lines; ++line) {
        const qsizetype row = line == 0 ? 0 : TopRow() + line - 1;
        if (row >= m_data.Rows())
            break;
        const QRect band(0, line * m_rowHeight, viewport()->width(), m_rowHeight);
        if (band.intersects(event->rect()))
            paintRow(cells, painter, row, band.top());
    }
    if (!hasCells()) {
        if (hasFocus())
            cells.frame(viewport()->rect(), true);
        return;
    }
    painter.setClipRect(viewport()->rect().adjusted(m_columns.fixedWidth(), m_rowHeight, 0, 0));
    if (const QRect rect = cellRect(m_current.row, m_current.col); !rect.isEmpty())
        cells.frame(rect, hasFocus());
}

void FlexGrid::focusInEvent(QFocusEvent*) {
    viewport()->update();
}

void FlexGrid::focusOutEvent(QFocusEvent*) {
    viewport()->update();
}

// --- selection ---------------------------------------------------------------------------------

FlexGrid::Place FlexGrid::clamped(qsizetype row, int col) const {
    if (!hasCells())
        return {};
    return {std::clamp<qsizetype>(row, 1, m_data.Rows() - 1),
            std::clamp(col, 1, m_data.Cols() - 1)};
}

void FlexGrid::setSelection(Place current, Place end) {
    if (current == m_current && end == m_end)
        return;
    m_current = current;
    m_end = end;
    viewport()->update();
    announceCell();
    Q_EMIT SelChange();
}

void FlexGrid::select(qsizetype row, int col, qsizetype rowSel, int colSel) {
    setSelection(clamped(row, col), clamped(rowSel, colSel));
}

void FlexGrid::SelectAll() {
    select(1, 1, m_data.Rows() - 1, m_data.Cols() - 1);
}

// A screen reader hears the column and the text of the cell that the keys reached.
void FlexGrid::announceCell() {
    if (!QAccessible::isActive() || !hasCells())
        return;
    const QString name = shownBeginning(m_data.text(0, m_end.col), tipCharacters);
    const QString text = shownBeginning(m_data.text(m_end.row, m_end.col), tipCharacters);
    setAccessibleDescription(tr("Row %1, %2: %3").arg(QString::number(m_end.row), name, text));
}

QString FlexGrid::copyText(bool withHeader) const {
    if (!hasCells())
        return {};
    const auto [top, bottom] = std::minmax(m_current.row, m_end.row);
    const auto [left, right] = std::minmax(m_current.col, m_end.col);
    QByteArray copied;
    const auto addRow = [&, left = left, right = right](qsizetype row) {
        m_data.visitRow(row, left, right, [&, left](int col, QByteArrayView text) {
            if (col > left)
                copied += '\t';
            copied += text;
        });
    };
    if (withHeader) {
        addRow(0);
        copied += "\r\n";
    }
    for (qsizetype row = top; row <= bottom; ++row) {
        addRow(row);
        if (row < bottom)
            copied += "\r\n";
    }
    return QString::fromUtf8(copied);
}

// --- keyboard ----------------------------------------------------------------------------------

void FlexGrid::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy))
        putOnClipboard(Copy());
    else if (event->matches(QKeySequence::SelectAll))
        SelectAll();
    else if (!hasCells() || !moveByKey(event->key(), event->modifiers()))
        QAbstractScrollArea::keyPressEvent(event);
}

bool FlexGrid::moveByKey(int key, Qt::KeyboardModifiers modifiers) {
    const bool extend = modifiers.testFlag(Qt::ShiftModifier);
    const bool far = modifiers.testFlag(Qt::ControlModifier);
    const qsizetype lastRow = m_data.Rows() - 1;
    const int lastCol = m_data.Cols() - 1;
    Place to = extend ? m_end : m_current;
    switch (key) {
    case Qt::Key_Left: to.col = far ? 1 : to.col - 1; break;
    case Qt::Key_Right: to.col = far ? lastCol : to.col + 1; break;
    case Qt::Key_Up: to.row = far ? 1 : to.row - 1; break;
    case Qt::Key_Down: to.row = far ? lastRow : to.row + 1; break;
    case Qt::Key_PageUp: to.row -= visibleRows(); break;
    case Qt::Key_PageDown: to.row += visibleRows(); break;
    case Qt::Key_Home: to = {far ? 1 : to.row, 1}; break;
    case Qt::Key_End: to = {far ? lastRow : to.row, lastCol}; break;
    case Qt::Key_Space:
        if (far)
            select(1, m_current.col, lastRow, m_end.col);
        else if (extend)
            select(m_current.row, 1, m_end.row, lastCol);
        return far || extend;
    default: return false;
    }
    to = clamped(to.row, to.col);
    setSelection(extend ? m_current : to, to);
    showCell(to.row, to.col);
    return true;
}

// --- mouse -------------------------------------------------------------------------------------

qsizetype FlexGrid::rowAt(int y) const {
    return y < m_rowHeight ? 0 : TopRow() + y / m_rowHeight - 1;
}

FlexGrid::Place FlexGrid::placeAt(QPoint position) const {
    return {rowAt(position.y()), m_columns.at(position.x())};
}

FlexGrid::Drag FlexGrid::dragAt(QPoint position) const {
    const Place place = placeAt(position);
    if (place.row == 0 && m_columns.edgeAt(position.x()) >= 0)
        return Drag::Edge;
    if (place.row >= m_data.Rows() || place.col >= m_data.Cols() || !hasCells())
        return Drag::None;
    if (place.row == 0)
        return Drag::Columns; // in the corner too: all columns
    return place.col == 0 ? Drag::Rows : Drag::Cells;
}

void FlexGrid::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    layOut();
    const QPoint position = event->position().toPoint();
    m_drag = dragAt(position);
    if (m_drag == Drag::Edge)
        m_dragCol = m_columns.edgeAt(position.x());
    else if (m_drag != Drag::None)
        beginSelection(m_drag, placeAt(position), event->modifiers() & Qt::ShiftModifier);
}

void FlexGrid::beginSelection(Drag drag, Place place, bool extend) {
    const qsizetype lastRow = m_data.Rows() - 1;
    const int lastCol = m_data.Cols() - 1;
    if (place.row == 0 && place.col == 0) {
        m_drag = Drag::None;
        return SelectAll();
    }
    const Place from = extend ? m_current : place;
    if (drag == Drag::Columns)
        select(1, from.col, lastRow, place.col);
    else if (drag == Drag::Rows)
        select(from.row, 1, place.row, lastCol);
    else
        select(from.row, from.col, place.row, place.col);
}

void FlexGrid::mouseMoveEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    if (m_drag == Drag::None)
        viewport()->setCursor(dragAt(position) == Drag::Edge ? Qt::SplitHCursor : Qt::ArrowCursor);
    else if (m_drag == Drag::Edge)
        resizeColumn(position.x());
    else
        dragTo(position);
}

void FlexGrid::dragTo(QPoint position) {
    const QRect cells = viewport()->rect().adjusted(m_columns.fixedWidth(), m_rowHeight, 0, 0);
    Place place =
        placeAt({std::clamp(position.x(), cells.left(), std::max(cells.left(), cells.right())),
                 std::clamp(position.y(), cells.top(), std::max(cells.top(), cells.bottom()))});
    if (position.y() < cells.top())
        place.row = TopRow() - dragStep(cells.top() - position.y());
    else if (position.y() > cells.bottom())
        place.row = TopRow() + visibleRows() - 1 + dragStep(position.y() - cells.bottom());
    if (position.x() < cells.left())
        --place.col;
    if (m_drag == Drag::Columns)
        place.row = m_end.row;
    if (m_drag == Drag::Rows)
        place.col = m_end.col;
    place = clamped(place.row, place.col);
    setSelection(m_current, place);

    if (cells.contains(position)) {
        m_autoScroll.stop();
        return;
    }
    showCell(m_drag == Drag::Columns ? TopRow() : place.row,
             m_drag == Drag::Rows ? m_current.col : place.col);
    if (!m_autoScroll.isActive())
        m_autoScroll.start(autoScrollInterval, this);
}

void FlexGrid::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_autoScroll.timerId())
        dragTo(viewport()->mapFromGlobal(QCursor::pos()));
    else
        QAbstractScrollArea::timerEvent(event);
}

void FlexGrid::mouseReleaseEvent(QMouseEvent*) {
    m_drag = Drag::None;
    m_autoScroll.stop();
}

void FlexGrid::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    if (dragAt(position) == Drag::Edge)
        fitColumn(m_columns.edgeAt(position.x()));
    else
        mousePressEvent(event);
}

void FlexGrid::resizeColumn(int x) {
    if (m_dragCol >= m_columns.count())
        return;
    const qint64 width = std::max<qint64>(0, x - m_columns.left(m_dragCol));
    m_data.setColWidth(m_dragCol, pixelsToTwips(double(width)));
    layOut();
}

void FlexGrid::fitColumn(int col) {
    const QString text = QString::fromUtf8(m_data.longestText(col));
    m_data.setColWidth(col, textWidthTwips(fontMetrics(), text) + fittedExtraTwips);
}

void FlexGrid::contextMenuEvent(QContextMenuEvent* event) {
    const Place place = placeAt(event->pos());
    const auto [top, bottom] = std::minmax(m_current.row, m_end.row);
    const auto [left, right] = std::minmax(m_current.col, m_end.col);
    const bool inside =
        place.row >= top && place.row <= bottom && place.col >= left && place.col <= right;
    if (event->reason() == QContextMenuEvent::Mouse && !inside &&
        dragAt(event->pos()) == Drag::Cells)
        select(place.row, place.col, place.row, place.col);

    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const QString& name, auto act) {
        menu->addAction(name, this, act)->setEnabled(hasCells());
    };
    add(tr("&Copy"), [this] { putOnClipboard(Copy()); });
    add(tr("Copy With &Headers"), [this] { putOnClipboard(copyText(true)); });
    menu->addSeparator();
    add(tr("Select &All"), [this] { SelectAll(); });
    menu->popup(event->globalPos());
}

bool FlexGrid::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        showCellTip(help->pos(), help->globalPos());
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

// The whole text of a cell that is too narrow for it.
void FlexGrid::showCellTip(QPoint position, QPoint globalPosition) {
    const Place place = placeAt(position);
    const QRect rect = cellRect(place.row, place.col);
    const QByteArray utf8 = rect.isEmpty() ? QByteArray() : m_data.text(place.row, place.col);
    const QString text = shownBeginning(utf8, tipCharacters);
    const int room = rect.width() - 2 * GridPainter::padding;
    if (text.isEmpty() || fontMetrics().horizontalAdvance(text) <= room)
        return QToolTip::hideText();
    // Escaped, because a tip that looks like markup would be taken for it.
    QToolTip::showText(globalPosition, u"<qt>"_s + text.toHtmlEscaped() + u"</qt>"_s, viewport(),
                       rect);
}
