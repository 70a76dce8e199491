// What runs beside the calling thread.
#include "core/run_queue.h"
#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace kesl {

// "2.96 2.03 2.06 5/158 16945": after three averages, which follow the load by a minute and more, what is runnable now.
int otherRunnableThreads(const char* root)
{
    char path[256], text[128];
    if (std::snprintf(path, sizeof path, "%s/proc/loadavg", root) >= int(sizeof path)) return 0;
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) return 0;
    const ssize_t size = read(file, text, sizeof text - 1);
    close(file);
    text[std::max<ssize_t>(size, 0)] = '\0';

    const char* runnable = text;
    for (int average = 0; average < 3 && runnable; ++average) {
        runnable = std::strchr(runnable, ' ');
        if (runnable) ++runnable;
    }
    return runnable ? int(std::clamp(std::strtol(runnable, nullptr, 10) - 1, 0L, long(INT_MAX))) : 0;
}

} // namespace kesl
