#include "transforms/dct.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

template <class T, DctDirection direction, size_t order>
void fixed(const T* src, T* dst, const DctSpec<T>& spec) {
    constexpr size_t N = size_t{1} << order;
    if constexpr (N == 1) {
        dst[0] = src[0];
    } else {
        matrixDct<direction>(src, dst, spec.table, N);
    }
}

template <class T, DctDirection direction>
void matrix(const T* src, T* dst, const DctSpec<T>& spec) {
    matrixDct<direction>(src, dst, spec.table, static_cast<size_t>(spec.length));
}

template <class T, DctDirection direction>
void composite(const T* src, T* dst, const DctSpec<T>& spec) {
    CompositeDct<T> dct(spec);
    if constexpr (direction == kDctForward) {
        toDftOrder(src, dct.values, dct.n);
        dct.transformColumns();
        dct.transformRows();
        turnForward(dct.bins(), dst, dct.n, spec.twiddles);
    } else {
        turnBack(src, dct.bins(), dct.n, spec.twiddles);
        dct.inverseTransformRows();
        dct.inverseTransformColumns();
        fromDftOrder(dct.values, dst, dct.n);
    }
}

template <class T, DctDirection direction>
void reorder(const T* src, T* dst, size_t n) {
    if constexpr (direction == kDctForward) {
        toDftOrder(src, dst, n);
    } else {
        fromDftOrder(src, dst, n);
    }
}

template <class T>
void turn(const T* src, T* dst, size_t n, const T* twiddles) {
    turnForward(PairedBins<const T*>{src}, dst, n, twiddles);
}
template <class T>
void inverseTurn(const T* src, T* dst, size_t n, const T* twiddles) {
    turnBack(src, PairedBins<T*>{dst}, n, twiddles);
}

} // namespace

#define ZVPS_FIXED(...)                                                                                                \
    {                                                                                                                  \
        fixed<__VA_ARGS__, 0>, fixed<__VA_ARGS__, 1>, fixed<__VA_ARGS__, 2>, fixed<__VA_ARGS__, 3>,                    \
            fixed<__VA_ARGS__, 4>, fixed<__VA_ARGS__, 5>,                                                              \
    }
#define ZVPS_BOTH(f, T)                                                                                                \
    { f<T, kDctForward>, f<T, kDctInverse> }
#define ZVPS_DCT_KERNELS(T)                                                                                            \
    {                                                                                                                  \
        {ZVPS_FIXED(T, kDctForward), ZVPS_FIXED(T, kDctInverse)}, ZVPS_BOTH(matrix, T), ZVPS_BOTH(composite, T),       \
            ZVPS_BOTH(reorder, T), {turn<T>, inverseTurn<T>},                                                          \
    }

extern const DctKernels<float> dct32fKernels;
const DctKernels<float> dct32fKernels = ZVPS_DCT_KERNELS(float);
extern const DctKernels<double> dct64fKernels;
const DctKernels<double> dct64fKernels = ZVPS_DCT_KERNELS(double);

} // namespace zvps::ZVPS_LEVEL
