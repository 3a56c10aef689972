#include "RichTextBox.h"

#include "RtfReader.h"

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
    return withLineEnds(document()->toRawText());
}

void RichTextBox::setText(const QString& text) {
    m_overlong = false;
    setPlainText(text);
}

QString RichTextBox::TextRTF() const {
    std::vector<RtfParagraph> paragraphs;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
        paragraphs.push_back({block.text(), runs(block)});
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
    const QString present = document()->toRawText();
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
    cursor.setPosition(int(from));
    cursor.setPosition(int(to), QTextCursor::KeepAnchor);
    cursor.insertText(wanted.mid(from, newEnd - from));
    cursor.endEditBlock();
}

void RichTextBox::afterChange() {
    const LineWrapMode mode = m_overlong ? WidgetWidth : NoWrap;
    if (mode != lineWrapMode())
        setLineWrapMode(mode);
    if (std::exchange(m_changed, false))
        Q_EMIT Change();
}

// --- selection ---------------------------------------------------------------------------------

int RichTextBox::SelStart() const {
    return textCursor().selectionStart();
}

void RichTextBox::setSelStart(int start) {
    QTextCursor cursor = textCursor();
    cursor.setPosition(std::clamp(start, 0, document()->characterCount() - 1));
    setTextCursor(cursor);
}

int RichTextBox::SelLength() const {
    return textCursor().selectionEnd() - textCursor().selectionStart();
}

void RichTextBox::setSelLength(int length) {
    QTextCursor cursor = textCursor();
    const int start = cursor.selectionStart();
    const int most = document()->characterCount() - 1 - start;
    cursor.setPosition(start);
    cursor.setPosition(start + std::clamp(length, 0, most), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

QString RichTextBox::SelText() const {
    return withLineEnds(textCursor().selectedText());
}

void RichTextBox::setSelText(const QString& text) {
    textCursor().insertText(text);
    ensureCursorVisible();
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
    for (std::vector<ColourRun>& ofBlock : runs) {
        if (!block.isValid())
            break;
        if (showRuns(block, std::move(ofBlock))) {
            firstChanged = firstChanged < 0 ? block.position() : firstChanged;
            endChanged = block.position() + block.length();
        }
        block = block.next();
    }
    if (firstChanged >= 0)
        repaintRuns(firstChanged, endChanged - firstChanged);
}

void RichTextBox::textEdited(int position, int removed, int added) {
    if (m_colouring || (removed == 0 && added == 0))
        return;
    m_changed = true;
    const QTextBlock block = document()->findBlock(position);
    if (document()->characterCount() <= longestUnwrapped)
        m_overlong = false;
    for (QTextBlock b = block; b.isValid() && b.position() <= position + added; b = b.next())
        m_overlong = m_overlong || b.length() > longestUnwrapped;
    const int blocksBefore = std::exchange(m_blocks, blockCount());
    const bool oneBlock = blocksBefore == m_blocks;
    // Beyond a new or vanished paragraph break nothing stays where it was.
    const int shift = oneBlock ? added - removed : -block.length();
    showRuns(block, runsOfEdited(block, movedRuns(block, position - block.position(), shift)));
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
    if (isReadOnly() || !isTyped(*event)) {
        QPlainTextEdit::keyPressEvent(event);
        return;
    }
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const QString typed = isEnter ? QString(QChar(enter)) : event->text();
    const QString passed = filtered(typed);
    // Shift+Enter would put a line separator into the paragraph.
    const bool shiftEnter = isEnter && event->modifiers().testFlag(Qt::ShiftModifier);
    if (passed == typed && !shiftEnter) {
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
