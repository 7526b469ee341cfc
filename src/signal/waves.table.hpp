// Tones and triangle waves: the bridge between entries and kernels.
#pragma once

#include "zvps/types.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

#define ZVPS_WAVE_TYPES(X) X(16s) X(16sc) X(32f) X(32fc) X(64f) X(64fc)

namespace zvps {

// Waves come in blocks of so many parts of elements, which start at multiples of their length from the wave's first
// sample on, wherever a call begins: so every sample is computed in the same way in any call.
inline constexpr size_t kWaveBlock = 32;
// The blocks of a tone start from rotations of which so many are computed side by side, ...
inline constexpr size_t kToneGroup = 8;
// ... each from the one as many blocks before, and anew after so many groups, lest rounding errors add up.
template <class Part>
inline constexpr size_t kToneGroups = sizeof(Part) == 8 ? 4 : 16;

// A phase or a frequency in turns, modulo 1, as a fraction of 128 bits.
struct Turns {
    uint64_t high;
    uint64_t low;
};
__extension__ typedef unsigned __int128 TurnsInteger;

// Inline even without optimisation: kernels of all levels use these.
[[gnu::always_inline]] inline TurnsInteger integer(Turns turns) {
    return TurnsInteger{turns.high} << 64 | turns.low;
}
// The upper half of turns times count.
[[gnu::always_inline]] inline uint64_t multiple(Turns turns, uint64_t count) {
    return static_cast<uint64_t>(integer(turns) * count >> 64);
}

struct Oscillation {
    uint64_t phase; // of sample 0, in units of 2^-64 turns
    Turns frequency;

    [[gnu::always_inline]] uint64_t phaseAt(uint64_t sample) const { return phase + multiple(frequency, sample); }
};

// 16-bit tones are computed in double precision: their values hardly ever round to another integer than exact ones.
template <class T>
using ToneValue = std::conditional_t<std::is_same_v<T, Zvp32f> || std::is_same_v<T, Zvp32fc>, Zvp32f, Zvp64f>;

// Part j of a block that starts at phase p is a[j] cos(p) + b[j] sin(p).
template <class W>
struct ToneTables {
    W a[kWaveBlock];
    W b[kWaveBlock];
    double rotation[2];          // cosine and sine of the phase from one group to the next
    uint64_t blocks[kToneGroup]; // phases of a group's blocks
};

template <class T>
struct ToneSlots {
    using Tables = ToneTables<ToneValue<T>>;

    // Fills the tables for that many samples from the wave's first on.
    void (*prepare)(const Oscillation& oscillation, double magnitude, size_t samples, Tables* tables);
    // n samples from `first` on.
    ZvpStatus (*run)(T* dst, size_t n, uint64_t first, const Oscillation& oscillation, const Tables& tables);
};

// With p the phase in turns, from 0 to 1: min(up p, down (1 - p)) - magnitude.
struct Triangle {
    double magnitude;
    double up;
    double down;
    uint64_t offsets[kWaveBlock]; // phases of a block's parts, with half a unit of a phase in double precision
};

template <class T>
using TriangleKernel = ZvpStatus (*)(T* dst, size_t n, uint64_t first, const Oscillation& oscillation,
                                     const Triangle& triangle);

struct WaveKernels {
#define ZVPS_SLOT(type)                                                                                                \
    ToneSlots<Zvp##type> tone##type;                                                                                   \
    TriangleKernel<Zvp##type> triangle##type;
    ZVPS_WAVE_TYPES(ZVPS_SLOT)
#undef ZVPS_SLOT

    template <class T>
    const ToneSlots<T>& tone() const {
#define ZVPS_SLOT(type)                                                                                                \
    if constexpr (std::is_same_v<T, Zvp##type>) return tone##type;
        ZVPS_WAVE_TYPES(ZVPS_SLOT)
#undef ZVPS_SLOT
    }
    template <class T>
    TriangleKernel<T> triangle() const {
#define ZVPS_SLOT(type)                                                                                                \
    if constexpr (std::is_same_v<T, Zvp##type>) return triangle##type;
        ZVPS_WAVE_TYPES(ZVPS_SLOT)
#undef ZVPS_SLOT
    }
};

} // namespace zvps
