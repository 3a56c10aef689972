#include "OraError.h"
#include "TreeText.h"

#include <QTest>

using namespace ora;

// Text in, tree text out; and the server's error at the right place.
class tst_parser : public QObject {
    Q_OBJECT

    static QString outcome(const QByteArray& source) {
        try {
            const auto tree = parseStatement({source.data(), std::size_t(source.size())});
            if (tree->statement->kind != StatementKind::Query)
                return QStringLiteral("statement %1").arg(int(tree->statement->kind));
            return QString::fromStdString(
                treetext::text(static_cast<QueryStatement*>(tree->statement)->query));
        } catch (const OraError& error) {
            return QStringLiteral("%1 at %2").arg(error.code()).arg(error.position());
        }
    }

    static void texts() {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QString>("tree");
    }
    static void row(const char* fault, const char* source, const char* tree) {
        QTest::newRow(fault) << QByteArray(source) << QString::fromUtf8(tree);
    }

private Q_SLOTS:
    void values_data() {
        texts();
        row("* before +, from the left", "1-2-3*4", "(- (- 1 2) (* 3 4))");
        row("|| binds as + does", "a||b+1||c", "(|| (+ (|| A B) 1) C)");
        row("parentheses", "((1-(2-3)))*-a.b", "(* (- 1 (- 2 3)) (- A.B))");
        row("prior binds tightest", "prior a+1", "(+ (prior A) 1)");
        row("names without parentheses", "sysdate-level+s.nextval",
            "(+ (- SYSDATE LEVEL) S.NEXTVAL)");
        row("literals of time", "date '2020-01-01'+interval '1' day(3)",
            "(+ date'2020-01-01' interval'1')");
        row("DATE alone is no column", "date", "936 at 7");
        row("case", "case a when 1 then 2 else 3 end||case when a=1 and b>2 then 4 end",
            "(|| (case A [1 -> 2] else 3) (case [(and (= A 1) (> B 2)) -> 4]))");
        row("decode, nested calls", "decode(a,1,nvl(b,2),f())", "DECODE(A 1 NVL(B 2) F())");
        row("cast, extract, trim",
            "cast(a as varchar2(5))||extract(year from b)||trim(leading 'x' from c)",
            "(|| cast(A VARCHAR2(5)) extract(YEAR B) trimL('x' C))");
        row("counting", "count(*)+count(distinct a)+count(t.*)",
            "(+ (+ COUNT(*) COUNT(distinct A)) COUNT(T*))");
        row("window", "sum(a) over (partition by b, c order by d desc nulls last rows 3 preceding)",
            "SUM(A) over(B C|D desc nulls-last|rows)");
        row("ignore nulls inside and outside", "last_value(a ignore nulls) over (order by b)",
            "LAST_VALUE(A) ignore-nulls over(|B)");
        row("keep and within group",
            "max(a) keep (dense_rank last order by b) + listagg(c,',') within group (order by d)",
            "(+ MAX(A) last(B) LISTAGG(C ',') within(D))");
        row("scalar subquery", "(select 1 from dual)+((select 2 from dual))",
            "(+ [select 1 from DUAL] [select 2 from DUAL])");
        row("a union in double parentheses", "((select 1 from x) union (select 2 from y))",
            "[(select 1 from X) union (select 2 from Y)]");
        row("alias with and without AS", "a b, c as \"D d\", e", "A as B, C as \"D d\", E");
        row("stars", "t.*, s.t.*", "T*, S.T*");
    }
    void values() {
        QFETCH(QByteArray, source);
        QFETCH(QString, tree);
        const QString got = outcome("select " + source + " from t");
        QCOMPARE(got, got.startsWith(u"select "_qs) ? u"select "_qs + tree + u" from T"_qs : tree);
    }

    void conditions_data() {
        texts();
        row("and before or, not before and", "a=1 or not b=2 and c=3",
            "(or (= A 1) (and (not (= B 2)) (= C 3)))");
        row("parentheses around values and conditions", "(a+b)*2>3 and (a=1 or (b)=(2))",
            "(and (> (* (+ A B) 2) 3) (or (= A 1) (= B 2)))");
        row("between takes its own and", "a between 1 and 2 and b not between c and d",
            "(and (between A 1 2) (not-between B C D))");
        row("in with lists, rows and queries",
            "a in (1,2) and (a,b) in ((1,2),(3,4)) and c not in (select 1 from x) and d in 5",
            "(and (in A {1 2}) (in (row A B) {(row 1 2) (row 3 4)}) (not-in C [select 1 from X]) "
            "(in D {5}))");
        row("any, all", "a>any(1,2) and b<=all(select 1 from x)",
            "(and (>any A {1 2}) (<=all B [select 1 from X]))");
        row("like with escape", "a like 'x\\_%' escape '\\' and b not like c",
            "(and (like A 'x\\_%' escape '\\') (not-like B C))");
        row("null tests", "a is null and b is not null", "(and (null A) (not-null B))");
        row("outer marks", "a.x(+)=b.y and c(+)>1", "(and (= A.X(+) B.Y) (> C(+) 1))");
        row("exists", "exists(select 1 from x) and not exists((select 2 from y))",
            "(and exists[select 1 from X] (not exists[(select 2 from Y)]))");
        row("a function that is a condition", "regexp_like(a,'x')", "REGEXP_LIKE(A 'x')");
        row("a value is no condition", "a", "920 at 23");
        row("a value before AND is none", "a and b=1", "920 at 24");
        row("nothing behind the operator", "a=", "936 at 24");
        row("a comparison of a comparison", "a=b=c", "933 at 25");
        row("IS without NULL", "a is 5", "908 at 27");
        row("BETWEEN without AND", "a between 1 or 2", "905 at 34");
    }
    void conditions() {
        QFETCH(QByteArray, source);
        QFETCH(QString, tree);
        const QString got = outcome("select a from t where " + source);
        QCOMPARE(got, got.startsWith(u"select "_qs) ? u"select A from T where "_qs + tree : tree);
    }

