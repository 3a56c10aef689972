#include "MemoryGuard.h"

#include "MachineMemory.h"

#include <algorithm>
#include <utility>

namespace ora {

namespace {

constexpr int instructionsBetweenChecks = 10000;

sqlite3_int64 shareOfMachine() {
    constexpr sqlite3_int64 most = sqlite3_int64(4) << 30;
    const sqlite3_int64 machine = machineMemory();
    return machine > 0 ? std::min(most, machine / 2) : most / 2;
}

} // namespace

MemoryGuard::MemoryGuard(sqlite3* db) {
    if (sqlite3_soft_heap_limit64(-1) == 0)
        sqlite3_soft_heap_limit64(shareOfMachine());
    sqlite3_progress_handler(db, instructionsBetweenChecks, check, this);
}

bool MemoryGuard::takeStopped() {
    return std::exchange(m_stopped, false);
}

int MemoryGuard::check(void* self) {
    const bool stops = sqlite3_memory_used() > sqlite3_soft_heap_limit64(-1);
    static_cast<MemoryGuard*>(self)->m_stopped |= stops;
    return stops;
}

} // namespace ora
