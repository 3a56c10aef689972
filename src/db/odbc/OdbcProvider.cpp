#include "OdbcProvider.h"

#include "DriverHabits.h"
#include "OdbcError.h"
#include "OdbcManager.h"
#include "OdbcSession.h"
#include "OdbcText.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr SQLULEN loginSeconds = 15;

QString login(const DataSource& source) {
    return u"UID="_s + connectionValue(source.user) + u";PWD="_s +
           connectionValue(source.password) + u';';
}

// The manager's connection string for the data source, or nothing after a note of what was seen.
std::optional<QString> findConnection(const OdbcHandle& environment, const DataSource& source,
                                      QStringList& tried) {
    for (const OdbcDataSource& known : configuredDataSources(environment)) {
        if (known.name.compare(source.name, Qt::CaseInsensitive) == 0)
            return u"DSN="_s + connectionValue(known.name) + u';' + login(source) +
                   settingsOf(known.driver);
    }
    const QStringList drivers = installedDrivers(environment);
    for (const QString& driver : drivers) {
        if (driver.contains(u"Oracle", Qt::CaseInsensitive))
            return u"DRIVER={"_s + driver + u"};DBQ="_s + connectionValue(source.name) + u';' +
                   login(source);
    }
    tried << u"ODBC: no data source \"%1\" and no driver whose name says Oracle; drivers: %2; %3"_s
                 .arg(source.name, drivers.isEmpty() ? u"none"_s : drivers.join(u", "),
                      configurationPlaces());
    return std::nullopt;
}

std::unique_ptr<Session> connectTo(OdbcHandle environment, const QString& connectionString) {
    OdbcHandle connection(SQL_HANDLE_DBC, environment.get());
    if (!connection)
        throw errorOf(diagnosisOf(environment));
    SQLSetConnectAttr(connection.get(), SQL_ATTR_LOGIN_TIMEOUT,
                      reinterpret_cast<SQLPOINTER>(loginSeconds), 0);
    auto text = toWide(connectionString);
    const SQLRETURN result = SQLDriverConnectW(connection.get(), nullptr, text.data(), SQL_NTS,
                                               nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
    std::fill(text.begin(), text.end(), SQLWCHAR(0)); // it holds the password
    if (!SQL_SUCCEEDED(result))
        throw errorOf(diagnosisOf(connection));
    const DriverHabits habits = habitsOf(connection);
    return std::make_unique<OdbcSession>(
        std::make_shared<OdbcLink>(std::move(environment), std::move(connection), habits));
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
