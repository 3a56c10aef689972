#include "Backends.h"
#include "MariaServer.h"
#include "PostgresServer.h"
#include "TestDataSources.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// What is started for the contract tests and stopped after them.
struct Servers {
    PostgresServer postgres;
    MariaServer maria;
    TestDataSources sources;
};

std::unique_ptr<Servers>& servers() {
    static std::unique_ptr<Servers> running;
    return running;
}

QString started(TestServer& server, const QString& name) {
    QString missing = server.missing();
    if (missing.isEmpty()) {
        server.start();
        servers()->sources.add(server.dataSource(name, server.port()));
    }
    return missing;
}

QString sqliteSource() {
    if (!odbcDriverInstalled(u"SQLite3"_s))
        return u"libsqliteodbc is not installed"_s;
    servers()->sources.add(u"[SQLITE]\nDriver=SQLite3\nDatabase=%1\n\n"_s.arg(
        servers()->sources.path(u"contract.sqlite"_s)));
    return {};
}

QString login(const QString& name) {
    return u"Data Source=%1;Password=tiger;User ID=scott"_s.arg(name);
}

std::vector<Backend> startedBackends() {
    servers() = std::make_unique<Servers>();
    return {
        {"postgresql",
         login(u"POSTGRES"_s),
         {u"numeric(10)"_s, u"numeric(38,10)"_s, u"varchar(40)"_s, u"timestamp"_s, u"bytea"_s},
         u"TIMESTAMP '%1'"_s,
         u"'\\x%1'::bytea"_s,
         started(servers()->postgres, u"POSTGRES"_s)},
        {"mariadb",
         login(u"MARIA"_s),
         {u"NUMBER(10)"_s, u"NUMBER(38,10)"_s, u"VARCHAR2(40)"_s, u"DATETIME(6)"_s,
          u"VARBINARY(20)"_s},
         u"TIMESTAMP '%1'"_s,
         u"x'%1'"_s,
         started(servers()->maria, u"MARIA"_s)},
        {"sqlite",
         login(u"SQLITE"_s),
         {u"NUMERIC(10)"_s, u"NUMERIC(38,10)"_s, u"VARCHAR(40)"_s, u"TIMESTAMP"_s,
          u"VARBINARY(20)"_s},
         u"'%1'"_s,
         u"x'%1'"_s,
         sqliteSource()},
    };
}

} // namespace

const std::vector<Backend>& backends() {
    static const std::vector<Backend> list = startedBackends();
    return list;
}

void stopBackends() {
    servers().reset();
}
