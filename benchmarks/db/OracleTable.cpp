#include "OracleTable.h"

#include "BenchTable.h"
#include "ProviderTable.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

const char* const script[] = {
    "CREATE TABLE big (id NUMBER CONSTRAINT big_pk PRIMARY KEY, customer NUMBER,"
    " amount NUMBER(10,2), at DATE, name VARCHAR2(40), remark VARCHAR2(80), tax NUMBER(4,2),"
    " status VARCHAR2(10))",
    "INSERT INTO big SELECT i, MOD(i * 7919, 100003), MOD(i * 31, 1000000) / 100,"
    " DATE '2019-01-01' + MOD(i * 61, 4000000) / 1440, 'customer ' || MOD(i, 5000),"
    " CASE WHEN MOD(i, 5) = 0 THEN NULL ELSE 'remark on row ' || i END, MOD(i, 100) / 4,"
    " DECODE(MOD(i, 3), 0, 'open', 1, 'shipped', 'cancelled')"
    " FROM (SELECT LEVEL i FROM dual CONNECT BY LEVEL <= %1)",
    "CREATE TABLE tree (id NUMBER PRIMARY KEY, parent NUMBER, label VARCHAR2(20))",
    ("INSERT INTO tree SELECT LEVEL, CASE WHEN LEVEL > 1 THEN TRUNC(LEVEL / 4) + 1 END,"
     " 'node ' || LEVEL FROM dual CONNECT BY LEVEL <= 100000"),
    // The second level hangs below the first: row 2 and 3 would be their own parents.
    "UPDATE tree SET parent = 1 WHERE id IN (2, 3)",
    "CREATE INDEX tree_parent ON tree (parent)",
};

std::unique_ptr<Session> open(const QString& path) {
    return openSession({{}, path, u"bench"_s, {}}, providerTable());
}

void build(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("benchmark table: %s", qPrintable(file.errorString()));
    file.close();
    const auto session = open(path);
    for (const char* statement : script) {
        const QString sql = QString::fromLatin1(statement);
        session->execute(sql.contains(u"%1"_s) ? sql.arg(benchRows()) : sql);
    }
}

} // namespace

QString oracleFile() {
    const QString path = QDir::temp().filePath(u"quillmate-bench-oracle-%1.db"_s.arg(benchRows()));
    if (QFile::exists(path))
        return path;
    const QString unfinished = path + u".new.db"_s;
    build(unfinished);
    QFile::rename(unfinished, path);
    return path;
}

std::unique_ptr<Session> openOracleTable() {
    return open(oracleFile());
}

QString storedNameOfBig() {
    const auto session = openOracleTable();
    const auto cursor =
        session->execute(u"SELECT object_id FROM user_objects WHERE object_name = 'BIG'"_s);
    CellStore rows(1);
    cursor->fetch(rows, 1);
    return u"t"_s + QString::fromUtf8(rows.cell(0, 0).view());
}

BareDatabase::BareDatabase(const QString& path) {
    if (sqlite3_open(path.toUtf8().constData(), &m_db) != SQLITE_OK)
        qFatal("benchmark table: %s", sqlite3_errmsg(m_db));
}

BareDatabase::~BareDatabase() {
    sqlite3_close(m_db);
}

void BareDatabase::scan(const QString& sql) const {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(m_db, sql.toUtf8().constData(), -1, &statement, nullptr);
    const int columns = sqlite3_column_count(statement);
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (int i = 0; i < columns; ++i)
            benchmark::DoNotOptimize(sqlite3_column_text(statement, i));
    }
    sqlite3_finalize(statement);
}

void bareScan(benchmark::State& state, const QString& sql) {
    const BareDatabase db(oracleFile());
    for (auto _ : state)
        db.scan(sql);
}

void bareLoopOverStoredValues(benchmark::State& state) {
    bareScan(state, u"SELECT * FROM "_s + storedNameOfBig());
}

qsizetype runToEnd(Session& session, const QString& sql) {
    const auto cursor = session.execute(sql);
    CellStore rows(int(cursor->columns().size()));
    constexpr qsizetype block = 4096;
    while (cursor->fetch(rows, block) > 0) {
    }
    return rows.rows();
}
