#include "OracleCases.h"

#include <QTest>

// Triggers for whole statements, in place of a view's changes, and those that raise errors.
class tst_oracle_trigger : public OracleCases {
    Q_OBJECT

private:
    static QTestData& onTables(const char* fault, const char* script, const char* outcome) {
        static const QByteArray tables =
            "create table t (id number primary key, n varchar2(10), q number);\n"
            "create table log (what varchar2(10), d number);\ncreate sequence s;\n";
        return row(fault, QByteArray(tables + script).constData(), outcome);
    }

private Q_SLOTS:
    void initTestCase() { qputenv("QUILLMATE_HOME", m_home.path().toUtf8()); }

    void statements_data() {
        columns();
        onTables("once, however many rows",
                 "create trigger g after insert or update of q on t begin insert into log values "
                 "('g', s.nextval); end;\n"
                 "insert into t select level, 'x', level from dual connect by level < 4;\nupdate t "
                 "set q = 1 where 1 = 0;\nupdate t set n = 'y';\ndelete from t;\nselect * from log",
                 "g|1\ng|2");
        onTables("before and after",
                 "create trigger a after delete on t begin update log set d = (select count(*) "
                 "from t); end;\n"
                 "create trigger b before delete on t begin insert into log select 'b', count(*) "
                 "from t; end;\n"
                 "insert into t values (1, 'x', 1);\ndelete from t;\nselect * from log",
                 "b|0");
        onTables("one that sets off itself",
                 "create trigger g after insert on log begin insert into log values ('g', 1); "
                 "end;\n"
                 "insert into log values ('x', 1);\nselect count(*) from log",
                 "ORA-00036: maximum number of recursive SQL levels (50) exceeded\n0");
        onTables("both changes of MERGE",
                 "create trigger g after insert or update on t begin insert into log values ('g', "
                 "0); end;\n"
                 "merge into t using dual on (id = 1) when matched then update set q = 2 when not "
                 "matched then insert values (1, 'x', 1);\nselect count(*) from log",
                 "2");
        onTables("a row that there is not",
                 "create trigger g before insert on t begin insert into log values (:new.n, 1); "
                 "end;\n"
                 "create trigger g before insert on t when (1 = 1) begin null; end;\n"
                 "create trigger g before insert on t begin insert into nope values (1); end;\n"
                 "select count(*) from user_triggers",
                 "ORA-04082: NEW or OLD references not allowed in table level triggers\n"
                 "ORA-04077: WHEN clause cannot be used with table level triggers\n"
                 "ORA-00942: table or view does not exist\n0");
        onTables("what takes PL/SQL",
                 "create trigger g after insert or update on t begin if inserting then insert into "
                 "log values ('g', 1); end if; end;\n"
                 "create trigger g after insert on t begin insert into log values ('g', 1); insert "
                 "into log values ('g', 2); end",
                 "ORA-03001: unimplemented feature: a trigger with more than one plain statement "
                 "(PL/SQL) cannot be used in the embedded database\n"
                 "ORA-03001: unimplemented feature: a trigger with more than one plain statement "
                 "(PL/SQL) cannot be used in the embedded database");
    }
    void statements() { check(); }

