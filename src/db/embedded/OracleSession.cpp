#include "OracleSession.h"

#include "AsciiText.h"
#include "Compiler.h"
#include "Dependencies.h"
#include "Dictionary.h"
#include "ErrorText.h"
#include "LateralTable.h"
#include "Lexer.h"
#include "LocalTime.h"
#include "OracleErrors.h"
#include "Plan.h"
#include "QueryFunctions.h"
#include "SessionSettings.h"
#include "TableSql.h"

#include <QCoreApplication>
#include <QSysInfo>

namespace ora {

namespace {

// A plan is made for one thing: a query or a change.
const char* planRoot(StatementKind kind) {
    switch (kind) {
    case StatementKind::Query: return "SELECT STATEMENT";
    case StatementKind::Insert:
    case StatementKind::MultiInsert: return "INSERT STATEMENT";
    case StatementKind::Update: return "UPDATE STATEMENT";
    case StatementKind::Delete: return "DELETE STATEMENT";
    case StatementKind::Merge: return "MERGE STATEMENT";
    default: return nullptr;
    }
}

std::string machine() {
    return QSysInfo::machineHostName().toStdString();
}
std::string program() {
    return QCoreApplication::applicationName().toStdString();
}
std::string osUser() {
#ifdef Q_OS_WIN
    return qEnvironmentVariable("USERNAME").toStdString();
#else
    return qEnvironmentVariable("USER").toStdString();
#endif
}

bool isChange(StatementKind kind) {
    return kind != StatementKind::Query && planRoot(kind);
}

// A database's name as the server would have it: a path's last part without its extension.
std::string databaseName(std::string_view service) {
    service.remove_prefix(service.find_last_of("/\\") + 1); // npos + 1 is 0
    return upperAscii(service.substr(0, service.find('.')));
}

} // namespace

OracleSession::OracleSession(std::unique_ptr<FunctionContext> context, SqliteDatabase db,
                             FileIdentity file, const std::string& user, const std::string& service)
    : m_file(std::move(file))
    , m_context(std::move(context))
    , m_db(std::move(db))
    , m_memory(m_db.get())
    , m_sequences(m_db, user)
    , m_catalog(m_db, *m_context, user)
    , m_binder(makeSchemaBinder(m_catalog))
    , m_listed({0, 0, user, osUser(), machine(), program(), service, CatalogStore::now(),
                QCoreApplication::applicationPid()})
    , m_transaction(m_db)
    , m_deferred(m_db, m_catalog)
    , m_changes(m_db, m_catalog, m_deferred) {
    fillContext(user, service);
    registerQueryFunctions(m_db.get());
    LateralTable::registerAt(m_db.get());
    registerDictionaryFunctions(m_db.get(), *m_context);
    createTemporaryTables();
}

OracleSession::~OracleSession() {
    try {
        m_transaction.rollback();
    } catch (const SqliteFailure&) {
        // Closing the file rolls back as well.
    }
}

void OracleSession::fillContext(const std::string& user, const std::string& service) {
    m_context->user = user;
    m_context->databaseName = databaseName(service);
    m_context->host = machine();
    m_context->program = program();
    m_context->osUser = osUser();
    m_context->sid = m_context->sessionId = m_listed.sid();
    m_context->nextValue = [this](const std::string& name) { return m_sequences.nextValue(name); };
    m_context->rowValue = [this](const std::string& name, int place) {
        return m_sequences.rowValue(name, place);
    };
    m_context->dependencies = [this] { return dependenciesJson(m_catalog); };
    m_context->viewIsValid = [this](const std::string& view) {
        return ora::viewIsValid(m_catalog, view);
    };
    m_context->currentValue = [this](const std::string& name) {
        return m_sequences.currentValue(name);
    };
}

// --- one statement -----------------------------------------------------------------------------

void OracleSession::requireFile() {
    if (m_lost)
        throw oraError(OraCode::NotConnected, "not connected to ORACLE");
    if (m_file.stillThere())
        return;
    m_lost = true;
    throw oraError(OraCode::ConnectionLost,
                   "end-of-file on communication channel\nThe database file " +
                       m_file.path().toStdString() + " is gone.");
}

void OracleSession::prepareForStatement() {
    if (m_catalog.forgetIfChanged()) {
        m_cache.clear();
        m_deferred.forget();
    }
    if (m_afterFailure) {
        m_sequences.noteAgain();
        m_afterFailure = false;
    }
    m_sequences.beginStatement();
    m_context->statementTime = localNow();
}

ProviderError OracleSession::seamError(const SqliteFailure& failure) {
    const bool interrupted = failure.primaryCode() == SQLITE_INTERRUPT;
    if (m_memory.takeStopped() && interrupted)
        return oraError(OraCode::OutOfMemory, "out of process memory");
    if (const auto error = errorFrom(failure.what()))
        return oraError(*error);
    if (const auto error = constraintError(failure, m_catalog, RowAction::Insert))
        return oraError(*error);
    return oraEngineError(failure);
}

std::unique_ptr<Cursor> OracleSession::execute(const QString& sql) {
    requireFile();
    if (sql.contains(QChar(u'\0')))
        throw oraError(OraCode::InvalidCharacter, "invalid character");
    try {
        prepareForStatement();
        return run(sql.toStdString());
    } catch (const OraError& error) {
        m_afterFailure = true;
        throw oraError(error);
    } catch (const SqliteFailure& failure) {
        m_afterFailure = true;
        m_transaction.noteFailure();
        throw seamError(failure);
    } catch (const std::bad_alloc&) {
        m_afterFailure = true;
        throw oraError(OraCode::OutOfMemory, "out of process memory");
    }
}

std::unique_ptr<Cursor> OracleSession::run(const std::string& text) {
    if (auto known = m_cache.find(text))
        return runQuery(std::move(known));
    const auto tree = parseStatement(text);
    return runTree(text, *tree);
}

std::unique_ptr<Cursor> OracleSession::runTree(const std::string& text, const Tree& tree) {
    const Statement& statement = *tree.statement;
    if (statement.kind == StatementKind::Query) {
        Compiled compiled = compile(m_catalog, statement);
        return runQuery(
            m_cache.add(text, {std::move(compiled.sql.front()), std::move(compiled.columns), {}}));
    }
    if (isChange(statement.kind))
        runChange(statement);
    else if (isDdl(statement.kind))
        runDefinition(tree);
    else if (statement.kind == StatementKind::ExplainPlan)
        runExplain(static_cast<const ExplainPlan&>(statement));
    else
        runControl(statement);
    return std::make_unique<EmptyCursor>();
}

std::unique_ptr<Cursor> OracleSession::runQuery(std::shared_ptr<const CachedQuery> query) {
    std::optional<SqliteStatement> statement;
    if (query->idle.empty()) {
        statement.emplace(m_db.prepare(query->sql));
    } else {
        statement.emplace(std::move(query->idle.back()));
        query->idle.pop_back();
    }
    const bool hasRow = statement->step();
    const auto columns = query->columns;
    return std::make_unique<TypedCursor>(
        std::move(*statement), hasRow, columns,
        [this](const SqliteFailure& failure) { return seamError(failure); },
        [query](SqliteStatement done) { query->idle.push_back(std::move(done)); });
}

void OracleSession::runChange(const Statement& statement) {
    constexpr int readOnlyTransaction = 1456;
    if (m_transaction.isReadOnly())
        throw OraError(readOnlyTransaction, "may not perform insert/delete/update operation inside "
                                            "a READ ONLY transaction");
    m_changes.run(compileChange(m_catalog, statement));
    if (!m_transaction.isOpen())
        emptyTransactionTables();
}

// Data definition commits what came before it, and itself.
void OracleSession::runDefinition(const Tree& tree) {
    commit();
    m_cache.clear(); // idle statements would lock the tables
    m_deferred.forget();
    const DdlContext context{m_db, m_catalog, *m_binder, m_sequences};
    try {
        AtomicChange all(m_db);
        runDdl(context, *tree.statement, tree.source);
        all.keep();
    } catch (...) {
        m_catalog.forget();
        throw;
    }
    m_catalog.forget();
}

void OracleSession::runExplain(const ExplainPlan& statement) {
    constexpr int planTableMissing = 2402;
    const char* root = planRoot(statement.statement->kind);
    if (!root)
        refuse("EXPLAIN PLAN for anything but a query or a change of data");
    const bool named = bool(statement.into.name);
    const RelationPtr table =
        named ? m_catalog.relation(statement.into.schema.text, statement.into.name.text)
              : m_catalog.relation({}, "PLAN_TABLE");
    if (!table || !table->isStored())
        throw OraError(planTableMissing, "Specified plan table not found");
    const Compiled compiled = compile(m_catalog, *statement.statement);
    const PlanNode plan =
        explainPlan(m_db, m_catalog, compiled.sql.front(), root, compiled.target.get());
    AtomicChange all(m_db);
    storePlan(m_db, plan, *table, std::string(statement.statementId), m_catalog.user());
    all.keep();
}

// --- transactions, the session -----------------------------------------------------------------

void OracleSession::commit() {
    if (const auto broken = m_deferred.brokenAtCommit()) {
        rollback();
        throw *broken;
    }
    m_transaction.commit();
    m_deferred.endTransaction();
    emptyTransactionTables();
}

void OracleSession::rollback() {
    m_transaction.rollback();
    m_deferred.endTransaction();
    emptyTransactionTables();
}

void OracleSession::runControl(const Statement& statement) {
    switch (statement.kind) {
    case StatementKind::Commit: return commit();
    case StatementKind::Rollback: {
        const Name& savepoint = static_cast<const Rollback&>(statement).savepoint;
        if (savepoint)
            m_transaction.rollbackTo(std::string(savepoint.text));
        else
            rollback();
        m_afterFailure = true; // as after a failure, sequences do not go back
        return;
    }
    case StatementKind::Savepoint:
        return m_transaction.savepoint(
            std::string(static_cast<const Savepoint&>(statement).name.text));
    case StatementKind::SetTransaction:
        commit();
        return m_transaction.begin(static_cast<const SetTransaction&>(statement).readOnly);
    case StatementKind::SetConstraints:
        return m_deferred.set(static_cast<const SetConstraints&>(statement),
                              m_transaction.isOpen());
    case StatementKind::AlterSession:
        return alterSession(static_cast<const AlterSession&>(statement));
    case StatementKind::LockTable:
        for (const ObjectName& table : static_cast<const LockTable&>(statement).tables) {
            constexpr int missingTable = 942;
            if (!m_catalog.relation(table.schema.text, table.name.text))
                raise(missingTable);
        }
        return;
    default: refuse("this statement");
    }
}

void OracleSession::alterSession(const AlterSession& statement) {
    constexpr int noSuchUser = 1435;
    for (const SessionParameter& parameter : statement.parameters) {
        if (parameter.name == "CURRENT_SCHEMA" && foldName(parameter.value) != m_catalog.user())
            throw OraError(noSuchUser, "user does not exist");
        if (parameter.name == "CONSTRAINTS" || parameter.name == "CONSTRAINT") {
            m_deferred.setSession(parameter.value);
            continue;
        }
        applySetting(*m_context, parameter.name, parameter.value);
    }
    m_cache.clear();
}

// Rows of global temporary tables are the session's own: the tables are made in each anew.
void OracleSession::createTemporaryTables() {
    for (const ObjectId id : m_catalog.store().temporaryTables())
        createStoredTable(m_db, m_catalog.store(), m_catalog.store().table(id));
}

void OracleSession::emptyTransactionTables() {
    for (const ObjectId id : m_catalog.store().temporaryTables()) {
        const TableDefinition table = m_catalog.store().table(id);
        if (table.rows == TableDefinition::Rows::OfTransaction)
            m_db.run("DELETE FROM temp." + table.sqlName());
    }
}

void OracleSession::requestStop() noexcept {
    sqlite3_interrupt(m_db.get());
}

} // namespace ora
