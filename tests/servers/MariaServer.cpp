#include "MariaServer.h"

using namespace Qt::StringLiterals;

namespace {

const QString serverProgram = u"/usr/sbin/mariadbd"_s;
const QString installProgram = u"/usr/bin/mariadb-install-db"_s;

QString initFile(const QString& folder) {
    return folder + u"/init.sql"_s;
}

} // namespace

// Debian's account for servers without one of their own: mariadb-server-core makes none.
MariaServer::MariaServer()
    : TestServer(u"nobody"_s, u"nogroup"_s) {}

QString MariaServer::missing() const {
    if (!odbcDriverInstalled(u"MariaDB Unicode"_s))
        return u"odbc-mariadb is not installed"_s;
    return missingPackages({serverProgram, installProgram}, u"mariadb-server-core"_s);
}

QString MariaServer::dataSource(const QString& name, quint16 port) const {
    return u"[%1]\nDriver=MariaDB Unicode\nServer=127.0.0.1\nPort=%2\nDatabase=orcl\n\n"_s.arg(name)
        .arg(port);
}

void MariaServer::makeData(const QString& folder) {
    run(asAccount({installProgram, u"--no-defaults"_s, u"--datadir="_s + folder,
                   u"--auth-root-authentication-method=normal"_s, u"--skip-test-db"_s}));
    // One statement a line, run before the first client is let in.
    run(asAccount({u"tee"_s, initFile(folder)}),
        "CREATE DATABASE IF NOT EXISTS orcl CHARACTER SET utf8mb4;\n"
        "CREATE USER IF NOT EXISTS scott IDENTIFIED BY 'tiger';\n"
        "GRANT ALL ON orcl.* TO scott;\n");
}

bool MariaServer::answers() const {
    return listens(port());
}

QStringList MariaServer::serverCommand(const QString& folder) const {
    return {serverProgram,
            u"--no-defaults"_s,
            u"--datadir="_s + folder,
            u"--socket="_s + folder + u"/socket"_s,
            u"--pid-file="_s + folder + u"/pid"_s,
            u"--bind-address=127.0.0.1"_s,
            u"--port="_s + QString::number(port()),
            u"--character-set-server=utf8mb4"_s,
            u"--sql-mode=ORACLE"_s,
            u"--max-connections=%1"_s.arg(maxConnections),
            u"--innodb-flush-log-at-trx-commit=0"_s,
            u"--init-file="_s + initFile(folder)};
}