    void errors_data() {
        columns();
        onTables(
            "a row's",
            "create or replace trigger g before insert or update on t for each row when "
            "(new.q < 0)\nbegin\n  raise_application_error(-20001, 'Bad ' || :new.q); end;\n"
            "insert into t values (1, 'x', 1);\nupdate t set q = -1;\nselect q from t;\n"
            "alter trigger g disable;\nupdate t set q = -1;\nselect q from t;\nalter trigger g "
            "enable;\nupdate t set q = -2",
            "ORA-20001: Bad -1\nORA-06512: at \"DEMO.G\", line 2\n"
            "ORA-04088: error during execution of trigger 'DEMO.G'\n1\n-1\n"
            "ORA-20001: Bad -2\nORA-06512: at \"DEMO.G\", line 2\n"
            "ORA-04088: error during execution of trigger 'DEMO.G'");
        onTables("a statement's, now and then",
                 "create trigger g before delete on t begin if to_char(sysdate, 'yyyy') > '2000' "
                 "then raise_application_error(-20205, 'Closed'); end if; end;\n"
                 "create trigger h before update on t begin if to_char(sysdate, 'yyyy') < '2000' "
                 "then raise_application_error(-20205, 'Closed'); end if; end;\n"
                 "delete from t;\nupdate t set q = 1",
                 "ORA-20205: Closed\nORA-06512: at \"DEMO.G\", line 1\n"
                 "ORA-04088: error during execution of trigger 'DEMO.G'");
        onTables("a number that is the server's",
                 "create trigger g before insert on t for each row begin "
                 "raise_application_error(-1, 'x'); end;\n"
                 "insert into t values (1, 'x', 1)",
                 "ORA-21000: error number argument to raise_application_error of -1 is out of "
                 "range\nORA-06512: at \"DEMO.G\", line 1\n"
                 "ORA-04088: error during execution of trigger 'DEMO.G'");
    }
    void errors() { check(); }

    void views_data() {
        columns();
        const auto onView = [](const char* fault, const char* script, const char* outcome) {
            static const QByteArray view =
                "create view v as select id, n, q * 2 as dbl from t;\n"
                "create trigger vi instead of insert on v begin insert into t values (:new.id, "
                "upper(:new.n), :new.dbl / 2); end;\n"
                "create trigger vu instead of update on v for each row begin update t set q = "
                ":new.dbl / 2, n = :new.n where id = :old.id; end;\n"
                "create trigger vd instead of delete on v begin delete from t where id = :old.id; "
                "end;\n"
                "insert into v values (1, 'one', 20);\n";
            onTables(fault, QByteArray(view + script).constData(), outcome);
        };
        onView("rows that are put in",
               "insert into v (id, n) select id + 1, 'two' from v;\nselect * from t order by 1",
               "1|ONE|10\n2|TWO|(null)");
        onView(
            "rows that change",
            "update v x set dbl = dbl + 2, n = default where x.id = 1;\nselect * from t;\nupdate "
            "v set (n, dbl) = (select 'z', 100 from dual);\nselect * from t",
            "1|(null)|11\n1|z|50");
        onView("rows that go",
               "delete from v where dbl > 100;\nselect count(*) from t;\ndelete from v x where "
               "x.id in (select id from t);\nselect count(*) from t",
               "1\n0");
        onView("undone as a whole",
               "insert into v select 3 - level, 'x', 1 from dual connect by level < 3;\nselect "
               "count(*) from t",
               "ORA-00001: unique constraint (DEMO.SYS_C0001001) violated\n1");
        onView("wrong columns",
               "insert into v values (1, 'x');\nupdate v set nope = 1;\nmerge into v using dual on "
               "(id = 1) when matched then update set n = 'x'",
               "ORA-00947: not enough values\nORA-00904: \"NOPE\": invalid identifier\n"
               "ORA-38106: MERGE not supported on join view or view with INSTEAD OF trigger.");
        onView("triggers on the wrong thing",
               "create trigger x before insert on v for each row begin null; end;\n"
               "create trigger x instead of insert on t begin null; end",
               "ORA-25001: cannot create this trigger type on this type of view\n"
               "ORA-25002: cannot create INSTEAD OF triggers on tables");
        onView("in the dictionary, until the view is another",
               "create trigger a after insert or delete on t begin null; end;\n"
               "select trigger_name, trigger_type, triggering_event, base_object_type from "
               "user_triggers order by 1;\ncreate or replace view v as select id, n, q as dbl from "
               "t;\nselect trigger_name from user_triggers",
               "A|AFTER STATEMENT|INSERT OR DELETE|TABLE\nVD|INSTEAD OF|DELETE|VIEW\n"
               "VI|INSTEAD OF|INSERT|VIEW\nVU|INSTEAD OF|UPDATE|VIEW\nA");
    }
    void views() { check(); }
};

QTEST_GUILESS_MAIN(tst_oracle_trigger)
#include "tst_oracle_trigger.moc"
