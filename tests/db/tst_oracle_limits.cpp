#include "OracleScript.h"

#include <QTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace {

// The text `count` times with "#" numbered, `separator` between.
QString many(QLatin1String text, int count, QLatin1String separator = {}) {
    QString all;
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            all += separator;
        all += QString(text).replace(u'#', QString::number(i));
    }
    return all;
}

QString nested(QLatin1String open, const QString& inner, QLatin1String close, int depth) {
    return QString(open).repeated(depth) + inner + QString(close).repeated(depth);
}

// Every beginning of these is run.
constexpr const char* longStatements[] = {
    "with w (a, b) as (select n, count(*) over (partition by c order by n desc rows between 1 "
    "preceding and current row) from t where c like 'a\\_%' escape '\\' group by rollup (n, c) "
    "having sum(n) > 1e2) select /*+ x */ distinct w.*, case a when 1 then q'[it's]' else "
    "to_char(date '2001-02-03', 'FMDD Month YYYY') end as \"Quoted Name\", t2.* from w left outer "
    "join t t2 using (n), (t cross join dual) where a between 1 and 2 and (a, b) not in (select 1, "
    "2 from dual minus select 3, 4 from dual) or exists (select null from t x where x.n(+) = w.a) "
    "order siblings by 1 nulls first, 2 desc fetch first 3 rows with ties",
    "select level, prior n, connect_by_root c, sys_connect_by_path(c, '/') from t start with n is "
    "null connect by nocycle prior n = n + 1 and level < 5 order siblings by c",
    "insert all when n > 1 then into t (n, c) values (n, default) else into t values (0, 'x') "
    "select n, listagg(c, ',') within group (order by c) from t group by n",
    "merge into t using (select 1 n from dual) s on (t.n = s.n) when matched then update set t.c = "
    "'y' where s.n > 0 delete where t.n = 3 when not matched then insert (n, c) values (s.n, 'z')",
    "update t a set (n, c) = (select max(n), min(c) from t b where b.n = a.n) where rowid in "
    "(select rowid from t) and c is not null",
    "create table made (id number(5, 2) default 1 + 2 constraint made_pk primary key, at timestamp"
    "(3) not null, kind char(3 char) check (kind in ('a', 'b')), boss references made on delete "
    "cascade, constraint made_u unique (at, kind) using index tablespace users) storage (initial "
    "1)",
    "create or replace trigger made_t before insert or update of kind on made for each row when "
    "(new.kind is null) begin :new.kind := 'a'; end;",
    "select * from t pivot (sum(n) s for c in ('a' as x, 'b')) unpivot include nulls (v for k in "
    "(x_s, \"'b'_S\" as 'b'))",
    "explain plan set statement_id = 'p' for select interval '1 2:03:04.5' day to second, "
    "timestamp '2001-01-01 00:00:00', cast(null as varchar2(3)), extract(year from sysdate), "
    "trim(both 'x' from c), -n ** 2 from t@link",
};

} // namespace

// Statements beyond every measure: the right answer or a numbered error, never an end of the
// program.
class tst_oracle_limits : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<OracleScript> m_tables;

    static void row(const char* fault, const QString& sql, const char* outcome) {
        QTest::newRow(fault) << sql << QString::fromUtf8(outcome);
    }

