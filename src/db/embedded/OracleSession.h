#pragma once

#include "ChangeRunner.h"
#include "DatabaseCatalog.h"
#include "Ddl.h"
#include "FileIdentity.h"
#include "Functions.h"
#include "MemoryGuard.h"
#include "Parser.h"
#include "Provider.h"
#include "Sequences.h"
#include "SessionList.h"
#include "StatementCache.h"
#include "Transaction.h"

#include <memory>

namespace ora {

// A connection to a database file that speaks the server's dialect.
class OracleSession : public Session {
public:
    // db is configured and has a catalog; context is what its functions were registered with. user:
    // in upper case; service: the data source's name.
    OracleSession(std::unique_ptr<FunctionContext> context, SqliteDatabase db, FileIdentity file,
                  const std::string& user, const std::string& service);
    ~OracleSession() override;

    std::unique_ptr<Cursor> execute(const QString& sql) override;
    void requestStop() noexcept override;
    bool isOpen() const override { return !m_lost; }

private:
    void requireFile();
    void prepareForStatement();
    std::unique_ptr<Cursor> run(const std::string& text);
    std::unique_ptr<Cursor> runTree(const std::string& text, const Tree& tree);
    std::unique_ptr<Cursor> runQuery(std::shared_ptr<const CachedQuery> query);
    void runChange(const Statement& statement);
    void runDefinition(const Tree& tree);
    void runExplain(const ExplainPlan& statement);
    void runControl(const Statement& statement);
    void alterSession(const AlterSession& statement);
    void commit();
    void rollback();
    void createTemporaryTables();
    void emptyTransactionTables();
    ProviderError seamError(const SqliteFailure& failure);
    void fillContext(const std::string& user, const std::string& service);

    FileIdentity m_file;
    std::unique_ptr<FunctionContext> m_context; // outlives m_db, whose functions point to it
    SqliteDatabase m_db;
    MemoryGuard m_memory;
    Sequences m_sequences;
    DatabaseCatalog m_catalog;
    std::unique_ptr<SchemaBinder> m_binder;
    ListedSession m_listed;
    Transaction m_transaction;
    DeferredConstraints m_deferred;
    ChangeRunner m_changes;
    StatementCache m_cache;
    bool m_lost = false;         // the file is gone
    bool m_afterFailure = false; // sequences may have lost what they noted
};

} // namespace ora
