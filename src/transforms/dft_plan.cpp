#include "transforms/dft_plan.hpp"
#include "transforms/fft_tables.hpp"
#include "transforms/sines.hpp"

#include <algorithm>
#include <iterator>

namespace zvps {
namespace {

// ---- Radices ----

// The radices with a routine of their own, powers of their primes, and what a pass takes for a point, in cycles of a
// block.
struct Radix {
    size_t prime;
    int power;
    size_t radix;
    double cost;
};
constexpr Radix kRadices[] = {
    {2, 1, 2, 5},   {2, 2, 4, 6.5}, {2, 3, 8, 8.5}, {2, 4, 16, 12},
    {3, 1, 3, 6.5}, {3, 2, 9, 12},  {5, 1, 5, 9},   {7, 1, 7, 12},
};
constexpr double kLoadCost = 4;
constexpr double kTransposeCost = 8;
constexpr double kStoreCost = 4;

struct Passes {
    int count = 0;
    size_t radix[kMostDftPasses];
    double cost = 0; // for a point

    void add(size_t r, double c) {
        radix[count++] = r;
        cost += c;
    }
};

// The cheapest passes for prime^exponent, from the most expensive on.
void addPower(size_t prime, int exponent, Passes& passes) {
    constexpr int kMostExponent = 32;
    double best[kMostExponent] = {0};
    const Radix* last[kMostExponent] = {};
    for (int e = 1; e <= exponent; ++e) {
        for (const Radix& r : kRadices) {
            if (r.prime != prime || r.power > e) continue;
            const double cost = best[e - r.power] + r.cost;
            if (last[e] != nullptr && cost >= best[e]) continue;
            best[e] = cost;
            last[e] = &r;
        }
    }
    while (exponent > 0) {
        if (last[exponent] == nullptr) {
            passes.add(prime, 4 + static_cast<double>(prime));
            --exponent;
        } else {
            passes.add(last[exponent]->radix, last[exponent]->cost);
            exponent -= last[exponent]->power;
        }
    }
}

Passes passesOf(size_t points) {
    Passes passes;
    for (size_t prime = 2; points > 1; ++prime) {
        int exponent = 0;
        for (; points % prime == 0; points /= prime)
            ++exponent;
        if (exponent > 0) addPower(prime, exponent, passes);
    }
    std::sort(passes.radix, passes.radix + passes.count, [](size_t a, size_t b) { return a > b; });
    return passes;
}

// ---- Columns ----

template <class T>
void planColumn(size_t points, DftColumn<T>& column) {
    const Passes passes = passesOf(points);
    column = {};
    column.points = points;
    column.passes = passes.count;
    size_t s = 1;
    for (int i = 0; i < passes.count; ++i) {
        const size_t radix = passes.radix[i];
        column.pass[i] = {radix, s, points / (s * radix), nullptr, nullptr};
        s *= radix;
    }
}

bool hasRoutine(size_t radix) {
    return std::any_of(std::begin(kRadices), std::end(kRadices), [&](const Radix& r) { return r.radix == radix; });
}

// The results of a prime radix that a pass computes at a time.
constexpr size_t kPrimeTile = 4;

template <class T>
size_t passTableSize(const DftPass<T>& pass) {
    const size_t roots = hasRoutine(pass.radix) ? 0 : definitionTableSize<T>(pass.radix, kPrimeTile);
    return 2 * (pass.s - 1) * (pass.radix - 1) + roots;
}

template <class T>
T* buildColumnTables(DftColumn<T>& column, T* table) {
    for (int i = 0; i < column.passes; ++i) {
        DftPass<T>& pass = column.pass[i];
        if (!hasRoutine(pass.radix)) {
            pass.roots = table;
            buildDefinitionTable(pass.radix, kPrimeTile, table);
            table += definitionTableSize<T>(pass.radix, kPrimeTile);
        }
        pass.twiddles = table;
        for (size_t k = 1; k < pass.s; ++k, table += 2 * (pass.radix - 1))
            storeRoots(k, k, pass.s * pass.radix, table, pass.radix - 1);
    }
    return table;
}

template <class T>
size_t twiddleCount(const DftPlan<T>& plan) {
    constexpr size_t B = kDftBlock<T>;
    return dftBlocks(plan.second.points, B) * dftBlocks(plan.first.points, B) * 2 * B * B;
}

} // namespace

template <class T>
void planDft(size_t length, DftPlan<T>& plan) {
    constexpr size_t B = kDftBlock<T>;
    double best = 0;
    const auto consider = [&](size_t rows) {
        const size_t columns = length / rows;
        const double rowCost = passesOf(rows).cost + kLoadCost + kTransposeCost;
        const double columnCost = passesOf(columns).cost + kStoreCost;
        double cost = static_cast<double>(dftBlocks(columns, B) * rows) * rowCost +
                      static_cast<double>(dftBlocks(rows, B) * columns) * columnCost;
        // Columns of which two blocks with their successors are more than the first-level cache.
        if (std::max(rows, columns) * sizeof(T) * 4 * B > 32768) cost *= 1.5;
        if (best != 0 && cost >= best) return;
        best = cost;
        planColumn(rows, plan.first);
        planColumn(columns, plan.second);
    };
    for (size_t d = 2; d * d <= length; ++d) {
        if (length % d != 0) continue;
        consider(d);
        consider(length / d);
    }
    plan.twiddles = nullptr;
}

template <class T>
size_t dftTableSize(const DftPlan<T>& plan) {
    size_t size = twiddleCount(plan);
    for (const DftColumn<T>* column : {&plan.first, &plan.second}) {
        for (int i = 0; i < column->passes; ++i)
            size += passTableSize(column->pass[i]);
    }
    return size;
}

template <class T>
size_t dftWorkSize(const DftPlan<T>& plan) {
    constexpr size_t B = kDftBlock<T>;
    const size_t rowBlocks = dftBlocks(plan.first.points, B);
    return 2 * B * (rowBlocks * plan.second.points + 2 * std::max(rowBlocks * B, plan.second.points));
}

template <class T>
void buildDftTables(DftPlan<T>& plan, T* tables) {
    constexpr size_t B = kDftBlock<T>;
    const size_t rows = plan.first.points;
    const size_t columns = plan.second.points;
    const uint64_t length = rows * columns;
    plan.twiddles = tables;
    for (size_t i = 0; i < dftBlocks(columns, B); ++i) {
        for (size_t j = 0; j < dftBlocks(rows, B); ++j) {
            for (size_t place = 0; place < B; ++place, tables += 2 * B) {
                const uint64_t column = dftBlockStart(i, columns, B) + fftNumberAt<T>(place, B);
                T roots[2 * B];
                storeRoots(column * dftBlockStart(j, rows, B), column, length, roots, B);
                for (size_t lane = 0; lane < B; ++lane) {
                    tables[lane] = roots[2 * fftNumberAt<T>(lane, B)];
                    tables[B + lane] = roots[2 * fftNumberAt<T>(lane, B) + 1];
                }
            }
        }
    }
    buildColumnTables(plan.second, buildColumnTables(plan.first, tables));
}

template <class T>
void storeRoots(uint64_t first, uint64_t step, uint64_t n, T* dst, size_t count) {
    for (size_t i = 0; i < count; ++i) {
        const SineCosine root = sineCosineOf(first + i * step, n);
        dst[2 * i] = static_cast<T>(root.cosine);
        dst[2 * i + 1] = static_cast<T>(-root.sine);
    }
}

template <class T>
size_t definitionTableSize(size_t points, size_t tile) {
    return (points / 2 + tile - 1) / tile * (points / 2) * 2 * tile;
}

template <class T>
void buildDefinitionTable(size_t points, size_t tile, T* table) {
    for (size_t first = 1; first <= points / 2; first += tile) {
        for (size_t i = 1; i <= points / 2; ++i, table += 2 * tile) {
            for (size_t k = 0; k < tile; ++k) {
                const SineCosine root = sineCosineOf(i * (first + k), points);
                const bool isResult = first + k <= points / 2;
                table[k] = static_cast<T>(isResult ? root.cosine : 0);
                table[tile + k] = static_cast<T>(isResult ? root.sine : 0);
            }
        }
    }
}

#define ZVPS_PLAN(T)                                                                                                   \
    template void planDft(size_t, DftPlan<T>&);                                                                        \
    template size_t dftTableSize(const DftPlan<T>&);                                                                   \
    template size_t dftWorkSize(const DftPlan<T>&);                                                                    \
    template void buildDftTables(DftPlan<T>&, T*);                                                                     \
    template void storeRoots(uint64_t, uint64_t, uint64_t, T*, size_t);                                                \
    template size_t definitionTableSize<T>(size_t, size_t);                                                            \
    template void buildDefinitionTable(size_t, size_t, T*);
ZVPS_PLAN(float)
ZVPS_PLAN(double)
#undef ZVPS_PLAN

} // namespace zvps
