// In the place of the companion library's functions: they count, and refuse on demand.
#include "framework/filters.hpp"
#include "zvpcore.h"

#include <cstdlib>

namespace zvps::test {
int blocksInUse = 0;
int refuseAfter = -1;
} // namespace zvps::test

void* zvpMalloc(int64_t size) {
    using zvps::test::refuseAfter;
    if (refuseAfter == 0 || size < 1) return nullptr;
    if (refuseAfter > 0) --refuseAfter;
    ++zvps::test::blocksInUse;
    return std::aligned_alloc(32, (static_cast<size_t>(size) + 31) / 32 * 32);
}
void zvpFree(void* block) {
    zvps::test::blocksInUse -= block != nullptr;
    std::free(block);
}
