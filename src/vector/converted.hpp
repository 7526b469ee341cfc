// Vectors converted to floating point for what computes in it, and results converted back: scaled by 2^-scaleFactor,
// rounded to nearest even and saturated.
#pragma once

#include "zvps/convert.h"

namespace zvps {

inline void toFloats(const Zvp16s* src, Zvp32f* dst, int n) {
    zvpsConvert_16s32f(src, dst, n);
}
inline void toFloats(const Zvp16s* src, Zvp64f* dst, int n) {
    zvpsConvert_16s64f_Sfs(src, dst, n, 0);
}
inline void toFloats(const Zvp32s* src, Zvp32f* dst, int n) {
    zvpsConvert_32s32f(src, dst, n);
}
inline void toFloats(const Zvp32s* src, Zvp64f* dst, int n) {
    zvpsConvert_32s64f(src, dst, n);
}
inline void toFloats(const Zvp32f* src, Zvp64f* dst, int n) {
    zvpsConvert_32f64f(src, dst, n);
}
inline void fromFloats(const Zvp32f* src, Zvp16s* dst, int n, int scaleFactor) {
    zvpsConvert_32f16s_Sfs(src, dst, n, zvpRndNear, scaleFactor);
}
inline void fromFloats(const Zvp32f* src, Zvp32s* dst, int n, int scaleFactor) {
    zvpsConvert_32f32s_Sfs(src, dst, n, zvpRndNear, scaleFactor);
}
inline void fromFloats(const Zvp64f* src, Zvp16s* dst, int n, int scaleFactor) {
    zvpsConvert_64f16s_Sfs(src, dst, n, zvpRndNear, scaleFactor);
}
inline void fromFloats(const Zvp64f* src, Zvp32s* dst, int n, int scaleFactor) {
    zvpsConvert_64f32s_Sfs(src, dst, n, zvpRndNear, scaleFactor);
}
inline void fromFloats(const Zvp64f* src, Zvp32f* dst, int n, int) {
    zvpsConvert_64f32f(src, dst, n);
}

} // namespace zvps
