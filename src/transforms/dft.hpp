// The kernels of transforms of any length: small ones in registers, mixed radices, prime lengths by their definition,
// and what convolutions and real transforms need besides.
//
// A transform of N1 N2 points goes down N2 columns of N1 points, a block of neighbouring columns at a time, which its
// values share lane by lane. The results are multiplied by twiddles and transposed; then the same along the rows, a
// block of neighbouring numbers at a time. The order of the lanes in a block is that of the passes of the FFT.
#pragma once

#include "transforms/dft_blocks.hpp"

namespace zvps::ZVPS_LEVEL {

// ---- Points in memory ----

// run(loader) with that of the points from the first one on.
template <class T, class Run>
HWY_INLINE void withLoader(const DftPoints<const T>& points, const Run& run) {
    if (points.step == 1) {
        run(SplitLoader<T>{points.re, points.im});
    } else if (points.re < points.im) {
        run(InterleavedLoader<T, false>{points.re});
    } else {
        run(InterleavedLoader<T, true>{points.im});
    }
}
template <class T, class Run>
HWY_INLINE void withStorer(const DftPoints<T>& points, const Run& run) {
    if (points.step == 1) {
        run(SplitStorer<T>{points.re, points.im});
    } else if (points.re < points.im) {
        run(InterleavedStorer<T, false>{points.re});
    } else {
        run(InterleavedStorer<T, true>{points.im});
    }
}

// Those from i on: points, and what loads or stores them.
template <class T>
HWY_INLINE DftPoints<T> pointsFrom(const DftPoints<T>& points, size_t i) {
    const auto offset = static_cast<ptrdiff_t>(i) * points.step;
    return {points.re + offset, points.im + offset, points.step};
}
template <template <class> class Split, class T>
HWY_INLINE Split<T> pointsFrom(const Split<T>& points, size_t i) {
    return {points.re + i, points.im + i};
}
template <template <class, bool> class Interleaved, class T, bool kInverse>
HWY_INLINE Interleaved<T, kInverse> pointsFrom(const Interleaved<T, kInverse>& points, size_t i) {
    return {points.p + 2 * i};
}

// ---- Small lengths ----

// The values of the inverse transform are those of the forward one after the first in reverse order.
template <class T, FftDirection direction, size_t N>
ZvpStatus fixedDft(const T* src, T* dst, T factor) {
    const Lanes<T, 2> d;
    const auto f = hn::Set(d, factor);
    Packed<T> x[N];
    unroll<N>([&](auto n) ZVPS_INLINE_LAMBDA { x[n] = {hn::LoadU(d, src + 2 * n)}; });
    DftButterfly<T, 0, N>::run([&](auto n) ZVPS_INLINE_LAMBDA { return x[n]; },
                               [&](auto k, Packed<T> value) ZVPS_INLINE_LAMBDA {
                                   constexpr size_t kPlace = direction == kFftForward ? k : (N - k) % N;
                                   hn::StoreU(hn::Mul(value.v, f), d, dst + 2 * kPlace);
                               });
    return zvpStsOk;
}

template <class T, size_t N>
ZvpStatus fixedSplitDft(const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, T factor) {
    const Lanes<T, 2> d;
    const auto f = hn::Set(d, factor);
    Packed<T> x[N];
    unroll<N>([&](auto n)
                  ZVPS_INLINE_LAMBDA { x[n] = {hn::InterleaveLower(d, hn::Set(d, srcRe[n]), hn::Set(d, srcIm[n]))}; });
    DftButterfly<T, 0, N>::run([&](auto n) ZVPS_INLINE_LAMBDA { return x[n]; },
                               [&](auto k, Packed<T> value) ZVPS_INLINE_LAMBDA {
                                   const auto result = hn::Mul(value.v, f);
                                   dstRe[k] = hn::GetLane(result);
                                   dstIm[k] = hn::GetLane(hn::Reverse(d, result));
                               });
    return zvpStsOk;
}

// ---- Passes ----

template <class T>
using DftPassRoutine = void (*)(const T* src, T* dst, const DftPass<T>& pass);

template <class T, size_t R>
HWY_NOINLINE void dftPass(const T* src, T* dst, const DftPass<T>& pass) {
    constexpr size_t V = kDftLanes<T>;
    using C = ComplexVec<T, V>;
    const Lanes<T, V> d;
    const size_t s = pass.s;
    const size_t m = pass.m;
    for (size_t half = 0; half < kDftBlock<T>; half += V, src += V, dst += V) {
        for (size_t n = 0; n < m; ++n) {
            DftButterfly<T, V, R>::run([&](auto n1) ZVPS_INLINE_LAMBDA { return loadBlock<T>(src, (n1 * m + n) * s); },
                                       [&](auto k1, C x)
                                           ZVPS_INLINE_LAMBDA { storeBlock<T>(x, dst, (n * R + k1) * s); });
        }
        if constexpr (isFirstRadix(R)) continue;
        const T* w = pass.twiddles;
        for (size_t k = 1; k < s; ++k, w += 2 * (R - 1)) {
            for (size_t n = 0; n < m; ++n) {
                DftButterfly<T, V, R>::run(
                    [&](auto n1) ZVPS_INLINE_LAMBDA {
                        const C x = loadBlock<T>(src, (n1 * m + n) * s + k);
                        if constexpr (n1 == 0) {
                            return x;
                        } else {
                            return mul(x, C{hn::Set(d, w[2 * n1 - 2]), hn::Set(d, w[2 * n1 - 1])});
                        }
                    },
                    [&](auto k1, C x) ZVPS_INLINE_LAMBDA { storeBlock<T>(x, dst, (n * R + k1) * s + k); });
            }
        }
    }
}

inline constexpr size_t kMostPrimeRadix = 150;
// Results of a prime radix that are computed at a time.
inline constexpr size_t kPrimeTile = 4;

// A prime radix. The roots are in tiles of kPrimeTile results: for each point their cosines, then their sines.
template <class T>
HWY_NOINLINE void dftPrimePass(const T* src, T* dst, const DftPass<T>& pass) {
    constexpr size_t V = kDftLanes<T>;
    using C = ComplexVec<T, V>;
    const Lanes<T, V> d;
    const size_t R = pass.radix;
    const size_t H = R / 2;
    const size_t s = pass.s;
    const size_t m = pass.m;
    C sums[kMostPrimeRadix / 2];
    C differences[kMostPrimeRadix / 2];
    for (size_t half = 0; half < kDftBlock<T>; half += V, src += V, dst += V) {
        for (size_t k = 0; k < s; ++k) {
            const T* const w = pass.twiddles + 2 * (R - 1) * (k - 1);
            for (size_t n = 0; n < m; ++n) {
                const auto load = [&](size_t n1) ZVPS_INLINE_LAMBDA {
                    const C x = loadBlock<T>(src, (n1 * m + n) * s + k);
                    return k == 0 ? x : mul(x, C{hn::Set(d, w[2 * n1 - 2]), hn::Set(d, w[2 * n1 - 1])});
                };
                const C x0 = loadBlock<T>(src, n * s + k);
                C total = x0;
                for (size_t i = 1; i <= H; ++i) {
                    const C a = load(i);
                    const C b = load(R - i);
                    sums[i - 1] = add(a, b);
                    differences[i - 1] = sub(a, b);
                    total = add(total, sums[i - 1]);
                }
                storeBlock<T>(total, dst, n * R * s + k);
                const T* root = pass.roots;
                for (size_t tile = 0; tile < dftBlocks(H, kPrimeTile); ++tile) {
                    const size_t first = 1 + dftBlockStart(tile, H, kPrimeTile);
                    C even[kPrimeTile], odd[kPrimeTile];
                    unroll<kPrimeTile>([&](auto j) ZVPS_INLINE_LAMBDA {
                        even[j] = x0;
                        odd[j] = {hn::Zero(d), hn::Zero(d)};
                    });
                    for (size_t i = 0; i < H; ++i, root += 2 * kPrimeTile) {
                        unroll<kPrimeTile>([&](auto j) ZVPS_INLINE_LAMBDA {
                            even[j] = add(even[j], sums[i], hn::Set(d, root[j]));
                            odd[j] = add(odd[j], differences[i], hn::Set(d, root[kPrimeTile + j]));
                        });
                    }
                    unroll<kPrimeTile>([&](auto j) ZVPS_INLINE_LAMBDA {
                        const size_t k1 = first + j;
                        storeBlock<T>(subI(even[j], odd[j]), dst, (n * R + k1) * s + k);
                        storeBlock<T>(addI(even[j], odd[j]), dst, (n * R + R - k1) * s + k);
                    });
                }
            }
        }
    }
}

template <class T>
HWY_INLINE DftPassRoutine<T> passOf(size_t radix) {
    constexpr DftPassRoutine<T> kRoutines[] = {
        dftPass<T, 2>,  dftPass<T, 3>, dftPass<T, 4>, dftPass<T, 5>,  dftPass<T, 6>,
        dftPass<T, 7>,  dftPass<T, 8>, dftPass<T, 9>, dftPass<T, 10>, nullptr,
        dftPass<T, 12>, nullptr,       nullptr,       dftPass<T, 15>, dftPass<T, 16>,
    };
    return radix > 16 || kRoutines[radix - 2] == nullptr ? dftPrimePass<T> : kRoutines[radix - 2];
}

// The first passes down a column of blocks, through `a` and `b`; returns where the result is.
template <class T>
const T* transformColumn(const DftColumn<T>& column, int passes, const T* src, T* a, T* b) {
    for (int i = 0; i < passes; ++i) {
        const DftPass<T>& pass = column.pass[i];
        passOf<T>(pass.radix)(src, a, pass);
        src = a;
        T* const next = b;
        b = a;
        a = next;
    }
    return src;
}

// ---- Mixed radices ----

// `rows` neighbouring numbers from each of a block of columns to as many rows, times their twiddles. The rows are
// `block` blocks further each.
template <class T>
HWY_NOINLINE void transposeColumns(const T* src, const T* twiddles, T* dst, size_t columns) {
    constexpr size_t V = kDftLanes<T>;
    constexpr size_t B = kDftBlock<T>;
    using C = ComplexVec<T, V>;
    const Lanes<T, V> d;
    unroll<B / V>([&](auto from) ZVPS_INLINE_LAMBDA {
        unroll<B / V>([&](auto to) ZVPS_INLINE_LAMBDA {
            const auto row = [&](auto place)
                                 ZVPS_INLINE_LAMBDA { return src + 2 * B * numberAt<T, B>(to * V + place) + from * V; };
            Vec<T, V> re[V];
            transpose<T, V>([&](auto place) ZVPS_INLINE_LAMBDA { return hn::LoadU(d, row(place)); },
                            [&](auto place, Vec<T, V> v) ZVPS_INLINE_LAMBDA { re[place] = v; });
            transpose<T, V>([&](auto place) ZVPS_INLINE_LAMBDA { return hn::LoadU(d, row(place) + B); },
                            [&](auto place, Vec<T, V> im) ZVPS_INLINE_LAMBDA {
                                constexpr size_t kPlace = from * V + place;
                                constexpr size_t kColumn = numberAt<T, B>(kPlace);
                                const T* const w = twiddles + 2 * B * kPlace + to * V;
                                if (kColumn >= columns) return;
                                storeBlock<T>(mul(C{re[place], im}, C{hn::LoadU(d, w), hn::LoadU(d, w + B)}),
                                              dst + to * V, kColumn);
                            });
        });
    });
}

// A block of columns, or the lesser number that there are, to the blocks at dst.
template <class T, class Loader>
HWY_NOINLINE void loadColumns(const Loader& loader, size_t points, size_t columns, T* dst) {
    constexpr size_t V = kDftLanes<T>;
    constexpr size_t B = kDftBlock<T>;
    for (size_t n = 0; n < points; ++n) {
        const Loader row = pointsFrom(loader, n * columns);
        unroll<B / V>([&](auto half)
                          ZVPS_INLINE_LAMBDA { storeBlock<T>(row.template load<V, B>(half * V), dst + half * V, n); });
    }
}
template <class T>
HWY_NOINLINE void loadFewColumns(const DftPoints<const T>& src, size_t points, size_t columns, T* dst) {
    constexpr size_t B = kDftBlock<T>;
    for (size_t n = 0; n < points; ++n) {
        for (size_t place = 0; place < B; ++place) {
            const size_t column = numberAt<T, B>(place);
            const auto i = static_cast<ptrdiff_t>(n * columns + column) * src.step;
            dst[2 * B * n + place] = column < columns ? src.re[i] : T{0};
            dst[2 * B * n + B + place] = column < columns ? src.im[i] : T{0};
        }
    }
}

template <class T, class Storer>
HWY_NOINLINE void storeRows(const T* src, size_t points, size_t step, T factor, const Storer& storer) {
    constexpr size_t V = kDftLanes<T>;
    constexpr size_t B = kDftBlock<T>;
    for (size_t n = 0; n < points; ++n) {
        const ScaledStorer<T, Storer> row = {pointsFrom(storer, n * step), factor};
        unroll<B / V>([&](auto half)
                          ZVPS_INLINE_LAMBDA { row.template store<V, B>(half * V, loadBlock<T>(src + half * V, n)); });
    }
}
// Rows shorter than a block: in their order, each overwrites what the one before has stored beyond its own end.
template <class T, class Storer>
HWY_NOINLINE void storeShortRows(const T* src, size_t points, size_t step, T factor, const Storer& storer,
                                 const DftPoints<T>& dst) {
    constexpr size_t B = kDftBlock<T>;
    const size_t whole = (points * step - B) / step + 1;
    storeRows<T>(src, whole, step, factor, storer);
    for (size_t n = whole; n < points; ++n) {
        for (size_t place = 0; place < B; ++place) {
            const size_t number = numberAt<T, B>(place);
            if (number >= step) continue;
            const auto i = static_cast<ptrdiff_t>(n * step + number) * dst.step;
            dst.re[i] = factor * src[2 * B * n + place];
            dst.im[i] = factor * src[2 * B * n + B + place];
        }
    }
}

// The last pass along a block of rows, to interleaved data; where those of an inverse transform have their parts
// exchanged, its twiddles are conjugate.
template <class T, size_t R>
HWY_NOINLINE void dftLastPass(const T* src, bool isInverse, const DftPass<T>& pass, size_t rows, T factor, T* dst) {
    constexpr size_t V = kDftLanes<T>;
    constexpr size_t B = kDftBlock<T>;
    using C = ComplexVec<T, V>;
    const Lanes<T, V> d;
    const size_t s = pass.s;
    const T* const twiddles = isInverse ? pass.conjugates : pass.twiddles;
    const size_t exchange = isInverse ? B : 0;
    const ptrdiff_t step = isInverse ? -1 : 1;
    const ptrdiff_t base = isInverse ? R : 0;
    for (size_t half = 0; half < B; half += V) {
        const T* const re = src + half + exchange;
        const T* const im = src + half + (B - exchange);
        const auto load = [&](size_t i) ZVPS_INLINE_LAMBDA {
            return C{hn::LoadU(d, re + 2 * B * i), hn::LoadU(d, im + 2 * B * i)};
        };
        const auto store = [&](size_t k, auto k1, C x) ZVPS_INLINE_LAMBDA {
            const ptrdiff_t k2 = k1 == 0 ? 0 : base + step * static_cast<ptrdiff_t>(k1.value);
            T* const to =
                dst + 2 * static_cast<ptrdiff_t>(rows) * (static_cast<ptrdiff_t>(k) + k2 * static_cast<ptrdiff_t>(s));
            ScaledStorer<T, InterleavedStorer<T, false>>{{to}, factor}.template store<V, B>(half, x);
        };
        DftButterfly<T, V, R>::run([&](auto n1) ZVPS_INLINE_LAMBDA { return load(n1 * s); },
                                   [&](auto k1, C x) ZVPS_INLINE_LAMBDA { store(0, k1, x); });
        if constexpr (isFirstRadix(R)) continue;
        const T* w = twiddles;
        for (size_t k = 1; k < s; ++k, w += 2 * (R - 1)) {
            DftButterfly<T, V, R>::run(
                [&](auto n1) ZVPS_INLINE_LAMBDA {
                    const C x = load(n1 * s + k);
                    if constexpr (n1 == 0) {
                        return x;
                    } else {
                        return mul(x, C{hn::Set(d, w[2 * n1 - 2]), hn::Set(d, w[2 * n1 - 1])});
                    }
                },
                [&](auto k1, C x) ZVPS_INLINE_LAMBDA { store(k, k1, x); });
        }
    }
}

template <class T>
using DftLastPassRoutine = void (*)(const T* src, bool isInverse, const DftPass<T>& pass, size_t rows, T factor,
                                    T* dst);
template <class T>
HWY_INLINE DftLastPassRoutine<T> lastPassOf(size_t radix) {
    constexpr DftLastPassRoutine<T> kRoutines[] = {
        dftLastPass<T, 2>,  dftLastPass<T, 3>, dftLastPass<T, 4>, dftLastPass<T, 5>,  dftLastPass<T, 6>,
        dftLastPass<T, 7>,  dftLastPass<T, 8>, dftLastPass<T, 9>, dftLastPass<T, 10>, nullptr,
        dftLastPass<T, 12>, nullptr,           nullptr,           dftLastPass<T, 15>, dftLastPass<T, 16>,
    };
    return radix > 16 ? nullptr : kRoutines[radix - 2];
}

// The columns, a block at a time through `a` and `b`, to the grid.
template <class T>
void transformColumns(const DftPlan<T>& plan, const DftPoints<const T>& src, T* grid, T* a, T* b) {
    constexpr size_t B = kDftBlock<T>;
    const size_t rows = plan.first.points;
    const size_t columns = plan.second.points;
    const size_t rowBlocks = dftBlocks(rows, B);
    for (size_t i = 2 * B * rows; i < 2 * B * B * rowBlocks; ++i)
        a[i] = b[i] = 0;
    const T* twiddles = plan.twiddles;
    for (size_t i = 0; i < dftBlocks(columns, B); ++i) {
        const size_t column = dftBlockStart(i, columns, B);
        if (columns < B) {
            loadFewColumns(src, rows, columns, b);
        } else {
            withLoader(pointsFrom(src, column),
                       [&](const auto& loader) ZVPS_INLINE_LAMBDA { loadColumns<T>(loader, rows, columns, b); });
        }
        const T* const result = transformColumn(plan.first, plan.first.passes, b, a, b);
        for (size_t j = 0; j < rowBlocks; ++j, twiddles += 2 * B * B) {
            transposeColumns(result + 2 * B * dftBlockStart(j, rows, B), twiddles,
                             grid + 2 * B * (j * columns + column), columns < B ? columns : B);
        }
    }
}

template <class T>
void mixedDft(const DftPlan<T>& plan, const DftPoints<const T>& src, const DftPoints<T>& dst, T factor, T* work) {
    constexpr size_t B = kDftBlock<T>;
    const size_t rows = plan.first.points;
    const size_t columns = plan.second.points;
    const size_t rowBlocks = dftBlocks(rows, B);
    T* const a = work + 2 * B * rowBlocks * columns;
    T* const b = a + 2 * B * (rowBlocks * B > columns ? rowBlocks * B : columns);
    const bool isInverse = src.im < src.re;
    const auto allColumns = columnsRoutine<T>(rows, isInverse);
    if (allColumns != nullptr && rows * columns >= B && src.step == 2) {
        allColumns(isInverse ? src.im : src.re, columns, plan.twiddles, work);
    } else {
        transformColumns(plan, src, work, a, b);
    }
    const DftPass<T>& last = plan.second.pass[plan.second.passes - 1];
    const auto lastPass = rows >= B && dst.step == 2 ? lastPassOf<T>(last.radix) : nullptr;
    for (size_t j = 0; j < rowBlocks; ++j) {
        T* const from = work + 2 * B * j * columns;
        const DftPoints<T> to = pointsFrom(dst, dftBlockStart(j, rows, B));
        if (lastPass != nullptr) {
            const T* const result = transformColumn(plan.second, plan.second.passes - 1, from, a, from);
            lastPass(result, to.im < to.re, last, rows, factor, to.re < to.im ? to.re : to.im);
            continue;
        }
        const T* const result = transformColumn(plan.second, plan.second.passes, from, a, from);
        withStorer(to, [&](const auto& storer) ZVPS_INLINE_LAMBDA {
            if (rows < B) {
                storeShortRows(result, columns, rows, factor, storer, to);
            } else {
                storeRows<T>(result, columns, rows, factor, storer);
            }
        });
    }
}

// ---- By the definition ----

template <class T>
HWY_INLINE Packed<T> loadPacked(const DftPoints<const T>& points, size_t i) {
    const Lanes<T, 2> d;
    const DftPoints<const T> from = pointsFrom(points, i);
    if (points.step == 1) return {hn::InterleaveLower(d, hn::Set(d, *from.re), hn::Set(d, *from.im))};
    return points.re < points.im ? Packed<T>{hn::LoadU(d, from.re)} : Packed<T>{hn::Reverse(d, hn::LoadU(d, from.im))};
}

template <class T, size_t N>
HWY_INLINE ComplexVec<T, N> reversed(ComplexVec<T, N> x) {
    if constexpr (N == 1) {
        return x;
    } else {
        const Lanes<T, N> d;
        return {hn::Reverse(d, x.re), hn::Reverse(d, x.im)};
    }
}

// The values k and length - k for a block of k at a time. The roots are in such blocks: for each point its cosines,
// then its sines.
template <class T>
void directDft(size_t length, const T* roots, const DftPoints<const T>& src, const DftPoints<T>& dst, T factor,
               T* work) {
    constexpr size_t B = kDftBlock<T>;
    constexpr size_t V = kDftLanes<T>;
    using C = ComplexVec<T, V>;
    const Lanes<T, V> d;
    const Lanes<T, 2> pair;
    const size_t H = length / 2;
    // Sums and differences of the points n and length - n.
    const Packed<T> x0 = loadPacked(src, 0);
    Packed<T> total = x0;
    for (size_t n = 1; n <= H; ++n) {
        const Packed<T> a = loadPacked(src, n);
        const Packed<T> b = loadPacked(src, length - n);
        const Packed<T> sum = add(a, b);
        hn::StoreU(sum.v, pair, work + 4 * n - 4);
        hn::StoreU(sub(a, b).v, pair, work + 4 * n - 2);
        total = add(total, sum);
    }
    const T re0 = hn::GetLane(x0.v);
    const T im0 = hn::GetLane(hn::Reverse(pair, x0.v));
    dst.re[0] = factor * hn::GetLane(total.v);
    dst.im[0] = factor * hn::GetLane(hn::Reverse(pair, total.v));
    withStorer(dst, [&](const auto& storer) ZVPS_INLINE_LAMBDA {
        for (size_t i = 0; i < dftBlocks(H, B); ++i, roots += 2 * B * H) {
            const size_t first = dftBlockStart(i, H, B);
            for (size_t half = 0; half < B; half += V) {
                C even = {hn::Set(d, re0), hn::Set(d, im0)};
                C odd = {hn::Zero(d), hn::Zero(d)};
                for (size_t n = 0; n < H; ++n) {
                    const T* const folded = work + 4 * n;
                    const auto cosines = hn::LoadU(d, roots + 2 * B * n + half);
                    const auto sines = hn::LoadU(d, roots + 2 * B * n + B + half);
                    even = add(even, C{hn::Set(d, folded[0]), hn::Set(d, folded[1])}, cosines);
                    odd = add(odd, C{hn::Set(d, folded[2]), hn::Set(d, folded[3])}, sines);
                }
                even = scaledBy(even, factor);
                odd = scaledBy(odd, factor);
                pointsFrom(storer, 1 + first).template store<V, B>(half, subI(even, odd));
                pointsFrom(storer, length - B - first).template store<V, B>(B - V - half, reversed(addI(even, odd)));
            }
        }
    });
}

// ---- Convolution ----

// Calls run(n of lanes, i) for vectors at i, then for single values.
template <size_t V, class Run>
HWY_INLINE void overPoints(size_t n, const Run& run) {
    size_t i = 0;
    for (; i + V <= n; i += V)
        run(Index<V>(), i);
    for (; i < n; ++i)
        run(Index<1>(), i);
}

// Points i to i + N - 1.
template <size_t N, class T, class Loader>
HWY_INLINE ComplexVec<T, N> loadPoints(const Loader& loader, const DftPoints<const T>& points, size_t i) {
    if constexpr (N == 1) {
        const Lanes<T, 1> d;
        const DftPoints<const T> from = pointsFrom(points, i);
        return {hn::LoadU(d, from.re), hn::LoadU(d, from.im)};
    } else {
        return pointsFrom(loader, i).template load<N, N>(0);
    }
}
template <size_t N, class T, class Storer>
HWY_INLINE void storePoints(ComplexVec<T, N> x, const Storer& storer, const DftPoints<T>& points, size_t i) {
    if constexpr (N == 1) {
        const Lanes<T, 1> d;
        const DftPoints<T> to = pointsFrom(points, i);
        hn::StoreU(x.re, d, to.re);
        hn::StoreU(x.im, d, to.im);
    } else {
        pointsFrom(storer, i).template store<N, N>(0, x);
    }
}
template <size_t N, class T>
HWY_INLINE ComplexVec<T, N> loadPairs(const T* p, size_t i) {
    return loadPoints<N, T>(InterleavedLoader<T, false>{p}, DftPoints<const T>{p, p + 1, 2}, i);
}
template <size_t N, class T>
HWY_INLINE void storePairs(ComplexVec<T, N> x, T* p, size_t i) {
    storePoints<N, T>(x, InterleavedStorer<T, false>{p}, DftPoints<T>{p, p + 1, 2}, i);
}

template <class T>
void multiplyIn(const DftPoints<const T>& src, const T* factors, T* dst, size_t n) {
    withLoader(src, [&](const auto& loader) ZVPS_INLINE_LAMBDA {
        overPoints<kDftLanes<T>>(n, [&](auto lanes, size_t i) ZVPS_INLINE_LAMBDA {
            constexpr size_t N = lanes;
            storePairs<N, T>(mul(loadPoints<N, T>(loader, src, i), loadPairs<N, T>(factors, i)), dst, i);
        });
    });
}

template <class T>
void multiplyOut(const T* src, const T* factors, const DftPoints<T>& dst, size_t n) {
    withStorer(dst, [&](const auto& storer) ZVPS_INLINE_LAMBDA {
        overPoints<kDftLanes<T>>(n, [&](auto lanes, size_t i) ZVPS_INLINE_LAMBDA {
            constexpr size_t N = lanes;
            storePoints<N, T>(mul(loadPairs<N, T>(src, i), loadPairs<N, T>(factors, i)), storer, dst, i);
        });
    });
}

// ---- Real samples ----

// Calls pair(a, b, w), which changes them, with the values k and half - k and the twiddles k, for all k from 1 that are
// below half of `half`. Arrays are given from value 1 on.
template <class T, class PairOf>
HWY_INLINE void overMirrored(const T* src, T* dst, size_t half, const T* twiddles, const PairOf& pair) {
    const auto step = [&](auto lanes, size_t k) ZVPS_INLINE_LAMBDA {
        constexpr size_t N = lanes;
        const size_t mirror = half - k - N;
        ComplexVec<T, N> a = loadPairs<N, T>(src, k - 1);
        ComplexVec<T, N> b = reversed<T, N>(loadPairs<N, T>(src, mirror));
        pair(a, b, loadPairs<N, T>(twiddles, k - 1));
        storePairs<N, T>(a, dst, k - 1);
        storePairs<N, T>(reversed<T, N>(b), dst, mirror);
    };
    constexpr size_t V = kDftLanes<T>;
    const size_t end = (half + 1) / 2;
    size_t k = 1;
    for (; k + V <= end; k += V)
        step(Index<V>(), k);
    for (; k < end; ++k)
        step(Index<1>(), k);
}

// a, b: e + i o and the conjugate of e - i o
template <class C>
HWY_INLINE void splitPair(C even, C odd, C& a, C& b) {
    a = addI(even, odd);
    const C other = subI(even, odd);
    b = {other.re, hn::Neg(other.im)};
}

// The sum and the difference of a and the conjugate of b.
template <class C, class W>
HWY_INLINE void joinPair(C a, C b, W factor, C& sum, C& difference) {
    sum = {hn::Mul(factor, hn::Add(a.re, b.re)), hn::Mul(factor, hn::Sub(a.im, b.im))};
    difference = {hn::Mul(factor, hn::Sub(a.re, b.re)), hn::Mul(factor, hn::Add(a.im, b.im))};
}

// X[k] = (Z[k] + conj Z[h - k]) / 2 - i w^k (Z[k] - conj Z[h - k]) / 2
// Z[k] = (X[k] + conj X[h - k]) + i conj(w^k) (X[k] - conj X[h - k])
template <class T, FftDirection direction>
void convertPairs(const T* src, T* dst, size_t half, const T* twiddles, T factor) {
    constexpr bool isForward = direction == kFftForward;
    if (isForward) factor /= 2;
    overMirrored<T>(src, dst, half, twiddles, [&](auto& a, auto& b, auto w) ZVPS_INLINE_LAMBDA {
        using C = decltype(w);
        const auto f = hn::Set(hn::DFromV<decltype(w.re)>(), factor);
        C even, odd;
        joinPair(a, b, f, even, odd);
        if constexpr (isForward) {
            const C turned = mul(odd, w);
            splitPair(even, C{hn::Neg(turned.re), hn::Neg(turned.im)}, a, b);
        } else {
            splitPair(even, mul(odd, C{w.re, hn::Neg(w.im)}), a, b);
        }
    });
    if (half % 2 == 0) {
        dst[half - 2] = 2 * factor * src[half - 2];
        dst[half - 1] = -2 * factor * src[half - 1];
    }
}

} // namespace zvps::ZVPS_LEVEL
