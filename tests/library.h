#pragma once
// The library under test: its levels, found by path and called without its header, and the stand-ins that watch it.
#include "level.h"
#include "table.h"

#include <string>
#include <vector>

const std::vector<Level>& levels(); // built ones, or those of the environment variable KESLMX_LIBRARIES

int call(const Function&, void* address, const std::vector<Value>&);
extern long callsMade;                      // so far
const std::vector<std::string>& exported(); // names in cmake/exports.map

// Stand-in for the companion: the answers that ownGetNumThreads gives, in turn, the last one again and again.
void setThreads(std::vector<int> answers);

// What a call did, since the last reset.
struct Watch {
    int asked = 0;             // calls of ownGetNumThreads
    int regions = 0, team = 0; // parallel regions, and the threads that the last one asked for
    bool control = false;      // the floating-point control word is another afterwards, or has flags
    int blocks = 0, freed = 0; // of the OpenMP runtime's allocator
    size_t bytes = 0;          // of the last block
    std::vector<bool> used;    // its bytes, as they were when it was freed
};
extern Watch watch;
extern bool refuseBlocks;   // the allocator has none
extern bool strict;         // calls that raise none run with every floating-point exception unmasked
extern bool regionsAreSeen; // regions and team are counted (GNU runtime only)
