#include "DriverHabits.h"

#include "OdbcText.h"

#include <algorithm>
#include <functional>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

constexpr bool narrowIsUtf8 =
#ifdef _WIN32
    false;
#else
    true;
#endif

struct KnownDriver {
    QLatin1StringView file; // contained in its file's name
    QLatin1StringView name; // contained in the name that the manager knows it by; "" is none
    QLatin1StringView settings;
    DriverHabits habits;
};

// Declare-fetch would spare psqlodbc a second copy of the result, but its version 13 crashes, and
// the program with it, when the server dies between two of its fetches: hence cursors of our own.
// Its log of what goes over the line is a debugging aid that Debian's driver entry switches on. Its
// protocol's last figure asks it to take back a failed statement only, as Oracle does, not the
// user's transaction.
constexpr auto postgresSettings = "UseDeclareFetch=0;LFConversion=0;CommLog=0;Protocol=7.4-2;"_L1;

// psqlodbcw: narrow texts in the locale's encoding, which the toolkit makes UTF-8 at start; cells
// cost less so. maodbc: narrow cells are in the encoding that was set; in wide ones it fails at a
// character that lies across two pieces. sqlite3odbc: it has no wide calls.
constexpr KnownDriver knownDrivers[] = {
    {"psqlodbcw"_L1,
     "PostgreSQL"_L1,
     postgresSettings,
     {narrowIsUtf8, false, true, true, true, false}},
    {"psqlodbc"_L1, ""_L1, postgresSettings, {false, false, true, true, true, false}},
    {"maodbc"_L1, "MariaDB"_L1, "CHARSET=utf8mb4;"_L1, {true, false, false, false, false, false}},
    {"sqlite3odbc"_L1, ""_L1, ""_L1, {narrowIsUtf8, narrowIsUtf8, false, false, false, false}},
};

// Null when no row is the one.
const KnownDriver* findDriver(const std::function<bool(const KnownDriver&)>& isIt) {
    const auto row = std::find_if(std::begin(knownDrivers), std::end(knownDrivers), isIt);
    return row == std::end(knownDrivers) ? nullptr : row;
}

QString driverFile(const OdbcHandle& connection) {
    const auto call = [&](SQLCHAR* text, SQLSMALLINT units, SQLSMALLINT* length) {
        return SQLGetInfo(connection.get(), SQL_DRIVER_NAME, text, units, length);
    };
    return readText<SQLCHAR>(call).value_or(QString());
}

} // namespace

DriverHabits habitsOf(const OdbcHandle& connection) {
    const QString file = driverFile(connection);
    const KnownDriver* known =
        findDriver([&](const auto& row) { return file.contains(row.file, Qt::CaseInsensitive); });
    DriverHabits habits = known ? known->habits : DriverHabits();
    SQLUINTEGER extensions = 0;
    SQLGetInfoW(connection.get(), SQL_GETDATA_EXTENSIONS, &extensions, sizeof extensions, nullptr);
    constexpr SQLUINTEGER needed = SQL_GD_BLOCK | SQL_GD_BOUND | SQL_GD_ANY_ORDER;
    habits.rereadsBlocks = (extensions & needed) == needed;
    return habits;
}

QString settingsOf(const QString& driver) {
    const KnownDriver* known = findDriver([&](const auto& row) {
        return driver.contains(row.file, Qt::CaseInsensitive) ||
               (!row.name.isEmpty() && driver.contains(row.name, Qt::CaseInsensitive));
    });
    return known ? QString(known->settings) : QString();
}
