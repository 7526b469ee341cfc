// Integer results: scaled, rounded, saturated.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace zvps {

template <class T>
inline T saturated(int64_t value) {
    using Limits = std::numeric_limits<T>;
    return static_cast<T>(std::clamp<int64_t>(value, Limits::min(), Limits::max()));
}

// value * 2^-scaleFactor, to nearest, ties to even, saturated; any scale factor.
template <class T>
inline T scaled(int64_t value, int scaleFactor) {
    __extension__ typedef __int128 Wide;
    if (scaleFactor == 0) return saturated<T>(value);
    if (scaleFactor > 0) {
        if (scaleFactor > 64) return 0;
        const Wide half = Wide{1} << (scaleFactor - 1);
        const Wide whole = Wide{value} >> scaleFactor;
        return saturated<T>(static_cast<int64_t>((value + half - 1 + (whole & 1)) >> scaleFactor));
    }
    using Limits = std::numeric_limits<T>;
    const Wide shifted = value * (Wide{1} << std::min(-std::max(scaleFactor, -63), 63));
    return static_cast<T>(std::clamp<Wide>(shifted, Limits::min(), Limits::max()));
}

// 2^-scaleFactor, from an exponent field that is limited: 0 from 1023 on, infinite from -1024 on.
inline double scaleOf(int scaleFactor) {
    const int64_t field = std::clamp<int64_t>(int64_t{1023} - scaleFactor, 0, 2047);
    const int64_t bits = field << 52;
    double scale;
    std::memcpy(&scale, &bits, sizeof(scale));
    return scale;
}

// value * scale to nearest, ties to even, saturated; 0 stays 0.
inline int32_t scaledToInteger(double value, double scale) {
    if (value == 0) return 0;
    return static_cast<int32_t>(std::nearbyint(std::clamp(value * scale, -2147483648.0, 2147483647.0)));
}

} // namespace zvps
