#include "FreezingProxy.h"

#include "TestServer.h"

#include <algorithm>
#include <array>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int pollMilliseconds = 20;

// How many bytes were passed on; none when the line is over.
ssize_t pass(int from, int to) {
    std::array<char, 65536> bytes;
    const ssize_t size = recv(from, bytes.data(), bytes.size(), 0);
    for (ssize_t sent = 0; sent < size;) {
        const ssize_t now = send(to, bytes.data() + sent, size_t(size - sent), MSG_NOSIGNAL);
        if (now <= 0)
            return 0;
        sent += now;
    }
    return std::max<ssize_t>(size, 0);
}

} // namespace

FreezingProxy::FreezingProxy(quint16 target)
    : m_target(target)
    , m_port(freePort())
    , m_listener(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address = loopback(m_port);
    if (bind(m_listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        listen(m_listener, SOMAXCONN) != 0)
        throw std::runtime_error("the proxy cannot listen");
    m_thread = std::thread([this] { run(); });
}

FreezingProxy::~FreezingProxy() {
    m_ended = true;
    m_thread.join();
    close(m_listener);
    for (const Pair& pair : m_pairs) {
        close(pair.client);
        close(pair.server);
    }
}

void FreezingProxy::run() {
    while (!m_ended) {
        if (m_frozen) {
            std::this_thread::sleep_for(std::chrono::milliseconds(pollMilliseconds));
            continue;
        }
        std::vector<pollfd> waited{{m_listener, POLLIN, 0}};
        for (const Pair& pair : m_pairs) {
            waited.push_back({pair.client, POLLIN, 0});
            waited.push_back({pair.server, POLLIN, 0});
        }
        if (poll(waited.data(), waited.size(), pollMilliseconds) <= 0 || m_frozen)
            continue;
        std::vector<Pair> kept;
        for (size_t i = 0; i < m_pairs.size(); ++i) {
            if (forward(m_pairs[i], waited[2 * i + 1].revents != 0, waited[2 * i + 2].revents != 0))
                kept.push_back(m_pairs[i]);
        }
        m_pairs = std::move(kept);
        if (waited[0].revents != 0)
            acceptOne();
    }
}

void FreezingProxy::acceptOne() {
    const int client = accept(m_listener, nullptr, nullptr);
    const int server = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = loopback(m_target);
    if (connect(server, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) {
        m_pairs.push_back({client, server});
        return;
    }
    close(client);
    close(server);
}

// False when the pair is over; it is then closed.
bool FreezingProxy::forward(const Pair& pair, bool fromClient, bool fromServer) {
    if ((!fromClient || pass(pair.client, pair.server) > 0) && (!fromServer || passAnswer(pair)))
        return true;
    close(pair.client);
    close(pair.server);
    return false;
}

bool FreezingProxy::passAnswer(const Pair& pair) {
    const ssize_t bytes = pass(pair.server, pair.client);
    if (m_bytesToFreeze != never && (m_bytesToFreeze -= bytes) <= 0)
        m_frozen = true;
    return bytes > 0;
}
