// How a real FFT is cut into passes, and the tables they read: shared by the builder of transform objects and the
// kernels of all levels.
#pragma once

#include "transforms/fft_rows_plan.hpp"

namespace zvps {

// N = rows x columns samples; the columns are transformed first, then the rows.
struct RealFftPlan {
    size_t rows;
    size_t columns;
    RowsPlan along;
};

template <class T>
constexpr RealFftPlan realFftPlan(int order) {
    const int rows = order < 6 ? 3 : order < 8 || (sizeof(T) == 8 && order >= 10 && order <= 14) ? 4 : 5;
    return {size_t{1} << rows, size_t{1} << (order - rows), rowsPlan(order - rows)};
}

// Of the longest transform that is cut so.
inline constexpr int kMostRealOrder = 17;
inline constexpr size_t kMostRealColumns = realFftPlan<double>(kMostRealOrder).columns;

// Twiddle factors of the columns come in blocks of this many bytes: the real parts of neighbouring columns, then their
// imaginary parts.
inline constexpr size_t kTwiddleBlockBytes = 64;

template <class T>
constexpr size_t realFftBlock(const RealFftPlan& plan) {
    const size_t block = kTwiddleBlockBytes / sizeof(T);
    return plan.columns < block ? plan.columns : block;
}

// Up to this order there are two passes, and no more tables than those of the columns and of the ends.
inline constexpr int kMostShortRealOrder = 9;

// Where the tables start, in values. Those of the columns, cos and sin of 2 pi n k / N for column n and row
// k = 1 .. rows/2 - 1, are at 0. Behind them those that join the real values of the rows 0 and N1/2, cosines then
// sines; or those along the rows and those of the transform of the values of these two rows.
struct RealFftTables {
    size_t ends;
    size_t pass[kMostRowsPasses - 1];
    size_t inner;
    size_t values;
};

template <class T>
constexpr RealFftTables realFftTables(int order) {
    const RealFftPlan plan = realFftPlan<T>(order);
    RealFftTables tables = {};
    size_t place = 2 * plan.columns * (plan.rows / 2 - 1);
    if (order <= kMostShortRealOrder) {
        tables.ends = place;
        place += plan.columns;
    } else {
        int remaining = plan.along.order;
        for (int pass = 0; pass < kMostRowsPasses - 1; ++pass) {
            tables.pass[pass] = place;
            place += rowsTwiddles(plan.along, pass, remaining);
            remaining -= plan.along.orders[pass];
        }
        tables.inner = place;
        place += realFftTables<T>(plan.along.order + 1).values;
    }
    tables.values = place;
    return tables;
}

// Longer ones are complex transforms of half the length, whose bins are joined. The tables are cos less 1 and sin of
// 2 pi k / N for k = 0 .. C - 1, where C values fill a vector, and for k = 1 .. C; cos and sin as pairs for every Cth k
// below N / 2; and those of that transform.
template <class T>
inline constexpr size_t kJoinedBins = kTwiddleBlockBytes / sizeof(T);

template <class T>
constexpr size_t joiningValues(int order) {
    return 4 * kJoinedBins<T> + (size_t{1} << order) / kJoinedBins<T>;
}

} // namespace zvps
