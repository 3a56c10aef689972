#pragma once

#include <QDialog>

// The product's name, version and copyright.
class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(QWidget* parent = nullptr);
};
