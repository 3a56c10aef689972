#include "LocalTime.h"

#include <chrono>
#include <ctime>

namespace ora {

OracleDate localNow() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &seconds);
#else
    localtime_r(&seconds, &local);
#endif
    constexpr int yearBase = 1900;
    constexpr int microsecond = 1000;
    const auto fraction = now - std::chrono::floor<std::chrono::seconds>(now);
    const auto micros = std::chrono::duration_cast<std::chrono::microseconds>(fraction).count();
    return {local.tm_year + yearBase,
            local.tm_mon + 1,
            local.tm_mday,
            local.tm_hour,
            local.tm_min,
            local.tm_sec,
            int(micros) * microsecond};
}

} // namespace ora
