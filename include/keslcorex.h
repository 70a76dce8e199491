/* The companion library of keslmx, libkeslcorex64: how many threads a call may use.
 *
 * A program need not touch any of this. Left alone, the number follows the OpenMP runtime (OMP_NUM_THREADS,
 * omp_set_num_threads) and never exceeds the processors that the calling thread may run on, nor the CPU quota of the
 * process's control group, rounded up. Link with kesl::corex, or with -lkeslcorex64, to use it.
 *
 * Nor does it exceed the processors that other work leaves idle, since the threads of a team wait for each other: a call
 * of a millisecond took a mean of 48 in a team of two on a machine whose two processors had four other processes. What is
 * runnable is read from /proc/loadavg, at most once in 5 milliseconds. It counts the threads of the whole machine, which
 * in a container or behind an affinity mask may not be those that one's own processors have to run. OMP_DYNAMIC=false in
 * the environment leaves the load out of account; so does a number that the program sets.
 *
 * The OpenMP runtime ends the process where it cannot create a thread. So the automatic number is also bounded by the
 * threads that may still be created: pids.max less pids.current of the control group, RLIMIT_NPROC less what runs of the
 * same user (but for root), and RLIMIT_AS less what is mapped, by the size of a stack. All of this is read once, by the
 * first call that is big enough for threads. What remains: limits that are lowered or used up later, by teams of several
 * calling threads or by other processes; processes of the user in other containers; OMP_STACKSIZE; and a number that the
 * program sets itself, which is taken as it is. Set the number to 1 where that can happen.
 *
 * After fork() a team does not live on in the child, and the GNU runtime would wait for it for ever. A child of a process
 * that had no thread besides the forking one is free; a child of any other keeps to 1 thread. */
#ifndef KESLCOREX_H
#define KESLCOREX_H

#include "keslmx.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The most threads that can be asked for. */
enum { keslCoreMaxThreads = 8192 };

/* Sets the number of threads for all calls of the process from here on; 0 goes back to the automatic number.
 * The number is taken as asked, also where it exceeds the processors; but a call from inside an active parallel region of
 * the program uses 1. May be called from any thread at any time; calls that are already running may still see the old
 * number. Returns keslStatusOk, or keslStatusBadCount for a number that changes nothing: below 0, above
 * keslCoreMaxThreads, or above 1 in a child of fork() that is bound to one thread. */
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
