#include "CommandBars.h"

#include "FormParts.h"
#include "Images.h"
#include "ToolbarTable.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

CommandBars::CommandBars(QMainWindow& window, std::set<UserCommand> available)
    : QObject(&window)
    , m_window(window)
    , m_available(std::move(available)) {
    buildMenus(window);
    buildToolbar(window);
}

QAction* CommandBars::entry(QLatin1StringView name) const {
    return m_window.findChild<QAction*>(name);
}

QMenu* CommandBars::menu(QLatin1StringView name) const {
    return m_window.findChild<QMenu*>(name);
}

QAction* CommandBars::makeAction(UserCommand command, QLatin1StringView caption,
                                 const QString& objectName) {
    auto* action = new QAction(caption, &m_window);
    action->setObjectName(objectName);
    action->setEnabled(m_available.contains(command));
    connect(action, &QAction::triggered, this, [this, command] { Q_EMIT chosen(command); });
    return action;
}

void CommandBars::buildMenus(QMainWindow& window) {
    QMenu* menu = nullptr;
    for (const MenuEntry& line : menuTable()) {
        if (line.kind == MenuKind::Menu || line.kind == MenuKind::Popup) {
            menu = line.kind == MenuKind::Menu ? window.menuBar()->addMenu(line.caption)
                                               : new QMenu(&window);
            menu->setObjectName(line.name);
            continue;
        }
        QAction* action = makeAction(line.command, line.caption, line.name);
        action->setSeparator(line.kind == MenuKind::Separator);
        action->setCheckable(line.kind == MenuKind::Tick);
        action->setShortcut(QKeySequence(line.shortcut));
        menu->addAction(action);
    }
}

void CommandBars::buildToolbar(QMainWindow& window) {
    QToolBar* bar = window.addToolBar(u"Toolbar"_s);
    named(bar, u"Toolbar"_s, u"Toolbar"_s);
    bar->setMovable(false);
    QMenu* dropDown = nullptr;
    for (const ToolbarEntry& line : toolbarTable()) {
        if (line.kind == ToolbarKind::Separator) {
            bar->addSeparator();
            continue;
        }
        const QString name = u"Toolbar_"_s + line.key;
        QAction* action = makeAction(line.command, line.caption, name + u"Action"_s);
        if (line.kind == ToolbarKind::DropDownItem) {
            dropDown->addAction(action);
            continue;
        }
        action->setIcon(image(u"toolbar/"_s + line.key));
        action->setToolTip(line.tooltip);
        action->setCheckable(line.kind == ToolbarKind::TwoState);
        bar->addAction(action);
        auto* button =
            named(qobject_cast<QToolButton*>(bar->widgetForAction(action)), name, line.tooltip);
        button->setFocusPolicy(Qt::TabFocus); // some do what no menu entry does
        if (line.kind == ToolbarKind::DropDown) {
            dropDown = new QMenu(button);
            button->setMenu(dropDown);
            button->setPopupMode(QToolButton::MenuButtonPopup);
        }
    }
}
