#pragma once

#include "ColQueryFiles.h"
#include "TreeNodes.h"

#include <optional>

class Host;

// trvQueries: a root and below it the favourites in the order of their names, each with its file as
// the node's tag.
class FavouritesTree {
public:
    // nodes and host are not owned and outlive this. path: the favourites' file; its folder is
    // never created here.
    FavouritesTree(TreeNodes& nodes, Host& host, QString path)
        : m_nodes(nodes)
        , m_host(host)
        , m_path(std::move(path)) {}

    // Empty when the file is missing or damaged; nothing is reported.
    ColQueryFiles Load_Query_Files() const;
    void Initialise_Query_Tree();

    // FileName: of the active query window; nothing when there is none, which is reported as any
    // other failure. The tree is rebuilt unless it failed.
    void addFavourite(const QString& QueryName, const std::optional<QString>& FileName);

    // What the node opens; nothing for the root or when no node is selected.
    static std::optional<QString> fileOf(const TreeNode* selected);

private:
    TreeNodes& m_nodes;
    Host& m_host;
    QString m_path;
};
