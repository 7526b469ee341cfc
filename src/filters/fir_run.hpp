// How blocks pass through a filter: what is filtered where it lies and what in a window of its own, by direct sums or
// by overlap-save, by one thread or several.
#pragma once

#include "core/level.hpp"
#include "filters/fir.table.hpp"
#include "filters/fir_state.hpp"
#include "vector/converted.hpp"
#include "zvpcore.h"
#include "zvps/memory.h"

#include <limits>

namespace zvps {

// ---- Memory for the duration of a call ----

// `count` elements on the stack, where they are few, or from the heap.
template <class T, size_t kStackBytes>
class Scratch {
  public:
    explicit Scratch(int64_t count) {
        const int64_t bytes = count * static_cast<int64_t>(sizeof(T));
        if (bytes <= static_cast<int64_t>(kStackBytes)) {
            memory_ = stack_;
        } else if (bytes <= std::numeric_limits<int>::max()) {
            memory_ = heap_ = zvpsMalloc_8u(static_cast<int>(bytes));
        }
    }
    ~Scratch() {
        if (heap_ != nullptr) zvpsFree(heap_);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    // Null if memory has run out.
    T* get() const { return reinterpret_cast<T*>(memory_); }

  private:
    alignas(64) unsigned char stack_[kStackBytes];
    unsigned char* heap_ = nullptr;
    unsigned char* memory_ = nullptr;
};

// ---- Data to elements of the filter and back ----

template <class From, class To>
void loadElements(const From* src, To* dst, size_t n) {
    if constexpr (std::is_same_v<From, To>) {
        std::memcpy(dst, src, n * sizeof(To));
    } else if (n > 0) {
        toFloats(parts(src), parts(dst), static_cast<int>(partCount<From>(static_cast<int>(n))));
    }
}
template <class From, class To>
void storeElements(const From* src, To* dst, size_t n, int scaleFactor) {
    if constexpr (std::is_same_v<From, To>) {
        std::memcpy(dst, src, n * sizeof(To));
    } else {
        fromFloats(parts(src), parts(dst), static_cast<int>(partCount<From>(static_cast<int>(n))), scaleFactor);
    }
}

// ---- Filters: sums over windows of elements ----

template <class Taps>
const auto& firKernels() {
    if constexpr (std::is_same_v<Taps, Zvp32f>) {
        return kernels().filters->fir_32f;
    } else if constexpr (std::is_same_v<Taps, Zvp32fc>) {
        return kernels().filters->fir_32fc;
    } else if constexpr (std::is_same_v<Taps, Zvp64f>) {
        return kernels().filters->fir_64f;
    } else if constexpr (std::is_same_v<Taps, Zvp64fc>) {
        return kernels().filters->fir_64fc;
    } else if constexpr (std::is_same_v<Taps, Zvp16s>) {
        return kernels().filters->fir_16s;
    } else {
        return kernels().filters->fir_16sc;
    }
}

// A filter has Element, the type of its windows, and Data; block() computes n outputs from n + tapsLen - 1 elements.
// kStraight: windows may be parts of the source itself.

template <class Taps, class DataType>
struct FloatFilter {
    using Element = Taps;
    using Data = DataType;
    static constexpr bool kStraight = std::is_same_v<Taps, Data>;
    static constexpr int kForkAbove = FirTraits<Taps>::kForkAbove;

    const Taps* taps; // reversed
    size_t tapsLen;
    int scaleFactor;

