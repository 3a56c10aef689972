#include "SchemaTree.h"

#include "ErrorTrap.h"
#include "NodeKeys.h"
#include "NodeTags.h"
#include "SessionList.h"
#include "modDatabase.h"

using namespace Qt::StringLiterals;

namespace {

const QString folderImage = u"folderclosed"_s;

struct Folder {
    QString key;
    QString text;
    QString tag;
    QString placeholderKey;
};

const Folder roots[] = {
    {u"T12345"_s, u"Tables"_s, NodeTag::Tables, u"TABLES_DUMMYNODE"_s},
    {u"V12345"_s, u"Views"_s, NodeTag::Views, u"VIEWS_DUMMYNODE"_s},
    {u"S12345"_s, u"Sessions"_s, NodeTag::Sessions, u"SESSIONS_DUMMYNODE"_s},
};

const Folder tableFolders[] = {
    {{}, u"Columns"_s, NodeTag::TableColumns, {}},
    {{}, u"Indexes"_s, NodeTag::TableIndexes, {}},
    {{}, u"Constraints"_s, NodeTag::TableConstraints, {}},
    {{}, u"Triggers"_s, NodeTag::TableTriggers, {}},
};

// The length is shown for every type, on purpose, also where the user declared none.
QString columnText(const Recordset& row) {
    const bool nullable = row.text(u"NULLABLE") == "Y"_L1;
    return row.text(u"COLUMN_NAME") + u" ("_s + row.text(u"DATA_TYPE").toLower() + u'(' +
           row.text(u"DATA_LENGTH") + u"), "_s + (nullable ? u"Null"_s : u"Not Null"_s) + u')';
}

QString ofTable(const QString& sql, const QString& tableName) {
    return sql + u" WHERE TABLE_NAME = '"_s + tableName + u'\'';
}

} // namespace

// How the rows of a folder become nodes.
struct SchemaTree::Listing {
    QStringView procedure; // for the source of an error
    QString (*text)(const Recordset& row);
    QString image;
    QString tag;
};

void SchemaTree::Initialise_Schema_Tree() {
    trapErrors(m_parts.host, u"..MDIMain.Initialise_Schema_Tree", [this] {
        TreeNodes& nodes = m_parts.nodes;
        nodes.clear();
        for (const Folder& root : roots) {
            TreeNode& folder = nodes.add(nullptr, {root.text, folderImage, root.tag, root.key});
            nodes.add(&folder, {{}, {}, NodeTag::Dummy, root.placeholderKey});
        }
    });
}

void SchemaTree::Expand(TreeNode& node) {
    using OfTable = void (SchemaTree::*)(TreeNode&, const QString&);
    using Load = void (SchemaTree::*)(TreeNode&);
    static const std::pair<QString, Load> loads[] = {
        {NodeTag::Tables, &SchemaTree::Load_Tables},
        {NodeTag::Views, &SchemaTree::Load_Views},
        {NodeTag::Sessions, &SchemaTree::Load_Sessions},
    };
    static const std::pair<QString, OfTable> loadsOfTable[] = {
        {NodeTag::TableColumns, &SchemaTree::Load_TableColumns},
        {NodeTag::TableIndexes, &SchemaTree::Load_TableIndexes},
        {NodeTag::TableConstraints, &SchemaTree::Load_TableConstraints},
        {NodeTag::TableTriggers, &SchemaTree::Load_TableTriggers},
    };
    for (const auto& [tag, load] : loads) {
        if (node.Tag() != tag)
            continue;
        m_parts.nodes.removeChildren(node);
        (this->*load)(node);
    }
    for (const auto& [tag, load] : loadsOfTable) {
        if (node.Tag() != tag)
            continue;
        m_parts.nodes.removeChildren(node);
        (this->*load)(node, node.Parent()->Text());
    }
}

