#include "frmFavorites.h"

#include "FavouritesTree.h"
#include "FormParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

frmFavorites::frmFavorites(QWidget* parent)
    : QDialog(parent)
    , txtName(named(new QLineEdit, u"txtName"_s, u"Name of the favorite"_s)) {
    setObjectName(u"frmFavorites"_s);
    setWindowTitle(u"Add to Favorites"_s); // spelled so here, "Favourites" in the menu
    auto* label = new QLabel(u"Name:"_s);
    label->setBuddy(txtName);
    auto* cmdOK = named(new QPushButton(u"OK"_s), u"cmdOK"_s, u"OK"_s);
    auto* cmdCancel = named(new QPushButton(u"Cancel"_s), u"cmdCancel"_s, u"Cancel"_s);
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::hide);
    connect(cmdCancel, &QPushButton::clicked, this, &frmFavorites::reject);

    constexpr int nameWidth = 280;
    txtName->setMinimumWidth(nameWidth);
    auto* name = new QHBoxLayout;
    name->addWidget(label);
    name->addWidget(txtName);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(name);
    layout->addLayout(buttons);
    Centre_Form(*this);
}

void frmFavorites::reject() {
    Cancelled = true;
    hide();
}

void Add_To_Favourites(FavouritesTree& favourites, const std::optional<QString>& FileName,
                       QWidget* parent) {
    frmFavorites prompt(parent);
    prompt.exec();
    if (prompt.Cancelled)
        favourites.Initialise_Query_Tree();
    else
        favourites.addFavourite(prompt.txtName->text(), FileName);
}
