#pragma once

#include "Connection.h"
#include "Provider.h"

#include <QHash>
#include <QStringList>

#include <optional>

// What the server answers to one statement.
struct ScriptedAnswer {
    using Row = std::vector<std::optional<QByteArray>>;

    QStringList columns;
    std::vector<Row> rows;
    std::optional<ProviderError> failure; // when executed, or at row failsAt
    qsizetype failsAt = -1;               // counts from 0; -1: when executed
};

inline ProviderError serverError(qint32 number, const QString& description) {
    return ProviderError(number, QString(), QStringLiteral("server"), description);
}

// A database that knows the statements of a list; every other one fails. What it is asked goes into
// a log, which may be that of a RecordingHost.
class ScriptedServer {
public:
    explicit ScriptedServer(QStringList& effects)
        : log(effects) {}

    QStringList& log;
    QHash<QString, ScriptedAnswer> answers;

    std::unique_ptr<Connection> connection() {
        return std::make_unique<Connection>(
            [this](const DataSource&) { return std::make_unique<ScriptedSession>(*this); });
    }

private:
    class ScriptedCursor : public Cursor {
    public:
        explicit ScriptedCursor(ScriptedAnswer answer)
            : m_answer(std::move(answer)) {
            for (const QString& name : m_answer.columns)
                m_columns.push_back({name, ColumnType::Text});
        }
        const std::vector<Column>& columns() const override { return m_columns; }
        qsizetype fetch(CellStore& rows, qsizetype most) override {
            qsizetype fetched = 0;
            for (; fetched < most && m_next < m_answer.rows.size(); ++fetched) {
                if (qsizetype(m_next) == m_answer.failsAt)
                    throw *m_answer.failure;
                for (const auto& cell : m_answer.rows[m_next++])
                    cell ? rows.append(cell->constData(), cell->size()) : rows.appendNull();
                rows.endRow();
            }
            return fetched;
        }

    private:
        ScriptedAnswer m_answer;
        std::vector<Column> m_columns;
        size_t m_next = 0;
    };

    class ScriptedSession : public Session {
    public:
        explicit ScriptedSession(ScriptedServer& server)
            : m_server(server) {}
        std::unique_ptr<Cursor> execute(const QString& sql) override {
            m_server.log << QStringLiteral("execute ") + sql;
            const auto found = m_server.answers.constFind(sql);
            if (found == m_server.answers.constEnd())
                throw serverError(DbErrorNumber::GeneralFailure,
                                  QStringLiteral("ORA-00900: invalid SQL\nstatement"));
            if (found->failure && found->failsAt < 0)
                throw *found->failure;
            return std::make_unique<ScriptedCursor>(*found);
        }
        void requestStop() noexcept override {}
        bool isOpen() const override { return true; }

    private:
        ScriptedServer& m_server;
    };
};
