#include "BenchTable.h"

#include <QDir>
#include <QFile>

namespace {

constexpr qint64 defaultRows = 1000000;

// About 77 bytes of text a row: keys, decimals, dates, short and long texts, nulls.
const char* const fillQuery =
    "INSERT INTO big WITH RECURSIVE r(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM r WHERE i < %1) "
    "SELECT i, i * 7919 % 100003, (i * 31 % 1000000) / 100.0, "
    "datetime('2019-01-01', '+' || (i * 61 % 4000000) || ' minutes'), 'customer ' || (i % 5000), "
    "CASE WHEN i % 5 = 0 THEN NULL ELSE 'remark on row ' || i END, i % 100 / 4.0, "
    "CASE i % 3 WHEN 0 THEN 'open' WHEN 1 THEN 'shipped' ELSE 'cancelled' END FROM r";

void run(sqlite3* db, const QString& sql) {
    if (sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        qFatal("benchmark table: %s", sqlite3_errmsg(db));
}

void build(const QString& path) {
    sqlite3* db = nullptr;
    if (sqlite3_open(path.toUtf8().constData(), &db) != SQLITE_OK)
        qFatal("benchmark table: %s", sqlite3_errmsg(db));
    run(db, QStringLiteral("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; BEGIN; "
                           "CREATE TABLE big (id NUMBER, customer NUMBER, amount NUMBER(10,2), "
                           "at DATE, name VARCHAR2(40), remark VARCHAR2(80), tax NUMBER(4,2), "
                           "status VARCHAR2(10))"));
    run(db, QString::fromLatin1(fillQuery).arg(benchRows()));
    run(db, QStringLiteral("COMMIT"));
    sqlite3_close(db);
}

} // namespace

qint64 benchRows() {
    bool given = false;
    const qint64 rows = qEnvironmentVariable("QUILLMATE_BENCH_ROWS").toLongLong(&given);
    return given && rows > 0 ? rows : defaultRows;
}

QString benchFile() {
    const QString path =
        QDir::temp().filePath(QStringLiteral("quillmate-bench-%1.db").arg(benchRows()));
    if (QFile::exists(path))
        return path;
    const QString unfinished = path + QStringLiteral(".new");
    QFile::remove(unfinished);
    build(unfinished);
    QFile::rename(unfinished, path);
    return path;
}

void bareLoop(benchmark::State& state) {
    sqlite3* db = nullptr;
    sqlite3_open(benchFile().toUtf8().constData(), &db);
    for (auto _ : state) {
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(db, benchQuery, -1, &statement, nullptr);
        const int columns = sqlite3_column_count(statement);
        while (sqlite3_step(statement) == SQLITE_ROW) {
            for (int i = 0; i < columns; ++i)
                benchmark::DoNotOptimize(sqlite3_column_text(statement, i));
        }
        sqlite3_finalize(statement);
    }
    sqlite3_close(db);
}
