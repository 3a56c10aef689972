#pragma once

#include "ColQueryFiles.h"
#include "TreeNodes.h"

#include <optional>

class Host;
class TraceLog;

// trvQueries: a root and below it the favourites in the order of their names, each with its file as
// the node's tag.
class FavouritesTree {
public:
    // nodes, host and trace are not owned and outlive this. path: the favourites' file; its folder
    // is never created here.
    FavouritesTree(TreeNodes& nodes, Host& host, TraceLog& trace, QString path)
        : m_nodes(nodes)
        , m_host(host)
        , m_trace(trace)
        , m_path(std::move(path)) {}

    // Empty when the file is missing or damaged: only the trace log tells of that.
    ColQueryFiles Load_Query_Files() const;
    void Initialise_Query_Tree();

    // FileName: of the active query window; nothing when there is none, which is reported as any
    // other failure. The tree is rebuilt unless it failed. A damaged file is told about, because
    // what was added is not seen then.
    void addFavourite(const QString& QueryName, const std::optional<QString>& FileName);

    // What the node opens; nothing for the root or when no node is selected.
    static std::optional<QString> fileOf(const TreeNode* selected);

private:
    TreeNodes& m_nodes;
    Host& m_host;
    TraceLog& m_trace;
    QString m_path;
};
