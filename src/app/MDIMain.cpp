#include "MDIMain.h"

#include "CommandBars.h"
#include "ErrorTrap.h"
#include "ExecutionPlan.h"
#include "FormParts.h"
#include "Options.h"
#include "ProgramFolder.h"
#include "StatusPanels.h"
#include "Version.h"
#include "Workbench.h"
#include "modDatabase.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QScreen>

using namespace Qt::StringLiterals;

// What a command does, and the name under which its errors are reported.
struct MDIMain::Handler {
    QStringView procedure;
    void (MDIMain::*run)();
};

const std::map<UserCommand, MDIMain::Handler>& MDIMain::handlers() {
    static const std::map<UserCommand, Handler> table = {
        {UserCommand::Connect, {u"..MDIMain.mnuFileConnect_Click", &MDIMain::connectToDatabase}},
        {UserCommand::Disconnect,
         {u"..MDIMain.mnuFileDisconnect_Click", &MDIMain::disconnectFromDatabase}},
        {UserCommand::Exit, {u"..MDIMain.mnuFileExit_Click", &MDIMain::exitProgram}},
        // The button is there and does nothing, on purpose.
        {UserCommand::ToolbarUndo, {u"..MDIMain.Toolbar_ButtonClick", &MDIMain::doNothing}},
        {UserCommand::ToggleBrowser, {u"..MDIMain.Toolbar_ButtonClick", &MDIMain::toggleBrowser}},
    };
    return table;
}

MDIMain::MDIMain(Host& host, modDatabase& database, TraceLog&)
    : m_host(host)
    , m_database(database)
    , m_connect(database, *this)
    , m_workbench(new Workbench(this)) {
    setObjectName(u"MDIMain"_s);
    std::set<UserCommand> available;
    for (const auto& [command, handler] : handlers())
        available.insert(command);
    m_bars = new CommandBars(*this, std::move(available));
    connect(m_bars, &CommandBars::chosen, this, &MDIMain::perform);
    setCentralWidget(m_workbench);
    StatusBar = new StatusPanels(u"StatusBar"_s, {2, 1, 1});
    setStatusBar(StatusBar);
    wireConnection();
}

MDIMain::~MDIMain() = default;

void MDIMain::wireConnection() {
    connect(&m_connect, &ConnectCommands::statusChanged, StatusBar, &StatusPanels::setText);
    connect(&m_connect, &ConnectCommands::connectedChanged, this, [this](bool connected) {
        m_bars->entry("mnuFileConnect"_L1)->setEnabled(!connected);
        m_bars->entry("mnuFileDisconnect"_L1)->setEnabled(connected);
    });
    m_bars->entry("mnuFileDisconnect"_L1)->setEnabled(false);
}

void MDIMain::Load() {
    setWindowTitle(QString::fromLatin1(QUILLMATE_NAME));
    constexpr QSize startSize(1180, 760);
    resize(startSize.boundedTo(screen()->availableSize()));
    Centre_Form(*this);
    trapErrors(m_host, u"..MDIMain.Initialise_Form", [this] { Initialise_Form(); });
}

void MDIMain::Initialise_Form() {
    Show_Browser(true);
    Load_Options(Options(), Program_File(u"Options.DAT"_s));
}

void MDIMain::setLoginPrefill(const Logon& fields) {
    m_connect.setPrefill(fields);
}

QString MDIMain::UserID() const {
    return m_connect.UserID;
}

QString MDIMain::ServiceName() const {
    return m_connect.ServiceName;
}

bool MDIMain::Connected() const {
    return m_database.isConnected();
}

void MDIMain::Show_Browser(bool show) {
    m_workbench->Show_Browser(show);
    m_bars->entry("Toolbar_browserAction"_L1)->setChecked(show);
}

void MDIMain::toggleBrowser() {
    Show_Browser(m_bars->entry("Toolbar_browserAction"_L1)->isChecked());
}

void MDIMain::perform(UserCommand command) {
    const auto found = handlers().find(command);
    if (found == handlers().end())
        return;
    const Handler& handler = found->second;
    trapErrors(m_host, handler.procedure, [&] { (this->*handler.run)(); });
}

void MDIMain::closeEvent(QCloseEvent* event) {
    m_database.Close_Connection();
    event->accept();
    QApplication::closeAllWindows(); // the trace window would keep the program running
}
