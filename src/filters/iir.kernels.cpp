#include "filters/iir_biquads.hpp"
#include "filters/iir_order.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

template <class T, size_t kParts>
void cascade(const T* src, T* dst, size_t n, BiquadCascade<T>& cascade) {
    if constexpr (kParts == 1) {
        biquads(src, dst, n, cascade);
    } else {
        plainBiquads<T, kParts>(src, dst, n, cascade);
    }
}

} // namespace

extern const RecursiveKernels recursiveKernels;
const RecursiveKernels recursiveKernels = {
#define ZVPS_KERNEL(slot, type, parts) {iirOrder<type, parts>, cascade<type, parts>},
    ZVPS_IIRS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
        directForm1<Zvp32f>,
    directForm1<Zvp64f>,
};

} // namespace zvps::ZVPS_LEVEL
