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
inline constexpr bool hasRoom = false;
template <class Op>
inline constexpr bool hasRoom<Op, std::void_t<decltype(Op::kRoomUpTo)>> = (Op::kRoomUpTo > 1);

// What becomes of the results: they replace the destination, which may also be the operation's third operand.
enum class Use { store, accumulate };

template <Use use, class Op, Scaling scaling, class SourceA, class SourceB, class A, class B, class D>
ZvpStatus binaryKernel(A a, B b, D* dst, size_t n, int shift) {
    if constexpr (scaling == Scaling::down && hasRoom<Op>) {
        if (shift <= Op::kRoomUpTo) {
            return binaryKernel<use, Op, Scaling::downInRoom, SourceA, SourceB>(a, b, dst, n, shift);
        }
    }
    Scaled<Op, scaling> op{shift};
    if constexpr (use == Use::accumulate) {
        map<Op::kPeriod>(op, dst, n, SourceA{a}, SourceB{b}, Vector<D>{dst});
    } else {
        map<Op::kPeriod>(op, dst, n, SourceA{a}, SourceB{b});
    }
    return zvpStsOk;
}

template <Use use, class Op, class SourceA, class SourceB, class A, class B, class D>
constexpr ScaledKernels<A, B, D> binaryKernels() {
    return {
        binaryKernel<use, Op, Scaling::exact, SourceA, SourceB, A, B, D>,
        binaryKernel<use, Op, Scaling::halved, SourceA, SourceB, A, B, D>,
        binaryKernel<use, Op, Scaling::down, SourceA, SourceB, A, B, D>,
        binaryKernel<use, Op, Scaling::up, SourceA, SourceB, A, B, D>,
        Op::kLastShift,
    };
}

} // namespace zvps::ZVPS_LEVEL
