#include "vector/products.hpp"

#include "vector/products.table.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

// A product of two floats is exact in double, and so is its scaling; it is rounded once, to nearest, ties to even.
struct MulTo16s {
    double scale;

    template <class D, class V>
    HWY_INLINE auto operator()(D d, V a, V b) const {
        constexpr size_t kHalf = hn::MaxLanes(d) / 2;
        const Lanes<float, kHalf> half;
        const auto lower = scaled(hn::LowerHalf(half, a), hn::LowerHalf(half, b));
        const auto upper = scaled(hn::UpperHalf(half, a), hn::UpperHalf(half, b));
        return hn::DemoteTo(d, hn::Combine(Lanes<int32_t, 2 * kHalf>(), upper, lower));
    }

  private:
    template <class V>
    HWY_INLINE auto scaled(V a, V b) const {
        constexpr size_t kLanes = hn::MaxLanes(hn::DFromV<V>());
        const Lanes<double, kLanes> d;
        const auto product = hn::Mul(hn::Mul(hn::PromoteTo(d, a), hn::PromoteTo(d, b)), hn::Set(d, scale));
        const auto number = hn::IfThenZeroElse(hn::IsNaN(product), product);
        const auto limited = hn::Min(hn::Max(number, hn::Set(d, -32768.0)), hn::Set(d, 32767.0));
        return hn::DemoteTo(Lanes<int32_t, kLanes>(), hn::Round(limited));
    }
};

ZvpStatus mulC_32f16s(const float* src, Pair<float> val, int16_t* dst, size_t n, int scaleFactor) {
    MulTo16s op{inversePower<double>(scaleFactor)};
    map(op, dst, n, Vector<float>{src}, Constant<float>{val});
    return zvpStsOk;
}

__extension__ typedef __int128 Int128;

constexpr int64_t kMost = std::numeric_limits<int64_t>::max();
constexpr int64_t kLeast = std::numeric_limits<int64_t>::min();

HWY_INLINE int64_t saturated(Int128 v) {
    return v > kMost ? kMost : v < kLeast ? kLeast : static_cast<int64_t>(v);
}

// No processor has vectors of 128-bit products; its scalar multiplication gives them at one a cycle.
ZvpStatus mulC_64s(int64_t multiplier, int64_t* dst, size_t n, int64_t shift) {
    constexpr int64_t kLastShift = 126; // the largest product, 2^126, is a tie one place further
    if (shift > kLastShift) {
        for (size_t i = 0; i < n; ++i)
            dst[i] = 0;
    } else if (shift > 0) {
        const Int128 bias = (Int128{1} << (shift - 1)) - 1;
        for (size_t i = 0; i < n; ++i) {
            const Int128 product = Int128{dst[i]} * multiplier;
            dst[i] = saturated((product + bias + ((product >> shift) & 1)) >> shift);
        }
    } else {
        const int places = shift < -63 ? 63 : static_cast<int>(-shift);
        const Int128 most = kMost >> places;
        const Int128 least = places == 63 && shift < -63 ? 0 : kLeast >> places;
        for (size_t i = 0; i < n; ++i) {
            const Int128 product = Int128{dst[i]} * multiplier;
            dst[i] = product > most    ? kMost
                     : product < least ? kLeast
                                       : static_cast<int64_t>(static_cast<uint64_t>(product) << places);
        }
    }
    return zvpStsOk;
}

} // namespace

extern const ProductKernels productKernels;
const ProductKernels productKernels = {
#define ZVPS_KERNELS(slot, op, source1, source2, type1, type2, result)                                                 \
    binaryKernels<Use::store, op, source1<type1>, source2<type2>, source1##Argument<type1>, source2##Argument<type2>,  \
                  result>(),
    ZVPS_SCALED_PRODUCTS(ZVPS_KERNELS)
#undef ZVPS_KERNELS
#define ZVPS_KERNELS(slot, op, source1, source2, type1, type2, result)                                                 \
    binaryKernels<Use::accumulate, op, source1<type1>, source2<type2>, source1##Argument<type1>,                       \
                  source2##Argument<type2>, result>(),
        ZVPS_SCALED_ACCUMULATIONS(ZVPS_KERNELS)
#undef ZVPS_KERNELS
#define ZVPS_KERNEL(slot, op, source1, source2, type1, type2, result)                                                  \
    binaryKernel<Use::store, op, Scaling::exact, source1<type1>, source2<type2>, source1##Argument<type1>,             \
                 source2##Argument<type2>, result>,
            ZVPS_PLAIN_PRODUCTS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
#define ZVPS_KERNEL(slot, op, source1, source2, type1, type2, result)                                                  \
    binaryKernel<Use::accumulate, op, Scaling::exact, source1<type1>, source2<type2>, source1##Argument<type1>,        \
                 source2##Argument<type2>, result>,
                ZVPS_PLAIN_ACCUMULATIONS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
                    mulC_32f16s,
    mulC_64s,
};

} // namespace zvps::ZVPS_LEVEL
