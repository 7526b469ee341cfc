// The states of recursive filters: their layout, and what all functions need to know about their types.
#pragma once

#include "core/elements.hpp"
#include "filters/iir.table.hpp"
#include "zvps/iir.h"

#include <cstddef>
#include <cstdint>
#include <limits>

namespace zvps {

// "II" and two digits, the last character first in memory.
constexpr uint32_t iirTag(int number) {
    return 0x49490000U | static_cast<uint32_t>('0' + number / 10) << 8 | static_cast<uint32_t>('0' + number % 10);
}

enum class IirKind { order, biquads, directForm1 };

// Of the type in which the filter computes. What pointers point to follows the state.
template <class Element>
struct IirState {
    using T = Part<Element>;
    struct Sections {
        BiquadCascade<T> cascade;
        BiquadRun<T>* runs; // those of the cascade, whether it uses them or not
    };

    uint32_t tag;
    Element* taps; // b0..bN, a1..aN, or of each section b0, b1, b2, a1, a2: times 1/A0
    Element* delay;
    int32_t order; // two for each section
    int32_t sections;
    // As kernels take them, so that nothing is copied at a call of one sample.
    union {
        Sections biquads; // not in direct form 1
        IirFilter<T> filter;
    };
    Element* scratch; // data converted to elements
    Zvp8u* allocated; // by the library; else null
};
static_assert(offsetof(IirState<Zvp32f>, taps) == 8 && offsetof(IirState<Zvp32f>, delay) == 16);
static_assert(offsetof(IirState<Zvp32f>, order) == 24 && offsetof(IirState<Zvp32f>, sections) == 28);
static_assert(sizeof(IirState<Zvp32f>) <= 96 && sizeof(IirState<Zvp64fc>) <= 96);

// What an opaque type stands for: the data, the type in which the filter computes, and that by which states are sized.
template <class Opaque>
struct IirTraits;
#define ZVPS_IIR_TYPE(NAME, DATA, ELEMENT, SIZE, NUMBER, DF1)                                                          \
    template <>                                                                                                        \
    struct IirTraits<ZvpsIIRState##NAME> {                                                                             \
        using Data = Zvp##DATA;                                                                                        \
        using Element = Zvp##ELEMENT;                                                                                  \
        using Size = Zvp##SIZE;                                                                                        \
        static constexpr uint32_t kTags[] = {iirTag(NUMBER), iirTag(NUMBER + 1), DF1};                                 \
    };
ZVPS_IIR_TYPE(_32f, 32f, 32f, 32f, 1, iirTag(29))
ZVPS_IIR_TYPE(_32fc, 32fc, 32fc, 32fc, 3, 0)
ZVPS_IIR_TYPE(32f_16s, 16s, 32f, 32f, 5, 0)
ZVPS_IIR_TYPE(32fc_16sc, 16sc, 32fc, 32fc, 7, 0)
ZVPS_IIR_TYPE(32s_16s, 16s, 64f, 32f, 9, 0)
ZVPS_IIR_TYPE(32sc_16sc, 16sc, 64fc, 32fc, 11, 0)
ZVPS_IIR_TYPE(_64f, 64f, 64f, 64f, 13, 0)
ZVPS_IIR_TYPE(_64fc, 64fc, 64fc, 64fc, 15, 0)
ZVPS_IIR_TYPE(64f_32f, 32f, 64f, 64f, 17, 0)
ZVPS_IIR_TYPE(64fc_32fc, 32fc, 64fc, 64fc, 19, 0)
ZVPS_IIR_TYPE(64f_32s, 32s, 64f, 64f, 21, iirTag(30))
ZVPS_IIR_TYPE(64fc_32sc, 32sc, 64fc, 64fc, 23, 0)
ZVPS_IIR_TYPE(64f_16s, 16s, 64f, 64f, 25, 0)
ZVPS_IIR_TYPE(64fc_16sc, 16sc, 64fc, 64fc, 27, 0)
#undef ZVPS_IIR_TYPE

inline constexpr uint32_t kIirSparseTag = iirTag(31);

template <class Opaque>
inline constexpr bool kIirIsMixed =
    !std::is_same_v<typename IirTraits<Opaque>::Data, typename IirTraits<Opaque>::Element>;

