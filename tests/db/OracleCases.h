#pragma once

#include "OracleScript.h"

#include <QTest>

// Test data of scripts and what comes out of them, each on an empty database of its own.
class OracleCases : public QObject {
protected:
    QTemporaryDir m_home;

    void check() {
        QFETCH(QString, script);
        QFETCH(QString, outcome);
        QCOMPARE(OracleScript().runAll(script), outcome);
    }
    static void columns() {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("outcome");
    }
    static QTestData& row(const char* fault, const QByteArray& script, const char* outcome) {
        return QTest::newRow(fault) << QString::fromUtf8(script) << QString::fromUtf8(outcome);
    }
    // One statement that fails, on an employee table.
    static QTestData& fails(const char* statement, const char* error) {
        return QTest::newRow(statement)
               << QStringLiteral("create table emp (id number(4) primary key, name varchar2(10), "
                                 "n number);\n") +
                      QString::fromUtf8(statement)
               << QString::fromUtf8(error);
    }
};
