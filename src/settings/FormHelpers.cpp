#include "FormHelpers.h"

#include "modFunctions.h"

#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QValidator>

#include <algorithm>

namespace {

class DigitValidator : public QValidator {
public:
    using QValidator::QValidator;
    State validate(QString& text, int&) const override {
        const bool digits =
            std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c >= u'0' && c <= u'9'; });
        return digits ? Acceptable : Invalid;
    }
};

// A key that types something, in contrast to Tab, Enter, Escape, the arrows and Ctrl chords.
bool isTypedCharacter(const QKeyEvent& event) {
    const QString typed = event.text();
    return !typed.isEmpty() && typed[0].isPrint();
}

} // namespace

void Select_Text(QLineEdit& field) {
    const int length = int(field.text().size());
    // Both ways leave the caret at the start, so that the beginning of a long text is seen.
    field.setSelection(length, -length);
}

void SelectingEdit::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    Select_Text(*this);
}

DigitBox::DigitBox(QWidget* parent)
    : QLineEdit(parent) {
    setValidator(new DigitValidator(this));
}

void DigitBox::keyPressEvent(QKeyEvent* event) {
    if (isTypedCharacter(*event) && Digit_Filter(event->text()[0].unicode()) == 0) {
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

// A dropped file is the main window's affair.
void DigitBox::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls())
        event->ignore();
    else
        QLineEdit::dragEnterEvent(event);
}
