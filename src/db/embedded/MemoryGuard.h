#pragma once

#include <sqlite3.h>

namespace ora {

// Stops a statement while the engine holds more memory, in all connections together, than its soft
// heap limit allows: CONNECT BY without PRIOR and the like would bring the machine to its knees.
// The engine's hard limit would undo the whole transaction where a query meets it.
class MemoryGuard {
public:
    // Sets the limit by what the machine has, where none is set. db is not owned; it must be closed
    // or not run any more when the guard goes.
    explicit MemoryGuard(sqlite3* db);
    MemoryGuard(const MemoryGuard&) = delete;
    MemoryGuard& operator=(const MemoryGuard&) = delete;

    // Whether it was the guard that interrupted a statement since the last call.
    bool takeStopped();

private:
    static int check(void* self);

    bool m_stopped = false;
};

} // namespace ora
