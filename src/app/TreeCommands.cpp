#include "TreeCommands.h"

#include "ErrorTrap.h"
#include "Host.h"
#include "LeftPanel.h"
#include "QueryWindows.h"
#include "SqlEditor.h"
#include "TreeView.h"
#include "modDatabase.h"

#include <QMenu>

using namespace Qt::StringLiterals;

class TreeCommands::Asking {
public:
    explicit Asking(TreeCommands& commands)
        : m_commands(commands) {
        ++m_commands.m_asking;
        m_commands.m_parts.host.setMousePointer(MousePointer::Hourglass);
    }
    ~Asking() {
        m_commands.m_parts.host.setMousePointer(MousePointer::Default);
        if (--m_commands.m_asking == 0 && m_commands.m_clearsLater)
            m_commands.clearLater();
    }
    Q_DISABLE_COPY_MOVE(Asking)

private:
    TreeCommands& m_commands;
};

TreeCommands::TreeCommands(const Parts& parts)
    : m_parts(parts)
    , m_schema({parts.panel.trvObjects->nodes(), m_keys, parts.database, parts.host})
    , m_dictionary(parts.panel.trvDictionary->nodes(), parts.database, parts.host) {
    wireObjects();
    wireDictionary();
}

void TreeCommands::wireObjects() {
    TreeView* tree = m_parts.panel.trvObjects;
    connect(tree, &TreeView::Expand, this, [this](TreeNode* node) {
        const Asking asking(*this);
        m_schema.Expand(*node);
    });
    connect(tree, &TreeView::DblClick, this, &TreeCommands::openSelected);
    connect(tree, &TreeView::MouseUp, this, &TreeCommands::showPopup);
}

void TreeCommands::wireDictionary() {
    TreeView* tree = m_parts.panel.trvDictionary;
    connect(&m_parts.panel, &LeftPanel::tabChosen, this, [this](LeftTab tab) {
        if (tab != LeftTab::Dictionary)
            return;
        const Asking asking(*this);
        m_dictionary.tabChosen();
    });
    connect(tree, &TreeView::DblClick, this, &TreeCommands::openSelected);
    connect(tree, &TreeView::MouseUp, this, &TreeCommands::showPopup);
}

void TreeCommands::connected() {
    m_schema.Initialise_Schema_Tree();
    // Its tab may have stayed chosen since the last connection.
    if (m_parts.panel.chosenTab() == LeftTab::Dictionary)
        m_dictionary.tabChosen();
}

void TreeCommands::clear() {
    for (TreeView* tree :
         {m_parts.panel.trvObjects, m_parts.panel.trvDictionary, m_parts.panel.trvQueries})
        tree->nodes().clear();
}

// A server that is gone is noticed in the middle of a question, perhaps one about a tree's node.
void TreeCommands::clearLater() {
    m_clearsLater = m_asking > 0;
    if (!m_clearsLater)
        QMetaObject::invokeMethod(this, &TreeCommands::clear, Qt::QueuedConnection);
}

void TreeCommands::Refresh_Tree() {
    const Asking asking(*this);
    m_parts.panel.trvObjects->keepPlace([this] { m_schema.Refresh_Tree(); });
}

// In the dictionary every node can be opened.
bool TreeCommands::canOpen(const TreeNode& node) const {
    switch (m_parts.panel.chosenTab()) {
    case LeftTab::Objects: return isTableOrView(node);
    case LeftTab::Dictionary: return true;
    default: return false;
    }
}

void TreeCommands::showPopup(Qt::MouseButton button, QPoint position) {
    const TreeNode* node = m_parts.panel.shownTree()->SelectedItem();
    // The dictionary's menu comes without a node, too; it then opens nothing.
    const bool offers = node ? canOpen(*node) : m_parts.panel.chosenTab() == LeftTab::Dictionary;
    if (button == Qt::RightButton && offers)
        m_parts.popup.popup(position);
}

void TreeCommands::openSelected() {
    const TreeNode* node = m_parts.panel.shownTree()->SelectedItem();
    if (node && canOpen(*node))
        trapErrors(m_parts.host, u"..MDIMain.Open_Table", [&] { Open_Table(*node); });
}

void TreeCommands::Open_Table(const TreeNode& node) {
    const QString sql = openTableSql(node);
    frmQuery* query = m_parts.queries.New_Query();
    query->txtSQL->setText(sql);
    // No blank, on purpose.
    query->setCaption(u"Query - Untitled"_s + QString::number(m_parts.queries.counter()));
    query->setFileName(QString());
    query->setUnSavedChanges(false);
    query->Run_Queries();
}
