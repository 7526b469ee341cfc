#include "zvps/generators.h"

#include "core/checks.hpp"
#include "core/level.hpp"
#include "signal/generator_state.hpp"
#include "signal/random.table.hpp"

#include <cstddef>

namespace zvps {
namespace {

RandomWords seeded(uint32_t seed) {
    const uint32_t second = nextCongruential(seed);
    return {1131199209, {seed, second, nextCongruential(second)}, UINT32_MAX};
}

template <class T>
double scaleOf(T low, T high) {
    return (static_cast<double>(high) - static_cast<double>(low)) * 0x1p-32;
}
template <class T>
double middleOf(T low, T high) {
    return (static_cast<double>(low) + static_cast<double>(high)) / 2;
}

template <class T>
struct UniformState {
    uint32_t tag;
    uint32_t seed;
    T low;
    T high;
    double middle;
    double scale;
    RandomWords words;
    int32_t isAllocated;
};
static_assert(offsetof(UniformState<Zvp32f>, low) == 8 && offsetof(UniformState<Zvp32f>, middle) == 16);

template <class T>
struct GaussState {
    uint32_t tag;
    uint32_t seed;
    T mean;
    T deviation;
    GaussWords words;
    int32_t isAllocated;
};

} // namespace

#define ZVPS_RANDOM_STATE(NAME, STATE, TYPE, TAG)                                                                      \
    template <>                                                                                                        \
    struct StateOf<ZvpsRand##NAME##State_##TYPE> {                                                                     \
        using Type = STATE<Zvp##TYPE>;                                                                                 \
        static constexpr uint32_t kTag = TAG;                                                                          \
    };
ZVPS_RANDOM_STATE(Uniform, UniformState, 8u, 35)
ZVPS_RANDOM_STATE(Uniform, UniformState, 16s, 36)
ZVPS_RANDOM_STATE(Uniform, UniformState, 32f, 37)
ZVPS_RANDOM_STATE(Gauss, GaussState, 8u, 38)
ZVPS_RANDOM_STATE(Gauss, GaussState, 16s, 39)
ZVPS_RANDOM_STATE(Gauss, GaussState, 32f, 40)

namespace {

template <class Opaque, class T>
auto buildUniform(T low, T high, uint32_t seed) {
    return [=](UniformState<T>* state) {
        *state = {StateOf<Opaque>::kTag, seed, low, high, middleOf(low, high), scaleOf(low, high), seeded(seed), 0};
    };
}
template <class Opaque, class T>
auto buildGauss(T mean, T deviation, uint32_t seed) {
    return [=](GaussState<T>* state) {
        *state = {StateOf<Opaque>::kTag, seed, mean, deviation, {seeded(seed), 0, 0}, 0};
    };
}

template <class T, class Opaque>
ZvpStatus uniform(T* dst, int len, Opaque* opaque) {
    if (const ZvpStatus status = checkRun(dst, len, opaque)) return status;
    UniformState<T>& state = *header(opaque);
    return kernels().random->slots<T>().uniform(dst, static_cast<size_t>(len), &state.words, state.scale, state.middle);
}

template <class T, class Opaque>
ZvpStatus gauss(T* dst, int len, Opaque* opaque) {
    if (const ZvpStatus status = checkRun(dst, len, opaque)) return status;
    GaussState<T>& state = *header(opaque);
    return kernels().random->slots<T>().gauss(dst, static_cast<size_t>(len), &state.words,
                                              static_cast<double>(state.mean), static_cast<double>(state.deviation));
}

template <class T>
ZvpStatus uniformDirect(T* dst, int len, T low, T high, Zvp32u* seed) {
    if (const ZvpStatus status = checkVectors(len, dst, seed)) return status;
    RandomWords words = seeded(*seed);
    kernels().random->slots<T>().uniform(dst, static_cast<size_t>(len), &words, scaleOf(low, high),
                                         middleOf(low, high));
    *seed = words.next();
    return zvpStsOk;
}

template <class T>
ZvpStatus gaussDirect(T* dst, int len, T mean, T deviation, Zvp32u* seed) {
    if (const ZvpStatus status = checkVectors(len, dst, seed)) return status;
    GaussWords words = {seeded(*seed), 0, 0};
    kernels().random->slots<T>().gauss(dst, static_cast<size_t>(len), &words, static_cast<double>(mean),
                                       static_cast<double>(deviation));
    *seed = words.words.next();
    return zvpStsOk;
}

} // namespace
} // namespace zvps

