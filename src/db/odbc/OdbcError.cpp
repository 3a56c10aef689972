#include "OdbcError.h"

#include "OdbcText.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

// Which server's failure is which of Oracle's. The first row that fits wins: an empty state, a zero
// native code or an empty text fits all.
struct Meaning {
    QLatin1StringView state; // the SQLSTATE or its beginning
    qint32 native;
    QLatin1StringView text; // contained in the message
    QLatin1StringView code;
    qint32 number;
};

constexpr qsizetype stateSize = 5;

constexpr Meaning meanings[] = {
    // Servers that are more exact in their own number than in the SQLSTATE (MariaDB).
    {""_L1, 1317, "interrupted"_L1, "ORA-01013"_L1, DbErrorNumber::GeneralFailure},
    {""_L1, 1969, "max_statement_time"_L1, "ORA-01013"_L1, DbErrorNumber::GeneralFailure},
    {""_L1, 2002, "Can't connect"_L1, "ORA-03113"_L1, DbErrorNumber::GeneralFailure},
    {""_L1, 2003, "Can't connect"_L1, "ORA-03113"_L1, DbErrorNumber::GeneralFailure},
    {""_L1, 2006, "gone away"_L1, "ORA-03113"_L1, DbErrorNumber::GeneralFailure},
    {""_L1, 2013, "Lost connection"_L1, "ORA-03113"_L1, DbErrorNumber::GeneralFailure},
    {""_L1, 1045, "Access denied"_L1, "ORA-01017"_L1, DbErrorNumber::GeneralFailure},
    {""_L1, 1040, "Too many connections"_L1, "ORA-00018"_L1, DbErrorNumber::GeneralFailure},
    {""_L1, 1048, "cannot be null"_L1, "ORA-01400"_L1, DbErrorNumber::GeneralFailure},
    {""_L1, 1062, "Duplicate"_L1, "ORA-00001"_L1, DbErrorNumber::GeneralFailure},
    // A driver that calls every failed login a lost connection (PostgreSQL).
    {"08"_L1, 0, "password authentication failed"_L1, "ORA-01017"_L1,
     DbErrorNumber::GeneralFailure},
    {"08"_L1, 0, "too many connections"_L1, "ORA-00018"_L1, DbErrorNumber::GeneralFailure},
    {"08"_L1, 0, "too many clients"_L1, "ORA-00018"_L1, DbErrorNumber::GeneralFailure},
    {"08"_L1, 0, "connection slots"_L1, "ORA-00018"_L1, DbErrorNumber::GeneralFailure},
    // A server that has no SQLSTATEs (SQLite).
    {"HY000"_L1, 0, "no such table"_L1, "ORA-00942"_L1, DbErrorNumber::GeneralFailure},
    {"HY000"_L1, 0, "no such column"_L1, "ORA-00904"_L1, DbErrorNumber::CommandRejected},
    {"HY000"_L1, 0, "already exists"_L1, "ORA-00955"_L1, DbErrorNumber::CommandRejected},
    {"HY000"_L1, 0, "syntax error"_L1, "ORA-00900"_L1, DbErrorNumber::CommandRejected},
    {"HY000"_L1, 0, "UNIQUE constraint failed"_L1, "ORA-00001"_L1, DbErrorNumber::GeneralFailure},
    {"HY000"_L1, 0, "NOT NULL constraint failed"_L1, "ORA-01400"_L1, DbErrorNumber::GeneralFailure},
    {"HY000"_L1, 0, "interrupted"_L1, "ORA-01013"_L1, DbErrorNumber::GeneralFailure},
    // The standard's classes and PostgreSQL's own.
    {"42S02"_L1, 0, ""_L1, "ORA-00942"_L1, DbErrorNumber::GeneralFailure},
    {"42P01"_L1, 0, ""_L1, "ORA-00942"_L1, DbErrorNumber::GeneralFailure},
    {"42S01"_L1, 0, ""_L1, "ORA-00955"_L1, DbErrorNumber::CommandRejected},
    {"42P07"_L1, 0, ""_L1, "ORA-00955"_L1, DbErrorNumber::CommandRejected},
    {"42S22"_L1, 0, ""_L1, "ORA-00904"_L1, DbErrorNumber::CommandRejected},
    {"42703"_L1, 0, ""_L1, "ORA-00904"_L1, DbErrorNumber::CommandRejected},
    {"42501"_L1, 0, ""_L1, "ORA-01031"_L1, DbErrorNumber::GeneralFailure},
    {"42601"_L1, 0, ""_L1, "ORA-00900"_L1, DbErrorNumber::CommandRejected},
    {"42"_L1, 0, ""_L1, "ORA-00900"_L1, DbErrorNumber::CommandRejected},
    {"37000"_L1, 0, ""_L1, "ORA-00900"_L1, DbErrorNumber::CommandRejected},
    {"23505"_L1, 0, ""_L1, "ORA-00001"_L1, DbErrorNumber::GeneralFailure},
    {"23502"_L1, 0, ""_L1, "ORA-01400"_L1, DbErrorNumber::GeneralFailure},
    {"23503"_L1, 0, ""_L1, "ORA-02291"_L1, DbErrorNumber::GeneralFailure},
    {"23514"_L1, 0, ""_L1, "ORA-02290"_L1, DbErrorNumber::GeneralFailure},
    {"22012"_L1, 0, ""_L1, "ORA-01476"_L1, DbErrorNumber::GeneralFailure},
    {"57014"_L1, 0, ""_L1, "ORA-01013"_L1, DbErrorNumber::GeneralFailure},
    {"HY008"_L1, 0, ""_L1, "ORA-01013"_L1, DbErrorNumber::GeneralFailure},
    {"S1008"_L1, 0, ""_L1, "ORA-01013"_L1, DbErrorNumber::GeneralFailure},
    {"28"_L1, 0, ""_L1, "ORA-01017"_L1, DbErrorNumber::GeneralFailure},
    {"53300"_L1, 0, ""_L1, "ORA-00018"_L1, DbErrorNumber::GeneralFailure},
    {"57P"_L1, 0, ""_L1, "ORA-03113"_L1, DbErrorNumber::GeneralFailure},
    {"08"_L1, 0, ""_L1, "ORA-03113"_L1, DbErrorNumber::GeneralFailure},
    {"HYT"_L1, 0, ""_L1, "ORA-03113"_L1, DbErrorNumber::GeneralFailure},
};

