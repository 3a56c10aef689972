#include "PostgresServer.h"
#include "ServerFaults.h"

using namespace Qt::StringLiterals;

class tst_server_faults : public ServerFaults {
    Q_OBJECT

public:
    tst_server_faults()
        : ServerFaults(
              {std::make_unique<PostgresServer>(connections), connections,
               u"password authentication failed"_s,
               u"SELECT count(*) FROM generate_series(1, 2000000000)"_s,
               u"SELECT i, 'some text of row ' || i AS t FROM generate_series(1, %1) AS i"_s,
               u"ALTER ROLE scott PASSWORD '%1'"_s}) {}

private:
    static constexpr int connections = 6;

private Q_SLOTS:
    void anUnknownNameTellsWhatWasSeen() {
        const QString failure = failureOf([] { opened(u"NOWHERE"_s); });
        QVERIFY2(failure.startsWith(u"ORA-12154 "_s), qPrintable(failure));
        for (const QString& told : {u"no data source \"NOWHERE\""_s, u"PostgreSQL Unicode"_s,
                                    u"odbcinst.ini"_s, qEnvironmentVariable("ODBCINI")})
            QVERIFY2(failure.contains(told), qPrintable(failure));
    }
};

QTEST_GUILESS_MAIN(tst_server_faults)
#include "tst_server_faults.moc"
