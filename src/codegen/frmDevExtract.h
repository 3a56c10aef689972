#pragma once

#include <QDialog>

class QPlainTextEdit;

// "Developer Code Generator": shows generated source text, from which parts can be copied.
class frmDevExtract : public QDialog {
    Q_OBJECT
public:
    explicit frmDevExtract(const QString& code, QWidget* parent);

    QPlainTextEdit* txtCode;
};
