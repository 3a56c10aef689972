#include "OdbcLink.h"

#include "OdbcError.h"
#include "OdbcText.h"

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto betweenRequests = 250ms;
constexpr int mostRequests = 20; // the statement is given up then

} // namespace

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

void OdbcLink::requireNoStop() const {
    if (stopAsked)
        throw stoppedError();
}

SQLRETURN OdbcLink::execute(const OdbcHandle& statement, const QString& sql) const {
    if (habits.narrowCalls) {
        QByteArray text = sql.toUtf8();
        return SQLExecDirect(statement.get(), reinterpret_cast<SQLCHAR*>(text.data()),
                             SQLINTEGER(text.size()));
    }
    auto text = toWide(sql);
    // Told a length, MariaDB's driver takes it for whole characters and reads beyond the text.
    return SQLExecDirectW(statement.get(), text.data(), SQL_NTS);
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
    if (!link.stopAsked)
        return;
    set(SQL_NULL_HANDLE);
    throw stoppedError();
}

OdbcRunning::~OdbcRunning() {
    set(SQL_NULL_HANDLE);
}

void OdbcRunning::set(SQLHANDLE statement) {
    {
        const std::lock_guard lock(m_link.runningMutex);
        m_link.running = statement;
        ++m_link.calls;
    }
    m_link.callEnded.notify_all();
}

void requestStop(const std::shared_ptr<OdbcLink>& link) noexcept {
    link->stopAsked = true;
    const quint64 call = link->calls;
    if (call % 2 == 0)
        return; // what begins next looks at the wish itself
    try {
        std::thread([link, call] {
            std::unique_lock lock(link->runningMutex);
            for (int i = 0; i < mostRequests && link->calls == call; ++i) {
                SQLCancel(link->running);
                link->callEnded.wait_for(lock, betweenRequests);
            }
        }).detach();
    } catch (const std::system_error&) {
        // Without a thread the wish still ends the statement at its next block.
    }
}
