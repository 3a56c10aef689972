#pragma once

#include <QtGlobal>

#include <atomic>
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
    void thaw() { m_frozen = false; }

private:
    struct Pair {
        int client, server;
    };

    void run();
    void acceptOne();
    bool forward(const Pair& pair, bool fromClient, bool fromServer);

    quint16 m_target;
    quint16 m_port = 0;
    int m_listener = -1;
    std::vector<Pair> m_pairs;
    std::atomic<bool> m_frozen = false;
    std::atomic<bool> m_ended = false;
    std::thread m_thread;
};
