// Cascades of sections of second order. Long stretches are computed with runs of samples in the lanes of vectors, see
// BiquadRun; the rest sample by sample, by the same operations in the same order.
#pragma once

#include "filters/iir_elements.hpp"

namespace zvps::ZVPS_LEVEL {

template <class Element>
struct Section {
    typename Element::Tap b0, b1, b2, a1, a2;

    template <class T>
    explicit HWY_INLINE Section(const T* taps)
        : b0(Element::tap(taps, 0)), b1(Element::tap(taps, 1)), b2(Element::tap(taps, 2)), a1(Element::tap(taps, 3)),
          a2(Element::tap(taps, 4)) {}

    // The next output of transposed direct form 2.
    HWY_INLINE typename Element::V next(typename Element::V x, typename Element::V& d0, typename Element::V& d1) const {
        const auto y = Element::mulAdd(b0, x, d0);
        d0 = Element::mulSub(a1, y, Element::mulAdd(b1, x, d1));
        d1 = Element::mulSub(a2, y, Element::mul(b2, x));
        return y;
    }
};

// Sections that one pass over the samples takes: their recurrences overlap in time.
inline constexpr size_t kSectionsAtOnce = 4;

// pass(first section, how many as a constant) until all are done.
template <class Pass>
HWY_INLINE void forSections(size_t count, Pass pass) {
    size_t s = 0;
    for (; count - s >= kSectionsAtOnce; s += kSectionsAtOnce)
        pass(s, std::integral_constant<size_t, kSectionsAtOnce>());
    for (; s < count; ++s)
        pass(s, std::integral_constant<size_t, 1>());
}

// ---- The recurrence as it stands ----

template <class T, size_t kParts, size_t kSections>
HWY_INLINE void plainSections(const T* src, T* dst, size_t n, const T* taps, T* delay) {
    using Element = Single<T, kParts>;
    using V = typename Element::V;
    const typename Element::D d;
    V d0[kSections], d1[kSections];
    for (size_t s = 0; s < kSections; ++s) {
        d0[s] = hn::LoadU(d, delay + 2 * s * kParts);
        d1[s] = hn::LoadU(d, delay + (2 * s + 1) * kParts);
    }
    for (size_t i = 0; i < n * kParts; i += kParts) {
        V v = hn::LoadU(d, src + i);
        for (size_t s = 0; s < kSections; ++s)
            v = Section<Element>(taps + s * kBiquadTaps * kParts).next(v, d0[s], d1[s]);
        hn::StoreU(v, d, dst + i);
    }
    for (size_t s = 0; s < kSections; ++s) {
        hn::StoreU(d0[s], d, delay + 2 * s * kParts);
        hn::StoreU(d1[s], d, delay + (2 * s + 1) * kParts);
    }
}

template <class T, size_t kParts>
void plainBiquads(const T* src, T* dst, size_t n, BiquadCascade<T>& cascade) {
    forSections(cascade.count, [&](size_t s, auto sections) HWY_ATTR {
        plainSections<T, kParts, sections.value>(s == 0 ? src : dst, dst, n, cascade.taps + s * kBiquadTaps * kParts,
                                                 cascade.delay + 2 * s * kParts);
    });
}

// ---- Parts of runs ----

// The state after a run from that before it and what the run's inputs add.
template <class V>
struct Advance {
    V p00, p01, p10, p11;

    template <class D, class T>
    HWY_INLINE Advance(D d, const BiquadRun<T>& run)
        : p00(hn::Set(d, run.power[0][0])), p01(hn::Set(d, run.power[0][1])), p10(hn::Set(d, run.power[1][0])),
          p11(hn::Set(d, run.power[1][1])) {}

