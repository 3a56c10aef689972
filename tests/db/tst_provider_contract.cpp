#include "Backends.h"
#include "SessionText.h"

#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

// What every back-end must do, in SQL that all of them understand. Each test runs once a back-end.
class tst_provider_contract : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_home;
    std::unique_ptr<Session> m_session;

    void addBackends() {
        QTest::addColumn<QString>("backend");
        for (const Backend& backend : backends())
            QTest::newRow(backend.name) << QString::fromUtf8(backend.name);
    }

private Q_SLOTS:
    void initTestCase() { useProgramFolder(m_home.path()); }
    void cleanupTestCase() { stopBackends(); }

    void init() {
        QFETCH(QString, backend);
        const Backend& tested = backendNamed(backend);
        if (!tested.missing.isEmpty())
            QSKIP(qPrintable(tested.missing));
        m_session = openBackend(tested);
        failureOf(*m_session, u"DROP TABLE contract"_s);
        const QString* types = tested.columnTypes;
        m_session->execute(
            u"CREATE TABLE contract (id %1 PRIMARY KEY, price %2, label %3, seen %4, bytes %5)"_s
                .arg(types[0], types[1], types[2], types[3], types[4]));
    }
    void cleanup() {
        if (!m_session)
            return;
        failureOf(*m_session, u"DROP TABLE contract"_s);
        m_session.reset();
    }

    void typedColumns_data() { addBackends(); }
    void typedColumns() {
        const auto cursor = m_session->execute(u"SELECT * FROM contract"_s);
        QList<ColumnType> types;
        for (const Column& column : cursor->columns())
            types << column.type;
        const QList<ColumnType> expected{ColumnType::Number, ColumnType::Number, ColumnType::Text,
                                         ColumnType::Date, ColumnType::Binary};
        QCOMPARE(types, expected);
        CellStore rows(5);
        QCOMPARE(cursor->fetch(rows, 10), 0);
    }

    void textNullAndForeignScripts_data() { addBackends(); }
    void textNullAndForeignScripts() {
        insert(u"1, NULL, 'Ελένη, \"quoted\"', NULL, NULL"_s);
        insert(u"2, NULL, '日本 🎂', NULL, NULL"_s);
        insert(u"3, NULL, NULL, NULL, NULL"_s);
        QCOMPARE(rowsOf(u"SELECT price, label FROM contract ORDER BY id"_s),
                 u"(null)|Ελένη, \"quoted\"\n(null)|日本 🎂\n(null)|(null)"_s);
    }

    void numbersAreDigits_data() { addBackends(); }
    void numbersAreDigits() {
        insert(u"1, 0.5, NULL, NULL, NULL"_s);
        insert(u"2, 10000000000, NULL, NULL, NULL"_s);
        insert(u"3, -0.0000001, NULL, NULL, NULL"_s);
        insert(u"4, 1e15, NULL, NULL, NULL"_s);
        insert(u"5, 7.50, NULL, NULL, NULL"_s);
        QCOMPARE(rowsOf(u"SELECT price FROM contract ORDER BY id"_s),
                 u"0.5\n10000000000\n-0.0000001\n1000000000000000\n7.5"_s);
    }

    void datesShowTheTimeTheyHave_data() { addBackends(); }
    void datesShowTheTimeTheyHave() {
        insert(u"1, NULL, NULL, "_s + timestampLiteral(u"2026-11-21 00:00:00"_s) + u", NULL"_s);
        insert(u"2, NULL, NULL, "_s + timestampLiteral(u"2026-11-21 14:05:09"_s) + u", NULL"_s);
        insert(u"3, NULL, NULL, "_s + timestampLiteral(u"2026-11-21 00:00:00.250"_s) + u", NULL"_s);
        QCOMPARE(rowsOf(u"SELECT seen FROM contract ORDER BY id"_s),
                 u"2026-11-21\n2026-11-21 14:05:09\n2026-11-21 00:00:00.25"_s);
    }

    void binaryIsHexadecimal_data() { addBackends(); }
    void binaryIsHexadecimal() {
        insert(u"1, NULL, NULL, NULL, "_s + binaryLiteral("00FF1A"_L1));
        QCOMPARE(rowsOf(u"SELECT bytes FROM contract"_s), u"00FF1A"_s);
    }

    void rowsComeInBlocks_data() { addBackends(); }
    void rowsComeInBlocks() {
        fill(10);
        const auto cursor = m_session->execute(u"SELECT id FROM contract ORDER BY id"_s);
        CellStore rows(1);
        QList<qsizetype> blocks;
        while (blocks.isEmpty() || blocks.last() > 0)
            blocks << cursor->fetch(rows, 4);
        QCOMPARE(blocks, (QList<qsizetype>{4, 4, 2, 0}));
        QCOMPARE(rows.cell(9, 0).view(), QByteArrayView("10"));
        QCOMPARE(cursor->fetch(rows, 4), 0); // the end stays the end
    }

    void manyColumns_data() { addBackends(); }
    void manyColumns() {
        QFETCH(QString, backend);
        const int count = backend == "postgresql"_L1 ? 1600 : 2000; // no server's rows are wider
        fill(1);
        QStringList columns;
        for (int i = 1; i <= count; ++i)
            columns << u"id + %1 AS c%1"_s.arg(i);
        const QString sql = u"SELECT "_s + columns.join(u", "_s) + u" FROM contract"_s;
        const auto cursor = m_session->execute(sql);
        QCOMPARE(int(cursor->columns().size()), count);
        QCOMPARE(cursor->columns().back().name.toUpper(), u"C%1"_s.arg(count));
        CellStore rows(count);
        QCOMPARE(cursor->fetch(rows, 2), 1);
        QCOMPARE(rows.cell(0, count - 1).view().toByteArray(), QByteArray::number(count + 1));
        const auto none = m_session->execute(sql + u" WHERE id = 0"_s);
        QCOMPARE(int(none->columns().size()), count);
        QCOMPARE(none->fetch(rows, 2), 0);
    }

    void severalCursorsAtOnce_data() { addBackends(); }
    void severalCursorsAtOnce() {
        fill(6);
        const auto up = m_session->execute(u"SELECT id FROM contract ORDER BY id"_s);
        const auto down = m_session->execute(u"SELECT id FROM contract ORDER BY id DESC"_s);
        CellStore rows(1);
        for (int i = 0; i < 6; ++i) {
            QCOMPARE(up->fetch(rows, 1), 1);
            QCOMPARE(down->fetch(rows, 1), 1);
            QCOMPARE(QString::fromUtf8(rows.cell(2 * i, 0).view()).toInt() +
                         QString::fromUtf8(rows.cell(2 * i + 1, 0).view()).toInt(),
                     7);
        }
    }

    void effectsWithoutRows_data() { addBackends(); }
    void effectsWithoutRows() {
        fill(3);
        QVERIFY(m_session->execute(u"UPDATE contract SET label = 'x' WHERE id > 1"_s)
                    ->columns()
                    .empty());
        m_session->execute(u"DELETE FROM contract WHERE id = 3"_s);
        m_session->execute(u"DELETE FROM contract WHERE id = 99"_s); // none: no failure
        QCOMPARE(rowsOf(u"SELECT id, label FROM contract ORDER BY id"_s), u"1|(null)\n2|x"_s);
    }

    void aTableIsDroppedUnderAReadRecordset_data() { addBackends(); }
    void aTableIsDroppedUnderAReadRecordset() {
        fill(3);
        const auto cursor = m_session->execute(u"SELECT id FROM contract"_s);
        CellStore rows(1);
        while (cursor->fetch(rows, 2) > 0) {
        }
        QCOMPARE(failureOf(*m_session, u"DROP TABLE contract"_s), u"done"_s);
        QCOMPARE(rows.rows(), 3);
    }

    void failuresCarryTheServersCodeAndNumber_data() {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("start");
        struct Row {
            const char* fault;
            const char* sql;
            const char* start;
        };
        const Row rows[] = {
            {"missing table", "SELECT * FROM nothing_here", "ORA-00942 -2147467259: "},
            {"name exists", "CREATE TABLE contract (a INTEGER)", "ORA-00955 -2147217900: "},
            {"no statement", "FLY ME TO THE MOON", "ORA-00900 -2147217900: "},
            {"empty", "", "ORA-00900 -2147217900: "},
            {"duplicate key", "INSERT INTO contract (id) VALUES (1)", "ORA-00001 -2147467259: "},
            {"unknown column", "SELECT nothing_here FROM contract", "ORA-00904 -2147217900: "},
        };
        for (const Backend& backend : backends()) {
            for (const Row& row : rows)
                QTest::addRow("%s, %s", backend.name, row.fault)
                    << QString::fromUtf8(backend.name) << QString::fromUtf8(row.sql)
                    << QString::fromUtf8(row.start);
        }
    }
    void failuresCarryTheServersCodeAndNumber() {
        QFETCH(QString, sql);
        QFETCH(QString, start);
        fill(1);
        const QString failure = failureOf(*m_session, sql);
        QVERIFY2(failure.startsWith(start), qPrintable(failure));
        QVERIFY(m_session->isOpen());
        QCOMPARE(rowsOf(u"SELECT id FROM contract"_s), u"1"_s); // the session goes on
    }

    void aRunningStatementIsStopped_data() { addBackends(); }
    void aRunningStatementIsStopped() {
        fill(60);
        m_session->requestStop(); // nothing runs: nothing happens
        QCOMPARE(rowsOf(u"SELECT COUNT(*) FROM contract"_s), u"60"_s);
        // A request before the statement runs does nothing, so it is repeated until the end.
        std::atomic<bool> ended = false;
        std::thread stopper([&, session = m_session.get()] {
            while (!ended) {
                session->requestStop();
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
        });
        const QString failure = failureOf(
            *m_session, u"SELECT COUNT(*) FROM contract a, contract b, contract c, contract d, "
                        "contract e WHERE a.id + b.id + c.id + d.id + e.id < 0"_s);
        ended = true;
        stopper.join();
        QVERIFY2(failure.startsWith(u"ORA-01013 "_s), qPrintable(failure));
        QCOMPARE(rowsOf(u"SELECT COUNT(*) FROM contract"_s), u"60"_s);
    }

private:
    void insert(const QString& values) {
        m_session->execute(u"INSERT INTO contract VALUES ("_s + values + u")"_s);
    }
    void fill(int rows) {
        for (int i = 1; i <= rows; ++i)
            insert(QString::number(i) + u", NULL, NULL, NULL, NULL"_s);
    }
    QString rowsOf(const QString& sql) { return printed(*m_session, sql).section(u'\n', 1); }
    QString timestampLiteral(const QString& text) const {
        QFETCH(QString, backend);
        return backendNamed(backend).timestampLiteral.arg(text);
    }
    QString binaryLiteral(QLatin1String hex) const {
        QFETCH(QString, backend);
        return backendNamed(backend).binaryLiteral.arg(hex);
    }
};

QTEST_GUILESS_MAIN(tst_provider_contract)
#include "tst_provider_contract.moc"
