#pragma once

#include "DictionaryTree.h"
#include "NodeKeys.h"
#include "SchemaTree.h"

#include <QObject>

class Host;
class LeftPanel;
class QMenu;
class QueryWindows;
class TreeView;
class modDatabase;

// The object tree and the dictionary tree of the left panel: what fills them, and what is opened
// from them.
class TreeCommands : public QObject {
    Q_OBJECT
public:
    // None is owned; all outlive this.
    struct Parts {
        LeftPanel& panel;
        QMenu& popup; // with the entry that opens the selected node
        QueryWindows& queries;
        modDatabase& database;
        Host& host;
    };
    explicit TreeCommands(const Parts& parts);

    // After a successful connect.
    void connected();
    // All trees of the panel, the favourites' too: nothing of a closed connection stays.
    void clear();
    // The same, once no tree is being filled.
    void clearLater();
    // The object tree's open folders, where the person is. The dictionary stays as it is.
    void Refresh_Tree();
    // The selected node of the tree that is shown, in a query window that runs at once.
    void openSelected();

private:
    void wireObjects();
    void wireDictionary();
    void showPopup(Qt::MouseButton button, QPoint position);
    bool canOpen(const TreeNode& node) const;
    void Open_Table(const TreeNode& node);

    class Asking; // while the server is asked

    Parts m_parts;
    int m_asking = 0;
    bool m_clearsLater = false;
    NodeKeys m_keys;
    SchemaTree m_schema;
    DictionaryTree m_dictionary;
};
