#include "transforms/dft_plan.hpp"
#include "transforms/fft_tables.hpp"
#include "transforms/sines.hpp"

#include <algorithm>
#include <iterator>

namespace zvps {
namespace {

// ---- Radices ----

// What a pass takes for a block of points, and the columns of so many points with their twiddles and transposition, of
// singles and of doubles: in nanoseconds, as measured. 0: no such routine.
struct Radix {
    size_t radix;
    double pass;
    double columns[2];
};
constexpr Radix kRadices[] = {
    {16, 1.75, {2.45, 2.1}}, {15, 1.75, {2.75, 2.5}}, {12, 1.45, {2.6, 2.45}}, {10, 1.40, {2.75, 2.5}},
    {9, 1.50, {0, 0}},       {8, 1.10, {2.1, 1.85}},  {7, 1.30, {0, 0}},       {6, 1.00, {0, 0}},
    {5, 1.00, {2.6, 2.4}},   {4, 0.85, {2.3, 1.75}},  {3, 0.90, {0, 0}},       {2, 0.75, {0, 0}},
};
// The last pass interleaves, and has more twiddles than the others, unless it is the first.
constexpr double kLastPassCost = 0.35;
constexpr double kOnlyPassCost = 0.1;
// Of columns of several passes: to load and to transpose them, and for each pass to be called.
constexpr double kLoadCost = 1.2;
constexpr double kTransposeCost = 2.2;
constexpr double kCallCost = 5;
// Of rows shorter than a block.
constexpr double kShortRowCost = 1.2;

const Radix* routineOf(size_t radix) {
    for (const Radix& r : kRadices) {
        if (r.radix == radix) return &r;
    }
    return nullptr;
}

struct Passes {
    int count = 0;
    size_t radix[kMostDftPasses] = {};
    double cost = 0; // for a block of points
};

// The cheapest passes, of radices from kRadices[first] on, behind those there are.
void addPasses(size_t points, size_t first, const Passes& before, Passes& best) {
    if (best.count > 0 && before.cost >= best.cost) return;
    if (points == 1) {
        best = before;
        return;
    }
    for (size_t i = first; i < std::size(kRadices); ++i) {
        const size_t radix = kRadices[i].radix;
        if (points % radix != 0 || (before.count > 0 && isFirstRadix(radix))) continue;
        Passes passes = before;
        passes.radix[passes.count++] = radix;
        passes.cost += kRadices[i].pass;
        addPasses(points / radix, isFirstRadix(radix) ? 0 : i, passes, best);
    }
}

Passes passesOf(size_t points) {
    // Primes without a routine of their own come first.
    Passes primes;
    for (size_t prime = 11; prime * prime <= points || prime == points; prime += 2) {
        for (; points % prime == 0; points /= prime) {
            primes.radix[primes.count++] = prime;
            primes.cost += 1.2 + static_cast<double>(prime) / 8;
        }
    }
    constexpr size_t kLargestPrime = 7;
    size_t rest = points;
    for (size_t prime = 2; prime <= kLargestPrime; ++prime) {
        while (rest % prime == 0)
            rest /= prime;
    }
    if (rest > 1) {
        primes.radix[primes.count++] = rest;
        primes.cost += 1.2 + static_cast<double>(rest) / 8;
        points /= rest;
    }
    Passes best;
    addPasses(points, 0, primes, best);
    return best;
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
        column.pass[i] = {radix, s, points / (s * radix), nullptr, nullptr, nullptr};
        s *= radix;
    }
}

bool hasRoutine(size_t radix) {
    return routineOf(radix) != nullptr;
}

// The results of a prime radix that a pass computes at a time.
constexpr size_t kPrimeTile = 4;

template <class T>
size_t passTableSize(const DftPass<T>& pass) {
    const size_t roots = hasRoutine(pass.radix) ? 0 : definitionTableSize<T>(pass.radix, kPrimeTile);
    return (pass.m == 1 ? 4 : 2) * (pass.s - 1) * (pass.radix - 1) + roots;
}

template <class T>
T* buildColumnTables(DftColumn<T>& column, T* table) {
    for (int i = 0; i < column.passes; ++i) {
        DftPass<T>& pass = column.pass[i];
        if (!hasRoutine(pass.radix)) {
            pass.roots = table;
            buildDefinitionTable(pass.radix, kPrimeTile, false, table);
            table += definitionTableSize<T>(pass.radix, kPrimeTile);
        }
        pass.twiddles = table;
        for (size_t k = 1; k < pass.s; ++k, table += 2 * (pass.radix - 1))
            storeRoots(k, k, pass.s * pass.radix, table, pass.radix - 1);
        if (pass.m > 1) continue;
        pass.conjugates = table;
        for (const T* w = pass.twiddles; w != pass.conjugates; w += 2, table += 2) {
            table[0] = w[0];
            table[1] = -w[1];
        }
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
double planDft(size_t length, DftPlan<T>& plan) {
    constexpr size_t B = kDftBlock<T>;
    double best = 0;
    const auto consider = [&](size_t rows) {
        const size_t columns = length / rows;
        const auto columnBlocks = static_cast<double>(dftBlocks(columns, B));
        const auto rowBlocks = static_cast<double>(dftBlocks(rows, B));
        const Radix* const routine = routineOf(rows);
        double cost = 0;
        const double routineCost = routine == nullptr ? 0 : routine->columns[sizeof(T) / 8];
        if (routineCost > 0) {
            cost = columnBlocks * static_cast<double>(rows) * routineCost;
        } else {
            const Passes passes = passesOf(rows);
            cost = columnBlocks * (static_cast<double>(rows) * (passes.cost + kLoadCost + kTransposeCost) +
                                   kCallCost * (passes.count + 2));
        }
        const Passes passes = passesOf(columns);
        const double lastCost = rows < B ? kShortRowCost : passes.count > 1 ? kLastPassCost : kOnlyPassCost;
        cost += rowBlocks * (static_cast<double>(columns) * (passes.cost + lastCost) + kCallCost * passes.count);
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
    return best;
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
void buildDefinitionTable(size_t points, size_t tile, bool isInBlocks, T* table) {
    const size_t half = points / 2;
    for (size_t block = 0; block < dftBlocks(half, tile); ++block) {
        const size_t first = 1 + dftBlockStart(block, half, tile);
        for (size_t i = 1; i <= half; ++i, table += 2 * tile) {
            for (size_t place = 0; place < tile; ++place) {
                const size_t k = first + (isInBlocks ? fftNumberAt<T>(place, tile) : place);
                const SineCosine root = sineCosineOf(i * k, points);
                table[place] = static_cast<T>(root.cosine);
                table[tile + place] = static_cast<T>(root.sine);
            }
        }
    }
}

#define ZVPS_PLAN(T)                                                                                                   \
    template double planDft(size_t, DftPlan<T>&);                                                                      \
    template size_t dftTableSize(const DftPlan<T>&);                                                                   \
    template size_t dftWorkSize(const DftPlan<T>&);                                                                    \
    template void buildDftTables(DftPlan<T>&, T*);                                                                     \
    template void storeRoots(uint64_t, uint64_t, uint64_t, T*, size_t);                                                \
    template size_t definitionTableSize<T>(size_t, size_t);                                                            \
    template void buildDefinitionTable(size_t, size_t, bool, T*);
ZVPS_PLAN(float)
ZVPS_PLAN(double)
#undef ZVPS_PLAN

} // namespace zvps
