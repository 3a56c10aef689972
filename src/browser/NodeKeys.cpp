#include "NodeKeys.h"

#include "Text.h"
#include "TreeNodes.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint32 lastValue = 1'000'000;

} // namespace

void NodeKeys::Assign_Node_Key(TreeNodes& nodes, TreeNode& node) {
    const QString stem = trimBlanks(node.Text()).isEmpty() ? u"X"_s : node.Text();
    QString key;
    do {
        counter = counter == lastValue ? 1 : counter + 1;
        key = stem + QString::number(counter);
    } while (nodes.hasKey(key));
    nodes.setKey(node, key);
}