    HWY_INLINE void operator()(V& d0, V& d1, V rest0, V rest1) const {
        const V next0 = hn::MulAdd(p00, d0, hn::MulAdd(p01, d1, rest0));
        d1 = hn::MulAdd(p11, d1, hn::MulAdd(p10, d0, rest1));
        d0 = next0;
    }
};

// n samples of a run from its sample `phase` on.
template <class T, size_t kSections>
HWY_INLINE void runSections(const T* src, T* dst, size_t n, size_t phase, const T* taps, T* delay, BiquadRun<T>* runs) {
    using Element = Single<T, 1>;
    using V = typename Element::V;
    const typename Element::D d;
    V rest0[kSections], rest1[kSections];
    for (size_t s = 0; s < kSections; ++s) {
        rest0[s] = hn::LoadU(d, runs[s].rest);
        rest1[s] = hn::LoadU(d, runs[s].rest + 1);
    }
    for (size_t i = 0; i < n; ++i) {
        const size_t j = phase + i;
        V v = hn::LoadU(d, src + i);
        for (size_t s = 0; s < kSections; ++s) {
            v = Section<Element>(taps + s * kBiquadTaps).next(v, rest0[s], rest1[s]);
            v = hn::MulAdd(hn::LoadU(d, runs[s].h + j), hn::LoadU(d, delay + 2 * s), v);
            if (j != 0) v = hn::MulAdd(hn::LoadU(d, runs[s].h + j - 1), hn::LoadU(d, delay + 2 * s + 1), v);
        }
        hn::StoreU(v, d, dst + i);
    }
    const bool isWhole = phase + n == kRun<T>;
    for (size_t s = 0; s < kSections; ++s) {
        if (isWhole) {
            V d0 = hn::LoadU(d, delay + 2 * s);
            V d1 = hn::LoadU(d, delay + 2 * s + 1);
            Advance<V>(d, runs[s])(d0, d1, rest0[s], rest1[s]);
            hn::StoreU(d0, d, delay + 2 * s);
            hn::StoreU(d1, d, delay + 2 * s + 1);
            rest0[s] = rest1[s] = hn::Zero(d);
        }
        hn::StoreU(rest0[s], d, runs[s].rest);
        hn::StoreU(rest1[s], d, runs[s].rest + 1);
    }
}

// Any n samples.
template <class T>
void samples(const T* src, T* dst, size_t n, BiquadCascade<T>& cascade) {
    for (size_t i = 0; i < n;) {
        const size_t left = kRun<T> - cascade.phase;
        const size_t part = n - i < left ? n - i : left;
        forSections(cascade.count, [&](size_t s, auto sections) HWY_ATTR {
            runSections<T, sections.value>((s == 0 ? src : dst) + i, dst + i, part, cascade.phase,
                                           cascade.taps + s * kBiquadTaps, cascade.delay + 2 * s, cascade.runs + s);
        });
        cascade.phase = (cascade.phase + part) % kRun<T>;
        i += part;
    }
}

// ---- Whole runs ----

// A tile: as many runs as a vector has lanes, their samples number j in vector j.
template <class T>
struct Tile {
    static constexpr size_t N = kVectorBytes / sizeof(T);
    static constexpr size_t kSamples = N * kRun<T>;
    static constexpr size_t kInBlock = 16 / sizeof(T);
    using D = Lanes<T, N>;
    using V = Vec<T, N>;

    alignas(kVectorBytes) T v[kRun<T>][N];

    // From and to consecutive samples.
    HWY_INLINE void gather(const T* p) {
        for (size_t j = 0; j < kRun<T>; j += kInBlock) {
            V rows[kInBlock];
            for (size_t i = 0; i < kInBlock; ++i)
                rows[i] = loadBlocks<N>(p + i * kRun<T> + j);
            transposeBlocks(rows);
            for (size_t i = 0; i < kInBlock; ++i)
                hn::Store(rows[i], D(), v[j + i]);
        }
    }
    HWY_INLINE void scatter(T* p) const {
        for (size_t j = 0; j < kRun<T>; j += kInBlock) {
            V rows[kInBlock];
            for (size_t i = 0; i < kInBlock; ++i)
                rows[i] = hn::Load(D(), v[j + i]);
            transposeBlocks(rows);
            for (size_t i = 0; i < kInBlock; ++i)
                storeBlocks<N>(rows[i], p + i * kRun<T> + j);
        }
    }

