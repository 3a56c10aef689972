#include "SessionList.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <map>
#include <mutex>

namespace ora {

namespace {

struct List {
    std::mutex mutex;
    std::map<int, SessionEntry> sessions;
    int lastSerial = 0;
};

List& list() {
    static List sessions;
    return sessions;
}

int freeSid(const std::map<int, SessionEntry>& sessions) {
    int sid = 1;
    while (sessions.contains(sid))
        ++sid;
    return sid;
}

QString address(int base, int sid) {
    constexpr int hexDigits = 16;
    constexpr int hexadecimal = 16;
    return QString::number(base + sid, hexadecimal).toUpper().rightJustified(hexDigits, u'0');
}

QString hex(const std::string& bytes) {
    return QString::fromLatin1(
        QByteArray::fromRawData(bytes.data(), qsizetype(bytes.size())).toHex().toUpper());
}

QJsonObject jsonOf(const SessionEntry& entry, int firstSid, bool own) {
    constexpr int sessionBase = 0x10000;
    constexpr int processBase = 0x20000;
    // An empty text is null there.
    const auto text = [](const std::string& value) {
        return value.empty() ? QJsonValue() : QJsonValue(QString::fromStdString(value));
    };
    return {
        {QStringLiteral("sid"), entry.sid},
        {QStringLiteral("serial"), entry.serial},
        {QStringLiteral("session_address"), address(sessionBase, entry.sid)},
        {QStringLiteral("process_address"), address(processBase, entry.sid)},
        {QStringLiteral("user"), text(entry.user)},
        {QStringLiteral("user_id"), 0},
        {QStringLiteral("os_user"), text(entry.osUser)},
        {QStringLiteral("process"), QString::number(entry.processId)},
        // Every session needs a server process of its own there; the first has this program's.
        {QStringLiteral("spid"), QString::number(entry.processId + entry.sid - firstSid)},
        {QStringLiteral("machine"), text(entry.machine)},
        {QStringLiteral("program"), text(entry.program)},
        {QStringLiteral("service"), text(entry.service)},
        {QStringLiteral("logon"), hex(entry.logonTime)},
        {QStringLiteral("own"), own},
    };
}

} // namespace

ListedSession::ListedSession(SessionEntry entry) {
    const std::lock_guard lock(list().mutex);
    m_sid = entry.sid = freeSid(list().sessions);
    entry.serial = ++list().lastSerial;
    list().sessions.emplace(m_sid, std::move(entry));
}

ListedSession::~ListedSession() {
    const std::lock_guard lock(list().mutex);
    list().sessions.erase(m_sid);
}

std::string sessionsJson(int ownSid) {
    const std::lock_guard lock(list().mutex);
    QJsonArray array;
    for (const auto& [sid, entry] : list().sessions)
        array.append(jsonOf(entry, list().sessions.begin()->first, sid == ownSid));
    return QJsonDocument(array).toJson(QJsonDocument::Compact).toStdString();
}

} // namespace ora
