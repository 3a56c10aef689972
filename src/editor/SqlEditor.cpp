#include "SqlEditor.h"

#include "EditorRules.h"
#include "Host.h"
#include "LineColours.h"
#include "Options.h"
#include "SoftBreaks.h"

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
    QString text;     // as coloured, with a separator wherever the document has one
    std::vector<std::vector<ColourRun>> runs;
    // What differs from the text so far, in the document: in each block, and from first to last.
    std::vector<Stretch> parts;
    Stretch inCapitals;
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
    int caret = textCursor().selectionStart();
    if (edits && m_enterPressed)
        caret = breakAtTildes(caret);
    if (edits)
        takeStale();
    showLines(colouredLines(m_edited), letters);
    putCaret(caret);
    m_enterPressed = false;
    m_edited = {};
    m_stepAdded = false;
    m_couldRedo = document()->isRedoAvailable();
    if (!hasFocus())
        setFocus();
}

void SqlEditor::putCaret(int position) {
    QTextCursor cursor = textCursor();
    if (cursor.position() == position && !cursor.hasSelection())
        return;
    cursor.setPosition(position);
    setTextCursor(cursor);
}

void SqlEditor::replace(const Stretch& stretch, const QString& text, bool joinsLastStep) {
    QTextCursor cursor(document());
    joinsLastStep ? cursor.joinPreviousEditBlock() : cursor.beginEditBlock();
    cursor.setPosition(stretch.begin);
    cursor.setPosition(stretch.end, QTextCursor::KeepAnchor);
    cursor.insertText(text, QTextCharFormat());
    cursor.endEditBlock();
}

// Soft breaks stay where they are.
void SqlEditor::replaceLetters(const Lines& lines) {
    const auto textOf = [&](const Stretch& part) {
        return lines.text.mid(part.begin - lines.position, part.end - part.begin);
    };
    if (!hasSoftBreaks())
        return replace(lines.inCapitals, textOf(lines.inCapitals), false);
    QTextCursor step(document());
    step.beginEditBlock();
    for (const Stretch& part : lines.parts)
        replace(part, textOf(part), false);
    step.endEditBlock();
}

bool SqlEditor::isBlank() const {
    return (blockCount() == 1 || hasSoftBreaks()) &&
           isBlankScript(document()->firstBlock().text()) && isBlankScript(Text());
}

void SqlEditor::fillWhenBlank() {
    if (!isBlank())
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
    if (!text.contains(u'~'))
        return caret;
    const QTextBlock lastOfLine = SoftBreaks::lastOfParagraph(document()->findBlock(caret));
    const int breaks = breaksPerTilde(lastOfLine == document()->lastBlock());
    QTextCursor cursor(document());
    cursor.joinPreviousEditBlock();
    for (qsizetype at = text.lastIndexOf(u'~'); at >= 0;
         at = QStringView(text).left(at).lastIndexOf(u'~')) {
        // The last mark only ends the document.
        const bool endsDocument = breaks > 1 && at + 1 == text.size();
        cursor.setPosition(int(at));
        cursor.setPosition(int(at) + 1, QTextCursor::KeepAnchor);
        cursor.insertText(QString(endsDocument ? breaks - 1 : breaks, QChar::ParagraphSeparator),
                          QTextCharFormat());
    }
    cursor.endEditBlock();
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
    const int end =
        SoftBreaks::lastOfParagraph(document()->findBlock(std::min(stretch.end, atEnd))).position();
    QTextBlock block =
        SoftBreaks::firstOfParagraph(document()->findBlock(std::min(stretch.begin, atEnd)));
    Lines lines;
    lines.position = block.position();
    while (block.isValid() && block.position() <= end)
        block = addLine(lines, block);
    return lines;
}

// Gives the next line's first block.
QTextBlock SqlEditor::addLine(Lines& lines, const QTextBlock& first) {
    QString line = first.text();
    QTextBlock block = first.next();
    for (; block.isValid() && SoftBreaks::continuesParagraph(block); block = block.next())
        line += block.text();
    lines.runs.emplace_back();
    ChangedPart changed;
    if (isColouring()) {
        lines.runs.back() = colourRuns(line);
        changed = putInCapitals(line.data(), lines.runs.back());
    }
    qsizetype place = 0; // in the line
    for (QTextBlock part = first; part != block; part = part.next()) {
        const int length = part.length() - 1;
        if (part.position() > lines.position)
            lines.text += QChar::ParagraphSeparator;
        lines.text += QStringView(line).mid(place, length);
        const qsizetype begin = std::max(changed.begin, place) - place;
        const qsizetype end = std::min<qsizetype>(changed.end, place + length) - place;
        if (begin < end) {
            lines.parts.push_back({part.position() + int(begin), part.position() + int(end)});
            lines.inCapitals.add(lines.parts.back());
        }
        place += length;
    }
    return block;
}

void SqlEditor::showLines(Lines lines, Letters letters) {
    const Stretch& part = lines.inCapitals;
    if (!part.isEmpty() && letters == Letters::AsTheyAre)
        addStale(part);
    else if (!part.isEmpty())
        replaceLetters(lines);
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