private Q_SLOTS:
    void init() {
        m_tables = std::make_unique<OracleScript>();
        QCOMPARE(
            m_tables->runAll(u"create table t (n number, c varchar2(10));\n"
                             "insert into t values (1, 'a');\ninsert into t values (2, 'b')"_s),
            QString());
    }

    void size_data() {
        constexpr int thousand = 1000;
        constexpr int tenThousand = 10000;
        constexpr int fiftyThousand = 50000;
        constexpr int tenMillion = 10000000;
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("outcome");
        const QString count = u"select count(*) from t where "_s;
        row("AND", count + many("n <> # + 5"_L1, fiftyThousand, " and "_L1), "2");
        row("OR", count + many("n = #"_L1, fiftyThousand, " or "_L1), "2");
        row("OR without equal sides", count + many("n < -#"_L1, fiftyThousand, " or "_L1), "0");
        row("IN", count + u"n in ("_s + many("#"_L1, fiftyThousand, ","_L1) + u')', "2");
        row("IN of texts", count + u"n in ("_s + many("'#'"_L1, fiftyThousand, ","_L1) + u')', "2");
        row("IN of rows",
            count + u"(n, c) in ("_s + many("(#, 'a')"_L1, tenThousand, ","_L1) + u')', "1");
        row("ANY", count + u"n > any ("_s + many("#"_L1, tenThousand, ","_L1) + u')', "2");
        row("||", u"select length("_s + many("c"_L1, thousand, "||"_L1) + u") from t where n = 1"_s,
            "1000");
        row("+", u"select "_s + many("n"_L1, fiftyThousand, "+"_L1) + u" from t where n = 2"_s,
            "100000");
        row("parentheses",
            u"select "_s + nested("("_L1, u"n"_s, ")"_L1, tenThousand) + u" from t where n = 1"_s,
            "1");
        row("parentheses around a condition",
            count + nested("("_L1, u"n = 1"_s, ")"_L1, tenThousand), "1");
        row("parentheses around a query",
            nested("("_L1, u"select n from t where n = 1"_s, ")"_L1, 3), "1");
        row("parentheses left open", u"select "_s + QString(u'(').repeated(tenThousand),
            "ORA-00936: missing expression");
        row("CASE",
            u"select case n "_s + many("when # then 'x#' "_L1, thousand) +
                u"end from t where n = 1"_s,
            "x1");
        row("CASE in ELSE",
            u"select "_s + many("case when n = # then 'x' else "_L1, tenThousand) + u"'y'"_s +
                many(" end"_L1, tenThousand) + u" from t"_s,
            "ORA-03001: unimplemented feature: text nested deeper than 200 levels cannot be used "
            "in "
            "the embedded database");
        row("NOT", count + nested("not ("_L1, u"n = 1"_s, ")"_L1, tenThousand),
            "ORA-03001: unimplemented feature: an expression nested deeper than 600 levels cannot "
            "be used in the embedded database");
        row("queries in queries",
            nested("select * from ("_L1, u"select 1 from dual"_s, ")"_L1, tenThousand),
            "ORA-03001: unimplemented feature: text nested deeper than 200 levels cannot be used "
            "in "
            "the embedded database");
        row("UNION ALL",
            u"select count(*) from ("_s +
                many("select # from dual"_L1, thousand, " union all "_L1) + u')',
            "1000");
        row("tables", u"select count(*) from "_s + many("t t#"_L1, 65, ","_L1),
            "ORA-00439: feature not enabled: a statement as large as this (at most 64 tables in a "
            "join)");
        row("columns of a query", u"select "_s + many("n"_L1, 2001, ","_L1) + u" from t"_s,
            "ORA-01792: maximum number of columns in a table or view is 1000");
        row("columns of a table", u"create table w ("_s + many("c# number"_L1, 1001, ","_L1) + u')',
            "ORA-01792: maximum number of columns in a table or view is 1000");
        row("a literal", u"select length('"_s + QString(u'x').repeated(4000) + u"') from dual"_s,
            "4000");
        row("a literal that is too long",
            u"select length('"_s + QString(u'x').repeated(4001) + u"') from dual"_s,
            "ORA-01704: string literal too long");
        row("10 MB of a literal",
            u"select '"_s + QString(u'x').repeated(tenMillion) + u"' from dual"_s,
            "ORA-01704: string literal too long");
        row("10 MB of a name", QString(u'x').repeated(tenMillion),
            "ORA-00972: identifier is too long");
        row("10 MB of comment",
            u"select /*"_s + QString(u'*').repeated(tenMillion) + u"*/ 1 from dual"_s, "1");
    }
    void size() {
        QFETCH(QString, sql);
        QFETCH(QString, outcome);
        QCOMPARE(m_tables->run(sql), outcome);
    }

    // Found by changing statements at random.
    void leftOut_data() {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("outcome");
        row("a table's columns", u"create table made nomonitoring"_s,
            "ORA-00906: missing left parenthesis");
        row("a key's columns", u"create table made (primary key)"_s,
            "ORA-00906: missing left parenthesis");
        row("what a constraint is about", u"create table made (a number, constraint c not null)"_s,
            "ORA-00904: : invalid identifier");
    }
    void leftOut() {
        QFETCH(QString, sql);
        QFETCH(QString, outcome);
        QCOMPARE(m_tables->run(sql), outcome);
    }

    void cutOffAnywhere() {
        for (const char* statement : longStatements) {
            const QString whole = QString::fromUtf8(statement);
            for (qsizetype size = 1; size <= whole.size(); ++size) {
                const QString outcome = m_tables->run(whole.first(size));
                QVERIFY2(!outcome.startsWith("ORA-00600"_L1),
                         qPrintable(whole.first(size) + u'\n' + outcome));
            }
        }
    }

    // Everything below everything, sorted, grows without end; what was done before it stays.
    void memory() {
        constexpr sqlite3_int64 little = 16 << 20;
        QCOMPARE(m_tables->run(u"savepoint s"_s), QString());
        QCOMPARE(m_tables->run(u"insert into t select level + 2, 'x' from dual connect by level <= "
                               "50"_s),
                 QString());
        const sqlite3_int64 before = sqlite3_soft_heap_limit64(little);
        const QString outcome = m_tables->run(u"select n from t connect by level < 9 order by c"_s);
        sqlite3_soft_heap_limit64(before);
        QVERIFY(before > little);
        QCOMPARE(outcome, u"ORA-04030: out of process memory"_s);
        QCOMPARE(m_tables->run(u"select count(*) from t"_s), u"52"_s);
        QCOMPARE(m_tables->run(u"rollback"_s), QString());
        QCOMPARE(m_tables->run(u"select count(*) from t"_s), u"2"_s);
    }
};

QTEST_GUILESS_MAIN(tst_oracle_limits)
#include "tst_oracle_limits.moc"
