/* The companion library of keslmx, libkeslcorex64: how many threads a call may use.
 *
 * A program need not touch any of this. Left alone, the number follows the OpenMP runtime (OMP_NUM_THREADS,
 * omp_set_num_threads) and never exceeds the processors that the calling thread may run on, nor the CPU quota of the
 * process's control group, rounded up and read once. Link with kesl::corex, or with -lkeslcorex64, to use it. */
#ifndef KESLCOREX_H
#define KESLCOREX_H

#include "keslmx.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The most threads that can be asked for. */
enum { keslCoreMaxThreads = 8192 };

/* Sets the number of threads for all calls of the process from here on; 0 goes back to the automatic number.
 * The number is taken as asked, also where it exceeds the processors. Two things go before it: a call from inside an
 * active parallel region of the program, and a call in a child of fork(), whose parent's threads are gone, use 1.
 * May be called from any thread at any time; calls that are already running may still see the old number.
 * Returns keslStatusOk, or keslStatusBadCount for a number below 0 or above keslCoreMaxThreads, which changes nothing. */
KeslStatus keslCoreSetNumThreads(int numThreads);

/* The number of threads, at least 1, that a call made here and now may use. */
int keslCoreGetNumThreads(void);

/* What keslmx itself asks, for each call that is big enough for threads. A program that wants to decide call by call
 * may define its own function of this name; it must return a positive number and be safe to call from any thread. */
int ownGetNumThreads(void);

#ifdef __cplusplus
}
#endif
#endif
