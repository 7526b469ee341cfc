#include "zvpcore.h"

#include <cstdlib>

namespace {
// A whole cache line: the widest vector never straddles two of them at the start of a block.
constexpr int64_t kAlignment = 64;
} // namespace

void* zvpMalloc(int64_t size) {
    if (size < 1 || size > INT64_MAX - kAlignment) return nullptr;
    const int64_t rounded = (size + kAlignment - 1) / kAlignment * kAlignment;
    return std::aligned_alloc(kAlignment, static_cast<size_t>(rounded));
}

void zvpFree(void* ptr) {
    std::free(ptr);
}
