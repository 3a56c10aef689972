#include "NodeKeys.h"
#include "RecordingHost.h"
#include "TreeNodes.h"
#include "modNodeKeys.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString packed = u" NODETYPE [TABLE] PARENTID [666]"_s;

} // namespace

class tst_NodeKeys : public QObject {
    Q_OBJECT
    RecordingHost m_host;

    QString assign(TreeNodes& nodes, NodeKeys& keys, const QString& text) {
        TreeNode& node = nodes.add(nullptr, {text, {}, {}, {}});
        keys.Assign_Node_Key(nodes, node);
        return node.Key();
    }

private Q_SLOTS:
    void assignedKeys() {
        TreeNodes nodes;
        NodeKeys keys;
        QCOMPARE(assign(nodes, keys, u"EMP"_s), u"EMP1"_s);
        QCOMPARE(assign(nodes, keys, u""_s), u"X2"_s);
        QCOMPARE(assign(nodes, keys, u"   "_s), u"X3"_s);
        QCOMPARE(assign(nodes, keys, u" a "_s), u" a 4"_s);
        keys.counter = 999'999;
        QCOMPARE(assign(nodes, keys, u"EMP"_s), u"EMP1000000"_s);
        QCOMPARE(assign(nodes, keys, u"DEPT"_s), u"DEPT1"_s);
    }

    void differentTextsNeverShareAKey() {
        TreeNodes nodes;
        NodeKeys keys;
        keys.counter = 6;
        QCOMPARE(assign(nodes, keys, u"EMP1"_s), u"EMP17"_s);
        keys.counter = 16;
        QCOMPARE(assign(nodes, keys, u"EMP"_s), u"EMP18"_s);
    }

    void values_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<qint16>("asked");
        QTest::addColumn<QString>("value");
        QTest::addColumn<qint16>("found");
        const QString two = u"A [x] A [y]"_s;
        QTest::newRow("first when none is asked for") << two << qint16(0) << u"x"_s << qint16(1);
        QTest::newRow("first") << two << qint16(1) << u"x"_s << qint16(1);
        QTest::newRow("second") << two << qint16(2) << u"y"_s << qint16(2);
        QTest::newRow("last when there are fewer") << two << qint16(5) << u"y"_s << qint16(2);
        QTest::newRow("case counts") << u"a [x]"_s << qint16(3) << u""_s << qint16(3);
        QTest::newRow("empty key") << u""_s << qint16(3) << u""_s << qint16(3);
        QTest::newRow("never closed") << u"A [x"_s << qint16(0) << u""_s << qint16(1);
    }
    void values() {
        QFETCH(QString, key);
        QFETCH(qint16, asked);
        QTEST(modNodeKeys::gfsGetTagValue(key, u"A ["_s, asked), "value");
        QTEST(asked, "found");
    }

    void numberedTags() {
        qint16 occurrence = 0;
        const QString key = u" FOLDER_TYPE [x]"_s;
        QCOMPARE(modNodeKeys::gfsGetValue(1000, key, occurrence), u"x"_s);
        QCOMPARE(modNodeKeys::gfsGetValue(1001, key, occurrence), u""_s);
        QCOMPARE(modNodeKeys::gfsGetTagValue(packed, u"PARENTID ["_s, occurrence), u"666"_s);
    }

    void setting() {
        modNodeKeys keys(m_host);
        QCOMPARE(keys.gfsSetTagValue(packed, u"NODETYPE ["_s, u" VIEW "_s),
                 u" NODETYPE [VIEW]  PARENTID [666]"_s);
        QCOMPARE(keys.gfsSetTagValue(u""_s, u"NODETYPE ["_s, u"TABLE"_s), u" NODETYPE [TABLE]"_s);
        QCOMPARE(keys.gfsSetTagValue(u" A [1]"_s, u"B ["_s, u" 2 "_s), u" A [1] B [ 2 ]"_s);
        QCOMPARE(keys.gfsSetTagValue(packed, u""_s, u"x"_s), packed);
        QVERIFY(m_host.log.isEmpty());
    }

    void adding() {
        modNodeKeys keys(m_host);
        QCOMPARE(keys.gfsAddText(packed, u"B [2]"_s, 1), u" B [2]"_s);
        QCOMPARE(keys.gfsAddText(packed, u""_s), u""_s);
        QVERIFY(m_host.log.isEmpty());
        QCOMPARE(keys.gfsAddText(packed, u"B"_s), u""_s);
        QCOMPARE(m_host.log, QStringList{u"msgbox[oki] Error in gfsaddtext"_s});
    }
};

QTEST_APPLESS_MAIN(tst_NodeKeys)
#include "tst_nodekeys.moc"
