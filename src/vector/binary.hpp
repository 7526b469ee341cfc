// Kernels of two operands, stamped from an operation and the sources of its operands.
#pragma once

#include "core/rounding.hpp"
#include "core/scaled.hpp"

namespace zvps::ZVPS_LEVEL {

// How a result is scaled. An operation `Op` of integers offers exact(d, operands...), the saturated result; halved(d,
// operands...), one place right; down(d, shift, operands...); and kLastShift, beyond which every result rounds to 0. It
// may offer downInRoom, which is quicker for shifts up to kRoomUpTo.
enum class Scaling { exact, halved, down, downInRoom, up };

template <class Op, Scaling scaling>
struct Scaled {
    static constexpr bool kLight = scaling == Scaling::exact && isLight<Op>;

    int shift;

    template <class D, class... Operands>
    HWY_INLINE auto operator()(D d, Operands... operands) const {
        if constexpr (scaling == Scaling::exact) return Op::exact(d, operands...);
        if constexpr (scaling == Scaling::halved) return Op::halved(d, operands...);
        if constexpr (scaling == Scaling::down) return Op::down(d, shift, operands...);
        if constexpr (scaling == Scaling::downInRoom) return Op::downInRoom(d, shift, operands...);
        if constexpr (scaling == Scaling::up) return saturatedShiftLeft(d, Op::exact(d, operands...), shift);
    }
};

template <class Op, class = void>
inline constexpr int kRoomUpTo = 0;
template <class Op>
inline constexpr int kRoomUpTo<Op, std::void_t<decltype(Op::kRoomUpTo)>> = Op::kRoomUpTo;

template <class Op, Scaling scaling, class SourceA, class SourceB, class A, class B, class D>
ZvpStatus binaryKernel(A a, B b, D* dst, size_t n, int shift) {
    if constexpr (scaling == Scaling::down && kRoomUpTo < Op >> 1) {
        if (shift <= kRoomUpTo<Op>) return binaryKernel<Op, Scaling::downInRoom, SourceA, SourceB>(a, b, dst, n, shift);
    }
    Scaled<Op, scaling> op{shift};
    map<Op::kPeriod>(op, dst, n, SourceA{a}, SourceB{b});
    return zvpStsOk;
}

// The destination is the third operand as well.
template <class Op, Scaling scaling, class SourceA, class SourceB, class A, class B, class D>
ZvpStatus accumulateKernel(A a, B b, D* dst, size_t n, int shift) {
    if constexpr (scaling == Scaling::down && kRoomUpTo < Op >> 1) {
        if (shift <= kRoomUpTo<Op>)
            return accumulateKernel<Op, Scaling::downInRoom, SourceA, SourceB>(a, b, dst, n, shift);
    }
    Scaled<Op, scaling> op{shift};
    map<Op::kPeriod>(op, dst, n, SourceA{a}, SourceB{b}, Vector<D>{dst});
    return zvpStsOk;
}

template <class Op, class SourceA, class SourceB, class A, class B, class D>
constexpr ScaledKernels<A, B, D> binaryKernels() {
    return {
        binaryKernel<Op, Scaling::exact, SourceA, SourceB, A, B, D>,
        binaryKernel<Op, Scaling::halved, SourceA, SourceB, A, B, D>,
        binaryKernel<Op, Scaling::down, SourceA, SourceB, A, B, D>,
        binaryKernel<Op, Scaling::up, SourceA, SourceB, A, B, D>,
        Op::kLastShift,
    };
}

template <class Op, class SourceA, class SourceB, class A, class B, class D>
constexpr ScaledKernels<A, B, D> accumulateKernels() {
    return {
        accumulateKernel<Op, Scaling::exact, SourceA, SourceB, A, B, D>,
        accumulateKernel<Op, Scaling::halved, SourceA, SourceB, A, B, D>,
        accumulateKernel<Op, Scaling::down, SourceA, SourceB, A, B, D>,
        accumulateKernel<Op, Scaling::up, SourceA, SourceB, A, B, D>,
        Op::kLastShift,
    };
}

} // namespace zvps::ZVPS_LEVEL
