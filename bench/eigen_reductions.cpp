#include "reductions.hpp"

#include <Eigen/Core>

#include <complex>

namespace eigen {
namespace {

template <class T>
auto map(const T* p, int n) {
    return Eigen::Map<const Eigen::Array<T, Eigen::Dynamic, 1>>(p, n);
}
template <class T>
auto complexMap(const T* p, int n) {
    return map(reinterpret_cast<const std::complex<T>*>(p), n);
}
template <class A, class T>
auto values(const T* p, int n) {
    return map(p, n).template cast<A>();
}
template <class A, class T>
auto complexValues(const T* p, int n) {
    return complexMap(p, n).template cast<std::complex<A>>();
}

} // namespace

template <class A, class T>
A sum(const T* a, int n) {
    return values<A>(a, n).sum();
}
template <class A, class T>
Range<A> meanStdDev(const T* a, int n) {
    const A sum = values<A>(a, n).sum(), squares = values<A>(a, n).square().sum(), count = static_cast<A>(n);
    return {sum / count, std::sqrt((count * squares - sum * sum) / (count * (count - 1)))};
}
template <class A, class T>
A normInf(const T* a, int n) {
    return values<A>(a, n).abs().maxCoeff();
}
template <class A, class T>
A normL1(const T* a, int n) {
    return values<A>(a, n).abs().sum();
}
template <class A, class T>
A normL2(const T* a, int n) {
    return static_cast<A>(std::sqrt(values<A>(a, n).square().sum()));
}
template <class A, class T>
A normDiffInf(const T* a, const T* b, int n) {
    return (values<A>(a, n) - values<A>(b, n)).abs().maxCoeff();
}
template <class A, class T>
A normDiffL1(const T* a, const T* b, int n) {
    return (values<A>(a, n) - values<A>(b, n)).abs().sum();
}
template <class A, class T>
A normDiffL2(const T* a, const T* b, int n) {
    return static_cast<A>(std::sqrt((values<A>(a, n) - values<A>(b, n)).square().sum()));
}
template <class A, class T>
A dot(const T* a, const T* b, int n) {
    return (values<A>(a, n) * values<A>(b, n)).sum();
}
template <class A, class T>
Range<A> sumC(const T* a, int n) {
    const std::complex<A> sum = complexValues<A>(a, n).sum();
    return {sum.real(), sum.imag()};
}
template <class A, class T>
A normInfC(const T* a, int n) {
    return std::sqrt(complexValues<A>(a, n).abs2().maxCoeff());
}
template <class A, class T>
A normL1C(const T* a, int n) {
    return complexValues<A>(a, n).abs2().sqrt().sum();
}
template <class A, class T>
A normDiffInfC(const T* a, const T* b, int n) {
    return std::sqrt((complexMap(a, n) - complexMap(b, n)).template cast<std::complex<A>>().abs2().maxCoeff());
}
template <class A, class T>
A normDiffL1C(const T* a, const T* b, int n) {
    return (complexValues<A>(a, n) - complexValues<A>(b, n)).abs2().sqrt().sum();
}
template <class A, class T>
Range<A> dotC(const T* a, const T* b, int n) {
    const std::complex<A> sum = (complexValues<A>(a, n) * complexValues<A>(b, n)).sum();
    return {sum.real(), sum.imag()};
}
template <class T>
T min(const T* a, int n) {
    return map(a, n).minCoeff();
}
template <class T>
T max(const T* a, int n) {
    return map(a, n).maxCoeff();
}
template <class T>
Range<T> minMax(const T* a, int n) {
    return {map(a, n).minCoeff(), map(a, n).maxCoeff()};
}
template <class T>
Place<T> minIndex(const T* a, int n) {
    int index;
    const T value = map(a, n).minCoeff(&index);
    return {value, index};
}
template <class T>
Place<T> maxIndex(const T* a, int n) {
    int index;
    const T value = map(a, n).maxCoeff(&index);
    return {value, index};
}
template <class T>
void minEvery(const T* a, T* dst, int n) {
    Eigen::Map<Eigen::Array<T, Eigen::Dynamic, 1>> target(dst, n);
    target = target.min(map(a, n));
}
template <class A, class T>
A sumLn(const T* a, int n) {
    return static_cast<A>(values<double>(a, n).log().sum());
}
int countInRange(const Zvp32s* a, int n, Zvp32s lower, Zvp32s upper) {
    return static_cast<int>((map(a, n) > lower && map(a, n) < upper).count());
}

INSTANTIATE_REDUCTIONS

} // namespace eigen
