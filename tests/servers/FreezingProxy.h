#pragma once

#include <QtGlobal>

#include <atomic>
#include <limits>
#include <thread>
#include <vector>

// A line to a loopback port that can go dead: while frozen it still takes connections and bytes, as
// a network without an end does, and passes nothing on.
class FreezingProxy {
public:
    explicit FreezingProxy(quint16 target);
    ~FreezingProxy();

    quint16 port() const { return m_port; }
    void freeze() { m_frozen = true; }
    // Freezes by itself once so many more bytes of the server's answers were passed on, so that a
    // fault strikes rows on their way however fast the machine is.
    void freezeAfter(qint64 bytes) { m_bytesToFreeze = bytes; }
    bool frozen() const { return m_frozen; }
    void thaw() {
        m_bytesToFreeze = never;
        m_frozen = false;
    }

private:
    struct Pair {
        int client, server;
    };
    static constexpr qint64 never = std::numeric_limits<qint64>::max();

    void run();
    void acceptOne();
    bool forward(const Pair& pair, bool fromClient, bool fromServer);
    bool passAnswer(const Pair& pair);

    quint16 m_target;
    quint16 m_port = 0;
    int m_listener = -1;
    std::vector<Pair> m_pairs;
    std::atomic<bool> m_frozen = false;
    std::atomic<qint64> m_bytesToFreeze = never;
    std::atomic<bool> m_ended = false;
    std::thread m_thread;
};
