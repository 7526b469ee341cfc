#include "peers.hpp"

#include "zvps/types.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <type_traits>

namespace plain {
namespace {

// Holds a divisor times 2^15 and twice a remainder's magnitude.
template <class T>
using Wide = std::conditional_t<sizeof(T) <= 2 && !std::is_same_v<T, uint16_t>, int32_t, int64_t>;

// dividend / (divisor * 2^scaleFactor), rounded half to even, saturated.
template <class T>
T quotient(T dividend, T divisor, int scaleFactor) {
    using W = Wide<T>;
    using Limits = std::numeric_limits<T>;
    if (divisor == 0) return dividend == 0 ? T{0} : dividend > 0 ? Limits::max() : Limits::min();
    const W den = W{divisor} * (W{1} << scaleFactor);
    const W q = W{dividend} / den;
    const W excess = 2 * std::abs(W{dividend} % den) - std::abs(den);
    const W away = excess > 0 || (excess == 0 && (q & 1) != 0) ? 1 : 0;
    const W rounded = q + ((dividend < 0) != (den < 0) ? -away : away);
    return static_cast<T>(std::min<W>(std::max<W>(rounded, Limits::min()), Limits::max()));
}

} // namespace

template <class T>
void divideScaled(const T* __restrict a, const T* __restrict b, T* __restrict dst, int n, int scaleFactor) {
    for (int i = 0; i < n; ++i)
        dst[i] = quotient(b[i], a[i], scaleFactor);
}
template <class T>
void divideConstantScaled(const T* __restrict a, T val, T* __restrict dst, int n, int scaleFactor) {
    for (int i = 0; i < n; ++i)
        dst[i] = quotient(a[i], val, scaleFactor);
}

template void divideScaled(const Zvp8u*, const Zvp8u*, Zvp8u*, int, int);
template void divideScaled(const Zvp16s*, const Zvp16s*, Zvp16s*, int, int);
template void divideScaled(const Zvp16u*, const Zvp16u*, Zvp16u*, int, int);
template void divideScaled(const Zvp32s*, const Zvp32s*, Zvp32s*, int, int);
template void divideConstantScaled(const Zvp16s*, Zvp16s, Zvp16s*, int, int);

} // namespace plain
