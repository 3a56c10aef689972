#include "frmOptions.h"

#include "ErrorTrap.h"
#include "FormHelpers.h"
#include "FormParts.h"
#include "Options.h"
#include "modFunctions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

frmOptions::frmOptions(Host& host, QString path, QWidget* parent)
    : QDialog(parent)
    , m_host(host)
    , m_path(std::move(path))
    , cboResults(named(new QComboBox, u"cboResults"_s, u"Default output"_s))
    , chkShowResults(
          named(new QCheckBox(u"Show &results"_s), u"chkShowResults"_s, u"Show results"_s))
    , chkShowPlan(named(new QCheckBox(u"Show execution &plan"_s), u"chkShowPlan"_s,
                        u"Show execution plan"_s))
    , txtMaxRecords(named(new DigitBox, u"txtMaxRecords"_s, u"Record limit, none when empty"_s))
    , chkColourCode(named(new QCheckBox(u"&Colour code script keywords"_s), u"chkColourCode"_s,
                          u"Colour code script keywords"_s))
    , txtDefaultText(
          named(new QLineEdit, u"txtDefaultText"_s, u"Default script for new queries"_s)) {
    setObjectName(u"frmOptions"_s);
    setWindowTitle(u"Options"_s);
    auto* tabs = named(new QTabWidget, u"tabOptions"_s, u"Options"_s);
    tabs->addTab(generalPage(), u"&General"_s);
    tabs->addTab(queryPage(), u"&Query"_s);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    buildButtons(*layout);
    Load();
    cboResults->setFocus();
    Centre_Form(*this);
}

QWidget* frmOptions::generalPage() {
    cboResults->addItems({OutputMode::Grid, OutputMode::Text, OutputMode::File});
    constexpr int digits = 11;
    txtMaxRecords->setFixedWidth(fontMetrics().horizontalAdvance(u'0') * (digits + 1));
    txtMaxRecords->setPlaceholderText(u"no limit"_s);
    auto* page = new QWidget;
    auto* layout = new QFormLayout(page);
    layout->addRow(u"Default &Output:"_s, cboResults);
    layout->addRow(QString(), chkShowResults);
    layout->addRow(QString(), chkShowPlan);
    layout->addRow(u"Record &Limit:"_s, txtMaxRecords);
    layout->addRow(QString(), chkColourCode);
    return page;
}

QWidget* frmOptions::queryPage() {
    auto* page = new QWidget;
    auto* label = new QLabel(u"&Default script for new queries:"_s);
    label->setBuddy(txtDefaultText);
    // A line break would push the options behind it out of their places in the file.
    auto* hint = new QLabel(u"One line, since the options file keeps one line for it."_s);
    hint->setWordWrap(true);
    hint->setForegroundRole(QPalette::PlaceholderText);
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(label);
    layout->addWidget(txtDefaultText);
    layout->addWidget(hint);
    layout->addStretch();
    return page;
}

void frmOptions::buildButtons(QVBoxLayout& layout) {
    auto* buttons = new QDialogButtonBox;
    layout.addWidget(buttons); // before the default is set, which a button tells its dialog
    auto* cmdOK = named(buttons->addButton(QDialogButtonBox::Ok), u"cmdOK"_s, u"OK"_s);
    // The desktop's own, so that both have its icons or none; some give it a mnemonic.
    auto* cmdCancel =
        named(buttons->addButton(QDialogButtonBox::Cancel), u"cmdCancel"_s, u"Cancel"_s);
    cmdCancel->setText(u"Cancel"_s);
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &frmOptions::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmOptions::reject);
}

void frmOptions::Load() {
    const OptionsRecord& options = Options();
    cboResults->setCurrentIndex(cboResults->findText(options.OutputResults, Qt::MatchFixedString));
    chkShowResults->setChecked(options.ShowResults == 1);
    chkShowPlan->setChecked(options.ShowEP == 1);
    txtDefaultText->setText(options.QueryTemplate);
    if (options.RecordLimit != 0)
        txtMaxRecords->setText(QString::number(options.RecordLimit));
    chkColourCode->setChecked(options.ColourCodeScript == 1);
}

OptionsRecord frmOptions::entered() const {
    static const QRegularExpression lineBreaks(u"[\\r\\n\\x{2028}\\x{2029}]+"_s); // were pasted
    OptionsRecord options = Options();
    // A text from the file that is none of the three stays until one of them is chosen.
    if (cboResults->currentIndex() >= 0)
        options.OutputResults = cboResults->currentText();
    options.ShowResults = chkShowResults->isChecked() ? 1 : 0;
    options.ShowEP = chkShowPlan->isChecked() ? 1 : 0;
    options.QueryTemplate = txtDefaultText->text().replace(lineBreaks, u" "_s);
    options.RecordLimit = recordLimitOf(txtMaxRecords->text());
    options.ColourCodeScript = chkColourCode->isChecked() ? 1 : 0;
    return options;
}

void frmOptions::cmdOK_Click() {
    const OptionsRecord options = entered();
    if (!trapErrors(m_host, u"..frmOptions.cmdOK_Click", [&] { Save_Options(options, m_path); }))
        return;
    Options() = options;
    Cancelled = false;
    accept();
}
