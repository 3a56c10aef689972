#include "frmDevExtract.h"

#include "FormParts.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

frmDevExtract::frmDevExtract(const QString& code, QWidget* parent)
    : QDialog(parent)
    , txtCode(named(new QPlainTextEdit, u"txtCode"_s, u"Generated code"_s)) {
    setObjectName(u"frmDevExtract"_s);
    setWindowTitle(u"Developer Code Generator"_s);
    txtCode->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    txtCode->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtCode->setReadOnly(true);
    txtCode->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    txtCode->setTabChangesFocus(true);
    txtCode->setPlainText(code);

    auto* buttons = new QDialogButtonBox;
    auto* cmdClose = named(buttons->addButton(u"&Close"_s, QDialogButtonBox::RejectRole),
                           u"cmdClose"_s, u"Close"_s);
    connect(cmdClose, &QPushButton::clicked, this, &frmDevExtract::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(txtCode);
    layout->addWidget(buttons);
    // A line of a hundred characters with what stands around it, and the margins.
    constexpr int columns = 120;
    constexpr int startHeight = 420;
    resize(txtCode->fontMetrics().horizontalAdvance(u'M') * columns, startHeight);
    Centre_Form(*this);
}
