#include "OracleCases.h"

#include <QTest>

// Constraints that may wait until COMMIT.
class tst_oracle_deferred : public OracleCases {
    Q_OBJECT

private:
    static QTestData& onTables(const char* fault, const char* script, const char* outcome) {
        static const QByteArray tables =
            "create table p (id number constraint p_pk primary key deferrable, u number constraint "
            "p_u unique, a number constraint p_ck check (a > 0) deferrable initially deferred, b "
            "number default 1 constraint p_nn not null deferrable);\n"
            "create table c (id number, p number constraint c_fk references p deferrable "
            "initially deferred);\n"
            "insert into p (id, u) values (1, 1);\n";
        return row(fault, QByteArray(tables + script).constData(), outcome);
    }

private Q_SLOTS:
    void initTestCase() { qputenv("QUILLMATE_HOME", m_home.path().toUtf8()); }

    void waiting_data() {
        columns();
        onTables("each statement commits by itself",
                 "insert into p (id) values (1);\ninsert into p (id, a) values (2, 0);\n"
                 "insert into p (id, b) values (2, null);\ninsert into c values (1, 7);\n"
                 "select count(*) from p",
                 "ORA-00001: unique constraint (DEMO.P_PK) violated\n"
                 "ORA-02091: transaction rolled back\n"
                 "ORA-02290: check constraint (DEMO.P_CK) violated\n"
                 "ORA-02290: check constraint (DEMO.P_NN) violated\n"
                 "ORA-02091: transaction rolled back\n"
                 "ORA-02291: integrity constraint (DEMO.C_FK) violated - parent key not found\n1");
        onTables(
            "mended before the commit",
            "savepoint s;\ninsert into c values (1, 7);\ninsert into p (id, a) values (7, -1);\n"
            "update p set a = 1 where id = 7;\ncommit;\nselect p from c",
            "7");
        onTables("not mended",
                 "savepoint s;\ninsert into p (id, u) values (2, 2);\ninsert into p (id, a) values "
                 "(3, -1);\ncommit;\nselect count(*) from p",
                 "ORA-02091: transaction rolled back\n"
                 "ORA-02290: check constraint (DEMO.P_CK) violated\n1");
        onTables("a parent that goes",
                 "insert into c values (1, 1);\nsavepoint s;\ndelete from p;\ncommit;\ndelete from "
                 "p;\nselect count(*) from p",
                 "ORA-02091: transaction rolled back\n"
                 "ORA-02292: integrity constraint (DEMO.C_FK) violated - child record found\n"
                 "ORA-02091: transaction rolled back\n"
                 "ORA-02292: integrity constraint (DEMO.C_FK) violated - child record found\n1");
        onTables("put off and called in",
                 "savepoint s;\nset constraints p_pk deferred;\ninsert into p (id) values (1);\n"
                 "set constraint all immediate;\nupdate p set id = 2 where u is null;\nset "
                 "constraint all immediate;\ninsert into p (id) values (2);\nrollback;\n"
                 "savepoint s;\ninsert into p (id) values (1)",
                 "ORA-00001: unique constraint (DEMO.P_PK) violated\n"
                 "ORA-00001: unique constraint (DEMO.P_PK) violated\n"
                 "ORA-00001: unique constraint (DEMO.P_PK) violated");
        onTables(
            "what cannot wait",
            "set constraint p_u deferred;\nset constraint nope deferred;\nset constraint p_pk;\n"
            "alter table p modify constraint p_u initially deferred",
            "ORA-02447: cannot defer a constraint that is not deferrable\n"
            "ORA-02448: constraint does not exist\nORA-00905: missing keyword\n"
            "ORA-02447: cannot defer a constraint that is not deferrable");
        onTables("the session's own way",
                 "alter session set constraints = immediate;\nsavepoint s;\ninsert into c values "
                 "(1, 7);\nalter session set constraints = deferred;\ninsert into p (id) values "
                 "(1);\ncreate table x (a number);\nalter session set constraints = default;\n"
                 "alter session set constraints = never",
                 "ORA-02291: integrity constraint (DEMO.C_FK) violated - parent key not found\n"
                 "ORA-02091: transaction rolled back\n"
                 "ORA-00001: unique constraint (DEMO.P_PK) violated\n"
                 "ORA-02248: invalid option for ALTER SESSION");
        onTables("changed later",
                 "alter table p modify constraint p_pk initially deferred;\nsavepoint s;\ninsert "
                 "into p (id) values (1);\ncommit",
                 "ORA-02091: transaction rolled back\n"
                 "ORA-00001: unique constraint (DEMO.P_PK) violated");
        onTables("in the dictionary",
                 "select constraint_name, deferrable, deferred from user_constraints order by 1;\n"
                 "select index_name, uniqueness from user_indexes order by 1;\nselect nullable "
                 "from user_tab_columns where column_name = 'B'",
                 "C_FK|DEFERRABLE|DEFERRED\nP_CK|DEFERRABLE|DEFERRED\nP_NN|DEFERRABLE|IMMEDIATE\n"
                 "P_PK|DEFERRABLE|IMMEDIATE\nP_U|NOT DEFERRABLE|IMMEDIATE\nP_PK|NONUNIQUE\n"
                 "P_U|UNIQUE\nY");
        onTables("on rows that break it already",
                 "insert into p (id) values (2);\nalter table p add constraint p_b unique (b) "
                 "deferrable;\nalter table p add constraint p_s foreign key (u) references p "
                 "deferrable;\nupdate p set u = 5 where u = 1;\nalter table p add constraint p_t "
                 "foreign key (u) references p deferrable",
                 "ORA-02299: cannot validate (DEMO.P_B) - duplicate keys found\n"
                 "ORA-02291: integrity constraint (DEMO.P_S) violated - parent key not found\n"
                 "ORA-02275: such a referential constraint already exists in the table");
        onTables(
            "children that follow their parent",
            "create table q (id number primary key);\ncreate table k (q number references q on "
            "delete cascade deferrable initially deferred);\ninsert into q values (1);\n"
            "insert into k values (1);\nsavepoint s;\ninsert into k values (2);\ninsert into "
            "q values (2);\ncommit;\ndelete from q;\nselect count(*) from k",
            "0");
        row("changes by a trigger",
            "create table a (n number);\ncreate table b (n number check (n > 0) deferrable);\n"
            "create trigger g after insert on a for each row begin insert into b values (:new.n); "
            "end;\n"
            "insert into a values (-1);\nselect count(*) from a",
            "ORA-02290: check constraint (DEMO.SYS_C0001001) violated\n0");
    }
    void waiting() { check(); }
};

QTEST_GUILESS_MAIN(tst_oracle_deferred)
#include "tst_oracle_deferred.moc"
