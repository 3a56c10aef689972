#pragma once

#include <QDialog>

class QLineEdit;

// Asks for user name, password and service name. It never touches the database; after it was shown
// the caller reads Cancelled and the texts.
class frmLogin : public QDialog {
    Q_OBJECT
public:
    explicit frmLogin(QWidget* parent = nullptr);

    QLineEdit* txtUserId = nullptr;
    QLineEdit* txtPassword = nullptr;
    QLineEdit* txtServiceName = nullptr;

    // True until cmdOK was chosen: leaving by Escape or the frame is a cancel.
    bool Cancelled = true;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void buildControls();
};
