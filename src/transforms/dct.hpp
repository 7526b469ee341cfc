// DCT kernels: products with matrices, DFTs of short lengths in two steps, and the passes before and after longer ones.
#pragma once

#include "transforms/dct_plan.hpp"
#include "transforms/fft_rows.hpp"

namespace zvps::ZVPS_LEVEL {

template <class T>
inline constexpr size_t kDctLanes = kVectorBytes / sizeof(T);

// ---- Matrices ----

// The sum of x[r * step] row[r] over `rows` rows of a matrix, for kVectors vectors of columns; four sums of each.
template <size_t kVectors, class D, class T>
HWY_INLINE void products(D d, const T* x, size_t step, const T* matrix, size_t rows, size_t columns,
                         hn::Vec<D>* results) {
    using V = hn::Vec<D>;
    constexpr size_t kSums = 4;
    constexpr size_t L = hn::MaxLanes(d);
    V sums[kSums][kVectors];
    unroll<kSums * kVectors>([&](auto i) ZVPS_INLINE_LAMBDA { sums[i / kVectors][i % kVectors] = hn::Zero(d); });
    const auto add = [&](size_t r, V* sum) ZVPS_INLINE_LAMBDA {
        const V value = hn::Set(d, x[r * step]);
        unroll<kVectors>([&](auto i) ZVPS_INLINE_LAMBDA {
            sum[i] = hn::MulAdd(value, hn::LoadU(d, matrix + r * columns + i * L), sum[i]);
        });
    };
    size_t r = 0;
    for (; r + kSums <= rows; r += kSums) {
        unroll<kSums>([&](auto i) ZVPS_INLINE_LAMBDA { add(r + i, sums[i]); });
    }
    unroll<kSums - 1>([&](auto i) ZVPS_INLINE_LAMBDA {
        if (r + i < rows) add(r + i, sums[i]);
    });
    unroll<kVectors>([&](auto i) ZVPS_INLINE_LAMBDA {
        results[i] = hn::Add(hn::Add(sums[0][i], sums[1][i]), hn::Add(sums[2][i], sums[3][i]));
    });
}

// The lanes of v that lie before the end of n values, at place i.
template <class D, class T>
HWY_INLINE void storeBefore(D d, hn::Vec<D> v, T* dst, size_t i, size_t n) {
    if (i + hn::MaxLanes(d) <= n) {
        hn::StoreU(v, d, dst + i);
    } else if (i < n) {
        storeFirst(d, v, dst + i, n - i);
    }
}

// n <= kMostDense results from as many values.
template <class T>
HWY_INLINE void denseDct(const T* src, T* dst, const T* matrix, size_t n) {
    constexpr size_t L = kDctLanes<T>;
    constexpr size_t kVectors = kMostDense / L;
    const Lanes<T, L> d;
    Vec<T, L> result[kVectors];
    unroll<kVectors>([&](auto i) ZVPS_INLINE_LAMBDA {
        if (i * L < n) products<1>(d, src, 1, matrix + i * L, n, n, result + i);
    });
    unroll<kVectors>([&](auto i) ZVPS_INLINE_LAMBDA {
        if (i * L < n) storeBefore(d, result[i], dst, i * L, n);
    });
}

// step(kVectors, first): by pairs of vectors, then by one, that cover `count` columns.
template <class T, class Step>
HWY_INLINE void overColumns(size_t count, const Step& step) {
    constexpr size_t L = kDctLanes<T>;
    size_t i = 0;
    for (; i + L < count; i += 2 * L) {
        step(Index<2>(), i);
    }
    if (i < count) step(Index<1>(), i);
}

// kMostDense < n <= kMostDctTable
template <class T>
HWY_INLINE void symmetricDct(const T* src, T* dst, const T* matrix, size_t n) {
    constexpr size_t L = kDctLanes<T>;
    constexpr size_t kFold = 16 / sizeof(T);
    const Lanes<T, L> d;
    const Lanes<T, kFold> fold;
    const size_t sums = (n + 1) / 2;
    const size_t columns = dctMatrixColumns<T>(n);
    // In an odd number of values the middle one is added to itself.
    alignas(kVectorBytes) T sum[kMostDctTable / 2 + kFold];
    alignas(kVectorBytes) T difference[kMostDctTable / 2 + kFold];
    for (size_t i = 0; i < sums; i += kFold) {
        const auto a = hn::LoadU(fold, src + i);
        const auto b = hn::Reverse(fold, hn::LoadU(fold, src + n - i - kFold));
        hn::StoreU(hn::Add(a, b), fold, sum + i);
        hn::StoreU(hn::Sub(a, b), fold, difference + i);
    }
    overColumns<T>(sums, [&](auto vectors, size_t first) ZVPS_INLINE_LAMBDA {
        Vec<T, L> even[vectors];
        Vec<T, L> odd[vectors];
        products<vectors>(d, sum, 1, matrix + first, sums, columns, even);
        products<vectors>(d, difference, 1, matrix + sums * columns + first, n / 2, columns, odd);
        unroll<vectors>([&](auto i) ZVPS_INLINE_LAMBDA {
            const size_t k = 2 * (first + i * L);
            storeBefore(d, pickLanes<Interleaved<0>>(d, even[i], odd[i]), dst, k, n);
            storeBefore(d, pickLanes<Interleaved<1>>(d, even[i], odd[i]), dst, k + L, n);
        });
    });
}

template <class T>
HWY_INLINE void inverseSymmetricDct(const T* src, T* dst, const T* matrix, size_t n) {
    constexpr size_t L = kDctLanes<T>;
    const Lanes<T, L> d;
    const size_t sums = (n + 1) / 2;
    const size_t columns = dctMatrixColumns<T>(n);
    // The halves of the result may overwrite the source only when it has been read.
    alignas(kVectorBytes) T even[kMostDctTable / 2 + 64 / sizeof(T)];
    alignas(kVectorBytes) T odd[kMostDctTable / 2 + 64 / sizeof(T)];
    overColumns<T>(sums, [&](auto vectors, size_t first) ZVPS_INLINE_LAMBDA {
        Vec<T, L> a[vectors];
        Vec<T, L> b[vectors];
        products<vectors>(d, src, 2, matrix + first, sums, columns, a);
        products<vectors>(d, src + 1, 2, matrix + sums * columns + first, n / 2, columns, b);
        unroll<vectors>([&](auto i) ZVPS_INLINE_LAMBDA {
            hn::StoreU(a[i], d, even + first + i * L);
            hn::StoreU(b[i], d, odd + first + i * L);
        });
    });
    // Both halves are of whole vectors; where they meet they agree.
    for (size_t i = 0; i < sums; i += L) {
        const auto a = hn::Load(d, even + i);
        const auto b = hn::Load(d, odd + i);
        hn::StoreU(hn::Add(a, b), d, dst + i);
        hn::StoreU(hn::Reverse(d, hn::Sub(a, b)), d, dst + n - i - L);
    }
}

template <DctDirection direction, class T>
HWY_INLINE void matrixDct(const T* src, T* dst, const T* matrix, size_t n) {
    if (n <= kMostDense) {
        denseDct(src, dst, matrix, n);
    } else if constexpr (direction == kDctForward) {
        symmetricDct(src, dst, matrix, n);
    } else {
        inverseSymmetricDct(src, dst, matrix, n);
    }
}

// ---- Shuffles ----

// The second ones of pairs, the last one first.
struct ReversedPart {
    static constexpr size_t at(size_t j, size_t n) { return 2 * (n - 1 - j) + 1; }
};
// Pairs of a lane of a and one of b, which are taken from its end.
template <size_t kHalf>
struct WithReversed {
    static constexpr size_t at(size_t j, size_t n) {
        return j % 2 == 0 ? (kHalf * n + j) / 2 : 2 * n - 1 - (kHalf * n + j) / 2;
    }
};

// ---- Before and after a DFT ----

// Both for at least two vectors of values; vectors at the end overlap those before them.

// v[i] = x[2 i], v[n - 1 - i] = x[2 i + 1]
template <class T>
HWY_INLINE void toDftOrder(const T* src, T* dst, size_t n) {
    constexpr size_t L = kDctLanes<T>;
    const Lanes<T, L> d;
    const size_t half = n / 2;
    const auto step = [&](size_t i) ZVPS_INLINE_LAMBDA {
        const auto a = hn::LoadU(d, src + 2 * i);
        const auto b = hn::LoadU(d, src + 2 * i + L);
        hn::StoreU(pickLanes<PartOfPairs<0>>(d, a, b), d, dst + i);
        hn::StoreU(pickLanes<ReversedPart>(d, a, b), d, dst + n - i - L);
    };
    for (size_t i = 0; i < half - L; i += L) {
        step(i);
    }
    step(half - L);
    if (n % 2 != 0) dst[half] = src[n - 1];
}
template <class T>
HWY_INLINE void fromDftOrder(const T* src, T* dst, size_t n) {
    constexpr size_t L = kDctLanes<T>;
    const Lanes<T, L> d;
    const size_t half = n / 2;
    const auto step = [&](size_t i) ZVPS_INLINE_LAMBDA {
        const auto a = hn::LoadU(d, src + i);
        const auto b = hn::LoadU(d, src + n - i - L);
        hn::StoreU(pickLanes<WithReversed<0>>(d, a, b), d, dst + 2 * i);
        hn::StoreU(pickLanes<WithReversed<1>>(d, a, b), d, dst + 2 * i + L);
    };
    for (size_t i = 0; i < half - L; i += L) {
        step(i);
    }
    step(half - L);
    if (n % 2 != 0) dst[n - 1] = src[half];
}

// Spectra of n values, from the bin 0 to n/2: as pairs (CCS), or in an array for each part.
template <class P>
struct PairedBins {
    P p; // T* or const T*

