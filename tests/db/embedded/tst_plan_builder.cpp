#include "CatalogTables.h"
#include "Functions.h"
#include "Plan.h"
#include "TableSql.h"

#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;
using namespace ora;

namespace {

ColumnDefinition numberColumn(const char* name, int number) {
    ColumnDefinition column;
    column.name = name;
    column.number = number;
    column.type.type = SqlType::Number;
    return column;
}

// Two tables with keys, made without any statement of the dialect: BIG (20,000 rows: ID, GRP, N)
// and SMALL (10 rows: ID, GRP, N).
class PlanDatabase {
public:
    PlanDatabase()
        : db(":memory:", SqliteDatabase::Mode::Create)
        , catalog(createTables(db, context), context, "DEMO") {
        makeTable("BIG", 20000);
        makeTable("SMALL", 10);
    }

    std::string table(const char* name) const {
        return catalog.store().table(catalog.ownObject(name)->id).sqlName();
    }

    FunctionContext context;
    const SqliteDatabase db;
    DatabaseCatalog catalog;

private:
    static const SqliteDatabase& createTables(const SqliteDatabase& db, FunctionContext& context) {
        registerFunctions(db.get(), context);
        createCatalogTables(db);
        return db;
    }
    void addIndex(const TableDefinition& table, const std::string& name, int column, bool unique) {
        IndexDefinition index;
        index.name = name;
        index.table = table.id;
        index.unique = unique;
        index.keys = {{column, {}, {}, false}};
        index.id = catalog.store().addObject(NameSpace::Index, name, "INDEX");
        catalog.store().saveIndex(index);
        db.run(createIndexSql(index, table));
    }
    void makeTable(const std::string& name, int rows) {
        TableDefinition table;
        table.name = name;
        table.columns = {numberColumn("ID", 1), numberColumn("GRP", 2), numberColumn("N", 3)};
        table.id = catalog.store().addObject(NameSpace::Relation, name, "TABLE");
        catalog.store().saveTable(table);
        db.run(createTableSql(table, catalog.store()));
        db.run("INSERT INTO " + table.sqlName() +
               " WITH RECURSIVE r(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM r WHERE i < " +
               std::to_string(rows) +
               ") SELECT num_from_int(i), num_from_int(i % 100), num_from_int(i) FROM r");
        addIndex(table, name + "_PK", 1, true);
        addIndex(table, name + "_GRP", 2, false);
        db.run("ANALYZE");
    }
};

// One operation a line, two blanks a level: "TABLE ACCESS FULL BIG".
QString printed(const PlanNode& node, int depth = 0) {
    QStringList words(QString::fromStdString(node.operation));
    for (const std::string& word : {node.options, node.objectName}) {
        if (!word.empty())
            words << QString::fromStdString(word);
    }
    QString text = QString(2 * depth, u' ') + words.join(u' ');
    for (const PlanNode& child : node.children)
        text += u'\n' + printed(child, depth + 1);
    return text;
}

} // namespace

class tst_plan_builder : public QObject {
    Q_OBJECT

private:
    PlanDatabase m_data;