    void queries_data() {
        texts();
        row("joins nest",
            "select * from a left join b join c on c.x=b.x on a.y=b.y, d cross join e",
            "select * from (A left (B join C on (= C.X B.X)) on (= A.Y B.Y)), (D cross E)");
        row("natural and using",
            "select 1 from a natural right outer join b full join c using (x, y)",
            "select 1 from ((A natural right B) full C using X Y)");
        row("LEFT is an alias where no join follows", "select 1 from a left, b outer",
            "select 1 from A LEFT, B OUTER");
        row("set operators from the left",
            "select 1 from a union all select 2 from b minus (select 3 from c order by 1) order by "
            "1 desc",
            "select 1 from A union-all select 2 from B minus (select 3 from C order 1) order 1 "
            "desc");
        row("with", "with x as (select 1 from a), y as (select 2 from x) select * from x, y",
            "with X [select 1 from A] with Y [select 2 from X] select * from X, Y");
        row("hierarchy in both orders",
            "select 1 from a connect by nocycle prior b=c start with d=1 order siblings by e",
            "select 1 from A start (= D 1) connect-nocycle (= (prior B) C) siblings E");
        row("grouping",
            "select 1 from a group by b, rollup(c,(d,e)), grouping sets ((f),()) having g=1",
            "select 1 from A group (B) rollup((C) (D E)) sets((F) ()) having (= G 1)");
        row("row limits", "select 1 from a order by b offset 5 rows fetch next 3 rows only",
            "select 1 from A order B limit 5 3");
        row("pivot and its alias",
            "select * from a pivot (sum(b) for c in (1 as x, 2)) p where p.x=1",
            "select * from pivot(A) P where (= P.X 1)");
        row("for update", "select 1 from a for update of b nowait", "select 1 from A for-update");
        row("hints and comments", "select /*+ full(a) */ 1 -- one\nfrom a", "select 1 from A");
        row("the word PLAN as an alias", "select a||b Plan from t",
            "select (|| A B) as PLAN from T");
        row("blank before the column alias of another statement",
            "select b.serial# ser#, b.machine box from v$session b",
            "select B.SERIAL# as SER#, B.MACHINE as BOX from V$SESSION B");
    }
    void queries() {
        QFETCH(QByteArray, source);
        QFETCH(QString, tree);
        QCOMPARE(outcome(source), tree);
    }

    void errors_data() {
        texts();
        row("no statement", "selec 1 from dual", "900 at 0");
        row("nothing", "", "900 at 0");
        row("nothing selected", "select from dual", "936 at 7");
        row("FROM misspelt", "select * form emp", "923 at 9");
        row("two aliases", "select a b c from t", "923 at 11");
        row("no table", "select * from", "903 at 13");
        row("a reserved word as table", "select * from where", "903 at 14");
        row("more behind the end", "select * from emp e f", "933 at 20");
        row("AS before a table's alias", "select * from emp as e", "933 at 18");
        row("parenthesis left open", "select (1 from dual", "907 at 10");
        row("call left open", "select count(* from emp", "907 at 15");
        row("BY missing", "select 1 from a group b", "924 at 22");
        row("join without condition", "select 1 from a join b", "905 at 22");
        row("union with nothing", "select 1 from dual union", "928 at 24");
        row("semicolon", "select 1 from dual;", "911 at 18");
        row("invalid character", "select 1 ? from dual", "911 at 9");
        row("case without end", "select case when 1=1 then 2 from dual", "905 at 28");
        row("insert without INTO", "insert emp values (1)", "925 at 7");
        row("VALUE for VALUES", "insert into emp value (1)", "928 at 22");
        row("values without parenthesis", "insert into emp values 1", "906 at 23");
        row("values without comma", "insert into emp values (1 2)", "917 at 26");
        row("update without SET", "update emp sal=1", "971 at 14");
        row("update without equal sign", "update emp set sal 1", "927 at 19");
        row("create what", "create foo bar", "901 at 7");
        row("create table without columns", "create table t", "906 at 14");
        row("a number as table", "create table 1t (a number)", "903 at 13");
        row("a column without type", "create table t (a)", "2263 at 17");
        row("an unknown type", "create table t (a foo)", "902 at 18");
        row("a reserved word as column", "create table t (date date)", "904 at 16");
        row("VARCHAR2 without length", "create table t (a varchar2)", "906 at 26");
        row("length of zero", "create table t (a varchar2(0))", "1723 at 28");
        row("too long", "create table t (a varchar2(4001))", "910 at 31");
        row("too precise", "create table t (a number(39))", "1727 at 27");
        row("columns without comma", "create table t (a number b number)", "907 at 25");
        row("an unknown table option", "create table t (a number) foo", "922 at 26");
        row("index without ON", "create index i t(a)", "969 at 15");
        row("view without AS", "create view v select 1 from dual", "905 at 14");
        row("an unknown alteration", "alter table t foo", "1735 at 14");
        row("drop what", "drop foo bar", "950 at 5");
        row("truncate without TABLE", "truncate t", "3290 at 9");
        row("rename without TO", "rename a b", "946 at 9");
        row("a word behind COMMIT", "commit now", "2185 at 7");
        row("grant without TO", "grant select on emp", "905 at 19");
        row("users are the administrator's", "create user x identified by y", "1031 at 7");
        row("remote tables", "select * from emp@far", "2019 at 17");
        row("partitions", "select * from emp partition (p1)", "439 at 18");
        row("PL/SQL", "begin null; end;", "3001 at 0");
        row("MODEL", "select 1 from a model dimension by (b) measures (c) rules ()", "3001 at 16");
        row("RETURNING", "delete from a returning b into :c", "3001 at 14");
    }
    void errors() {
        QFETCH(QByteArray, source);
        QFETCH(QString, tree);
        QCOMPARE(outcome(source), tree);
    }