    using T = std::remove_const_t<std::remove_pointer_t<P>>;

    HWY_INLINE Parts<Vec<T, kDctLanes<T>>> load(size_t k) const {
        constexpr size_t L = kDctLanes<T>;
        const Lanes<T, L> d;
        const auto a = hn::LoadU(d, p + 2 * k);
        const auto b = hn::LoadU(d, p + 2 * k + L);
        return {pickLanes<PartOfPairs<0>>(d, a, b), pickLanes<PartOfPairs<1>>(d, a, b)};
    }
    HWY_INLINE void store(size_t k, Vec<T, kDctLanes<T>> re, Vec<T, kDctLanes<T>> im) const {
        constexpr size_t L = kDctLanes<T>;
        const Lanes<T, L> d;
        hn::StoreU(pickLanes<Interleaved<0>>(d, re, im), d, p + 2 * k);
        hn::StoreU(pickLanes<Interleaved<1>>(d, re, im), d, p + 2 * k + L);
    }
    HWY_INLINE T real(size_t k) const { return p[2 * k]; }
    HWY_INLINE void storeReal(size_t k, T value) const {
        p[2 * k] = value;
        p[2 * k + 1] = 0;
    }
};
template <class T>
struct SplitBins {
    T* re;
    T* im;

    HWY_INLINE Parts<Vec<T, kDctLanes<T>>> load(size_t k) const {
        const Lanes<T, kDctLanes<T>> d;
        return {hn::LoadU(d, re + k), hn::LoadU(d, im + k)};
    }
    HWY_INLINE void store(size_t k, Vec<T, kDctLanes<T>> real, Vec<T, kDctLanes<T>> imaginary) const {
        const Lanes<T, kDctLanes<T>> d;
        hn::StoreU(real, d, re + k);
        hn::StoreU(imaginary, d, im + k);
    }
    HWY_INLINE T real(size_t k) const { return re[k]; }
    HWY_INLINE void storeReal(size_t k, T value) const {
        re[k] = value;
        im[k] = 0;
    }
};

// step(k) for vectors that cover the bins k = 1 .. (n - 1) / 2.
template <class T, class Step>
HWY_INLINE void overBins(size_t n, const Step& step) {
    constexpr size_t L = kDctLanes<T>;
    const size_t last = (n - 1) / 2 - L + 1;
    for (size_t k = 1; k < last; k += L) {
        step(k);
    }
    step(last);
}

// x c + y s, x s - y c: the twiddles turn V to X and X to V alike.
template <class V>
HWY_INLINE Parts<V> reflected(V x, V y, V c, V s) {
    return {hn::MulAdd(y, s, hn::Mul(x, c)), hn::MulSub(x, s, hn::Mul(y, c))};
}

// V to X
template <class T, class Bins>
HWY_INLINE void turnForward(Bins bins, T* dst, size_t n, const T* twiddles) {
    constexpr size_t L = kDctLanes<T>;
    const Lanes<T, L> d;
    const T* const sines = twiddles + dctBins(n);
    overBins<T>(n, [&](size_t k) ZVPS_INLINE_LAMBDA {
        const auto bin = bins.load(k);
        const auto turned = reflected(bin.re, bin.im, hn::LoadU(d, twiddles + k), hn::LoadU(d, sines + k));
        hn::StoreU(turned.re, d, dst + k);
        hn::StoreU(hn::Reverse(d, turned.im), d, dst + n - k - L + 1);
    });
    dst[0] = bins.real(0) * twiddles[0];
    if (n % 2 == 0) dst[n / 2] = bins.real(n / 2) * twiddles[n / 2];
}
// X to V
template <class T, class Bins>
HWY_INLINE void turnBack(const T* src, Bins bins, size_t n, const T* twiddles) {
    constexpr size_t L = kDctLanes<T>;
    const Lanes<T, L> d;
    const T* const sines = twiddles + dctBins(n);
    overBins<T>(n, [&](size_t k) ZVPS_INLINE_LAMBDA {
        const auto lower = hn::LoadU(d, src + k);
        const auto upper = hn::Reverse(d, hn::LoadU(d, src + n - k - L + 1));
        const auto bin = reflected(lower, upper, hn::LoadU(d, twiddles + k), hn::LoadU(d, sines + k));
        bins.store(k, bin.re, bin.im);
    });
    bins.storeReal(0, src[0] * twiddles[0]);
    if (n % 2 == 0) bins.storeReal(n / 2, src[n / 2] * twiddles[n / 2]);
}

// ---- DFTs in two steps ----

// A DFT by its sums over the pairs j and n - j of n values, side by side in lanes: for k = 0 .. n/2,
//     even = base + sum over j of a[j] cos(2 pi j k / n) + (-1)^k middle, odd = sum over j of b[j] sin(2 pi j k / n)
// with j = 1 .. (n - 1) / 2. take(k, even, odd) gets them, the last ones more than once.
template <class T, class V, class Take>
HWY_INLINE void pairSums(V base, V middle, const T* a, const T* b, size_t n, const T* cosines, const Take& take) {
    constexpr size_t L = kDctLanes<T>;
    constexpr size_t kSums = 4;
    const Lanes<T, L> d;
    const T* const sines = cosines + n;
    for (size_t first = 0; first <= n / 2; first += kSums) {
        size_t k[kSums];
        size_t angle[kSums];
        V even[kSums];
        V odd[kSums];
        unroll<kSums>([&](auto i) ZVPS_INLINE_LAMBDA {
            k[i] = first + i < n / 2 ? first + i : n / 2;
            angle[i] = 0;
            even[i] = k[i] % 2 == 0 ? hn::Add(base, middle) : hn::Sub(base, middle);
            odd[i] = hn::Zero(d);
        });
        for (size_t j = 0; j < (n - 1) / 2; ++j) {
            const V aj = hn::LoadU(d, a + j * L);
            const V bj = hn::LoadU(d, b + j * L);
            unroll<kSums>([&](auto i) ZVPS_INLINE_LAMBDA {
                angle[i] += k[i];
                angle[i] = angle[i] < n ? angle[i] : angle[i] - n;
                even[i] = hn::MulAdd(aj, hn::Set(d, cosines[angle[i]]), even[i]);
                odd[i] = hn::MulAdd(bj, hn::Set(d, sines[angle[i]]), odd[i]);
            });
        }
        unroll<kSums>([&](auto i) ZVPS_INLINE_LAMBDA { take(k[i], even[i], odd[i]); });
    }
}

// Sums and differences of the pairs j and n - j of the values that load(j) gives, for pairSums.
template <class T, class Load>
HWY_INLINE void foldPairs(size_t n, T* sums, T* differences, const Load& load) {
    constexpr size_t L = kDctLanes<T>;
    const Lanes<T, L> d;
    for (size_t j = 1; j <= (n - 1) / 2; ++j) {
        const auto a = load(j);
        const auto b = load(n - j);
        hn::StoreU(hn::Add(a, b), d, sums + (j - 1) * L);
        hn::StoreU(hn::Sub(a, b), d, differences + (j - 1) * L);
    }
}

// What a transform of N = rows x columns values works in. A step's results lie in rows of whole vectors, one row more
// than it has: pairs mirror the first one there.
template <class T>
struct CompositeDct {
    static constexpr size_t L = kDctLanes<T>;
    static constexpr size_t kPairs = kMostDctTable / 2;
    static constexpr size_t kRoom = (kMostDctTable + 2) * L;

