#pragma once

#include "FaultTools.h"
#include "FreezingProxy.h"
#include "TestDataSources.h"
#include "TestServer.h"

// What goes wrong between the program and a server on a real network; the same for every server.
class ServerFaults : public QObject {
    Q_OBJECT

protected:
    struct Subject {
        std::unique_ptr<TestServer> server;
        int connections; // more are refused
        QString refusal; // of a wrong password, in the server's words
        QString longQuery;
        QString numberedRows; // %1 rows of a number n and "some text of row n"
        QString setPassword;  // to %1, for the session's own user
    };

    explicit ServerFaults(Subject subject)
        : m_subject(std::move(subject)) {}

private Q_SLOTS:
    void initTestCase();
    void cleanup() { m_proxy->thaw(); }

    void wrongPassword();
    void passwordsThatTheManagerWouldCut_data();
    void passwordsThatTheManagerWouldCut();
    void atTheConnectionLimit();
    void killedWhileIdle();
    void killedWhileTheServerWorks();
    void killedDuringAFetch_data();
    void killedDuringAFetch();
    void restartedWhileAStatementRuns();
    void killedDuringTheLogin();
    void noServerAtTheLogin();
    void deadLineAtTheLogin();
    void deadLineDuringAStatement_data();
    void deadLineDuringAStatement();
    void stopWhileTheServerWorks();
    void stopBetweenBlocks();
    void aMillionRows();
    void fiftyConnectsLeaveNothingBehind();

private:
    QString rows(int count) const { return m_subject.numberedRows.arg(count); }
    TestServer& server() { return *m_subject.server; }
    // Runs the statement, and the fault as soon as it is noticed.
    void verifyLoss(Connection& connection, const QString& sql, const std::function<void()>& fault);

    Subject m_subject;
    TestDataSources m_sources;
    std::unique_ptr<FreezingProxy> m_proxy;
};
