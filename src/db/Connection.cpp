#include "Connection.h"

#include "ConnectionString.h"
#include "ProviderTable.h"

namespace {

// ADO's "Operation is not allowed when the object is closed/open."
constexpr qint32 objectClosed = 3704;
constexpr qint32 objectOpen = 3705;

Error notAllowed(qint32 number, QLatin1String state) {
    return Error(number, QStringLiteral("Quillmate.Connection"),
                 QStringLiteral("Operation is not allowed when the object is %1.").arg(state));
}

} // namespace

Connection::Connection()
    : Connection([](const DataSource& source) { return openSession(source, providerTable()); }) {}

Connection::Connection(Opener opener)
    : m_opener(std::move(opener)) {}

Connection::~Connection() = default;

ObjectState Connection::State() const {
    return m_session && m_session->isOpen() ? ObjectState::Open : ObjectState::Closed;
}

void Connection::Open() {
    if (State() == ObjectState::Open)
        throw notAllowed(objectOpen, QLatin1String("open"));
    m_session.reset(); // a lost one goes before its successor comes
    m_session = m_opener(parseConnectionString(ConnectionString));
}

void Connection::Close() {
    if (!m_session)
        throw notAllowed(objectClosed, QLatin1String("closed"));
    m_session.reset();
}

std::unique_ptr<Cursor> Connection::executeCursor(const QString& sql) {
    if (!m_session)
        throw notAllowed(objectClosed, QLatin1String("closed"));
    return m_session->execute(sql);
}

void Connection::Execute(const QString& sql) {
    executeCursor(sql);
}

void Connection::requestStop() noexcept {
    if (m_session)
        m_session->requestStop();
}
