#include "frmError.h"

#include "ErrorReport.h"
#include "FormParts.h"
#include "Host.h"
#include "MailOpener.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

QLineEdit* readOnlyField(const QString& text) {
    auto* field = new QLineEdit(text);
    field->setReadOnly(true);
    field->setCursorPosition(0); // a long trail shows its beginning
    return field;
}

QPlainTextEdit* readOnlyPane(const QString& text) {
    auto* pane = new QPlainTextEdit(text);
    pane->setReadOnly(true);
    pane->setTabChangesFocus(true);
    return pane;
}

} // namespace

frmError::frmError(Host& host, const ErrorReport& report, QWidget* parent)
    : QDialog(parent)
    , m_host(host) {
    setObjectName(u"frmError"_s);
    setWindowTitle(u"Error Report"_s);
    buildControls(report);
    constexpr QSize startSize(520, 300);
    resize(startSize);
    Centre_Form(*this);
}

void frmError::buildControls(const ErrorReport& report) {
    txtNo = named(readOnlyField(report.number), u"txtNo"_s, u"Error number"_s);
    txtSource = named(readOnlyField(report.source), u"txtSource"_s, u"Error source"_s);
    txtDescription =
        named(readOnlyPane(report.description), u"txtDescription"_s, u"Error description"_s);

    auto* buttons = new QDialogButtonBox;
    auto* cmdOK = named(buttons->addButton(u"&Mail Report"_s, QDialogButtonBox::ActionRole),
                        u"cmdOK"_s, u"Mail the report to support"_s);
    auto* cmdCancel = named(buttons->addButton(u"&Close"_s, QDialogButtonBox::RejectRole),
                            u"cmdCancel"_s, u"Close without sending"_s);
    connect(cmdOK, &QPushButton::clicked, this, &frmError::mailReport);
    connect(cmdCancel, &QPushButton::clicked, this, &frmError::reject);

    auto* layout = new QFormLayout;
    layout->addRow(u"&Number:"_s, txtNo);
    layout->addRow(u"&Source:"_s, txtSource);
    layout->addRow(u"&Description:"_s, txtDescription);
    auto* all = new QGridLayout(this);
    all->addWidget(imageLabel(u"message/error"_s, messageIconSize, *this), 0, 0);
    all->addLayout(layout, 0, 1);
    all->addWidget(buttons, 1, 0, 1, 2);
    // Enter closes: a key pressed by habit must not start the mail program.
    cmdCancel->setDefault(true);
    cmdCancel->setFocus();
}

void frmError::mailReport() {
    const ErrorReport report{txtNo->text(), txtSource->text(), txtDescription->toPlainText()};
    if (openMail(errorReportMailAddress(report), *this)) {
        accept();
        return;
    }
    m_host.msgBox(mailProblemText(), MsgButtons::Ok, MsgIcon::Exclamation);
}
