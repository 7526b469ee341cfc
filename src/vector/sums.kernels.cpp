#include "vector/sums.hpp"

#include "vector/sums.table.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

// Sums whose result type holds, or saturates, the exact sum: operands widened to it.
template <class T>
struct PlainAdd {
    static constexpr size_t kPeriod = 1;
    static constexpr bool kLight = true;

    template <class D, class A, class B>
    static HWY_INLINE auto exact(D d, A a, B b) {
        if constexpr (std::is_floating_point_v<T>) {
            return hn::Add(widened(d, a), widened(d, b));
        } else {
            return saturatedAdd(d, widened(d, a), widened(d, b));
        }
    }
};

template <class T>
struct PlainSub {
    static constexpr size_t kPeriod = 1;
    static constexpr bool kLight = true;

    template <class D, class A, class B>
    static HWY_INLINE auto exact(D d, A a, B b) {
        return hn::Sub(widened(d, b), widened(d, a));
    }
};

struct Absolute {
    static constexpr bool kLight = true;

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v) const {
        using T = Element<D>;
        if constexpr (std::is_floating_point_v<T>) {
            return hn::Abs(v);
        } else {
            return hn::Abs(hn::Max(v, hn::Set(d, static_cast<T>(-std::numeric_limits<T>::max()))));
        }
    }
};

template <class T>
ZvpStatus absolute(const T* src, T* dst, size_t n) {
    Absolute op;
    map(op, dst, n, Vector<T>{src});
    return zvpStsOk;
}

} // namespace

extern const SumKernels sumKernels;
const SumKernels sumKernels = {
#define ZVPS_KERNELS(slot, op, source1, source2, type)                                                                 \
    binaryKernels<Use::store, op<type>, source1<type>, source2<type>, source1##Argument<type>,                         \
                  source2##Argument<type>, type>(),
    ZVPS_SCALED_SUMS(ZVPS_KERNELS)
#undef ZVPS_KERNELS
#define ZVPS_KERNEL(slot, op, source1, source2, type1, type2, result)                                                  \
    binaryKernel<Use::store, Plain##op<result>, Scaling::exact, source1<type1>, source2<type2>,                        \
                 source1##Argument<type1>, source2##Argument<type2>, result>,
        ZVPS_PLAIN_SUMS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
#define ZVPS_KERNEL(slot, type) absolute<type>,
            ZVPS_ABSOLUTES(ZVPS_KERNEL)
#undef ZVPS_KERNEL
};

} // namespace zvps::ZVPS_LEVEL