  private:
    // Blocks of 16 bytes, kInBlock runs from each to the next.
    template <size_t kLanes>
    static HWY_INLINE Vec<T, kLanes> loadBlocks(const T* p) {
        const Lanes<T, kLanes> d;
        if constexpr (kLanes == kInBlock) {
            return hn::LoadU(d, p);
        } else {
            return hn::Combine(d, loadBlocks<kLanes / 2>(p + kLanes / 2 * kRun<T>), loadBlocks<kLanes / 2>(p));
        }
    }
    template <size_t kLanes>
    static HWY_INLINE void storeBlocks(Vec<T, kLanes> blocks, T* p) {
        const Lanes<T, kLanes> d;
        if constexpr (kLanes == kInBlock) {
            hn::StoreU(blocks, d, p);
        } else {
            const Lanes<T, kLanes / 2> half;
            storeBlocks<kLanes / 2>(hn::LowerHalf(half, blocks), p);
            storeBlocks<kLanes / 2>(hn::UpperHalf(half, blocks), p + kLanes / 2 * kRun<T>);
        }
    }
    // Of each block by itself, kInBlock rows of as many elements.
    static HWY_INLINE void transposeBlocks(V* rows) {
        const D d;
        if constexpr (kInBlock == 2) {
            const V lower = hn::InterleaveLower(d, rows[0], rows[1]);
            rows[1] = hn::InterleaveUpper(d, rows[0], rows[1]);
            rows[0] = lower;
        } else {
            const Lanes<double, N / 2> pairs;
            const auto low01 = hn::BitCast(pairs, hn::InterleaveLower(d, rows[0], rows[1]));
            const auto low23 = hn::BitCast(pairs, hn::InterleaveLower(d, rows[2], rows[3]));
            const auto high01 = hn::BitCast(pairs, hn::InterleaveUpper(d, rows[0], rows[1]));
            const auto high23 = hn::BitCast(pairs, hn::InterleaveUpper(d, rows[2], rows[3]));
            rows[0] = hn::BitCast(d, hn::InterleaveLower(pairs, low01, low23));
            rows[1] = hn::BitCast(d, hn::InterleaveUpper(pairs, low01, low23));
            rows[2] = hn::BitCast(d, hn::InterleaveLower(pairs, high01, high23));
            rows[3] = hn::BitCast(d, hn::InterleaveUpper(pairs, high01, high23));
        }
    }
};

// One section over one tile: first each run from rest, then the responses to the states before the runs.
template <class T>
struct TileStep {
    static constexpr size_t N = Tile<T>::N;

