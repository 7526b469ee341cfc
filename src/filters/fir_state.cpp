#include "filters/fir_state.hpp"

#include "filters/carver.hpp"
#include "filters/fir.table.hpp"
#include "filters/fir_multirate_state.hpp"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace zvps {
namespace {

constexpr int64_t kMostBytes = std::numeric_limits<int>::max();

// ---- Taps in floating point ----

struct FirFftSizes {
    int order = 0;
    int length = 0; // 0: no FFT
    int spec = 0;
    int init = 0;
    int work = 0;
};

template <class Taps>
FirFftSizes fftSizes(int tapsLen, FirUse use) {
    FirFftSizes sizes;
    if (tapsLen < FirTraits<Taps>::kFftTaps || use == FirUse::block) return sizes;
    const int order = firFftOrder(tapsLen);
    if (FirTraits<Taps>::getSize(order, zvpFftScaleInv, 0, &sizes.spec, &sizes.init, &sizes.work) != zvpStsOk) {
        return {};
    }
    sizes.order = order;
    sizes.length = 1 << order;
    return sizes;
}

constexpr int64_t tapsStride(int64_t tapsLen) {
    return (tapsLen + 6) & ~int64_t{3};
}
constexpr int64_t ringLength(int64_t tapsLen) {
    return 3 * tapsLen + 4;
}

} // namespace

// Lasting states hold room for a block of 4092 elements and one of tapsLen for each thread's use, of which the past of
// a call and the alignment of the FFT's vectors take a little.
template <class Taps>
int firStateSize(int tapsLen, int threads, FirUse use) {
    const int64_t element = sizeof(Taps);
    const int64_t taps = tapsLen;
    const FirFftSizes fft = fftSizes<Taps>(tapsLen, use);
    const int64_t fftBytes = roundUp(element * fft.length, 16);
    const int64_t row = roundUp(element * taps, 16);
    int64_t size = 176 + row + roundUp(element * ringLength(taps), 16) + fftBytes + threads * (fft.work + fftBytes) +
                   fft.spec + fft.init;
    if (use == FirUse::lasting) {
        size += 4 * element * tapsStride(taps) + 4 * row + element * (4 * threads + 4092) + roundUp(4 * threads, 16);
    } else {
        size += row + int64_t{64} * (threads + 3);
    }
    return size > kMostBytes ? -1 : static_cast<int>(size);
}

template <class Taps>
FirState<Taps>* buildFirState(uint32_t tag, int tapsLen, int threads, FirUse use, unsigned char* buffer) {
    Carver carver(buffer);
    auto& state = *carver.take<FirState<Taps>>(1);
    state = {};
    state.tag = tag;
    state.tapsLen = tapsLen;
    state.delayLen = tapsLen;
    state.blockLimit = ((tapsLen + 3) & ~3) + 1;
    state.mode = kFirSingleRate;
    state.threads = threads;
    const int64_t n = tapsLen;
    if (use == FirUse::lasting) {
        state.taps = carver.take<Taps>(4 * tapsStride(n));
        state.ring = carver.take<Taps>(ringLength(n));
        state.broadcast = carver.take<Taps>(4 * n);
    } else {
        state.taps = carver.take<Taps>(n);
        state.ring = carver.take<Taps>(ringLength(n));
    }
    state.past = carver.take<Taps>(n);
    std::fill_n(state.ring, ringLength(n), Taps{});
    const FirFftSizes fft = fftSizes<Taps>(tapsLen, use);
    if (fft.length == 0) return &state;
    state.spectrum = carver.take<Taps>(fft.length, 64);
    state.workBytes = static_cast<int32_t>(roundUp(fft.length * int64_t{sizeof(Taps)} + fft.work, 16));
    state.threadWork = carver.take<unsigned char>(int64_t{state.workBytes} * threads, 64);
    state.work = reinterpret_cast<Taps*>(state.threadWork);
    auto* const memory = carver.take<Zvp8u>(fft.spec, 1);
    auto* const init = carver.take<Zvp8u>(fft.init, 1);
    if (FirTraits<Taps>::init(&state.fft, fft.order, zvpFftScaleInv, 0, memory, init) == zvpStsOk) {
        state.fftLen = fft.length;
    }
    return &state;
}

