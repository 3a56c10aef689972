#pragma once

#include "TreeNodes.h"

class Host;
class NodeKeys;
class Recordset;
class modDatabase;

// trvObjects: the user's tables with their columns, indexes, constraints and triggers, the views
// and the sessions. A folder is filled when it is opened, each time anew. A failure goes to the
// error report; what was added before it stays.
class SchemaTree {
public:
    // None is owned; all outlive this.
    struct Parts {
        TreeNodes& nodes;
        NodeKeys& keys;
        modDatabase& database;
        Host& host;
    };
    explicit SchemaTree(const Parts& parts)
        : m_parts(parts) {}

    // The three folders, each with a placeholder.
    void Initialise_Schema_Tree();

    // The node was opened: fills it when it is a folder that loads.
    void Expand(TreeNode& node);

    // Fills the opened folders anew in the order in which they were added, and opens what was open.
    // Nodes that it fills are new ones, told by their text and tag.
    void Refresh_Tree();

    void Load_Tables(TreeNode& folder);
    void Load_Views(TreeNode& folder);
    void Load_TableColumns(TreeNode& folder, const QString& tableName);
    void Load_TableIndexes(TreeNode& folder, const QString& tableName);
    void Load_TableConstraints(TreeNode& folder, const QString& tableName);
    void Load_TableTriggers(TreeNode& folder, const QString& tableName);
    // Never reports: a server that refuses shows one entry that says so.
    void Load_Sessions(TreeNode& folder);

private:
    struct Listing;

    TreeNode& addKeyed(TreeNode& parent, NodeContent content);
    void addFolders(TreeNode& table);
    void load(TreeNode& folder, const QString& sql, const Listing& listing);

    Parts m_parts;
};

// The node's text can be opened as a table.
bool isTableOrView(const TreeNode& node);
// What opening the node runs.
QString openTableSql(const TreeNode& node);
