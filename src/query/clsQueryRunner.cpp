#include "clsQueryRunner.h"

#include "Command.h"
#include "Error.h"
#include "ExecutionPlan.h"
#include "GridData.h"
#include "Host.h"
#include "Options.h"
#include "QueryBatch.h"
#include "QueryStatistics.h"
#include "QueryWindow.h"
#include "Recordset.h"
#include "ResultOutput.h"
#include "Text.h"
#include "modDatabase.h"

#include <new>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr auto fieldSeparator = u",";
constexpr int quotedCharacters = 30; // of a failed statement in its message

// A step's failure as data. A result that does not fit into memory fails like any other.
template<typename Step>
std::optional<Error> failureOf(Step step) {
    try {
        step();
        return std::nullopt;
    } catch (const Error& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return Error(Error::OutOfMemory, QString(), u"Out of memory"_s);
    }
}

bool isMode(const QString& text, const QString& mode) {
    return text.compare(mode, Qt::CaseInsensitive) == 0;
}

} // namespace

clsQueryRunner::clsQueryRunner(QueryWindow& window, Host& host, modDatabase& database)
    : m_window(window)
    , m_host(host)
    , m_database(database) {}

void clsQueryRunner::Run_Queries() {
    Reset();
    const QString script = Strip_Comments(m_window.scriptText());
    Add_Message(QString());
    for (const cQuery& query : Split_Queries(script)) {
        if (query.QueryType.compare(QueryType::Select, Qt::CaseInsensitive) == 0)
            Run_SELECT_Query(query.QueryString);
        else if (query.QueryType == QueryType::General)
            Run_General_Query(query.QueryString);
    }
    if (m_state.errors)
        m_window.showMessagesTab();
    m_window.setStatus(StatusPanel::Progress, m_state.errors
                                                  ? u"Query batch complete with errors."_s
                                                  : u"Query batch complete."_s);
}

void clsQueryRunner::Run_SELECT_Query(const QString& SQL) {
    const auto recordset = createRecordset();
    if (recordset && openRecordset(*recordset, SQL) && noteRetrievalTime() &&
        showResults(*recordset) && explainAndClear(SQL))
        finish();
}

std::unique_ptr<Recordset> clsQueryRunner::createRecordset() {
    std::unique_ptr<Recordset> recordset;
    const auto failure = failureOf([&] {
        m_host.setMousePointer(MousePointer::Hourglass);
        recordset = std::make_unique<Recordset>();
        recordset->cursorLocation = CursorLocation::Client;
        recordset->cursorType = CursorTypeEnum::ForwardOnly;
    });
    if (!failure)
        return recordset;
    reportInBox(u"Error Creating Objects"_s, *failure);
    return nullptr;
}

bool clsQueryRunner::openRecordset(Recordset& recordset, const QString& SQL) {
    const auto failure = failureOf([&] { openTimed(recordset, SQL); });
    if (!failure)
        return true;
    reportServerError(*failure, SQL);
    m_window.setStatus(StatusPanel::Progress, u"Query Complete with Errors."_s);
    return false;
}

void clsQueryRunner::openTimed(Recordset& recordset, const QString& SQL) {
    const Command command{m_database.connection(), CommandTypeEnum::Text, SQL};
    m_state.timerMark = m_host.timer();
    if (m_state.MaxRecords > 0)
        recordset.MaxRecords = m_state.MaxRecords;
    m_window.setStatus(StatusPanel::Progress, u"Running query..."_s);
    m_window.repaintNow();
    recordset.Open(command);
    // A small "c" here, unlike the texts at a statement's end: kept on purpose.
    m_window.setStatus(StatusPanel::Progress, u"Query complete."_s);
}

bool clsQueryRunner::noteRetrievalTime() {
    const auto failure = failureOf([&] { m_state.retrievalTime = secondsSinceMark(); });
    if (failure)
        reportInBox(u"Error With Timer"_s, *failure);
    return !failure;
}

bool clsQueryRunner::showResults(Recordset& recordset) {
    const auto failure = failureOf([&] {
        if (m_window.showResults())
            display(recordset);
    });
    // The grid is named for text and file output too: kept on purpose.
    if (failure)
        reportInBox(u"Error Loading Results Grid"_s, *failure);
    return !failure;
}

