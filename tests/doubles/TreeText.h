#pragma once

#include "TreeNodes.h"

// The nodes below the index as views see them, a line a node: two blanks a level, "+" or "-" before
// a node with children (closed or open), the text and what else is asked for.
inline QString treeText(const TreeNodes& nodes, bool withContent = false,
                        const QModelIndex& parent = {}, int level = 0) {
    QString text;
    for (int row = 0; row < nodes.rowCount(parent); ++row) {
        const QModelIndex index = nodes.index(row, 0, parent);
        const TreeNode& node = *nodes.nodeAt(index);
        text += QString(level * 2, u' ');
        if (nodes.hasChildren(index))
            text += node.Expanded() ? u'-' : u'+';
        text += node.Text();
        if (withContent)
            text += QStringLiteral("|%1|%2|%3").arg(node.Key(), node.Image(), node.Tag());
        text += u'\n' + treeText(nodes, withContent, index, level + 1);
    }
    return text;
}
