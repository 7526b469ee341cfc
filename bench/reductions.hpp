// The peers of the reductions that are compiled here: for each namespace the same functions. A is the type in which
// values are added; sums of single precision that the library adds in double, the peers add in double too.
#pragma once

#include "zvps/types.h"

template <class T>
struct Place {
    T value;
    int index;
};
template <class T>
struct Range {
    T min, max;
};

// Real elements; those marked C are of complex ones, given as their parts.
#define REDUCTIONS                                                                                                     \
    template <class A, class T>                                                                                        \
    A sum(const T* a, int n);                                                                                          \
    template <class A, class T>                                                                                        \
    Range<A> meanStdDev(const T* a, int n);                                                                            \
    template <class A, class T>                                                                                        \
    A normInf(const T* a, int n);                                                                                      \
    template <class A, class T>                                                                                        \
    A normL1(const T* a, int n);                                                                                       \
    template <class A, class T>                                                                                        \
    A normL2(const T* a, int n);                                                                                       \
    template <class A, class T>                                                                                        \
    A normDiffInf(const T* a, const T* b, int n);                                                                      \
    template <class A, class T>                                                                                        \
    A normDiffL1(const T* a, const T* b, int n);                                                                       \
    template <class A, class T>                                                                                        \
    A normDiffL2(const T* a, const T* b, int n);                                                                       \
    template <class A, class T>                                                                                        \
    A dot(const T* a, const T* b, int n);                                                                              \
    template <class A, class T>                                                                                        \
    Range<A> sumC(const T* a, int n);                                                                                  \
    template <class A, class T>                                                                                        \
    A normInfC(const T* a, int n);                                                                                     \
    template <class A, class T>                                                                                        \
    A normL1C(const T* a, int n);                                                                                      \
    template <class A, class T>                                                                                        \
    A normDiffInfC(const T* a, const T* b, int n);                                                                     \
    template <class A, class T>                                                                                        \
    A normDiffL1C(const T* a, const T* b, int n);                                                                      \
    template <class A, class T>                                                                                        \
    Range<A> dotC(const T* a, const T* b, int n);                                                                      \
    template <class T>                                                                                                 \
    T min(const T* a, int n);                                                                                          \
    template <class T>                                                                                                 \
    T max(const T* a, int n);                                                                                          \
    template <class T>                                                                                                 \
    Range<T> minMax(const T* a, int n);                                                                                \
    template <class T>                                                                                                 \
    Place<T> minIndex(const T* a, int n);                                                                              \
    template <class T>                                                                                                 \
    Place<T> maxIndex(const T* a, int n);                                                                              \
    template <class T>                                                                                                 \
    void minEvery(const T* a, T* dst, int n);                                                                          \
    template <class A, class T>                                                                                        \
    A sumLn(const T* a, int n);                                                                                        \
    int countInRange(const Zvp32s* a, int n, Zvp32s lower, Zvp32s upper);

namespace plain {
REDUCTIONS
}
namespace eigen {
REDUCTIONS
}

