#pragma once

#include "TestServer.h"

// PostgreSQL of Debian with the role scott (password tiger) and the database orcl.
class PostgresServer : public TestServer {
public:
    // maxConnections: of ordinary roles.
    explicit PostgresServer(int maxConnections = 20);

    QString missing() const override;
    QString dataSource(const QString& name, quint16 port) const override;

    // As superuser, through psql.
    QByteArray sql(const QByteArray& text, const QString& database = QStringLiteral("orcl")) const;
    void sqlOfFile(const QString& path) const;

protected:
    void makeData(const QString& folder) override;
    QStringList serverCommand(const QString& folder) const override;
    bool answers() const override;
    void firstStart() override;
    int stopSignal() const override;

private:
    int m_maxConnections;
};