    // Every statement cut off anywhere is an error or another statement, never more.
    void cutOffAnywhere_data() {
        QTest::addColumn<QByteArray>("source");
        const auto row = [](const char* kind, const char* source) {
            QTest::newRow(kind) << QByteArray(source);
        };
        row("query",
            "with a(x) as (select q'[1]' from dual union all (select n'2' from b)) select "
            "distinct a.\"x\"+1 y, sum(z) over (partition by c order by d nulls first rows "
            "between 1 preceding and current row), case when e(+) in (1,2) then (select 1 "
            "from f) end from a left join b using (c) pivot (max(d) as m for e in ((1) as f)) "
            "g, (h) where not exists (select 1 from i) and (j,k)=((1,2)) or l like m escape "
            "'!' connect by nocycle prior o=p start with q is null group by rollup(r,(s,t)) "
            "having count(*)>1 order by 1 desc offset 1 row fetch first 5 percent rows with ties");
        row("changes",
            "merge into a b using (select 1 c from dual) d on (b.x=d.c) when matched then "
            "update set b.y=default, z=1 where w>1 delete where v is null when not matched "
            "then insert (x,y) values (d.c, interval '1-2' year(3) to month) where 1=1");
        row("insert all",
            "insert first when a>1 then into b (c) values (d) into e else into f select * from g");
        row("table",
            "create global temporary table s.t (a number(5,-2) default 1+1 not null constraint "
            "c primary key using index (create index i on t(a)) disable, b varchar2(5 char) "
            "generated always as (upper(a)) virtual, d number generated by default on null as "
            "identity (start with 5 cache 20), constraint f foreign key (a,b) references u (c) "
            "on delete set null deferrable initially deferred, check (a>1)) on commit preserve "
            "rows tablespace x storage (initial 1k)");
        row("alterations",
            "alter table t add (a number, constraint b unique (a)) modify c default null "
            "not null drop column d cascade constraints rename column e to f disable "
            "constraint g cascade");
        row("trigger",
            "create or replace trigger t before insert or update of a on b referencing new as "
            "n for each row when (n.a is null) begin if :n.a>1 then :n.a := s.nextval; end if; "
            "end t;");
        row("plan", "explain plan set statement_id = 'x' into p for select * from \"a\".b");
    }
    void cutOffAnywhere() {
        QFETCH(QByteArray, source);
        QVERIFY2(!outcome(source).contains(u" at "_qs), qPrintable(outcome(source)));
        for (qsizetype end = 0; end < source.size(); ++end)
            outcome(source.first(end));
    }

    void deepAndLong_data() {
        texts();
        const auto repeated = [](const char* fault, const QByteArray& before,
                                 const QByteArray& inside, const QByteArray& after,
                                 const char* result) {
            constexpr int times = 10000;
            QTest::newRow(fault) << "select " + before.repeated(times) + inside +
                                        after.repeated(times) + " from t"
                                 << QString::fromUtf8(result);
        };
        repeated("parentheses around a value", "(", "1", ")", "select 1 from T");
        repeated("parentheses left open", "(", "1", "", "907 at 10009");
        repeated("calls are refused", "f(", "1", ")", "3001 at 403");
        repeated("queries are refused", "(select ", "1", " from t)", "3001 at 799");
    }
    void deepAndLong() {
        QFETCH(QByteArray, source);
        QFETCH(QString, tree);
        QCOMPARE(outcome(source), tree);
    }
};

QTEST_APPLESS_MAIN(tst_parser)
#include "tst_parser.moc"
