#include "DictionaryTree.h"
#include "NodeKeys.h"
#include "RecordingHost.h"
#include "SchemaTree.h"
#include "ScriptedServer.h"
#include "Trace.h"
#include "TreeText.h"
#include "modDatabase.h"

#include <QAbstractItemModelTester>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const auto tablesSql = u"SELECT * FROM USER_TABLES WHERE TABLE_NAME <>'PLAN_TABLE'"_s;
const auto viewsSql = u"SELECT VIEW_NAME FROM USER_VIEWS"_s;
const auto columnsSql = u"SELECT COLUMN_NAME, DATA_TYPE, DATA_LENGTH, NULLABLE FROM "
                        "USER_TAB_COLUMNS WHERE TABLE_NAME = 'EMP'"_s;
const auto sessionsSql =
    u"select a.spid pid, b.sid sid, b.serial# ser#, b.machine box, b.username username,"
    "b.osuser os_user, b.program program from v$session b, v$process a  Where b.paddr = a.addr "
    "and    type='USER' and b.username is not null order  by spid"_s;
const auto dictionarySql = u"SELECT TABLE_NAME FROM DICTIONARY WHERE TABLE_NAME LIKE 'USER%'"_s;

ScriptedAnswer oneColumn(const QString& name, const QList<QByteArray>& values) {
    ScriptedAnswer answer{{name}, {}, {}, -1};
    for (const QByteArray& value : values)
        answer.rows.push_back({value});
    return answer;
}

ScriptedAnswer failing(ScriptedAnswer answer, qsizetype row) {
    answer.failure = serverError(1, u"ORA-03113: end-of-file"_s);
    answer.failsAt = row;
    return answer;
}

struct Browser {
    RecordingHost host;
    ScriptedServer server{host.log};
    TraceLog trace;
    modDatabase database{host, trace, [this] { return server.connection(); }};
    TreeNodes nodes;
    NodeKeys keys;
    SchemaTree schema{{nodes, keys, database, host}};
    QAbstractItemModelTester tester{&nodes, QAbstractItemModelTester::FailureReportingMode::QtTest};

    Browser() {
        database.Open_Connection();
        schema.Initialise_Schema_Tree();
    }
    TreeNode& open(const NodePath& path) {
        TreeNode* node = nodes.find(path);
        Q_ASSERT(node);
        nodes.setExpanded(*node, true);
        schema.Expand(*node);
        return *node;
    }
};

const NodePath tables = {{u"Tables"_s, u"TABLES"_s}};
const NodePath sessions = {{u"Sessions"_s, u"SESSIONS"_s}};

NodePath folderOf(const QString& table, const QString& text, const QString& tag) {
    NodePath path = tables;
    path.emplace_back(table, u"TABLE"_s);
    path.emplace_back(text, tag);
    return path;
}

} // namespace

