// What RLIMIT_NPROC and RLIMIT_AS leave for threads.
#include "core/limits.h"
#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

namespace kesl {
namespace {

using Number = long long;

int asRoom(Number n) { return int(std::clamp<Number>(n, 0, INT_MAX)); }

Number limitOf(__rlimit_resource resource) // or -1
{
    rlimit limit;
    if (getrlimit(resource, &limit) || limit.rlim_cur == RLIM_INFINITY) return -1;
    return Number(std::min<rlim_t>(limit.rlim_cur, LLONG_MAX));
}

// The first numbers that the file has in this format, which it may have in any of its lines.
template <class... N> bool scan(const char* path, const char* format, N*... numbers)
{
    std::FILE* const file = std::fopen(path, "re");
    if (!file) return false;
    char line[256];
    bool found = false;
    while (!found && std::fgets(line, sizeof line, file)) found = std::sscanf(line, format, numbers...) == sizeof...(N);
    std::fclose(file);
    return found;
}

// The threads of all processes of this user that can be seen.
Number threadsOfUser()
{
    DIR* const proc = opendir("/proc");
    if (!proc) return 0;
    Number all = 0;
    while (const dirent* entry = readdir(proc)) {
        char path[300];
        Number user, threads;
        std::snprintf(path, sizeof path, "/proc/%s/status", entry->d_name);
        if (entry->d_name[0] < '1' || entry->d_name[0] > '9') continue;
        if (scan(path, "Uid: %lld", &user) && user == getuid() && scan(path, "Threads: %lld", &threads)) all += threads;
    }
    closedir(proc);
    return all;
}

int processRoom()
{
    const Number most = limitOf(RLIMIT_NPROC);
    if (most < 0 || getuid() == 0) return INT_MAX; // which binds nobody who is root
    // Those of all users are one number, and mostly far from the limit.
    Number running = 0, all = most;
    scan("/proc/loadavg", "%*s %*s %*s %lld/%lld", &running, &all);
    return most - all >= sysconf(_SC_NPROCESSORS_CONF) ? asRoom(most - all) : asRoom(most - threadsOfUser());
}

int addressRoom()
{
    const Number most = limitOf(RLIMIT_AS);
    Number pages = 0;
    if (most < 0 || !scan("/proc/self/statm", "%lld", &pages)) return INT_MAX;
    pthread_attr_t attributes;
    std::size_t stack = 0;
    if (!pthread_getattr_default_np(&attributes)) {
        pthread_attr_getstacksize(&attributes, &stack);
        pthread_attr_destroy(&attributes);
    }
    constexpr Number beside = 1 << 20; // of a thread: its guard page, and what the runtime keeps of it
    return asRoom((most - pages * sysconf(_SC_PAGESIZE)) / (Number(stack) + beside));
}

} // namespace

int limitsRoom() { return std::min(processRoom(), addressRoom()); }

} // namespace kesl
