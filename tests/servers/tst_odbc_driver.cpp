#include "FaultTools.h"
#include "ProviderTable.h"
#include "TestDataSources.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

// A service that is no data source goes to an installed Oracle driver. The manager's own trace
// tells what such a driver is given; its library is not there, so that no client is needed.
class tst_odbc_driver : public QObject {
    Q_OBJECT

private:
    TestDataSources m_sources;

    QString library() const { return m_sources.path(u"libsqora.so.19.1"_s); }
    // The connection string of the last attempt.
    QString given() const {
        QFile trace(m_sources.path(u"trace.log"_s));
        if (!trace.open(QFile::ReadOnly))
            return u"no trace"_s;
        static const QRegularExpression attempt(u"Str In = \\[(.*)\\]\\[length"_s);
        QString last;
        for (auto all = attempt.globalMatch(QString::fromUtf8(trace.readAll())); all.hasNext();)
            last = all.next().captured(1);
        return last;
    }

private Q_SLOTS:
    void initTestCase() {
        m_sources.addDrivers(
            u"[ODBC]\nTrace=Yes\nTraceFile=%1\n\n[Another driver]\nDriver=%2\n\n"
            "[Bank's oracle 19 ODBC driver]\nDriver=%2\n\n[Oracle of old]\nDriver=%2\n\n"_s.arg(
                m_sources.path(u"trace.log"_s), library()));
        m_sources.add(u"[Sales]\nDriver=Another driver\nDBQ=elsewhere\n\n"_s);
    }

    void whatTheDriverIsGiven_data() {
        QTest::addColumn<QString>("service");
        QTest::addColumn<QString>("given");
        const QString driver = u"DRIVER={Bank's oracle 19 ODBC driver};DBQ="_s;
        QTest::newRow("name of tnsnames.ora") << u"ORCL"_s << driver + u"ORCL;UID="_s;
        QTest::newRow("host, port and service")
            << u"db.example.com:1521/sales"_s << driver + u"db.example.com:1521/sales;UID="_s;
        QTest::newRow("what would end the value")
            << u"(DESCRIPTION=(HOST=a));x}"_s << driver + u"{(DESCRIPTION=(HOST=a));x}}};UID="_s;
        QTest::newRow("a data source comes first, in any case")
            << u"SALES"_s << u"DSN=Sales;UID="_s;
    }
    void whatTheDriverIsGiven() {
        QFETCH(QString, service);
        QFETCH(QString, given);
        DataSource source{{}, service, u"scott"_s, u"tiger"_s};
        const QString failure = failureOf([&] { openSession(source, providerTable()); });
        QVERIFY2(failure.contains(library()), qPrintable(failure)); // says what is missing
        QVERIFY2(this->given().startsWith(given + u"scott;PWD="_s), qPrintable(this->given()));
    }
};

QTEST_GUILESS_MAIN(tst_odbc_driver)
#include "tst_odbc_driver.moc"
