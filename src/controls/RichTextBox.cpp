#include "RichTextBox.h"

#include "RtfReader.h"
#include "SoftBreaks.h"

#include <QFontDatabase>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QTextLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int tabColumns = 8;
constexpr char16_t enter = 13;

class BlockRuns : public QTextBlockUserData {
public:
    explicit BlockRuns(std::vector<ColourRun> runs)
        : runs(std::move(runs)) {}
    std::vector<ColourRun> runs;
};

// A paragraph break becomes CR LF; QTextDocument's own conversion would lose no-break spaces.
QString withLineEnds(QString raw) {
    return raw.replace(QChar::ParagraphSeparator, "\r\n"_L1);
}

// Qt's cursor takes these for paragraph breaks wherever they stand.
bool breaksParagraph(QChar c) {
    return c == QChar::ParagraphSeparator || c == u'\n' || c == u'\r' || c == QChar(0xfdd0) ||
           c == QChar(0xfdd1);
}

bool isTyped(const QKeyEvent& event) {
    const auto modifiers =
        event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier | Qt::GroupSwitchModifier);
    const bool altGr = modifiers == (Qt::ControlModifier | Qt::AltModifier);
    if (event.text().isEmpty() || (modifiers != Qt::NoModifier && !altGr))
        return false;
    return event.text().at(0).isPrint() || event.text().at(0).isSurrogate() ||
           event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace

RichTextBox::RichTextBox(QWidget* parent)
    : QPlainTextEdit(parent) {
    setAccessibleName(tr("Editor"));
    setLineWrapMode(NoWrap);
    setWordWrapMode(QTextOption::WrapAnywhere); // an overlong line by words takes twice as long
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setTabStopDistance(fontMetrics().horizontalAdvance(u' ') * tabColumns);
    QPalette light = palette();
    light.setColor(QPalette::Base, Qt::white);
    light.setColor(QPalette::Text, Qt::black);
    light.setColor(QPalette::PlaceholderText, Qt::darkGray);
    setPalette(light);
    connect(document(), &QTextDocument::contentsChange, this, &RichTextBox::textEdited);
    connect(this, &QPlainTextEdit::textChanged, this, &RichTextBox::afterChange);
}

RichTextBox::~RichTextBox() = default;

// --- text --------------------------------------------------------------------------------------

QString RichTextBox::Text() const {
    if (hasSoftBreaks())
        return withLineEnds(SoftBreaks::text(*document(), 0, document()->characterCount() - 1));
    return withLineEnds(document()->toRawText());
}

void RichTextBox::setText(const QString& text) {
    {
        const QScopedValueRollback filling(m_filling, true);
        fill(text);
    }
    afterChange();
}

void RichTextBox::fill(const QString& text) {
    if (hasSoftBreaks()) { // the format of one at the caret would become that of the new text
        QTextCursor all(document());
        all.select(QTextCursor::Document);
        all.removeSelectedText();
    }
    if (!SoftBreaks::isNeeded(text))
        return setPlainText(text);
    setPlainText(QString());
    document()->setUndoRedoEnabled(false);
    insertSplit(text);
    document()->setUndoRedoEnabled(true);
    setSelStart(0);
}

QString RichTextBox::TextRTF() const {
    std::vector<RtfParagraph> paragraphs;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (!SoftBreaks::continuesParagraph(block))
            paragraphs.emplace_back();
        RtfParagraph& paragraph = paragraphs.back();
        SoftBreaks::appendPart(paragraph.runs, runs(block), int(paragraph.text.size()));
        paragraph.text += block.text();
    }
    return writeRtf(paragraphs);
}

void RichTextBox::setTextRTF(const QString& rtf) {
    setParagraphs(RtfReader::read(rtf));
}

void RichTextBox::setParagraphs(const std::vector<RtfParagraph>& paragraphs) {
    const int start = SelStart();
    const int length = SelLength();
    changeText(paragraphs);

    std::vector<std::vector<ColourRun>> runs;
    runs.reserve(paragraphs.size());
    for (const RtfParagraph& paragraph : paragraphs)
        runs.push_back(paragraph.runs);
    setRuns(document()->begin(), std::move(runs));
    if (SelStart() != start || SelLength() != length) {
        setSelStart(start);
        setSelLength(length);
    }
}

