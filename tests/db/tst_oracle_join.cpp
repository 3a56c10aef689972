#include "OracleCases.h"

#include <QTest>

// Joins beyond the plain ones: an outer join for each part of a table, and changes through joins.
class tst_oracle_join : public OracleCases {
    Q_OBJECT

private:
    std::unique_ptr<OracleScript> m_tables;

    void checkRows() {
        QFETCH(QString, script);
        QTEST(m_tables->run(script).replace(u'\n', u' '), "outcome");
    }

private Q_SLOTS:
    void initTestCase() {
        qputenv("QUILLMATE_HOME", m_home.path().toUtf8());
        m_tables = std::make_unique<OracleScript>();
        QCOMPARE(m_tables->runAll(QString::fromUtf8(R"(
create table days (d number);
create table sales (prod varchar2(5), d number, q number);
insert into days values (1);
insert into days values (2);
insert into days values (3);
insert into sales values ('A', 1, 5);
insert into sales values ('A', 3, 7);
insert into sales values ('B', 2, 1))")),
                 QString());
    }
    void cleanupTestCase() { m_tables.reset(); }

    void parts_data() {
        columns();
        row("each part gets all rows of the other table",
            "select s.prod, t.d, s.q from sales s partition by (prod) right outer join days t on "
            "(t.d = s.d) order by 1, 2",
            "A|1|5 A|2|(null) A|3|7 B|1|(null) B|2|1 B|3|(null)");
        row("the other way round",
            "select prod, t.d, nvl(q, 0) from days t left join sales s partition by (s.prod) on "
            "t.d = s.d order by prod, d",
            "A|1|5 A|2|0 A|3|7 B|1|0 B|2|1 B|3|0");
        row("gaps filled with what came before",
            "select prod, d, last_value(q ignore nulls) over (partition by prod order by d) from "
            "(select * from sales) v partition by (prod) right join days using (d) order by 1, 2",
            "A|1|5 A|2|5 A|3|7 B|1|(null) B|2|1 B|3|1");
        row("before and behind other joins",
            "select s.prod, t.d, x.q from days u join days t on u.d = t.d left join sales s "
            "partition by (prod) on t.d = s.d left join sales x on x.d = t.d and x.prod = s.prod "
            "where t.d < 3 order by 1, 2",
            "A|1|5 A|2|(null) B|1|(null) B|2|1");
        row("parts of an expression",
            "select count(*) from sales s partition by (mod(s.q, 2), s.prod) right join days t on "
            "t.d = s.d",
            "6");
        row("parts of both",
            "select 1 from sales s partition by (prod) right join days t partition by (d) on "
            "s.d = t.d",
            "ORA-39751: partitioned table on both sides of PARTITIONED OUTER JOIN is not "
            "supported");
        row("a full join",
            "select 1 from sales s partition by (prod) full join days t on s.d = t.d",
            "ORA-39754: FULL PARTITIONED OUTER JOIN is not supported");
        row("the side that never lacks",
            "select 1 from sales s partition by (prod) left join days t on s.d = t.d",
            "ORA-00905: missing keyword");
    }
    void parts() { checkRows(); }

    void ordering_data() {
        columns();
        row("a column that two tables have and one shows",
            "select t.d from days t, sales s where s.d = t.d order by d desc", "3 2 1");
        row("one that both show", "select t.d, s.d from days t, sales s order by d",
            "ORA-00918: column ambiguously defined");
    }
    void ordering() { checkRows(); }

    void marks_data() {
        columns();
        row("(+) on a table that is joined to none", "select d from days where days.d(+) = 2", "2");
        row("(+) on one of two such tables",
            "select t.d, s.q from days t, sales s where s.q(+) = 7 and t.d > 2", "3|7");
        row("(+) with a value beside a join",
            "select t.d, s.q from days t, sales s where s.d(+) = t.d and s.prod(+) = 'A' order by "
            "1",
            "1|5 2|(null) 3|7");
    }
    void marks() { checkRows(); }

    void changes_data() {
        columns();
        const auto onJoin = [](const char* fault, const char* script, const char* outcome) {
            static const QByteArray tables =
                "create table dept (deptno number primary key, dname varchar2(10));\n"
                "create table emp (empno number primary key, ename varchar2(10), deptno number "
                "references dept);\ninsert into dept values (10, 'ACC');\ninsert into dept values "
                "(20, 'RES');\ninsert into emp values (1, 'KING', 10);\ninsert into emp values (2, "
                "'FORD', 20);\ncreate view ed (num, nam, dep, town) as select e.empno, e.ename, "
                "e.deptno, d.dname from emp e, dept d where e.deptno = d.deptno;\n";
            row(fault, QByteArray(tables + script).constData(), outcome);
        };
        onJoin("a row for the table whose key stays",
               "insert into ed (num, nam, dep) values (3, 'ADAMS', 20);\ninsert into (select "
               "e.empno, e.ename, d.dname from emp e join dept d on e.deptno = d.deptno) (empno, "
               "ename) select 4, 'LOST' from dual;\nselect * from emp order by 1",
               "1|KING|10\n2|FORD|20\n3|ADAMS|20\n4|LOST|(null)");
        onJoin(
            "values for both tables, and for the other one",
            "insert into ed values (3, 'ADAMS', 20, 'X');\ninsert into ed (num, town) values (3, "
            "'X');\ninsert into ed (town) values ('X');\nupdate ed set town = 'X';\nupdate ed "
            "set deptno = 1",
            "ORA-01776: cannot modify more than one base table through a join view\n"
            "ORA-01776: cannot modify more than one base table through a join view\n"
            "ORA-01779: cannot modify a column which maps to a non key-preserved table\n"
            "ORA-01779: cannot modify a column which maps to a non key-preserved table\n"
            "ORA-00904: \"DEPTNO\": invalid identifier");
        onJoin("rows go from the table whose key stays",
               "delete from ed where town = 'ACC';\nselect (select count(*) from emp), (select "
               "count(*) from dept) from dual;\ndelete from ed where rownum = 1;\nselect count(*) "
               "from emp",
               "1|2\n0");
        onJoin("a table whose key stays in none",
               "delete from (select * from emp e, dept d where e.empno < d.deptno)",
               "ORA-01752: cannot delete from view without exactly one key-preserved table");
        onJoin("by a name of the view's own",
               "update ed set nam = 'X' where num = 1;\nselect nam "
               "from ed order by num",
               "X\nFORD");
        onJoin("what no view of several tables takes",
               "merge into ed using dual on (num = 1) when matched then update set nam = 'X';\n"
               "create view co as select empno, ename, dname from emp e, dept d where e.deptno = "
               "d.deptno with check option;\ninsert into co (empno) values (7)",
               "ORA-38106: MERGE not supported on join view or view with INSTEAD OF trigger.\n"
               "ORA-01733: virtual column not allowed here");
    }
    void changes() { check(); }
};

QTEST_GUILESS_MAIN(tst_oracle_join)
#include "tst_oracle_join.moc"
