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
    LaneRun(const FirMultirate<T>& fir, const MultirateInputs<Past, Data>& inputs, int scaleFactor)
        : fir_(fir), shape_(fir.lanes), inputs_(inputs), scaleFactor_(scaleFactor),
          oldest_(shape_.oldest(fir.factors)) {
        const int64_t lanes = std::max(kMultirateBlock / int64_t{sizeof(T)}, 2 * shape_.rows * shape_.rowStep());
        block_ = std::max(lanes / shape_.lanes(), int64_t{1}) * shape_.groups;
    }

    // Outputs that are computed together.
    int64_t unit() const { return shape_.outputs; }

    // Of T, for a run of so many units.
    int64_t memory(int64_t units) const {
        const int64_t vectors = vectorsOf(std::min(units, block_));
        return windowLength(vectors) + sumsLength(vectors) + resultsLength(vectors);
    }

    void run(T* memory, int64_t begin, int64_t end, Data* dst) const {
        const int64_t most = vectorsOf(std::min(end - begin, block_));
        T* const sums = memory + windowLength(most);
        for (int64_t i = begin, units; i < end; i += units) {
            units = piece(i, end);
            const int64_t first = oldest_ + i * shape_.inputs;
            const T* const src = inputs_.window(first, first + reach(vectorsOf(units)), memory);
            Data* const to = dst + i * shape_.outputs;
            if (shape_.addsLanes()) {
                addLanes(src, sums, sums + sumsLength(most), units, to);
            } else {
                storeLanes(src, sums, units, to);
            }
        }
    }

  private:
    static constexpr int64_t kPartsOf = sizeof(T) / sizeof(Part<T>);
    static constexpr int64_t kLanes = MultirateLanes<T>::kLanes;
    static constexpr bool kStraight = std::is_same_v<T, Data>;

    // How many units to compute at once from unit i on, so that few inputs must be copied: those beside the past, and
    // those before the end.
    int64_t piece(int64_t i, int64_t end) const {
        const int64_t most = std::min(block_, end - i);
        if (!kStraight) return most;
        const int64_t first = oldest_ + i * shape_.inputs;
        const int64_t vectors = first < 0 ? -first / (shape_.inputs * shape_.groups) + 1
                                          : (inputs_.count - first - reach(0)) / (shape_.inputs * shape_.groups);
        const int64_t units = vectors * shape_.groups;
        return vectors < 1 || units > most || (first < 0 ? units : most - units) > most / 2 ? most : units;
    }
    int64_t vectorsOf(int64_t units) const { return (units + shape_.groups - 1) / shape_.groups; }
    // The inputs for so many vectors: more than the last lane of all chunks may be loaded with.
    int64_t reach(int64_t vectors) const {
        return vectors * shape_.groups * shape_.inputs + shape_.rows * shape_.rowStep() + 2 * kLanes;
    }
    int64_t windowLength(int64_t vectors) const { return wholeLines<T>(reach(vectors)); }
    int64_t sumsLength(int64_t vectors) const { return wholeLines<T>(vectors * shape_.lanes() + kLanes); }
    int64_t resultsLength(int64_t vectors) const {
        return shape_.addsLanes() ? wholeLines<T>(vectors * shape_.groups) : 0;
    }

    // The sums of vectors, each chunk in turn.
    void sum(const T* src, T* sums, int64_t vectors) const {
        const auto inParts = [](int64_t elements) { return static_cast<size_t>(elements * kPartsOf); };
        const size_t lanes = inParts(kLanes);
        LaneTaps<Part<T>> taps = {};
        taps.rows = static_cast<size_t>(shape_.rows);
        taps.srcStep = inParts(shape_.groups * shape_.inputs);
        taps.rowStep = inParts(shape_.rowStep());
        taps.shared = static_cast<size_t>(shape_.groups * shape_.inputs / shape_.rowStep());
        taps.dstStep = inParts(shape_.lanes());
        for (int64_t i = 0; i < shape_.chunks; ++i) {
            const auto at = static_cast<size_t>(i);
            const MultirateChunk& chunk = fir_.chunks[i];
            taps.taps = parts(fir_.taps) + at * taps.rows * static_cast<size_t>(kPartsOf) * lanes;
            taps.mask = chunk.isPartial ? fir_.masks + at * lanes : nullptr;
            taps.order = shape_.addsLanes() ? nullptr : fir_.orders + at * lanes;
            taps.width = shape_.chunks == 1 ? lanes : inParts(chunk.width);
            multirateKernels<T>().lanes(parts(src + chunk.input), parts(sums + chunk.output),
                                        static_cast<size_t>(vectors), taps);
        }
    }

    // Lanes are outputs.
    void storeLanes(const T* src, T* sums, int64_t units, Data* dst) const {
        int64_t stored = 0; // vectors that go straight to their place
        const int64_t count = units * shape_.outputs;
        if constexpr (kStraight) {
            if (shape_.chunks > 1) {
                stored = units;
            } else if (count >= kLanes) {
                stored = (count - kLanes) / shape_.lanes() + 1;
            }
            if (stored > 0) sum(src, dst, stored);
        }
        const int64_t done = stored * shape_.lanes();
        if (done >= count) return;
        sum(src + stored * shape_.groups * shape_.inputs, sums, vectorsOf(units) - stored);
        storeElements(sums, dst + done, static_cast<size_t>(count - done), scaleFactor_);
    }

    // Lanes are inputs.
    void addLanes(const T* src, T* sums, T* results, int64_t units, Data* dst) const {
        sum(src, sums, vectorsOf(units));
        const auto count = static_cast<size_t>(units);
        const auto group = static_cast<size_t>(shape_.inputs);
        if constexpr (kStraight) {
            multirateKernels<T>().addGroups(parts(sums), parts(dst), count, group);
        } else {
            multirateKernels<T>().addGroups(parts(sums), parts(results), count, group);
            storeElements(results, dst, count, scaleFactor_);
        }
    }

    const FirMultirate<T>& fir_;
    const MultirateLanes<T>& shape_;
    MultirateInputs<Past, Data> inputs_;
    int scaleFactor_;
    int64_t oldest_;
    int64_t block_; // in units
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
        return runMultirate<T>(LaneRun<T, Past, Data>(fir, inputs, scaleFactor), dst, outputs, state.threads);
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