// Mixed types are converted in parts of as many elements: as much memory as 1024 elements of the size type.
template <class Opaque>
inline constexpr int kIirScratch = static_cast<int>(1024 * sizeof(typename IirTraits<Opaque>::Size) /
                                                    sizeof(typename IirTraits<Opaque>::Element));

template <class Opaque>
IirState<typename IirTraits<Opaque>::Element>* header(Opaque* state) {
    return reinterpret_cast<IirState<typename IirTraits<Opaque>::Element>*>(state);
}
template <class Opaque>
const IirState<typename IirTraits<Opaque>::Element>* header(const Opaque* state) {
    return reinterpret_cast<const IirState<typename IirTraits<Opaque>::Element>*>(state);
}

// ---- Sizes ----

constexpr int64_t roundDown(int64_t v, int64_t unit) {
    return v / unit * unit;
}

// The bytes of a state of order n or n sections. Size: the type of its row; `mixed`: whether the data's type is
// another.
template <class Size>
constexpr int64_t iirStateBytes(IirKind kind, int64_t n, bool mixed) {
    const int64_t scratch = mixed ? 2048 : 1024;
    if constexpr (std::is_same_v<Size, Zvp32f>) {
        switch (kind) {
        case IirKind::order:
            return 4 * (8 * n + 26 + scratch) + 96 + roundDown(8 * n + 19, 16) + roundDown(4 * n + 19, 16) + 32;
        case IirKind::biquads:
            return 4 * (40 * n + scratch + 10) + 96 + roundDown(20 * n + 15, 16) + roundDown(8 * n + 15, 16) + 32;
        case IirKind::directForm1:
            return roundDown(20 * n + 15, 16) + 96 + 16 * n + 32;
        }
    } else if constexpr (std::is_same_v<Size, Zvp32fc>) {
        if (kind == IirKind::order) {
            return 8 * (16 * n + 46 + scratch) + 96 + roundDown(16 * n + 39, 32) + roundDown(8 * n + 39, 32) + 32;
        }
        return 8 * (148 * n + scratch) + 96 + roundDown(40 * n + 31, 32) + roundDown(16 * n + 31, 32) + 64;
    } else if constexpr (std::is_same_v<Size, Zvp64f>) {
        switch (kind) {
        case IirKind::order:
            return 8 * (6 * n + 14 + scratch) + 96 + roundDown(16 * n + 23, 16) + roundDown(8 * n + 23, 16) + 32;
        case IirKind::biquads:
            return 8 * (32 * n + scratch) + 96 + 16 * (((40 * n + 15) >> 4) + n);
        case IirKind::directForm1:
            return 8 * (32 * n + scratch) + 96 + roundDown(40 * n + 15, 16) + 48 * n;
        }
    } else {
        static_assert(std::is_same_v<Size, Zvp64fc>);
        if (kind == IirKind::order) {
            return 16 * ((mixed ? 2 : 1) * (n + 1024) + 14 * n + 10) + 96 + 16 * (2 * n + 1) + 16 * (n + 1) + 32;
        }
        return 16 * (64 * n + scratch) + 96 + 112 * n + 32;
    }
    return 0;
}

// 0 where n is no order, or too large for a size that is an int.
template <class Opaque>
constexpr int iirStateSize(IirKind kind, int n) {
    const int64_t bytes = iirStateBytes<typename IirTraits<Opaque>::Size>(kind, n, kIirIsMixed<Opaque>);
    return n < 1 || bytes > std::numeric_limits<int>::max() ? 0 : static_cast<int>(bytes);
}

// ---- Building and changing ----

// A state of zeros; `mixed` has scratch memory of that many elements.
template <class Element>
IirState<Element>* buildIirState(IirKind kind, uint32_t tag, int n, int scratch, Zvp8u* buffer);

// Whether any divisor (A0, or a section's A0 or B0) is zero.
template <class Taps>
bool hasZeroDivisor(IirKind kind, const Taps* taps, int n);

// Stores taps without zero divisors. The delay line stays.
template <class Element, class Taps>
void setIirTaps(IirState<Element>& state, IirKind kind, const Taps* taps);

// Entries of the delay line, an even one first. Not in direct form 1.
template <class Element>
void getIirDelay(const IirState<Element>& state, int first, int count, Element* delay);

// Fills the delay line with zeros. Not in direct form 1.
template <class Element>
void clearIirDelay(IirState<Element>& state);

} // namespace zvps
