#include "OracleScript.h"

#include <QTest>

using namespace Qt::StringLiterals;

// What queries of the server's dialect mean: rows out of small tables.
class tst_oracle_query : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_home;
    std::unique_ptr<OracleScript> m_tables; // read by the query tests, changed by none

    static void columns() {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("outcome");
    }
    static void row(const char* fault, const char* script, const char* outcome) {
        QTest::newRow(fault) << QString::fromUtf8(script) << QString::fromUtf8(outcome);
    }

    // A null is nothing between its bars.
    static QString shortened(QString rows) { return rows.remove(u"(null)"_s); }

    void checkQuery() {
        QFETCH(QString, script);
        QFETCH(QString, outcome);
        QCOMPARE(shortened(m_tables->run(script)).replace(u'\n', u' '), outcome);
    }

    static constexpr const char* people = R"(
create table dept (id number(2) primary key, name varchar2(10), town char(6));
create table emp (id number(4) primary key, name varchar2(10), boss number(4), hired date,
                  pay number(7,2), bonus number(7,2), dept number(2) references dept);
insert into dept values (10, 'HEAD', 'ROME');
insert into dept values (20, 'LAB', 'OSLO');
insert into dept values (30, 'SHOP', null);
insert into emp values (1, 'ANN', null, date '2001-05-01', 5000, null, 10);
insert into emp values (2, 'BOB', 1, date '2002-03-15', 3000, 300, 20);
insert into emp values (3, 'CID', 1, date '2002-07-01', 2500, 0, 10);
insert into emp values (4, 'DAN', 2, date '2003-01-20', 1000.5, null, 20);
insert into emp values (5, 'EVE', 2, date '2003-01-20', 3000, 100, 20))";

