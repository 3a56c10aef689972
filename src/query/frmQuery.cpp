#include "frmQuery.h"

#include "ErrorTrap.h"
#include "FlexGrid.h"
#include "FormHelpers.h"
#include "FormParts.h"
#include "Options.h"
#include "QueryKeys.h"
#include "QueryPanels.h"
#include "ResultPanel.h"
#include "RunBar.h"
#include "SaveQuestion.h"
#include "StatusPanels.h"
#include "TextView.h"
#include "TextWidth.h"
#include "Workspace.h"
#include "modFunctions.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QMdiArea>
#include <QMdiSubWindow>

using namespace Qt::StringLiterals;

namespace {

constexpr int restrictionPanel = 3;

} // namespace

frmQuery::frmQuery(const QueryServices& services)
    : txtSQL(named(new SqlEditor(services.host), u"txtSQL"_s, u"SQL editor"_s))
    , m_services(services)
    , m_runBar(new RunBar)
    , m_results(new ResultPanel)
    , StatusBar1(new StatusPanels(u"StatusBar1"_s, {1, 0, 0}))
    , m_panels(new QueryPanels({*this, *m_runBar, *txtSQL, *m_results, *StatusBar1}))
    , m_runner(*this, services.host, services.database) {
    setObjectName(u"frmQuery"_s);
    setMinimumSize(minimumSizeHint());
    setFocusProxy(txtSQL);
    wireControls();
    Load();
}

frmQuery::~frmQuery() = default;

// The smallest size is the form's own, also for a frame that was made smaller.
QSize frmQuery::minimumSizeHint() const {
    return m_panels->smallestForm();
}

void frmQuery::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_panels->layOut();
}

void frmQuery::setSplitterTop(int top) {
    m_panels->setChosenTop(top);
}

void frmQuery::wireControls() {
    connect(m_panels.get(), &QueryPanels::splitterChosen, this, &frmQuery::splitterChosen);
    connect(m_runBar->cboResults, &QComboBox::currentIndexChanged, this,
            &frmQuery::cboResults_Click);
    connect(m_runBar->chkShowResults, &QCheckBox::toggled, m_results, &ResultPanel::setResultsTab);
    connect(m_runBar->chkShowPlan, &QCheckBox::toggled, m_results, &ResultPanel::setPlanTab);
    connect(m_runBar->txtMaxRecords, &QLineEdit::textChanged, this,
            [this](const QString& text) { setMaxRecords(recordLimitOf(text)); });
    connect(m_results, &ResultPanel::tabClicked, this, [this] {
        trapErrors(m_services.host, u"..frmQuery.TabStrip1_Click",
                   [this] { m_results->showSelectedView(); });
    });
    connect(txtSQL, &RichTextBox::Change, this, [this] { setUnSavedChanges(true); });
    // The form sees keys before its controls do.
    const QList<QWidget*> controls = findChildren<QWidget*>();
    for (QWidget* control : controls)
        control->installEventFilter(this);
}

void frmQuery::Load() {
    setMaxRecords(0);
    m_runner.Reset();
    const OptionsRecord& options = Options();
    m_runBar->setOutputMode(options.OutputResults);
    m_runBar->chkShowResults->setChecked(options.ShowResults == 1);
    m_results->setResultsTab(showResults());
    m_runBar->chkShowPlan->setChecked(options.ShowEP == 1);
    m_results->setPlanTab(showPlan());
    m_runBar->txtMaxRecords->setText(QString::number(options.RecordLimit));
    m_results->selectFirstTab();
    txtSQL->setText(options.QueryTemplate + u"\r\n"_s);
    placeCaretAtEnd();
}

void frmQuery::placeCaretAtEnd() {
    txtSQL->setFocus();
    txtSQL->moveCursor(QTextCursor::End);
}

QWidget* frmQuery::shownResult() const {
    return m_results->selectedView();
}

void frmQuery::setFileName(const QString& path) {
    m_fileName = path;
    if (!path.isEmpty())
        setCaption(u"Query - "_s + path);
    m_services.workspace.enableSavedFileEntry(!path.isEmpty());
}

void frmQuery::setCaption(const QString& caption) {
    m_caption = caption;
    // The toolkit takes "[*]" in a title for its mark of a changed document.
    setWindowTitle(QString(caption).replace("[*]"_L1, "[*][*]"_L1));
}

void frmQuery::setMaxRecords(qint32 limit) {
    m_runner.state().MaxRecords = limit;
    StatusBar1->setText(restrictionPanel, limit != 0
                                              ? QString::number(limit) + u" Record Restriction  "_s
                                              : u"No Record Restriction  "_s);
}

