#include "Error.h"
#include "QueryBatch.h"
#include "ScriptText.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_batch : public QObject {
    Q_OBJECT

private:
    // "S[select 1] G[drop t]"
    static QString batchText(const colQueries& batch) {
        QStringList parts;
        for (const cQuery& query : batch)
            parts << query.QueryType.left(1) + u'[' + query.QueryString + u']';
        return parts.join(u' ');
    }

private Q_SLOTS:
    void stripComments_data() {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("flat");
        QTest::newRow("empty text is one empty line") << u""_s << u" "_s;
        QTest::newRow("breaks become one blank") << u"a\r\nb\r\n"_s << u" a b "_s;
        QTest::newRow("lines are trimmed") << u"  a  \r\n\tb \r\n"_s << u" a \tb "_s;
        QTest::newRow("comment line goes") << u"a\r\n   -- x;\r\nb"_s << u" a  b"_s;
        QTest::newRow("comment behind code stays") << u"x -- y\r\nz"_s << u" x -- y z"_s;
        QTest::newRow("comment behind a tab is no comment line") << u"\t-- x"_s << u" \t-- x"_s;
        QTest::newRow("block comment stays") << u"/* a\r\n*/ b"_s << u" /* a */ b"_s;
        QTest::newRow("lone LF ends no line") << u"a\nb"_s << u" ab"_s;
        QTest::newRow("lone CR ends a line") << u"a\rb"_s << u" a b"_s;
        QTest::newRow("NUL and a lone surrogate stay")
            << QString(u"a\0\xD800 b"_s) << QString(u" a\0\xD800 b"_s);
    }
    void stripComments() {
        QFETCH(QString, script);
        QTEST(Strip_Comments(script), "flat");
    }

    void splitQueries_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("batch");
        QTest::addColumn<QString>("dropped");
        QTest::newRow("empty text is one statement") << u"  "_s << u"G[]"_s << u""_s;
        QTest::newRow("no end mark needed for one")
            << u" SELECT 1 FROM DUAL "_s << u"S[SELECT 1 FROM DUAL]"_s << u""_s;
        QTest::newRow("what follows the last mark is dropped")
            << u"SELECT 1; SELECT 2 "_s << u"S[SELECT 1]"_s << u"SELECT 2"_s;
        QTest::newRow("empty statements stay") << u"a;;b;"_s << u"G[a] G[] G[b]"_s << u""_s;
        QTest::newRow("only a mark") << u";"_s << u"G[]"_s << u""_s;
        QTest::newRow("a mark inside a literal cuts")
            << u"select 'a;b' from dual;"_s << u"S[select 'a] G[b' from dual]"_s << u""_s;
        QTest::newRow("type by the first six letters")
            << u"Select 1;SELECTED;(select 1);with x;-- select;selec;\tselect 1;"_s
            << u"S[Select 1] S[SELECTED] G[(select 1)] G[with x] G[-- select] G[selec] G[\tselect 1]"_s
            << u""_s;
    }
    void splitQueries() {
        QFETCH(QString, text);
        const colQueries batch = Split_Queries(text);
        QTEST(batchText(batch), "batch");
        QTEST(Unterminated_Rest(text), "dropped");
        for (const cQuery& query : batch)
            QVERIFY(query.QueryValid);
    }

    // A rule that copies the rest at each cut or line would take minutes here.
    void largeScripts() {
        const QString statement = u"select '"_s + QString(1 << 20, u'x') + u"' from dual"_s;
        QCOMPARE(Split_Queries(Strip_Comments(statement)).Item(1).QueryString, statement);

        const QString many = u"select 1 from dual;\r\n"_s.repeated(200'000);
        QCOMPARE(Split_Queries(Strip_Comments(many)).Count(), 200'000);
        const QString blanks = QString(1 << 20, u' ') + u';' + QString(1 << 20, u' ');
        QCOMPARE(batchText(Split_Queries(Strip_Comments(blanks))), u"G[]"_s);
    }

    void collection() {
        colQueries queries;
        queries.Add(u"SELECT"_s, u"one"_s, true).QueryString = u"first"_s;
        queries.Add(u"GENERAL"_s, u"two"_s, false, u"Key"_s);
        queries.Add(u"GENERAL"_s, u"three"_s, true);
        QCOMPARE(queries.Item(1).QueryString, u"first"_s);
        QCOMPARE(queries.Item(u"KEY"_s).QueryString, u"two"_s);
        QVERIFY(!queries.Item(2).QueryValid);
        QVERIFY_THROWS_EXCEPTION(Error, queries.Add(u"SELECT"_s, u"x"_s, true, u"key"_s));
        queries.Remove(u"key"_s);
        queries.Remove(1);
        QCOMPARE(batchText(queries), u"G[three]"_s);
        QVERIFY_THROWS_EXCEPTION(Error, queries.Item(0));
        QVERIFY_THROWS_EXCEPTION(Error, queries.Item(2));
        QVERIFY_THROWS_EXCEPTION(Error, queries.Item(QString()));
        QVERIFY_THROWS_EXCEPTION(Error, queries.Remove(u"gone"_s));
    }

    void lineEndsAreTheEditors() {
        QCOMPARE(withEditorLineEnds(u"a\nb\rc\r\nd\n\n"_s), u"a\r\nb\r\nc\r\nd\r\n\r\n"_s);
    }
};

QTEST_GUILESS_MAIN(tst_batch)
#include "tst_batch.moc"
