#pragma once

class Host;
class QString;
class QWidget;

// The edit commands on the control that has the focus in the active query window. A null control,
// or one that holds no text, is left alone.
namespace EditCommands {

void Cut(QWidget* control, Host& host);
void Copy(QWidget* control, Host& host);
void Paste(QWidget* control, Host& host);
void SelectAll(QWidget* control);
void Undo(QWidget* control);

// Prints the control's selection or whole text; a control without rich text is refused with a
// message. title: of the print job.
void Print(QWidget* control, const QString& title, Host& host);

} // namespace EditCommands
