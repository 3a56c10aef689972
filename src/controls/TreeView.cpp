#include "TreeView.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QIcon>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <optional>

namespace {

class ImageDelegate : public QStyledItemDelegate {
public:
    std::function<QIcon(const QString&)> images;
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        const QString image = index.data(TreeNodes::ImageRole).toString();
        if (!images || image.isEmpty())
            return;
        option->icon = images(image);
        option->features |= QStyleOptionViewItem::HasDecoration;
    }
};

bool isEnter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace

TreeView::TreeView(TreeNodes& nodes, QWidget* parent)
    : QTreeView(parent)
    , m_nodes(nodes) {
    setHeaderHidden(true);
    // A text that is wider than the view can be scrolled to. Measuring the shown rows is enough.
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setResizeContentsPrecision(0);
    setUniformRowHeights(true); // otherwise each of a hundred thousand rows is measured
    setEditTriggers(NoEditTriggers);
    setItemDelegate(new ImageDelegate(this));
    setModel(&nodes);
    connect(this, &QTreeView::expanded, this,
            [this](const QModelIndex& index) { followPerson(index, true); });
    connect(this, &QTreeView::collapsed, this,
            [this](const QModelIndex& index) { followPerson(index, false); });
    connect(&nodes, &TreeNodes::expandedSet, this, &TreeView::followNode);
    connect(this, &QTreeView::doubleClicked, this, &TreeView::DblClick);
}

TreeView::~TreeView() = default;

void TreeView::setImages(std::function<QIcon(const QString&)> images) {
    static_cast<ImageDelegate*>(itemDelegate())->images = std::move(images);
    viewport()->update();
}

void TreeView::followNode(TreeNode* node) {
    if (m_following)
        return;
    const QScopedValueRollback following(m_following, true);
    setExpanded(m_nodes.indexOf(*node), node->Expanded());
}

void TreeView::followPerson(const QModelIndex& index, bool expanded) {
    if (m_following)
        return;
    TreeNode* node = m_nodes.nodeAt(index);
    {
        const QScopedValueRollback following(m_following, true);
        m_nodes.setExpanded(*node, expanded);
    }
    if (expanded)
        Q_EMIT Expand(node);
}

TreeNode* TreeView::SelectedItem() const {
    const QModelIndexList selected = selectionModel()->selectedIndexes();
    return selected.isEmpty() ? nullptr : m_nodes.nodeAt(selected.constFirst());
}

void TreeView::setSelectedItem(TreeNode* node) {
    const QModelIndex index = node ? m_nodes.indexOf(*node) : QModelIndex();
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
}

void TreeView::keepPlace(const std::function<void()>& change) {
    const auto pathOf = [](const TreeNode* node) {
        return node ? TreeNodes::pathOf(*node) : NodePath();
    };
    const NodePath selected = pathOf(SelectedItem());
    const NodePath top = pathOf(m_nodes.nodeAt(indexAt({0, 0})));
    const int across = horizontalScrollBar()->value();
    change();
    setSelectedItem(m_nodes.find(selected));
    if (const TreeNode* node = m_nodes.find(top))
        scrollTo(m_nodes.indexOf(*node), PositionAtTop);
    horizontalScrollBar()->setValue(across);
}

void TreeView::keyPressEvent(QKeyEvent* event) {
    // The toolkit would open all nodes below without asking for their children.
    if (event->key() == Qt::Key_Asterisk)
        return expand(currentIndex());
    if (isEnter(*event) && SelectedItem())
        Q_EMIT DblClick();
    else
        QTreeView::keyPressEvent(event);
}

void TreeView::resizeEvent(QResizeEvent* event) {
    header()->setMinimumSectionSize(viewport()->width()); // a row is never narrower than the view
    QTreeView::resizeEvent(event);
}

void TreeView::mouseReleaseEvent(QMouseEvent* event) {
    QTreeView::mouseReleaseEvent(event);
    Q_EMIT MouseUp(event->button(), event->globalPosition().toPoint());
}

void TreeView::contextMenuEvent(QContextMenuEvent* event) {
    // The mouse tells by its button.
    if (event->reason() != QContextMenuEvent::Keyboard)
        return;
    const QRect item = visualRect(currentIndex());
    const QPoint place = item.isValid() ? item.center() : QPoint();
    Q_EMIT MouseUp(Qt::RightButton, viewport()->mapToGlobal(place));
}
