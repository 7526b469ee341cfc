// How blocks pass through a multi-rate filter: in pieces that stay in the first-level cache, on as many threads as the
// block is worth.
#pragma once

#include "filters/fir_multirate_state.hpp"
#include "filters/fir_run.hpp"

namespace zvps {

template <class T>
const auto& multirateKernels() {
    if constexpr (std::is_same_v<T, Zvp32f>) {
        return kernels().multirateFilters->fir_32f;
    } else if constexpr (std::is_same_v<T, Zvp32fc>) {
        return kernels().multirateFilters->fir_32fc;
    } else if constexpr (std::is_same_v<T, Zvp64f>) {
        return kernels().multirateFilters->fir_64f;
    } else {
        return kernels().multirateFilters->fir_64fc;
    }
}

// The inputs of a call: the past, then the source, numbered from its first on.
template <class Past, class Data>
struct MultirateInputs {
    const Past* past;
    int64_t pastCount;
    const Data* src;
    int64_t count;

    // Those from `begin` to `end`: where they lie, or in `memory`, with zeros for those that are none.
    template <class T>
    const T* window(int64_t begin, int64_t end, T* memory) const {
        if constexpr (std::is_same_v<T, Data>) {
            if (begin >= 0 && end <= count) return src + begin;
        }
        T* to = memory;
        const auto zeros = [&](int64_t from, int64_t limit) {
            if (from >= limit) return;
            std::fill_n(to, limit - from, T{});
            to += limit - from;
        };
        const auto copies = [&](const auto* elements, int64_t from, int64_t limit) {
            if (from >= limit) return;
            loadElements(elements + from, to, static_cast<size_t>(limit - from));
            to += limit - from;
        };
        zeros(begin, std::min(end, -pastCount));
        copies(past + pastCount, std::max(begin, -pastCount), std::min(end, int64_t{0}));
        copies(src, std::max(begin, int64_t{0}), std::min(end, count));
        zeros(std::max(begin, count), end);
        return memory;
    }
};

inline constexpr int64_t kMultirateBlock = 8192; // bytes of lanes
inline constexpr size_t kMultirateStack = 65536;

// Elements that fill whole lines of the cache.
template <class T>
constexpr int64_t wholeLines(int64_t count) {
    constexpr int64_t kLine = 64 / sizeof(T);
    return (count + kLine - 1) / kLine * kLine;
}

// ---- Outputs by lanes ----

template <class T, class Past, class Data>
class LaneRun {
  public:
    LaneRun(const FirMultirate<T>& fir, int tapsLen, const MultirateInputs<Past, Data>& inputs, int scaleFactor)
        : fir_(fir), shape_(fir.factors, tapsLen), inputs_(inputs), scaleFactor_(scaleFactor) {
        group_ = static_cast<int64_t>(shape_.group);
        groups_ = static_cast<int64_t>(shape_.groups);
        const auto rows = static_cast<int64_t>(shape_.rows);
        const int64_t lanes = std::max(kMultirateBlock / int64_t{sizeof(T)}, 2 * rows * group_);
        block_ = std::max(lanes / (group_ * groups_), int64_t{1}) * groups_;
        oldest_ = shape_.oldest(fir.factors, 0);
    }

    // Outputs that are computed together.
    int64_t unit() const { return shape_.outputs; }

    // Of T, for a run of so many units.
    int64_t memory(int64_t units) const {
        const int64_t vectors = vectorsOf(std::min(units, block_));
        return windowLength(vectors) + spreadLength(vectors) + sumsLength(vectors) + resultsLength(vectors);
    }

