#include "WatchedWork.h"

#include "StatementWatch.h"

#include <future>
#include <optional>
#include <thread>

using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto unnoticed = 80ms; // shorter statements end before anything is shown
constexpr auto moment = 5ms;
constexpr auto patienceAfterStop = 5s;

class Attendance {
public:
    explicit Attendance(StatementWatch& watch)
        : m_watch(watch) {
        m_watch.began();
    }
    ~Attendance() { m_watch.ended(); }

private:
    StatementWatch& m_watch;
};

std::chrono::milliseconds since(Clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
}

// False when the work outlasts the patience after a stop.
bool attend(std::future<void>& done, StatementWatch& watch, const std::function<void()>& askToStop,
            Clock::time_point start) {
    const Attendance attendance(watch);
    std::optional<Clock::time_point> stopped;
    while (done.wait_for(moment) != std::future_status::ready) {
        const bool stop = watch.wait(since(start));
        if (stop && !stopped) {
            stopped = Clock::now();
            askToStop();
        }
        if (stopped && since(*stopped) > patienceAfterStop)
            return false;
    }
    return true;
}

} // namespace

bool runWatched(std::function<void()> work, StatementWatch& watch,
                const std::function<void()>& askToStop) {
    const auto start = Clock::now();
    std::packaged_task<void()> task(std::move(work));
    std::future<void> done = task.get_future();
    std::thread thread(std::move(task));
    try {
        if (done.wait_for(unnoticed) != std::future_status::ready &&
            !attend(done, watch, askToStop, start)) {
            thread.detach();
            return false;
        }
    } catch (...) {
        thread.detach();
        throw;
    }
    thread.join();
    done.get();
    return true;
}
