#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

// A thread of COM's multi-threaded apartment. The objects of a connection live on it, because the
// program's own threads belong to other apartments or to none.
class ComThread {
public:
    ComThread();
    ~ComThread();

    // Runs the work there, waits for its end and throws here what it threw.
    void run(const std::function<void()>& work);

private:
    void serve();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    const std::function<void()>* m_work = nullptr;
    std::exception_ptr m_failure;
    bool m_done = false;
    bool m_ended = false;
    std::thread m_thread; // last: it uses the others
};
