#include "TreeNodes.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

void checkUnique(const QHash<QString, TreeNode*>& keys, const QString& key) {
    if (!key.isEmpty() && keys.contains(key))
        throw Error(TreeNodes::keyNotUnique, QString(), u"Key is not unique in collection"_s);
}

} // namespace

TreeNodes::TreeNodes(QObject* parent)
    : QAbstractItemModel(parent)
    , m_root(std::make_unique<TreeNode>()) {}

TreeNodes::~TreeNodes() = default;

// --- nodes -------------------------------------------------------------------------------------

TreeNode& TreeNodes::add(TreeNode* parent, NodeContent content) {
    checkUnique(m_keys, content.Key);
    TreeNode& under = parent ? *parent : *m_root;
    auto node = std::make_unique<TreeNode>();
    TreeNode& added = *node;
    added.m_content = std::move(content);
    added.m_parent = &under;
    added.m_row = int(under.m_children.size());
    added.m_number = ++m_lastNumber;
    if (!added.Key().isEmpty())
        m_keys.insert(added.Key(), &added);
    under.m_children.push_back(std::move(node));
    ++m_count;
    if (isUnseen(under))
        under.m_shown = int(under.m_children.size());
    else if (&under != m_filling)
        showAll(under);
    return added;
}

// Below a child that views will learn of at the end of the filling.
bool TreeNodes::isUnseen(const TreeNode& node) const {
    const TreeNode* at = &node;
    while (at->m_parent && at->m_parent != m_filling)
        at = at->m_parent;
    return at->m_parent && at->m_row >= m_filling->m_shown;
}

void TreeNodes::showAll(TreeNode& node) {
    const auto all = int(node.m_children.size());
    if (node.m_shown == all)
        return;
    beginInsertRows(indexOf(node), node.m_shown, all - 1);
    node.m_shown = all;
    endInsertRows();
}

void TreeNodes::setKey(TreeNode& node, const QString& key) {
    if (key == node.Key())
        return;
    checkUnique(m_keys, key);
    m_keys.remove(node.Key());
    node.m_content.Key = key;
    if (!key.isEmpty())
        m_keys.insert(key, &node);
}

void TreeNodes::forget(const TreeNode& node) {
    for (const auto& child : node.m_children) {
        forget(*child);
        if (!child->Key().isEmpty())
            m_keys.remove(child->Key());
        --m_count;
    }
}

void TreeNodes::removeChildren(TreeNode& node) {
    if (node.m_children.empty())
        return;
    forget(node);
    const bool seen = node.m_shown > 0 && !isUnseen(node);
    if (seen)
        beginRemoveRows(indexOf(node), 0, node.m_shown - 1);
    node.m_shown = 0;
    node.m_children.clear();
    if (seen)
        endRemoveRows();
}

void TreeNodes::clear() {
    beginResetModel();
    m_root->m_children.clear();
    m_root->m_shown = 0;
    m_keys.clear();
    m_count = 0;
    endResetModel();
}

bool TreeNodes::isEmpty() const {
    return m_root->m_children.empty();
}

void TreeNodes::setExpanded(TreeNode& node, bool expanded) {
    if (node.m_expanded == expanded)
        return;
    node.m_expanded = expanded;
    Q_EMIT expandedSet(&node);
}

std::vector<TreeNode*> TreeNodes::expandedNodes() const {
    std::vector<TreeNode*> found;
    std::vector<const TreeNode*> rest{m_root.get()};
    while (!rest.empty()) {
        const TreeNode* node = rest.back();
        rest.pop_back();
        for (const auto& child : node->m_children) {
            if (child->m_expanded)
                found.push_back(child.get());
            if (!child->m_children.empty())
                rest.push_back(child.get());
        }
    }
    std::sort(found.begin(), found.end(), [](const TreeNode* left, const TreeNode* right) {
        return left->m_number < right->m_number;
    });
    return found;
}

NodePath TreeNodes::pathOf(const TreeNode& node) {
    NodePath path;
    for (const TreeNode* at = &node; at; at = at->Parent())
        path.emplace_back(at->Text(), at->Tag());
    std::reverse(path.begin(), path.end());
    return path;
}

TreeNode* TreeNodes::find(const NodePath& path) const {
    TreeNode* node = m_root.get();
    for (const auto& step : path) {
        const auto& children = node->m_children;
        const auto found = std::find_if(children.begin(), children.end(), [&](const auto& child) {
            return child->Text() == step.first && child->Tag() == step.second;
        });
        if (found == children.end())
            return nullptr;
        node = found->get();
    }
    return node == m_root.get() ? nullptr : node;
}

TreeNodes::Filling::Filling(TreeNodes& nodes, TreeNode& node)
    : m_nodes(nodes) {
    nodes.m_filling = &node;
}

TreeNodes::Filling::~Filling() {
    TreeNode& filled = *std::exchange(m_nodes.m_filling, nullptr);
    m_nodes.showAll(filled);
}

// --- model -------------------------------------------------------------------------------------

TreeNode* TreeNodes::rootOr(const QModelIndex& index) const {
    return index.isValid() ? static_cast<TreeNode*>(index.internalPointer()) : m_root.get();
}

QModelIndex TreeNodes::indexOf(const TreeNode& node) const {
    if (&node == m_root.get())
        return {};
    return createIndex(node.m_row, 0, &node);
}

TreeNode* TreeNodes::nodeAt(const QModelIndex& index) const {
    return static_cast<TreeNode*>(index.internalPointer());
}

QModelIndex TreeNodes::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, &rootOr(parent)->child(row));
}

QModelIndex TreeNodes::parent(const QModelIndex& index) const {
    return index.isValid() ? indexOf(*nodeAt(index)->m_parent) : QModelIndex();
}

int TreeNodes::rowCount(const QModelIndex& parent) const {
    return rootOr(parent)->m_shown;
}

int TreeNodes::columnCount(const QModelIndex&) const {
    return 1;
}

QVariant TreeNodes::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole: return nodeAt(index)->Text();
    case ImageRole: return nodeAt(index)->Image();
    default: return {};
    }
}
