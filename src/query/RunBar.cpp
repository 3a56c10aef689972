#include "RunBar.h"

#include "FlowLayout.h"
#include "FormHelpers.h"
#include "FormParts.h"
#include "Options.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace {

// A control and its label, which stay side by side.
QWidget* labelled(const QString& text, QWidget* control) {
    auto* group = new QWidget;
    auto* layout = new QHBoxLayout(group);
    layout->setContentsMargins({});
    auto* label = new QLabel(text);
    label->setBuddy(control);
    layout->addWidget(label);
    layout->addWidget(control);
    return group;
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
    auto* layout = new FlowLayout;
    constexpr int margin = 4;
    constexpr int gap = 10;
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(gap);
    layout->addWidget(labelled(u"&Output:"_s, cboResults));
    layout->addWidget(chkShowResults);
    layout->addWidget(chkShowPlan);
    layout->addWidget(labelled(u"Record &limit:"_s, txtMaxRecords));
    setLayout(layout);
}

void RunBar::setOutputMode(const QString& mode) {
    cboResults->setCurrentIndex(cboResults->findText(mode, Qt::MatchFixedString));
}
