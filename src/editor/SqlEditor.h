#pragma once

#include "RichTextBox.h"

#include <QTextCursor>

class Host;

// txtSQL: colours keywords and operators while the person types and puts keywords in capitals. What
// it shows after a change is what Rebuild_Script makes of the changed text, but only lines that
// changed are worked on.
//
// Undo and redo bring a text back letter by letter, also where a keyword had been put in capitals
// since; such lines are coloured at once and get their capitals with the next other change.
//
// Whether keywords are coloured is the option ColourCodeScript at the time of each change.
class SqlEditor : public RichTextBox {
    Q_OBJECT
public:
    // host is not owned and outlives the editor.
    explicit SqlEditor(Host& host, QWidget* parent = nullptr);
    ~SqlEditor() override;

    // The whole text anew, with the options as they are now: for a window that becomes active.
    void txtSQL_Change();

    // Selects the current line when all lines are narrower than the editor, else everything.
    void Select_Text();

protected:
    void KeyPress(char16_t& KeyAscii) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    std::vector<ColourRun> runsOfEdited(const QTextBlock& block,
                                        std::vector<ColourRun> moved) const override;

private:
    // Places in the document, both of them touched.
    struct Stretch {
        int begin = 0;
        int end = -1;
        bool isEmpty() const { return end < begin; }
        void add(const Stretch& other);
    };
    enum class Letters { Capitals, AsTheyAre };
    struct Lines; // lines of the text with their colours

    void noteEdit(int position, int removed, int added);
    void changed();
    void handle(Letters letters);
    bool stepsThroughHistory() const;
    void fillWhenBlank();
    int breakAtTildes(int caret);
    Lines colouredLines(const Stretch& stretch) const;
    static QTextBlock addLine(Lines& lines, const QTextBlock& first);
    void showLines(Lines lines, Letters letters);
    void putCaret(int position);
    bool isBlank() const;
    void addStale(const Stretch& stretch);
    void takeStale();
    void replace(const Stretch& stretch, const QString& text, bool joinsLastStep);
    void replaceLetters(const Lines& lines);

    Host& m_host;
    bool m_enterPressed = false;
    bool m_handling = false;  // the handler's own changes
    bool m_colouring = false; // colours only: no edit
    Stretch m_edited;
    QTextCursor m_stale;      // around what undo or redo brought back in small letters, or null
    bool m_stepAdded = false; // to the undo history, since the last change
    bool m_couldRedo = false; // before the last change
};
