#include <omp.h>

extern "C" [[gnu::visibility("default")]] int ownGetNumThreads() { return omp_get_max_threads(); }