    void block(const Taps* window, Data* dst, size_t n) const {
        const auto kernel = firKernels<Taps>().block;
        if constexpr (kStraight) {
            kernel(parts(window), parts(dst), n, parts(taps), tapsLen);
        } else {
            constexpr size_t kBlock = 512;
            alignas(64) Taps results[kBlock];
            for (size_t i = 0; i < n; i += kBlock) {
                const size_t count = std::min(kBlock, n - i);
                kernel(parts(window + i), parts(results), count, parts(taps), tapsLen);
                storeElements(results, dst + i, count, scaleFactor);
            }
        }
    }
    Data one(const Taps* window) const {
        Taps result;
        firKernels<Taps>().one(parts(window), parts(&result), parts(taps), tapsLen);
        return converted(result, scaleFactor);
    }
    static Data converted(Taps result, int scaleFactor) {
        if constexpr (kStraight) {
            return result;
        } else {
            Data data;
            storeElements(&result, &data, 1, scaleFactor);
            return data;
        }
    }
};

// sum * 2^-shift, rounded to nearest even and saturated; no sum is beyond 2^62.
inline Zvp16s scaledSum(int64_t sum, int shift) {
    constexpr int64_t kLeast = std::numeric_limits<Zvp16s>::min();
    constexpr int64_t kMost = std::numeric_limits<Zvp16s>::max();
    if (shift > 0) {
        const int places = std::min(shift, 63);
        const int64_t bias = (int64_t{1} << (places - 1)) - 1 + ((sum >> places) & 1);
        // Where adding the bias would overflow, the result is 0.
        sum = places == 63 ? 0 : (sum + bias) >> places;
    } else if (shift < 0) {
        sum = std::clamp(sum, kLeast, kMost) * (int64_t{1} << (shift < -16 ? 16 : -shift));
    }
    return static_cast<Zvp16s>(std::clamp(sum, kLeast, kMost));
}

template <class DataType>
struct IntegerFilter {
    using Element = DataType;
    using Data = DataType;
    static constexpr bool kStraight = true;
    static constexpr int kForkAbove = FirTraits<Zvp32f>::kForkAbove;

    IntegerFilter(const FirIntegerState<Data>& state, int scaleFactor)
        : pairs(firPairs(state)), tapsLen(static_cast<size_t>(state.tapsLen)), singly(state.runs == kTooManyRuns) {
        constexpr int64_t kLimit = 1 << 16;
        shift = static_cast<int>(std::clamp(int64_t{scaleFactor} - state.tapScale, -kLimit, kLimit));
    }

    FirPairs pairs;
    size_t tapsLen;
    bool singly; // output by output
    int shift;

    void block(const Data* window, Data* dst, size_t n) const {
        for (size_t i = 0; i < n && singly; ++i)
            dst[i] = one(window + i);
        if (singly) return;
        firKernels<Data>().block(parts(window), parts(dst), n, pairs, tapsLen, shift);
    }
    Data one(const Data* window) const {
        int64_t sums[2];
        firKernels<Data>().one(parts(window), sums, pairs, tapsLen);
        if constexpr (std::is_same_v<Data, Zvp16s>) {
            return scaledSum(sums[0], shift);
        } else {
            return {scaledSum(sums[0], shift), scaledSum(sums[1], shift)};
        }
    }
};

// ---- Threads ----

inline int threadCount(size_t n, int forkAbove, int most) {
    if (most < 2 || n <= static_cast<size_t>(forkAbove)) return 1;
    return std::min(most, ownGetNumThreads());
}

// The share of n outputs that begins for a thread.
inline size_t shareBegin(size_t n, int threads, int thread) {
    constexpr size_t kUnit = 64;
    const size_t share = (n / static_cast<size_t>(threads) + kUnit) / kUnit * kUnit;
    return std::min(n, share * static_cast<size_t>(thread));
}

// work(thread, begin, end) for each thread's share.
template <class Work>
void shareOut(size_t n, int threads, const Work& work) {
    if (threads < 2) {
        work(0, size_t{0}, n);
        return;
    }
#pragma omp parallel for num_threads(threads) schedule(static, 1)
    for (int thread = 0; thread < threads; ++thread) {
        const size_t begin = shareBegin(n, threads, thread);
        const size_t end = shareBegin(n, threads, thread + 1);
        if (begin < end) work(thread, begin, end);
    }
}

// ---- Direct sums ----

inline constexpr size_t kWindowBytes = 32768;

// The delay ring of a state: the last tapsLen inputs from `index` on, room for blocks of `limit` behind twice as many.
template <class Element>
struct FirRing {
    Element* elements;
    int32_t& index;
    size_t tapsLen;
    size_t limit;

    Element* past() const { return elements + index; }