    using D = Lanes<T, L>;
    using V = Vec<T, L>;

    size_t n;
    size_t rows;
    size_t columns;
    size_t kept;       // rows of the spectrum
    size_t rowStride;  // of rows with a place for each column
    size_t keptStride; // of rows with a place for each row that is kept
    const T* alongColumns;
    const T* alongRows;
    const T* between;

    alignas(kVectorBytes) T values[kMostDctTable + 2 * L];
    alignas(kVectorBytes) T re[kRoom];
    alignas(kVectorBytes) T im[kRoom];
    alignas(kVectorBytes) T turnedRe[kRoom];
    alignas(kVectorBytes) T turnedIm[kRoom];
    // The bins have a vector of room before and behind them.
    alignas(kVectorBytes) T binsRe[kMostDctTable + 4 * L];
    alignas(kVectorBytes) T binsIm[kMostDctTable + 4 * L];
    alignas(kVectorBytes) T sums[2][kPairs * L];
    alignas(kVectorBytes) T differences[2][kPairs * L];

    HWY_INLINE explicit CompositeDct(const DctSpec<T>& spec)
        : n(static_cast<size_t>(spec.length)), rows(static_cast<size_t>(spec.rows)),
          columns(static_cast<size_t>(spec.columns)), kept(rows / 2 + 1), rowStride((columns + L - 1) / L * L),
          keptStride((kept + L - 1) / L * L), alongColumns(spec.table) {
        const DctTable table = dctTable({rows, columns});
        alongRows = alongColumns + table.alongColumns;
        between = alongRows + table.alongRows;
    }

