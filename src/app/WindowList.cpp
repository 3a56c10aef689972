#include "WindowList.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace {

const QString entryName = u"mnuWindowList"_s;
constexpr int lastMnemonic = 9;

void removeOldEntries(QMenu& menu) {
    const QList<QAction*> actions = menu.actions();
    for (QAction* action : actions) {
        if (action->objectName() == entryName)
            delete action;
    }
}

QString entryCaption(int number, const QMdiSubWindow& window) {
    QString title = window.windowTitle();
    title.replace(u'&', "&&"_L1).replace("[*][*]"_L1, "[*]"_L1);
    const QString mnemonic = number <= lastMnemonic ? u"&"_s : QString();
    return mnemonic + QString::number(number) + u' ' + title;
}

void listWindows(QMenu& menu, QMdiArea& area) {
    removeOldEntries(menu);
    const QList<QMdiSubWindow*> windows = area.subWindowList(QMdiArea::CreationOrder);
    if (windows.isEmpty())
        return;
    menu.addSeparator()->setObjectName(entryName);
    int number = 0;
    for (QMdiSubWindow* window : windows) {
        QAction* entry = menu.addAction(entryCaption(++number, *window));
        entry->setObjectName(entryName);
        entry->setCheckable(true);
        entry->setChecked(window == area.currentSubWindow());
        // The window may be gone by the time; it is the receiver, so nothing is called then.
        QObject::connect(entry, &QAction::triggered, window, [&area, window] {
            if (window->isMinimized())
                window->showNormal();
            area.setActiveSubWindow(window);
        });
    }
}

} // namespace

void installWindowList(QMenu& menu, QMdiArea& area) {
    QObject::connect(&menu, &QMenu::aboutToShow, &menu,
                     [&menu, &area] { listWindows(menu, area); });
}
