// The states of FIR filters: their layout, and what all functions need to know about their types.
#pragma once

#include "core/elements.hpp"
#include "zvps/arithmetic.h"
#include "zvps/fft.h"
#include "zvps/fir.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zvps {

template <class T>
struct FirMultirate;

// "FI" and two digits, the last character first in memory.
constexpr uint32_t firTag(int number) {
    return 0x46490000U | static_cast<uint32_t>('0' + number / 10) << 8 | static_cast<uint32_t>('0' + number % 10);
}

constexpr int firTagNumber(uint32_t tag) {
    return static_cast<int>((tag >> 8 & 15) * 10 + (tag & 15));
}

// By the types of taps and data.
template <class Taps, class Data>
inline constexpr uint32_t kFirTag = 0;
template <>
inline constexpr uint32_t kFirTag<Zvp32f, Zvp32f> = firTag(1);
template <>
inline constexpr uint32_t kFirTag<Zvp32fc, Zvp32fc> = firTag(2);
template <>
inline constexpr uint32_t kFirTag<Zvp32f, Zvp16s> = firTag(5);
template <>
inline constexpr uint32_t kFirTag<Zvp32fc, Zvp16sc> = firTag(6);
template <>
inline constexpr uint32_t kFirTag<Zvp32s, Zvp16s> = firTag(9);
template <>
inline constexpr uint32_t kFirTag<Zvp32sc, Zvp16sc> = firTag(10);
template <>
inline constexpr uint32_t kFirTag<Zvp64f, Zvp64f> = firTag(13);
template <>
inline constexpr uint32_t kFirTag<Zvp64fc, Zvp64fc> = firTag(14);
template <>
inline constexpr uint32_t kFirTag<Zvp64f, Zvp32f> = firTag(17);
template <>
inline constexpr uint32_t kFirTag<Zvp64fc, Zvp32fc> = firTag(18);
template <>
inline constexpr uint32_t kFirTag<Zvp64f, Zvp32s> = firTag(21);
template <>
inline constexpr uint32_t kFirTag<Zvp64fc, Zvp32sc> = firTag(22);
template <>
inline constexpr uint32_t kFirTag<Zvp64f, Zvp16s> = firTag(25);
template <>
inline constexpr uint32_t kFirTag<Zvp64fc, Zvp16sc> = firTag(26);
template <>
inline constexpr uint32_t kFirTag<Zvp16s, Zvp16s> = firTag(29);
// States without history; 0 where there are none.
template <class Taps, class Data>
inline constexpr uint32_t kFirStreamTag = 0;
template <>
inline constexpr uint32_t kFirStreamTag<Zvp16s, Zvp16s> = firTag(31);
template <>
inline constexpr uint32_t kFirStreamTag<Zvp32f, Zvp32f> = firTag(33);
// Multi-rate states: in each kind's pair of real and complex tags, two after those of one rate; one after where there
// are real ones alone.
template <class Taps, class Data>
inline constexpr uint32_t kFirMultirateTag = kFirTag<Taps, Data> == firTag(29)
                                                 ? firTag(30)
                                                 : firTag(firTagNumber(kFirTag<Taps, Data>) + 2);
template <class Taps, class Data>
inline constexpr uint32_t kFirMultirateStreamTag = kFirStreamTag<Taps, Data> == 0 ? 0 : kFirStreamTag<Taps, Data> + 1;

inline constexpr int32_t kFirSingleRate = 1;
inline constexpr int32_t kFirByLanes = 2;
inline constexpr int32_t kFirByPhases = 3;

// ---- Taps in floating point ----

// The FFT of a type of taps, and the lengths from which it, and threads, are used.
template <class Taps>
struct FirTraits;
#define ZVPS_FIR_TRAITS(TYPE, SPEC, FORWARD, INVERSE, MULTIPLY, fftTaps, fftAbove, forkAbove, fftCost)                 \
    template <>                                                                                                        \
    struct FirTraits<Zvp##TYPE> {                                                                                      \
        using Spec = ZvpsFFTSpec_##SPEC##_##TYPE;                                                                      \
        static constexpr auto getSize = zvpsFFTGetSize_##SPEC##_##TYPE;                                                \
        static constexpr auto init = zvpsFFTInit_##SPEC##_##TYPE;                                                      \
        static constexpr auto forward = zvpsFFTFwd_##FORWARD##_##TYPE##_I;                                             \
        static constexpr auto inverse = zvpsFFTInv_##INVERSE##_##TYPE##_I;                                             \
        static constexpr auto multiply = MULTIPLY;                                                                     \
        static constexpr int kFftTaps = fftTaps;                                                                       \
        static constexpr int kFftAbove = fftAbove;                                                                     \
        static constexpr int kForkAbove = forkAbove;                                                                   \
        static constexpr int kFftCost = fftCost;                                                                       \
    };
// The cost is of N log2 N in the products of a direct sum, both transforms together.
ZVPS_FIR_TRAITS(32f, R, RToPerm, PermToR, zvpsMulPerm_32f_I, 64, 511, 1600, 7)
ZVPS_FIR_TRAITS(64f, R, RToPerm, PermToR, zvpsMulPerm_64f_I, 64, 511, 1600, 5)
ZVPS_FIR_TRAITS(32fc, C, CToC, CToC, zvpsMul_32fc_I, 16, 255, 800, 4)
ZVPS_FIR_TRAITS(64fc, C, CToC, CToC, zvpsMul_64fc_I, 32, 255, 800, 4)
#undef ZVPS_FIR_TRAITS

// Of the FFT that a filter of so many taps goes with: more than twice their length.
constexpr int firFftOrder(int tapsLen) {
    int order = 3;
    while (int64_t{1} << (order - 1) <= tapsLen)
        ++order;
    return order;
}

