#include "modDatabase.h"

#include "Command.h"
#include "Host.h"
#include "Trace.h"

using namespace Qt::StringLiterals;

modDatabase::modDatabase(Host& host, TraceLog& trace, MakeConnection makeConnection)
    : m_host(host)
    , m_trace(trace)
    , m_makeConnection(std::move(makeConnection)) {
    if (!m_makeConnection)
        m_makeConnection = [] { return std::make_unique<Connection>(); };
}

modDatabase::~modDatabase() = default;

void modDatabase::Build_Connection_String(const QString& serviceName, const QString& userId,
                                          const QString& password) {
    m_connectionString = u"Provider=MSDAORA.1;Data Source="_s + serviceName + u";Password="_s +
                         password + u";User ID="_s + userId;
}

bool modDatabase::Open_Connection() {
    try {
        if (!m_connection)
            m_connection = m_makeConnection();
        m_connection->setWatch(m_watch);
        if (m_connection->State() != ObjectState::Open) {
            m_connection->ConnectionString = m_connectionString;
            m_connection->Open();
        }
        return true;
    } catch (const Error& error) {
        // The person is told what to check; what the back-end said is for the log.
        m_trace.Trace(u"<CONNECT FAILED> "_s + error.description());
        m_host.msgBox(u"Database connection problem encountered.  Please review your SQLNet/Net8 "
                      "service name and login credentials."_s,
                      MsgButtons::Ok, MsgIcon::Exclamation);
        return false;
    }
}

std::unique_ptr<Recordset> modDatabase::Get_Recordset(const QString& sql, qint32 limit) {
    m_trace.Trace(sql);
    try {
        Command command;
        auto recordset = std::make_unique<Recordset>();
        recordset->cursorLocation = CursorLocation::Client;
        recordset->cursorType = CursorTypeEnum::ForwardOnly;
        command.ActiveConnection = m_connection.get();
        command.CommandType = CommandTypeEnum::Text;
        command.CommandText = sql;
        if (limit > 0)
            recordset->MaxRecords = limit;
        recordset->Open(command);
        m_trace.Trace(u"<SUCCESS>"_s);
        return recordset;
    } catch (Error& error) {
        m_trace.Trace(u"<FAILURE>"_s);
        error.trailed(u"..modDatabase.Get_Recordset");
        throw;
    }
}

void modDatabase::setWatch(StatementWatch* watch) {
    m_watch = watch;
    if (m_connection)
        m_connection->setWatch(watch);
}

void modDatabase::Close_Connection() noexcept {
    try {
        if (m_connection && m_connection->State() != ObjectState::Closed)
            m_connection->Close();
    } catch (...) {
        // A close never reports anything.
    }
    m_connection.reset();
}

bool modDatabase::isConnected() const {
    return m_connection && m_connection->State() == ObjectState::Open;
}
