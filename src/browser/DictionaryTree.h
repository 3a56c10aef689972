#pragma once

#include "TreeNodes.h"

class Host;
class modDatabase;

// trvDictionary: the dictionary views about the user's own objects. Failures go to the error
// report; what was added before them stays.
class DictionaryTree {
public:
    // None is owned; all outlive this.
    DictionaryTree(TreeNodes& nodes, modDatabase& database, Host& host)
        : m_nodes(nodes)
        , m_database(database)
        , m_host(host) {}

    // When the tab is chosen: loads while connected and empty, so that the server is asked once a
    // connection.
    void tabChosen();
    void Load_Dictionary();
    // The first column of each row of the node's view. No event asks for it.
    void Load_Dictionary_Children(TreeNode& node);

private:
    TreeNodes& m_nodes;
    modDatabase& m_database;
    Host& m_host;
};