    // Takes n further inputs.
    template <class Data>
    void advance(const Data* src, size_t n) const {
        const size_t kept = n < tapsLen ? tapsLen - n : 0;
        std::memmove(elements, past() + (tapsLen - kept), kept * sizeof(Element));
        loadElements(src + (n - (tapsLen - kept)), elements + kept, tapsLen - kept);
        index = 0;
    }
};

// Input by input, each thread in a window of its own, which begins with the tapsLen inputs before its share.
template <class Filter, class Data>
ZvpStatus filterByWindows(const Filter& filter, const Data* src, Data* dst, size_t n,
                          const FirRing<typename Filter::Element>& ring, int threads) {
    using Element = typename Filter::Element;
    constexpr size_t kBlock = 1024;
    const size_t past = ring.tapsLen;
    const size_t block = std::min(n, std::max(kBlock, past));
    const size_t length = past + block;
    const Scratch<Element, kWindowBytes> memory(static_cast<int64_t>(length) * threads);
    if (memory.get() == nullptr) return zvpStsNoMemory;
    const auto window = [&](int thread) { return memory.get() + static_cast<size_t>(thread) * length; };
    // All before the first result is stored, which may be in the place of inputs.
    for (int thread = 0; thread < threads; ++thread) {
        const size_t begin = shareBegin(n, threads, thread);
        const size_t fromRing = begin < past ? past - begin : 0;
        std::memcpy(window(thread), ring.past() + (past - fromRing), fromRing * sizeof(Element));
        loadElements(src + (begin - (past - fromRing)), window(thread) + fromRing, past - fromRing);
    }
    const Element* last = nullptr;
    shareOut(n, threads, [&](int thread, size_t begin, size_t end) {
        Element* const inputs = window(thread);
        for (size_t i = begin; i < end; i += block) {
            const size_t count = std::min(block, end - i);
            loadElements(src + i, inputs + past, count);
            filter.block(inputs + 1, dst + i, count);
            std::memmove(inputs, inputs + count, past * sizeof(Element));
        }
        if (end == n) last = inputs;
    });
    std::memcpy(ring.elements, last, past * sizeof(Element));
    ring.index = 0;
    return zvpStsOk;
}

// `threads`: as many as may be used.
template <class Filter, class Data>
ZvpStatus filterDirectly(const Filter& filter, const Data* src, Data* dst, size_t n,
                         const FirRing<typename Filter::Element>& ring, int threads) {
    const size_t past = ring.tapsLen;
    if (n <= ring.limit) {
        loadElements(src, ring.past() + past, n);
        filter.block(ring.past() + 1, dst, n);
        std::memmove(ring.elements, ring.past() + n, past * sizeof(*ring.elements));
        ring.index = 0;
        return zvpStsOk;
    }
    threads = threadCount(n, Filter::kForkAbove, threads);
    if constexpr (Filter::kStraight) {
        if (src != dst) {
            const size_t head = ring.limit - 1;
            loadElements(src, ring.past() + past, head);
            filter.block(ring.past() + 1, dst, head);
            ring.advance(src, n);
            shareOut(n - head, threads, [&](int, size_t begin, size_t end) {
                filter.block(src + head + begin - (past - 1), dst + head + begin, end - begin);
            });
            return zvpStsOk;
        }
    }
    return filterByWindows(filter, src, dst, n, ring, threads);
}

// ---- Overlap-save ----

// Whether transforms of blocks cost less than direct sums.
template <class Taps>
bool prefersFft(int tapsLen, size_t n) {
    if (tapsLen < FirTraits<Taps>::kFftTaps || n <= static_cast<size_t>(FirTraits<Taps>::kFftAbove)) return false;
    const int order = firFftOrder(tapsLen);
    const uint64_t length = uint64_t{1} << order;
    const auto taps = static_cast<uint64_t>(tapsLen);
    const uint64_t step = length - (taps - 1);
    return (n + step - 1) / step * length * static_cast<uint64_t>(order) * FirTraits<Taps>::kFftCost < taps * n;
}

template <class Taps, class Data>
ZvpStatus filterByFft(const FirState<Taps>& state, const FirRing<Taps>& ring, const Data* src, Data* dst, size_t n,
                      int scaleFactor) {
    const size_t past = ring.tapsLen - 1;
    const auto length = static_cast<size_t>(state.fftLen);
    const size_t step = length - past;
    const size_t blocks = (n + step - 1) / step;
    // In place, a block's past would have been overwritten by the block before.
    const Scratch<Data, 16> copy(src == dst && blocks > 1 ? static_cast<int64_t>(n) : 0);
    if (copy.get() == nullptr) return zvpStsNoMemory;
    if (src == dst && blocks > 1) {
        std::memcpy(copy.get(), src, n * sizeof(Data));
        src = copy.get();
    }
    std::memcpy(state.past, ring.past() + 1, past * sizeof(Taps));
    ring.advance(src, n);
    const int threads = threadCount(n, FirTraits<Taps>::kForkAbove, state.threads);
    ZvpStatus failure = zvpStsOk;
    const auto filterBlock = [&](size_t block, Taps* work) -> ZvpStatus {
        auto* const buffer = reinterpret_cast<Zvp8u*>(work + length);
        const size_t begin = block * step;
        const size_t count = std::min(step, n - begin);
        if (block == 0) {
            std::memcpy(work, state.past, past * sizeof(Taps));
            loadElements(src, work + past, count);
        } else {
            loadElements(src + begin - past, work, past + count);
        }
        std::fill(work + past + count, work + length, Taps{});
        using Traits = FirTraits<Taps>;
        if (const ZvpStatus status = Traits::forward(work, state.fft, buffer)) return status;
        if (const ZvpStatus status = Traits::multiply(state.spectrum, work, state.fftLen)) return status;
        if (const ZvpStatus status = Traits::inverse(work, state.fft, buffer)) return status;
        storeElements(work + past, dst + begin, count, scaleFactor);
        return zvpStsOk;
    };
#pragma omp parallel for num_threads(threads) schedule(static, 1) if (threads > 1)
    for (int thread = 0; thread < threads; ++thread) {
        auto* const work = reinterpret_cast<Taps*>(state.threadWork + int64_t{state.workBytes} * thread);
        const auto count = static_cast<size_t>(threads);
        const auto first = static_cast<size_t>(thread);
        for (size_t block = blocks * first / count; block < blocks * (first + 1) / count; ++block) {
            if (const ZvpStatus status = filterBlock(block, work)) {
#pragma omp atomic write
                failure = status;
            }
        }
    }
    return failure;
}

// ---- States ----

template <class Taps, class Data>
FloatFilter<Taps, Data> filterOf(const FirState<Taps>& state, int scaleFactor, const Data*) {
    return {state.taps, static_cast<size_t>(state.tapsLen), scaleFactor};
}
template <class Data>
IntegerFilter<Data> filterOf(const FirIntegerState<Data>& state, int scaleFactor, const Data*) {
    return {state, scaleFactor};
}
template <class Taps>
FirRing<Taps> ringOf(FirState<Taps>& state) {
    return {state.ring, state.index, static_cast<size_t>(state.tapsLen), static_cast<size_t>(state.blockLimit)};
}
template <class Data>
FirRing<Data> ringOf(FirIntegerState<Data>& state) {
    return {state.ring, state.index, static_cast<size_t>(state.tapsLen), static_cast<size_t>(state.stride)};
}

template <class Taps, class Data>
ZvpStatus filterBlock(FirState<Taps>& state, const Data* src, Data* dst, size_t n, int scaleFactor) {
    if (state.fftLen > 0 && prefersFft<Taps>(state.tapsLen, n)) {
        return filterByFft(state, ringOf(state), src, dst, n, scaleFactor);
    }
    return filterDirectly(filterOf(state, scaleFactor, src), src, dst, n, ringOf(state), state.threads);
}
template <class Data>
ZvpStatus filterBlock(FirIntegerState<Data>& state, const Data* src, Data* dst, size_t n, int scaleFactor) {
    return filterDirectly(filterOf(state, scaleFactor, src), src, dst, n, ringOf(state), state.threads);
}

template <class State, class Data>
void filterOne(State& state, Data src, Data* dst, int scaleFactor) {
    const int tapsLen = state.tapsLen;
    auto* const newest = state.ring + state.index;
    newest[0] = newest[tapsLen] = firElement<std::remove_reference_t<decltype(*newest)>>(src);
    state.index = state.index + 1 == tapsLen ? 0 : state.index + 1;
    *dst = filterOf(state, scaleFactor, &src).one(state.ring + state.index);
}

} // namespace zvps
