#pragma once

#include <chrono>

// Waits for the statements of a connection while they run on another thread. All members are called
// on the thread that asked for the statement; the first three only when it lasts long enough to be
// noticed.
class StatementWatch {
public:
    virtual ~StatementWatch() = default;

    virtual void began() = 0;
    // A moment's own work, some milliseconds: repainting, the seconds. True asks the server to stop
    // the statement; asked once it stays asked.
    virtual bool wait(std::chrono::milliseconds elapsed) = 0;
    virtual void ended() noexcept = 0;

    // After a statement, short or long, that found the server gone.
    virtual void connectionLost() = 0;
};
