#include "frmLogin.h"

#include "FormHelpers.h"
#include "FormParts.h"
#include "Version.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>

using namespace Qt::StringLiterals;

frmLogin::frmLogin(QWidget* parent)
    : QDialog(parent) {
    setObjectName(u"frmLogin"_s);
    setWindowTitle(QString::fromLatin1(QUILLMATE_NAME) + u" Database Login"_s);
    buildControls();
    Centre_Form(*this);
}

void frmLogin::buildControls() {
    txtUserId = named(new SelectingEdit, u"txtUserId"_s, u"User name"_s);
    txtPassword = named(new SelectingEdit, u"txtPassword"_s, u"Password"_s);
    txtServiceName = named(new SelectingEdit, u"txtServiceName"_s, u"Service name"_s);
    txtPassword->setEchoMode(QLineEdit::Password);
    constexpr int fieldWidth = 260;
    txtUserId->setMinimumWidth(fieldWidth);

    auto* buttons = new QDialogButtonBox;
    auto* cmdOK = named(buttons->addButton(QDialogButtonBox::Ok), u"cmdOK"_s, u"OK"_s);
    auto* cmdCancel =
        named(buttons->addButton(QDialogButtonBox::Cancel), u"cmdCancel"_s, u"Cancel"_s);
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, [this] {
        Cancelled = false;
        accept();
    });
    connect(cmdCancel, &QPushButton::clicked, this, &frmLogin::reject);

    auto* layout = new QFormLayout(this);
    layout->addRow(u"&User Name:"_s, txtUserId);
    layout->addRow(u"&Password:"_s, txtPassword);
    layout->addRow(u"&Service Name:"_s, txtServiceName);
    layout->addRow(buttons);
}

void frmLogin::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    txtUserId->setFocus();
}
