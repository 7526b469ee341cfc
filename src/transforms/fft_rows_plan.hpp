// How transforms along rows are cut into passes.
#pragma once

#include <cstddef>

namespace zvps {

inline constexpr int kMostRowsPasses = 4;

// A transform of 2^order values; its radices as powers of two, zeros behind them.
struct RowsPlan {
    int order;
    int orders[kMostRowsPasses];
};

// Two passes or more, of radix 8 and 16 (4 only as the first of two).
constexpr RowsPlan rowsPlan(int order) {
    RowsPlan plan = {order, {}};
    const int passes = order <= 4 ? 1 : (order + 3) / 4;
    for (int pass = 0; pass < passes; ++pass) {
        plan.orders[pass] = (order + pass) / passes;
    }
    return plan;
}

// The values of the table of a pass whose transforms have 2^order values left: cos and sin of 2 pi n k / 2^order by n,
// then k = 1 .. radix - 1. The last pass needs none.
constexpr size_t rowsTwiddles(const RowsPlan& plan, int pass, int order) {
    return plan.orders[pass] >= order ? 0 : 2 * ((size_t{1} << order) - (size_t{1} << (order - plan.orders[pass])));
}

} // namespace zvps
