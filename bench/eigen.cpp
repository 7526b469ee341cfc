#include "peers.hpp"

#include "zvps/types.h"

#include <Eigen/Core>

#include <complex>

namespace eigen {
namespace {

template <class T>
struct ScalarOf {
    using Type = T;
};
template <>
struct ScalarOf<Zvp32fc> {
    using Type = std::complex<float>;
};
template <class T>
using Scalar = typename ScalarOf<T>::Type;

template <class T>
using Array = Eigen::Array<Scalar<T>, Eigen::Dynamic, 1>;

template <class T>
auto map(const T* p, int n) {
    return Eigen::Map<const Array<T>>(reinterpret_cast<const Scalar<T>*>(p), n);
}
template <class T>
auto map(T* p, int n) {
    return Eigen::Map<Array<T>>(reinterpret_cast<Scalar<T>*>(p), n);
}
template <class T>
T scalar(T val) {
    return val;
}
std::complex<float> scalar(Zvp32fc val) {
    return {val.re, val.im};
}

} // namespace

template <class T>
void add(const T* a, const T* b, T* dst, int n) {
    map(dst, n) = map(a, n) + map(b, n);
}
template <class T>
void subtract(const T* a, const T* b, T* dst, int n) {
    map(dst, n) = map(b, n) - map(a, n);
}
template <class T>
void multiply(const T* a, const T* b, T* dst, int n) {
    map(dst, n) = map(a, n) * map(b, n);
}
template <class T>
void divide(const T* a, const T* b, T* dst, int n) {
    map(dst, n) = map(b, n) / map(a, n);
}
template <class T>
void addConstant(const T* a, T val, T* dst, int n) {
    map(dst, n) = map(a, n) + scalar(val);
}
template <class T>
void multiplyConstant(const T* a, T val, T* dst, int n) {
    map(dst, n) = map(a, n) * scalar(val);
}
template <class T>
void addProduct(const T* a, const T* b, T* dst, int n) {
    map(dst, n) += map(a, n) * map(b, n);
}
template <class T>
void absolute(const T* a, T* dst, int n) {
    map(dst, n) = map(a, n).abs();
}
// Lag by lag, as dot products, of which the first operand is conjugated.
template <class T>
void autoCorrelate(const T* a, int n, T* dst, int lags) {
    for (int k = 0; k < lags; ++k)
        map(dst, lags)[k] = map(a, n - k).matrix().dot(map(a + k, n - k).matrix());
}

#define EIGEN_FLOATING(T)                                                                                              \
    template void add(const T*, const T*, T*, int);                                                                    \
    template void subtract(const T*, const T*, T*, int);                                                               \
    template void multiply(const T*, const T*, T*, int);                                                               \
    template void divide(const T*, const T*, T*, int);                                                                 \
    template void addConstant(const T*, T, T*, int);                                                                   \
    template void multiplyConstant(const T*, T, T*, int);                                                              \
    template void addProduct(const T*, const T*, T*, int);                                                             \
    template void autoCorrelate(const T*, int, T*, int);
EIGEN_FLOATING(Zvp32f)
EIGEN_FLOATING(Zvp64f)
EIGEN_FLOATING(Zvp32fc)
template void absolute(const Zvp32f*, Zvp32f*, int);
template void absolute(const Zvp64f*, Zvp64f*, int);

} // namespace eigen