// Data of other types are converted to that of the taps. The delay ring has the last tapsLen inputs from `index` on,
// the oldest first, and room for a block behind twice that.
template <class Taps>
struct FirState {
    uint32_t tag;
    Taps* taps; // reversed; at most four copies, each an element further from the begin of its quarter
    Taps* ring;
    int32_t tapsLen;
    int32_t blockLimit; // the longest block for which the ring has room
    typename FirTraits<Taps>::Spec* fft;
    Taps* spectrum; // of the taps
    int32_t fftLen; // below 1: none
    int32_t index;
    Taps* broadcast; // each reversed tap four times
    int32_t delayLen;
    Taps* work; // fftLen elements, followed by the FFT's work buffer: those of the first thread
    unsigned char* threadWork;
    int32_t workBytes; // of one thread
    int32_t mode;
    Taps* past; // tapsLen elements for the duration of a call
    int32_t threads;
    int32_t isAllocated;
    FirMultirate<Taps>* multirate; // null: one rate
};
static_assert(offsetof(FirState<Zvp32f>, taps) == 8 && offsetof(FirState<Zvp32f>, ring) == 16);
static_assert(offsetof(FirState<Zvp32f>, tapsLen) == 24 && offsetof(FirState<Zvp32f>, blockLimit) == 28);
static_assert(offsetof(FirState<Zvp32f>, fft) == 32 && offsetof(FirState<Zvp32f>, spectrum) == 40);
static_assert(offsetof(FirState<Zvp32f>, fftLen) == 48 && offsetof(FirState<Zvp32f>, index) == 52);
static_assert(offsetof(FirState<Zvp32f>, broadcast) == 56 && offsetof(FirState<Zvp32f>, delayLen) == 64);

// What a state is built for: to stay, or for one call that may or may not need the FFT.
enum class FirUse { lasting, block, longBlock };

// The bytes of a state, or -1 if an int does not hold them.
template <class Taps>
int firStateSize(int tapsLen, int threads, FirUse use);

// Builds a state of tapsLen and more taps' memory in `buffer`, without taps and past inputs.
template <class Taps>
FirState<Taps>* buildFirState(uint32_t tag, int tapsLen, int threads, FirUse use, unsigned char* buffer);

// `taps` in their order.
template <class Taps, class Source>
void setFirTaps(FirState<Taps>& state, const Source* taps);
// As taps of integers are set, whose factor these do not have.
template <class Taps, class Source>
void setFirTaps(FirState<Taps>& state, const Source* taps, int) {
    setFirTaps(state, taps);
}

// ---- Taps of 16 bits ----

struct FirPairs;

enum RunCount { kOneRun, kSomeRuns, kTooManyRuns };

// What multi-rate sums of integers run in: exactly.
template <class Data>
using FirWide = std::conditional_t<std::is_same_v<Data, Part<Data>>, Zvp64f, Zvp64fc>;

// Data: 16s or 16sc.
template <class Data>
struct FirIntegerState {
    uint32_t tag;
    Zvp32s* taps; // reversed, the parts of complex ones beside each other
    Data* ring;
    int32_t tapsLen;
    int32_t stride; // elements from copy to copy
    Zvp16s* copies; // null in multi-rate states; else the pairs that kernels multiply by: of real taps four reversed
                    // copies, copy c shifted by c + 1
    int32_t index;
    int32_t tapScale; // the taps' value is their integer times 2^tapScale
    uint8_t* steps;   // see FirPairs
    RunCount runs;
    int32_t threads;
    int32_t isAllocated;
    int32_t mode;
    int32_t delayLen;
    FirMultirate<FirWide<Data>>* multirate; // null: one rate
};
static_assert(offsetof(FirIntegerState<Zvp16s>, taps) == 8 && offsetof(FirIntegerState<Zvp16s>, ring) == 16);
static_assert(offsetof(FirIntegerState<Zvp16s>, tapsLen) == 24 && offsetof(FirIntegerState<Zvp16s>, stride) == 28);
static_assert(offsetof(FirIntegerState<Zvp16s>, copies) == 32 && offsetof(FirIntegerState<Zvp16s>, index) == 40);
static_assert(offsetof(FirIntegerState<Zvp16s>, tapScale) == 44);

template <class Data>
int firIntegerStateSize(int tapsLen);
template <class Data>
FirIntegerState<Data>* buildFirIntegerState(uint32_t tag, int tapsLen, int threads, unsigned char* buffer);

// Stores taps as they are (16s) or reduced to 16 bits (32s, 32sc, 32f, 32fc). tapsFactor is that of integer taps.
template <class Data, class Source>
void setFirTaps(FirIntegerState<Data>& state, const Source* taps, int tapsFactor);

template <class Data>
FirPairs firPairs(const FirIntegerState<Data>& state);

// ---- Past inputs, in both kinds of states ----

template <class To, class From>
To firElement(From v) {
    if constexpr (std::is_same_v<From, Part<From>>) {
        return static_cast<To>(v);
    } else {
        return {static_cast<Part<To>>(v.re), static_cast<Part<To>>(v.im)};
    }
}

template <class State, class Data>
void setFirPast(State& state, const Data* dlyLine) {
    using Element = std::remove_reference_t<decltype(*state.ring)>;
    const int n = state.delayLen;
    for (int i = 0; i < n; ++i)
        state.ring[i] = dlyLine == nullptr ? Element{} : firElement<Element>(dlyLine[n - 1 - i]);
    state.index = 0;
}

template <class State, class Data>
void getFirPast(const State& state, Data* dlyLine) {
    const auto* past = state.ring + state.index;
    for (int i = 0; i < state.delayLen; ++i)
        dlyLine[i] = firElement<Data>(past[state.delayLen - 1 - i]);
}

} // namespace zvps
