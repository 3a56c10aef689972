#pragma once

#include <QtGlobal>

class TreeNode;
class TreeNodes;

// Gives nodes their keys. One counter for all trees of the main window; clearing a tree does not
// reset it.
class NodeKeys {
public:
    // The node's text, or "X" when that is blank, and the counter's next value. A value that would
    // repeat a key of the tree (EMP1 and 7, EMP and 17) is passed over.
    void Assign_Node_Key(TreeNodes& nodes, TreeNode& node);

    qint32 counter = 0; // the last value given; goes on at 1 behind 1000000
};
