#pragma once

#include "RunState.h"

#include <QString>

#include <memory>

class Error;
class Host;
class QueryWindow;
class Recordset;
class modDatabase;

// Runs the script of one query window as a batch. Every statement is attempted; a failure is
// reported where it happens and ends its own statement only.
class clsQueryRunner {
public:
    // None is owned; all outlive the runner.
    clsQueryRunner(QueryWindow& window, Host& host, modDatabase& database);

    void Run_Queries();
    void Run_SELECT_Query(const QString& SQL);
    // Throws Error, with "..frmQuery.Run_General_Query" appended to its source, only when the
    // pointer cannot be set.
    void Run_General_Query(const QString& SQL);

    // Empties all outputs and clears the errors flag; the statistics texts stay.
    void Reset();
    // Behind the messages; an empty text empties them instead.
    void Add_Message(const QString& text);

    RunState& state() { return m_state; }
    const RunState& state() const { return m_state; }

private:
    // The steps of Run_SELECT_Query, one for each failure that is handled in its own way. False
    // ends the statement.
    std::unique_ptr<Recordset> createRecordset();
    bool openRecordset(Recordset& recordset, const QString& SQL);
    bool noteRetrievalTime();
    bool showResults(Recordset& recordset);
    bool explainAndClear(const QString& SQL);
    void finish();

    void openTimed(Recordset& recordset, const QString& SQL);
    void display(Recordset& recordset);
    void loadOutput(Recordset& recordset);
    void reportServerError(const Error& error, const QString& SQL);
    void reportInBox(const QString& problem, const Error& error);
    QString secondsSinceMark();

    QueryWindow& m_window;
    Host& m_host;
    modDatabase& m_database;
    RunState m_state;
};
