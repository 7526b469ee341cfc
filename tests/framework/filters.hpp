// What the tests of FIR filters and correlations share: operands, guarded vectors, and what results may be.
#pragma once

#include "framework/call.hpp"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <type_traits>

namespace zvps::test {

// ---- Types ----

template <class T, class = void>
struct PartType {
    using Type = T;
};
template <class T>
struct PartType<T, std::void_t<decltype(T::re)>> {
    using Type = decltype(T::re);
};
template <class T>
using PartOfType = typename PartType<T>::Type;
template <class T>
constexpr bool isComplex = !std::is_same_v<T, PartOfType<T>>;

// ---- Operands ----

template <class P>
P randomPart(Random& random) {
    if constexpr (std::is_floating_point_v<P>) {
        return static_cast<P>(static_cast<double>(static_cast<int64_t>(random())) * 0x1p-63);
    } else {
        using Limits = std::numeric_limits<P>;
        const uint64_t bits = random();
        return bits % 16 == 0 ? Limits::min() : bits % 16 == 1 ? Limits::max() : static_cast<P>(bits >> 20);
    }
}
template <class T>
T randomElement(Random& random) {
    if constexpr (isComplex<T>) {
        const auto re = randomPart<PartOfType<T>>(random);
        return {re, randomPart<PartOfType<T>>(random)};
    } else {
        return randomPart<T>(random);
    }
}
template <class T>
std::vector<T> randomVector(size_t n, Random& random) {
    std::vector<T> v(n);
    for (T& element : v)
        element = randomElement<T>(random);
    return v;
}

template <class T>
bool sameBits(const std::vector<T>& a, const std::vector<T>& b) {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

// A vector between protected pages, beside the one behind it or the one before.
template <class T>
class Guarded {
  public:
    explicit Guarded(const std::vector<T>& contents, bool atEnd = true) : n_(contents.size()) {
        const size_t bytes = (n_ * sizeof(T) + kPage - 1) / kPage * kPage;
        size_ = bytes + 2 * kPage;
        void* block = mmap(nullptr, size_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (block == MAP_FAILED) throw std::bad_alloc();
        block_ = static_cast<unsigned char*>(block);
        if (bytes > 0 && mprotect(block_ + kPage, bytes, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
        data_ = reinterpret_cast<T*>(block_ + kPage + (atEnd ? bytes - n_ * sizeof(T) : 0));
        std::copy(contents.begin(), contents.end(), data_);
    }
    ~Guarded() { munmap(block_, size_); }
    Guarded(const Guarded&) = delete;
    Guarded& operator=(const Guarded&) = delete;
    T* data() const { return data_; }
    std::vector<T> contents() const { return {data_, data_ + n_}; }

  private:
    static constexpr size_t kPage = 4096;
    size_t n_;
    size_t size_;
    unsigned char* block_;
    T* data_;
};

// ---- What results must be ----

template <class T>
long double part(const T& v, int i) {
    if constexpr (isComplex<T>) {
        return i == 0 ? v.re : v.im;
    } else {
        return i == 0 ? static_cast<long double>(v) : 0;
    }
}

struct Sum {
    long double parts[2] = {};
    long double magnitudes = 0; // of the products, the scale of what rounding may cost

    template <class T, class D>
    void add(const T& tap, const D& x) {
        const long double hr = part(tap, 0), hi = part(tap, 1), xr = part(x, 0), xi = part(x, 1);
        parts[0] += hr * xr - hi * xi;
        parts[1] += hr * xi + hi * xr;
        magnitudes += (std::abs(hr) + std::abs(hi)) * (std::abs(xr) + std::abs(xi));
    }
};

// The largest error of a sum of so many products, in units of the magnitudes' sum.
template <class T>
long double tolerance(size_t tapsLen) {
    using Working = std::conditional_t<std::is_same_v<PartOfType<T>, float>, float, double>;
    return std::numeric_limits<Working>::epsilon() * (4 + static_cast<long double>(tapsLen) / 4);
}

template <class D>
testing::AssertionResult isResult(const D& actual, const Sum& sum, long double error, int shift) {
    using P = PartOfType<D>;
    for (int i = 0; i < (isComplex<D> ? 2 : 1); ++i) {
        const long double value = part(actual, i);
        bool good;
        if constexpr (std::is_integral_v<P>) {
            const auto rounded = [&](long double v) {
                constexpr long double kLeast = std::numeric_limits<P>::min(), kMost = std::numeric_limits<P>::max();
                return std::fmin(kMost, std::fmax(kLeast, std::nearbyint(std::ldexp(v, -shift))));
            };
            good = value >= rounded(sum.parts[i] - error) && value <= rounded(sum.parts[i] + error);
        } else {
            const long double last = std::numeric_limits<P>::epsilon() * std::abs(sum.parts[i]);
            good = std::abs(value - sum.parts[i]) <= error + last;
        }
        if (!good) {
            return testing::AssertionFailure()
                   << "part " << i << " is " << value << " for " << std::ldexp(sum.parts[i], -shift);
        }
    }
    return testing::AssertionSuccess();
}

// ---- Functions ----

constexpr int kTapsFactor = -5;

} // namespace zvps::test

// The functions of a kind of states, all called alike. FACTOR: of NONE, taps as they are; of FACTOR, taps that come
// with kTapsFactor and go with the scale in use. SCALED functions take a scale factor, PLAIN ones are given one in
// vain.
#define ZVPS_TEST_FIR_TAPS_NONE(NAME, END)                                                                             \
    [](const auto* s, auto* taps, int*) { return zvpsFIRGetTaps##NAME(s, taps); }, zvpsFIRSetTaps##NAME##END
#define ZVPS_TEST_FIR_TAPS_FACTOR(NAME, END)                                                                           \
    zvpsFIRGetTaps##NAME, [](const auto* taps, auto* s) { return zvpsFIRSetTaps##NAME(taps, s, kTapsFactor); }
#define ZVPS_TEST_FIR_TAPS_FLOAT(NAME, END) zvpsFIRGetTaps##NAME, zvpsFIRSetTaps##NAME##END
#define ZVPS_TEST_FIR_PAST(NAME) zvpsFIRGetDlyLine##NAME, zvpsFIRSetDlyLine##NAME
#define ZVPS_TEST_FIR_RUN_SCALED(NAME) zvpsFIR##NAME##_Sfs, zvpsFIR##NAME##_ISfs, zvpsFIROne##NAME##_Sfs
#define ZVPS_TEST_FIR_RUN_PLAIN(NAME)                                                                                  \
    [](const auto* src, auto* dst, int n, auto* s, int) { return zvpsFIR##NAME(src, dst, n, s); },                     \
        [](auto* srcDst, int n, auto* s, int) { return zvpsFIR##NAME##_I(srcDst, n, s); },                             \
        [](auto src, auto* dst, auto* s, int) { return zvpsFIROne##NAME(src, dst, s); }
