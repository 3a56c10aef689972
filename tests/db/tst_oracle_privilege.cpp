#include "OracleCases.h"

#include <QTest>

// GRANT and REVOKE, and what the dictionary knows of them.
class tst_oracle_privilege : public OracleCases {
    Q_OBJECT

private:
    static QTestData& onTables(const char* fault, const char* script, const char* outcome) {
        static const QByteArray tables =
            "create table emp (id number, sal number);\ncreate view v as select id from emp;\n"
            "create sequence s;\n";
        return row(fault, QByteArray(tables + script).constData(), outcome);
    }

private Q_SLOTS:
    void initTestCase() { qputenv("QUILLMATE_HOME", m_home.path().toUtf8()); }

    void grants_data() {
        columns();
        onTables("kept until they are revoked",
                 "grant select, update (sal), insert on emp to hr, scott with grant option;\n"
                 "revoke insert on emp from scott;\ngrant select on s to public;\n"
                 "select grantee, table_name, privilege, grantable, type from user_tab_privs_made "
                 "order by 1, 2, 3;\nselect grantee, column_name, privilege from user_col_privs "
                 "order by 1;\ndrop sequence s;\nselect count(*) from user_tab_privs where "
                 "table_name = 'S'",
                 "HR|EMP|INSERT|YES|TABLE\nHR|EMP|SELECT|YES|TABLE\nPUBLIC|S|SELECT|NO|SEQUENCE\n"
                 "SCOTT|EMP|SELECT|YES|TABLE\nHR|SAL|UPDATE\nSCOTT|SAL|UPDATE\n0");
        onTables("all at once",
                 "grant all on v to hr;\nselect count(*) from all_tab_privs where table_name = 'V' "
                 "and privilege in ('SELECT', 'INSERT', 'UPDATE', 'DELETE', 'INDEX');\nrevoke all "
                 "on v from hr;\nselect count(*) from user_tab_privs;\nrevoke all on v from hr",
                 "4\n0\nORA-01927: cannot REVOKE privileges you did not grant");
        onTables("what was never granted",
                 "grant select on emp to hr;\nrevoke select on emp from scott;\nrevoke delete on "
                 "emp from hr",
                 "ORA-01927: cannot REVOKE privileges you did not grant\n"
                 "ORA-01927: cannot REVOKE privileges you did not grant");
        onTables("roles and the right to do something",
                 "grant connect, resource to hr;\ngrant create session, select any table to hr;\n"
                 "revoke connect from hr;\ngrant all privileges to hr;\ngrant foo to hr",
                 "ORA-01919: role 'FOO' does not exist");
        onTables("nobody and nothing",
                 "grant select on emp to nobody;\ngrant select on nope to hr;\ngrant select on emp "
                 "to demo;\ngrant update (nope) on emp to hr;\nselect count(*) from user_tab_privs",
                 "ORA-01917: user or role 'NOBODY' does not exist\n"
                 "ORA-00942: table or view does not exist\n"
                 "ORA-01749: you may not GRANT/REVOKE privileges to/from yourself\n"
                 "ORA-00904: \"NOPE\": invalid identifier\n0");
        onTables("words that are missing",
                 "grant select emp to hr;\ngrant select on emp hr;\ngrant select to hr;\ngrant foo "
                 "on emp to hr;\ngrant foo bar to hr;\ngrant to hr;\ngrant select on emp to",
                 "ORA-00905: missing keyword\nORA-00905: missing keyword\n"
                 "ORA-00990: missing or invalid privilege\n"
                 "ORA-00990: missing or invalid privilege\n"
                 "ORA-00990: missing or invalid privilege\n"
                 "ORA-00990: missing or invalid privilege\n"
                 "ORA-00987: missing or invalid username(s)");
    }
    void grants() { check(); }
};

QTEST_GUILESS_MAIN(tst_oracle_privilege)
#include "tst_oracle_privilege.moc"