template <class Taps, class Source>
void setFirTaps(FirState<Taps>& state, const Source* taps) {
    const int n = state.tapsLen;
    const auto reversed = [&](int i) { return firElement<Taps>(taps[n - 1 - i]); };
    const bool isLasting = state.broadcast != nullptr;
    const auto stride = static_cast<int>(tapsStride(n));
    if (isLasting) std::fill_n(state.taps, 4 * int64_t{stride}, Taps{});
    for (int copy = 0; copy < (isLasting ? 4 : 1); ++copy) {
        for (int i = 0; i < n; ++i)
            state.taps[copy * int64_t{stride} + copy + i] = reversed(i);
    }
    for (int i = 0; i < (isLasting ? n : 0); ++i)
        std::fill_n(state.broadcast + 4 * int64_t{i}, 4, reversed(i));
    if (state.multirate != nullptr) setMultirateTaps(*state.multirate, parts(state.taps), n);
    if (state.fftLen < 1) return;
    for (int i = 0; i < state.fftLen; ++i)
        state.spectrum[i] = i < n ? firElement<Taps>(taps[i]) : Taps{};
    auto* const buffer = reinterpret_cast<Zvp8u*>(state.work + state.fftLen);
    if (FirTraits<Taps>::forward(state.spectrum, state.fft, buffer) != zvpStsOk) state.fftLen = 0;
}

