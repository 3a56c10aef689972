#include "HelpCommands.h"

#include "HelpFile.h"
#include "HelpPages.h"
#include "Host.h"

#include <QApplication>
#include <QFileInfo>
#include <QKeyEvent>

#ifdef Q_OS_WIN
#include <QProcess>
#else
#include "HelpBook.h"
#include "frmHelp.h"
#endif

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
    : m_host(host) {
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

#ifdef Q_OS_WIN

void HelpCommands::close() {}

void HelpCommands::showPage(const QString& page) {
    const QString file = helpFile();
    const QString place = page.isEmpty() ? file : u"mk:@MSITStore:"_s + file + u"::"_s + page;
    if (!QFileInfo::exists(file) || !QProcess::startDetached(u"hh.exe"_s, {place}))
        tellProblem(m_host, file);
}

// The viewer has no way to begin at its search.
void HelpCommands::showSearch() {
    showPage({});
}

#else

frmHelp* HelpCommands::window() {
    // A modal dialog takes the input from all windows but its own.
    QWidget* dialog = QApplication::activeModalWidget();
    if (m_window && m_window->isVisible() && (!dialog || m_window->parentWidget() == dialog))
        return m_window;
    delete m_window;
    const QString file = helpFile();
    std::unique_ptr<HelpBook> book = HelpBook::open(file);
    if (!book) {
        tellProblem(m_host, file);
        return nullptr;
    }
    m_window = new frmHelp(std::move(book), dialog); // deleted in close() or with the dialog
    return m_window;
}

void HelpCommands::close() {
    delete m_window;
}

void HelpCommands::showPage(const QString& page) {
    frmHelp* help = window();
    if (!help)
        return;
    help->showPage(page);
    help->show();
    help->raise();
    help->activateWindow();
}

void HelpCommands::showSearch() {
    frmHelp* help = window();
    if (!help)
        return;
    help->show();
    help->raise();
    help->activateWindow();
    help->showSearch();
}

#endif

void HelpCommands::showContents() {
    showPage({});
}
