#include "zvps/windows.h"

#include "core/elements.hpp"
#include "core/level.hpp"
#include "signal/windows.table.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <type_traits>

namespace zvps {
namespace {

constexpr double kTwoPi = 6.283185307179586476925286766559;

// Windows with a parameter take it in single precision, Blackman's for double-precision data excepted.
template <class T>
using Alpha = std::conditional_t<std::is_same_v<Part<T>, double>, double, float>;

ZvpStatus checkWindow(const void* src, const void* dst, int len, int least) {
    if (src == nullptr || dst == nullptr) return zvpStsNullPtr;
    return len < least ? zvpStsBadSize : zvpStsOk;
}

template <class T, class Window>
ZvpStatus apply(const WindowSlots<Window>& slots, const T* src, T* dst, int len, const Window& window) {
    return slots.template kernel<T>()(src, dst, static_cast<size_t>(len), window);
}

// Three elements under a window with zero end points: nothing but the middle is left, scaled like any other.
template <class T, class Window>
ZvpStatus applyToMiddle(const WindowSlots<Window>& slots, const T* src, T* dst, const Window& window) {
    dst[0] = dst[2] = T{};
    return apply(slots, src + 1, dst + 1, 1, window);
}

double angleStep(int len) {
    return kTwoPi / (len - 1);
}

double optimalAlpha(int len) {
    const double root = 0.5 / std::cos(kTwoPi / 2 / (len - 1));
    return -(root * root);
}

// ---- Windows of cosines ----

// How the values of h(k) = amplitude cos(k theta) come about.
CosineWindow cosines(double amplitude, double theta) {
    const double cosine = std::cos(theta);
    CosineWindow window{};
    window.start[0] = amplitude;
    window.start[1] = amplitude * cosine;
    window.start[2] = 2 * cosine * window.start[1] - window.start[0];
    window.start[3] = 2 * cosine * window.start[2] - window.start[1];
    window.factor = 2 * std::cos(2 * theta);
    window.chainFrom = SIZE_MAX;
    window.scale = 1;
    return window;
}

// Where a window is applied in single precision, the recurrence may go on in several chains whose rounding errors are
// others: up to the longest length below, the values differ by a unit in the last place (single) at most. That needs
// values that rise from zero at the ends without returning there, and the first of them, small differences of cosines
// near 1, from one chain.
template <class T>
void splitChains(CosineWindow& window, int len) {
    constexpr int kShortest = 64;
    constexpr int kLongest = 1 << 17;
    if (std::is_same_v<Part<T>, double> || len < kShortest || len > kLongest) return;
    const size_t first = std::max(static_cast<size_t>(len) / 128, size_t{1});
    window.chainFrom = (first + kCosineChains - 1) / kCosineChains * kCosineChains;
    // 2 cos(2x) = (2 cos x)^2 - 2: of the rounded factor, whose error the one chain multiplies too.
    window.chainFactor = window.factor;
    for (size_t step = 2; step < kCosineChains; step *= 2) {
        window.chainFactor = window.chainFactor * window.chainFactor - 2;
    }
}

template <class T>
ZvpStatus hann(const T* src, T* dst, int len) {
    if (const ZvpStatus status = checkWindow(src, dst, len, 3)) return status;
    const auto& slots = kernels().windows->raisedCosine;
    if (len == 3) return applyToMiddle(slots, src, dst, CosineWindow{});
    const double theta = angleStep(len);
    CosineWindow window = cosines(0.5, theta);
    window.constant = 0.5;
    splitChains<T>(window, len);
    return apply(slots, src, dst, len, window);
}

template <class T>
ZvpStatus hamming(const T* src, T* dst, int len) {
    if (const ZvpStatus status = checkWindow(src, dst, len, 3)) return status;
    const double theta = angleStep(len);
    CosineWindow window = cosines(0.46, theta);
    window.constant = 0.54;
    splitChains<T>(window, len);
    return apply(kernels().windows->raisedCosine, src, dst, len, window);
}

template <class T>
ZvpStatus blackmanWithStep(const T* src, T* dst, int len, double alpha, double theta, double scale) {
    const auto& slots = kernels().windows->blackman;
    CosineWindow window = cosines(0.5, theta);
    window.constant = 0.5 + alpha;
    window.square = 4 * alpha;
    window.scale = scale;
    if (len == 3) return applyToMiddle(slots, src, dst, window);
    // Beyond the optimum's parameter (as it is in single precision) the values pass through zero.
    constexpr double kMostOptimalAlpha = -0.25; // of infinitely long windows
    const bool rises = alpha >= kMostOptimalAlpha || alpha >= optimalAlpha(len) * (1 + 1e-7);
    if (rises && alpha <= 1) splitChains<T>(window, len);
    return apply(slots, src, dst, len, window);
}

template <class T>
ZvpStatus blackman(const T* src, T* dst, int len, Alpha<T> alpha) {
    if (const ZvpStatus status = checkWindow(src, dst, len, 3)) return status;
    return blackmanWithStep(src, dst, len, alpha, angleStep(len), 1);
}

template <class T>
ZvpStatus blackmanOptimal(const T* src, T* dst, int len) {
    if (len < 4) return zvpStsBadSize;
    return blackman(src, dst, len, static_cast<Alpha<T>>(optimalAlpha(len)));
}

float fromQ15(int value) {
    return static_cast<float>(value) * 0x1p-15F;
}

template <class T>
ZvpStatus blackmanQ15(const T* src, T* dst, int len, int alphaQ15, int scaleFactor = 0) {
    if (const ZvpStatus status = checkWindow(src, dst, len, 3)) return status;
    // Beyond this every value but zero saturates or vanishes.
    constexpr int kMostPlaces = 600;
    const double scale = std::ldexp(1.0, -std::clamp(scaleFactor, -kMostPlaces, kMostPlaces));
    return blackmanWithStep(src, dst, len, fromQ15(alphaQ15), kTwoPi * (1.0 / (len - 1)), scale);
}

// ---- Others ----

template <class T>
ZvpStatus bartlett(const T* src, T* dst, int len) {
    if (const ZvpStatus status = checkWindow(src, dst, len, 3)) return status;
    const auto& slots = kernels().windows->bartlett;
    const BartlettWindow window{2.0 / (len - 1)};
    if (len == 3) return applyToMiddle(slots, src, dst, window);
    return apply(slots, src, dst, len, window);
}

template <size_t count>
double polynomial(const double (&coefficients)[count], double x) {
    double sum = coefficients[count - 1];
    for (size_t i = count - 1; i != 0; --i)
        sum = sum * x + coefficients[i - 1];
    return sum;
}

// I0(x) by which the Kaiser window is normalised.
double kaiserNorm(double x) {
    static constexpr double kSmall[] = {
        0.9999999985, 4.0000001935, 3.9999959541, 1.777809969, 0.4443189384, 0.0713758187, 0.0075942968, 0.0008267816,
    };
    static constexpr double kLarge[] = {
        0.3989422809,  0.0124667783, 0.0017623668,  0.00026,      0.0022585672,  -0.0128314822, 0.0495811118,
        -0.1209940805, 0.1895476618, -0.1867783276, 0.1113315511, -0.0366694767, 0.0051246015,
    };
    if (x < 4) return polynomial(kSmall, x * 0.25 * (x * 0.25));
    return std::exp(x) / std::sqrt(x) * polynomial(kLarge, 4 / x);
}

template <class T>
ZvpStatus kaiser(const T* src, T* dst, int len, float alpha) {
    if (const ZvpStatus status = checkWindow(src, dst, len, 1)) return status;
    constexpr double kMostBeta = 308; // beyond, the exponential comes near its overflow
    const double beta = std::abs(static_cast<double>(alpha * static_cast<float>(len - 1))) * 0.5;
    if (beta > kMostBeta) return zvpStsBadKaiserAlpha;
    if (len == 1) {
        *dst = *src;
        return zvpStsOk;
    }
    return apply(kernels().windows->kaiser, src, dst, len, KaiserWindow{alpha, 1 / kaiserNorm(beta)});
}

} // namespace
} // namespace zvps

