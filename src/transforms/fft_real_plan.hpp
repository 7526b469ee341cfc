// How a real FFT is cut into passes, and the tables they read: shared by the builder of specification objects and the
// kernels of all levels.
#pragma once

#include <cstddef>

namespace zvps {

// N = rows x columns samples; the columns are transformed first, then the rows by complex passes.
struct RealFftPlan {
    size_t rows;
    size_t columns;
    int columnOrder;
    int orders[3]; // of the radices of the complex passes, whose product is `columns`; 0 for none
};

template <class T>
constexpr RealFftPlan realFftPlan(int order) {
    const int rows = order < 6 ? 3 : order < 8 || (sizeof(T) == 8 && order >= 10 && order <= 14) ? 4 : 5;
    const int columns = order - rows;
    RealFftPlan plan = {size_t{1} << rows, size_t{1} << columns, columns, {columns, 0, 0}};
    if (columns > 8) {
        plan.orders[0] = columns / 3;
        plan.orders[1] = (columns + 1) / 3;
        plan.orders[2] = (columns + 2) / 3;
    } else if (columns > 4) {
        plan.orders[0] = columns / 2;
        plan.orders[1] = (columns + 1) / 2;
    }
    return plan;
}

// Of the longest transform that is cut so.
inline constexpr int kMostRealOrder = 17;
inline constexpr size_t kMostRealColumns = size_t{1} << (kMostRealOrder - 4);

// Twiddle factors of the columns come in blocks of this many bytes: the real parts of neighbouring columns, then their
// imaginary parts.
inline constexpr size_t kTwiddleBlockBytes = 64;

template <class T>
constexpr size_t realFftBlock(const RealFftPlan& plan) {
    const size_t block = kTwiddleBlockBytes / sizeof(T);
    return plan.columns < block ? plan.columns : block;
}

// The tables, one behind the other, by their numbers of values: cos and sin of 2 pi n k / N for column n and row
// k = 1 .. rows/2 - 1; those that join the real values of the rows 0 and N1/2, cosines then sines; and those of the
// complex passes but the last, by pairs.
struct RealFftTables {
    size_t columns;
    size_t ends;
    size_t pass[2];
};

constexpr RealFftTables realFftTables(const RealFftPlan& plan) {
    const size_t second = plan.columns >> plan.orders[0];
    const size_t third = second >> plan.orders[1];
    return {2 * plan.columns * (plan.rows / 2 - 1),
            plan.columns,
            {plan.orders[1] == 0 ? 0 : 2 * (plan.columns - second), plan.orders[2] == 0 ? 0 : 2 * (second - third)}};
}

} // namespace zvps