void frmQuery::Activate() {
    tickOutputMode();
    m_services.workspace.enableSavedFileEntry(!m_fileName.isEmpty());
    placeCaretAtEnd();
    txtSQL_Change();
}

void frmQuery::tickOutputMode() {
    m_services.workspace.tickOutputMode(outputMode());
}

void frmQuery::cboResults_Click() {
    trapErrors(m_services.host, u"..frmQuery.cboResults_Click", [this] {
        m_runner.Reset();
        m_results->showGridInResults(outputMode() == OutputMode::Grid);
        tickOutputMode();
    });
}

void frmQuery::chooseOutputMode(const QString& mode) {
    m_runBar->setOutputMode(mode);
    tickOutputMode();
}

void frmQuery::clearEditor() {
    // As an edit, so that it can be undone.
    txtSQL->SelectAll();
    txtSQL->setSelText(QString());
}

bool frmQuery::Unload(UnloadMode mode) {
    m_unloadMode = mode;
    QWidget* frame = qobject_cast<QMdiSubWindow*>(parentWidget());
    const bool closed = (frame ? frame : this)->close();
    m_unloadMode = UnloadMode::ControlMenu;
    return closed;
}

void frmQuery::closeEvent(QCloseEvent* event) {
    event->setAccepted(mayClose());
}

bool frmQuery::mayClose() {
    if (m_services.workspace.NoToAll() || !m_unsavedChanges)
        return true;
    bringToFront();
    const QString name = m_fileName.isEmpty() ? m_caption : m_fileName;
    const Answer answer = m_unloadMode == UnloadMode::ControlMenu
                              ? askInMessageBox(m_services.host, name)
                              : askInSavePrompt(name, window());
    switch (answer) {
    case Answer::Yes: return saveBeforeClosing();
    case Answer::No: setUnSavedChanges(false); return true;
    case Answer::NoToAll: m_services.workspace.setNoToAll(true); return true;
    default: return false;
    }
}

bool frmQuery::saveBeforeClosing() {
    // A cancelled or failed save keeps the window, or its text would be lost.
    if (!m_services.workspace.Save_File(m_fileName.isEmpty()))
        return false;
    setUnSavedChanges(false);
    return true;
}

// What is asked about is seen, and the main window saves its active window.
void frmQuery::bringToFront() {
    auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget());
    if (frame && frame->mdiArea())
        frame->mdiArea()->setActiveSubWindow(frame);
}

bool frmQuery::eventFilter(QObject* watched, QEvent* event) {
    const QueryKey key = queryKeyOf(*event);
    if (key == QueryKey::None)
        return QWidget::eventFilter(watched, event);
    event->accept();
    if (event->type() == QEvent::ShortcutOverride)
        return true; // the key press follows, instead of the main window's shortcut
    if (key == QueryKey::ClearEditor)
        clearEditor();
    else if (m_services.showTrace)
        m_services.showTrace();
    return true;
}

QString frmQuery::scriptText() const {
    return txtSQL->SelLength() > 0 ? txtSQL->SelText() : txtSQL->Text();
}

QString frmQuery::outputMode() const {
    return m_runBar->cboResults->currentText();
}

bool frmQuery::showResults() const {
    return m_runBar->chkShowResults->isChecked();
}

bool frmQuery::showPlan() const {
    return m_runBar->chkShowPlan->isChecked();
}

GridData& frmQuery::resultGrid() {
    return m_results->grdResults->data();
}

GridData& frmQuery::planGrid() {
    return m_results->grdEP->data();
}

void frmQuery::setResultText(QByteArray utf8) {
    m_results->txtResults->setText(std::move(utf8));
}

void frmQuery::clearMessages() {
    m_results->txtMessage->setText(QByteArray());
}

void frmQuery::appendMessage(const QString& text) {
    m_results->txtMessage->appendText(u"\r\n"_s + text);
    m_results->txtMessage->scrollToEnd();
}

void frmQuery::showMessagesTab() {
    m_results->selectTab(u"messages"_s);
}

void frmQuery::setStatus(StatusPanel panel, const QString& text) {
    StatusBar1->setText(int(panel), text);
}

void frmQuery::showProgress(const QString& line) {
    StatusBar1->setPassingText(int(StatusPanel::Progress), line);
}

void frmQuery::setStatistics(const std::vector<std::pair<QString, QString>>& rows) {
    m_results->setStatistics(rows);
}

int frmQuery::textWidth(const QString& text) const {
    return textWidthTwips(fontMetrics(), text);
}

void frmQuery::repaintNow() {
    repaint();
}
