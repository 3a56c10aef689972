#include "QueryKeys.h"

#include <QKeyEvent>

namespace {

const struct {
    QKeyCombination combination;
    QueryKey key;
} keyTable[] = {
    {Qt::CTRL | Qt::Key_F12, QueryKey::ClearEditor},
    {Qt::CTRL | Qt::SHIFT | Qt::Key_F8, QueryKey::ShowTrace},
};

} // namespace

QueryKey queryKeyOf(const QEvent& event) {
    if (event.type() != QEvent::KeyPress && event.type() != QEvent::ShortcutOverride)
        return QueryKey::None;
    const QKeyCombination pressed = static_cast<const QKeyEvent&>(event).keyCombination();
    for (const auto& line : keyTable) {
        if (line.combination == pressed)
            return line.key;
    }
    return QueryKey::None;
}
