#pragma once

#include "AdoInterfaces.h"

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

// A thread with a COM apartment of its own. The objects of a connection live on it: they are
// registered for such apartments, and made elsewhere every call to them would go through a proxy to
// a thread of COM's choice.
class ComThread {
public:
    ComThread();
    ~ComThread();
    ComThread(const ComThread&) = delete;
    ComThread& operator=(const ComThread&) = delete;

    // Runs the work there, waits for its end and throws here what it threw.
    void run(const std::function<void()>& work);

private:
    void serve();
    bool waitForWork();
    void perform();

    std::mutex m_mutex;
    std::condition_variable m_finished;
    HANDLE m_wake; // an event: there is work, or the end has come
    const std::function<void()>* m_work = nullptr;
    std::exception_ptr m_failure;
    bool m_done = false;
    bool m_ended = false;
    std::thread m_thread; // last: it uses the others
};