// Replaces what lies between the first and the last character that differ.
void RichTextBox::changeText(const std::vector<RtfParagraph>& paragraphs) {
    QString wanted;
    for (const RtfParagraph& paragraph : paragraphs) {
        if (&paragraph != &paragraphs.front())
            wanted += QChar::ParagraphSeparator;
        const qsizetype from = wanted.size();
        wanted += paragraph.text;
        std::replace_if(wanted.begin() + from, wanted.end(), breaksParagraph, u' ');
    }
    const QString present = SoftBreaks::text(*document(), 0, document()->characterCount() - 1);
    const auto [differs, instead] =
        std::mismatch(present.cbegin(), present.cend(), wanted.cbegin(), wanted.cend());
    if (differs == present.cend() && instead == wanted.cend())
        return;
    const auto sameEnd = std::mismatch(present.crbegin(), std::make_reverse_iterator(differs),
                                       wanted.crbegin(), std::make_reverse_iterator(instead));
    const qsizetype from = differs - present.cbegin();
    const qsizetype to = sameEnd.first.base() - present.cbegin();
    const qsizetype newEnd = sameEnd.second.base() - wanted.cbegin();

    QTextCursor cursor(document());
    cursor.beginEditBlock();
    const int begin = positionOf(int(from));
    cursor.setPosition(begin);
    cursor.setPosition(positionOf(int(to)), QTextCursor::KeepAnchor);
    cursor.insertText(wanted.mid(from, newEnd - from), QTextCharFormat());
    SoftBreaks::split(cursor, begin, cursor.position());
    cursor.endEditBlock();
}

void RichTextBox::afterChange() {
    if (m_filling)
        return;
    if (std::exchange(m_grown, false))
        splitGrown();
    const LineWrapMode mode = hasSoftBreaks() ? WidgetWidth : NoWrap;
    if (mode != lineWrapMode())
        setLineWrapMode(mode);
    if (std::exchange(m_changed, false))
        Q_EMIT Change();
}

// By typing, for what is inserted at once is split at once. Undo and redo bring nothing back that
// was too long.
void RichTextBox::splitGrown() {
    if (document()->isRedoAvailable())
        return;
    const QScopedValueRollback filling(m_filling, true);
    QTextCursor cursor(document());
    cursor.joinPreviousEditBlock();
    SoftBreaks::split(cursor, 0, document()->characterCount());
    cursor.endEditBlock();
}

int RichTextBox::placeOf(int position) const {
    return hasSoftBreaks() ? position - SoftBreaks::countBefore(*document(), position) : position;
}

int RichTextBox::positionOf(int place) const {
    return hasSoftBreaks() ? SoftBreaks::positionOf(*document(), place) : place;
}

// --- selection ---------------------------------------------------------------------------------

int RichTextBox::SelStart() const {
    return placeOf(textCursor().selectionStart());
}

void RichTextBox::setSelStart(int start) {
    QTextCursor cursor = textCursor();
    const int end = document()->characterCount() - 1;
    cursor.setPosition(std::clamp(positionOf(std::max(start, 0)), 0, end));
    setTextCursor(cursor);
}

int RichTextBox::SelLength() const {
    return placeOf(textCursor().selectionEnd()) - placeOf(textCursor().selectionStart());
}

