#include "OracleCases.h"

#include <QTest>

using namespace Qt::StringLiterals;

// Data definition in the server's dialect: what it makes, refuses and shows in the dictionary.
class tst_oracle_definition : public OracleCases {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("QUILLMATE_HOME", m_home.path().toUtf8()); }

    void names_data() {
        columns();
        row("folded to upper case",
            "create table Emp (id number);\nselect id from EMP;\n"
            "select table_name from user_tables",
            "EMP");
        row("quoted names are their own",
            "create table \"Emp\" (\"a\" number, \"A\" number);\ncreate table emp (a number);\n"
            "insert into \"Emp\" values (1, 2);\nselect \"a\", \"A\" from \"Emp\";\n"
            "select count(*) from emp;\nselect * from emp2",
            "1|2\n0\nORA-00942: table or view does not exist");
        row("a name is taken by a view and a sequence as well",
            "create table t (a number);\ncreate view t as select 1 a from dual;\n"
            "create sequence t;\ncreate table T (b number)",
            "ORA-00955: name is already used by an existing object\n"
            "ORA-00955: name is already used by an existing object\n"
            "ORA-00955: name is already used by an existing object");
        row("the engine's own names are free",
            "create table sqlite_x (rowid_ number, \"oid\" number);\n"
            "insert into sqlite_x values (1, 2);\nselect * from sqlite_x;\n"
            "create table ora_objects (id number);\nselect count(*) from ora_objects",
            "1|2\n0");
        row("a column twice", "create table t (a number, A date)",
            "ORA-00957: duplicate column name");
        row("renamed table and column",
            "create table t (a number constraint k check (a > 0));\nrename t to u;\n"
            "alter table u rename column a to b;\ninsert into u (b) values (5);\n"
            "select b from u;\nselect search_condition from user_constraints;\n"
            "insert into u values (-1);\nselect * from t",
            "5\nB > 0\nORA-02290: check constraint (DEMO.K) violated\n"
            "ORA-00942: table or view does not exist");
        row("somebody else's schema", "create table scott.t (a number)",
            "ORA-01918: user 'SCOTT' does not exist");
        row("synonym, and one of a synonym",
            "create table t (a number);\ncreate synonym s for t;\ncreate synonym s2 for s;\n"
            "insert into s2 values (7);\nselect * from s;\ndrop synonym s;\nselect * from s2",
            "7\nORA-00980: synonym translation is no longer valid");
    }
    void names() { check(); }

    void constraints_data() {
        columns();
        const char* const family =
            "create table p (id number constraint p_pk primary key, n varchar2(5) unique);\n"
            "create table c (id number not null, p number constraint c_p references p,\n"
            " constraint c_ck check (id < 100));\n"
            "insert into p values (1, 'a');\n";
        const auto onFamily = [&](const char* fault, const char* script, const char* outcome) {
            QTest::newRow(fault) << QString::fromUtf8(family) + QString::fromUtf8(script)
                                 << QString::fromUtf8(outcome);
        };
        onFamily("duplicate key", "insert into p values (1, 'b')",
                 "ORA-00001: unique constraint (DEMO.P_PK) violated");
        onFamily("null into a mandatory column", "insert into c (p) values (1)",
                 "ORA-01400: cannot insert NULL into (\"DEMO\".\"C\".\"ID\")");
        onFamily("the empty string is null",
                 "create table e (t varchar2(5) not null);\ninsert into e values ('')",
                 "ORA-01400: cannot insert NULL into (\"DEMO\".\"E\".\"T\")");
        onFamily("mandatory column set to null",
                 "insert into c values (1, 1);\nupdate c set id = null",
                 "ORA-01407: cannot update (\"DEMO\".\"C\".\"ID\") to NULL");
        onFamily("check", "insert into c values (100, 1)",
                 "ORA-02290: check constraint (DEMO.C_CK) violated");
        onFamily("a check whose condition is unknown holds",
                 "create table u (a number check (a > 0));\ninsert into u values (null);\n"
                 "select count(*) from u",
                 "1");
        onFamily("no parent", "insert into c values (1, 2)",
                 "ORA-02291: integrity constraint (DEMO.C_P) violated - parent key not found");
        onFamily("parent with a child", "insert into c values (1, 1);\ndelete from p",
                 "ORA-02292: integrity constraint (DEMO.C_P) violated - child record found");
        onFamily("a failing statement changes nothing",
                 "insert into c values (1, 1);\ninsert into c values (2, 1);\n"
                 "update c set id = id * 60;\nselect sum(id) from c",
                 "ORA-02290: check constraint (DEMO.C_CK) violated\n3");
        row("unique at the end of the statement, not row by row",
            "create table t (a number primary key, b number unique);\n"
            "insert into t values (1, 1);\ninsert into t values (2, 2);\n"
            "insert into t values (3, 3);\nupdate t set a = a + 1, b = 4 - b;\n"
            "select * from t order by a;\nupdate t set a = 9;\nselect min(a) from t",
            "2|3\n3|2\n4|1\nORA-00001: unique constraint (DEMO.SYS_C0001001) violated\n2");
        row("unique at the end of the statement inside a transaction, the table being referenced",
            "create table p (id number primary key);\n"
            "create table c (p number references p);\n"
            "insert into p values (1);\ninsert into p values (2);\ninsert into c values (2);\n"
            "savepoint s;\nupdate p set id = id + 1;\nupdate p set id = 3 - id;\n"
            "select * from p order by id;\ninsert into c values (9);\ncommit",
            "ORA-02292: integrity constraint (DEMO.SYS_C0001002) violated - child record found\n"
            "2\n3\n"
            "ORA-02291: integrity constraint (DEMO.SYS_C0001002) violated - parent key not found");
        row("cascade and set null",
            "create table p (id number primary key);\n"
            "create table c (p number references p on delete cascade);\n"
            "create table n (p number references p on delete set null);\n"
            "insert into p values (1);\ninsert into c values (1);\ninsert into n values (1);\n"
            "delete from p;\nselect count(*) from c;\nselect count(*), count(p) from n",
            "0\n1|0");
        row("a table that references itself",
            "create table e (id number primary key, boss number references e);\n"
            "insert into e values (1, 1);\ninsert into e values (2, 1);\n"
            "delete from e where id = 1;\ndelete from e;\nselect count(*) from e",
            "ORA-02292: integrity constraint (DEMO.SYS_C0001002) violated - child record found\n0");
        row("composite keys",
            "create table p (a number, b number, constraint pk primary key (a, b));\n"
            "create table c (x number, y number, constraint fk foreign key (x, y) references p);\n"
            "insert into p values (1, 2);\ninsert into c values (1, null);\n"
            "insert into c values (2, 1)",
            "ORA-02291: integrity constraint (DEMO.FK) violated - parent key not found");
        row("no key to reference",
            "create table p (a number);\ncreate table c (a number references p);\n"
            "create table d (a number references p (a))",
            "ORA-02268: referenced table does not have a primary key\n"
            "ORA-02270: no matching unique or primary key for this column-list");
        row("where and how things are stored is read over",
            "create table t (a number, constraint u unique (a) using index parallel 4) pctfree 10 "
            "storage (initial 64k buffer_pool default) compress for oltp parallel 4 nologging;\n"
            "select constraint_name, index_name from user_constraints",
            "U|U");
        row("two primary keys", "create table t (a number primary key, b number primary key)",
            "ORA-02260: table can have only one primary key");
        row("a constraint's name twice",
            "create table t (a number constraint k check (a > 0));\n"
            "create table u (a number constraint k check (a > 0))",
            "ORA-02264: name already used by an existing constraint");
    }
    void constraints() { check(); }

    void alterTable_data() {
        columns();
        const auto filled =
            [&](const char* fault, const char* script, const char* outcome) {
                QTest::newRow(fault)
                    << u"create table t (id number(4) primary key, n varchar2(10));\n"
                       "insert into t values (1, 'one');\ninsert into t values (2, 'two');\n"_s +
                           QString::fromUtf8(script)
                    << QString::fromUtf8(outcome);
            };
        filled("a new column is null, one with a default has it",
               "alter table t add (a date, b number default 5 not null);\n"
               "select * from t order by id",
               "1|one|(null)|5\n2|two|(null)|5");
        filled("mandatory without a default", "alter table t add (a date not null)",
               "ORA-01758: table must be empty to add mandatory (NOT NULL) column");
        filled("column exists", "alter table t add (N date)",
               "ORA-01430: column being added already exists in table");
        filled("wider and narrower text",
               "alter table t modify (n varchar2(30));\nalter table t modify (n varchar2(2));\n"
               "select data_length from user_tab_columns where column_name = 'N'",
               "ORA-01441: cannot decrease column length because some value is too big\n30");
        filled("fewer digits of a filled column", "alter table t modify (id number(3))",
               "ORA-01440: column to be modified must be empty to decrease precision or scale");
        filled("another type of a filled column", "alter table t modify (n number)",
               "ORA-01439: column to be modified must be empty to change datatype");
        filled("mandatory with nulls",
               "insert into t (id) values (3);\n"
               "alter table t modify (n not null)",
               "ORA-02296: cannot enable (DEMO.) - null values found");
        filled("drop a column and go on",
               "alter table t add (c number default 7);\nalter table t drop column n;\n"
               "insert into t (id) values (3);\nselect * from t order by id",
               "1|7\n2|7\n3|7");
        filled("drop a key that is referenced",
               "create table c (t number references t);\nalter table t drop primary key;\n"
               "alter table t drop column id;\nalter table t drop primary key cascade;\n"
               "insert into c values (99);\nselect * from c",
               "ORA-02273: this unique/primary key is referenced by some foreign keys\n"
               "ORA-12992: cannot drop parent key column\n99");
        filled("a constraint that the rows break",
               "alter table t add constraint k check (id > 1);\n"
               "alter table t add constraint u unique (n);\ninsert into t values (3, 'one');\n"
               "alter table t add constraint f foreign key (n) references t (n);\n"
               "alter table t drop constraint u;\ninsert into t values (3, 'one');\n"
               "alter table t add constraint u unique (n);\n"
               "select count(*) from user_constraints",
               "ORA-02293: cannot validate (DEMO.K) - check constraint violated\n"
               "ORA-00001: unique constraint (DEMO.U) violated\n"
               "ORA-02273: this unique/primary key is referenced by some foreign keys\n"
               "ORA-00001: unique constraint (DEMO.U) violated\n"
               "ORA-02264: name already used by an existing constraint\n3");
        filled("disabled, then enabled",
               "alter table t add constraint k check (id < 10);\n"
               "alter table t disable constraint k;\ninsert into t values (50, 'x');\n"
               "alter table t enable constraint k;\ndelete from t where id = 50;\n"
               "alter table t enable constraint k;\ninsert into t values (50, 'x')",
               "ORA-02293: cannot validate (DEMO.K) - check constraint violated\n"
               "ORA-02290: check constraint (DEMO.K) violated");
        filled("an alter that fails half way leaves the table as it was",
               "alter table t add (a number, n number);\nselect * from t where id = 1",
               "ORA-01430: column being added already exists in table\n1|one");
        filled("unique index over duplicates",
               "update t set n = 'same';\ncreate unique index i on t (n);\n"
               "create index i on t (upper(n));\ncreate index j on t (id);\ndrop index nothing",
               "ORA-01452: cannot CREATE UNIQUE INDEX; duplicate keys found\n"
               "ORA-01408: such column list already indexed\n"
               "ORA-01418: specified index does not exist");
        filled("drop a parent, with and without its children's keys",
               "create table c (t number references t);\ndrop table t;\n"
               "drop table t cascade constraints;\ninsert into c values (99);\n"
               "select constraint_name from user_constraints",
               "ORA-02449: unique/primary keys in table referenced by foreign keys");
        filled("truncate a parent",
               "create table c (t number references t);\ntruncate table t;\n"
               "drop table c;\ntruncate table t;\nselect count(*) from t",
               "ORA-02266: unique/primary keys in table referenced by enabled foreign keys\n0");
    }
    void alterTable() { check(); }

    void sequences_data() {
        columns();
        row("counts, and knows the current one",
            "create sequence s start with 5 increment by 3;\nselect s.currval from dual;\n"
            "select s.nextval from dual;\nselect s.nextval, s.currval from dual;\n"
            "select last_number from user_sequences",
            "ORA-08002: sequence S.CURRVAL is not yet defined in this session\n5\n8|8\n65");
        row("the end",
            "create sequence s maxvalue 2 nocache;\nselect s.nextval from dual;\n"
            "select s.nextval from dual;\nselect s.nextval from dual",
            "1\n2\nORA-08004: sequence S.NEXTVAL exceeds MAXVALUE and cannot be instantiated");
        row("around",
            "create sequence s maxvalue 3 cycle cache 2;\n"
            "select s.nextval from dual connect by level <= 5",
            "1\n2\n3\n1\n2");
        row("downwards",
            "create sequence s increment by -1;\nselect s.nextval from dual;\n"
            "select s.nextval from dual",
            "-1\n-2");
        row("a number for each row",
            "create table t (a number);\ninsert into t values (7);\ninsert into t values (8);\n"
            "create sequence s;\ninsert into t select s.nextval * 100 from t;\n"
            "select * from t order by a",
            "7\n8\n100\n200");
        row("bad limits",
            "create sequence s minvalue 5 maxvalue 4;\n"
            "create sequence s start with 0;\ncreate sequence s increment by 0;\n"
            "select s.nextval from dual",
            "ORA-04004: MINVALUE must be less than MAXVALUE\n"
            "ORA-04006: START WITH cannot be less than MINVALUE\n"
            "ORA-04002: INCREMENT must be a nonzero integer\n"
            "ORA-02289: sequence does not exist");
        row("identity",
            "create table t (id number generated always as identity, n varchar2(5));\n"
            "insert into t (n) values ('a');\ninsert into t (n) values ('b');\n"
            "select * from t;\ninsert into t values (1, 'c')",
            "1|a\n2|b\nORA-32795: cannot insert into a generated always identity column");
    }
    void sequences() { check(); }

    void sequencesDoNotGoBack() {
        OracleScript script;
        script.runAll(u"create sequence s;\ncreate table t (a number primary key);\nsavepoint x;\n"
                      "insert into t values (s.nextval);\nrollback;\n"
                      "insert into t values (s.nextval)"_s);
        QCOMPARE(script.run(u"select * from t"_s), u"2"_s);
        script.reconnect(); // what was cached is lost, what was given is not given again
        script.run(u"insert into t values (s.nextval)"_s);
        QCOMPARE(script.run(u"select * from t order by a"_s), u"2\n21"_s);
    }

    void triggers_data() {
        columns();
        row("sets a value of the row, from a sequence",
            "create table t (id number primary key, n varchar2(5));\ncreate sequence s;\n"
            "create trigger g before insert on t for each row when (new.id is null)\n"
            "begin select s.nextval into :new.id from dual; end;\n;\n"
            "insert into t (n) values ('a');\ninsert into t values (50, 'b');\n"
            "select * from t order by id",
            "1|a\n50|b");
        row("one body for all events: what the event has not is null",
            "create table t (id number, n varchar2(5));\n"
            "create table h (was varchar2(5), now varchar2(5));\n"
            "create trigger g after insert or update or delete on t for each row\n"
            "begin insert into h values (:old.n, :new.n); end;\n;\n"
            "insert into t values (1, 'a');\nupdate t set n = 'b';\ndelete from t;\n"
            "select * from h",
            "(null)|a\na|b\nb|(null)");
        row("writes elsewhere",
            "create table t (id number, price number);\n"
            "create table h (id number, was number, now number);\n"
            "create trigger g after update of price on t for each row\n"
            "begin insert into h values (:old.id, :old.price, :new.price); end;\n;\n"
            "insert into t values (1, 10);\nupdate t set id = 2;\nupdate t set price = price * 2;\n"
            "select * from h;\nalter trigger g disable;\nupdate t set price = 0;\n"
            "select count(*) from h;\n"
            "select trigger_name, trigger_type, triggering_event, status from user_triggers",
            "2|10|20\n1\nG|AFTER EACH ROW|UPDATE|DISABLED");
        row("gone", "drop trigger g", "ORA-04080: trigger 'G' does not exist");
    }
    void triggers() { check(); }

    void transactions_data() {
        columns();
        const auto filled = [&](const char* fault, const char* script, const char* outcome) {
            QTest::newRow(fault) << u"create table t (a number);\n"_s + QString::fromUtf8(script)
                                 << QString::fromUtf8(outcome);
        };
        filled("a statement commits itself",
               "insert into t values (1);\nrollback;\nselect * from t", "1");
        filled("a savepoint opens a transaction",
               "savepoint a;\ninsert into t values (1);\nsavepoint b;\ninsert into t values (2);\n"
               "rollback to b;\nselect * from t;\nrollback;\nselect count(*) from t",
               "1\n0");
        filled("a savepoint that is gone", "savepoint a;\ncommit;\nrollback to a",
               "ORA-01086: savepoint 'A' never established in this session or is invalid");
        filled(
            "data definition commits",
            "set transaction read write;\ninsert into t values (1);\ncreate table u (a number);\n"
            "rollback;\nselect * from t",
            "1");
        filled("read only",
               "set transaction read only;\ninsert into t values (1);\ncommit;\n"
               "insert into t values (2);\nselect * from t",
               "ORA-01456: may not perform insert/delete/update operation inside a READ ONLY "
               "transaction\n2");
        filled("rows of a temporary table are the session's",
               "create global temporary table g (a number) on commit preserve rows;\n"
               "insert into g values (1);\nselect * from g;\n"
               "create global temporary table h (a number);\ninsert into h values (1);\n"
               "select count(*) from h;\nsavepoint s;\ninsert into h values (1);\n"
               "select count(*) from h;\ncommit;\nselect count(*) from h",
               "1\n0\n1\n0");
    }
    void transactions() { check(); }

    void anotherSessionSeesWhatWasCommitted() {
        OracleScript script;
        script.run(u"create table t (a number)"_s);
        const auto other = script.another();
        QCOMPARE(OracleScript::outcome(*other, u"select count(*) from t"_s), u"0"_s);
        script.runAll(u"insert into t values (1);\nalter table t add (b number default 3)"_s);
        QCOMPARE(OracleScript::outcome(*other, u"select * from t"_s), u"1|3"_s);
        QCOMPARE(OracleScript::outcome(*other, u"drop table t"_s), QString());
        QCOMPARE(script.run(u"select * from t"_s), u"ORA-00942: table or view does not exist"_s);
    }
};

QTEST_GUILESS_MAIN(tst_oracle_definition)
#include "tst_oracle_definition.moc"
