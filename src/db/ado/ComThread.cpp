#include "ComThread.h"

#include "AdoInterfaces.h"

#include <objbase.h>

ComThread::ComThread()
    : m_thread([this] { serve(); }) {}

ComThread::~ComThread() {
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void ComThread::run(const std::function<void()>& work) {
    std::unique_lock lock(m_mutex);
    m_work = &work;
    m_done = false;
    m_failure = nullptr;
    m_changed.notify_all();
    m_changed.wait(lock, [this] { return m_done; });
    if (m_failure)
        std::rethrow_exception(m_failure);
}

void ComThread::serve() {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_ended || m_work; });
        if (m_ended)
            break;
        const auto* work = m_work;
        lock.unlock();
        std::exception_ptr failure;
        try {
            (*work)();
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        m_work = nullptr;
        m_failure = failure;
        m_done = true;
        m_changed.notify_all();
    }
    lock.unlock();
    CoUninitialize();
}
