#pragma once

#include <QDialog>

struct ErrorReport;
class Host;
class QLineEdit;
class QPlainTextEdit;

// The error report: number, source trail and description of a trapped error, and the offer to mail
// them to support.
class frmError : public QDialog {
    Q_OBJECT
public:
    // host shows the fall-back message when no mail program starts; not owned.
    frmError(Host& host, const ErrorReport& report, QWidget* parent = nullptr);

private:
    void buildControls(const ErrorReport& report);
    // Closes the report only when the mail program took it, so that it can still be copied from.
    void mailReport();

    Host& m_host;
    QLineEdit* txtNo = nullptr;
    QLineEdit* txtSource = nullptr;
    QPlainTextEdit* txtDescription = nullptr;
};