// ---- Entries ----

#define ZVPS_WINDOW(NAME, TYPE, CALL)                                                                                  \
    ZvpStatus zvpsWin##NAME##_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE* pDst, int len) {                                \
        return zvps::CALL(pSrc, pDst, len);                                                                            \
    }                                                                                                                  \
    ZvpStatus zvpsWin##NAME##_##TYPE##_I(Zvp##TYPE* pSrcDst, int len) {                                                \
        return zvps::CALL<Zvp##TYPE>(pSrcDst, pSrcDst, len);                                                           \
    }

#define ZVPS_WINDOW_ALPHA(NAME, TYPE, ALPHA, PARAMETER, CALL)                                                          \
    ZvpStatus zvpsWin##NAME##_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE* pDst, int len, ALPHA PARAMETER) {               \
        return zvps::CALL(pSrc, pDst, len, PARAMETER);                                                                 \
    }                                                                                                                  \
    ZvpStatus zvpsWin##NAME##_##TYPE##_I(Zvp##TYPE* pSrcDst, int len, ALPHA PARAMETER) {                               \
        return zvps::CALL<Zvp##TYPE>(pSrcDst, pSrcDst, len, PARAMETER);                                                \
    }

#define ZVPS_WINDOWS(TYPE, ALPHA)                                                                                      \
    ZVPS_WINDOW(Bartlett, TYPE, bartlett)                                                                              \
    ZVPS_WINDOW(Hann, TYPE, hann)                                                                                      \
    ZVPS_WINDOW(Hamming, TYPE, hamming)                                                                                \
    ZVPS_WINDOW_ALPHA(Blackman, TYPE, ALPHA, alpha, blackman)                                                          \
    ZVPS_WINDOW(BlackmanOpt, TYPE, blackmanOptimal)                                                                    \
    ZVPS_WINDOW_ALPHA(Kaiser, TYPE, Zvp32f, alpha, kaiser)                                                             \
    ZvpStatus zvpsWinBlackmanStd_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE* pDst, int len) {                             \
        return zvpsWinBlackman_##TYPE(pSrc, pDst, len, static_cast<ALPHA>(-0.16));                                     \
    }                                                                                                                  \
    ZvpStatus zvpsWinBlackmanStd_##TYPE##_I(Zvp##TYPE* pSrcDst, int len) {                                             \
        return zvpsWinBlackman_##TYPE##_I(pSrcDst, len, static_cast<ALPHA>(-0.16));                                    \
    }

