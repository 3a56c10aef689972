#include "WindowMemory.h"

#include "Error.h"
#include "ProgramFolder.h"
#include "QueryWindows.h"
#include "WindowPlace.h"
#include "Workbench.h"

#include <QGuiApplication>
#include <QMainWindow>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace {

QString file() {
    return Program_File(u"Window.DAT"_s);
}

QList<QRect> screens() {
    QList<QRect> all;
    for (const QScreen* screen : QGuiApplication::screens())
        all << screen->availableGeometry();
    return all;
}

} // namespace

void WindowMemory::restore(QMainWindow& window, Workbench& workbench, QueryWindows& queries) {
    const std::optional<WindowPlace> place = Load_Window_Place(file());
    if (!place)
        return;
    if (place->panelWidth > 0)
        workbench.setPanelWidth(place->panelWidth);
    queries.setSplitterTop(place->splitterTop);
    const std::optional<QRect> rect = placeOnScreens(place->window, screens());
    if (!rect)
        return;
    window.resize(rect->size());
    window.move(rect->topLeft());
    if (place->maximised)
        window.setWindowState(window.windowState() | Qt::WindowMaximized);
}

void WindowMemory::save(const QMainWindow& window, const Workbench& workbench,
                        const QueryWindows& queries) {
    const bool isNormal = !window.isMaximized() && !window.isMinimized();
    WindowPlace place;
    place.window = isNormal ? QRect(window.pos(), window.size()) : window.normalGeometry();
    place.maximised = window.isMaximized();
    place.panelWidth = workbench.panelWidth();
    place.splitterTop = queries.splitterTop();
    try {
        Save_Window_Place(place, file());
    } catch (const Error&) {
    }
}
