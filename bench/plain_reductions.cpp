#include "reductions.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <type_traits>

namespace plain {
namespace {

template <class A, class Value>
A total(int n, Value value) {
    A result = 0;
    for (int i = 0; i < n; ++i)
        result += value(i);
    return result;
}

template <class A, class Value>
A largest(int n, Value value) {
    A result = 0;
    for (int i = 0; i < n; ++i)
        result = std::max<A>(result, value(i));
    return result;
}

// The type of a difference, and of products of 16-bit integers, which fit 32 bits.
template <class A, class T>
using Wide = std::conditional_t<sizeof(T) == 2, int, std::conditional_t<std::is_integral_v<T>, A, T>>;

template <class A>
A magnitude(A x) {
    return std::abs(x);
}

} // namespace

template <class A, class T>
A sum(const T* a, int n) {
    return total<A>(n, [=](int i) { return static_cast<A>(a[i]); });
}
template <class A, class T>
Range<A> meanStdDev(const T* a, int n) {
    A sum = 0, squares = 0;
    for (int i = 0; i < n; ++i) {
        const A x = a[i];
        sum += x;
        squares += x * x;
    }
    const A count = n;
    return {sum / count, std::sqrt((count * squares - sum * sum) / (count * (count - 1)))};
}
template <class A, class T>
A normInf(const T* a, int n) {
    return largest<A>(n, [=](int i) { return magnitude<Wide<A, T>>(a[i]); });
}
template <class A, class T>
A normL1(const T* a, int n) {
    return total<A>(n, [=](int i) { return static_cast<A>(magnitude<Wide<A, T>>(a[i])); });
}
template <class A, class T>
A normL2(const T* a, int n) {
    return static_cast<A>(std::sqrt(total<A>(n, [=](int i) {
        if constexpr (std::is_integral_v<T>) return static_cast<A>(Wide<A, T>{a[i]} * a[i]);
        return static_cast<A>(a[i]) * static_cast<A>(a[i]);
    })));
}
template <class A, class T>
A normDiffInf(const T* a, const T* b, int n) {
    return largest<A>(n, [=](int i) { return magnitude<Wide<A, T>>(Wide<A, T>{a[i]} - b[i]); });
}
template <class A, class T>
A normDiffL1(const T* a, const T* b, int n) {
    return total<A>(n, [=](int i) { return static_cast<A>(magnitude<Wide<A, T>>(Wide<A, T>{a[i]} - b[i])); });
}
template <class A, class T>
A normDiffL2(const T* a, const T* b, int n) {
    return static_cast<A>(std::sqrt(total<A>(n, [=](int i) {
        const A d = static_cast<A>(Wide<A, T>{a[i]} - b[i]);
        return d * d;
    })));
}
template <class A, class T>
A dot(const T* a, const T* b, int n) {
    return total<A>(n, [=](int i) {
        if constexpr (sizeof(T) == 2) return static_cast<A>(a[i] * b[i]);
        return static_cast<A>(a[i]) * static_cast<A>(b[i]);
    });
}
template <class A, class T>
Range<A> sumC(const T* a, int n) {
    A re = 0, im = 0;
    for (int i = 0; i < n; ++i) {
        re += a[2 * i];
        im += a[2 * i + 1];
    }
    return {re, im};
}
template <class A, class T>
A normInfC(const T* a, int n) {
    return std::sqrt(largest<A>(n, [=](int i) {
        const A re = a[2 * i], im = a[2 * i + 1];
        return re * re + im * im;
    }));
}
template <class A, class T>
A normL1C(const T* a, int n) {
    return total<A>(n, [=](int i) {
        const A re = a[2 * i], im = a[2 * i + 1];
        return std::sqrt(re * re + im * im);
    });
}
template <class A, class T>
A normDiffInfC(const T* a, const T* b, int n) {
    return std::sqrt(largest<A>(n, [=](int i) {
        const A re = a[2 * i] - b[2 * i], im = a[2 * i + 1] - b[2 * i + 1];
        return re * re + im * im;
    }));
}
template <class A, class T>
A normDiffL1C(const T* a, const T* b, int n) {
    return total<A>(n, [=](int i) {
        const A re = A{a[2 * i]} - b[2 * i], im = A{a[2 * i + 1]} - b[2 * i + 1];
        return std::sqrt(re * re + im * im);
    });
}
template <class A, class T>
Range<A> dotC(const T* a, const T* b, int n) {
    A re = 0, im = 0;
    for (int i = 0; i < n; ++i) {
        const A ar = a[2 * i], ai = a[2 * i + 1], br = b[2 * i], bi = b[2 * i + 1];
        re += ar * br - ai * bi;
        im += ar * bi + ai * br;
    }
    return {re, im};
}
template <class T>
T min(const T* a, int n) {
    T result = a[0];
    for (int i = 1; i < n; ++i)
        result = std::min(result, a[i]);
    return result;
}
template <class T>
T max(const T* a, int n) {
    T result = a[0];
    for (int i = 1; i < n; ++i)
        result = std::max(result, a[i]);
    return result;
}
template <class T>
Range<T> minMax(const T* a, int n) {
    Range<T> result = {a[0], a[0]};
    for (int i = 1; i < n; ++i) {
        result.min = std::min(result.min, a[i]);
        result.max = std::max(result.max, a[i]);
    }
    return result;
}
template <class T>
Place<T> minIndex(const T* a, int n) {
    Place<T> result = {a[0], 0};
    for (int i = 1; i < n; ++i)
        if (a[i] < result.value) result = {a[i], i};
    return result;
}
template <class T>
Place<T> maxIndex(const T* a, int n) {
    Place<T> result = {a[0], 0};
    for (int i = 1; i < n; ++i)
        if (a[i] > result.value) result = {a[i], i};
    return result;
}
template <class T>
void minEvery(const T* __restrict a, T* __restrict dst, int n) {
    for (int i = 0; i < n; ++i)
        dst[i] = a[i] < dst[i] ? a[i] : dst[i];
}
template <class A, class T>
A sumLn(const T* a, int n) {
    return static_cast<A>(total<double>(n, [=](int i) { return std::log(static_cast<double>(a[i])); }));
}
int countInRange(const Zvp32s* a, int n, Zvp32s lower, Zvp32s upper) {
    return total<int>(n, [=](int i) { return a[i] > lower && a[i] < upper; });
}

INSTANTIATE_REDUCTIONS

} // namespace plain
