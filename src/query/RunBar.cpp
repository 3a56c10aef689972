#include "RunBar.h"

#include "FormHelpers.h"
#include "FormParts.h"
#include "Options.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace {

QLabel* labelOf(const QString& text, QWidget* buddy) {
    auto* label = new QLabel(text);
    label->setBuddy(buddy);
    return label;
}

} // namespace

RunBar::RunBar()
    : cboResults(named(new QComboBox, u"cboResults"_s, u"Output of results"_s))
    , chkShowResults(
          named(new QCheckBox(u"Show &results"_s), u"chkShowResults"_s, u"Show results"_s))
    , chkShowPlan(named(new QCheckBox(u"Show &plan"_s), u"chkShowPlan"_s, u"Show plan"_s))
    , txtMaxRecords(named(new DigitBox, u"txtMaxRecords"_s, u"Record limit, none for 0"_s)) {
    cboResults->addItems({OutputMode::Grid, OutputMode::Text, OutputMode::File});
    constexpr int digits = 11;
    txtMaxRecords->setMaximumWidth(fontMetrics().horizontalAdvance(u'0') * digits);
    auto* layout = new QHBoxLayout(this);
    constexpr int margin = 4;
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addWidget(labelOf(u"&Output:"_s, cboResults));
    layout->addWidget(cboResults);
    layout->addWidget(chkShowResults);
    layout->addWidget(chkShowPlan);
    layout->addStretch();
    layout->addWidget(labelOf(u"Record &limit:"_s, txtMaxRecords));
    layout->addWidget(txtMaxRecords);
}

void RunBar::setOutputMode(const QString& mode) {
    cboResults->setCurrentIndex(cboResults->findText(mode, Qt::MatchFixedString));
}
