#include "OracleScript.h"

#include <QCoreApplication>
#include <QTest>

using namespace Qt::StringLiterals;

// What the trees and the plan ask of the dictionary, as the program sends it, on the sample schema.
class tst_dictionary : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_home;
    std::unique_ptr<Session> m_session;

    static std::unique_ptr<Session> openDemo() {
        return openSession({{}, u"DEMO"_s, u"demo"_s, u"demo"_s}, providerTable());
    }
    QString rows(const QString& sql) { return OracleScript::outcome(*m_session, sql); }

private Q_SLOTS:
    void initTestCase() {
        qputenv("QUILLMATE_HOME", m_home.path().toUtf8());
        m_session = openDemo();
    }
    void cleanupTestCase() { m_session.reset(); }

    void everyListedViewCanBeRead() {
        const QStringList names = rows(u"SELECT table_name FROM dictionary"_s).split(u'\n');
        QVERIFY(names.size() > 70);
        for (const QString& name : names) {
            const QString count = rows(u"SELECT COUNT(*) FROM "_s + name);
            QVERIFY2(!count.startsWith(u"ORA-"_s), qPrintable(name + u": "_s + count));
            const QString failure = failureOf(*m_session, u"SELECT * FROM "_s + name);
            QVERIFY2(failure == u"done"_s, qPrintable(name + u": "_s + failure));
            QCOMPARE(
                rows(u"SELECT COUNT(*) FROM dict_columns WHERE table_name = '%1'"_s.arg(name)),
                QString::number(m_session->execute(u"SELECT * FROM "_s + name)->columns().size()));
        }
    }

    void theTreesStatements_data() {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("outcome");
        QTest::newRow("columns, with the lengths that the tree shows")
            << u"SELECT COLUMN_NAME, DATA_TYPE, DATA_LENGTH, NULLABLE FROM USER_TAB_COLUMNS WHERE "
               "TABLE_NAME = 'EMP'"_s
            << u"EMPNO|NUMBER|22|N\nENAME|VARCHAR2|10|Y\nJOB|VARCHAR2|9|Y\nMGR|NUMBER|22|Y\n"
               "HIREDATE|DATE|7|Y\nSAL|NUMBER|22|Y\nCOMM|NUMBER|22|Y\nDEPTNO|NUMBER|22|Y"_s;
        QTest::newRow("views") << u"SELECT VIEW_NAME FROM USER_VIEWS"_s
                               << u"ORDER_TOTALS\nPRODUCT_SALES\nSTAFF"_s;
        QTest::newRow("constraints")
            << u"SELECT CONSTRAINT_NAME, CONSTRAINT_TYPE, R_CONSTRAINT_NAME, STATUS FROM "
               "USER_CONSTRAINTS WHERE TABLE_NAME = 'EMP'"_s
            << u"PK_EMP|P|(null)|ENABLED\nFK_DEPTNO|R|PK_DEPT|ENABLED"_s;
        QTest::newRow("indexes")
            << u"SELECT INDEX_NAME, UNIQUENESS FROM USER_INDEXES WHERE TABLE_NAME = 'PEOPLE' "
               "ORDER BY 1"_s
            << u"PEOPLE_DEPARTMENT_IX|NONUNIQUE\nPEOPLE_EMAIL_UK|UNIQUE\nPEOPLE_NAME_IX|NONUNIQUE\n"
               "PEOPLE_PK|UNIQUE"_s;
        QTest::newRow("triggers")
            << u"SELECT TRIGGER_NAME, TRIGGERING_EVENT FROM USER_TRIGGERS WHERE TABLE_NAME = "
               "'ORDERS'"_s
            << u"ORDERS_ID_TRG|INSERT"_s;
        QTest::newRow("a table that is not there")
            << u"SELECT * FROM USER_TRIGGERS WHERE TABLE_NAME = 'NOBODY'"_s << u""_s;
        QTest::newRow("comments")
            << u"SELECT COMMENTS FROM USER_TAB_COMMENTS WHERE TABLE_NAME = 'PEOPLE'"_s
            << u"Everybody who works here"_s;
        QTest::newRow("the program's own tables are not listed")
            << u"SELECT COUNT(*) FROM USER_OBJECTS WHERE OBJECT_NAME LIKE '%$%' OR "
               "LOWER(OBJECT_NAME) LIKE 'ora%' OR LOWER(OBJECT_NAME) LIKE 'sqlite%'"_s
            << u"0"_s;
        QTest::newRow("with the owner in front")
            << u"SELECT OWNER, TABLE_NAME FROM ALL_TABLES WHERE TABLE_NAME = 'DEPT'"_s
            << u"DEMO|DEPT"_s;
        QTest::newRow("owners that have names of their own")
            << u"SELECT i.INDEX_OWNER, i.TABLE_OWNER, i.COLUMN_NAME, s.SEQUENCE_OWNER FROM "
               "ALL_IND_COLUMNS i, DBA_SEQUENCES s WHERE i.INDEX_NAME = 'PK_DEPT' AND "
               "s.SEQUENCE_NAME = 'ORDERS_SEQ'"_s
            << u"DEMO|DEMO|DEPTNO|DEMO"_s;
        QTest::newRow("dual") << u"SELECT * FROM DUAL"_s << u"X"_s;
        QTest::newRow("who am I") << u"SELECT USER, USERNAME FROM USER_USERS"_s << u"DEMO|DEMO"_s;
    }
    void theTreesStatements() {
        QFETCH(QString, sql);
        QTEST(rows(sql), "outcome");
    }

    void theSessionsAreThisProgramsConnections() {
        const QString sql =
            u"select a.spid pid, b.sid sid, b.serial# ser#, b.machine box, b.username username,"
            "b.osuser os_user, b.program program from v$session b, v$process a  Where b.paddr = "
            "a.addr and    type='USER' and b.username is not null order  by spid"_s;
        const QString own = QString::number(QCoreApplication::applicationPid());
        QCOMPARE(rows(sql).section(u'|', 0, 0), own);
        QCOMPARE(rows(sql).section(u'|', 4, 4), u"DEMO"_s);
        const auto another = openDemo();
        const QStringList both = rows(sql).split(u'\n');
        QCOMPARE(both.size(), 2);
        QVERIFY(both[0].section(u'|', 0, 0) != both[1].section(u'|', 0, 0)); // keys of a tree
    }

    void aPlanGoesIntoThePlanTable() {
        OracleScript script;
        QVERIFY(failureOf(script.session(), u"EXPLAIN PLAN FOR SELECT * FROM dual"_s)
                    .startsWith(u"ORA-02402 -2147467259"_s));
        script.runAll(
            u"create table plan_table (statement_id varchar2(30), operation varchar2(30), "
            "options varchar2(30), object_name varchar2(30), id numeric, parent_id numeric, "
            "position numeric, cost numeric);\ncreate table t (a number primary key, b number)"_s);
        QCOMPARE(
            script.run(u"explain plan set statement_id = 'x' for select b from t where a = 1"_s),
            QString());
        QCOMPARE(script.run(u"select lpad(' ', 2 * (level - 1)) || operation || decode(options, "
                            "null, '', ' ' || options) || decode(object_name, null, '', ' ' || "
                            "object_name) from plan_table start with id = 0 and statement_id = 'x' "
                            "connect by prior id = parent_id and statement_id = 'x' "
                            "order by id, position"_s),
                 u"SELECT STATEMENT\n  TABLE ACCESS BY INDEX ROWID T\n"
                 "    INDEX UNIQUE SCAN SYS_C0001001"_s);
        QVERIFY(failureOf(script.session(), u"explain plan for create table u (a number)"_s)
                    .startsWith(u"ORA-"_s));
        QCOMPARE(script.run(u"explain plan for delete from t where b > 1"_s), QString());
        QCOMPARE(script.run(u"select operation from plan_table where statement_id is null and "
                            "id = 1"_s),
                 u"DELETE"_s);
        QCOMPARE(script.run(u"select count(*) from t"_s), u"0"_s);
    }
};

QTEST_GUILESS_MAIN(tst_dictionary)
#include "tst_dictionary.moc"
