#include "frmAbout.h"

#include "FormParts.h"
#include "Version.h"
#include "VersionText.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

// So that a version can be copied into a mail.
QLabel* selectable(QLabel* label) {
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

// NOTICE says more of them.
QString libraries() {
#ifdef Q_OS_WIN
    return u"Made with Qt %1 and SQLite."_s;
#else
    return u"Made with Qt %1, SQLite, unixODBC and CHMLib."_s;
#endif
}

} // namespace

frmAbout::frmAbout(QWidget* parent)
    : QDialog(parent) {
    setObjectName(u"frmAbout"_s);
    setWindowTitle(u"About "_s + QString::fromLatin1(QUILLMATE_NAME));
    constexpr int iconSize = 64;
    QLabel* icon = imageLabel(u"program/quillmate"_s, iconSize, *this);
    auto* lblVersion = named(selectable(new QLabel(versionText())), u"lblVersion"_s, u"Version"_s);
    auto* lblCopyright = named(new QLabel(u"Copyright © "_s + QStringLiteral(QUILLMATE_COPYRIGHT)),
                               u"lblCopyright"_s, u"Copyright"_s);
    auto* parts = new QLabel(libraries().arg(QLatin1StringView(qVersion())));
    auto* buttons = new QDialogButtonBox;
    auto* cmdOK = named(buttons->addButton(QDialogButtonBox::Ok), u"cmdOK"_s, u"OK"_s);
    connect(cmdOK, &QPushButton::clicked, this, &frmAbout::accept);

    auto* layout = new QGridLayout(this);
    constexpr int gap = 16;
    layout->setContentsMargins(gap, gap, gap, gap);
    layout->setHorizontalSpacing(gap);
    layout->addWidget(icon, 0, 0, 4, 1);
    layout->addWidget(productLabel(), 0, 1);
    layout->addWidget(lblVersion, 1, 1);
    layout->addWidget(lblCopyright, 2, 1);
    layout->addWidget(parts, 3, 1);
    layout->setRowMinimumHeight(4, gap);
    layout->addWidget(buttons, 5, 0, 1, 2);
    Centre_Form(*this);
}
