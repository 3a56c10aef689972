#include "SqlEditor.h"

#include "EditorRules.h"
#include "Host.h"
#include "LineColours.h"
#include "Options.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>

#include <algorithm>

namespace {

bool isColouring() {
    return Options().ColourCodeScript == 1;
}

} // namespace

struct SqlEditor::Lines {
    int position = 0; // of the first one
    QString text;     // as coloured, with paragraph separators
    std::vector<std::vector<ColourRun>> runs;
    Stretch inCapitals; // what differs from the text so far; in the document
};

SqlEditor::SqlEditor(Host& host, QWidget* parent)
    : RichTextBox(parent)
    , m_host(host) {
    connect(document(), &QTextDocument::undoCommandAdded, this, [this] { m_stepAdded = true; });
    connect(document(), &QTextDocument::contentsChange, this, &SqlEditor::noteEdit);
    connect(this, &RichTextBox::Change, this, &SqlEditor::changed);
}

SqlEditor::~SqlEditor() = default;

void SqlEditor::KeyPress(char16_t& KeyAscii) {
    Filter_Key(KeyAscii, m_enterPressed);
}

// Enter is a step of its own in the undo history, so that the handler's break can join it.
void SqlEditor::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter)
        return RichTextBox::keyPressEvent(event);
    QTextCursor step(document());
    step.beginEditBlock();
    RichTextBox::keyPressEvent(event);
    step.endEditBlock();
}

// --- changes -----------------------------------------------------------------------------------

void SqlEditor::Stretch::add(const Stretch& other) {
    *this = isEmpty() ? other : Stretch{std::min(begin, other.begin), std::max(end, other.end)};
}

void SqlEditor::noteEdit(int position, int removed, int added) {
    if (m_colouring)
        return;
    if (!m_edited.isEmpty() && position <= m_edited.end)
        m_edited.end = std::max(m_edited.end + added - removed, m_edited.begin);
    m_edited.add({position, position + added});
}

// A step through the history adds none, and there is or was something to redo. After a text was set
// anew there is nothing to undo.
bool SqlEditor::stepsThroughHistory() const {
    if (m_stepAdded)
        return false;
    return document()->isRedoAvailable() || (m_couldRedo && document()->isUndoAvailable());
}

void SqlEditor::changed() {
    if (!m_handling)
        handle(stepsThroughHistory() ? Letters::AsTheyAre : Letters::Capitals);
}

void SqlEditor::txtSQL_Change() {
    if (m_handling)
        return;
    m_host.setMousePointer(MousePointer::Hourglass);
    m_edited = {0, document()->characterCount() - 1};
    // To change a letter would be the end of what can be redone.
    handle(document()->isRedoAvailable() ? Letters::AsTheyAre : Letters::Capitals);
    m_host.setMousePointer(MousePointer::Default);
}

void SqlEditor::handle(Letters letters) {
    const QScopedValueRollback handling(m_handling, true);
    const bool edits = letters == Letters::Capitals;
    if (edits)
        fillWhenBlank();
    int caret = SelStart();
    if (edits && m_enterPressed)
        caret = breakAtTildes(caret);
    if (edits)
        takeStale();
    showLines(colouredLines(m_edited), letters);
    if (SelStart() != caret || SelLength() != 0)
        setSelStart(caret);
    m_enterPressed = false;
    m_edited = {};
    m_stepAdded = false;
    m_couldRedo = document()->isRedoAvailable();
    if (!hasFocus())
        setFocus();
}

void SqlEditor::replace(const Stretch& stretch, const QString& text, bool joinsLastStep) {
    QTextCursor cursor(document());
    joinsLastStep ? cursor.joinPreviousEditBlock() : cursor.beginEditBlock();
    cursor.setPosition(stretch.begin);
    cursor.setPosition(stretch.end, QTextCursor::KeepAnchor);
    cursor.insertText(text);
    cursor.endEditBlock();
}

