#pragma once

#include <QLineEdit>

// Selects the field's whole text and shows its beginning. A text that fits its field is selected
// from the end backwards, as End and Shift+Home do; a longer one from the start.
void Select_Text(QLineEdit& field);

// A text box that selects its text when it gets the focus.
class SelectingEdit : public QLineEdit {
    Q_OBJECT
public:
    using QLineEdit::QLineEdit;

protected:
    void focusInEvent(QFocusEvent* event) override;
};

// A number box: typed characters other than digits and backspace are swallowed, and nothing but
// digits can be pasted.
class DigitBox : public QLineEdit {
    Q_OBJECT
public:
    explicit DigitBox(QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
};
