// Kernels of two operands, stamped from an operation and the sources of its operands.
#pragma once

#include "core/rounding.hpp"
#include "core/scaled.hpp"

namespace zvps::ZVPS_LEVEL {

// How a result is scaled. An operation `Op` of integers offers exact(d, a, b), the saturated result; halved(d, a, b), one
// place right; down(d, a, b, shift); and kLastShift. Larger shifts give zeros.
enum class Scaling { exact, halved, down, up };

template <class Op, Scaling scaling>
struct Scaled {
    int shift;

    template <class D, class A, class B>
    HWY_INLINE auto operator()(D d, A a, B b) const {
        if constexpr (scaling == Scaling::exact) return Op::exact(d, a, b);
        if constexpr (scaling == Scaling::halved) return Op::halved(d, a, b);
        if constexpr (scaling == Scaling::down) return Op::down(d, a, b, shift);
        if constexpr (scaling == Scaling::up) return saturatedShiftLeft(d, Op::exact(d, a, b), shift);
    }
};

template <class Op, Scaling scaling, class SourceA, class SourceB, class A, class B, class D>
void binaryKernel(const A* a, const B* b, D* dst, size_t n, int shift) {
    const Scaled<Op, scaling> op{shift};
    map<Op::kLanesAPart>(op, dst, n, SourceA{a}, SourceB{b});
}

template <class Op, class SourceA, class SourceB, class A, class B, class D>
constexpr ScaledKernels<A, B, D> scaledKernels() {
    return {
        binaryKernel<Op, Scaling::exact, SourceA, SourceB, A, B, D>,
        binaryKernel<Op, Scaling::halved, SourceA, SourceB, A, B, D>,
        binaryKernel<Op, Scaling::down, SourceA, SourceB, A, B, D>,
        binaryKernel<Op, Scaling::up, SourceA, SourceB, A, B, D>,
        Op::kLastShift,
    };
}

} // namespace zvps::ZVPS_LEVEL
