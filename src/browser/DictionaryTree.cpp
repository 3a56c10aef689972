#include "DictionaryTree.h"

#include "ErrorTrap.h"
#include "modDatabase.h"

using namespace Qt::StringLiterals;

void DictionaryTree::tabChosen() {
    if (m_database.isConnected() && m_nodes.isEmpty())
        Load_Dictionary();
}

void DictionaryTree::Load_Dictionary() {
    m_nodes.clear();
    trapErrors(m_host, u"..MDIMain.Load_Dictionary", [this] {
        const auto rows = m_database.Get_Recordset(
            u"SELECT TABLE_NAME FROM DICTIONARY WHERE TABLE_NAME LIKE 'USER%'"_s, 0);
        for (; !rows->atEof(); rows->MoveNext()) {
            const QString name = rows->text(u"TABLE_NAME");
            m_nodes.add(nullptr, {name, {}, {}, name});
        }
    });
}

void DictionaryTree::Load_Dictionary_Children(TreeNode& node) {
    trapErrors(m_host, u"..MDIMain.Load_Dictionary_Children", [&] {
        const auto rows = m_database.Get_Recordset(u"SELECT * FROM "_s + node.Key(), 0);
        const TreeNodes::Filling filling(m_nodes, node);
        for (; !rows->atEof(); rows->MoveNext())
            m_nodes.add(&node, {rows->text(rows->fieldName(0)), {}, {}, {}});
    });
}
