#include "vector/initialisation.table.hpp"

#include "core/simd.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

template <class T>
void fill(const T* pair, T* dst, size_t n) {
    const auto value = [](auto, auto v) { return v; };
    map<2>(value, dst, n, Constant<T>{pair});
}

} // namespace

extern const InitialisationKernels initialisationKernels;
const InitialisationKernels initialisationKernels = {fill<uint16_t>, fill<uint32_t>, fill<uint64_t>};

} // namespace zvps::ZVPS_LEVEL