void SchemaTree::Refresh_Tree() {
    std::vector<NodePath> opened;
    for (const TreeNode* node : m_parts.nodes.expandedNodes())
        opened.push_back(TreeNodes::pathOf(*node));
    for (const NodePath& path : opened) {
        TreeNode* node = m_parts.nodes.find(path);
        if (!node)
            continue;
        Expand(*node);
        m_parts.nodes.setExpanded(*node, true);
    }
}

TreeNode& SchemaTree::addKeyed(TreeNode& parent, NodeContent content) {
    TreeNode& node = m_parts.nodes.add(&parent, std::move(content));
    m_parts.keys.Assign_Node_Key(m_parts.nodes, node);
    return node;
}

void SchemaTree::addFolders(TreeNode& table) {
    for (const Folder& line : tableFolders) {
        TreeNode& folder = addKeyed(table, {line.text, folderImage, line.tag, {}});
        addKeyed(folder, {{}, {}, NodeTag::Dummy, {}});
    }
}

void SchemaTree::load(TreeNode& folder, const QString& sql, const Listing& listing) {
    trapErrors(m_parts.host, listing.procedure, [&] {
        const auto rows = m_parts.database.Get_Recordset(sql, 0);
        const TreeNodes::Filling filling(m_parts.nodes, folder);
        for (; !rows->atEof(); rows->MoveNext()) {
            TreeNode& node =
                addKeyed(folder, {listing.text(*rows), listing.image, listing.tag, {}});
            if (listing.tag == NodeTag::Table)
                addFolders(node);
        }
    });
}

void SchemaTree::Load_Tables(TreeNode& folder) {
    load(folder, u"SELECT * FROM USER_TABLES WHERE TABLE_NAME <>'PLAN_TABLE'"_s,
         {u"..MDIMain.Load_Tables", [](const Recordset& row) { return row.text(u"TABLE_NAME"); },
          u"table"_s, NodeTag::Table});
}

void SchemaTree::Load_Views(TreeNode& folder) {
    load(folder, u"SELECT VIEW_NAME FROM USER_VIEWS"_s,
         {u"..MDIMain.Load_Views", [](const Recordset& row) { return row.text(u"VIEW_NAME"); },
          u"view"_s, NodeTag::View});
}

void SchemaTree::Load_TableColumns(TreeNode& folder, const QString& tableName) {
    load(folder,
         ofTable(u"SELECT COLUMN_NAME, DATA_TYPE, DATA_LENGTH, NULLABLE FROM USER_TAB_COLUMNS"_s,
                 tableName),
         {u"..MDIMain.Load_TableColumns", columnText, u"column"_s, NodeTag::Column});
}

void SchemaTree::Load_TableIndexes(TreeNode& folder, const QString& tableName) {
    load(folder, ofTable(u"SELECT * FROM USER_INDEXES"_s, tableName),
         {u"..MDIMain.Load_TableIndexes",
          [](const Recordset& row) { return row.text(u"INDEX_NAME"); }, u"index"_s,
          NodeTag::Index});
}

void SchemaTree::Load_TableConstraints(TreeNode& folder, const QString& tableName) {
    load(folder, ofTable(u"SELECT * FROM USER_CONSTRAINTS"_s, tableName),
         {u"..MDIMain.Load_TableConstraints",
          [](const Recordset& row) { return row.text(u"CONSTRAINT_NAME"); }, u"constraint"_s,
          NodeTag::Constraint});
}

void SchemaTree::Load_TableTriggers(TreeNode& folder, const QString& tableName) {
    load(folder, ofTable(u"SELECT * FROM USER_TRIGGERS"_s, tableName),
         {u"..MDIMain.Load_TableTriggers",
          [](const Recordset& row) { return row.text(u"TRIGGER_NAME"); }, u"trigger"_s,
          NodeTag::Trigger});
}

void SchemaTree::Load_Sessions(TreeNode& folder) {
    ::Load_Sessions(m_parts.nodes, folder, m_parts.database);
}

bool isTableOrView(const TreeNode& node) {
    return node.Tag() == NodeTag::Table || node.Tag() == NodeTag::View;
}

QString openTableSql(const TreeNode& node) {
    return u"SELECT * FROM "_s + node.Text();
}
