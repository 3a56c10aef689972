#pragma once

#include "Connection.h"
#include "StatementWatch.h"

#include <QTest>

#include <atomic>
#include <functional>
#include <memory>

// What the tests of faults share.

// Asks for the stop as soon as the statement is noticed, when told to.
class Impatience : public StatementWatch {
public:
    std::atomic<bool> stop = false;
    int losses = 0;
    std::function<void()> onBegin = [] {};

    void began() override { onBegin(); }
    bool wait(std::chrono::milliseconds) override { return stop; }
    void ended() noexcept override {}
    void connectionLost() override { ++losses; }
};

inline std::unique_ptr<Connection> opened(const QString& source = QStringLiteral("ORCL"),
                                          const QString& password = QStringLiteral("tiger")) {
    auto connection = std::make_unique<Connection>();
    connection->ConnectionString =
        QStringLiteral("Data Source=%1;Password=%2;User ID=scott").arg(source, password);
    connection->Open();
    return connection;
}

// The native code and the server's words; "done" when nothing failed.
inline QString failureOf(const std::function<void()>& action) {
    try {
        action();
        return QStringLiteral("done");
    } catch (const ProviderError& error) {
        return error.nativeCode() + u' ' + error.description();
    }
}

inline FetchedRows fetched(Connection& connection, const char* sql) {
    return connection.fetch(QString::fromLatin1(sql), 0);
}

inline void verifyWorks(Connection& connection) {
    const FetchedRows rows = fetched(connection, "SELECT 42 AS answer");
    QCOMPARE(rows.rows.cell(0, 0).view(), QByteArrayView("42"));
}
