#include "OdbcProvider.h"

#include "DriverHabits.h"
#include "OdbcError.h"
#include "OdbcManager.h"
#include "OdbcSession.h"
#include "OdbcText.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <optional>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto loginTimeOut = 15s;
constexpr auto grace = 2s; // a driver that minds it has the better words

QString credentials(const DataSource& source) {
    return u"UID="_s + connectionValue(source.user) + u";PWD="_s +
           connectionValue(source.password) + u';';
}

// The manager's connection string for the data source, or nothing after a note of what was seen.
std::optional<QString> findConnection(const OdbcHandle& environment, const DataSource& source,
                                      QStringList& tried) {
    for (const OdbcDataSource& known : configuredDataSources(environment)) {
        if (known.name.compare(source.name, Qt::CaseInsensitive) == 0)
            return u"DSN="_s + connectionValue(known.name) + u';' + credentials(source) +
                   settingsOf(known.driver);
    }
    const QStringList drivers = installedDrivers(environment);
    for (const QString& driver : drivers) {
        if (driver.contains(u"Oracle", Qt::CaseInsensitive))
            return u"DRIVER={"_s + driver + u"};DBQ="_s + connectionValue(source.name) + u';' +
                   credentials(source);
    }
    tried << u"ODBC: no data source \"%1\" and no driver whose name says Oracle; drivers: %2; %3"_s
                 .arg(source.name, drivers.isEmpty() ? u"none"_s : drivers.join(u", "),
                      configurationPlaces());
    return std::nullopt;
}

// PostgreSQL refuses to send as UTF-8 what a database without an encoding may hold; as bytes it
// comes, and what is no UTF-8 among it is replaced here.
void prepareSession(const OdbcHandle& connection) {
    if (!habitsOf(connection).postgresCursors)
        return;
    const OdbcHandle statement(SQL_HANDLE_STMT, connection.get());
    auto text = toWide(u"SELECT set_config('client_encoding', 'SQL_ASCII', false)"
                       " WHERE current_setting('server_encoding') = 'SQL_ASCII'"_s);
    SQLExecDirectW(statement.get(), text.data(), SQL_NTS);
}

// A login under way. It owns what it needs, because it may have to be left to itself.
struct Login {
    OdbcHandle environment, connection;
    std::vector<SQLWCHAR> text; // holds the password
    SQLRETURN result = SQL_ERROR;

    ~Login() {
        if (connection && SQL_SUCCEEDED(result)) // too late for anybody to take it
            SQLDisconnect(connection.get());
    }
    void run() {
        SQLSetConnectAttr(connection.get(), SQL_ATTR_LOGIN_TIMEOUT,
                          reinterpret_cast<SQLPOINTER>(SQLULEN(loginTimeOut.count())), 0);
        result = SQLDriverConnectW(connection.get(), nullptr, text.data(), SQL_NTS, nullptr, 0,
                                   nullptr, SQL_DRIVER_NOPROMPT);
        std::fill(text.begin(), text.end(), SQLWCHAR(0));
        if (SQL_SUCCEEDED(result))
            prepareSession(connection);
    }
};

// Not every driver minds the time-out when a server takes the call and says nothing.
bool endsInTime(const std::shared_ptr<Login>& login) {
    std::packaged_task<void()> task([login] { login->run(); });
    const std::future<void> done = task.get_future();
    std::thread(std::move(task)).detach();
    return done.wait_for(loginTimeOut + grace) == std::future_status::ready;
}

std::unique_ptr<Session> connectTo(OdbcHandle environment, const QString& connectionString) {
    OdbcHandle connection(SQL_HANDLE_DBC, environment.get());
    if (!connection)
        throw errorOf(diagnosisOf(environment));
    const auto login = std::make_shared<Login>();
    login->environment = std::move(environment);
    login->connection = std::move(connection);
    login->text = toWide(connectionString);
    if (!endsInTime(login))
        throw ProviderError(DbErrorNumber::GeneralFailure, u"ORA-12170"_s, u"ODBC"_s,
                            u"ORA-12170: TNS:Connect timeout occurred"_s);
    if (!SQL_SUCCEEDED(login->result))
        throw errorOf(diagnosisOf(login->connection));
    const DriverHabits habits = habitsOf(login->connection);
    return std::make_unique<OdbcSession>(std::make_shared<OdbcLink>(
        std::move(login->environment), std::move(login->connection), habits));
}

class OdbcProvider : public Provider {
public:
    QString name() const override { return u"ODBC"_s; }

    std::unique_ptr<Session> open(const DataSource& source, QStringList& tried) override {
        OdbcHandle environment = makeEnvironment();
        if (!environment) {
            tried << u"ODBC: the manager gives no environment"_s;
            return nullptr;
        }
        const auto connection = findConnection(environment, source, tried);
        return connection ? connectTo(std::move(environment), *connection) : nullptr;
    }
};

} // namespace

std::unique_ptr<Provider> makeOdbcProvider() {
    return std::make_unique<OdbcProvider>();
}
