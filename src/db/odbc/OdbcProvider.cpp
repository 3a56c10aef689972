#include "OdbcProvider.h"

#include "OdbcError.h"
#include "OdbcManager.h"
#include "OdbcSession.h"
#include "OdbcText.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr SQLULEN loginSeconds = 15;

// What a driver has to be told so that texts come as they are. `driver` is contained in its name or
// file. Declare-fetch would spare psqlodbc a second copy of the result, but its version 13 crashes,
// and the program with it, when the server dies between two of its fetches.
struct DriverSettings {
    QLatin1StringView driver;
    QLatin1StringView settings;
};

constexpr DriverSettings driverSettings[] = {
    {"psqlodbc"_L1, "UseDeclareFetch=0;LFConversion=0;"_L1},
    {"PostgreSQL"_L1, "UseDeclareFetch=0;LFConversion=0;"_L1},
};

// Drivers whose narrow texts are UTF-8. psqlodbcw: in the locale's encoding, which the toolkit
// makes UTF-8 at start; cells cost less so. sqlite3odbc: it has no wide calls.
struct Utf8Driver {
    QLatin1StringView file;
    bool narrowCalls;
};

#ifdef _WIN32
constexpr std::array<Utf8Driver, 0> utf8Drivers{};
#else
constexpr std::array utf8Drivers{Utf8Driver{"psqlodbcw"_L1, false},
                                 Utf8Driver{"sqlite3odbc"_L1, true}};
#endif

QString settingsOf(const QString& driver) {
    const auto row =
        std::find_if(std::begin(driverSettings), std::end(driverSettings), [&](const auto& row) {
            return driver.contains(row.driver, Qt::CaseInsensitive);
        });
    return row == std::end(driverSettings) ? QString() : QString(row->settings);
}

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

QString driverFile(const OdbcHandle& connection) {
    const auto call = [&](SQLCHAR* text, SQLSMALLINT units, SQLSMALLINT* length) {
        return SQLGetInfo(connection.get(), SQL_DRIVER_NAME, text, units, length);
    };
    return readText<SQLCHAR>(call).value_or(QString());
}

DriverHabits habitsOf(const OdbcHandle& connection) {
    DriverHabits habits;
    SQLUINTEGER extensions = 0;
    SQLGetInfoW(connection.get(), SQL_GETDATA_EXTENSIONS, &extensions, sizeof extensions, nullptr);
    constexpr SQLUINTEGER needed = SQL_GD_BLOCK | SQL_GD_BOUND | SQL_GD_ANY_ORDER;
    habits.rereadsBlocks = (extensions & needed) == needed;
    const QString file = driverFile(connection);
    for (const Utf8Driver& driver : utf8Drivers) {
        if (file.contains(driver.file)) {
            habits.utf8Cells = true;
            habits.narrowCalls = driver.narrowCalls;
        }
    }
    return habits;
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
