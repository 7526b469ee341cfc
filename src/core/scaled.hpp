// Kernels of integer results with a scale factor: which one an entry calls, and with what shift.
#pragma once

#include <cstddef>

namespace zvps {

// A kernel of two operands. `shift` is the number of places, for the kernels that shift.
template <class A, class B, class D>
using BinaryKernel = void (*)(const A* a, const B* b, D* dst, size_t n, int shift);

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