private Q_SLOTS:
    void initTestCase() {
        qputenv("QUILLMATE_HOME", m_home.path().toUtf8());
        m_tables = std::make_unique<OracleScript>();
        QCOMPARE(m_tables->runAll(QString::fromUtf8(people)), QString());
    }
    void cleanupTestCase() { m_tables.reset(); }

    void names_data() {
        columns();
        row("a column in two tables", "select id from emp, dept",
            "ORA-00918: column ambiguously defined");
        row("no such column", "select e.nam from emp e",
            "ORA-00904: \"E\".\"NAM\": invalid identifier");
        row("the table's name behind an alias", "select emp.name from emp e",
            "ORA-00904: \"EMP\".\"NAME\": invalid identifier");
        row("an alias in WHERE", "select pay p from emp where p > 1",
            "ORA-00904: \"P\": invalid identifier");
        row("an alias in ORDER BY goes before a column",
            "select name, 0 - id id from emp where id < 4 order by id", "CID|-3 BOB|-2 ANN|-1");
        row("one name twice in what a star shows", "select * from (select id, name id from dept)",
            "ORA-00918: column ambiguously defined");
        row("a large text that cannot be sorted", "select distinct to_clob(name) from emp",
            "ORA-00932: inconsistent datatypes: expected - got CLOB");
        row("a large text that cannot be compared", "select max(to_clob(name)) from emp",
            "ORA-00932: inconsistent datatypes: expected - got CLOB");
        row("all rows of a sample", "select count(rowid) from emp sample (100) e", "5");
        row("a star behind others", "select name, * from dept", "ORA-00936: missing expression");
        row("a star beside others", "select *, 1 from dept",
            "ORA-00923: FROM keyword not found where expected");
        row("a quoted name that is none is no text", "select \"x\" from dual",
            "ORA-00904: \"x\": invalid identifier");
        row("a column of USING has no table", "select e.id from emp e join dept using (id)",
            "ORA-25154: column part of USING clause cannot have qualifier");
        row("the inner block goes first",
            "select name from dept d where exists (select 1 from emp where name = 'ANN' and dept = "
            "d.id)",
            "HEAD");
        row("inline views do not see each other",
            "select 1 from emp e, (select 1 from dept where id = e.dept)",
            "ORA-00904: \"E\".\"DEPT\": invalid identifier");
    }
    void names() { checkQuery(); }

    void headings() {
        const QString header =
            printed(m_tables->session(),
                    u"select e.name, pay*12, 'a b', count(*) over (), max(pay) as \"Top\", "
                    "emp.* from emp e, (select 1 x from dual) emp where 1=0 group by e.name, pay, "
                    "emp.x"_s);
        QCOMPARE(header, u"NAME|PAY*12|'AB'|COUNT(*)OVER()|Top|X"_s);
    }

    void types_data() {
        columns();
        row("text meets number", "select name from emp where id = '3'", "CID");
        row("text that is no number", "select 1 from emp where name = 1",
            "ORA-01722: invalid number");
        row("text meets date", "select name from emp where hired > '01-JAN-03' order by 1",
            "DAN EVE");
        row("date meets number", "select 1 from emp where hired = 1",
            "ORA-00932: inconsistent datatypes: expected DATE got NUMBER");
        row("days between", "select hired - date '2001-05-01', hired + 1 from emp where id = 2",
            "318|2002-03-16");
        row("results of CASE must be alike", "select case when 1=1 then 'a' else 1 end from dual",
            "ORA-00932: inconsistent datatypes: expected CHAR got NUMBER");
        row("columns of UNION must be alike", "select id from emp union select name from emp",
            "ORA-01790: expression must have same datatype as corresponding expression");
        row("DECODE takes the first result's type",
            "select decode(id, 1, 'one', id) from emp where id < 3 order by id", "one 2");
        row("DECODE knows null", "select decode(bonus, null, 'none', 0, 'zero', bonus) from emp",
            "none 300 zero none 100");
        row("CHAR compares padded, VARCHAR2 does not",
            "select count(case when town = 'ROME' then 1 end), count(case when name = 'HEAD ' then "
            "1 end), length(min(town)) from dept",
            "1|0|6");
        row("the empty text is null", "select nvl('', 'null'), 'a'||''||'b' from dual", "null|ab");
        row("numbers stay exact", "select .1+.2, 7/2 from dual", "0.3|3.5");
        row("LIKE minds case, and its escape",
            "select count(*) from emp where name like 'a%' or '5%' not like '5\\%' escape '\\'",
            "0");
    }
    void types() { checkQuery(); }

    void nulls_data() {
        columns();
        row("last, and first when descending",
            "select bonus from emp where dept = 20 order by bonus desc", " 300 100");
        row("as told", "select bonus from emp where dept = 20 order by bonus nulls first",
            " 100 300");
        row("NOT IN with a null finds nothing",
            "select count(*) from dept where id not in (select bonus from emp)", "0");
        row("> ALL of a null is unknown", "select count(*) from dual where 5 > all (1, null)", "0");
        row("groups of null", "select bonus, count(*) from emp group by bonus order by 1",
            "0|1 100|1 300|1 |2");
    }
    void nulls() { checkQuery(); }

    void joins_data() {
        columns();
        row("(+) keeps the other side",
            "select d.name, e.name from emp e, dept d where e.dept(+) = d.id and e.pay(+) > 2900 "
            "order by 1, 2",
            "HEAD|ANN LAB|BOB LAB|EVE SHOP|");
        row("(+) on two tables of one condition",
            "select 1 from emp e, dept d where e.dept(+) = d.id(+)",
            "ORA-01468: a predicate may reference only one outer-joined table");
        row("(+) beside JOIN", "select 1 from emp e join dept d on e.dept = d.id(+)",
            "ORA-25156: old style outer join (+) cannot be used with ANSI joins");
        row("the columns of USING come first",
            "select * from (select id, name n from emp) join (select town, id from dept where id = "
            "10) using (id)",
            "");
        row("full join",
            "select e.name, d.name from (select * from emp where id = 1) e full join "
            "dept d on e.dept = d.id order by 2",
            "ANN|HEAD |LAB |SHOP");
        row("rows as values",
            "select name from emp where (dept, pay) in (select dept, max(pay) from emp group by "
            "dept) order by 1",
            "ANN BOB EVE");
        row("one row only", "select 1 from dual where 1 = (select id from emp)",
            "ORA-01427: single-row subquery returns more than one row");
    }
    void joins() { checkQuery(); }

    void groups_data() {
        columns();
        row("a column beside a group function", "select name, count(*) from emp",
            "ORA-00937: not a single-group group function");
        row("a column that is no key", "select name, count(*) from emp group by dept",
            "ORA-00979: not a GROUP BY expression");
        row("a key inside an expression",
            "select dept + 1, to_char(hired, 'YY') || '!' from emp group by dept, to_char(hired, "
            "'YY') order by 1, 2",
            "11|01! 11|02! 21|02! 21|03!");
        row("a condition on all rows beside a constant",
            "select 'many' from emp having count(*) > 4", "many");
        row("no row when it fails", "select 'many' from emp having count(*) > 5", "");
        row("a group function in WHERE", "select 1 from emp where count(*) > 1",
            "ORA-00934: group function is not allowed here");
        row("group functions of group functions",
            "select max(avg(pay)), count(count(*)) from emp group by dept", "3750|2");
        row("rollup, totals behind",
            "select dept, boss, sum(pay), grouping(boss) from emp where "
            "dept = 20 group by rollup(dept, boss)",
            "20|1|3000|0 20|2|4000.5|0 20||7000.5|1 ||7000.5|1");
        row("the same set twice",
            "select dept, group_id() from emp group by grouping sets (dept, dept) having dept = 10",
            "10|0 10|1");
        row("a null key is no total",
            "select dept, boss, count(*) from emp where dept = 10 group by cube(dept, boss)",
            "||2 |1|1 ||1 10||2 10|1|1 10||1");
        row("no rows, one group", "select count(*), max(pay) from emp where 1 = 0", "0|");
        row("no rows, no groups", "select count(*) from emp where 1 = 0 group by dept", "");
        row("HAVING", "select dept from emp group by dept having count(*) > 2", "20");
        row("a subquery beside groups",
            "select dept, (select name from dept d where d.id = e.dept), count(*) from emp e group "
            "by dept order by 1",
            "10|HEAD|2 20|LAB|3");
        row("first and last",
            "select min(name) keep (dense_rank last order by pay), "
            "max(name) keep (dense_rank first order by hired desc) from emp",
            "ANN|EVE");
        row("listagg",
            "select dept, listagg(name, ',') within group (order by pay desc, name) from "
            "emp group by dept order by 1",
            "10|ANN,CID 20|BOB,EVE,DAN");
    }
    void groups() { checkQuery(); }

    void windows_data() {
        columns();
        row("rank within a part",
            "select name, rank() over (partition by dept order by pay desc) "
            "from emp where dept = 20 order by 2, 1",
            "BOB|1 EVE|1 DAN|3");
        row("neighbours",
            "select name, lag(name) over (order by id), lead(pay, 2, 0) over (order by "
            "id) from emp where id > 2 order by id",
            "CID||3000 DAN|CID|0 EVE|DAN|0");
        row("sums so far count equals together",
            "select sum(pay) over (order by hired) from emp where dept = 20 order by id",
            "3000 7000.5 7000.5");
        row("a distance in days",
            "select count(*) over (order by hired range between 120 preceding "
            "and current row) from emp order by id",
            "1 1 2 2 2");
        row("neighbours without nulls",
            "select id, lag(bonus ignore nulls, 1, -1) over (order by id) from emp order by id",
            "1|-1 2|-1 3|300 4|0 5|0");
        row("a distance that is computed",
            "select count(*) over (order by hired range between numtodsinterval(60 * 2, 'DAY') "
            "preceding and current row) from emp order by id",
            "1 1 2 2 2");
        row("a distance in months",
            "select count(*) over (order by hired range between interval '4' month preceding and "
            "interval '2' month following) from emp order by id",
            "1 1 2 2 2");
        row("a distance in rows", "select sum(id) over (order by id rows 3 - 2 preceding) from emp",
            "1 3 5 7 9");
        row("a distance below zero", "select sum(id) over (order by id rows -1 preceding) from emp",
            "ORA-01428: argument '-1' is out of range");
        row("each value once",
            "select id, count(distinct pay) over (partition by dept), sum(distinct pay) over () "
            "from emp order by id",
            "1|2|11500.5 2|2|11500.5 3|2|11500.5 4|2|11500.5 5|2|11500.5");
        row("not in WHERE", "select 1 from emp where rank() over (order by id) = 1",
            "ORA-30483: window  functions are not allowed here");
        row("distances and parts that are none", "select lag(pay, -1) over (order by id) from emp",
            "ORA-01428: argument '-1' is out of range");
        row("no part at all", "select ntile(0) over (order by id) from emp",
            "ORA-01428: argument '0' is out of range");
        row("a frame without an order", "select sum(pay) over (rows 1 preceding) from emp",
            "ORA-30485: missing ORDER BY expression in the window specification");
        row("an order for what has its own",
            "select listagg(name, ',') within group (order by id) over (order by id) from emp",
            "ORA-30487: ORDER BY not allowed here");
        row("over groups", "select dept, sum(sum(pay)) over (order by dept) from emp group by dept",
            "10|7500 20|14500.5");
    }
    void windows() { checkQuery(); }

    void rowNumbers_data() {
        columns();
        row("counted before the order",
            "select name, rownum from emp where rownum < 4 order by pay", "CID|3 BOB|2 ANN|1");
        row("counted behind an ordered view",
            "select rownum, name from (select name from emp order by pay desc, id) where rownum <= "
            "2",
            "1|ANN 2|BOB");
        row("never two without one", "select 1 from emp where rownum = 2", "");
        row("pages",
            "select name from (select a.*, rownum n from (select name from emp order by "
            "name) a where rownum <= 4) where n > 2",
            "CID DAN");
        row("under a group function", "select count(*), max(id) from emp where rownum <= 3", "3|3");
        row("under a window",
            "select name, sum(pay) over (order by pay) from emp where rownum <= 2",
            "BOB|3000 ANN|8000");
        row("fetch with ties",
            "select name from emp order by pay desc fetch first 2 rows with ties", "ANN BOB EVE");
        row("fetch with ties over a set operation",
            "select dept from emp union all select id from dept order by 1 fetch first 1 row with "
            "ties",
            "10 10 10");
        row("a part of grouping sets",
            "select dept, count(*) from emp group by rollup(dept) order by dept nulls first fetch "
            "first 50 percent rows only",
            "|5 10|2");
        row("fetch and offset",
            "select name from emp order by id offset 1 row fetch next 2 rows only", "BOB CID");
        row("a part of the rows",
            "select name from emp order by id fetch first 40 percent rows only", "ANN BOB");
        row("rows by their rowid",
            "select name from emp where rowid = (select rowid from emp where id = 4)", "DAN");
    }
    void rowNumbers() { checkQuery(); }

    void hierarchies_data() {
        columns();
        row("depth first, siblings in order",
            "select level || name from emp start with boss is null connect by prior id = boss "
            "order "
            "siblings by name desc",
            "1ANN 2CID 2BOB 3EVE 3DAN");
        row("a path's separator in a value",
            "select sys_connect_by_path(name, 'N') from emp start with boss is null connect by "
            "prior id = boss",
            "ORA-30004: when using SYS_CONNECT_BY_PATH function, cannot have seperator as part of "
            "column value");
        row("path, root, prior, leaf",
            "select sys_connect_by_path(name, '/'), connect_by_root id, prior name, "
            "connect_by_isleaf from emp start with id = 2 connect by boss = prior id",
            "/BOB|2||0 /BOB/DAN|2|BOB|1 /BOB/EVE|2|BOB|1");
        row("WHERE after the tree, CONNECT BY cuts it",
            "select name from emp where name <> 'BOB' start with boss is null connect by prior id "
            "= "
            "boss and name <> 'CID'",
            "ANN DAN EVE");
        row("upwards", "select name from emp start with id = 4 connect by prior boss = id",
            "DAN BOB ANN");
        row("joined tables",
            "select d.name || level from emp e, dept d where e.dept = d.id start "
            "with boss is null connect by prior e.id = boss",
            "HEAD1 LAB2 LAB3 LAB3 HEAD2");
        row("a row whose child is its ancestor",
            "select n, connect_by_iscycle from (select 1 n, 3 up from dual union all select 2, 1 "
            "from dual union all select 3, 2 from dual) start with n = 1 connect by nocycle up = "
            "prior n",
            "1|0 2|0 3|1");
        row("cycles are not looked for without NOCYCLE",
            "select connect_by_iscycle from emp connect by prior id = boss",
            "ORA-30930: NOCYCLE keyword is required with CONNECT_BY_ISCYCLE pseudocolumn");
        row("rows out of nothing", "select level, rownum from dual connect by level <= 3",
            "1|1 2|2 3|3");
        row("LEVEL without CONNECT BY", "select level from emp",
            "ORA-01788: CONNECT BY clause required in this query block");
        row("groups of levels",
            "select level, count(*) from emp start with boss is null connect by "
            "prior id = boss group by level order by 1",
            "1|1 2|2 3|2");
    }
    void hierarchies() { checkQuery(); }

    void combinations_data() {
        columns();
        row("MINUS, from the left",
            "select id from dept union all select 99 from dual minus select 20 from dual order by "
            "1 "
            "desc",
            "99 30 10");
        row("a column by its place", "select name, pay from emp where dept = 10 order by 2",
            "CID|2500 ANN|5000");
        row("no such place", "select name from emp order by 2",
            "ORA-01785: ORDER BY item must be the number of a SELECT-list expression");
        row("DISTINCT sorts by what it selects", "select distinct dept from emp order by pay",
            "ORA-01791: not a SELECTed expression");
        row("recursion",
            "with n(x, f) as (select 1, 1 from dual union all select x+1, f*(x+1) from n "
            "where x < 5) select x, f from n where x > 3",
            "4|24 5|120");
        row("recursion depth first",
            "with t(id, name) as (select id, name from emp where boss is null union all select "
            "e.id, "
            "e.name from emp e, t where e.boss = t.id) search depth first by name set o select "
            "name, "
            "o from t order by o",
            "ANN|1 BOB|2 DAN|3 EVE|4 CID|5");
        row("recursion stops at a cycle and marks it",
            "with t(n, up) as (select 1, 3 from dual union all select x.n, x.up from (select 1 n, "
            "3 up from dual union all select 2, 1 from dual union all select 3, 2 from dual) x, t "
            "where x.up = t.n) search depth first by n set o cycle n set again to 'Y' default 'N' "
            "select n, o, again from t order by o",
            "1|1|N 2|2|N 3|3|N 1|4|Y");
        row("recursion in a cycle",
            "with t(n) as (select 1 from dual union all select 3 - n from t where n > 0) select n "
            "from t",
            "ORA-32044: cycle detected while executing recursive WITH query");
        row("a star in a recursion is its own columns",
            "with t(n) as (select 1 from dual union all select t.* from t where n < 0) select * "
            "from t",
            "1");
        row("pivot",
            "select * from (select dept, boss, pay from emp) pivot (count(pay) c, sum(pay) "
            "for boss in (1 one, 2)) order by 1",
            "10|1|2500|0| 20|1|3000|2|4000.5");
        row("what a pivot's columns of several values are called",
            "select \"20_'1000.5'\" n from (select dept, to_char(pay) pay from emp) pivot "
            "(count(*) "
            "for (dept, pay) in ((20, '1000.5'), (10, 'x')))",
            "1");
        row("unpivot keeps a row's parts together",
            "select * from (select id, pay, bonus from emp where id < 4) unpivot (amount for kind "
            "in "
            "(pay, bonus as 'B'))",
            "1|PAY|5000 2|PAY|3000 2|B|300 3|PAY|2500 3|B|0");
    }
    void combinations() { checkQuery(); }

    void lateral_data() {
        columns();
        row("the best of each",
            "select d.name, e.name from dept d cross apply (select name from emp where dept = d.id "
            "order by pay desc fetch first 1 row only) e order by 1",
            "HEAD|ANN LAB|BOB");
        row("the ones without stay",
            "select d.id, e.n from dept d outer apply (select max(pay) n from emp where dept = "
            "d.id having count(*) > 0) e order by 1",
            "10|5000 20|3000 30|");
        row("as many rows as a column says",
            "select d.id, n.l from dept d, lateral (select level l from dual connect by level <= "
            "d.id / 10) n where d.id < 30 order by 1, 2",
            "10|1 20|1 20|2");
        row("of a query of WITH, in a subquery that looks outwards",
            "with w as (select dept, sum(pay) s from emp group by dept) select id, (select max(x.s "
            "+ y.z) from w x cross apply (select d.id + x.dept z from dual) y where x.dept = d.id) "
            "from dept d order by 1",
            "10|7520 20|7040.5 30|");
        row("an error inside",
            "select x from dept d cross apply (select 1 / (d.id - 30) x from dual)",
            "ORA-01476: divisor is equal to zero");
        row("a plain inline view sees nothing",
            "select x from dept d cross join (select d.id x from dual)",
            "ORA-00904: \"D\".\"ID\": invalid identifier");
    }
    void lateral() { checkQuery(); }

    void limits_data() {
        columns();
        const QByteArray numbers = [] {
            QByteArray list("0");
            for (int i = 1; i < 50000; ++i)
                list += ',' + QByteArray::number(i);
            return list;
        }();
        row("a list of 50,000", "select count(*) from emp where id in (" + numbers + ")", "5");
        row("10,000 parentheses",
            "select " + QByteArray(10000, '(') + '1' + QByteArray(10000, ')') + " from dual", "1");
        row("a long sum", "select 1" + QByteArray("+1").repeated(3000) + " from dual", "3001");
        row("a long chain of ||",
            "select length('a'" + QByteArray("||'a'").repeated(2000) + ") from dual", "2001");
        row("inline views in each other",
            QByteArray("select * from (").repeated(60) + "select 1 from dual" +
                QByteArray(")").repeated(60),
            "1");
        row("too many of them",
            "select 1" + QByteArray("+(1").repeated(5000) + QByteArray(")").repeated(5000) +
                " from dual",
            "ORA-03001: unimplemented feature: an expression nested deeper than 600 levels cannot "
            "be "
            "used in the embedded database");
    }
    void limits() { checkQuery(); }

private:
    static void row(const char* fault, const QByteArray& script, const char* outcome) {
        row(fault, script.constData(), outcome);
    }
};

QTEST_GUILESS_MAIN(tst_oracle_query)
#include "tst_oracle_query.moc"
