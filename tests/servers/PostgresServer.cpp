#include "PostgresServer.h"

#include <QFile>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

QString program(const QString& name) {
    return u"/usr/lib/postgresql/15/bin/"_s + name;
}

constexpr int reservedForSuperuser = 3;

} // namespace

PostgresServer::PostgresServer(int maxConnections)
    : TestServer(u"postgres"_s, u"postgres"_s)
    , m_maxConnections(maxConnections + reservedForSuperuser) {}

QString PostgresServer::missing() const {
    if (!odbcDriverInstalled(u"PostgreSQL Unicode"_s))
        return u"odbc-postgresql is not installed"_s;
    return missingPackages({program(u"initdb"_s), program(u"postgres"_s),
                            u"/usr/share/postgresql/15/extension/orafce.control"_s},
                           u"postgresql-15 and postgresql-15-orafce"_s);
}

QString PostgresServer::dataSource(const QString& name, quint16 port) const {
    return u"[%1]\nDriver=PostgreSQL Unicode\nServername=127.0.0.1\nPort=%2\nDatabase=orcl\n\n"_s
        .arg(name)
        .arg(port);
}

void PostgresServer::makeData(const QString& folder) {
    run(asAccount({program(u"initdb"_s), u"-D"_s, folder, u"-U"_s, u"postgres"_s, u"-E"_s,
                   u"UTF8"_s, u"--locale=C.UTF-8"_s, u"--no-sync"_s, u"-A"_s, u"trust"_s}));
    // The superuser needs no password on loopback, the program's own role does.
    run(asAccount({u"tee"_s, folder + u"/pg_hba.conf"_s}),
        "host all postgres 127.0.0.1/32 trust\nhost all all 127.0.0.1/32 scram-sha-256\n");
}

QStringList PostgresServer::serverCommand(const QString& folder) const {
    QStringList command{program(u"postgres"_s), u"-D"_s, folder, u"-p"_s, QString::number(port())};
    for (const QString& setting : {u"listen_addresses=127.0.0.1"_s, u"unix_socket_directories="_s,
                                   u"fsync=off"_s, u"max_connections=%1"_s.arg(m_maxConnections)})
        command << u"-c"_s << setting;
    return command;
}

bool PostgresServer::answers() const {
    return QProcess::execute(program(u"pg_isready"_s), {u"-q"_s, u"-h"_s, u"127.0.0.1"_s, u"-p"_s,
                                                        QString::number(port())}) == 0;
}

int PostgresServer::stopSignal() const {
    return SIGINT; // SIGTERM would wait for the clients
}

void PostgresServer::firstStart() {
    sql("CREATE ROLE scott LOGIN PASSWORD 'tiger'; CREATE DATABASE orcl OWNER scott;",
        u"postgres"_s);
}

void PostgresServer::sqlOfFile(const QString& path) const {
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        qFatal("%s is missing", qPrintable(path));
    sql(file.readAll());
}

QByteArray PostgresServer::sql(const QByteArray& text, const QString& database) const {
    const QStringList command{program(u"psql"_s),
                              u"-qX"_s,
                              u"-h"_s,
                              u"127.0.0.1"_s,
                              u"-p"_s,
                              QString::number(port()),
                              u"-U"_s,
                              u"postgres"_s,
                              u"-d"_s,
                              database,
                              u"-v"_s,
                              u"ON_ERROR_STOP=1"_s,
                              u"-v"_s,
                              u"app=scott"_s};
    return run(command, text);
}
