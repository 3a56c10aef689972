#include "MDIMain.h"

#include "CodeCommands.h"
#include "CommandBars.h"
#include "EditCommands.h"
#include "ErrorTrap.h"
#include "ExecutionPlan.h"
#include "FavouriteCommands.h"
#include "FileDrop.h"
#include "FocusBorder.h"
#include "FocusCircle.h"
#include "FormParts.h"
#include "HelpCommands.h"
#include "Images.h"
#include "LeftPanel.h"
#include "Options.h"
#include "ProgramFolder.h"
#include "QueryFiles.h"
#include "StatusPanels.h"
#include "TreeCommands.h"
#include "Version.h"
#include "WindowArrangement.h"
#include "WindowList.h"
#include "WindowMemory.h"
#include "Workbench.h"
#include "frmAbout.h"
#include "frmOptions.h"
#include "frmTrace.h"
#include "modDatabase.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QMdiArea>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace {

QString optionsFile() {
    return Program_File(u"Options.DAT"_s);
}

} // namespace

// What a command does, and the name under which its errors are reported.
struct MDIMain::Handler {
    QStringView procedure;
    std::function<void(MDIMain&)> run;
};

const std::map<UserCommand, MDIMain::Handler>& MDIMain::handlers() {
    using enum UserCommand;
    using Main = MDIMain;
    const auto arrange = [](Arrangement arrangement) {
        return
            [arrangement](Main& main) { arrangeWindows(*main.m_workbench->mdiArea, arrangement); };
    };
    const auto output = [](const QString& mode) {
        return [mode](Main& main) { main.chooseOutput(mode); };
    };
    constexpr QStringView toolbar = u"..MDIMain.Toolbar_ButtonClick";
    static const std::map<UserCommand, Handler> table = {
        {Connect, {u"..MDIMain.mnuFileConnect_Click", [](Main& m) { m.m_connect.Connect(); }}},
        {Disconnect,
         {u"..MDIMain.mnuFileDisconnect_Click", [](Main& m) { m.m_connect.Disconnect(); }}},
        {NewQuery, {u"..MDIMain.mnuFileNew_Click", [](Main& m) { m.New_Query(); }}},
        {OpenQuery, {u"..MDIMain.mnuFileOpen_Click", [](Main& m) { m.openQuery(); }}},
        {CloseQuery, {u"..MDIMain.mnuFileClose_Click", [](Main& m) { m.m_queries.closeActive(); }}},
        {Save, {u"..MDIMain.mnuFileSave_Click", [](Main& m) { m.Save_File(false); }}},
        {SaveAs, {u"..MDIMain.mnuFileSaveAs_Click", [](Main& m) { m.Save_File(true); }}},
        {SaveAll, {u"..MDIMain.mnuFileSaveAll_Click", &Main::saveAll}},
        {AddToFavourites, {u"..MDIMain.Add_To_Favourites", &Main::addToFavourites}},
        {OpenFavourite, {u"..MDIMain.mnuPopup2OpenQuery_Click", &Main::openFavourite}},
        {UserCommand::Print, {u"..MDIMain.mnuFilePrint_Click", &Main::print}},
        {Exit, {u"..MDIMain.mnuFileExit_Click", [](Main& m) { m.close(); }}},
        {UserCommand::Cut, {u"..MDIMain.Cut", &Main::Cut}},
        {UserCommand::Copy, {u"..MDIMain.Copy", &Main::Copy}},
        {UserCommand::Paste, {u"..MDIMain.Paste", &Main::Paste}},
        {UserCommand::SelectAll, {u"..MDIMain.SelectAll", &Main::SelectAll}},
        {ClearWindow, {u"..MDIMain.mnuFileEditClearWin_Click", &Main::clearWindow}},
        {Execute, {u"..MDIMain.mnuQueryExecute_Click", &Main::execute}},
        {ResultsInGrid, {u"..MDIMain.mnuQueryRGrid_Click", output(OutputMode::Grid)}},
        {ResultsInText, {u"..MDIMain.mnuQueryRText_Click", output(OutputMode::Text)}},
        {ResultsInFile, {u"..MDIMain.mnuQueryRFile_Click", output(OutputMode::File)}},
        {RefreshTrees, {u"..MDIMain.mnuViewRefresh_Click", &Main::refreshTree}},
        {ShowOptions, {u"..MDIMain.mnuViewOptions_Click", &Main::showOptions}},
        {HelpContents,
         {u"..MDIMain.mnuHelpContents_Click", [](Main& m) { m.m_help->showContents(); }}},
        {HelpSearch, {u"..MDIMain.mnuHelpSearch_Click", [](Main& m) { m.m_help->showSearch(); }}},
        {ShowAbout, {u"..MDIMain.mnuHelpAbout_Click", [](Main& m) { frmAbout(&m).exec(); }}},
        {OpenObject,
         {u"..MDIMain.mnuPopup1Open_Click", [](Main& m) { m.m_trees->openSelected(); }}},
        {GenerateCode, {u"..MDIMain.mnuQueryGenerateCode_Click", &Main::generateCode}},
        {Cascade, {u"..MDIMain.mnuWindowCascade_Click", arrange(Arrangement::Cascade)}},
        {TileHorizontal,
         {u"..MDIMain.mnuWindowTileHorizontal_Click", arrange(Arrangement::TileHorizontal)}},
        {TileVertical,
         {u"..MDIMain.mnuWindowTileVertical_Click", arrange(Arrangement::TileVertical)}},
        // The button is there and does nothing, on purpose.
        {ToolbarUndo, {toolbar, [](Main&) {}}},
        {ToggleBrowser, {toolbar, &Main::toggleBrowser}},
    };
    return table;
}

