#include "filters/fir_multirate_state.hpp"

#include "filters/carver.hpp"

#include <cstdlib>
#include <limits>

namespace zvps {
namespace {

constexpr int64_t kAlignment = 64;

template <class T>
inline constexpr int64_t kPartsOf = sizeof(T) / sizeof(Part<T>);

// The elements of kernels' taps.
template <class T>
int64_t tapCount(const MultirateLanes<T>& lanes, const MultirateFactors& factors, int tapsLen) {
    if (!lanes.fit()) return std::min(factors.up, tapsLen) * factors.past(tapsLen);
    // Rows of complex taps hold each part twice.
    return lanes.chunks * lanes.rows * lanes.kLanes * kPartsOf<T>;
}

template <class State>
using Wide = std::remove_pointer_t<decltype(State().multirate->taps)>;
template <class State>
using Kept = std::remove_pointer_t<decltype(State().taps)>;

// States of integers keep the parts of taps one by one.
template <class State>
int64_t keptCount(int tapsLen) {
    return std::is_same_v<Kept<State>, Zvp32s> ? tapsLen * kPartsOf<Wide<State>> : tapsLen;
}

} // namespace

template <class State>
int multirateStateSize(const MultirateFactors& factors, int tapsLen) {
    using T = Wide<State>;
    const MultirateLanes<T> lanes(factors, tapsLen);
    int64_t size = kAlignment - 1;
    const auto add = [&](int64_t count, size_t bytes) {
        size += roundUp(count * static_cast<int64_t>(bytes), kAlignment);
    };
    add(1, sizeof(State));
    add(keptCount<State>(tapsLen), sizeof(Kept<State>));
    add(factors.past(tapsLen), sizeof(*State().ring));
    add(1, sizeof(FirMultirate<T>));
    add(tapCount(lanes, factors, tapsLen), sizeof(T));
    add(lanes.chunks, sizeof(MultirateChunk));
    add(lanes.chunks, kMultirateBytes);
    add(lanes.chunks * (kMultirateBytes / sizeof(Part<T>)), sizeof(int32_t));
    return size > std::numeric_limits<int>::max() ? -1 : static_cast<int>(size);
}

template <class State>
State* buildMultirateState(uint32_t tag, const MultirateFactors& factors, int tapsLen, int threads,
                           unsigned char* buffer) {
    using T = Wide<State>;
    Carver carver(buffer);
    auto& state = *carver.take<State>(1); // where zvpFree will be told to look for it
    state = {};
    state.tag = tag;
    state.tapsLen = tapsLen;
    state.threads = threads;
    state.delayLen = static_cast<int32_t>(factors.past(tapsLen));
    state.taps = carver.take<Kept<State>>(keptCount<State>(tapsLen), kAlignment);
    state.ring = carver.take<std::remove_pointer_t<decltype(state.ring)>>(state.delayLen, kAlignment);
    if constexpr (!std::is_same_v<Kept<State>, Zvp32s>) state.fftLen = -1;
    auto& fir = *carver.take<FirMultirate<T>>(1, kAlignment);
    const MultirateLanes<T> shape(factors, tapsLen);
    const auto lanes = shape.chunks * static_cast<int64_t>(kMultirateBytes / sizeof(Part<T>));
    fir = {factors,
           shape,
           carver.take<T>(tapCount(shape, factors, tapsLen), kAlignment),
           carver.take<MultirateChunk>(shape.chunks, kAlignment),
           carver.take<Part<T>>(lanes, kAlignment),
           carver.take<int32_t>(lanes, kAlignment),
           true};
    state.multirate = &fir;
    state.mode = shape.fit() ? kFirByLanes : kFirByPhases;
    return &state;
}

namespace {

// tapAt(k): pointer to the parts of tap k.
template <class T, class TapAt>
void setPhases(FirMultirate<T>& fir, int tapsLen, TapAt tapAt) {
    const MultirateFactors& factors = fir.factors;
    const int64_t past = factors.past(tapsLen);
    for (int64_t phase = 0; phase < std::min(factors.up, tapsLen); ++phase) {
        T* to = fir.taps + phase * past;
        for (int64_t k = phase + (tapsLen - 1 - phase) / factors.up * factors.up; k >= phase; k -= factors.up, ++to) {
            for (int part = 0; part < kPartsOf<T>; ++part)
                parts(to)[part] = static_cast<Part<T>>(tapAt(k)[part]);
        }
    }
}

template <class T, class TapAt>
void setLanes(FirMultirate<T>& fir, int tapsLen, TapAt tapAt) {
    constexpr int64_t kParts = kPartsOf<T>;
    constexpr auto kLanes = static_cast<int64_t>(kMultirateBytes / sizeof(Part<T>));
    const MultirateFactors& factors = fir.factors;
    const MultirateLanes<T>& shape = fir.lanes;
    std::memset(fir.taps, 0, sizeof(T) * static_cast<size_t>(tapCount(shape, factors, tapsLen)));
    std::memset(fir.masks, 0xff, static_cast<size_t>(shape.chunks) * kMultirateBytes);
    int64_t first = 0;
    for (int64_t chunk = 0; chunk < shape.chunks; ++chunk) {
        const int64_t width = shape.chunks == 1 ? shape.lanes() : shape.width(factors, first);
        const int64_t input = factors.newest(first) - factors.newest(0);
        Part<T>* const taps = parts(fir.taps) + chunk * shape.rows * kParts * kLanes;
        bool isPartial = false;
        for (int64_t lane = 0; lane < kLanes; ++lane) {
            // Lanes that nothing is to come of follow the last.
            const int64_t element = std::min(lane / kParts, width - 1);
            const int64_t output = shape.addsLanes() ? 0 : first + element;
            const int64_t from = shape.addsLanes() ? element : factors.newest(output) - factors.newest(first);
            fir.orders[chunk * kLanes + lane] = static_cast<int32_t>(from * kParts + lane % kParts);
            for (int64_t row = 0; row < shape.rows; ++row) {
                const int64_t newer = shape.addsLanes() ? element % shape.inputs : 0;
                const int64_t age = (shape.rows - row) * shape.rowStep() - 1 - newer;
                const int64_t k = factors.phase(output) + age * factors.up;
                if (k < tapsLen) {
                    for (int64_t part = 0; part < kParts; ++part)
                        taps[(row * kParts + part) * kLanes + lane] = static_cast<Part<T>>(tapAt(k)[part]);
                } else {
                    // The oldest of all; nothing that an input may be must count there.
                    std::memset(fir.masks + chunk * kLanes + lane, 0, sizeof(*fir.masks));
                    isPartial = true;
                }
            }
        }
        fir.chunks[chunk] = {static_cast<int32_t>(first), static_cast<int32_t>(width), static_cast<int32_t>(input),
                             isPartial};
        first += width;
    }
}

} // namespace

template <class T, class P>
void setMultirateTaps(FirMultirate<T>& fir, const P* reversed, int tapsLen) {
    const auto tapAt = [&](int64_t k) { return reversed + (tapsLen - 1 - k) * kPartsOf<T>; };
    if (fir.lanes.fit()) {
        setLanes(fir, tapsLen, tapAt);
    } else {
        setPhases(fir, tapsLen, tapAt);
    }
    if constexpr (std::is_integral_v<P>) {
        int64_t sum = 0;
        for (int64_t i = 0; i < tapsLen * kPartsOf<T>; ++i)
            sum += std::abs(int64_t{reversed[i]});
        fir.isExact = sum <= int64_t{1} << 38;
    } else {
        fir.isExact = true;
    }
}

#define ZVPS_INSTANTIATE(STATE, WIDE, PART)                                                                            \
    template int multirateStateSize<STATE>(const MultirateFactors& factors, int tapsLen);                              \
    template STATE* buildMultirateState<STATE>(uint32_t tag, const MultirateFactors& factors, int tapsLen,             \
                                               int threads, unsigned char* buffer);                                    \
    template void setMultirateTaps(FirMultirate<WIDE>& fir, const PART* reversed, int tapsLen);
ZVPS_INSTANTIATE(FirState<Zvp32f>, Zvp32f, Zvp32f)
ZVPS_INSTANTIATE(FirState<Zvp32fc>, Zvp32fc, Zvp32f)
ZVPS_INSTANTIATE(FirState<Zvp64f>, Zvp64f, Zvp64f)
ZVPS_INSTANTIATE(FirState<Zvp64fc>, Zvp64fc, Zvp64f)
ZVPS_INSTANTIATE(FirIntegerState<Zvp16s>, Zvp64f, Zvp32s)
ZVPS_INSTANTIATE(FirIntegerState<Zvp16sc>, Zvp64fc, Zvp32s)
#undef ZVPS_INSTANTIATE

} // namespace zvps
