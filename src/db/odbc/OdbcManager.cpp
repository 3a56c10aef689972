#include "OdbcManager.h"

#include "OdbcText.h"

#include <algorithm>
#include <array>
#include <cstdio>

#ifndef _WIN32
// Exported by unixODBC's installer library; its header hides them behind the library's own macro.
extern "C" char* odbcinst_system_file_path(char* buffer);
extern "C" char* odbcinst_system_file_name(char* buffer);
extern "C" char* odbcinst_user_file_path(char* buffer);
#endif

using namespace Qt::StringLiterals;

namespace {

constexpr SQLSMALLINT textUnits = 1024;
using Text = std::array<SQLWCHAR, size_t(textUnits)>;

QString shown(const Text& text, SQLSMALLINT length) {
    return fromUnits(text.data(), std::clamp<qsizetype>(length, 0, textUnits - 1));
}

#ifndef _WIN32
QString placeFrom(char* (*place)(char*)) {
    std::array<char, FILENAME_MAX + 1> buffer{}; // not always used
    return QString::fromLocal8Bit(place(buffer.data()));
}
#endif

// One walk for both lists of the manager, which have the same form.
template<typename Call, typename Take>
void walk(Call call, Take take) {
    Text first, second;
    SQLSMALLINT firstLength = 0, secondLength = 0;
    SQLUSMALLINT direction = SQL_FETCH_FIRST;
    while (SQL_SUCCEEDED(call(direction, first.data(), textUnits, &firstLength, second.data(),
                              textUnits, &secondLength))) {
        take(shown(first, firstLength), shown(second, secondLength));
        direction = SQL_FETCH_NEXT;
    }
}

} // namespace

OdbcHandle makeEnvironment() {
    OdbcHandle environment(SQL_HANDLE_ENV, SQL_NULL_HANDLE);
    if (environment)
        SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION,
                      reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    return environment;
}

std::vector<OdbcDataSource> configuredDataSources(const OdbcHandle& environment) {
    std::vector<OdbcDataSource> sources;
    walk([&](auto... arguments) { return SQLDataSourcesW(environment.get(), arguments...); },
         [&](const QString& name, const QString& driver) {
             sources.push_back({name, driver});
         });
    return sources;
}

QStringList installedDrivers(const OdbcHandle& environment) {
    QStringList drivers;
    walk([&](auto... arguments) { return SQLDriversW(environment.get(), arguments...); },
         [&](const QString& name, const QString&) { drivers << name; });
    return drivers;
}

QString configurationPlaces() {
#ifdef _WIN32
    return u"the ODBC Data Source Administrator of this program's bitness"_s;
#else
    const QString folder = placeFrom(odbcinst_system_file_path) + u'/';
    const QString own = qEnvironmentVariable("ODBCINI");
    return u"drivers in %1, data sources in %2 and %3"_s.arg(
        folder + placeFrom(odbcinst_system_file_name),
        own.isEmpty() ? placeFrom(odbcinst_user_file_path) + u"/.odbc.ini"_s : own,
        folder + u"odbc.ini"_s);
#endif
}