    void run(T* memory, int64_t begin, int64_t end, Data* dst) const {
        const int64_t most = vectorsOf(std::min(end - begin, block_));
        T* const spread = memory + windowLength(most);
        T* const sums = spread + spreadLength(most);
        T* const results = sums + sumsLength(most);
        for (int64_t i = begin; i < end; i += block_) {
            const int64_t units = std::min(block_, end - i);
            const int64_t vectors = vectorsOf(units);
            const int64_t first = oldest_ + i * shape_.inputs;
            const T* src = inputs_.window(first, first + reach(vectors), memory);
            if (shape_.outputs > 1) {
                const auto srcStep = static_cast<size_t>(groups_ * shape_.inputs * kPartsOf);
                kernels_.spread(parts(src), parts(spread), static_cast<size_t>(spreadVectors(vectors)), srcStep, step(),
                                fir_.order);
                src = spread;
            }
            finish(src, sums, results, units, dst + i * shape_.outputs);
        }
    }

  private:
    static constexpr int64_t kPartsOf = sizeof(T) / sizeof(Part<T>);
    static constexpr int64_t kLanes = MultirateLanes<T>::kLanes;
    static constexpr bool kStraight = std::is_same_v<T, Data>;

    size_t step() const { return static_cast<size_t>(groups_ * group_ * kPartsOf); }
    int64_t vectorsOf(int64_t units) const { return (units + groups_ - 1) / groups_; }
    // From the first lane of so many vectors to the last that a row of taps meets.
    int64_t lanesOf(int64_t vectors) const {
        return (vectors - 1) * groups_ * group_ + (static_cast<int64_t>(shape_.rows) - 1) * group_ + kLanes;
    }
    int64_t spreadVectors(int64_t vectors) const {
        return shape_.outputs == 1 ? 0 : (lanesOf(vectors) + groups_ * group_ - 1) / (groups_ * group_);
    }
    int64_t reach(int64_t vectors) const {
        if (shape_.outputs == 1) return lanesOf(vectors);
        return (spreadVectors(vectors) - 1) * groups_ * shape_.inputs + kLanes;
    }
    int64_t windowLength(int64_t vectors) const { return wholeLines<T>(reach(vectors)); }
    int64_t spreadLength(int64_t vectors) const {
        if (shape_.outputs == 1) return 0;
        return wholeLines<T>((spreadVectors(vectors) - 1) * groups_ * group_ + kLanes);
    }
    int64_t sumsLength(int64_t vectors) const { return wholeLines<T>((vectors - 1) * groups_ * group_ + kLanes); }
    int64_t resultsLength(int64_t vectors) const { return wholeLines<T>(vectors * groups_ * shape_.outputs); }

    // The outputs of so many units.
    void finish(const T* src, T* sums, T* results, int64_t units, Data* dst) const {
        const LaneTaps<Part<T>> taps = {parts(fir_.taps),
                                        fir_.isPartial ? fir_.mask : nullptr,
                                        shape_.rows,
                                        step(),
                                        static_cast<size_t>(group_ * kPartsOf),
                                        shape_.groups};
        const auto count = static_cast<size_t>(units * shape_.outputs);
        int64_t vectors = vectorsOf(units);
        int64_t stored = 0; // vectors that went straight to their place
        if constexpr (kStraight) {
            if (shape_.inputs == 1 && units * group_ >= kLanes) {
                stored = (units * group_ - kLanes) / (groups_ * group_) + 1;
                kernels_.lanes(parts(src), parts(dst), static_cast<size_t>(stored), taps);
                vectors -= stored;
            }
        }
        const int64_t done = stored * groups_ * group_;
        if (vectors > 0) kernels_.lanes(parts(src + done), parts(sums), static_cast<size_t>(vectors), taps);
        if (shape_.inputs == 1) {
            storeElements(sums, dst + done, count - static_cast<size_t>(done), scaleFactor_);
        } else {
            const auto group = static_cast<size_t>(shape_.inputs);
            if constexpr (kStraight) {
                kernels_.addGroups(parts(sums), parts(dst), count, group);
            } else {
                kernels_.addGroups(parts(sums), parts(results), count, group);
                storeElements(results, dst, count, scaleFactor_);
            }
        }
    }

