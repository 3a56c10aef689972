#include "QueryWindows.h"

#include "WindowArrangement.h"
#include "Workspace.h"

#include <QMdiArea>

using namespace Qt::StringLiterals;

namespace {

frmQuery* queryIn(const QMdiSubWindow* window) {
    return window ? qobject_cast<frmQuery*>(window->widget()) : nullptr;
}

// "No To All" holds for the one command in which it was answered; left standing, it would let a
// window that is closed later lose its changes without a question.
class ClosingCommand {
public:
    explicit ClosingCommand(Workspace& workspace)
        : m_workspace(workspace) {
        m_workspace.setNoToAll(false);
    }
    ~ClosingCommand() { m_workspace.setNoToAll(false); }
    Q_DISABLE_COPY_MOVE(ClosingCommand)

private:
    Workspace& m_workspace;
};

} // namespace

QueryWindows::QueryWindows(QMdiArea& area, QueryServices services)
    : m_area(area)
    , m_services(std::move(services)) {
    connect(&area, &QMdiArea::subWindowActivated, this, &QueryWindows::windowActivated);
}

frmQuery* QueryWindows::New_Query() {
    auto* query = new frmQuery(m_services);
    query->setAttribute(Qt::WA_DeleteOnClose);
    query->setSplitterTop(m_splitterTop);
    connect(query, &frmQuery::splitterChosen, this, &QueryWindows::setSplitterTop);
    ++m_counter;
    query->setCaption(QString::number(m_counter) + u" Query - Untitled"_s);
    query->setFileName(QString());
    restoreMaximised();
    QMdiSubWindow* window = m_area.addSubWindow(query);
    showNormal(*window);
    // Only the very first window of a run is maximised, on purpose.
    if (m_counter == 1)
        window->showMaximized();
    query->setUnSavedChanges(false);
    return query;
}

// The area would maximise the new window, too, at once or when the program gets the focus back, and
// leave it half so, without a title and without the focus.
void QueryWindows::restoreMaximised() {
    QMdiSubWindow* window = m_area.currentSubWindow();
    if (window && window->isMaximized())
        window->showNormal();
}

void QueryWindows::showNormal(QMdiSubWindow& window) {
    // A window that was never shown is placed by the area, wherever that finds room.
    window.showNormal();
    window.setGeometry(newWindowRect(m_area, m_counter - 1));
}

frmQuery* QueryWindows::active() const {
    return queryIn(m_area.currentSubWindow());
}

bool QueryWindows::closeActive() {
    frmQuery* query = active();
    if (!query)
        return true;
    const ClosingCommand command(m_services.workspace);
    return query->Unload(UnloadMode::Code);
}

bool QueryWindows::closeAll() {
    const ClosingCommand command(m_services.workspace);
    const QList<QMdiSubWindow*> windows = m_area.subWindowList();
    for (QMdiSubWindow* window : windows) {
        frmQuery* query = queryIn(window);
        if (query && !query->Unload(UnloadMode::Code))
            return false;
    }
    return true;
}

void QueryWindows::windowActivated(QMdiSubWindow* window) {
    // The area also reports that the program lost the focus and got it back; the caret then stays.
    if (!window || window == m_lastActive)
        return;
    m_lastActive = window;
    if (frmQuery* query = queryIn(window))
        query->Activate();
}
