#pragma once

#include "MenuTable.h"

#include <QObject>

#include <set>

class QMainWindow;

// The menu bar, context menus and toolbar of the main window, built from their tables.
class CommandBars : public QObject {
    Q_OBJECT
public:
    // Entries whose command is not in `available` are in place but disabled.
    CommandBars(QMainWindow& window, std::set<UserCommand> available);

    // An entry by its object name, which must exist.
    class QAction* entry(QLatin1StringView name) const;
    class QMenu* menu(QLatin1StringView name) const;

Q_SIGNALS:
    void chosen(UserCommand command);

private:
    void buildMenus(QMainWindow& window);
    void buildToolbar(QMainWindow& window);
    QAction* makeAction(UserCommand command, QLatin1StringView caption, const QString& objectName);

    QMainWindow& m_window;
    std::set<UserCommand> m_available;
};
