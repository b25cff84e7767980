#include "ProcessorTime.h"

#include <algorithm>
#include <ctime>

#include <sys/resource.h>

namespace tarnwick {

bool allowProcessorTime(pid_t process, int milliseconds)
{
    clockid_t clock = {};
    timespec used = {};
    rlimit limit = {};
    if (process <= 0 || ::clock_getcpuclockid(process, &clock) != 0
        || ::clock_gettime(clock, &used) != 0
        || ::prlimit(process, RLIMIT_CPU, nullptr, &limit) != 0)
        return false;
    const rlim_t granted = static_cast<rlim_t>(std::max(milliseconds, 0)) / 1000 + 2;
    limit.rlim_cur = std::min(limit.rlim_max, static_cast<rlim_t>(used.tv_sec) + granted);
    return ::prlimit(process, RLIMIT_CPU, &limit, nullptr) == 0;
}

} // namespace tarnwick
