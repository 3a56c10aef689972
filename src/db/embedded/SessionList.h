#pragma once

#include <cstdint>
#include <string>

namespace ora {

// This program's own connections, as V$SESSION and V$PROCESS show them. Any thread may ask.

struct SessionEntry {
    int sid = 0;    // given by the list
    int serial = 0; // likewise: tells sessions that had the same sid apart
    std::string user;
    std::string osUser;
    std::string machine;
    std::string program;
    std::string service;
    std::string logonTime; // a stored DATE
    std::int64_t processId = 0;
};

// A connection's place in the list, for as long as it lives.
class ListedSession {
public:
    explicit ListedSession(SessionEntry entry);
    ~ListedSession();
    ListedSession(const ListedSession&) = delete;
    ListedSession& operator=(const ListedSession&) = delete;

    int sid() const { return m_sid; }

private:
    int m_sid;
};

// The list for the dictionary's views, as JSON. ownSid marks the session that asks.
std::string sessionsJson(int ownSid);

} // namespace ora