    const FirMultirate<T>& fir_;
    MultirateLanes<T> shape_;
    MultirateInputs<Past, Data> inputs_;
    int scaleFactor_;
    int64_t group_;
    int64_t groups_;
    int64_t block_; // in units
    int64_t oldest_;
    const MultirateKernels<Part<T>>& kernels_ = multirateKernels<T>();
};

// ---- Outputs one by one ----

template <class T, class Past, class Data>
class PhaseRun {
  public:
    PhaseRun(const FirMultirate<T>& fir, int tapsLen, const MultirateInputs<Past, Data>& inputs, int scaleFactor)
        : fir_(fir), inputs_(inputs), scaleFactor_(scaleFactor), past_(fir.factors.past(tapsLen)) {
        const MultirateFactors& factors = fir.factors;
        const int64_t phases = std::min(factors.up, tapsLen);
        taps_ = {parts(fir.taps),
                 static_cast<size_t>(past_),
                 static_cast<size_t>(phases),
                 static_cast<size_t>(tapsLen - (past_ - 1) * phases),
                 static_cast<size_t>(factors.up),
                 static_cast<size_t>(factors.down % factors.up),
                 static_cast<size_t>(factors.down / factors.up)};
        const int64_t inputsAhead = std::max(kMultirateBlock / int64_t{sizeof(T)}, past_);
        block_ = std::clamp(inputsAhead * factors.up / factors.down, int64_t{1}, kMostResults);
    }

    int64_t unit() const { return 1; }

    int64_t memory(int64_t units) const {
        const int64_t outputs = std::min(units, block_);
        const int64_t reach = past_ + (outputs - 1) * fir_.factors.down / fir_.factors.up + 1;
        return wholeLines<T>(outputs) + wholeLines<T>(reach);
    }

    void run(T* memory, int64_t begin, int64_t end, Data* dst) const {
        T* const window = memory + wholeLines<T>(std::min(end - begin, block_));
        for (int64_t i = begin; i < end; i += block_) {
            const int64_t outputs = std::min(block_, end - i);
            const int64_t first = fir_.factors.newest(i);
            const int64_t last = fir_.factors.newest(i + outputs - 1);
            const T* const src = inputs_.window(first + 1 - past_, last + 1, window) + (past_ - 1);
            const auto phase = static_cast<size_t>(fir_.factors.phase(i));
            const auto count = static_cast<size_t>(outputs);
            if constexpr (std::is_same_v<T, Data>) {
                multirateKernels<T>().phases(parts(src), parts(dst + i), count, taps_, phase);
            } else {
                multirateKernels<T>().phases(parts(src), parts(memory), count, taps_, phase);
                storeElements(memory, dst + i, count, scaleFactor_);
            }
        }
    }

  private:
    static constexpr int64_t kMostResults = 512;