// X(types of vectors with their types of sums), where the library has the function.
#define INSTANTIATE_REDUCTIONS                                                                                         \
    template double sum(const Zvp32f*, int);                                                                           \
    template double sum(const Zvp64f*, int);                                                                           \
    template Zvp64s sum(const Zvp16s*, int);                                                                           \
    template Zvp64s sum(const Zvp32s*, int);                                                                           \
    template Range<double> sumC(const Zvp32f*, int);                                                                   \
    template Range<double> sumC(const Zvp64f*, int);                                                                   \
    template Range<Zvp64s> sumC(const Zvp16s*, int);                                                                   \
    template Range<double> meanStdDev(const Zvp32f*, int);                                                             \
    template Range<double> meanStdDev(const Zvp64f*, int);                                                             \
    INSTANTIATE_NORMS(normInf, Zvp32f, Zvp32f)                                                                         \
    INSTANTIATE_NORMS(normInf, Zvp64f, Zvp64f)                                                                         \
    INSTANTIATE_NORMS(normInf, int, Zvp16s)                                                                            \
    INSTANTIATE_NORMS(normL1, Zvp64f, Zvp32f)                                                                          \
    INSTANTIATE_NORMS(normL1, Zvp64f, Zvp64f)                                                                          \
    INSTANTIATE_NORMS(normL1, Zvp64s, Zvp16s)                                                                          \
    INSTANTIATE_NORMS(normL2, Zvp32f, Zvp32f)                                                                          \
    INSTANTIATE_NORMS(normL2, Zvp64f, Zvp32f)                                                                          \
    INSTANTIATE_NORMS(normL2, Zvp64f, Zvp64f)                                                                          \
    INSTANTIATE_NORMS(normL2, Zvp64s, Zvp16s)                                                                          \
    INSTANTIATE_DIFFERENCES(normDiffInf, Zvp32f, Zvp32f)                                                               \
    INSTANTIATE_DIFFERENCES(normDiffInf, Zvp64f, Zvp64f)                                                               \
    INSTANTIATE_DIFFERENCES(normDiffInf, int, Zvp16s)                                                                  \
    INSTANTIATE_DIFFERENCES(normDiffL1, Zvp64f, Zvp32f)                                                                \
    INSTANTIATE_DIFFERENCES(normDiffL1, Zvp64f, Zvp64f)                                                                \
    INSTANTIATE_DIFFERENCES(normDiffL1, Zvp64s, Zvp16s)                                                                \
    INSTANTIATE_DIFFERENCES(normDiffL2, Zvp32f, Zvp32f)                                                                \
    INSTANTIATE_DIFFERENCES(normDiffL2, Zvp64f, Zvp32f)                                                                \
    INSTANTIATE_DIFFERENCES(normDiffL2, Zvp64f, Zvp64f)                                                                \
    INSTANTIATE_DIFFERENCES(normDiffL2, Zvp64s, Zvp16s)                                                                \
    INSTANTIATE_DIFFERENCES(dot, Zvp32f, Zvp32f)                                                                       \
    INSTANTIATE_DIFFERENCES(dot, Zvp64f, Zvp32f)                                                                       \
    INSTANTIATE_DIFFERENCES(dot, Zvp64f, Zvp64f)                                                                       \
    INSTANTIATE_DIFFERENCES(dot, Zvp64s, Zvp16s)                                                                       \
    INSTANTIATE_DIFFERENCES(dot, Zvp64s, Zvp32s)                                                                       \
    INSTANTIATE_NORMS(normInfC, Zvp64f, Zvp32f)                                                                        \
    INSTANTIATE_NORMS(normInfC, Zvp64f, Zvp64f)                                                                        \
    INSTANTIATE_NORMS(normL1C, Zvp64f, Zvp32f)                                                                         \
    INSTANTIATE_NORMS(normL1C, Zvp64f, Zvp64f)                                                                         \
    INSTANTIATE_DIFFERENCES(normDiffInfC, Zvp64f, Zvp32f)                                                              \
    INSTANTIATE_DIFFERENCES(normDiffInfC, Zvp64f, Zvp64f)                                                              \
    INSTANTIATE_DIFFERENCES(normDiffL1C, Zvp64f, Zvp32f)                                                               \
    INSTANTIATE_DIFFERENCES(normDiffL1C, Zvp64f, Zvp64f)                                                               \
    template Range<Zvp32f> dotC(const Zvp32f*, const Zvp32f*, int);                                                    \
    template Range<Zvp64f> dotC(const Zvp32f*, const Zvp32f*, int);                                                    \
    template Range<Zvp64f> dotC(const Zvp64f*, const Zvp64f*, int);                                                    \
    template Range<Zvp64s> dotC(const Zvp16s*, const Zvp16s*, int);                                                    \
    INSTANTIATE_EXTREMES(Zvp8u)                                                                                        \
    INSTANTIATE_EXTREMES(Zvp16s)                                                                                       \
    INSTANTIATE_EXTREMES(Zvp16u)                                                                                       \
    INSTANTIATE_EXTREMES(Zvp32s)                                                                                       \
    INSTANTIATE_EXTREMES(Zvp32u)                                                                                       \
    INSTANTIATE_EXTREMES(Zvp32f)                                                                                       \
    INSTANTIATE_EXTREMES(Zvp64f)                                                                                       \
    template float sumLn(const Zvp16s*, int);                                                                          \
    template float sumLn(const Zvp32f*, int);                                                                          \
    template double sumLn(const Zvp32f*, int);                                                                         \
    template double sumLn(const Zvp64f*, int);
#define INSTANTIATE_NORMS(name, A, T) template A name(const T*, int);
#define INSTANTIATE_DIFFERENCES(name, A, T) template A name(const T*, const T*, int);
#define INSTANTIATE_EXTREMES(T)                                                                                        \
    template T min(const T*, int);                                                                                     \
    template T max(const T*, int);                                                                                     \
    template Range<T> minMax(const T*, int);                                                                           \
    template Place<T> minIndex(const T*, int);                                                                         \
    template Place<T> maxIndex(const T*, int);                                                                         \
    template void minEvery(const T*, T*, int);