// ---- Entries ----

#define ZVPS_RANDOM(NAME, OPERATION, TYPE, FIRST, SECOND)                                                              \
    ZvpStatus zvpsRand##NAME##InitAlloc_##TYPE(ZvpsRand##NAME##State_##TYPE** ppState, Zvp##TYPE FIRST,                \
                                               Zvp##TYPE SECOND, Zvp32u seed) {                                        \
        if (ppState == nullptr) return zvpStsNullPtr;                                                                  \
        return zvps::allocState(ppState, zvps::build##NAME<ZvpsRand##NAME##State_##TYPE>(FIRST, SECOND, seed));        \
    }                                                                                                                  \
    ZvpStatus zvpsRand##NAME##_##TYPE(Zvp##TYPE* pDst, int len, ZvpsRand##NAME##State_##TYPE* pState) {                \
        return zvps::OPERATION(pDst, len, pState);                                                                     \
    }                                                                                                                  \
    ZvpStatus zvpsRand##NAME##Free_##TYPE(ZvpsRand##NAME##State_##TYPE* pState) {                                      \
        return zvps::freeState(pState);                                                                                \
    }
#define ZVPS_RANDOM_INIT(NAME, FIRST, SECOND)                                                                          \
    ZvpStatus zvpsRand##NAME##GetSize_16s(int* pSize) {                                                                \
        return zvps::stateSize<ZvpsRand##NAME##State_16s>(pSize);                                                      \
    }                                                                                                                  \
    ZvpStatus zvpsRand##NAME##Init_16s(ZvpsRand##NAME##State_16s* pState, Zvp16s FIRST, Zvp16s SECOND, Zvp32u seed) {  \
        if (pState == nullptr) return zvpStsNullPtr;                                                                   \
        zvps::initState(pState, zvps::build##NAME<ZvpsRand##NAME##State_16s>(FIRST, SECOND, seed));                    \
        return zvpStsOk;                                                                                               \
    }
#define ZVPS_RANDOM_DIRECT(NAME, OPERATION, TYPE, FIRST, SECOND)                                                       \
    ZvpStatus zvpsRand##NAME##_Direct_##TYPE(Zvp##TYPE* pDst, int len, Zvp##TYPE FIRST, Zvp##TYPE SECOND,              \
                                             Zvp32u* pSeed) {                                                          \
        return zvps::OPERATION##Direct(pDst, len, FIRST, SECOND, pSeed);                                               \
    }
#define ZVPS_RANDOM_FAMILY(NAME, OPERATION, FIRST, SECOND)                                                             \
    ZVPS_RANDOM_INIT(NAME, FIRST, SECOND)                                                                              \
    ZVPS_RANDOM(NAME, OPERATION, 8u, FIRST, SECOND)                                                                    \
    ZVPS_RANDOM(NAME, OPERATION, 16s, FIRST, SECOND)                                                                   \
    ZVPS_RANDOM(NAME, OPERATION, 32f, FIRST, SECOND)                                                                   \
    ZVPS_RANDOM_DIRECT(NAME, OPERATION, 16s, FIRST, SECOND)                                                            \
    ZVPS_RANDOM_DIRECT(NAME, OPERATION, 32f, FIRST, SECOND)                                                            \
    ZVPS_RANDOM_DIRECT(NAME, OPERATION, 64f, FIRST, SECOND)

ZVPS_RANDOM_FAMILY(Uniform, uniform, low, high)
ZVPS_RANDOM_FAMILY(Gauss, gauss, mean, stdDev)