    HWY_INLINE SplitBins<T> bins() { return {binsRe + L, binsIm + L}; }

    static HWY_INLINE V middleOf(const T* middle, size_t count) {
        return count % 2 == 0 ? hn::LoadU(D(), middle) : hn::Zero(D());
    }

    // values to rows of re and im
    HWY_INLINE void transformColumns() {
        const D d;
        hn::StoreU(hn::Zero(d), d, values + n);
        for (size_t c = 0; c < columns; c += L) {
            const T* const from = values + c;
            foldPairs(rows, sums[0], differences[0],
                      [&](size_t j) ZVPS_INLINE_LAMBDA { return hn::LoadU(d, from + j * columns); });
            pairSums(hn::LoadU(d, from), middleOf(from + rows / 2 * columns, rows), sums[0], differences[0], rows,
                     alongColumns, [&](size_t k, V even, V odd) ZVPS_INLINE_LAMBDA {
                         hn::StoreU(even, d, re + k * rowStride + c);
                         hn::StoreU(hn::Neg(odd), d, im + k * rowStride + c);
                     });
        }
    }
    // and back
    HWY_INLINE void inverseTransformColumns() {
        const D d;
        for (size_t c = 0; c < columns; c += L) {
            for (size_t j = 1; j <= (rows - 1) / 2; ++j) {
                const V real = hn::LoadU(d, re + j * rowStride + c);
                const V imaginary = hn::LoadU(d, im + j * rowStride + c);
                hn::StoreU(hn::Add(real, real), d, sums[0] + (j - 1) * L);
                hn::StoreU(hn::Add(imaginary, imaginary), d, differences[0] + (j - 1) * L);
            }
            pairSums(hn::LoadU(d, re + c), middleOf(re + rows / 2 * rowStride + c, rows), sums[0], differences[0], rows,
                     alongColumns, [&](size_t k, V even, V odd) ZVPS_INLINE_LAMBDA {
                         hn::StoreU(hn::Sub(even, odd), d, turnedRe + k * rowStride + c);
                         hn::StoreU(hn::Add(even, odd), d, turnedRe + (rows - k) * rowStride + c);
                     });
        }
        for (size_t r = 0; r < rows; ++r) {
            for (size_t c = 0; c < columns; c += L) {
                hn::StoreU(hn::LoadU(d, turnedRe + r * rowStride + c), d, values + r * columns + c);
            }
        }
    }