void clsQueryRunner::display(Recordset& recordset) {
    m_window.setStatus(StatusPanel::Progress, u"Displaying query results..."_s);
    m_window.repaintNow();
    m_state.timerMark = m_host.timer();
    loadOutput(recordset);
    m_state.displayTime = secondsSinceMark();
}

void clsQueryRunner::loadOutput(Recordset& recordset) {
    const QString mode = m_window.outputMode();
    const bool grid = isMode(mode, OutputMode::Grid);
    const bool text = mode == OutputMode::Text; // letter for letter, unlike the other two
    const bool file = isMode(mode, OutputMode::File);
    if ((grid || text || file) && recordset.fieldCount() == 0)
        Add_Message(u"Query Complete"_s);
    else if (grid)
        Load_Recordset_Into_Grid(&recordset, m_window.resultGrid(), true, m_window, m_state);
    else if (text)
        Load_Recordset_Into_Text(&recordset, fieldSeparator, m_window);
    else if (file)
        Load_RecordSet_Into_File(&recordset, fieldSeparator, m_window, m_host, m_state);
}

bool clsQueryRunner::explainAndClear(const QString& SQL) {
    const auto failure = failureOf([&] {
        if (m_window.showPlan()) {
            m_window.repaintNow();
            GetPlan(SQL, m_window, m_database, m_state);
        }
        m_window.setStatus(StatusPanel::Progress, QString());
    });
    // Nothing is said, and the hourglass stays: kept on purpose.
    return !failure;
}

void clsQueryRunner::finish() {
    const auto failure = failureOf([&] {
        m_window.setStatus(StatusPanel::Progress, u"Query Complete."_s);
        m_host.setMousePointer(MousePointer::Default);
        Show_Stats(m_window, m_state);
        Add_Message(u"Query Complete."_s);
    });
    if (failure)
        m_host.setMousePointer(MousePointer::Default);
}

void clsQueryRunner::Run_General_Query(const QString& SQL) {
    try {
        m_host.setMousePointer(MousePointer::Hourglass);
    } catch (Error& error) {
        error.trailed(u"..frmQuery.Run_General_Query");
        throw;
    }
    m_window.repaintNow();
    const auto failure = failureOf([&] {
        if (!m_database.connection())
            throw Error(Error::ObjectNotSet, QString(), u"Object variable not set"_s);
        m_database.connection()->Execute(SQL);
    });
    if (failure) {
        reportServerError(*failure, SQL);
        return;
    }
    Add_Message(u"Query Complete"_s);
    m_host.setMousePointer(MousePointer::Default);
}

void clsQueryRunner::Reset() {
    m_state.errors = false;
    m_state.fileProblem.clear();
    m_window.resultGrid().clear();
    m_window.planGrid().clear();
    m_window.setResultText({});
    m_window.clearMessages();
    m_window.setStatus(StatusPanel::Progress, QString());
    m_window.setStatus(StatusPanel::RecordCount, QString());
}

void clsQueryRunner::Add_Message(const QString& text) {
    if (text.isEmpty())
        m_window.clearMessages();
    else
        m_window.appendMessage(text);
}

void clsQueryRunner::reportServerError(const Error& error, const QString& SQL) {
    m_host.setMousePointer(MousePointer::Default);
    m_state.errors = true;
    QString description = error.description();
    description.remove(u'\n');
    Add_Message(description + u"    ("_s + firstCharacters(SQL, quotedCharacters) + u"...)"_s);
}

void clsQueryRunner::reportInBox(const QString& problem, const Error& error) {
    m_host.setMousePointer(MousePointer::Default);
    m_host.msgBox(problem + u" - "_s + QString::number(error.number()) + u':' +
                  error.description());
}

// Not corrected when midnight passes: the time is then negative.
QString clsQueryRunner::secondsSinceMark() {
    const float now = m_host.timer();
    const float elapsed = now - m_state.timerMark;
    m_state.timerMark = now;
    return fixedFormat(double(elapsed)) + u" seconds"_s;
}
