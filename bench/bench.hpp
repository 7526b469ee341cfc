// Rows of the benchmark: one operation, computed by the library and by its peers on the same vectors.
//
// A benchmark's name is ROW/PEER/LENGTH. ROW is a function's name without its prefix, followed by `:scaleFactor` where
// it has one and by `@dst`, `@src` or `@all` where these vectors start one element off alignment.
#pragma once

#include <benchmark/benchmark.h>

#include "zvps/types.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace bench {

// The operands of one call. Nothing in `a` is zero, so that it may divide.
template <class T>
struct Vectors {
    const T* a;
    const T* b;
    T* dst;
    T val;
    int n;
    int scaleFactor;
};

template <class T>
unsigned count(const Vectors<T>& v) {
    return static_cast<unsigned>(v.n);
}

using Lengths = std::vector<int>;
inline constexpr int kLarge = 4 << 20;
inline constexpr int kWarmUpCalls = 3;
inline const Lengths kInCache = {256, 1024, 4096};
inline const Lengths kInCacheAndLarge = {256, 1024, 4096, kLarge};
Lengths shortLengths(); // 1 to 64

// Values whose sums, products and quotients stay normal numbers; integers over their whole range, divisors of every
// magnitude.
class Values {
  public:
    template <class T>
    T operand() {
        if constexpr (std::is_floating_point_v<T>) {
            const double value = 0.5 + 1.5 * std::uniform_real_distribution<>()(m_generator);
            return static_cast<T>(m_generator() % 2 == 0 ? value : -value);
        } else if constexpr (std::is_integral_v<T>) {
            return static_cast<T>(m_generator());
        } else {
            const auto part = operand<decltype(T::re)>();
            return {part, operand<decltype(T::re)>()};
        }
    }
    template <class T>
    T divisor() {
        if constexpr (std::is_integral_v<T>) {
            const auto places = m_generator() % (8 * sizeof(T) - 1);
            const auto value = static_cast<T>(operand<T>() >> places);
            return value == 0 ? T{1} : value;
        } else {
            return operand<T>();
        }
    }

  private:
    std::mt19937_64 m_generator{1};
};

// Three vectors, filled once, at distances that keep their elements out of each other's cache sets.
template <class T>
class Buffers {
  public:
    explicit Buffers(size_t length) {
        const size_t distance = (length * sizeof(T) / 4096 + 2) * 4096 + 1088;
        auto* block = static_cast<unsigned char*>(::operator new (3 * distance, std::align_val_t{4096}));
        m_a = reinterpret_cast<T*>(block);
        m_b = reinterpret_cast<T*>(block + distance);
        m_dst = reinterpret_cast<T*>(block + 2 * distance);
        Values values;
        for (size_t i = 0; i != length; ++i) {
            m_a[i] = values.divisor<T>();
            m_b[i] = values.operand<T>();
            m_dst[i] = values.operand<T>();
        }
    }
    Buffers(const Buffers&) = delete;
    Buffers& operator=(const Buffers&) = delete;
    ~Buffers() { ::operator delete (m_a, std::align_val_t{4096}); }

    // For vectors of n elements, which start `source` and `destination` elements off alignment.
    static Vectors<T> vectors(int n, int source, int destination) {
        constexpr int kSmall = 4096;
        const Buffers& buffers = n > kSmall ? sized<kLarge + 1>() : sized<kSmall + 1>();
        return {buffers.m_a + source, buffers.m_b + source, buffers.m_dst + destination, buffers.m_b[0], n, 0};
    }

  private:
    template <int length>
    static const Buffers& sized() {
        static const Buffers buffers(length);
        return buffers;
    }

    T* m_a;
    T* m_b;
    T* m_dst;
};

struct RowOptions {
    int scaleFactor = 0;
    int sourceOffset = 0;
    int destinationOffset = 0;
};

// A row of the tables. `traffic` is how many vectors a call reads and writes.
template <class T>
class Row {
  public:
    Row(std::string name, int traffic, Lengths lengths, RowOptions options = {})
        : m_name(std::move(name)), m_traffic(traffic), m_lengths(std::move(lengths)), m_options(options) {}

    // `call` takes the Vectors and is inlined into the timing loop.
    template <class Call>
    Row& with(const char* peer, Call call) {
        for (const int n : m_lengths) {
            const std::string name = m_name + '/' + peer + '/' + std::to_string(n);
            benchmark::RegisterBenchmark(name.c_str(), [=, *this](benchmark::State& state) { run(state, call, n); });
        }
        return *this;
    }

  private:
    template <class Call>
    void run(benchmark::State& state, Call call, int n) const {
        Vectors<T> v = Buffers<T>::vectors(n, m_options.sourceOffset, m_options.destinationOffset);
        v.scaleFactor = m_options.scaleFactor;
        for (int i = 0; i != kWarmUpCalls; ++i)
            call(v);
        for ([[maybe_unused]] auto _ : state) {
            call(v);
            benchmark::ClobberMemory();
        }
        state.counters["traffic"] = m_traffic;
        state.counters["bytes"] = static_cast<double>(sizeof(T)) * m_traffic * n;
    }

    std::string m_name;
    int m_traffic;
    Lengths m_lengths;
    RowOptions m_options;
};

// One file a family.
void registerArithmetic();
void registerConversion();
void registerCorrelation();
void registerDct();
void registerDft();
void registerFft();
void registerFir();
void registerMultirateFir();
void registerGenerators();
void registerIir();
void registerInitialisation();
void registerStatistics();
void registerTelephony();
void registerWindows();

} // namespace bench

// A call on the Vectors v.
#define BENCH_CALL(...) [](const auto& v) { __VA_ARGS__; }
