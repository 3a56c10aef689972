#include "OracleCases.h"

#include <QTest>

// Windows whose frame differs from row to row, or is a stretch of time.
class tst_oracle_window : public OracleCases {
    Q_OBJECT

private:
    std::unique_ptr<OracleScript> m_tables;

private Q_SLOTS:
    void initTestCase() {
        qputenv("QUILLMATE_HOME", m_home.path().toUtf8());
        m_tables = std::make_unique<OracleScript>();
        QCOMPARE(m_tables->runAll(QString::fromUtf8(R"(
create table s (g number, d date, n number, v number, k number);
insert into s values (1, date '2024-01-01', .1, 10, 0);
insert into s values (1, date '2024-01-02', .2, 20, 1);
insert into s values (1, date '2024-01-05', .3, 30, 2);
insert into s values (1, date '2024-01-06', .4, 40, 1);
insert into s values (2, date '2024-02-06', null, 50, 1);
create table clock (t date, v number);
insert into clock values (timestamp '2024-01-01 10:00:00', 1);
insert into clock values (timestamp '2024-01-01 10:00:01', 2);
insert into clock values (timestamp '2024-01-01 10:00:02', 3))")),
                 QString());
    }
    void cleanupTestCase() { m_tables.reset(); }

    void frames_data() {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("outcome");
        const auto row = [](const char* call, const char* outcome) {
            QTest::newRow(call) << QString::fromLatin1(call) << QString::fromLatin1(outcome);
        };
        row("sum(v) over (order by d rows between k preceding and current row)", "10 30 60 70 90");
        row("first_value(v) over (order by d rows between k preceding and current row)",
            "10 10 10 30 40");
        row("last_value(v) over (order by d rows between current row and k following)",
            "10 30 50 50 50");
        row("nth_value(v, 2) over (order by d rows between k preceding and unbounded following)",
            "20 20 20 40 50");
        row("first_value(n ignore nulls) over (order by d desc rows between k preceding and "
            "current row)",
            ".1 .3 .4 .4 null");
        row("count(*) over (order by d rows between k preceding and k following)", "1 3 5 3 2");
        row("count(n) over (partition by g order by d rows between k - k preceding and k "
            "following)",
            "1 2 2 1 0");
        row("min(v) over (order by d rows between k preceding and 1 following)", "10 10 10 30 40");
        row("max(v) over (order by d desc rows between k preceding and current row)",
            "10 30 50 50 50");
        row("avg(v) over (order by d range between k preceding and k following)", "10 15 35 35 50");
        row("sum(v) over (order by d range between k preceding and 1 following)", "30 30 70 70 50");
        row("sum(v) over (order by v range between unbounded preceding and k * 10 following)",
            "10 60 150 150 150");
        row("sum(v) over (order by d range between numtoyminterval(k, 'month') preceding and "
            "current row)",
            "10 30 60 100 90");
        row("sum(v) over (order by d range numtodsinterval(k * 24, 'hour') preceding)",
            "10 30 30 70 50");
        row("count(n) over (order by n desc range between .1 preceding and .1 following)",
            "2 3 3 2 0");
        row("sum(v) over (order by d rows between (select max(k) from s) preceding and k "
            "following)",
            "10 60 150 140 120");
        row("sum(v) over (order by d rows between null preceding and current row)",
            "null null null null null");
        row("sum(v) over (order by d rows between k - 1 preceding and current row)",
            "ORA-01428: argument '-1' is out of range");
        row("sum(v) over (order by d range interval '-1' day preceding)",
            "ORA-01428: argument '-1' is out of range");
        row("sum(v) over (order by v, d range 1 preceding)",
            "ORA-30486: invalid window aggregation group in the window specification");
        row("row_number() over (order by d rows 1 preceding)",
            "ORA-00907: missing right parenthesis");
    }
    void frames() {
        QFETCH(QString, call);
        const QString query = QStringLiteral("select nvl(to_char(%1), 'null') from s order by v");
        QTEST(m_tables->run(query.arg(call)).replace(u'\n', u' '), "outcome");
    }

    // A second is no number of days that a binary number holds.
    void time_is_exact() {
        QCOMPARE(m_tables->run(QStringLiteral("select sum(v) over (order by t range between "
                                              "interval '1' second preceding and interval '1' "
                                              "second following) from clock order by t")),
                 QStringLiteral("3\n6\n5"));
        QCOMPARE(m_tables->run(QStringLiteral("select sum(v) over (order by t desc range 1/86400 "
                                              "preceding) from clock order by t")),
                 QStringLiteral("3\n5\n3"));
    }

    void frames_after_grouping() {
        QCOMPARE(m_tables->run(QStringLiteral(
                     "select g, sum(sum(v)) over (order by g range g - 1 preceding) from s group "
                     "by g order by g")),
                 QStringLiteral("1|100\n2|150"));
    }
};

QTEST_GUILESS_MAIN(tst_oracle_window)
#include "tst_oracle_window.moc"
