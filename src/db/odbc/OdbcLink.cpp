#include "OdbcLink.h"

#include "OdbcError.h"

#include <thread>

using namespace Qt::StringLiterals;

OdbcLink::OdbcLink(OdbcHandle environment, OdbcHandle connection, DriverHabits habits)
    : environment(std::move(environment))
    , connection(std::move(connection))
    , habits(habits) {}

OdbcLink::~OdbcLink() {
    SQLDisconnect(connection.get());
}

void OdbcLink::requireServer() const {
    if (lost)
        throw ProviderError(DbErrorNumber::GeneralFailure, u"ORA-03114"_s, u"ODBC"_s,
                            u"ORA-03114: not connected to ORACLE"_s);
}

ProviderError OdbcLink::failureOn(const OdbcHandle& handle) {
    const OdbcDiagnosis diagnosis = diagnosisOf(handle, habits.narrowCalls);
    if (isConnectionLost(diagnosis))
        lost = true;
    else if (stopAsked)
        return stoppedError(); // some drivers have only a general failure for it
    return errorOf(diagnosis);
}

OdbcRunning::OdbcRunning(OdbcLink& link, const OdbcHandle& statement)
    : m_link(link) {
    set(statement.get());
}

OdbcRunning::~OdbcRunning() {
    set(SQL_NULL_HANDLE);
}

void OdbcRunning::set(SQLHANDLE statement) {
    const std::lock_guard lock(m_link.runningMutex);
    m_link.running = statement;
    ++m_link.calls;
}

void requestStop(const std::shared_ptr<OdbcLink>& link) noexcept {
    link->stopAsked = true;
    const quint64 call = link->calls;
    if (call % 2 == 0)
        return; // between two blocks: the cursor looks at the wish itself
    try {
        std::thread([link, call] {
            const std::lock_guard lock(link->runningMutex);
            if (link->calls == call) // else it ended meanwhile, and the next one is not meant
                SQLCancel(link->running);
        }).detach();
    } catch (const std::system_error&) {
        // Without a thread the wish still ends the statement at its next block.
    }
}