#define ZVPS_INSTANTIATE(TYPE)                                                                                         \
    template int firStateSize<Zvp##TYPE>(int tapsLen, int threads, FirUse use);                                        \
    template FirState<Zvp##TYPE>* buildFirState<Zvp##TYPE>(uint32_t tag, int tapsLen, int threads, FirUse use,         \
                                                           unsigned char* buffer);                                     \
    template void setFirTaps(FirState<Zvp##TYPE>& state, const Zvp##TYPE* taps);
ZVPS_INSTANTIATE(32f)
ZVPS_INSTANTIATE(32fc)
ZVPS_INSTANTIATE(64f)
ZVPS_INSTANTIATE(64fc)
#undef ZVPS_INSTANTIATE
template void setFirTaps(FirState<Zvp64f>& state, const Zvp32s* taps);

// ---- Taps of 16 bits ----

namespace {

constexpr int64_t copyStride(int64_t tapsLen) {
    return (tapsLen + 11) & ~int64_t{7};
}

template <class Data>
inline constexpr int64_t kParts = sizeof(Data) / sizeof(Zvp16s);

// Two lanes of data a unit.
template <class Data>
constexpr int64_t unitCount(int64_t tapsLen) {
    return kParts<Data> == 1 ? tapsLen / 2 + 1 : tapsLen;
}

// The taps' parts become integers of 16 bits.

void reduce(const Zvp16s* parts, int64_t count, Zvp32s* kept, int64_t& scale) {
    std::copy_n(parts, count, kept);
    scale = 0;
}

void reduce(const Zvp32s* parts, int64_t count, Zvp32s* kept, int64_t& scale) {
    int64_t magnitude = 0;
    for (int64_t i = 0; i < count; ++i)
        magnitude = std::max(magnitude, std::abs(int64_t{parts[i]}));
    int places = 0;
    for (; magnitude > 32766; magnitude >>= 1)
        ++places;
    for (int64_t i = 0; i < count; ++i)
        kept[i] = parts[i] >> places;
    scale += places;
}

void reduce(const Zvp32f* parts, int64_t count, Zvp32s* kept, int64_t& scale) {
    constexpr double kMost = 32767;
    double magnitude = 0;
    for (int64_t i = 0; i < count; ++i) {
        // Infinities and NaN have no place among integers; they are stored as the limits and as 0.
        if (std::isfinite(parts[i])) magnitude = std::max(magnitude, std::abs(double{parts[i]}));
    }
    double factor = 1;
    int places = 0;
    for (; magnitude > kMost; magnitude /= 2, factor /= 2)
        ++places;
    for (; places <= 0 && magnitude > 0 && 2 * magnitude < kMost; magnitude *= 2, factor *= 2)
        --places;
    for (int64_t i = 0; i < count; ++i) {
        const double scaled = std::clamp(factor * parts[i], -kMost, kMost);
        kept[i] = std::isnan(scaled) ? 0 : static_cast<Zvp32s>(scaled + std::copysign(0.5, scaled));
    }
    scale = places;
}

// Sums of the magnitudes of the positive and of the negative taps that follow each other in the sums of 32 bits.
class CarryBounds {
  public:
    void add(const Zvp16s* pair) {
        for (int i = 0; i < 2; ++i)
            (pair[i] < 0 ? negative_ : positive_) += std::abs(int64_t{pair[i]});
    }
    CarryBounds operator+(const CarryBounds& other) const {
        CarryBounds sum = *this;
        sum.positive_ += other.positive_;
        sum.negative_ += other.negative_;
        return sum;
    }
    // Whether sums that begin at the kernels' bias neither pass 2^31 nor fall below 1 - 2^31.
    bool fit() const {
        return 32767 * positive_ + 32768 * negative_ <= int64_t{1} << 31 &&
               32768 * positive_ + 32767 * negative_ < int64_t{1} << 31;
    }
    bool fitUnbiased() const { return 32768 * (positive_ + negative_) < int64_t{1} << 31; }

  private:
    int64_t positive_ = 0;
    int64_t negative_ = 0;
};

struct PairBounds {
    CarryBounds even;
    CarryBounds odd;

    void add(const FirPairs& pairs, size_t unit) {
        even.add(pairs.even + 2 * unit);
        odd.add(pairs.odd + 2 * unit);
    }
    PairBounds operator+(const PairBounds& other) const { return {even + other.even, odd + other.odd}; }
    bool fit() const { return even.fit() && odd.fit(); }
    bool fitUnbiased() const { return even.fitUnbiased() && odd.fitUnbiased(); }
};

// Sets the steps; returns the number of runs.
int64_t planSteps(const FirPairs& pairs, uint8_t* steps) {
    PairBounds run;
    int64_t runs = 1;
    uint8_t* step = steps;
    for (size_t column = 0; column < std::min(pairs.units, kFirPairStride); ++column) {
        size_t unit = column;
        for (size_t left = (pairs.units - column + kFirPairStride - 1) / kFirPairStride; left > 0;) {
            PairBounds addend;
            size_t units = firPairStep(left);
            for (;; units /= 2) {
                addend = {};
                for (size_t i = 0; i < units; ++i)
                    addend.add(pairs, unit + i * kFirPairStride);
                if (units == 1 || addend.fit()) break;
            }
            const PairBounds both = run + addend;
            if (both.fit()) {
                run = both;
            } else {
                step[-1] = static_cast<uint8_t>(step[-1] + kEndsFirRun);
                run = addend;
                ++runs;
            }
            *step++ = static_cast<uint8_t>(units);
            unit += units * kFirPairStride;
            left -= units;
        }
    }
    return runs;
}

} // namespace

template <class Data>
int firIntegerStateSize(int tapsLen) {
    const int64_t n = tapsLen;
    const int64_t stride = copyStride(n);
    const int64_t size = 15 + int64_t{sizeof(FirIntegerState<Data>)} + 16 +
                         roundUp(n * kParts<Data> * int64_t{sizeof(Zvp32s)}, 16) +
                         roundUp((2 * n + stride + 4) * int64_t{sizeof(Data)}, 16) +
                         roundUp(4 * stride * int64_t{sizeof(Zvp16s)}, 16) + roundUp(unitCount<Data>(n), 16);
    return size > kMostBytes ? -1 : static_cast<int>(size);
}

template <class Data>
FirIntegerState<Data>* buildFirIntegerState(uint32_t tag, int tapsLen, int threads, unsigned char* buffer) {
    Carver carver(buffer);
    auto& state = *carver.take<FirIntegerState<Data>>(1);
    state = {};
    state.tag = tag;
    state.tapsLen = tapsLen;
    state.stride = static_cast<int32_t>(copyStride(tapsLen));
    state.delayLen = tapsLen;
    state.threads = threads;
    state.mode = kFirSingleRate;
    const int64_t n = tapsLen;
    const int64_t ring = 2 * n + state.stride + 4;
    state.taps = carver.take<Zvp32s>(n * kParts<Data>);
    state.ring = carver.take<Data>(ring);
    state.copies = carver.take<Zvp16s>(4 * int64_t{state.stride});
    state.steps = carver.take<uint8_t>(unitCount<Data>(n));
    std::fill_n(state.ring, ring, Data{});
    return &state;
}

template <class Data>
void reverseTaps(FirIntegerState<Data>& state) {
    std::reverse(state.taps, state.taps + state.tapsLen * kParts<Data>);
    // That has changed the order of the parts too.
    for (int i = 0; i < state.tapsLen && kParts<Data> == 2; ++i)
        std::swap(state.taps[2 * int64_t{i}], state.taps[2 * int64_t{i} + 1]);
}

template <class Data, class Source>
void setFirTaps(FirIntegerState<Data>& state, const Source* taps, int tapsFactor) {
    const int n = state.tapsLen;
    const int64_t stride = state.stride;
    int64_t scale = tapsFactor;
    reduce(parts(taps), n * kParts<Data>, state.taps, scale);
    constexpr int64_t kMost = std::numeric_limits<int32_t>::max();
    state.tapScale = static_cast<int32_t>(std::min(scale, kMost));
    reverseTaps(state);
    if (state.multirate != nullptr) return setMultirateTaps(*state.multirate, state.taps, n);
    std::fill_n(state.copies, 4 * stride, Zvp16s{0});
    if constexpr (kParts<Data> == 1) {
        for (int copy = 0; copy < 4; ++copy) {
            for (int i = 0; i < n; ++i)
                state.copies[copy * stride + copy + 1 + i] = static_cast<Zvp16s>(state.taps[i]);
        }
    } else {
        for (int i = 0; i < n; ++i) {
            const auto re = static_cast<Zvp16s>(state.taps[2 * i]);
            const auto im = static_cast<Zvp16s>(state.taps[2 * i + 1]);
            Zvp16s* const even = state.copies + 2 * int64_t{i};
            Zvp16s* const odd = even + 2 * stride;
            even[0] = odd[1] = re;
            even[1] = static_cast<Zvp16s>(-im);
            odd[0] = im;
        }
    }
    state.runs = kOneRun;
    FirPairs pairs = firPairs(state);
    PairBounds all;
    for (size_t unit = 0; unit < pairs.units; ++unit)
        all.add(pairs, unit);
    if (all.fitUnbiased()) return;
    state.runs = planSteps(pairs, state.steps) < kMostFirRuns ? kSomeRuns : kTooManyRuns;
}

// Real taps: copy 1 has the first tap at its third place, where a pair begins, copy 0 at its second.
template <class Data>
FirPairs firPairs(const FirIntegerState<Data>& state) {
    constexpr bool kReal = kParts<Data> == 1;
    const int64_t stride = state.stride;
    return {kReal ? state.copies + stride + 2 : state.copies, kReal ? state.copies : state.copies + 2 * stride,
            static_cast<size_t>(unitCount<Data>(state.tapsLen)), state.runs == kOneRun ? nullptr : state.steps};
}

#define ZVPS_INSTANTIATE(DATA)                                                                                         \
    template int firIntegerStateSize<Zvp##DATA>(int tapsLen);                                                          \
    template FirIntegerState<Zvp##DATA>* buildFirIntegerState<Zvp##DATA>(uint32_t tag, int tapsLen, int threads,       \
                                                                         unsigned char* buffer);                       \
    template FirPairs firPairs(const FirIntegerState<Zvp##DATA>& state);
ZVPS_INSTANTIATE(16s)
ZVPS_INSTANTIATE(16sc)
#undef ZVPS_INSTANTIATE
#define ZVPS_INSTANTIATE(DATA, TAPS)                                                                                   \
    template void setFirTaps(FirIntegerState<Zvp##DATA>& state, const Zvp##TAPS* taps, int tapsFactor);
ZVPS_INSTANTIATE(16s, 16s)
ZVPS_INSTANTIATE(16s, 32s)
ZVPS_INSTANTIATE(16s, 32f)
ZVPS_INSTANTIATE(16sc, 32sc)
ZVPS_INSTANTIATE(16sc, 32fc)
#undef ZVPS_INSTANTIATE

} // namespace zvps
