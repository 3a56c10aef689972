#pragma once

#include "Host.h"

#include <QDialog>

// Asks whether a changed query is to be saved while several may be closed.
class frmSavePrompt : public QDialog {
    Q_OBJECT
public:
    frmSavePrompt(const QString& message, QWidget* parent);

    // Cancel until a button was chosen: leaving by Escape or the frame is a cancel.
    Answer Response = Answer::Cancel;
};
