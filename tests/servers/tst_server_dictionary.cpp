#include "DictionaryTree.h"
#include "NodeKeys.h"
#include "PostgresServer.h"
#include "RecordingHost.h"
#include "SchemaTree.h"
#include "TestDataSources.h"
#include "Trace.h"
#include "TreeText.h"
#include "modDatabase.h"

#include <QTest>

using namespace Qt::StringLiterals;

// The trees' own statements on a server with Oracle-flavoured views.
class tst_server_dictionary : public QObject {
    Q_OBJECT

private:
    PostgresServer m_server;
    TestDataSources m_sources;
    RecordingHost m_host;
    TraceLog m_trace;
    modDatabase m_database{m_host, m_trace};

private Q_SLOTS:
    void initTestCase() {
        if (!m_server.missing().isEmpty())
            QSKIP(qPrintable(m_server.missing()));
        m_server.start();
        m_server.sqlOfFile(QFINDTESTDATA("oracle_flavour.sql"));
        m_sources.add(m_server.dataSource(u"ORCL"_s, m_server.port()));
        m_database.Build_Connection_String(u"ORCL"_s, u"scott"_s, u"tiger"_s);
        QVERIFY2(m_database.Open_Connection(), qPrintable(m_trace.text()));
        for (const auto& statement :
             {u"CREATE TABLE dept (deptno numeric(2) CONSTRAINT pk_dept PRIMARY KEY,"
              " dname varchar2(14) NOT NULL)"_s,
              u"CREATE TABLE emp (empno numeric(4) CONSTRAINT pk_emp PRIMARY KEY,"
              " ename varchar2(10), hired timestamp, deptno numeric(2) CONSTRAINT fk_dept"
              " REFERENCES dept)"_s,
              u"CREATE INDEX emp_name ON emp (ename)"_s,
              u"CREATE VIEW staff AS SELECT ename FROM emp"_s})
            m_database.connection()->Execute(statement);
    }

    void theSchemaTree() {
        TreeNodes nodes;
        NodeKeys keys;
        SchemaTree schema({nodes, keys, m_database, m_host});
        schema.Initialise_Schema_Tree();
        const auto open = [&](const NodePath& path) {
            TreeNode* node = nodes.find(path);
            QVERIFY(node);
            nodes.setExpanded(*node, true);
            schema.Expand(*node);
        };
        const NodePath::value_type tables(u"Tables"_s, u"TABLES"_s), emp(u"EMP"_s, u"TABLE"_s);
        open({tables});
        open({{u"Views"_s, u"VIEWS"_s}});
        open({tables, emp, {u"Columns"_s, u"TABLE_COLUMNS"_s}});
        open({tables, emp, {u"Indexes"_s, u"TABLE_INDEXES"_s}});
        open({tables, emp, {u"Constraints"_s, u"TABLE_CONSTRAINTS"_s}});
        const QString text = treeText(nodes);
        for (const QString& expected : {u"DEPT\n"_s, u"EMP\n"_s, u"STAFF\n"_s, u"EMP_NAME"_s,
                                        u"PK_EMP"_s, u"FK_DEPT"_s, u"HIRED"_s, u"DEPTNO"_s})
            QVERIFY2(text.contains(expected), qPrintable(expected + u" is not in\n"_s + text));
        QVERIFY2(!text.contains(u"PK_DEPT"_s), qPrintable(text));
        QCOMPARE(m_host.log.filter(u"showError"_s), QStringList());
    }

    void theDictionary() {
        TreeNodes nodes;
        DictionaryTree dictionary(nodes, m_database, m_host);
        dictionary.tabChosen();
        QVERIFY2(treeText(nodes).contains(u"USER_TAB_COLUMNS"_s), qPrintable(treeText(nodes)));
    }

    // The server cannot read "b.serial#", so the user is told that there is nothing to see.
    void theSessionListIsNotAvailable() {
        TreeNodes nodes;
        NodeKeys keys;
        SchemaTree schema({nodes, keys, m_database, m_host});
        schema.Initialise_Schema_Tree();
        TreeNode* sessions = nodes.find({{u"Sessions"_s, u"SESSIONS"_s}});
        nodes.setExpanded(*sessions, true);
        schema.Expand(*sessions);
        QVERIFY(treeText(nodes).contains(u"<Not Available>"_s));
        const auto next = m_database.Get_Recordset(u"SELECT 1 AS a"_s, 0); // the connection goes on
        QCOMPARE(next->text(u"a"), u"1"_s);
    }

    void aPlanThatTheServerCannotMake() {
        try {
            m_database.connection()->Execute(
                u"Explain Plan set Statement_Id = 'TALLOWEX' FOR  SELECT 1"_s);
            QFAIL("the server explains it");
        } catch (const ProviderError& error) {
            QCOMPARE(error.number(), DbErrorNumber::GeneralFailure); // else no "Not available."
        }
    }

    void severalResultsOfOneText() {
        m_database.connection()->Execute(u"CREATE TEMPORARY TABLE two (a int)"_s);
        const auto rows = m_database.Get_Recordset(
            u"INSERT INTO two VALUES (7); SELECT a FROM two; SELECT 8 AS a"_s, 0);
        QCOMPARE(rows->text(u"A"), u"7"_s);
    }
};

QTEST_GUILESS_MAIN(tst_server_dictionary)
#include "tst_server_dictionary.moc"
