#include "QueryPanels.h"

#include "FormParts.h"
#include "PanelSplitter.h"
#include "QueryLayout.h"
#include "Twips.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int leftMargin = 70; // twips, as the editor's at its right
constexpr int leastEditorTop = 500;
constexpr int leastEditorHeight = 400;
constexpr int barHeight = 20;
constexpr int statusBarHeight = 540; // most of what the results leave below them
constexpr int editorShare = 3;       // part of the form, as long as nobody moved the splitter

// Edges that fall together in twips do so in pixels.
QRect inPixels(int left, int top, int width, int height) {
    return {QPoint(twipsToPixels(left), twipsToPixels(top)),
            QPoint(twipsToPixels(left + width) - 1, twipsToPixels(top + height) - 1)};
}

QWidget* makeBar(QWidget& form) {
    auto* bar = named(new QWidget(&form), u"picSplitterVertical"_s, u"Splitter bar"_s);
    bar->setAutoFillBackground(true);
    bar->setBackgroundRole(QPalette::Highlight);
    bar->hide();
    return bar;
}

} // namespace

QueryPanels::QueryPanels(const Parts& parts)
    : m_parts(parts) {
    // In the order in which the Tab key goes through them.
    parts.runBar.setParent(&parts.form);
    picPanelTopRight = named(new QWidget(&parts.form), u"picPanelTopRight"_s, u"Editor"_s);
    parts.editor.setParent(picPanelTopRight);
    imgSplitterVertical = new PanelSplitter(&parts.form);
    parts.results.setParent(&parts.form);
    parts.statusBar.setParent(&parts.form);
    picSplitterVertical = makeBar(parts.form);
    wireSplitter();
}

void QueryPanels::wireSplitter() {
    connect(imgSplitterVertical, &PanelSplitter::pressed, this, &QueryPanels::showBar);
    connect(imgSplitterVertical, &PanelSplitter::moved, this, &QueryPanels::dragBar);
    connect(imgSplitterVertical, &PanelSplitter::released, this, &QueryPanels::releaseBar);
    connect(imgSplitterVertical, &PanelSplitter::stepped, this, &QueryPanels::stepSplitter);
}

int QueryPanels::innerHeight() const {
    return pixelsToTwips(m_parts.form.height());
}

// Below the run bar, which is higher where it is too narrow for one row.
int QueryPanels::editorTop() const {
    const int barBottom = m_parts.runBar.heightForWidth(m_parts.form.width());
    return std::max(leastEditorTop, pixelsToTwips(barBottom));
}

int QueryPanels::highestSplitter() const {
    return editorTop() + leastEditorHeight;
}

// --- splitter ----------------------------------------------------------------------------------

int QueryPanels::draggedTop(int candidate) const {
    return std::max(QueryLayout::draggedBarTop(candidate, innerHeight()), highestSplitter());
}

void QueryPanels::showBar() {
    m_barTop = m_splitterTop;
    picSplitterVertical->setGeometry(imgSplitterVertical->x(), imgSplitterVertical->y(),
                                     imgSplitterVertical->width(), twipsToPixels(barHeight));
    picSplitterVertical->show();
    picSplitterVertical->raise();
}

void QueryPanels::dragBar(int y) {
    m_barTop = draggedTop(m_splitterTop + pixelsToTwips(y));
    picSplitterVertical->move(picSplitterVertical->x(), twipsToPixels(m_barTop));
}

void QueryPanels::releaseBar() {
    choose(m_barTop);
    picSplitterVertical->hide();
}

void QueryPanels::choose(int top) {
    setChosenTop(top);
    Q_EMIT splitterChosen(top);
}

void QueryPanels::setChosenTop(int top) {
    m_chosenTop = top;
    layOut();
}

void QueryPanels::stepSplitter(int offset) {
    choose(draggedTop(m_splitterTop + pixelsToTwips(offset)));
}

// --- panels ------------------------------------------------------------------------------------

void QueryPanels::layOut() {
    const int width = pixelsToTwips(m_parts.form.width()) - leftMargin;
    const int top = editorTop();
    const int position = m_chosenTop > 0 ? m_chosenTop : innerHeight() / editorShare;
    const QueryLayout::Panels panels = QueryLayout::panelsAt(std::max(position, highestSplitter()),
                                                             innerHeight(), top, m_resultsHeight);
    m_splitterTop = panels.splitterTop;
    m_resultsHeight = panels.bottomHeight;

    m_parts.runBar.setGeometry(0, 0, m_parts.form.width(), twipsToPixels(top));
    picPanelTopRight->setGeometry(inPixels(leftMargin, top, width, panels.topHeight));
    const QueryLayout::Rect editor = QueryLayout::editor(width, panels.topHeight);
    m_parts.editor.setGeometry(0, 0, twipsToPixels(editor.width), picPanelTopRight->height());
    imgSplitterVertical->setGeometry(
        inPixels(leftMargin, panels.splitterTop, width, panels.bottomTop - panels.splitterTop));
    m_parts.results.setGeometry(inPixels(leftMargin, panels.bottomTop, width, panels.bottomHeight));
    const int statusHeight =
        std::max(m_parts.statusBar.sizeHint().height(), twipsToPixels(statusBarHeight));
    m_parts.statusBar.setGeometry(0, m_parts.form.height() - statusHeight, m_parts.form.width(),
                                  statusHeight);
}

QSize QueryPanels::smallestForm() const {
    return {m_parts.runBar.minimumSizeHint().width(), twipsToPixels(QueryLayout::formHeight(0))};
}
