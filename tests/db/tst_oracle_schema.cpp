#include "OracleCases.h"

#include <QTest>

using namespace Qt::StringLiterals;

// What the server takes and refuses in columns, constraints, views and indexes, rule by rule.
class tst_oracle_schema : public OracleCases {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("QUILLMATE_HOME", m_home.path().toUtf8()); }

    void types_data() {
        columns();
        row("names for numbers have the server's precision and scale",
            "create table t (a integer, b decimal, c dec(5,2), d float, e real, f float(10),"
            " g number(*,2), h interval day(3) to second(4));\n"
            "select data_type, data_precision, data_scale from user_tab_columns order by column_id",
            "NUMBER|(null)|0\nNUMBER|(null)|0\nNUMBER|5|2\nFLOAT|126|(null)\nFLOAT|63|(null)\n"
            "FLOAT|10|(null)\nNUMBER|(null)|2\nINTERVAL DAY(3) TO SECOND(4)|3|4");
        row("an invisible column is named or not there at all",
            "create table t (a number invisible, b number);\ninsert into t values (1);\n"
            "select * from t;\nselect a, b from t;\nalter table t modify a visible;\n"
            "select * from t",
            "1\n(null)|1\n1|(null)");
        row("a virtual column takes no value, but has its place",
            "create table t (a number, b as (a * 2));\ninsert into t values (1, 2);\n"
            "insert into t values (1, default);\nupdate t set b = 3;\ninsert into t values (5);\n"
            "select * from t",
            "ORA-54013: INSERT operation disallowed on virtual columns\n"
            "ORA-54017: UPDATE operation disallowed on virtual columns\n"
            "ORA-00947: not enough values\n1|2");
        row("what the server's own scripts write behind columns",
            "create table t (a number generated always as identity minvalue 1 increment by 5"
            " start with 10 cache 20 noorder nocycle nokeep noscale not null enable, b clob)"
            " lob (b) store as securefile bseg (tablespace users enable storage in row chunk 8192)"
            " pctfree 10;\ninsert into t (b) values ('x');\ninsert into t (b) values ('y');\n"
            "select a from t",
            "10\n15");
        row("CREATE TABLE AS takes over NOT NULL, but not from a key",
            "create table t (a number primary key, b number not null);\n"
            "create table u as select * from t;\n"
            "select column_name, nullable from user_tab_columns where table_name = 'U'"
            " order by column_id",
            "A|Y\nB|N");
    }
    void types() { check(); }

    void refusedColumns_data() {
        columns();
        fails("create table t (a long, b long)",
              "ORA-01754: a table may contain only one column of type LONG");
        fails("create table t (a float(127))",
              "ORA-01727: numeric precision specifier is out of range (1 to 38)");
        fails("create table t (a varchar2(5) generated always as identity)",
              "ORA-30675: identity column must be a numeric type");
        fails("create table t (a number generated always as identity,"
              " b number generated always as identity)",
              "ORA-30669: table can have only one identity column");
        fails("create table t (a number default b, b number)",
              "ORA-00984: column not allowed here");
        fails("create table t (a number default (select 1 from dual))",
              "ORA-02251: subquery not allowed here");
        fails("create table t (a date default 5)",
              "ORA-00932: inconsistent datatypes: expected DATE got NUMBER");
        fails("create table t (a number not null default 5)",
              "ORA-00907: missing right parenthesis");
        fails("create table t (a number not null null)",
              "ORA-02258: duplicate or conflicting NULL and/or NOT NULL specifications");
        fails("create table t (a number foreign key references emp(id))",
              "ORA-00907: missing right parenthesis");
        fails("create table t (a number constraint k foreign key references emp(id))",
              "ORA-02253: constraint specification not allowed here");
        fails("create table t (a number, unique a)", "ORA-00906: missing left parenthesis");
        fails("create table my-table (a number)", "ORA-00922: missing or invalid option");
        fails("create table if not exists t (a number)", "ORA-00922: missing or invalid option");
        fails("create or replace table t (a number)", "ORA-00922: missing or invalid option");
        fails("comment on emp is 'x'", "ORA-32594: invalid object category for COMMENT command");
        fails("create table t", "ORA-00906: missing left parenthesis");
        fails("create temporary table t (a number)", "ORA-00901: invalid CREATE command");
        fails("create table t (a number) as select 1 from dual",
              "ORA-01773: may not specify column datatypes in this CREATE TABLE");
        fails("create table t as select null a from dual",
              "ORA-01723: zero-length columns are not allowed");
        fails("alter table emp modify column n varchar2(5)", "ORA-00905: missing keyword");
        fails("alter table emp", "ORA-02210: no options specified for ALTER TABLE");
    }
    void refusedColumns() { check(); }

    void refusedConstraints_data() {
        columns();
        fails("create table t (a number check (b > 0), b number)",
              "ORA-02438: Column check constraint cannot reference other columns");
        fails("create table t (a date check (a < sysdate))",
              "ORA-02436: date or system variable wrongly specified in CHECK constraint");
        fails("create table t (a number check (a in (select id from emp)))",
              "ORA-02251: subquery not allowed here");
        fails("create table t (a clob primary key)",
              "ORA-02329: column of datatype LOB cannot be unique or a primary key");
        fails("create table t (a number, b number, foreign key (a, b) references emp(id))",
              "ORA-02256: number of referencing columns must match referenced columns");
        fails("create table t (a number references emp, foreign key (a) references emp)",
              "ORA-02274: duplicate referential constraint specifications");
        fails("create table t (a number, primary key (a, a))", "ORA-00957: duplicate column name");
        fails("alter table emp enable constraint nosuch",
              "ORA-02430: cannot enable constraint (NOSUCH) - no such constraint");
        fails("alter table emp drop unique (n)", "ORA-02442: Cannot drop nonexistent unique key");
        fails("alter table emp rename constraint x to y",
              "ORA-23292: The constraint does not exist");
        fails("alter table emp modify id null",
              "ORA-01451: column to be modified to NULL cannot be modified to NULL");
        row("a primary key over nulls",
            "create table t (a number);\ninsert into t values (null);\n"
            "alter table t add primary key (a);\ndrop table t;\n"
            "alter table t drop primary key",
            "ORA-01449: column contains NULL values; cannot alter to NOT NULL\n"
            "ORA-00942: table or view does not exist");
        row("a primary key that is not there",
            "create table t (a number);\nalter table t drop primary key",
            "ORA-02441: Cannot drop nonexistent primary key");
        row("the state of constraints is kept",
            "create table t (a number constraint k unique deferrable initially deferred,"
            " b number constraint c check (b > 0) enable novalidate);\n"
            "select constraint_name, deferrable, deferred, validated from user_constraints"
            " order by 1",
            "C|NOT DEFERRABLE|IMMEDIATE|NOT VALIDATED\nK|DEFERRABLE|DEFERRED|VALIDATED");
        row("USING INDEX names the index",
            "create table t (a number, constraint k primary key (a)"
            " using index (create unique index i on t (a)));\nselect index_name from user_indexes",
            "I");
        row("a read-only table",
            "create table t (a number);\nalter table t read only;\ninsert into t values (1);\n"
            "delete from t;\ntruncate table t;\nalter table t read write;\n"
            "insert into t values (1);\nselect * from t",
            "ORA-12081: update operation not allowed on table \"DEMO\".\"T\"\n"
            "ORA-12081: update operation not allowed on table \"DEMO\".\"T\"\n"
            "ORA-12081: update operation not allowed on table \"DEMO\".\"T\"\n1");
    }
    void refusedConstraints() { check(); }

    void indexes_data() {
        columns();
        fails("create index i on emp (sysdate)", "ORA-01743: only pure functions can be indexed");
        fails("create index i on emp (n, n)", "ORA-00957: duplicate column name");
        row("a date's text needs a model",
            "create table t (d date, c clob, l long);\ncreate index i on t (to_char(d));\n"
            "create index i on t (c);\ncreate index i on t (l);\ncreate view v as select * from "
            "t;\n"
            "create index i on v (d);\ncreate index i on t (to_char(d, 'YYYY')) compute statistics",
            "ORA-01743: only pure functions can be indexed\n"
            "ORA-02327: cannot create index on expression with datatype LOB\n"
            "ORA-00997: illegal use of LONG datatype\nORA-01702: a view is not appropriate here");
        row("the dictionary writes expressions its own way",
            "create table t (a number, name varchar2(5));\n"
            "create index i on t (upper( name ), a*2 + 1);\ncreate bitmap index b on t (a);\n"
            "select column_expression from user_ind_expressions order by column_position;\n"
            "select index_type from user_indexes order by 1",
            "UPPER(\"NAME\")\n\"A\"*2+1\nBITMAP\nFUNCTION-BASED NORMAL");
    }
    void indexes() { check(); }

    void views_data() {
        columns();
        row("* is what it was when the view was made",
            "create table t (a number, b number);\ncreate view v as select t.* from t;\n"
            "create view w as select * from t;\nalter table t add c number;\n"
            "insert into t values (1, 2, 3);\nselect * from v;\nselect * from w;\n"
            "select text from user_views order by view_name",
            "1|2\n1|2\nselect t.\"A\",t.\"B\" from t\nselect \"A\",\"B\" from t");
        row("a view whose table is gone",
            "create table t (a number);\ncreate view v as select * from t;\n"
            "create view w as select a from v;\ncreate force view x as select * from nosuch;\n"
            "drop table t;\nselect * from v;\nselect * from w;\nselect * from x;\n"
            "delete from v;\ncreate table t (a number);\nselect count(*) from w",
            "ORA-04063: view \"DEMO.V\" has errors\nORA-04063: view \"DEMO.V\" has errors\n"
            "ORA-04063: view \"DEMO.X\" has errors\nORA-04063: view \"DEMO.V\" has errors\n0");
        row("its options are constraints",
            "create table t (a number);\n"
            "create view v as select a from t with check option constraint v_ck;\n"
            "create view w as select a from t with read only;\n"
            "select table_name, constraint_type from user_constraints order by 1;\n"
            "select text from user_views where view_name = 'W';\n"
            "create table u (a number constraint v_ck check (a > 0))",
            "V|V\nW|O\nselect a from t with read only\n"
            "ORA-02264: name already used by an existing constraint");
    }
    void views() { check(); }
};

QTEST_GUILESS_MAIN(tst_oracle_schema)
#include "tst_oracle_schema.moc"
