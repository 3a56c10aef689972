#include "OracleCases.h"

#include <QTest>

using namespace Qt::StringLiterals;

// What changes of data mean: tables, sequences, views, MERGE, and what depends on them.
class tst_oracle_change : public OracleCases {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("QUILLMATE_HOME", m_home.path().toUtf8()); }

    void tables_data() {
        columns();
        row("a value too large",
            "create table t (a varchar2(3), b number(3,1));\ninsert into t values ('four', 1);\n"
            "insert into t values ('x', 123);\ninsert into t values ('x', 12.345);\nselect b from "
            "t",
            "ORA-12899: value too large for column \"DEMO\".\"T\".\"A\" (actual: 4, maximum: 3)\n"
            "ORA-01438: value larger than specified precision allowed for this column\n12.3");
        row("wrong number of values",
            "create table t (a number, b number);\ninsert into t values (1);\n"
            "insert into t (a) values (1, 2);\ninsert into t (a) values (b);\n"
            "insert into t (c) values (1)",
            "ORA-00947: not enough values\nORA-00913: too many values\n"
            "ORA-00984: column not allowed here\nORA-00904: \"C\": invalid identifier");
        row("defaults for what is left out",
            "create table t (a number, b number default 7, c varchar2(5) default 'x');\n"
            "insert into t (a) values (1);\ninsert into t values (2, default, null);\n"
            "select a, b, c from t",
            "1|7|x\n2|7|(null)");
        row("an update sees what was there before it",
            "create table t (a number);\ninsert into t select level from dual connect by level < "
            "4;\n"
            "update t set a = (select sum(a) from t x where x.a >= t.a);\nselect a from t order by "
            "1",
            "3\n5\n6");
        row("several columns from one query",
            "create table t (a number, b varchar2(5));\ninsert into t values (1, 'x');\n"
            "update t set (a, b) = (select 2, 'y' from dual where 1 = 0);\nselect nvl(a, 0), b "
            "from t;\n"
            "update t set (a, b) = (select 1, 2, 3 from dual)",
            "0|(null)\nORA-00913: too many values");
        row("only the first rows",
            "create table t (a number);\ninsert into t select level from dual connect by level < "
            "6;\n"
            "delete from t where rownum <= 2 and a > 1;\nselect a from t",
            "1\n4\n5");
        row("merge",
            "create table t (id number primary key, n number);\ninsert into t values (1, 1);\n"
            "insert into t values (2, 2);\nmerge into t using (select level + 1 id from dual "
            "connect "
            "by level < 4) s on (t.id = s.id) when matched then update set n = n * 10 delete where "
            "t.n > 100 when not matched then insert values (s.id, 0) where s.id < 4;\n"
            "select * from t order by 1",
            "1|1\n2|20\n3|0");
        row("merge of two rows into one",
            "create table t (id number, n number);\ninsert into t values (1, 1);\nmerge into t "
            "using "
            "(select 1 id from dual union all select 1 from dual) s on (t.id = s.id) when matched "
            "then update set n = 2;\nselect n from t",
            "ORA-30926: unable to get a stable set of rows in the source tables\n1");
        row("insert first and all",
            "create table a (x number);\ncreate table b (x number);\ninsert first when n > 2 then "
            "into "
            "a else into b select level n from dual connect by level < 5;\ninsert all into a "
            "values "
            "(n) into b values (n * 10) select 9 n from dual;\n"
            "select listagg(x, ' ') within group (order by x) from a;\n"
            "select listagg(x, ' ') within group (order by x) from b",
            "3 4 9\n1 2 90");
        row("through a view",
            "create table t (a number, b number);\ncreate view v (x, y) as select a, b * 2 from t "
            "where a > 1;\ninsert into v (x) values (5);\nupdate v set x = x + 1;\n"
            "update v set y = 1;\nselect a from t;\ndelete from v;\nselect count(*) from t",
            "ORA-01733: virtual column not allowed here\n6\n0");
        row("a number for each row of a trigger's query",
            "create sequence s;\ncreate table t (id number primary key, n varchar2(3));\n"
            "create trigger g before insert on t for each row when (new.id is null) begin select "
            "s.nextval into :new.id from dual; end;\n"
            "insert into t (n) select 'x' from dual connect by level < 3;\nselect id, n from t",
            "1|x\n2|x");
        row("the old row in a trigger",
            "create table t (n number);\ncreate table l (a number, b number);\ncreate trigger g "
            "after "
            "update on t for each row begin insert into l values (:old.n, :new.n); end;\n"
            "insert into t values (1);\nupdate t set n = 2;\nselect a, b from l",
            "1|2");
    }
    void tables() { check(); }

    void sequences_data() {
        columns();
        row("a row has one number, wherever it is named",
            "create sequence s;\nselect s.currval, s.nextval, s.nextval from dual;\n"
            "select s.nextval, s.currval from dual connect by level <= 2;\n"
            "create table t (a number, b number);\ninsert into t (b, a) values (s.nextval, "
            "s.currval);\n"
            "insert into t select s.nextval, s.nextval from dual connect by level <= 2;\n"
            "select * from t",
            "1|1|1\n2|2\n3|3\n4|4\n5|5\n6|6");
        row("INSERT ALL takes one number for a row of its query",
            "create sequence s;\ncreate table p (id number);\ncreate table c (id number, n "
            "number);\n"
            "insert all into p values (s.nextval) into c values (s.currval, n)"
            " select level n from dual connect by level <= 2;\nselect * from p;\nselect * from c",
            "1\n2\n1|1\n2|2");
        row("where there is no row that a number could belong to",
            "create sequence s;\nselect distinct s.nextval from dual;\n"
            "select s.nextval from dual order by 1;\nselect max(s.nextval) from dual;\n"
            "select s.nextval from dual union select 1 from dual;\n"
            "select * from (select s.nextval from dual);\ndelete from dual where 1 = s.nextval;\n"
            "create view v as select s.nextval a from dual",
            "ORA-02287: sequence number not allowed here\n"
            "ORA-02287: sequence number not allowed here\n"
            "ORA-02287: sequence number not allowed here\n"
            "ORA-02287: sequence number not allowed here\n"
            "ORA-02287: sequence number not allowed here\nORA-01031: insufficient privileges\n"
            "ORA-02287: sequence number not allowed here");
        row("another increment goes on from the last number",
            "create sequence s;\nselect s.nextval from dual;\nselect s.nextval from dual;\n"
            "alter sequence s increment by 10;\nselect s.nextval from dual;\n"
            "alter sequence s increment by -11;\nselect s.nextval from dual",
            "1\n2\n12\n1");
        row("options that contradict each other",
            "create sequence s cycle;\ncreate sequence s cache 1;\n"
            "create sequence s increment by 20 maxvalue 10;\ncreate sequence s start with 1.5;\n"
            "create sequence s start with 5;\nselect s.nextval from dual;\n"
            "alter sequence s maxvalue 3;\nalter sequence s minvalue 9;\nalter sequence s",
            "ORA-04015: ascending sequences that CYCLE must specify MAXVALUE\n"
            "ORA-04010: the number of values to CACHE must be greater than 1\n"
            "ORA-04005: INCREMENT must be less than MAXVALUE minus MINVALUE\n"
            "ORA-04001: sequence parameter START WITH must be an integer\n5\n"
            "ORA-04009: MAXVALUE cannot be made to be less than the current value\n"
            "ORA-04007: MINVALUE cannot be made to exceed the current value\n"
            "ORA-02286: no options specified for ALTER SEQUENCE");
    }
    void sequences() { check(); }

    void checkOption_data() {
        columns();
        const char* const view =
            "create table t (a number primary key, b number, c as (b * 2));\n"
            "insert into t (a, b) values (1, 10);\n"
            "create view v as select a, b, c from t where b = 10 with check option;\n";
        const auto onView = [&](const char* fault, const char* script, const char* outcome) {
            QTest::newRow(fault) << QString::fromUtf8(view) + QString::fromUtf8(script)
                                 << QString::fromUtf8(outcome);
        };
        onView("new and changed rows stay in the view",
               "insert into v (a, b) values (2, 20);\ninsert into v (a) values (3);\n"
               "insert into v (a, b) select 4, 10 from dual;\nupdate v set b = b + 1;\n"
               "update v set a = a + 10;\nselect * from t order by a",
               "ORA-01402: view WITH CHECK OPTION where-clause violation\n"
               "ORA-01402: view WITH CHECK OPTION where-clause violation\n"
               "ORA-01402: view WITH CHECK OPTION where-clause violation\n11|10|20\n14|10|20");
        onView("also through a view over it, whose own condition is not checked",
               "create view w as select a, b from v where a > 5;\n"
               "insert into w values (6, 20);\ninsert into w values (2, 10);\n"
               "select count(*) from t",
               "ORA-01402: view WITH CHECK OPTION where-clause violation\n2");
        onView("of an inline view",
               "insert into (select a, b from t where b = 5 with check option) values (2, 4);\n"
               "insert into (select a, b from t where b = 5 with check option) values (2, 5);\n"
               "select count(*) from t",
               "ORA-01402: view WITH CHECK OPTION where-clause violation\n2");
    }
    void checkOption() { check(); }

    void joins_data() {
        columns();
        row("the table whose rows stand in the join once is changed",
            "create table d (id number primary key, name varchar2(5));\n"
            "create table e (id number primary key, d number, n varchar2(5));\n"
            "insert into d values (1, 'one');\ninsert into e values (7, 1, 'x');\n"
            "insert into e values (8, 2, 'y');\n"
            "update (select e.n, d.name from e join d on e.d = d.id) set n = name;\n"
            "create view v as select e.*, d.name from e left join d on d.id = e.d;\n"
            "update v set n = 'none' where name is null;\nselect n from e order by id;\n"
            "update v set name = 'z';\nupdate v set name = 'z', n = 'z';\n"
            "update (select e.n from e, d) set n = 'z'",
            "one\nnone\n"
            "ORA-01779: cannot modify a column which maps to a non key-preserved table\n"
            "ORA-01776: cannot modify more than one base table through a join view\n"
            "ORA-01779: cannot modify a column which maps to a non key-preserved table");
    }
    void joins() { check(); }

    void merge_data() {
        columns();
        fails("merge into emp e using dual on (e.id = 1) when matched then update set e.id = 2",
              "ORA-38104: Columns referenced in the ON Clause cannot be updated: \"E\".\"ID\"");
        fails("merge into emp using dual on id = 1 when matched then update set n = 2",
              "ORA-00969: missing ON keyword");
        fails("insert into emp", "ORA-00926: missing VALUES keyword");
        fails("select count(*) from emp for update",
              "ORA-01786: FOR UPDATE of this query expression is not allowed");
        fails("select * from (select * from emp for update)",
              "ORA-00907: missing right parenthesis");
    }
    void merge() { check(); }

    void synonyms_data() {
        columns();
        row("a public one may have the name of its table",
            "create table t (a number);\ncreate public synonym t for t;\n"
            "create public synonym p for t;\nselect count(*) from p;\n"
            "select owner, synonym_name from all_synonyms order by 2;\n"
            "select count(*) from user_synonyms;\ndrop synonym p;\ndrop public synonym p;\n"
            "drop public synonym p;\ndrop table t;\nselect * from t;\ncreate synonym x for x",
            "0\nPUBLIC|P\nPUBLIC|T\n0\nORA-01434: private synonym to be dropped does not exist\n"
            "ORA-01432: public synonym to be dropped does not exist\n"
            "ORA-01775: looping chain of synonyms\n"
            "ORA-01471: cannot create a synonym with same name as object");
    }
    void synonyms() { check(); }

    void dependencies_data() {
        columns();
        row("direct ones, by the names that the texts use",
            "create table t (a number);\ncreate synonym s for t;\n"
            "create view v as select * from t;\n"
            "create view w as select v.a from v, dual where exists (select 1 from s);\n"
            "select name, referenced_name, referenced_type from user_dependencies order by 1, 2;\n"
            "drop table t;\nselect object_name, status from user_objects where object_type = "
            "'VIEW'",
            "V|T|TABLE\nW|S|SYNONYM\nW|V|VIEW\nV|INVALID\nW|INVALID");
        row("hidden columns of indexes",
            "create table t (a number, b number);\ncreate index i on t (a + 1, b, a desc);\n"
            "select column_name, descend from user_ind_columns;\n"
            "select column_expression from user_ind_expressions",
            "SYS_NC00003$|ASC\nB|ASC\nSYS_NC00004$|DESC\n\"A\"+1\n\"A\"");
        row("what there is none of gives no rows",
            "select * from recyclebin;\nselect count(*) from user_tab_privs;\n"
            "select count(*) from user_jobs;\nselect count(*) from user_mviews;\n"
            "purge recyclebin;\npurge table t;\ncreate sequence;\n"
            "alter session set current_schema = demo",
            "0\n0\n0\nORA-38307: object not in RECYCLE BIN\nORA-02277: invalid sequence name");
    }
    void dependencies() { check(); }
};

QTEST_GUILESS_MAIN(tst_oracle_change)
#include "tst_oracle_change.moc"