void SqlEditor::fillWhenBlank() {
    if (blockCount() > 1 || !isBlankScript(document()->firstBlock().text()))
        return;
    // Undo brings back at once what was cleared; a text set blank has nothing to come back.
    if (document()->isUndoAvailable())
        replace({0, document()->characterCount() - 1}, emptyScript(), true);
    else
        setText(emptyScript());
    setSelStart(0);
}

// Gives the caret's new place. Undo never shows a placeholder.
int SqlEditor::breakAtTildes(int caret) {
    const QString text = document()->toRawText();
    const auto first = int(text.indexOf(u'~'));
    if (first < 0)
        return caret;
    const auto end = int(text.lastIndexOf(u'~') + 1);
    const int breaks = breaksPerTilde(text.indexOf(QChar::ParagraphSeparator, caret) < 0);
    QString instead = text.mid(first, end - first);
    instead.replace(u'~', QString(breaks, QChar::ParagraphSeparator));
    if (breaks > 1 && end == text.size())
        instead.chop(1); // the last mark only ends the document
    replace({first, end}, instead, true);
    const QStringView before = QStringView(text).left(std::max(caret - 1, 0));
    return caret + int(before.count(u'~')) * (breaks - 1);
}

// --- colours -----------------------------------------------------------------------------------

std::vector<ColourRun> SqlEditor::runsOfEdited(const QTextBlock& block,
                                               std::vector<ColourRun>) const {
    return isColouring() ? colourRuns(block.text()) : std::vector<ColourRun>();
}

SqlEditor::Lines SqlEditor::colouredLines(const Stretch& stretch) const {
    const int atEnd = document()->characterCount() - 1;
    const QTextBlock last = document()->findBlock(std::min(stretch.end, atEnd));
    QTextBlock block = document()->findBlock(std::min(stretch.begin, atEnd));
    Lines lines;
    lines.position = block.position();
    for (; block.isValid() && block.position() <= last.position(); block = block.next()) {
        if (!lines.runs.empty())
            lines.text += QChar::ParagraphSeparator;
        const qsizetype at = lines.text.size();
        lines.text += block.text();
        lines.runs.emplace_back();
        if (!isColouring())
            continue;
        lines.runs.back() = colourRuns(QStringView(lines.text).sliced(at));
        const ChangedPart part = putInCapitals(lines.text.data() + at, lines.runs.back());
        if (!part.isEmpty())
            lines.inCapitals.add(
                {block.position() + int(part.begin), block.position() + int(part.end)});
    }
    return lines;
}

void SqlEditor::showLines(Lines lines, Letters letters) {
    const Stretch& part = lines.inCapitals;
    if (!part.isEmpty() && letters == Letters::AsTheyAre)
        addStale(part);
    else if (!part.isEmpty())
        replace(part, lines.text.mid(part.begin - lines.position, part.end - part.begin), false);
    const QScopedValueRollback colouring(m_colouring, true);
    setRuns(document()->findBlock(lines.position), std::move(lines.runs));
}

void SqlEditor::addStale(const Stretch& stretch) {
    Stretch all = stretch;
    if (!m_stale.isNull())
        all.add({m_stale.selectionStart(), m_stale.selectionEnd()});
    m_stale = QTextCursor(document());
    m_stale.setPosition(all.begin);
    m_stale.setPosition(all.end, QTextCursor::KeepAnchor);
}

void SqlEditor::takeStale() {
    if (!m_stale.isNull())
        m_edited.add({m_stale.selectionStart(), m_stale.selectionEnd()});
    m_stale = QTextCursor();
}

// --- selection ---------------------------------------------------------------------------------

void SqlEditor::Select_Text() {
    const QFontMetrics metrics = fontMetrics();
    const auto fits = [&](const QString& line) {
        return line.size() * metrics.maxWidth() < width() ||
               (line.size() <= width() && metrics.horizontalAdvance(line) < width());
    };
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
        if (!fits(block.text()))
            return selectAll();
    moveCursor(QTextCursor::EndOfLine);
    moveCursor(QTextCursor::StartOfLine, QTextCursor::KeepAnchor);
}

void SqlEditor::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return RichTextBox::mouseDoubleClickEvent(event);
    Select_Text();
    event->accept();
}
