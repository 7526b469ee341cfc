#include "vector/initialisation.table.hpp"

#include "core/simd.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

struct Unchanged {
    static constexpr bool kLight = true;

    template <class D, class V>
    HWY_INLINE V operator()(D, V v) const {
        return v;
    }
};

template <class T>
ZvpStatus fill(Pair<T> values, T* dst, size_t n) {
    Unchanged op;
    map(op, dst, n, Constant<T>{values});
    return zvpStsOk;
}

} // namespace

extern const InitialisationKernels initialisationKernels;
const InitialisationKernels initialisationKernels = {fill<uint16_t>, fill<uint32_t>, fill<uint64_t>};

} // namespace zvps::ZVPS_LEVEL
