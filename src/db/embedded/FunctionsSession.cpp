#include "FunctionCall.h"

#include "AsciiText.h"
#include "NamedRow.h"
#include "OraError.h"
#include "SessionSettings.h"

#include <QByteArray>
#include <QUuid>

namespace ora {

namespace {

struct Parameter {
    std::string_view name;
    std::string (*value)(const FunctionContext&);
};

std::string languageText(const FunctionContext& session) {
    return session.language + "_" + session.territory + ".AL32UTF8";
}

// SYS_CONTEXT('USERENV', name). What a session without a server cannot know is NULL.
constexpr Parameter userenv[] = {
    {"SESSION_USER", [](const FunctionContext& s) { return s.user; }},
    {"CURRENT_USER", [](const FunctionContext& s) { return s.user; }},
    {"CURRENT_SCHEMA", [](const FunctionContext& s) { return s.user; }},
    {"SESSION_SCHEMA", [](const FunctionContext& s) { return s.user; }},
    {"AUTHENTICATED_IDENTITY", [](const FunctionContext& s) { return s.user; }},
    {"SESSION_USERID", [](const FunctionContext& s) { return std::to_string(s.userId); }},
    {"CURRENT_USERID", [](const FunctionContext& s) { return std::to_string(s.userId); }},
    {"CURRENT_SCHEMAID", [](const FunctionContext& s) { return std::to_string(s.userId); }},
    {"SESSIONID", [](const FunctionContext& s) { return std::to_string(s.sessionId); }},
    {"SID", [](const FunctionContext& s) { return std::to_string(s.sid); }},
    {"DB_NAME", [](const FunctionContext& s) { return s.databaseName; }},
    {"DB_UNIQUE_NAME", [](const FunctionContext& s) { return s.databaseName; }},
    {"INSTANCE_NAME", [](const FunctionContext& s) { return s.databaseName; }},
    {"SERVICE_NAME", [](const FunctionContext& s) { return s.databaseName; }},
    {"INSTANCE", [](const FunctionContext&) { return std::string("1"); }},
    {"HOST", [](const FunctionContext& s) { return s.host; }},
    {"SERVER_HOST", [](const FunctionContext& s) { return s.host; }},
    {"TERMINAL", [](const FunctionContext& s) { return s.host; }},
    {"OS_USER", [](const FunctionContext& s) { return s.osUser; }},
    {"MODULE", [](const FunctionContext& s) { return s.program; }},
    {"CLIENT_PROGRAM_NAME", [](const FunctionContext& s) { return s.program; }},
    {"LANGUAGE", languageText},
    {"LANG", [](const FunctionContext& s) { return std::string(s.dates.language->isoName); }},
    {"ISDBA", [](const FunctionContext&) { return std::string("FALSE"); }},
    {"AUTHENTICATION_METHOD", [](const FunctionContext&) { return std::string("PASSWORD"); }},
    {"ENTRYID", [](const FunctionContext&) { return std::string("1"); }},
};

const Parameter* findParameter(std::string_view name) {
    const std::string upper = upperAscii(name);
    if (const Parameter* const parameter = findNamed(userenv, upper))
        return parameter;
    // Known to the server, without content here.
    constexpr std::string_view empty[] = {"IP_ADDRESS",        "NETWORK_PROTOCOL", "ACTION",
                                          "CLIENT_IDENTIFIER", "CLIENT_INFO",      "PROXY_USER",
                                          "PROXY_USERID",      "DB_DOMAIN",        "EXTERNAL_NAME",
                                          "GLOBAL_UID",        "BG_JOB_ID",        "FG_JOB_ID"};
    static constexpr Parameter nothing{"", [](const FunctionContext&) { return std::string(); }};
    return isOneOf(upper, empty) ? &nothing : nullptr;
}

void sysContext(Call& call) {
    if (upperAscii(call.text(0)) != "USERENV")
        return call.resultNull();
    if (const auto setting = nlsSetting(call.session(), call.text(1)))
        return call.resultText(*setting);
    const Parameter* parameter = findParameter(call.text(1));
    if (!parameter)
        throw OraError(2003, "invalid USERENV parameter");
    call.resultText(parameter->value(call.session()));
}

void userenvFunction(Call& call) {
    const Parameter* parameter = findParameter(call.text(0));
    if (!parameter)
        throw OraError(2003, "invalid USERENV parameter");
    call.resultText(parameter->value(call.session()));
}

void sysGuid(Call& call) {
    const QByteArray bytes = QUuid::createUuid().toRfc4122();
    call.resultBytes({bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

template<std::function<OracleNumber(const std::string&)> FunctionContext::*Hook>
void sequence(Call& call) {
    const auto& hook = call.session().*Hook;
    if (!hook)
        throw OraError(2289, "sequence does not exist");
    call.result(hook(std::string(call.text(0))));
}

void sequenceOfRow(Call& call) {
    const auto& hook = call.session().rowValue;
    if (!hook)
        throw OraError(2289, "sequence does not exist");
    call.result(hook(std::string(call.text(0)), static_cast<int>(call.integer(1))));
}

constexpr auto Refused = Stability::Refused;
constexpr auto Propagate = Nulls::Propagate;

constexpr ScalarRow rows[] = {
    {"ora_user", 0, [](Call& c) { c.resultText(c.session().user); }, Propagate, Refused},
    {"ora_uid", 0, [](Call& c) { c.result(OracleNumber(c.session().userId)); }, Propagate, Refused},
    {"ora_userenv", 1, userenvFunction, Propagate, Refused},
    {"ora_sys_context", -1, sysContext, Propagate, Refused},
    {"ora_sys_guid", 0, sysGuid, Propagate, Refused},
    {"seq_next", 1, sequence<&FunctionContext::nextValue>, Propagate, Refused},
    {"seq_row", 2, sequenceOfRow, Propagate, Refused},
    {"seq_curr", 1, sequence<&FunctionContext::currentValue>, Propagate, Refused},
};

} // namespace

void registerSessionFunctions(sqlite3* database, FunctionContext& context) {
    registerScalars(database, rows, context);
}

} // namespace ora
