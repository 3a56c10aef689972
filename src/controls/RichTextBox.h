#pragma once

#include "EditTarget.h"
#include "RtfText.h"

#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextCursor>

// The editor: plain text in one type, parts of it in colours that come as RTF. Colours are laid
// over the blocks and are not part of the text, so that colouring costs little and undo is about
// the text alone. Always dark on light: the colours are made for that.
//
// Lines do not wrap, unless one is longer than a block may be (SoftBreaks.h): then it is kept as
// several blocks, and all lines wrap.
//
// Otherwise a paragraph is a block of the document. SelStart and SelLength count UTF-16 units of
// the text, a paragraph break as one; Text and SelText separate paragraphs by CR LF.
class RichTextBox : public QPlainTextEdit, public EditTarget {
    Q_OBJECT
public:
    explicit RichTextBox(QWidget* parent = nullptr);
    ~RichTextBox() override;

    // Any line end is a paragraph break when set. Setting begins a new undo history, drops the
    // colours and puts the caret at the beginning.
    QString Text() const;
    void setText(const QString& text);

    // Only paragraphs that differ are touched: the rest keeps its place on the screen, SelStart and
    // SelLength stay as far as the new text reaches, and undo takes the change back as one step.
    QString TextRTF() const;
    void setTextRTF(const QString& rtf);

    int SelStart() const;
    // Puts the caret there and selects nothing.
    void setSelStart(int start);
    int SelLength() const;
    void setSelLength(int length);
    QString SelText() const;
    // Replaces the selection as typing would, and can be undone.
    void setSelText(const QString& text);

    // The colours of one block. Colours move with edits of their own block.
    std::vector<ColourRun> runs(const QTextBlock& block) const;
    void setRuns(QTextBlock block, std::vector<ColourRun> runs);

    bool isReadOnly() const override { return QPlainTextEdit::isReadOnly(); }
    QString Copy() const override { return SelText(); }
    void Paste(const QString& text) override;
    void SelectAll() override { selectAll(); }
    void Undo() override;

Q_SIGNALS:
    // After each change of the text by whatever means; never for colours.
    void Change();

protected:
    // For an editor that filters what is typed: called for each character that a key or an input
    // method is about to insert (13 for Enter). It may be replaced, or swallowed by 0. Pasted text
    // does not pass here.
    virtual void KeyPress(char16_t& KeyAscii);

    // What setTextRTF does once the text was read.
    void setParagraphs(const std::vector<RtfParagraph>& paragraphs);
    // The colours of a block that was just edited and not laid out yet; moved are those that its
    // letters had. Setting them here saves laying it out again.
    virtual std::vector<ColourRun> runsOfEdited(const QTextBlock& block,
                                                std::vector<ColourRun> moved) const;
    // The colours of as many paragraphs from first on, painted at once.
    void setRuns(QTextBlock first, std::vector<std::vector<ColourRun>> runs);

    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;

    // A paragraph is kept as several blocks.
    bool hasSoftBreaks() const { return m_softBreaks > 0; }

private:
    void afterChange();
    void fill(const QString& text);
    void insertSplit(const QString& text);
    void splitGrown();
    void recount(int position, int removed, int added);
    void stepOverSoftBreaks(int from, QTextCursor::MoveOperation step, QTextCursor::MoveMode mode);
    void beforeDeleting(const QKeyEvent& event);
    void typeKey(QKeyEvent* event);
    int placeOf(int position) const;
    int positionOf(int place) const;
    void textEdited(int position, int removed, int added);
    std::vector<ColourRun> movedRuns(const QTextBlock& block, int from, int shift) const;
    void changeText(const std::vector<RtfParagraph>& paragraphs);
    bool showRuns(QTextBlock block, std::vector<ColourRun> runs);
    void repaintRuns(int position, int length);
    QString filtered(const QString& typed);

    bool m_colouring = false;
    bool m_changed = false; // the text, since Change() was last emitted
    bool m_filling = false; // in several steps; the change is told at the end
    bool m_grown = false;   // a block that is too long was met
    int m_blocks = 1;
    int m_softBreaks = 0;
};
