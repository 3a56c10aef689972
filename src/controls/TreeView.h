#pragma once

#include "TreeNodes.h"

#include <QTreeView>

#include <functional>

// Shows TreeNodes. Letters that are typed find the next shown node that begins with them.
class TreeView : public QTreeView {
    Q_OBJECT
public:
    // nodes are not owned and outlive the view.
    explicit TreeView(TreeNodes& nodes, QWidget* parent = nullptr);
    ~TreeView() override;

    TreeNodes& nodes() const { return m_nodes; }
    // The icon for an image key; may be called at each painting.
    void setImages(std::function<QIcon(const QString& image)> images);

    // Null when no node is selected.
    TreeNode* SelectedItem() const;
    // Null selects nothing.
    void setSelectedItem(TreeNode* node);

    // Runs a change that fills parts of the tree anew, then selects and scrolls to what was
    // selected and seen before, as far as it still exists.
    void keepPlace(const std::function<void()>& change);

Q_SIGNALS:
    // The person opened a node; its children may be changed.
    void Expand(TreeNode* node);
    // On a node; Enter does the same.
    void DblClick();
    // position: where a menu belongs, on the screen. The menu key is the right button, too.
    void MouseUp(Qt::MouseButton button, QPoint position);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void followNode(TreeNode* node);
    void followPerson(const QModelIndex& index, bool expanded);

    TreeNodes& m_nodes;
    bool m_following = false;
};
