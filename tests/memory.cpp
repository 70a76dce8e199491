#include "memory.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sys/mman.h>
#include <unistd.h>

thread_local sigjmp_buf* trap;
thread_local void* faultAddress;

namespace {
char running[4096];

char* reserve(size_t bytes, int protection)
{
    void* p = mmap(nullptr, bytes, protection, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (p == MAP_FAILED) {
        perror("mmap");
        exit(1);
    }
    return static_cast<char*>(p);
}

void onFault(int number, siginfo_t* info, void*)
{
    if (trap) {
        faultAddress = info->si_addr;
        siglongjmp(*trap, 1);
    }
    char text[sizeof running + 100];
    const int length = snprintf(text, sizeof text, "signal %d at %p in %s\n", number, info->si_addr, running);
    (void)!write(2, text, size_t(length));
    abort(); // which a fuzzer sees
}

Arena makeArena(size_t size, bool paged)
{
    char* begin = reserve(size + 2 * pageSize, PROT_NONE) + pageSize;
    char* shadow = reserve(size, PROT_READ | PROT_WRITE);
    madvise(begin, size, MADV_NOHUGEPAGE); // a huge page of zeros for each operand costs more than the test
    madvise(shadow, size, MADV_NOHUGEPAGE);
    for (size_t i = 0; paged && i < size; i += 2 * pageSize) mprotect(begin + i, pageSize, PROT_READ | PROT_WRITE);
    if (!paged) mprotect(begin, size, PROT_READ | PROT_WRITE);
    return {begin, begin + size, shadow - begin};
}

Arena& at(std::vector<std::unique_ptr<Arena>>& arenas, int index, size_t size, bool paged)
{
    if (arenas.size() <= size_t(index)) arenas.resize(size_t(index) + 1);
    auto& arena = arenas[size_t(index)];
    if (!arena) arena = std::make_unique<Arena>(makeArena(size, paged));
    return *arena;
}
} // namespace

Arena& flatArena(int index)
{
    static std::vector<std::unique_ptr<Arena>> arenas;
    return at(arenas, index, size_t(64) << 20, false);
}

Arena& pagedArena(int index)
{
    static std::vector<std::unique_ptr<Arena>> arenas;
    return at(arenas, index, size_t(4) << 20, true);
}

Arena& hugeArena(int index)
{
    static std::vector<std::unique_ptr<Arena>> arenas;
    return at(arenas, index, size_t(40) << 30, false);
}

char* forbidden()
{
    static char* const begin = reserve(size_t(64) << 30, PROT_NONE);
    return begin + (size_t(32) << 30);
}

void installTrap()
{
    struct sigaction action = {};
    action.sa_sigaction = onFault;
    action.sa_flags = SA_SIGINFO | SA_NODEFER; // left by a jump, so the signal must not stay blocked
    sigaction(SIGSEGV, &action, nullptr);
    sigaction(SIGBUS, &action, nullptr);
    sigaction(SIGFPE, &action, nullptr);
}

void setRunning(const char* description) { strncpy(running, description, sizeof running - 1); }