    const FirMultirate<T>& fir_;
    MultirateInputs<Past, Data> inputs_;
    int scaleFactor_;
    int64_t past_;
    PhaseTaps<Part<T>> taps_;
    int64_t block_;
};

// ---- Blocks ----

// `outputs` outputs, whole units.
template <class T, class Run, class Data>
ZvpStatus runMultirate(const Run& run, Data* dst, int64_t outputs, int most) {
    const int64_t units = outputs / run.unit();
    const int threads = threadCount(static_cast<size_t>(outputs), FirTraits<T>::kForkAbove, most);
    const int64_t length = run.memory(static_cast<int64_t>(shareBegin(static_cast<size_t>(units), threads, 1)));
    const Scratch<T, kMultirateStack> memory(length * threads);
    if (memory.get() == nullptr) return zvpStsNoMemory;
    shareOut(static_cast<size_t>(units), threads, [&](int thread, size_t begin, size_t end) {
        run.run(memory.get() + thread * length, static_cast<int64_t>(begin), static_cast<int64_t>(end), dst);
    });
    return zvpStsOk;
}

// Sums of integers beyond what double precision holds exactly.
template <class Data>
void filterExactly(const MultirateFactors& factors, const Zvp32s* reversed, int tapsLen,
                   const MultirateInputs<Data, Data>& inputs, Data* dst, int64_t outputs, int shift) {
    for (int64_t m = 0; m < outputs; ++m) {
        int64_t sums[2] = {};
        const int64_t newest = factors.newest(m);
        for (int64_t k = factors.phase(m), n = newest; k < tapsLen; k += factors.up, --n) {
            const Data x = n < 0 ? inputs.past[inputs.pastCount + n] : inputs.src[n];
            if constexpr (std::is_same_v<Data, Zvp16s>) {
                sums[0] += int64_t{reversed[tapsLen - 1 - k]} * x;
            } else {
                const Zvp32s* const tap = reversed + 2 * (tapsLen - 1 - k);
                sums[0] += int64_t{tap[0]} * x.re - int64_t{tap[1]} * x.im;
                sums[1] += int64_t{tap[0]} * x.im + int64_t{tap[1]} * x.re;
            }
        }
        if constexpr (std::is_same_v<Data, Zvp16s>) {
            dst[m] = scaledSum(sums[0], shift);
        } else {
            dst[m] = {scaledSum(sums[0], shift), scaledSum(sums[1], shift)};
        }
    }
}

// n iterations: n * down inputs give n * up outputs.
template <class State, class Past, class Data>
ZvpStatus filterInputs(const State& state, const MultirateInputs<Past, Data>& inputs, Data* dst, int64_t n,
                       int scaleFactor) {
    const auto& fir = *state.multirate;
    using T = std::remove_pointer_t<decltype(fir.taps)>;
    const int64_t outputs = n * fir.factors.up;
    if constexpr (std::is_same_v<std::remove_pointer_t<decltype(state.taps)>, Zvp32s>) {
        constexpr int64_t kLimit = 1 << 16;
        scaleFactor = static_cast<int>(std::clamp(int64_t{scaleFactor} - state.tapScale, -kLimit, kLimit));
        if (!fir.isExact) {
            filterExactly(fir.factors, state.taps, state.tapsLen, inputs, dst, outputs, scaleFactor);
            return zvpStsOk;
        }
    }
    if (state.mode == kFirByLanes) {
        return runMultirate<T>(LaneRun<T, Past, Data>(fir, state.tapsLen, inputs, scaleFactor), dst, outputs,
                               state.threads);
    }
    return runMultirate<T>(PhaseRun<T, Past, Data>(fir, state.tapsLen, inputs, scaleFactor), dst, outputs,
                           state.threads);
}

// isStream: the past is not in the state but at the head of the source.
template <class State, class Data>
ZvpStatus filterMultirate(State& state, const Data* src, Data* dst, size_t numIters, int scaleFactor, bool isStream) {
    using Element = std::remove_pointer_t<decltype(state.ring)>;
    const MultirateFactors& factors = state.multirate->factors;
    const auto n = static_cast<int64_t>(numIters);
    const int64_t count = n * factors.down;
    const int64_t head = isStream ? (int64_t{state.tapsLen} - 1 + factors.upPhase) / factors.up : 0;
    // In place, results would come to lie where inputs are still to be read.
    const Scratch<Data, kMultirateStack / 8> copy(src == dst ? head + count : 0);
    if (copy.get() == nullptr) return zvpStsNoMemory;
    if (src == dst) {
        std::memcpy(copy.get(), src, static_cast<size_t>(head + count) * sizeof(Data));
        src = copy.get();
    }
    if constexpr (std::is_same_v<Element, Data>) {
        if (isStream) {
            return filterInputs(state, MultirateInputs<Data, Data>{src, head, src + head, count}, dst, n, scaleFactor);
        }
    }
    const int64_t past = state.delayLen;
    const MultirateInputs<Element, Data> inputs = {state.ring, past, src, count};
    if (const ZvpStatus status = filterInputs(state, inputs, dst, n, scaleFactor)) return status;
    const int64_t fresh = std::min(past, count);
    std::memmove(state.ring, state.ring + fresh, static_cast<size_t>(past - fresh) * sizeof(Element));
    loadElements(src + (count - fresh), state.ring + (past - fresh), static_cast<size_t>(fresh));
    return zvpStsOk;
}

} // namespace zvps
