#include "FavouriteCommands.h"

#include "ProgramFolder.h"
#include "TreeView.h"
#include "frmFavorites.h"

#include <QDir>
#include <QMenu>

using namespace Qt::StringLiterals;

FavouriteCommands::FavouriteCommands(TreeView& tree, QMenu& popup, Host& host, TraceLog& trace)
    : trvQueries(tree)
    , m_popup(popup)
    , m_favourites(tree.nodes(), host, trace, Program_File(u"Queries/Queries.dat"_s)) {
    connect(&trvQueries, &TreeView::DblClick, this, &FavouriteCommands::openRequested);
    connect(&trvQueries, &TreeView::MouseUp, this, &FavouriteCommands::showPopup);
}

void FavouriteCommands::makeFolder() {
    QDir().mkpath(Program_File(u"Queries"_s));
}

void FavouriteCommands::Initialise_Query_Tree() {
    m_favourites.Initialise_Query_Tree();
}

void FavouriteCommands::refresh() {
    if (!trvQueries.nodes().isEmpty())
        trvQueries.keepPlace([this] { Initialise_Query_Tree(); });
}

void FavouriteCommands::Add_To_Favourites(const std::optional<QString>& FileName, QWidget* parent) {
    ::Add_To_Favourites(m_favourites, FileName, parent);
}

std::optional<QString> FavouriteCommands::selectedFile() const {
    return FavouritesTree::fileOf(trvQueries.SelectedItem());
}

void FavouriteCommands::showPopup(Qt::MouseButton button, QPoint position) {
    if (button == Qt::RightButton && selectedFile())
        m_popup.popup(position);
}
