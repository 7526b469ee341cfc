// How DCTs of up to kMostDctTable values that are no products with a matrix are cut in two: shared by the builder of
// their objects and the kernels of all levels.
#pragma once

#include "transforms/dct.table.hpp"

namespace zvps {

// The real DFT of N = rows x columns values: real DFTs of the columns, then complex ones along the rows 0 .. rows / 2.
struct DctPlan {
    size_t rows;
    size_t columns;
};

constexpr DctPlan dctPlan(size_t n, size_t lanes) {
    DctPlan best = {n, 1};
    size_t least = n * n * n;
    for (size_t columns = 1; columns < n; ++columns) {
        if (n % columns != 0) continue;
        const size_t rows = n / columns;
        const size_t kept = rows / 2 + 1;
        // Fused operations on vectors, sums in fours.
        const size_t cost = (kept + 3) / 4 * 4 * (rows - 1) * ((columns + lanes - 1) / lanes) +
                            (columns / 2 + 4) / 4 * 4 * 2 * (columns - 1) * ((kept + lanes - 1) / lanes);
        if (cost < least) {
            least = cost;
            best = {rows, columns};
        }
    }
    return best;
}
template <class T>
constexpr DctPlan dctPlan(size_t n) {
    return dctPlan(n, 64 / sizeof(T));
}

// The table: cosines, then sines of 2 pi i / rows; the same of 2 pi i / columns; for every column n from 1 on the
// cosines, then the sines of 2 pi n k / N for the rows k that are kept. The object's twiddles follow.
struct DctTable {
    size_t alongColumns;
    size_t alongRows;
    size_t between;

    constexpr size_t values() const { return alongColumns + alongRows + between; }
};
constexpr DctTable dctTable(DctPlan plan) {
    return {2 * plan.rows, 2 * plan.columns, (plan.columns - 1) * 2 * (plan.rows / 2 + 1)};
}

} // namespace zvps
