// Prints the number of threads of this process, before and after the start of a team.
#include "keslcorex.h"
#include <cstdio>
#include <omp.h>

int main()
{
    const int before = keslCoreGetNumThreads();
    int team = 0;
#pragma omp parallel num_threads(2)
#pragma omp atomic
    ++team;
    std::printf("%d %d\n", before, keslCoreGetNumThreads());
    return team < 1;
}