    Tile<T>* tile;
    const T* taps;
    const BiquadRun<T>* run;
    T* delay;
    alignas(kVectorBytes) T rest[2][N]; // the states after the runs from rest
};

// The first half of `next` and the second of `step`, where they are not null, interleaved: both are chains that wait
// for themselves. `step` has `runs` runs, the other lanes rest.
template <bool kNext, bool kStep, class T>
HWY_INLINE void halfSteps(TileStep<T>* next, const TileStep<T>* step, size_t runs) {
    using One = Lanes<T, 1>;
    constexpr size_t N = Tile<T>::N;
    const typename Tile<T>::D d;
    const Section<Wide<T, N>> section(kNext ? next->taps : step->taps);
    const Advance<Vec<T, 1>> advance(One(), kStep ? *step->run : *next->run);
    auto rest0 = hn::Zero(d);
    auto rest1 = hn::Zero(d);
    auto d0 = hn::Zero(One());
    auto d1 = hn::Zero(One());
    alignas(kVectorBytes) T before[2][N];
    if constexpr (kStep) {
        d0 = hn::LoadU(One(), step->delay);
        d1 = hn::LoadU(One(), step->delay + 1);
        if (runs < N) __builtin_memset(before, 0, sizeof(before));
    }
    const auto join = [&](size_t lane) HWY_ATTR {
        hn::StoreU(d0, One(), before[0] + lane);
        hn::StoreU(d1, One(), before[1] + lane);
        advance(d0, d1, hn::LoadU(One(), step->rest[0] + lane), hn::LoadU(One(), step->rest[1] + lane));
    };
#pragma GCC unroll 16
    for (size_t j = 0; j < kRun<T>; ++j) {
        if constexpr (kNext) {
            T* const v = next->tile->v[j];
            hn::Store(section.next(hn::Load(d, v), rest0, rest1), d, v);
        }
        if (kStep && kNext && j < N) join(j);
    }
    if constexpr (kStep && !kNext) {
        for (size_t lane = 0; lane < runs; ++lane)
            join(lane);
    }
    if constexpr (kNext) {
        hn::Store(rest0, d, next->rest[0]);
        hn::Store(rest1, d, next->rest[1]);
    }
    if constexpr (kStep) {
        hn::StoreU(d0, One(), step->delay);
        hn::StoreU(d1, One(), step->delay + 1);
        const auto before0 = hn::Load(d, before[0]);
        const auto before1 = hn::Load(d, before[1]);
        const T* const h = step->run->h;
#pragma GCC unroll 16
        for (size_t j = 0; j < kRun<T>; ++j) {
            T* const v = step->tile->v[j];
            auto sum = hn::MulAdd(hn::Set(d, h[j]), before0, hn::Load(d, v));
            if (j != 0) sum = hn::MulAdd(hn::Set(d, h[j - 1]), before1, sum);
            hn::Store(sum, d, v);
        }
    }
}

inline constexpr size_t kTiles = 4;

// All sections over kTiles tiles or fewer. Of a single one only the first `runs` runs.
template <class T>
void filterTiles(Tile<T>* tiles, size_t count, size_t runs, BiquadCascade<T>& cascade) {
    constexpr size_t N = Tile<T>::N;
    TileStep<T> steps[2];
    TileStep<T>* next = &steps[0];
    TileStep<T>* step = &steps[1];
    const auto start = [&](size_t s, size_t t) HWY_ATTR {
        next->tile = tiles + t;
        next->taps = cascade.taps + s * kBiquadTaps;
        next->run = cascade.runs + s;
        next->delay = cascade.delay + 2 * s;
    };
    const auto swap = [&]() HWY_ATTR {
        TileStep<T>* const done = step;
        step = next;
        next = done;
    };
    if (count == 1) {
        for (size_t s = 0; s < cascade.count; ++s) {
            start(s, 0);
            halfSteps<true, false, T>(next, nullptr, N);
            halfSteps<false, true, T>(nullptr, next, runs);
        }
        return;
    }
    start(0, 0);
    halfSteps<true, false, T>(next, nullptr, N);
    swap();
    for (size_t s = 0; s < cascade.count; ++s) {
        for (size_t t = s == 0 ? 1 : 0; t < count; ++t) {
            start(s, t);
            halfSteps<true, true, T>(next, step, N);
            swap();
        }
    }
    halfSteps<false, true, T>(nullptr, step, N);
}

template <class T>
void wholeTiles(const T* src, T* dst, size_t count, BiquadCascade<T>& cascade) {
    Tile<T> tiles[kTiles];
    for (size_t t = 0; t < count; ++t)
        tiles[t].gather(src + t * Tile<T>::kSamples);
    filterTiles(tiles, count, Tile<T>::N, cascade);
    for (size_t t = 0; t < count; ++t)
        tiles[t].scatter(dst + t * Tile<T>::kSamples);
}

// Fewer whole runs than a tile holds.
template <class T>
void fewRuns(const T* src, T* dst, size_t runs, BiquadCascade<T>& cascade) {
    alignas(kVectorBytes) T block[Tile<T>::kSamples];
    const size_t bytes = runs * kRun<T> * sizeof(T);
    __builtin_memset(block, 0, sizeof(block));
    __builtin_memcpy(block, src, bytes);
    Tile<T> tile;
    tile.gather(block);
    filterTiles(&tile, 1, runs, cascade);
    tile.scatter(block);
    __builtin_memcpy(dst, block, bytes);
}

// Fewer runs are no faster side by side than one by one.
inline constexpr size_t kRunsAtLeast = 3;

template <class T>
void biquads(const T* src, T* dst, size_t n, BiquadCascade<T>& cascade) {
    constexpr size_t kSamples = Tile<T>::kSamples;
    if (cascade.runs == nullptr) {
        plainBiquads<T, 1>(src, dst, n, cascade);
        return;
    }
    if (n < kRunsAtLeast * kRun<T>) {
        samples(src, dst, n, cascade);
        return;
    }
    const size_t lead = (kRun<T> - cascade.phase) % kRun<T>;
    size_t i = 0;
    if (n >= lead + kRunsAtLeast * kRun<T>) {
        samples(src, dst, lead, cascade);
        i = lead;
        while (n - i >= kSamples) {
            const size_t whole = (n - i) / kSamples;
            const size_t count = whole < kTiles ? whole : kTiles;
            wholeTiles(src + i, dst + i, count, cascade);
            i += count * kSamples;
        }
        const size_t runs = (n - i) / kRun<T>;
        if (runs >= kRunsAtLeast) {
            fewRuns(src + i, dst + i, runs, cascade);
            i += runs * kRun<T>;
        }
    }
    samples(src + i, dst + i, n - i, cascade);
}

// ---- Direct form 1 ----

template <class T, size_t kSections>
HWY_INLINE void directForm1Sections(const T* src, T* dst, size_t n, const T* taps, T* delay) {
    using Element = Single<T, 1>;
    using V = typename Element::V;
    const typename Element::D d;
    V x1[kSections], x2[kSections], y1[kSections], y2[kSections];
    for (size_t s = 0; s < kSections; ++s) {
        x1[s] = hn::LoadU(d, delay + 4 * s);
        x2[s] = hn::LoadU(d, delay + 4 * s + 1);
        y1[s] = hn::LoadU(d, delay + 4 * s + 2);
        y2[s] = hn::LoadU(d, delay + 4 * s + 3);
    }
    for (size_t i = 0; i < n; ++i) {
        V v = hn::LoadU(d, src + i);
        for (size_t s = 0; s < kSections; ++s) {
            const Section<Element> section(taps + s * kBiquadTaps);
            const V inputs =
                Element::mulAdd(section.b2, x2[s], Element::mulAdd(section.b1, x1[s], Element::mul(section.b0, v)));
            x2[s] = x1[s];
            x1[s] = v;
            v = Element::mulSub(section.a1, y1[s], Element::mulSub(section.a2, y2[s], inputs));
            y2[s] = y1[s];
            y1[s] = v;
        }
        hn::StoreU(v, d, dst + i);
    }
    for (size_t s = 0; s < kSections; ++s) {
        hn::StoreU(x1[s], d, delay + 4 * s);
        hn::StoreU(x2[s], d, delay + 4 * s + 1);
        hn::StoreU(y1[s], d, delay + 4 * s + 2);
        hn::StoreU(y2[s], d, delay + 4 * s + 3);
    }
}

template <class T>
void directForm1(const T* src, T* dst, size_t n, size_t count, const T* taps, T* delay) {
    forSections(count, [&](size_t s, auto sections) HWY_ATTR {
        directForm1Sections<T, sections.value>(s == 0 ? src : dst, dst, n, taps + s * kBiquadTaps, delay + 4 * s);
    });
}

} // namespace zvps::ZVPS_LEVEL
