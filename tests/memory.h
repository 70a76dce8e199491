#pragma once
// Memory that shows every access where there should be none, and calls that survive it.
#include <csetjmp>
#include <cstddef>
#include <utility>
#include <vector>

constexpr int pageSize = 4096;

// Where the operands of a call lie. A flat arena has inaccessible memory on both sides; in a paged one every other page
// is inaccessible. Each has a shadow of the same size, for the results that are expected.
struct Arena {
    char *begin, *end;
    ptrdiff_t toShadow;
};
Arena& flatArena(int index);
Arena& pagedArena(int index); // accessible: pages 0, 2, 4, ...
Arena& hugeArena(int index);  // 40 GB

constexpr int lists = 16; // flat arenas from here on hold the lists of pointers

char* forbidden(); // the middle of 64 GB that nobody may touch

// Runs what it is given; false if that touched inaccessible memory, whose address is then faultAddress.
extern thread_local sigjmp_buf* trap;
extern thread_local void* faultAddress;
void installTrap();
template <class F> bool survives(F&& f)
{
    sigjmp_buf buffer;
    if (sigsetjmp(buffer, 0)) {
        trap = nullptr;
        return false;
    }
    trap = &buffer;
    f();
    trap = nullptr;
    return true;
}

// What an unexpected end of the process prints.
void setRunning(const char* description);
