// How long transforms are cut in two, and the tables they read.
#pragma once

#include "transforms/fft_rows_plan.hpp"

namespace zvps {

// N = N1 x N2 points: transforms over the first index n1 of x[n1 N2 + n2], factors exp(-2 pi i n2 k1 / N), and
// transforms over n2, whose bins k2 are those of k1 + N1 k2.
struct LargeFftPlan {
    int firstOrder;  // of N1
    int secondOrder; // of N2, which is not shorter
    RowsPlan first;  // its first radix is the number of columns taken together
    RowsPlan rest;   // the first one's passes behind that radix
    RowsPlan second;
};

// Of the halves of the shortest real transforms that are cut so.
inline constexpr int kLeastLargeOrder = 17;

// The columns that are taken together: two lines of cache.
template <class T>
inline constexpr int kLargeColumnsOrder = sizeof(T) == 4 ? 4 : 3;
template <class T>
inline constexpr size_t kLargeColumns = size_t{1} << kLargeColumnsOrder<T>;

template <class T>
constexpr LargeFftPlan largeFftPlan(int order) {
    const int firstOrder = sizeof(T) == 8 && order == kLeastLargeOrder ? 7 : order / 2;
    const int secondOrder = order - firstOrder;
    const RowsPlan rest = rowsPlan(firstOrder - kLargeColumnsOrder<T>);
    RowsPlan first = {firstOrder, {kLargeColumnsOrder<T>}};
    for (int pass = 1; pass < kMostRowsPasses; ++pass) {
        first.orders[pass] = rest.orders[pass - 1];
    }
    return {firstOrder, secondOrder, first, rest, rowsPlan(secondOrder)};
}

// The columns of a block of the first transforms.
inline constexpr size_t kBlockColumns = 16;

// Where all points have room in the work buffer, they are there between the trips, in tiles: the values of kTileColumns
// first transforms' bins k1, one row for each n2, and a row that keeps the tiles out of each other's cache sets.
inline constexpr size_t kTileColumns = 16;
template <class T>
constexpr size_t largeFftTile(int order) {
    return 2 * kTileColumns * ((size_t{1} << largeFftPlan<T>(order).secondOrder) + 1);
}

// Behind each column of a block a line of cache keeps them out of each other's way.
template <class T>
inline constexpr size_t kColumnPadding = 64 / sizeof(T);

// The values of that work buffer, with a block of columns between its passes and the alignment to a line of cache.
template <class T>
constexpr size_t largeFftWork(int order) {
    const LargeFftPlan plan = largeFftPlan<T>(order);
    const size_t tiles = (size_t{1} << plan.firstOrder) / kTileColumns * largeFftTile<T>(order);
    const size_t first = kBlockColumns * ((size_t{2} << plan.firstOrder) + kColumnPadding<T>);
    const size_t second = 2 * kTileColumns << plan.secondOrder;
    return tiles + (first < second ? second : first) + 64 / sizeof(T);
}

// Where the tables start, in values. The factors between the transforms are products of a fine one, by n2 and k1 mod C,
// and a coarse one, by n2 and k1 / C, with C columns. They come twice: for one n2 after the other, vectors of fine ones
// for all k1 mod C and single coarse ones; and, each behind them, vectors of both for C neighbouring n2. Vectors are
// cosines, less 1 of fine ones, then sines.
struct LargeFftTables {
    size_t first[kMostRowsPasses];
    size_t second[kMostRowsPasses];
    size_t fine;
    size_t coarse;
    size_t fineAcross;
    size_t coarseAcross;
    size_t values;
};

template <class T>
constexpr LargeFftTables largeFftTables(int order) {
    const LargeFftPlan plan = largeFftPlan<T>(order);
    LargeFftTables tables = {};
    size_t place = 0;
    // Vectors first, at the alignment of the area.
    const size_t fine = 2 * kLargeColumns<T> << plan.secondOrder;
    const size_t coarse = (size_t{2} << order) / kLargeColumns<T>;
    tables.fine = place;
    place += fine;
    tables.fineAcross = place;
    place += fine;
    tables.coarseAcross = place;
    place += coarse;
    tables.coarse = place;
    place += coarse;
    int firstOrder = plan.firstOrder;
    int secondOrder = plan.secondOrder;
    for (int pass = 0; pass < kMostRowsPasses; ++pass) {
        tables.first[pass] = place;
        place += rowsTwiddles(plan.first, pass, firstOrder);
        firstOrder -= plan.first.orders[pass];
        tables.second[pass] = place;
        place += rowsTwiddles(plan.second, pass, secondOrder);
        secondOrder -= plan.second.orders[pass];
    }
    tables.values = place;
    return tables;
}

} // namespace zvps