void RichTextBox::setSelLength(int length) {
    QTextCursor cursor = textCursor();
    const int start = cursor.selectionStart();
    const int end = document()->characterCount() - 1;
    cursor.setPosition(start);
    cursor.setPosition(
        std::clamp(positionOf(placeOf(start) + std::clamp(length, 0, end)), start, end),
        QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

QString RichTextBox::SelText() const {
    const QTextCursor cursor = textCursor();
    if (hasSoftBreaks())
        return withLineEnds(
            SoftBreaks::text(*document(), cursor.selectionStart(), cursor.selectionEnd()));
    return withLineEnds(cursor.selectedText());
}

void RichTextBox::setSelText(const QString& text) {
    if (text.size() >= SoftBreaks::longestBlock)
        insertSplit(text);
    else
        textCursor().insertText(text, QTextCharFormat());
    ensureCursorVisible();
}

// In one step, so that no block is laid out that is too long.
void RichTextBox::insertSplit(const QString& text) {
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock();
    const int begin = cursor.selectionStart();
    cursor.insertText(text, QTextCharFormat());
    SoftBreaks::split(cursor, begin, cursor.position());
    cursor.endEditBlock();
}

void RichTextBox::Paste(const QString& text) {
    if (!isReadOnly())
        setSelText(text);
}

void RichTextBox::Undo() {
    if (!isReadOnly() && document()->isUndoAvailable())
        undo();
}

// --- colours -----------------------------------------------------------------------------------

std::vector<ColourRun> RichTextBox::runs(const QTextBlock& block) const {
    const auto* data = static_cast<const BlockRuns*>(block.userData());
    return data ? data->runs : std::vector<ColourRun>();
}

bool RichTextBox::showRuns(QTextBlock block, std::vector<ColourRun> runs) {
    const auto* data = static_cast<const BlockRuns*>(block.userData());
    if (data ? data->runs == runs : runs.empty())
        return false;
    QList<QTextLayout::FormatRange> formats;
    formats.reserve(qsizetype(runs.size()));
    for (const ColourRun& run : runs) {
        QTextLayout::FormatRange range;
        range.start = run.start;
        range.length = run.length;
        range.format.setForeground(QColor::fromRgb(run.colour));
        formats.append(range);
    }
    const QScopedValueRollback colouring(m_colouring, true);
    block.setUserData(new BlockRuns(std::move(runs)));
    block.layout()->setFormats(formats);
    return true;
}

void RichTextBox::repaintRuns(int position, int length) {
    const QScopedValueRollback colouring(m_colouring, true);
    document()->markContentsDirty(position, length);
}

void RichTextBox::setRuns(QTextBlock block, std::vector<ColourRun> runs) {
    if (showRuns(block, std::move(runs)))
        repaintRuns(block.position(), block.length());
}

void RichTextBox::setRuns(QTextBlock first, std::vector<std::vector<ColourRun>> runs) {
    int firstChanged = -1;
    int endChanged = 0;
    QTextBlock block = first;
    for (const std::vector<ColourRun>& ofParagraph : runs) {
        int place = 0; // in the paragraph
        for (bool more = block.isValid(); more; more = SoftBreaks::continuesParagraph(block)) {
            const int length = block.length() - 1;
            if (showRuns(block, SoftBreaks::runsOfPart(ofParagraph, place, length))) {
                firstChanged = firstChanged < 0 ? block.position() : firstChanged;
                endChanged = block.position() + block.length();
            }
            place += length;
            block = block.next();
            if (!block.isValid())
                break;
        }
    }
    if (firstChanged >= 0)
        repaintRuns(firstChanged, endChanged - firstChanged);
}

void RichTextBox::textEdited(int position, int removed, int added) {
    if (m_colouring || (removed == 0 && added == 0))
        return;
    m_changed = true;
    const QTextBlock block = document()->findBlock(position);
    recount(position, removed, added);
    const int blocksBefore = std::exchange(m_blocks, blockCount());
    const bool oneBlock = blocksBefore == m_blocks;
    // Beyond a new or vanished paragraph break nothing stays where it was.
    const int shift = oneBlock ? added - removed : -block.length();
    showRuns(block, runsOfEdited(block, movedRuns(block, position - block.position(), shift)));
}

void RichTextBox::recount(int position, int removed, int added) {
    bool metSoftBreak = hasSoftBreaks() && removed > 0;
    for (QTextBlock block = document()->findBlock(position);
         block.isValid() && block.position() <= position + added; block = block.next()) {
        m_grown = m_grown || block.length() > SoftBreaks::longestBlock;
        metSoftBreak = metSoftBreak || SoftBreaks::continuesParagraph(block);
    }
    if (metSoftBreak)
        m_softBreaks = SoftBreaks::count(*document());
}

std::vector<ColourRun> RichTextBox::movedRuns(const QTextBlock& block, int from, int shift) const {
    std::vector<ColourRun> moved = runs(block);
    const int length = block.length() - 1;
    const auto place = [&](int at) { return at <= from ? at : std::max(from, at + shift); };
    for (ColourRun& run : moved) {
        const int end = std::clamp(place(run.start + run.length), 0, length);
        run.start = std::min(place(run.start), end);
        run.length = end - run.start;
    }
    std::erase_if(moved, [](const ColourRun& run) { return run.length == 0; });
    return moved;
}

std::vector<ColourRun> RichTextBox::runsOfEdited(const QTextBlock&,
                                                 std::vector<ColourRun> moved) const {
    return moved;
}

// --- typing ------------------------------------------------------------------------------------

void RichTextBox::KeyPress(char16_t&) {}

QString RichTextBox::filtered(const QString& typed) {
    QString result;
    for (const QChar c : typed) {
        char16_t code = c.unicode();
        KeyPress(code);
        if (code != 0)
            result += QChar(code);
    }
    return result;
}

void RichTextBox::keyPressEvent(QKeyEvent* event) {
    if (!isReadOnly() && isTyped(*event))
        return typeKey(event);
    beforeDeleting(*event);
    const int from = textCursor().position();
    QPlainTextEdit::keyPressEvent(event);
    const struct {
        QKeySequence::StandardKey key;
        QTextCursor::MoveOperation step;
        QTextCursor::MoveMode mode;
    } moves[] = {
        {QKeySequence::MoveToNextChar, QTextCursor::NextCharacter, QTextCursor::MoveAnchor},
        {QKeySequence::MoveToPreviousChar, QTextCursor::PreviousCharacter, QTextCursor::MoveAnchor},
        {QKeySequence::SelectNextChar, QTextCursor::NextCharacter, QTextCursor::KeepAnchor},
        {QKeySequence::SelectPreviousChar, QTextCursor::PreviousCharacter, QTextCursor::KeepAnchor},
    };
    for (const auto& move : moves) {
        if (hasSoftBreaks() && event->matches(move.key))
            stepOverSoftBreaks(from, move.step, move.mode);
    }
}

// A character further when the caret has only passed a break that is no part of the text.
void RichTextBox::stepOverSoftBreaks(int from, QTextCursor::MoveOperation step,
                                     QTextCursor::MoveMode mode) {
    QTextCursor cursor = textCursor();
    if (cursor.position() == from || placeOf(cursor.position()) != placeOf(from))
        return;
    while (placeOf(cursor.position()) == placeOf(from) && cursor.movePosition(step, mode))
        ;
    setTextCursor(cursor);
}

// From the side of a soft break on which the character is that is to be deleted.
void RichTextBox::beforeDeleting(const QKeyEvent& event) {
    const bool backwards = event.key() == Qt::Key_Backspace;
    QTextCursor cursor = textCursor();
    if (!hasSoftBreaks() || cursor.hasSelection() || (!backwards && event.key() != Qt::Key_Delete))
        return;
    const auto atBreak = [&] {
        return backwards
                   ? cursor.atBlockStart() && SoftBreaks::continuesParagraph(cursor.block())
                   : cursor.atBlockEnd() && SoftBreaks::continuesParagraph(cursor.block().next());
    };
    while (atBreak())
        cursor.movePosition(backwards ? QTextCursor::PreviousCharacter
                                      : QTextCursor::NextCharacter);
    setTextCursor(cursor);
}

void RichTextBox::typeKey(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const QString typed = isEnter ? QString(QChar(enter)) : event->text();
    const QString passed = filtered(typed);
    // Shift+Enter would put a line separator into the paragraph.
    const bool shiftEnter = isEnter && event->modifiers().testFlag(Qt::ShiftModifier);
    if (passed == typed && !shiftEnter && !hasSoftBreaks()) {
        QPlainTextEdit::keyPressEvent(event);
        return;
    }
    setSelText(passed);
    event->accept();
}

void RichTextBox::inputMethodEvent(QInputMethodEvent* event) {
    if (event->commitString().isEmpty()) {
        QPlainTextEdit::inputMethodEvent(event);
        return;
    }
    QInputMethodEvent passed(event->preeditString(), event->attributes());
    passed.setCommitString(filtered(event->commitString()), event->replacementStart(),
                           event->replacementLength());
    QPlainTextEdit::inputMethodEvent(&passed);
}

QMimeData* RichTextBox::createMimeDataFromSelection() const {
    auto* data = new QMimeData;
    data->setText(SelText().replace("\r\n"_L1, "\n"_L1));
    return data;
}

// A dropped file is the main window's affair.
bool RichTextBox::canInsertFromMimeData(const QMimeData* source) const {
    return !source->hasUrls() && QPlainTextEdit::canInsertFromMimeData(source);
}

void RichTextBox::insertFromMimeData(const QMimeData* source) {
    if (!isReadOnly() && source->hasText())
        setSelText(source->text());
}