// Oracle's own codes that mean that the statement itself was refused, not its execution.
constexpr std::array rejected{"ORA-009"_L1, "ORA-017"_L1, "ORA-032"_L1};

// What drivers put behind the server's text.
constexpr std::array driverRemarks{";\nError while executing the query"_L1,
                                   ";\nError while preparing parameters"_L1,
                                   ";\nThe connection has been lost"_L1};

bool fits(const Meaning& row, const OdbcDiagnosis& diagnosis) {
    return diagnosis.state.startsWith(row.state) &&
           (row.native == 0 || row.native == diagnosis.native) &&
           (row.text.isEmpty() || diagnosis.message.contains(row.text, Qt::CaseInsensitive));
}

// Oracle's drivers carry the code in the text.
QString oracleCode(const QString& message) {
    static const QRegularExpression code(u"\\bORA-\\d{5}\\b"_s);
    return code.match(message).captured();
}

// "name is already used" and syntax are the command's fault, "no such table" is not: the windows
// tell the two apart.
qint32 numberOfOracleCode(const QString& code) {
    const bool isRejected =
        code != "ORA-00942"_L1 && std::any_of(rejected.begin(), rejected.end(),
                                              [&](auto start) { return code.startsWith(start); });
    return isRejected ? DbErrorNumber::CommandRejected : DbErrorNumber::GeneralFailure;
}

struct Verdict {
    QString code;
    qint32 number = DbErrorNumber::GeneralFailure;
};

Verdict verdictOn(const OdbcDiagnosis& diagnosis) {
    if (const QString code = oracleCode(diagnosis.message); !code.isEmpty())
        return {code, numberOfOracleCode(code)};
    const auto row = std::find_if(std::begin(meanings), std::end(meanings),
                                  [&](const Meaning& row) { return fits(row, diagnosis); });
    if (row == std::end(meanings))
        return {};
    return {QString(row->code), row->number};
}

} // namespace

QString serverText(QStringView message) {
    message = message.trimmed();
    while (message.startsWith(u'[')) {
        const qsizetype end = message.indexOf(u']');
        if (end < 0)
            break;
        message = message.sliced(end + 1).trimmed();
    }
    for (const QLatin1StringView remark : driverRemarks) {
        if (message.endsWith(remark))
            message.chop(remark.size());
    }
    // A line that a library indents; where line ends are left out it still needs a blank.
    return message.trimmed().toString().replace(u"\n\t"_s, u"\n "_s);
}

OdbcDiagnosis diagnosisOf(const OdbcHandle& handle, bool narrowCalls) {
    OdbcDiagnosis diagnosis;
    SQLINTEGER native = 0;
    const auto wide = [&](SQLWCHAR* text, SQLSMALLINT units, SQLSMALLINT* length) {
        SQLWCHAR state[6] = {};
        const SQLRETURN result =
            SQLGetDiagRecW(handle.type(), handle.get(), 1, state, &native, text, units, length);
        diagnosis.state = fromUnits(state, stateSize);
        return result;
    };
    const auto narrow = [&](SQLCHAR* text, SQLSMALLINT units, SQLSMALLINT* length) {
        SQLCHAR state[6] = {};
        const SQLRETURN result =
            SQLGetDiagRec(handle.type(), handle.get(), 1, state, &native, text, units, length);
        diagnosis.state = fromUnits(state, stateSize);
        return result;
    };
    const auto message = narrowCalls ? readText<SQLCHAR>(narrow) : readText<SQLWCHAR>(wide);
    if (!message)
        return {};
    diagnosis.native = native;
    diagnosis.message = serverText(*message);
    return diagnosis;
}

ProviderError errorOf(const OdbcDiagnosis& diagnosis) {
    if (isStopped(diagnosis))
        return stoppedError();
    const Verdict verdict = verdictOn(diagnosis);
    const QString message = diagnosis.message.isEmpty() ? u"The driver failed without saying why."_s
                                                        : diagnosis.message;
    return ProviderError(verdict.number, verdict.code, u"ODBC"_s, message);
}

bool isConnectionLost(const OdbcDiagnosis& diagnosis) {
    static const QStringList lost{u"ORA-03113"_s, u"ORA-03114"_s, u"ORA-03135"_s, u"ORA-12571"_s,
                                  u"ORA-00028"_s, u"ORA-12537"_s, u"ORA-02396"_s};
    return lost.contains(verdictOn(diagnosis).code);
}

bool isStopped(const OdbcDiagnosis& diagnosis) {
    return verdictOn(diagnosis).code == "ORA-01013"_L1;
}

ProviderError stoppedError() {
    const QString code = u"ORA-01013"_s;
    return ProviderError(DbErrorNumber::GeneralFailure, code, u"ODBC"_s,
                         code + u": user requested cancel of current operation"_s);
}
