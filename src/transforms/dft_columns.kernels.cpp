// Columns of few points, of transforms of any length: from interleaved data to the grid in registers.
#include "transforms/dft_blocks.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

// Those of an inverse transform have their parts exchanged.
template <class T, size_t R, bool kInverse>
HWY_NOINLINE void dftColumns(const T* src, size_t columns, const T* twiddles, T* grid) {
    constexpr size_t V = kDftLanes<T>;
    constexpr size_t B = kDftBlock<T>;
    constexpr size_t kRowBlocks = dftBlocks(R, B);
    using C = ComplexVec<T, V>;
    const Lanes<T, V> d;
    // Rows shorter than a block are read with values of those behind them, the last ones from a copy.
    const size_t readable = columns >= B ? R : (R * columns - B) / columns + 1;
    alignas(64) T copied[4 * B];
    if (columns < B) {
        const T* const rest = src + 2 * columns * readable;
        const size_t count = 2 * columns * (R - readable);
        for (size_t i = 0; i < 4 * B; ++i)
            copied[i] = i < count ? rest[i] : T{0};
    }
    for (size_t i = 0; i < dftBlocks(columns, B); ++i) {
        const size_t column = dftBlockStart(i, columns, B);
        for (size_t half = 0; half < B; half += V) {
            C x[R];
            DftButterfly<T, V, R>::run(
                [&](auto n1) ZVPS_INLINE_LAMBDA {
                    const T* const row =
                        n1 < readable ? src + 2 * (n1 * columns + column) : copied + 2 * (n1 - readable) * columns;
                    return InterleavedLoader<T, kInverse>{row}.template load<V, B>(half);
                },
                [&](auto k1, C value) ZVPS_INLINE_LAMBDA { x[k1] = value; });
            unroll<kRowBlocks>([&](auto j) ZVPS_INLINE_LAMBDA {
                constexpr size_t kStart = dftBlockStart(j, R, B);
                unroll<B / V>([&](auto to) ZVPS_INLINE_LAMBDA {
                    const T* const w = twiddles + 2 * B * (B * j + half) + to * V;
                    T* const out = grid + 2 * B * (j * columns + column) + to * V;
                    const auto row = [&](auto place) ZVPS_INLINE_LAMBDA {
                        constexpr size_t k = kStart + numberAt<T, B>(to * V + place);
                        if constexpr (k < R) {
                            return x[k];
                        } else {
                            return C{hn::Zero(d), hn::Zero(d)};
                        }
                    };
                    Vec<T, V> re[V];
                    transpose<T, V>([&](auto place) ZVPS_INLINE_LAMBDA { return row(place).re; },
                                    [&](auto place, Vec<T, V> v) ZVPS_INLINE_LAMBDA { re[place] = v; });
                    transpose<T, V>([&](auto place) ZVPS_INLINE_LAMBDA { return row(place).im; },
                                    [&](auto place, Vec<T, V> im) ZVPS_INLINE_LAMBDA {
                                        const size_t to_column = numberAt<T, B>(half + place);
                                        if (to_column >= columns) return;
                                        storeBlock<T>(mul(C{re[place], im}, loadBlock<T>(w, place)), out, to_column);
                                    });
                });
            });
        }
        twiddles += 2 * B * B * kRowBlocks;
    }
}

template <class T, bool kInverse>
DftColumnsRoutine<T> routineOf(size_t rows) {
    switch (rows) {
    case 4:
        return dftColumns<T, 4, kInverse>;
    case 5:
        return dftColumns<T, 5, kInverse>;
    case 8:
        return dftColumns<T, 8, kInverse>;
    case 10:
        return dftColumns<T, 10, kInverse>;
    case 12:
        return dftColumns<T, 12, kInverse>;
    case 15:
        return dftColumns<T, 15, kInverse>;
    case 16:
        return dftColumns<T, 16, kInverse>;
    default:
        return nullptr;
    }
}

} // namespace

template <class T>
DftColumnsRoutine<T> columnsRoutine(size_t rows, bool isInverse) {
    return isInverse ? routineOf<T, true>(rows) : routineOf<T, false>(rows);
}
template DftColumnsRoutine<float> columnsRoutine(size_t, bool);
template DftColumnsRoutine<double> columnsRoutine(size_t, bool);

} // namespace zvps::ZVPS_LEVEL
