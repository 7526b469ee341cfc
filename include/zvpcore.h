/* The companion core library: aligned memory and the number of threads. zvps takes all its memory from here; a program
   may define zvpMalloc and zvpFree itself (both, and before this library in link order) to supply its own. */
#ifndef ZVPCORE_H
#define ZVPCORE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* A block of `size` bytes, aligned to 64 bytes, uninitialised; null when `size` is below 1 or memory has run out. */
void* zvpMalloc(int64_t size);

/* Releases a block from zvpMalloc; null is accepted. */
void zvpFree(void* ptr);

/* How many threads a function of the library may use now: what the OpenMP runtime would give a parallel region at this
   point (OMP_NUM_THREADS, OMP_THREAD_LIMIT, omp_set_num_threads), never more than zvpSetNumThreads allows, at least
   1. */
int ownGetNumThreads(void);

/* Lets the library use at most `count` threads, in the whole process; a count below 1 lifts the limit again. Safe to
   call at any time, from any thread; filters built earlier keep the count that sized them. */
void zvpSetNumThreads(int count);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
