// Random numbers: the bridge between entries and kernels.
#pragma once

#include "zvps/status.h"
#include "zvps/types.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

#define ZVPS_RANDOM_TYPES(X) X(8u) X(16s) X(32f) X(64f)

namespace zvps {

inline constexpr uint32_t kCongruentialFactor = 69069;
inline constexpr uint32_t kCongruentialTerm = 1013904243;
constexpr uint32_t nextCongruential(uint32_t word) {
    return kCongruentialFactor * word + kCongruentialTerm;
}

// The sequence of raw numbers: sums of a congruential word and a difference of lagged ones with a borrow.
struct RandomWords {
    uint32_t congruential;
    uint32_t lagged[3]; // the last first
    uint32_t borrow;    // 0 or all ones

    uint32_t nextLagged() {
        const uint32_t difference = lagged[1] - lagged[2] + borrow;
        borrow = static_cast<uint32_t>(static_cast<int32_t>(difference) >> 31);
        lagged[2] = lagged[1];
        lagged[1] = lagged[0];
        return lagged[0] = difference - (borrow & 18);
    }
    uint32_t next() {
        congruential = nextCongruential(congruential);
        return congruential + nextLagged();
    }
};

// Normal deviates come in pairs.
struct GaussWords {
    RandomWords words;
    int32_t hasSecond;
    double second;
};

template <class T>
struct RandomSlots {
    // raw scale + middle
    ZvpStatus (*uniform)(T* dst, size_t n, RandomWords* words, double scale, double middle);
    ZvpStatus (*gauss)(T* dst, size_t n, GaussWords* words, double mean, double deviation);
};

struct RandomKernels {
#define ZVPS_SLOT(type) RandomSlots<Zvp##type> for##type;
    ZVPS_RANDOM_TYPES(ZVPS_SLOT)
#undef ZVPS_SLOT

    template <class T>
    const RandomSlots<T>& slots() const {
#define ZVPS_SLOT(type)                                                                                                \
    if constexpr (std::is_same_v<T, Zvp##type>) return for##type;
        ZVPS_RANDOM_TYPES(ZVPS_SLOT)
#undef ZVPS_SLOT
    }
};

} // namespace zvps
