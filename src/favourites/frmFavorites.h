#pragma once

#include <QDialog>

#include <optional>

class FavouritesTree;
class QLineEdit;

// Asks for the name of a favourite.
class frmFavorites : public QDialog {
    Q_OBJECT
public:
    explicit frmFavorites(QWidget* parent);

    QLineEdit* txtName;
    // After leaving by Cancel, Escape or the frame.
    bool Cancelled = false;

    void reject() override;
};

// The whole command: asks for a name and adds the active window's file under it (nothing: there is
// no active query window). A cancelled prompt writes nothing; the tree is rebuilt all the same.
void Add_To_Favourites(FavouritesTree& favourites, const std::optional<QString>& FileName,
                       QWidget* parent);
