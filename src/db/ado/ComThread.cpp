#include "ComThread.h"

#include <utility>

#include <objbase.h>

namespace {

void answerMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageW(&message);
}

} // namespace

ComThread::ComThread()
    : m_wake(CreateEventW(nullptr, FALSE, FALSE, nullptr))
    , m_thread([this] { serve(); }) {}

ComThread::~ComThread() {
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
    }
    SetEvent(m_wake);
    m_thread.join();
    CloseHandle(m_wake);
}

void ComThread::run(const std::function<void()>& work) {
    std::unique_lock lock(m_mutex);
    m_work = &work;
    m_done = false;
    SetEvent(m_wake);
    m_finished.wait(lock, [this] { return m_done; });
    if (const std::exception_ptr failure = std::exchange(m_failure, nullptr))
        std::rethrow_exception(failure);
}

void ComThread::serve() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    while (waitForWork())
        perform();
    CoUninitialize();
}

// Such a thread owns a hidden window, so it must answer messages while it waits: whoever sends one
// to all windows of the system would wait for it.
bool ComThread::waitForWork() {
    while (MsgWaitForMultipleObjects(1, &m_wake, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0)
        answerMessages();
    const std::lock_guard lock(m_mutex);
    return !m_ended;
}

void ComThread::perform() {
    std::exception_ptr failure;
    try {
        (*m_work)(); // its owner waits in run()
    } catch (...) {
        failure = std::current_exception();
    }
    const std::lock_guard lock(m_mutex);
    m_failure = failure;
    m_done = true;
    m_finished.notify_all();
}