ZVPS_WINDOWS(16s, Zvp32f)
ZVPS_WINDOWS(16sc, Zvp32f)
ZVPS_WINDOWS(32f, Zvp32f)
ZVPS_WINDOWS(32fc, Zvp32f)
ZVPS_WINDOWS(64f, Zvp64f)
ZVPS_WINDOWS(64fc, Zvp64f)

#define ZVPS_WINDOWS_Q15(TYPE)                                                                                         \
    ZVPS_WINDOW_ALPHA(BlackmanQ15, TYPE, int, alphaQ15, blackmanQ15)                                                   \
    ZvpStatus zvpsWinKaiserQ15_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE* pDst, int len, int alphaQ15) {                 \
        return zvpsWinKaiser_##TYPE(pSrc, pDst, len, zvps::fromQ15(alphaQ15));                                         \
    }                                                                                                                  \
    ZvpStatus zvpsWinKaiserQ15_##TYPE##_I(Zvp##TYPE* pSrcDst, int len, int alphaQ15) {                                 \
        return zvpsWinKaiser_##TYPE##_I(pSrcDst, len, zvps::fromQ15(alphaQ15));                                        \
    }

ZVPS_WINDOWS_Q15(16s)
ZVPS_WINDOWS_Q15(16sc)

ZvpStatus zvpsWinBlackmanQ15_16s_ISfs(Zvp16s* pSrcDst, int len, int alphaQ15, int scaleFactor) {
    return zvps::blackmanQ15<Zvp16s>(pSrcDst, pSrcDst, len, alphaQ15, scaleFactor);
}
