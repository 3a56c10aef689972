#include "MariaServer.h"
#include "ServerFaults.h"

using namespace Qt::StringLiterals;

// The same faults from a server whose driver tells them in its own way.
class tst_maria_faults : public ServerFaults {
    Q_OBJECT

public:
    tst_maria_faults()
        : ServerFaults({std::make_unique<MariaServer>(), MariaServer::maxConnections,
                        u"Access denied"_s,
                        u"SELECT COUNT(*) FROM seq_1_to_2000000 a, seq_1_to_2000000 b"_s,
                        u"SELECT seq, CONCAT('some text of row ', seq) FROM seq_1_to_%1"_s,
                        u"SET PASSWORD = PASSWORD('%1')"_s}) {}
};

QTEST_GUILESS_MAIN(tst_maria_faults)
#include "tst_maria_faults.moc"
