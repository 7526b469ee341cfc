// How entries call kernels of two operands: the operands' types, the status, the kernels of a scale factor.
#pragma once

#include "zvps/status.h"

#include <cstddef>
#include <cstdint>

namespace zvps {

// A constant as kernels take it, by value: the values of even and odd lanes, which for complex data are the parts and
// for real data equal.
template <class T, bool kWide = sizeof(T) == 8>
struct Pair {
    T values[2];
};
// Two of 8 bytes in one register: as two, the compiler would put them together through memory.
template <class T>
struct RegisterOf;
template <>
struct RegisterOf<double> {
    typedef double Type __attribute__((vector_size(16)));
};
template <>
struct RegisterOf<uint64_t> {
    typedef uint64_t Type __attribute__((vector_size(16)));
};
template <class T>
struct Pair<T, true> {
    typename RegisterOf<T>::Type values;
};

template <class T>
inline Pair<T> makePair(T even, T odd) {
    Pair<T> pair;
    pair.values[0] = even;
    pair.values[1] = odd;
    return pair;
}

// The arguments from which a kernel makes its sources of operands of the same names.
template <class T>
using VectorArgument = const T*;
template <class T>
using DivisorsArgument = const T*;
template <class T>
using DuplicatedArgument = const T*;
template <class T>
using ConstantArgument = Pair<T>;

// A kernel of two operands, of the types above. `shift` is the number of places, for the kernels that shift. Kernels
// return the entry's status, so that an entry ends in a jump to its kernel.
template <class A, class B, class D>
using BinaryKernel = ZvpStatus (*)(A a, B b, D* dst, size_t n, int shift);

// The kernels of one operation, told apart by the scale factor.
template <class A, class B, class D>
struct ScaledKernels {
    BinaryKernel<A, B, D> exact;
    BinaryKernel<A, B, D> halved; // one place right
    BinaryKernel<A, B, D> down;   // two to lastShift places right
    BinaryKernel<A, B, D> up;     // places left, any number
    int lastShift;                // beyond it every result rounds to 0
};

} // namespace zvps
