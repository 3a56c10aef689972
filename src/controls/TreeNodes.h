#pragma once

#include "Error.h"

#include <QAbstractItemModel>
#include <QHash>

#include <memory>
#include <vector>

// What a node is made of. Key: unique within its tree, or empty. Tag: says what kind of node it is.
// Image: a key into the image list.
struct NodeContent {
    QString Text;
    QString Image;
    QString Tag;
    QString Key;
};

// A node belongs to its TreeNodes and is changed through it.
class TreeNode {
public:
    const QString& Text() const { return m_content.Text; }
    const QString& Image() const { return m_content.Image; }
    const QString& Tag() const { return m_content.Tag; }
    const QString& Key() const { return m_content.Key; }
    bool Expanded() const { return m_expanded; }
    // Null for a node of the top level.
    TreeNode* Parent() const { return m_parent->m_parent ? m_parent : nullptr; }
    qsizetype Children() const { return qsizetype(m_children.size()); }
    TreeNode& child(qsizetype row) const { return *m_children[size_t(row)]; }

private:
    friend class TreeNodes;

    NodeContent m_content;
    TreeNode* m_parent = nullptr; // only the hidden root has none
    std::vector<std::unique_ptr<TreeNode>> m_children;
    int m_row = 0;
    int m_shown = 0; // children that views know of
    qint64 m_number = 0;
    bool m_expanded = false;
};

// Texts and tags from the top level down: what tells a node when the tree was filled anew.
using NodePath = std::vector<std::pair<QString, QString>>;

// The nodes of a tree, as a model for views. A hundred thousand children of one node are in order.
class TreeNodes : public QAbstractItemModel {
    Q_OBJECT
public:
    static constexpr qint32 keyNotUnique = 35602;
    static constexpr int ImageRole = Qt::UserRole;

    explicit TreeNodes(QObject* parent = nullptr);
    ~TreeNodes() override;

    // Behind the last child of the parent; null: the top level. Throws Error (keyNotUnique).
    TreeNode& add(TreeNode* parent, NodeContent content);
    // Throws Error (keyNotUnique).
    void setKey(TreeNode& node, const QString& key);
    bool hasKey(const QString& key) const { return m_keys.contains(key); }
    // Null when there is none.
    TreeNode* byKey(const QString& key) const { return m_keys.value(key); }

    void removeChildren(TreeNode& node);
    void clear();
    bool isEmpty() const;
    qsizetype count() const { return m_count; }

    // Views follow.
    void setExpanded(TreeNode& node, bool expanded);
    // In the order in which they were added.
    std::vector<TreeNode*> expandedNodes() const;

    static NodePath pathOf(const TreeNode& node);
    // Null when there is none.
    TreeNode* find(const NodePath& path) const;

    // While it lives, views do not see what is added below the node (which stays alive): they learn
    // of all of it at once at the end. One at a time.
    class Filling {
    public:
        Filling(TreeNodes& nodes, TreeNode& node);
        ~Filling();
        Q_DISABLE_COPY(Filling)
    private:
        TreeNodes& m_nodes;
    };

    QModelIndex indexOf(const TreeNode& node) const;
    // Null for the invalid index.
    TreeNode* nodeAt(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

Q_SIGNALS:
    // By setExpanded.
    void expandedSet(TreeNode* node);

private:
    TreeNode* rootOr(const QModelIndex& index) const;
    bool isUnseen(const TreeNode& node) const;
    void showAll(TreeNode& node);
    void forget(const TreeNode& node);

    std::unique_ptr<TreeNode> m_root;
    QHash<QString, TreeNode*> m_keys;
    TreeNode* m_filling = nullptr;
    qsizetype m_count = 0;
    qint64 m_lastNumber = 0;
};
