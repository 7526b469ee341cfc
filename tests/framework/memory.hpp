// The library's memory, which runs out when a test says so. For one file of a program.
#pragma once

#include "zvpcore.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

namespace zvps::test {

inline int allocationsLeft = -1; // before memory runs out; negative: for ever
inline std::set<void*> blocks;

} // namespace zvps::test

void* zvpMalloc(int64_t size) {
    using namespace zvps::test;
    if (size < 1 || allocationsLeft == 0) return nullptr;
    if (allocationsLeft > 0) --allocationsLeft;
    void* const block = std::aligned_alloc(64, (static_cast<size_t>(size) + 63) / 64 * 64);
    blocks.insert(block);
    return block;
}

void zvpFree(void* ptr) {
    EXPECT_TRUE(ptr == nullptr || zvps::test::blocks.erase(ptr) == 1);
    std::free(ptr);
}
