#pragma once

#include "DateFormat.h"
#include "FunctionCall.h"
#include "Functions.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <string>

// An in-memory database with the functions under test. Expressions are written in SQLite's words:
// n('1.5') is a NUMBER, d('2026-11-21 14:05:09') a DATE or TIMESTAMP; sn, sd, sy and ss show a
// NUMBER, date, year and second interval as text.
class FunctionDatabase {
public:
    FunctionDatabase() {
        sqlite3* database = nullptr;
        sqlite3_open(":memory:", &database);
        m_database.reset(database);
        context.user = "SCOTT";
        context.statementTime = ora::timestampLiteral("2026-11-21 14:05:09.123456");
        ora::registerFunctions(database, context);
        static constexpr ora::ScalarRow helpers[] = {
            {"n", 1, [](ora::Call& c) { c.result(*ora::OracleNumber::parse(c.text(0))); }},
            {"d", 1, [](ora::Call& c) { c.result(ora::timestampLiteral(c.text(0))); }},
            {"sn", 1, [](ora::Call& c) { c.resultText(c.number(0).cellText()); }},
            {"sd", 1, [](ora::Call& c) { c.resultText(c.date(0).cellText()); }},
            {"sy", 1, [](ora::Call& c) { c.resultText(c.yearMonth(0).text(2)); }},
            {"ss", 1, [](ora::Call& c) { c.resultText(c.daySecond(0).text(2, 6)); }},
        };
        ora::registerScalars(database, helpers, context);
    }

    // Every row's columns joined with ',' and the rows with '|'; "(null)" for NULL; the failure's
    // text when it fails.
    QString run(const QString& sql) {
        sqlite3_stmt* statement = nullptr;
        const QByteArray text = sql.toUtf8();
        if (sqlite3_prepare_v2(m_database.get(), text.constData(), -1, &statement, nullptr) !=
            SQLITE_OK)
            return QString::fromUtf8(sqlite3_errmsg(m_database.get()));
        QStringList rows;
        int step = sqlite3_step(statement);
        for (; step == SQLITE_ROW; step = sqlite3_step(statement))
            rows += rowText(statement);
        const QString failure = QString::fromUtf8(sqlite3_errmsg(m_database.get()));
        sqlite3_finalize(statement);
        return step == SQLITE_DONE ? rows.join(QLatin1Char('|')) : failure;
    }

    QString value(const QString& expression) { return run(QStringLiteral("SELECT ") + expression); }

    ora::FunctionContext context;

private:
    static QString rowText(sqlite3_stmt* statement) {
        QStringList cells;
        for (int i = 0; i < sqlite3_column_count(statement); ++i) {
            const auto* cell = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
            cells += cell ? QString::fromUtf8(cell, sqlite3_column_bytes(statement, i))
                          : QStringLiteral("(null)");
        }
        return cells.join(QLatin1Char(','));
    }

    struct Closer {
        void operator()(sqlite3* database) const { sqlite3_close(database); }
    };
    std::unique_ptr<sqlite3, Closer> m_database;
};
