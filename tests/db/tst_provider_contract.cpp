#include "ConnectionString.h"
#include "ProviderTable.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// Header and rows, one line each; a null shows as (null).
QString printed(Session& session, const QString& sql, qsizetype block = 1000) {
    const auto cursor = session.execute(sql);
    QStringList lines(1);
    for (const Column& column : cursor->columns())
        lines[0] += (lines[0].isEmpty() ? u""_s : u"|"_s) + column.name;
    CellStore rows(int(cursor->columns().size()));
    while (!cursor->columns().empty() && cursor->fetch(rows, block) > 0) {
    }
    for (qsizetype r = 0; r < rows.rows(); ++r) {
        QStringList cells;
        for (int c = 0; c < rows.columns(); ++c) {
            const Cell cell = rows.cell(r, c);
            cells << (cell.isNull ? u"(null)"_s : QString::fromUtf8(cell.view()));
        }
        lines << cells.join(u'|');
    }
    return lines.join(u'\n');
}

} // namespace

class tst_provider_contract : public QObject {
    Q_OBJECT
    QTemporaryDir m_home;
private Q_SLOTS:
    void initTestCase() { qputenv("QUILLMATE_HOME", m_home.path().toUtf8()); }
    void theDemoDatabaseIsMadeAtTheFirstConnect() {
        const auto session = openSession({{}, u"demo"_s, u"DEMO"_s, u"demo"_s}, providerTable());
        QCOMPARE(printed(*session, u"select * from dept where deptno < 30"_s),
                 u"DEPTNO|DNAME|LOC\n10|ACCOUNTING|NEW YORK\n20|RESEARCH|DALLAS"_s);
    }
};

QTEST_GUILESS_MAIN(tst_provider_contract)
#include "tst_provider_contract.moc"
