#include "zvpcore.h"

#include <omp.h>

#include <algorithm>
#include <atomic>

namespace {
std::atomic<int> callerLimit{0}; // below 1: none
} // namespace

int ownGetNumThreads(void) {
    const int runtime = std::min(omp_get_max_threads(), omp_get_thread_limit());
    const int limit = callerLimit.load(std::memory_order_relaxed);
    return std::max(1, limit < 1 ? runtime : std::min(runtime, limit));
}

void zvpSetNumThreads(int count) {
    callerLimit.store(count, std::memory_order_relaxed);
}
