#pragma once

#include "TestServer.h"

// MariaDB of Debian, speaking its Oracle dialect, with the user scott (password tiger) and the
// database orcl.
class MariaServer : public TestServer {
public:
    static constexpr int maxConnections = 12;

    MariaServer();

    QString missing() const override;
    QString dataSource(const QString& name, quint16 port) const override;

protected:
    void makeData(const QString& folder) override;
    QStringList serverCommand(const QString& folder) const override;
    bool answers() const override;
};