    // Rows with a place for each column to rows with a place for each row that is kept, or back.
    static HWY_INLINE void transposeValues(const T* from, size_t fromStride, size_t fromRows, size_t fromColumns, T* to,
                                           size_t toStride) {
        for (size_t r = 0; r < fromRows; ++r) {
            for (size_t c = 0; c < fromColumns; ++c) {
                to[c * toStride + r] = from[r * fromStride + c];
            }
        }
    }

    HWY_INLINE Parts<V> betweenAt(size_t column, size_t k) const {
        const T* const p = between + (column - 1) * 2 * kept + k;
        return {hn::LoadU(D(), p), hn::LoadU(D(), p + kept)};
    }

    // Complex DFTs of `columns` values, load(j) each, for the rows of a vector.
    template <class Load, class Take>
    HWY_INLINE void alongRow(const Load& load, const Take& take) {
        const D d;
        const auto first = load(0);
        const auto middle = columns % 2 == 0 ? load(columns / 2) : Parts<V>{hn::Zero(d), hn::Zero(d)};
        for (size_t j = 1; j <= (columns - 1) / 2; ++j) {
            const auto a = load(j);
            const auto b = load(columns - j);
            const size_t i = (j - 1) * L;
            hn::StoreU(hn::Add(a.re, b.re), d, sums[0] + i);
            hn::StoreU(hn::Sub(a.re, b.re), d, differences[0] + i);
            hn::StoreU(hn::Add(a.im, b.im), d, sums[1] + i);
            hn::StoreU(hn::Sub(a.im, b.im), d, differences[1] + i);
        }
        alignas(kVectorBytes) T evenRe[(kPairs + 1) * L];
        alignas(kVectorBytes) T oddRe[(kPairs + 1) * L];
        pairSums(first.re, middle.re, sums[0], differences[0], columns, alongRows,
                 [&](size_t k, V even, V odd) ZVPS_INLINE_LAMBDA {
                     hn::StoreU(even, d, evenRe + k * L);
                     hn::StoreU(odd, d, oddRe + k * L);
                 });
        pairSums(first.im, middle.im, sums[1], differences[1], columns, alongRows,
                 [&](size_t k, V even, V odd) ZVPS_INLINE_LAMBDA {
                     const V real = hn::LoadU(d, evenRe + k * L);
                     const V oddReal = hn::LoadU(d, oddRe + k * L);
                     take(k, hn::Add(real, odd), hn::Sub(even, oddReal));
                     take(columns - k, hn::Sub(real, odd), hn::Add(even, oddReal));
                 });
    }

