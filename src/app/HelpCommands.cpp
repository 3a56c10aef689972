#include "HelpCommands.h"

#include "HelpFile.h"
#include "HelpPages.h"
#include "HelpViewer.h"
#include "Host.h"

#include <QApplication>
#include <QFileInfo>
#include <QKeyEvent>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

void tellProblem(Host& host, const QString& file) {
    const QString problem = QFileInfo::exists(file)
                                ? u"The help file '%1' is damaged and cannot be read."_s
                                : u"The help file '%1' was not found."_s;
    host.msgBox(problem.arg(file), MsgButtons::Ok, MsgIcon::Exclamation);
}

} // namespace

HelpCommands::HelpCommands(Host& host)
    : m_host(host)
    , m_viewer(makeHelpViewer()) {
    qApp->installEventFilter(this);
}

HelpCommands::~HelpCommands() {
    close();
}

bool HelpCommands::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return QObject::eventFilter(watched, event);
    const auto* key = static_cast<const QKeyEvent*>(event);
    if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier)
        return QObject::eventFilter(watched, event);
    showPage(helpPageOf(static_cast<const QWidget*>(watched)));
    return true;
}

void HelpCommands::close() {
    m_viewer->close();
}

void HelpCommands::showPage(const QString& page) {
    const QString file = helpFile();
    if (!m_viewer->showPage(file, page))
        tellProblem(m_host, file);
}

void HelpCommands::showSearch() {
    const QString file = helpFile();
    if (!m_viewer->showSearch(file))
        tellProblem(m_host, file);
}

void HelpCommands::showContents() {
    showPage({});
}
