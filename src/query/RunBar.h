#pragma once

#include <QWidget>

class DigitBox;
class QCheckBox;
class QComboBox;

// The strip above the editor: where results go, what is shown, the record limit.
class RunBar : public QWidget {
    Q_OBJECT
public:
    RunBar();

    QComboBox* cboResults;
    QCheckBox* chkShowResults;
    QCheckBox* chkShowPlan;
    DigitBox* txtMaxRecords;

    // Chooses the entry, ignoring case. A text that is none of the three leaves none chosen, and a
    // run then has no output.
    void setOutputMode(const QString& mode);
};