MDIMain::MDIMain(Host& host, modDatabase& database, TraceLog& trace)
    : m_host(host)
    , m_database(database)
    , m_trace(trace)
    , m_workbench(new Workbench(nullptr)) // comes in behind the toolbar, also for the Tab key
    , StatusBar(new StatusPanels(u"StatusBar"_s, {2, 1, 1}))
    , m_connect(database, *this)
    , m_queries(*m_workbench->mdiArea, {host, database, *this, [this] { showTrace(); }})
    , m_help(std::make_unique<HelpCommands>(host))
    , m_patience([this](const QString& line) { showProgress(line); }) {
    setObjectName(u"MDIMain"_s);
    QApplication::setWindowIcon(programIcon()); // for the query windows and dialogs, too
    std::set<UserCommand> available;
    for (const auto& [command, handler] : handlers())
        available.insert(command);
    m_bars = new CommandBars(*this, std::move(available));
    connect(m_bars, &CommandBars::chosen, this, &MDIMain::perform);
    installWindowList(*m_bars->menu("mnuWindow"_L1), *m_workbench->mdiArea);
    m_trees.reset(new TreeCommands(
        {*m_workbench->picLeft, *m_bars->menu("mnuPopup1"_L1), m_queries, database, host}));
    new FocusCircle(*this, *m_workbench->picLeft, m_queries);
    new FocusBorder(*this);
    setCentralWidget(m_workbench);
    setStatusBar(StatusBar);
    wireFavourites();
    wireConnection();
}

MDIMain::~MDIMain() {
    m_database.setWatch(nullptr);
}

// In the window that runs the statement; the trees' statements show theirs there as well.
void MDIMain::showProgress(const QString& line) {
    if (frmQuery* query = m_queries.active())
        query->showProgress(line);
    else
        StatusBar->setPassingText(1, line);
}

void MDIMain::wireConnection() {
    connect(&m_connect, &ConnectCommands::statusChanged, StatusBar, &StatusPanels::setText);
    connect(&m_connect, &ConnectCommands::connectedChanged, this, [this](bool connected) {
        m_bars->entry("mnuFileConnect"_L1)->setEnabled(!connected);
        m_bars->entry("mnuFileDisconnect"_L1)->setEnabled(connected);
    });
    connect(&m_connect, &ConnectCommands::ready, this, [this] {
        makePlanTable();
        New_Query();
        m_trees->connected();
        m_favourites->Initialise_Query_Tree();
    });
    connect(&m_connect, &ConnectCommands::closing, m_trees.get(), &TreeCommands::clear);
    m_bars->entry("mnuFileDisconnect"_L1)->setEnabled(false);
    m_database.setWatch(&m_patience);
    connect(&m_patience, &StatementPatience::lost, &m_connect, &ConnectCommands::lost);
    connect(&m_patience, &StatementPatience::lost, m_trees.get(), &TreeCommands::clearLater);
}

void MDIMain::wireFavourites() {
    m_favourites = new FavouriteCommands(*m_workbench->picLeft->trvQueries,
                                         *m_bars->menu("mnuPopup2"_L1), m_host, m_trace);
    m_favourites->setParent(this);
    connect(m_favourites, &FavouriteCommands::openRequested, this,
            [this] { perform(UserCommand::OpenFavourite); });
    connect(new FileDrop(*this), &FileDrop::dropped, this, [this](const QStringList& paths) {
        activateWindow();
        for (const QString& path : paths)
            trapErrors(m_host, u"..MDIMain.MDIForm_OLEDragDrop", [&] { openQuery(path); });
    });
}

// A database that refuses the table (a read-only one) can still be queried, so the failure is
// reported here and the connect goes on.
void MDIMain::makePlanTable() {
    trapErrors(m_host, u"..MDIMain.mnuFileConnect_Click",
               [this] { Create_Plan_Table(m_database, m_host); });
}

void MDIMain::Load() {
    setWindowTitle(QString::fromLatin1(QUILLMATE_NAME));
    constexpr QSize startSize(1180, 760);
    resize(startSize);
    Centre_Form(*this);
    trapErrors(m_host, u"..MDIMain.Initialise_Form", [this] { Initialise_Form(); });
    WindowMemory::restore(*this, *m_workbench, m_queries);
}

