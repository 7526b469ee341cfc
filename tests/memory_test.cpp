// The typed allocation functions, in a program that brings its own zvpMalloc and zvpFree.
#include "zvpcore.h"
#include "zvps.h"

#include <gtest/gtest.h>

#include <climits>

namespace {
std::vector<int64_t> requests;
std::vector<void*> releases;
void* answer = nullptr;
} // namespace

void* zvpMalloc(int64_t size) {
    requests.push_back(size);
    return answer;
}

void zvpFree(void* ptr) {
    releases.push_back(ptr);
}

namespace {

template <class T>
void expectRequests(T* (*allocate)(int), int64_t elementBytes) {
    char block;
    for (void* const next : {static_cast<void*>(&block), static_cast<void*>(nullptr)}) {
        answer = next;
        for (const int len : {1, 7, 1000, INT_MAX}) {
            requests.clear();
            EXPECT_EQ(allocate(len), next);
            EXPECT_EQ(requests, std::vector<int64_t>{len * elementBytes});
        }
        for (const int len : {0, -5, INT_MIN}) {
            requests.clear();
            EXPECT_EQ(allocate(len), nullptr);
            EXPECT_TRUE(requests.empty());
        }
    }
}

TEST(Memory, Requests) {
    expectRequests(zvpsMalloc_8u, 1);
    expectRequests(zvpsMalloc_8s, 1);
    expectRequests(zvpsMalloc_8sc, 2);
    expectRequests(zvpsMalloc_16s, 2);
    expectRequests(zvpsMalloc_16u, 2);
    expectRequests(zvpsMalloc_16sc, 4);
    expectRequests(zvpsMalloc_32f, 4);
    expectRequests(zvpsMalloc_32s, 4);
    expectRequests(zvpsMalloc_32u, 4);
    expectRequests(zvpsMalloc_32fc, 8);
    expectRequests(zvpsMalloc_32sc, 8);
    expectRequests(zvpsMalloc_64f, 8);
    expectRequests(zvpsMalloc_64s, 8);
    expectRequests(zvpsMalloc_64fc, 16);
    expectRequests(zvpsMalloc_64sc, 16);
}

TEST(Memory, Releases) {
    char block;
    zvpsFree(&block);
    zvpsFree(nullptr);
    EXPECT_EQ(releases, (std::vector<void*>{&block, nullptr}));
}

} // namespace