class tst_Browser : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theFoldersAskNothing() {
        Browser b;
        QCOMPARE(treeText(b.nodes, true), u"+Tables|T12345|folderclosed|TABLES\n"
                                          "  |TABLES_DUMMYNODE||DUMMY\n"
                                          "+Views|V12345|folderclosed|VIEWS\n"
                                          "  |VIEWS_DUMMYNODE||DUMMY\n"
                                          "+Sessions|S12345|folderclosed|SESSIONS\n"
                                          "  |SESSIONS_DUMMYNODE||DUMMY\n"_s);
        QVERIFY(b.host.log.isEmpty());
        b.schema.Initialise_Schema_Tree();
        QCOMPARE(b.nodes.count(), 6);
    }

    void tablesBringTheirFolders() {
        Browser b;
        b.server.answers[tablesSql] = oneColumn(u"table_name"_s, {"EMP"});
        TreeNode& folder = b.open(tables);
        QCOMPARE(treeText(b.nodes, true, b.nodes.indexOf(folder)),
                 u"+EMP|EMP1|table|TABLE\n"
                 "  +Columns|Columns2|folderclosed|TABLE_COLUMNS\n    |X3||DUMMY\n"
                 "  +Indexes|Indexes4|folderclosed|TABLE_INDEXES\n    |X5||DUMMY\n"
                 "  +Constraints|Constraints6|folderclosed|TABLE_CONSTRAINTS\n    |X7||DUMMY\n"
                 "  +Triggers|Triggers8|folderclosed|TABLE_TRIGGERS\n    |X9||DUMMY\n"_s);
        QVERIFY(isTableOrView(folder.child(0)) && !isTableOrView(folder));
        QCOMPARE(openTableSql(folder.child(0)), u"SELECT * FROM EMP"_s);
        b.schema.Expand(folder.child(0));
        QCOMPARE(b.host.log, QStringList{u"execute "_s + tablesSql});
    }

    void folders_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("node");
        const auto sql = u"SELECT * FROM %1 WHERE TABLE_NAME = 'EMP'"_s;
        QTest::newRow("indexes") << u"Indexes"_s << u"TABLE_INDEXES"_s << sql.arg(u"USER_INDEXES"_s)
                                 << u"INDEX_NAME"_s << u"N|N10|index|INDEX\n"_s;
        QTest::newRow("constraints")
            << u"Constraints"_s << u"TABLE_CONSTRAINTS"_s << sql.arg(u"USER_CONSTRAINTS"_s)
            << u"CONSTRAINT_NAME"_s << u"N|N10|constraint|CONSTRAINT\n"_s;
        QTest::newRow("triggers") << u"Triggers"_s << u"TABLE_TRIGGERS"_s
                                  << sql.arg(u"USER_TRIGGERS"_s) << u"TRIGGER_NAME"_s
                                  << u"N|N10|trigger|TRIGGER\n"_s;
    }
    void folders() {
        QFETCH(QString, text);
        QFETCH(QString, tag);
        QFETCH(QString, sql);
        QFETCH(QString, field);
        Browser b;
        b.server.answers[tablesSql] = oneColumn(u"TABLE_NAME"_s, {"EMP"});
        b.server.answers[sql] = oneColumn(field, {"N"});
        b.open(tables);
        TreeNode& folder = b.open(folderOf(u"EMP"_s, text, tag));
        QTEST(treeText(b.nodes, true, b.nodes.indexOf(folder)), "node");
        b.schema.Expand(folder); // again: not twice
        QCOMPARE(folder.Children(), 1);
        QCOMPARE(b.host.log.count(u"execute "_s + sql), 2);
        b.server.answers.remove(sql);
        b.schema.Expand(folder);
        QCOMPARE(folder.Children(), 0);
        QVERIFY(b.host.log.last().contains(u"..MDIMain.Load_Table"_s + text));
    }

    void columns() {
        Browser b;
        b.server.answers[tablesSql] = oneColumn(u"TABLE_NAME"_s, {"EMP"});
        b.server.answers[columnsSql] = {
            {u"COLUMN_NAME"_s, u"DATA_TYPE"_s, u"DATA_LENGTH"_s, u"NULLABLE"_s},
            {{"EMPNO", "NUMBER", "22", "N"},
             {"HIRED", "DATE", "7", "Y"},
             {"ODD", std::nullopt, std::nullopt, std::nullopt}},
            {},
            -1};
        b.open(tables);
        TreeNode& folder = b.open(folderOf(u"EMP"_s, u"Columns"_s, u"TABLE_COLUMNS"_s));
        QCOMPARE(treeText(b.nodes, false, b.nodes.indexOf(folder)),
                 u"EMPNO (number(22), Not Null)\nHIRED (date(7), Null)\nODD ((), Not Null)\n"_s);
        QCOMPARE(folder.child(0).Tag(), u"COLUMN"_s);
    }

    void aFailureIsReportedAndWhatCameBeforeItStays() {
        Browser b;
        b.server.answers[viewsSql] = oneColumn(u"OTHER"_s, {"V"});
        b.open({{u"Views"_s, u"VIEWS"_s}});
        QVERIFY(b.host.log.last().contains(u"Quillmate.Recordset..MDIMain.Load_Views"_s));
        b.open(tables);
        QVERIFY(b.host.log.last().startsWith(u"error "_s));
        QVERIFY(b.host.log.last().contains(
            u"server..modDatabase.Get_Recordset..MDIMain.Load_Tables | ORA-00900"_s));
        QCOMPARE(treeText(b.nodes), u"Tables\nViews\n+Sessions\n  \n"_s); // no signs, closed again
    }

    void sessionsOfUsers() {
        Browser b;
        b.server.answers[sessionsSql] = {
            {u"PID"_s, u"USERNAME"_s, u"PROGRAM"_s},
            {{"12", "SCOTT", "sql\r\nplus"}, {"13", "DEMO", std::nullopt}},
            {},
            -1};
        TreeNode& folder = b.open(sessions);
        QCOMPARE(treeText(b.nodes, true, b.nodes.indexOf(folder)),
                 u"SCOTT (sqlplus)|ID:12|sessions|\nDEMO ()|ID:13|sessions|\n"_s);
        b.schema.Expand(folder);
        QCOMPARE(folder.Children(), 2);
        QVERIFY(isTableOrView(folder.child(0)) == false);
    }

    void sessionsNotAvailable_data() {
        QTest::addColumn<ScriptedAnswer>("answer");
        QTest::addColumn<QString>("children");
        const QStringList columns = {u"PID"_s, u"USERNAME"_s, u"PROGRAM"_s};
        const std::vector<ScriptedAnswer::Row> twice = {{"1", "A", "p"}, {"1", "B", "q"}};
        QTest::newRow("no access") << failing({columns, {}, {}, -1}, -1) << u"<Not Available>||"_s;
        QTest::newRow("one process twice")
            << ScriptedAnswer{columns, twice, {}, -1} << u"A (p)|ID:1|sessions;<Not Available>||"_s;
    }
    void sessionsNotAvailable() {
        QFETCH(ScriptedAnswer, answer);
        Browser b;
        b.server.answers[sessionsSql] = answer;
        TreeNode& folder = b.open(sessions);
        QStringList children;
        for (qsizetype i = 0; i < folder.Children(); ++i)
            children << QStringList{folder.child(i).Text(), folder.child(i).Key(),
                                    folder.child(i).Image()}
                            .join(u'|');
        QTEST(children.join(u';'), "children");
        QCOMPARE(b.host.log.filter(u"error"_s), QStringList());
    }

    void aRefreshOpensWhatWasOpen() {
        Browser b;
        b.server.answers[tablesSql] = oneColumn(u"TABLE_NAME"_s, {"DEPT", "EMP"});
        b.server.answers[viewsSql] = oneColumn(u"VIEW_NAME"_s, {});
        b.server.answers[columnsSql] = {
            {u"COLUMN_NAME"_s, u"DATA_TYPE"_s, u"DATA_LENGTH"_s, u"NULLABLE"_s},
            {{"A", "X", "1", "Y"}},
            {},
            -1};
        b.open({{u"Views"_s, u"VIEWS"_s}});
        b.open(tables);
        b.open({{u"Tables"_s, u"TABLES"_s}, {u"EMP"_s, u"TABLE"_s}});
        b.open(folderOf(u"EMP"_s, u"Columns"_s, u"TABLE_COLUMNS"_s));
        const QString before = treeText(b.nodes);
        b.host.log.clear();
        b.schema.Refresh_Tree();
        QCOMPARE(b.host.log, (QStringList{u"execute "_s + tablesSql, u"execute "_s + viewsSql,
                                          u"execute "_s + columnsSql}));
        QCOMPARE(treeText(b.nodes), before);
        b.server.answers[tablesSql] = oneColumn(u"TABLE_NAME"_s, {"DEPT", "NEW"});
        b.server.answers[viewsSql] = oneColumn(u"VIEW_NAME"_s, {"V"});
        b.schema.Refresh_Tree();
        QVERIFY(!b.nodes.find({{u"Tables"_s, u"TABLES"_s}, {u"EMP"_s, u"TABLE"_s}}));
        QVERIFY(treeText(b.nodes).endsWith(u"-Views\n  V\n+Sessions\n  \n"_s));
        QCOMPARE(b.host.log.filter(u"error"_s), QStringList());
    }

    void theDictionaryIsReadOnceAConnection() {
        Browser b;
        TreeNodes nodes;
        DictionaryTree dictionary(nodes, b.database, b.host);
        b.server.answers[dictionarySql] = failing(oneColumn(u"TABLE_NAME"_s, {}), -1);
        dictionary.tabChosen();
        QVERIFY(b.host.log.last().contains(u"..MDIMain.Load_Dictionary |"_s));
        b.server.answers[dictionarySql] = oneColumn(u"TABLE_NAME"_s, {"USER_B", "USER_A"});
        dictionary.tabChosen();
        QCOMPARE(treeText(nodes, true), u"USER_B|USER_B||\nUSER_A|USER_A||\n"_s);
        b.host.log.clear();
        dictionary.tabChosen();
        QVERIFY(b.host.log.isEmpty());
        nodes.clear();
        b.database.Close_Connection();
        dictionary.tabChosen();
        QVERIFY(nodes.isEmpty() && b.host.log.isEmpty());
    }

    void rowsOfADictionaryView() {
        Browser b;
        TreeNodes nodes;
        DictionaryTree dictionary(nodes, b.database, b.host);
        TreeNode& view = nodes.add(nullptr, {u"USER_A"_s, {}, {}, u"USER_A"_s});
        b.server.answers[u"SELECT * FROM USER_A"_s] = {
            {u"N"_s, u"M"_s}, {{"1", "x"}, {std::nullopt, "y"}}, {}, -1};
        dictionary.Load_Dictionary_Children(view);
        QCOMPARE(treeText(nodes, true), u"+USER_A|USER_A||\n  1|||\n  |||\n"_s);
    }
};

QTEST_APPLESS_MAIN(tst_Browser)
#include "tst_browser.moc"