    PlanNode explained(QString sql) const {
        sql.replace(u"big"_s, QString::fromStdString(m_data.table("BIG")));
        sql.replace(u"small"_s, QString::fromStdString(m_data.table("SMALL")));
        return explainPlan(m_data.db, m_data.catalog, sql.toStdString(), "SELECT STATEMENT",
                           nullptr);
    }

private Q_SLOTS:
    void operations_data() {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("plan");
        const auto row = [](const char* name, const char* sql, const char* plan) {
            QTest::newRow(name) << QString::fromUtf8(sql) << QString::fromUtf8(plan);
        };
        row("full scan", "SELECT c3 FROM big AS a1", "TABLE ACCESS FULL BIG");
        row("by key", "SELECT c3 FROM big a1 WHERE a1.c1 = x'c102'",
            "TABLE ACCESS BY INDEX ROWID BIG\n  INDEX UNIQUE SCAN BIG_PK");
        row("by range", "SELECT c3 FROM big a1 WHERE a1.c2 = x'c102'",
            "TABLE ACCESS BY INDEX ROWID BIG\n  INDEX RANGE SCAN BIG_GRP");
        row("index alone", "SELECT c1 FROM big a1 WHERE a1.c1 > x'c102'",
            "INDEX RANGE SCAN BIG_PK");
        row("by rowid", "SELECT c3 FROM big a1 WHERE a1.rowid = 7",
            "TABLE ACCESS BY USER ROWID BIG");
        row("join by key", "SELECT b.c3 FROM small s JOIN big b ON b.c1 = s.c3",
            "NESTED LOOPS\n  TABLE ACCESS FULL SMALL\n  TABLE ACCESS BY INDEX ROWID BIG\n"
            "    INDEX UNIQUE SCAN BIG_PK");
        row("join without an index", "SELECT a.c1, b.c1 FROM big a JOIN big b ON b.c3 = a.c3",
            "HASH JOIN\n  TABLE ACCESS FULL BIG\n  TABLE ACCESS FULL BIG");
        row("sort and group", "SELECT c3, count(*) FROM big a1 GROUP BY c3 ORDER BY 2",
            "SORT ORDER BY\n  SORT GROUP BY\n    TABLE ACCESS FULL BIG");
        row("union all", "SELECT c1 FROM big a1 UNION ALL SELECT c3 FROM small a2",
            "UNION-ALL\n  INDEX FULL SCAN BIG_PK\n  TABLE ACCESS FULL SMALL");
        row("union", "SELECT c3 FROM small a1 UNION SELECT c3 FROM small a2",
            "SORT UNIQUE\n  UNION-ALL\n    TABLE ACCESS FULL SMALL\n    TABLE ACCESS FULL SMALL");
        row("except", "SELECT c3 FROM small a1 EXCEPT SELECT c3 FROM small a2",
            "MINUS\n  TABLE ACCESS FULL SMALL\n  TABLE ACCESS FULL SMALL");
        row("a view's own block, without its name",
            "SELECT v.n FROM (SELECT c2, count(*) AS n FROM big a1 GROUP BY c2 LIMIT 5) v, small s "
            "WHERE v.n > 1",
            "NESTED LOOPS\n  VIEW\n    INDEX FULL SCAN BIG_GRP\n  INDEX FULL SCAN SMALL_GRP");
        row("recursion",
            "WITH RECURSIVE r(i) AS (SELECT c1 FROM small a1 UNION ALL "
            "SELECT a2.c1 FROM r JOIN small a2 ON a2.c3 = r.i) SELECT * FROM r",
            "VIEW\n  CONNECT BY WITHOUT FILTERING\n    INDEX FULL SCAN SMALL_PK\n    HASH JOIN\n"
            "      CONNECT BY PUMP\n      TABLE ACCESS FULL SMALL");
        row("subquery", "SELECT c3 FROM small a1 WHERE c3 = (SELECT max(c3) FROM big a2)",
            "FILTER\n  TABLE ACCESS FULL SMALL\n  TABLE ACCESS FULL BIG");
        row("no table", "SELECT 1", "FAST DUAL");
    }
    void operations() {
        QFETCH(QString, sql);
        QTEST(printed(explained(sql).children.front()), "plan");
    }

    void costsGrowWithTheTables() {
        const PlanNode large = explained(u"SELECT c3 FROM big a1"_s);
        const PlanNode small = explained(u"SELECT c3 FROM small a1"_s);
        const PlanNode byKey = explained(u"SELECT c3 FROM big a1 WHERE a1.c1 = x'c102'"_s);
        QVERIFY(large.cost > 10 * small.cost);
        QVERIFY(byKey.cost < large.cost / 10);
        QCOMPARE(large.cardinality, 20000.0);
        QCOMPARE(byKey.cardinality, 1.0);
        QCOMPARE(explained(u"SELECT c3 FROM big a1 WHERE a1.c2 = x'c102'"_s).cardinality, 200.0);
    }

    void theAncestorsCostIncludesTheirParts() {
        const std::function<void(const PlanNode&)> check = [&](const PlanNode& node) {
            for (const PlanNode& child : node.children) {
                QVERIFY(node.cost >= child.cost);
                check(child);
            }
        };
        check(explained(u"SELECT b.c3, count(*) FROM small s JOIN big b ON b.c1 = s.c3 "
                        "GROUP BY b.c3 ORDER BY 2"_s));
    }
};

QTEST_GUILESS_MAIN(tst_plan_builder)
#include "tst_plan_builder.moc"
