#pragma once

#include <QDialog>

class DigitBox;
class Host;
class QCheckBox;
class QComboBox;
class QLineEdit;
class QTabWidget;
struct OptionsRecord;

// Edits the options. New query windows follow them; an open one takes over the colouring alone,
// when it is activated the next time.
class frmOptions : public QDialog {
    Q_OBJECT
public:
    // host reports a file that cannot be written; not owned. path: of the options file.
    frmOptions(Host& host, QString path, QWidget* parent = nullptr);

    // True until cmdOK has saved: leaving by Escape or the frame is a cancel.
    bool Cancelled = true;

private:
    QWidget* generalPage();
    QWidget* queryPage();
    void buildButtons(class QVBoxLayout& layout);
    void Load();
    OptionsRecord entered() const;
    // Keeps the dialog open, and the options as they were, when the file cannot be written.
    void cmdOK_Click();

    Host& m_host;
    QString m_path;
    QComboBox* cboResults;
    QCheckBox* chkShowResults;
    QCheckBox* chkShowPlan;
    DigitBox* txtMaxRecords;
    QCheckBox* chkColourCode;
    QLineEdit* txtDefaultText;
};
