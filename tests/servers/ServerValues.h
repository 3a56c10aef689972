#pragma once

#include "Provider.h"
#include "TestDataSources.h"
#include "TestServer.h"

#include <QTest>

#include <memory>

// What a server's values look like in the program, whatever their type and script.
class ServerValues : public QObject {
    Q_OBJECT

protected:
    // statements: run first.
    ServerValues(std::unique_ptr<TestServer> server, QStringList statements)
        : m_server(std::move(server))
        , m_statements(std::move(statements)) {}

    // Adds to the values that every server has.
    virtual void addValues() = 0;
    static void add(const char* fault, const QString& sql, const QString& shown) {
        QTest::newRow(fault) << sql << shown;
    }

    // Header and rows.
    QStringList linesOf(const QString& sql);
    // The first value of the first row.
    QString valueOf(const QString& sql) { return linesOf(sql).value(1).section(u'|', 0, 0); }
    TestServer& server() { return *m_server; }
    TestDataSources& sources() { return m_sources; }
    static std::unique_ptr<Session> openedAs(const QString& dataSource);

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { m_session.reset(); }
    void values_data();
    void values();
    void everyScriptOfTheWorld();
    void noStatementIsCut();

private:
    std::unique_ptr<TestServer> m_server;
    QStringList m_statements;
    TestDataSources m_sources;
    std::unique_ptr<Session> m_session;
};
