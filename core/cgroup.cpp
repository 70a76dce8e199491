// Where the limits of a control group are found: /proc/self/mountinfo tells where each hierarchy is mounted, and
// /proc/self/cgroup which group of it holds the process. That group and all above it bound the process.
#include "core/cgroup.h"
#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kesl {
namespace {

enum Version { v1 = 1, v2 = 2 };
using Path = char[PATH_MAX];

// The lines of root + directory + "/" + name; none where there is no such file.
class Lines {
    FILE* file = nullptr;
    char* line = nullptr;
    std::size_t size = 0;

public:
    Lines(const char* root, const char* directory, const char* name)
    {
        Path path;
        const int length = std::snprintf(path, sizeof path, "%s%s/%s", root, directory, name);
        if (length < PATH_MAX) file = std::fopen(path, "re");
    }
    Lines(const Lines&) = delete;
    ~Lines()
    {
        std::free(line);
        if (file) std::fclose(file);
    }
    char* next() { return file && getline(&line, &size, file) > 0 ? line : nullptr; }
};

bool startsWith(const char* text, const char* start) { return !std::strncmp(text, start, std::strlen(start)); }

// Whether the word is in the list, which has commas between its words.
bool hasWord(const char* list, const char* word)
{
    for (;; ++list) {
        const std::size_t n = std::strcspn(list, ",\n");
        if (n == std::strlen(word) && startsWith(list, word)) return true;
        list += n;
        if (*list != ',') return false;
    }
}

// The group of the process in the controller's hierarchy, from a line "number:controllers:path".
bool findGroup(const char* root, Version version, const char* controller, Path& group)
{
    Lines lines(root, "/proc/self", "cgroup");
    while (char* line = lines.next()) {
        char* const controllers = std::strchr(line, ':');
        char* const path = controllers ? std::strchr(controllers + 1, ':') : nullptr;
        if (!path) continue;
        *path = '\0'; // ends the list of controllers, which is empty in version 2
        if (version == v2 ? controllers + 1 != path : !hasWord(controllers + 1, controller)) continue;
        return std::snprintf(group, sizeof group, "%.*s", int(std::strcspn(path + 1, "\n")), path + 1) < PATH_MAX;
    }
    return false;
}

void readNumbers(const char* directory, const char* name, long long& a, long long* b)
{
    Lines lines("", directory, name);
    if (const char* line = lines.next()) std::sscanf(line, b ? "%lld %lld" : "%lld", &a, b);
}

// What the files of one group in the directory say: its quota of processors ...
int quotaOf(const char* directory, Version version)
{
    long long quota = 0, period = 0; // microseconds; "max" and -1 stand for no quota
    if (version == v2) {
        readNumbers(directory, "cpu.max", quota, &period);
    } else {
        readNumbers(directory, "cpu.cfs_quota_us", quota, nullptr);
        readNumbers(directory, "cpu.cfs_period_us", period, nullptr);
    }
    if (quota <= 0 || period <= 0) return INT_MAX;
    return int(std::min<long long>(quota / period + (quota % period != 0), INT_MAX));
}

// ... and how many more processes and threads may come into it.
int roomOf(const char* directory, Version)
{
    long long most = -1, now = 0; // "max" stands for no limit
    readNumbers(directory, "pids.max", most, nullptr);
    readNumbers(directory, "pids.current", now, nullptr);
    return most < 0 ? INT_MAX : int(std::clamp<long long>(most - now, 0, INT_MAX));
}

// A mounted hierarchy, from a line "id parent device root point options [more] - type source options".
struct Mount {
    Path root, point; // the group that is mounted, and where
    Version version;

    bool read(const char* line, const char* controller)
    {
        const char* const end = std::strstr(line, " - ");
        char type[16];
        int options = 0;
        static_assert(PATH_MAX == 4096);
        if (!end || std::sscanf(line, "%*s %*s %*s %4095s %4095s", root, point) != 2 ||
            std::sscanf(end, " - %15s %*s %n", type, &options) != 1 || !options)
            return false;
        version = std::strcmp(type, "cgroup2") ? v1 : v2;
        return version == v2 || (!std::strcmp(type, "cgroup") && hasWord(end + options, controller));
    }
};

using LimitOf = int (*)(const char* directory, Version);

// The least limit of the process's group and of all above it, as far up as the mount shows them.
int leastUnder(const char* root, const Mount& mount, const char* controller, LimitOf limitOf)
{
    Path group, directory;
    if (!findGroup(root, mount.version, controller, group)) return INT_MAX;
    const std::size_t above = std::strcmp(mount.root, "/") ? std::strlen(mount.root) : 0;
    const char* const below = group + above;
    if (!startsWith(group, mount.root) || (*below && *below != '/')) return INT_MAX; // the group of somebody else
    const int top = std::snprintf(directory, sizeof directory, "%s%s", root, mount.point);
    if (std::snprintf(directory, sizeof directory, "%s%s%s", root, mount.point, below) >= PATH_MAX) return INT_MAX;
    for (int least = INT_MAX;;) {
        least = std::min(least, limitOf(directory, mount.version));
        char* const last = std::strrchr(directory, '/');
        if (!last || last - directory < top) return least;
        *last = '\0';
    }
}

int leastOf(const char* root, const char* controller, LimitOf limitOf)
{
    int least = INT_MAX;
    Mount mount;
    Lines lines(root, "/proc/self", "mountinfo");
    while (const char* line = lines.next())
        if (mount.read(line, controller)) least = std::min(least, leastUnder(root, mount, controller, limitOf));
    return least;
}

} // namespace

int cgroupProcessors(const char* root) { return leastOf(root, "cpu", quotaOf); }
int cgroupRoom(const char* root) { return leastOf(root, "pids", roomOf); }

} // namespace kesl
