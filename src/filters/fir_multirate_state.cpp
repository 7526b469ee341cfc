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
int64_t tapCount(const MultirateFactors& factors, int tapsLen) {
    const MultirateLanes<T> lanes(factors, tapsLen);
    if (!lanes.fit()) return std::min(factors.up, tapsLen) * factors.past(tapsLen);
    // Rows of complex taps hold each part twice.
    return static_cast<int64_t>(lanes.rows) * static_cast<int64_t>(kMultirateBytes / sizeof(T)) * kPartsOf<T>;
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
    int64_t size = kAlignment - 1;
    const auto add = [&](int64_t count, size_t bytes) {
        size += roundUp(count * static_cast<int64_t>(bytes), kAlignment);
    };
    add(1, sizeof(State));
    add(keptCount<State>(tapsLen), sizeof(Kept<State>));
    add(factors.past(tapsLen), sizeof(*State().ring));
    add(1, sizeof(FirMultirate<T>));
    add(tapCount<T>(factors, tapsLen), sizeof(T));
    add(1, kMultirateBytes);
    add(kMultirateBytes / sizeof(Part<T>), sizeof(int32_t));
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
    fir = {};
    fir.factors = factors;
    fir.taps = carver.take<T>(tapCount<T>(factors, tapsLen), kAlignment);
    constexpr int64_t kLanes = kMultirateBytes / sizeof(Part<T>);
    fir.mask = carver.take<Part<T>>(kLanes, kAlignment);
    fir.order = carver.take<int32_t>(kLanes, kAlignment);
    state.multirate = &fir;
    state.mode = MultirateLanes<T>(factors, tapsLen).fit() ? kFirByLanes : kFirByPhases;
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
    const MultirateLanes<T> shape(factors, tapsLen);
    const auto rows = static_cast<int64_t>(shape.rows);
    const auto group = static_cast<int64_t>(shape.group);
    std::memset(fir.taps, 0, sizeof(T) * static_cast<size_t>(tapCount<T>(factors, tapsLen)));
    std::memset(fir.mask, 0xff, kMultirateBytes);
    fir.isPartial = false;
    for (int64_t lane = 0; lane < kLanes; ++lane) {
        const int64_t element = lane / kParts;
        const int64_t output = element % group / shape.inputs;
        const int64_t input = element % shape.inputs;
        const int64_t start = shape.oldest(factors, static_cast<int>(output)) - shape.oldest(factors, 0);
        const int64_t from = element / group * shape.inputs + start + input;
        const bool isUsed = element < static_cast<int64_t>(shape.groups) * group;
        fir.order[lane] = isUsed ? static_cast<int32_t>(from * kParts + lane % kParts) : 0;
        for (int64_t row = 0; row < rows && isUsed; ++row) {
            const int64_t age = (rows - row) * shape.inputs - 1 - input;
            const int64_t k = factors.phase(output) + age * factors.up;
            if (k < tapsLen) {
                for (int64_t part = 0; part < kParts; ++part)
                    parts(fir.taps)[(row * kParts + part) * kLanes + lane] = static_cast<Part<T>>(tapAt(k)[part]);
            } else {
                // The oldest of all; nothing that an input may be must count there.
                std::memset(fir.mask + lane, 0, sizeof(*fir.mask));
                fir.isPartial = true;
            }
        }
    }
}

} // namespace

template <class T, class P>
void setMultirateTaps(FirMultirate<T>& fir, const P* reversed, int tapsLen) {
    const auto tapAt = [&](int64_t k) { return reversed + (tapsLen - 1 - k) * kPartsOf<T>; };
    if (MultirateLanes<T>(fir.factors, tapsLen).fit()) {
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