void MDIMain::Initialise_Form() {
    Show_Browser(true); // first, so that it is there when the options cannot be read
    m_favourites->makeFolder();
    Load_Options(Options(), optionsFile());
}

void MDIMain::showOptions() {
    frmOptions(m_host, optionsFile(), this).exec();
}

bool MDIMain::Connected() const {
    return m_database.isConnected();
}

frmQuery* MDIMain::New_Query() {
    frmQuery* query = nullptr;
    trapErrors(m_host, u"..MDIMain.New_Query", [&] { query = m_queries.New_Query(); });
    return query;
}

bool MDIMain::Save_File(bool saveAs) {
    frmQuery* query = m_queries.active();
    if (!query)
        return false;
    bool saved = false;
    trapErrors(m_host, u"..MDIMain.Save_File",
               [&] { saved = Save_Query_File(*query, saveAs, m_host); });
    return saved;
}

void MDIMain::openQuery(const QString& path) {
    Open_Query(path, m_host, [this] { return New_Query(); });
}

void MDIMain::refreshTree() {
    if (m_workbench->picLeft->chosenTab() == LeftTab::Favourites)
        m_favourites->refresh();
    else
        m_trees->Refresh_Tree();
}

void MDIMain::saveAll() {
    m_host.msgBox(u"Save All Code goes here!"_s); // nothing is saved, on purpose
}

void MDIMain::addToFavourites() {
    const frmQuery* query = m_queries.active();
    m_favourites->Add_To_Favourites(query ? std::optional(query->FileName()) : std::nullopt, this);
}

void MDIMain::openFavourite() {
    if (const std::optional<QString> file = m_favourites->selectedFile())
        openQuery(*file);
}

void MDIMain::generateCode() {
    if (const frmQuery* query = m_queries.active())
        CodeCommands::Generate_Code(*query, m_host, this);
}

QWidget* MDIMain::activeControl() const {
    const frmQuery* query = m_queries.active();
    return query ? query->ActiveControl() : nullptr;
}

void MDIMain::Undo() {
    EditCommands::Undo(activeControl());
}

void MDIMain::Cut() {
    EditCommands::Cut(activeControl(), m_host);
}

void MDIMain::Copy() {
    EditCommands::Copy(activeControl(), m_host);
}

void MDIMain::Paste() {
    EditCommands::Paste(activeControl(), m_host);
}

void MDIMain::SelectAll() {
    EditCommands::SelectAll(activeControl());
}

void MDIMain::print() {
    if (const frmQuery* query = m_queries.active())
        EditCommands::Print(query->ActiveControl(), query->Caption(), m_host);
}

void MDIMain::clearWindow() {
    if (frmQuery* query = m_queries.active())
        query->clearEditor();
}

void MDIMain::execute() {
    if (frmQuery* query = m_queries.active())
        query->Run_Queries();
}

void MDIMain::chooseOutput(const QString& mode) {
    if (frmQuery* query = m_queries.active())
        query->chooseOutputMode(mode);
    else
        tickOutputMode(QString()); // the toolkit has ticked the entry already
}

void MDIMain::tickOutputMode(const QString& mode) {
    const std::pair<QLatin1StringView, const QString&> entries[] = {
        {"mnuQueryRGrid"_L1, OutputMode::Grid},
        {"mnuQueryRText"_L1, OutputMode::Text},
        {"mnuQueryRFile"_L1, OutputMode::File},
    };
    for (const auto& [name, entryMode] : entries)
        m_bars->entry(name)->setChecked(mode == entryMode);
}

void MDIMain::enableSavedFileEntry(bool on) {
    const bool available = handlers().contains(UserCommand::AddToFavourites);
    m_bars->entry("mnuFileAddFav"_L1)->setEnabled(on && available);
}

void MDIMain::Show_Browser(bool show) {
    m_workbench->Show_Browser(show);
    m_bars->entry("Toolbar_browserAction"_L1)->setChecked(show);
}

void MDIMain::toggleBrowser() {
    Show_Browser(m_bars->entry("Toolbar_browserAction"_L1)->isChecked());
}

void MDIMain::showTrace() {
    if (!m_traceWindow)
        m_traceWindow = std::make_unique<frmTrace>(m_trace);
    m_traceWindow->show();
    m_traceWindow->raise();
    m_traceWindow->activateWindow();
}

void MDIMain::perform(UserCommand command) {
    const auto found = handlers().find(command);
    if (found == handlers().end())
        return;
    const Handler& handler = found->second;
    trapErrors(m_host, handler.procedure, [&] { handler.run(*this); });
}

void MDIMain::closeEvent(QCloseEvent* event) {
    if (!m_queries.closeAll()) {
        event->ignore();
        return;
    }
    WindowMemory::save(*this, *m_workbench, m_queries);
    m_database.Close_Connection();
    m_help->close();
    if (m_traceWindow)
        m_traceWindow->close(); // it would keep the program running
    event->accept();
}
