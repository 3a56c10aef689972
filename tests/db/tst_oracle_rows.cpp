#include "OracleScript.h"

#include <QTest>

using namespace Qt::StringLiterals;

// Rows of several values, set operators over several types, pseudo columns beside groups: queries
// that only read, each row named by its statement.
class tst_oracle_rows : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_home;
    std::unique_ptr<OracleScript> m_tables;

    static void columns() {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("outcome");
    }
    static void row(const char* query, const char* outcome) {
        QTest::newRow(query) << QString::fromUtf8(query) << QString::fromUtf8(outcome);
    }
    void check() {
        QFETCH(QString, query);
        QFETCH(QString, outcome);
        QCOMPARE(m_tables->run(query).remove(u"(null)"_s).replace(u'\n', u' '), outcome);
    }

private Q_SLOTS:
    void initTestCase() {
        qputenv("QUILLMATE_HOME", m_home.path().toUtf8());
        m_tables = std::make_unique<OracleScript>();
        QCOMPARE(m_tables->runAll(uR"(
create table emp (id number primary key, dept number, pay number);
insert into emp values (1, 10, 500);
insert into emp values (2, 10, 300);
insert into emp values (3, 20, 300);
create sequence s)"_s),
                 QString());
    }
    void cleanupTestCase() { m_tables.reset(); }

    void groups_data() {
        columns();
        const char* const notSingle = "ORA-00937: not a single-group group function";
        row("select rownum, count(*) from emp", notSingle);
        row("select level, count(*) from dual connect by level < 3", notSingle);
        row("select level, count(*) from dual connect by level < 3 group by level", "1|1 2|1");
        row("select rownum, sum(pay) over () from emp where dept = 10", "1|800 2|800");
        row("select max(rownum), count(*) from emp", "3|3");
        row("select sum(*) from emp", "ORA-00936: missing expression");
    }
    void groups() { check(); }

    void tuples_data() {
        columns();
        row("select id from emp where (dept, pay) = (10, 500)",
            "ORA-01797: this operator must be followed by ANY or ALL");
        row("select id from emp where (dept, pay) = ((10, 500))", "1");
        row("select id from emp where (dept, pay) <> ((10, 500)) order by 1", "2 3");
        row("select id from emp where (dept, pay) = (select dept, pay from emp where dept = 10)",
            "ORA-01427: single-row subquery returns more than one row");
        row("select id from emp where (dept, pay) = (select dept, pay from emp where id = 3)", "3");
        row("select id from emp where (dept, pay) <> (select dept, pay from emp where id = 9)", "");
    }
    void tuples() { check(); }

    void unlikeTypes_data() {
        columns();
        row("select 3 from dual intersect select 3f from dual", "3");
        row("select 1.5 x from dual union all select 2d from dual order by 1", "1.5 2");
        row("select 1, 'x' from dual union select 2d, null from dual union select null, 'z' from "
            "dual order by 1",
            "1|x 2| |z");
        row("select date '2020-01-01' from dual union all"
            " select timestamp '2020-01-01 00:00:00 +02:00' from dual where 1 = 0",
            "2020-01-01 00:00:00 +00:00");
        row("select * from (select 1 a, 'x' b from dual) unpivot (v for c in (a, b))",
            "ORA-01790: expression must have same datatype as corresponding expression");
    }
    void unlikeTypes() { check(); }

    void recursions_data() {
        columns();
        row("with t(n) as (select 1 from dual union select n + 1 from t where n < 5) select * from "
            "t",
            "ORA-32040: recursive WITH clause must use a UNION ALL operation");
        row("with t(n) as (select 1 from dual union all select count(*) from t) select * from t",
            "ORA-32486: unsupported operation in recursive branch of recursive WITH clause");
        row("with t(n) as (select 1 from dual union all select n from t) select * from t",
            "ORA-32044: cycle detected while executing recursive WITH query");
    }
    void recursions() { check(); }

    void places_data() {
        columns();
        row("select id from emp where id = 1 for update of nope",
            "ORA-00904: \"NOPE\": invalid identifier");
        row("select e.id from emp e where id = 1 for update of e.pay nowait", "1");
        row("select (select s.nextval from dual) from dual",
            "ORA-02287: sequence number not allowed here");
        row("select sum(pay) over (order by id rows between 1 following and 1 preceding) from emp",
            "ORA-30486: invalid window aggregation group in the window specification");
        row("select sum(id) over (order by id rows between 2 preceding and 1 preceding) from emp",
            " 1 3");
    }
    void places() { check(); }
};

QTEST_GUILESS_MAIN(tst_oracle_rows)
#include "tst_oracle_rows.moc"
