// The library's memory, in the place of the companion library's functions: counted, no better aligned than the library
// needs, and out when a test says so. For one file of a program.
#pragma once

#include "zvpcore.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <mutex>
#include <set>

namespace zvps::test {

inline int allocationsLeft = -1; // before memory runs out; negative: for ever
inline std::set<void*> blocks;
inline std::mutex blocksMutex;

} // namespace zvps::test

void* zvpMalloc(int64_t size) {
    using namespace zvps::test;
    const std::lock_guard lock(blocksMutex);
    if (size < 1 || allocationsLeft == 0) return nullptr;
    if (allocationsLeft > 0) --allocationsLeft;
    void* const block = std::aligned_alloc(32, (static_cast<size_t>(size) + 31) / 32 * 32);
    blocks.insert(block);
    return block;
}

void zvpFree(void* ptr) {
    const std::lock_guard lock(zvps::test::blocksMutex);
    EXPECT_TRUE(ptr == nullptr || zvps::test::blocks.erase(ptr) == 1);
    std::free(ptr);
}
