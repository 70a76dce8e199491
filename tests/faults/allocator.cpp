// An allocator that refuses: each of the allocations of a call in turn, and all from one on.
#include "work.h"

#include <atomic>
#include <cerrno>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

namespace {

std::atomic<bool> watching = false, refusesAllAfter = false;
std::atomic<int> allocations = 0, refused = -1; // the number of the one that is refused

bool refuses()
{
    if (!watching) return false;
    const int number = allocations++;
    const bool result = refused >= 0 && (number == refused || (number > refused && refusesAllAfter));
    if (result) errno = ENOMEM;
    return result;
}

template <class F> F* next(const char* name) { return reinterpret_cast<F*>(dlsym(RTLD_NEXT, name)); }

} // namespace

// Before those of the C library, because the executable comes first.
extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);

[[gnu::visibility("default")]] void* malloc(size_t bytes) { return refuses() ? nullptr : __libc_malloc(bytes); }
[[gnu::visibility("default")]] void* calloc(size_t n, size_t bytes) { return refuses() ? nullptr : __libc_calloc(n, bytes); }
[[gnu::visibility("default")]] void* realloc(void* p, size_t bytes)
{
    return refuses() ? nullptr : __libc_realloc(p, bytes);
}
[[gnu::visibility("default")]] void* aligned_alloc(size_t alignment, size_t bytes)
{
    return refuses() ? nullptr : __libc_memalign(alignment, bytes);
}
[[gnu::visibility("default")]] int posix_memalign(void** p, size_t alignment, size_t bytes)
{
    *p = refuses() ? nullptr : __libc_memalign(alignment, bytes);
    return *p ? 0 : ENOMEM;
}
[[gnu::visibility("default")]] void* mmap(void* at, size_t bytes, int protection, int flags, int file, off_t offset)
{
    static const auto real = next<decltype(mmap)>("mmap");
    return refuses() ? MAP_FAILED : real(at, bytes, protection, flags, file, offset);
}
}

namespace {

// Allocations of one call; -1 if it came out wrong.
int allocationsOf(Work& work)
{
    allocations = 0;
    watching = true;
    const bool right = work.isRight();
    watching = false;
    return right ? allocations.load() : -1;
}

TEST(Allocator, IsNotAskedOnTheCallingThread)
{
    for (Library library : libraries) {
        Work small(library, few), large(library, many);
        askFor(1);
        EXPECT_EQ(allocationsOf(small), 0) << name(library);
        EXPECT_EQ(allocationsOf(large), 0) << name(library);
    }
}

// In a process that has no threads yet (the OpenMP runtime ends one in which it cannot make its first team), or has some.
void refuseInTurn(Library library, bool warm, bool allAfter)
{
    int number = 0, status = 0;
    for (; number < 2000 && status != 77; ++number) {
        status = inChild([&] {
            Work work(library, many);
            askFor(2);
            if (warm && !work.isRight()) return 3;
            refused = number, refusesAllAfter = allAfter;
            const int asked = allocationsOf(work);
            return asked < 0 ? 4 : asked <= number ? 77 : 0;
        });
        ASSERT_TRUE(status == 0 || status == 77) << name(library) << ", allocation " << number << ": " << status;
    }
    ASSERT_EQ(status, 77);
    testing::Test::RecordProperty(name(library), number - 1);
}

TEST(Allocator, RefusesEachInTurn)
{
    refuseInTurn(Library::kesl, false, false);
    for (bool allAfter : {false, true})
        for (Library library : libraries) refuseInTurn(library, true, allAfter);
}

} // namespace
