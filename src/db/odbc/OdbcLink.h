#pragma once

#include "OdbcColumns.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>

class PostgresCursor;

// A connection as a session and its cursors share it. Disconnects when the last of them goes.
struct OdbcLink {
    // environment: version 3 is set; connection belongs to it and is connected.
    OdbcLink(OdbcHandle environment, OdbcHandle connection, DriverHabits habits);
    ~OdbcLink();

    // Throws ProviderError when a server that is gone is asked again.
    void requireServer() const;
    // Throws ProviderError when the statement was asked to stop.
    void requireNoStop() const;
    // Runs a text on the statement; the caller sees to OdbcRunning.
    SQLRETURN execute(const OdbcHandle& statement, const QString& sql) const;
    // What to throw for the failed call on the handle; notes a lost server.
    ProviderError failureOn(const OdbcHandle& handle);

    OdbcHandle environment;
    OdbcHandle connection;
    DriverHabits habits;
    std::atomic<bool> lost = false;           // the server is known to be gone
    std::atomic<bool> stopAsked = false;      // since the last statement began
    PostgresCursor* cursorAtServer = nullptr; // not owned; its transaction is open
    std::mutex runningMutex;                  // held while a stop is under way
    std::condition_variable callEnded;
    SQLHANDLE running = SQL_NULL_HANDLE; // the statement that is at work at the server
    std::atomic<quint64> calls = 0;      // of such work, begun or ended: odd while one is at work
};

// Marks a statement as the one that is at work at the server.
class OdbcRunning {
public:
    // Throws ProviderError when it was asked to stop before.
    OdbcRunning(OdbcLink& link, const OdbcHandle& statement);
    ~OdbcRunning();

private:
    void set(SQLHANDLE statement);

    OdbcLink& m_link;
};

// Asks the server to stop what runs, again and again until it ends: a request that overtakes its
// statement does nothing. Returns at once; the calls are made on a thread of their own, because a
// driver opens a second connection for each and may wait long for that.
void requestStop(const std::shared_ptr<OdbcLink>& link) noexcept;
