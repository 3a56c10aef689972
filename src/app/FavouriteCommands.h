#pragma once

#include "FavouritesTree.h"

#include <QObject>

class QMenu;
class TreeView;
class TraceLog;

// The favourites on the left panel and their commands.
class FavouriteCommands : public QObject {
    Q_OBJECT
public:
    // None is owned; all outlive this. popup: shown on a favourite by the right button.
    FavouriteCommands(TreeView& trvQueries, QMenu& popup, Host& host, TraceLog& trace);

    // Makes the folder of the favourites' file when it is missing. A failure is told about when a
    // favourite is added.
    void makeFolder();

    void Initialise_Query_Tree();
    // Reads the file anew; without a connection there is no tree and nothing happens.
    void refresh();
    // FileName: of the active query window, nothing without one. parent: for the name prompt.
    void Add_To_Favourites(const std::optional<QString>& FileName, QWidget* parent);

    // The selected favourite's file, which may be empty; nothing when none is selected.
    std::optional<QString> selectedFile() const;

Q_SIGNALS:
    // By double click or Enter.
    void openRequested();

private:
    void showPopup(Qt::MouseButton button, QPoint position);

    TreeView& trvQueries;
    QMenu& m_popup;
    FavouritesTree m_favourites;
};