    // rows of re and im to bins
    HWY_INLINE void transformRows() {
        const D d;
        transposeValues(re, rowStride, kept, columns, turnedRe, keptStride);
        transposeValues(im, rowStride, kept, columns, turnedIm, keptStride);
        for (size_t k = 0; k < kept; k += L) {
            alongRow(
                [&](size_t j) ZVPS_INLINE_LAMBDA {
                    const Parts<V> x = {hn::LoadU(d, turnedRe + j * keptStride + k),
                                        hn::LoadU(d, turnedIm + j * keptStride + k)};
                    if (j == 0) return x;
                    const auto w = betweenAt(j, k);
                    return rotated(x.re, x.im, w.re, w.im);
                },
                [&](size_t k2, V real, V imaginary) ZVPS_INLINE_LAMBDA {
                    hn::StoreU(real, d, re + k2 * keptStride + k);
                    hn::StoreU(imaginary, d, im + k2 * keptStride + k);
                });
        }
        // Bin k + rows * k2 is the conjugate of bin N - k - rows * k2. From the end to the start: what lies behind the
        // rows that are kept comes to lie before the bins, and is overwritten later.
        const SplitBins<T> to = bins();
        for (size_t k2 = (columns + 1) / 2; k2-- > 0;) {
            const size_t mirror = (columns - 1 - k2) * keptStride;
            for (size_t k = 0; k < kept; k += L) {
                const size_t place = rows * (k2 + 1) + 1 - k; // behind the vector
                hn::StoreU(hn::Reverse(d, hn::LoadU(d, re + mirror + k)), d, to.re + place - L);
                hn::StoreU(hn::Neg(hn::Reverse(d, hn::LoadU(d, im + mirror + k))), d, to.im + place - L);
            }
            for (size_t k = 0; k < kept; k += L) {
                storeBefore(d, hn::LoadU(d, re + k2 * keptStride + k), to.re + k2 * rows, k, kept);
                storeBefore(d, hn::LoadU(d, im + k2 * keptStride + k), to.im + k2 * rows, k, kept);
            }
        }
    }
    // and back
    HWY_INLINE void inverseTransformRows() {
        const D d;
        const SplitBins<T> from = bins();
        overBins<T>(n, [&](size_t k) ZVPS_INLINE_LAMBDA {
            const auto bin = from.load(k);
            from.store(n - k - L + 1, hn::Reverse(d, bin.re), hn::Neg(hn::Reverse(d, bin.im)));
        });
        for (size_t k = 0; k < kept; k += L) {
            // Exchanged parts turn the other way.
            alongRow(
                [&](size_t j) ZVPS_INLINE_LAMBDA {
                    const auto bin = from.load(rows * j + k);
                    return Parts<V>{bin.im, bin.re};
                },
                [&](size_t column, V imaginary, V real) ZVPS_INLINE_LAMBDA {
                    Parts<V> x = {real, imaginary};
                    if (column % columns != 0) {
                        const auto w = betweenAt(column, k);
                        x = rotatedBack(real, imaginary, w.re, w.im);
                    }
                    hn::StoreU(x.re, d, turnedRe + column * keptStride + k);
                    hn::StoreU(x.im, d, turnedIm + column * keptStride + k);
                });
        }
        transposeValues(turnedRe, keptStride, columns, kept, re, rowStride);
        transposeValues(turnedIm, keptStride, columns, kept, im, rowStride);
    }
};

} // namespace zvps::ZVPS_LEVEL
