#include "signal/windows.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

// By the type of the data's parts. Double-precision data show every rounding of the recurrence: it stays in one chain.

template <class T>
using BartlettOf = Bartlett<kVectorBytes / sizeof(Applied<T>)>;
template <class T>
using RaisedCosineOf = Cosines<RaisedCosine, !std::is_same_v<T, double>>;
template <class T>
using BlackmanOf = Cosines<Blackman<std::is_same_v<T, int16_t>>, !std::is_same_v<T, double>>;
template <class T>
using KaiserOf = Kaiser<kVectorBytes / sizeof(Applied<T>)>;

template <template <class T> class Generator, class T, class Window>
ZvpStatus windowReal(const T* src, T* dst, size_t n, const Window& parameters) {
    return window<Generator, 1>(src, dst, n, parameters);
}
template <template <class T> class Generator, class T, class Window>
ZvpStatus windowComplex(const T* src, T* dst, size_t n, const Window& parameters) {
    using Part = decltype(T::re);
    return window<Generator, 2>(reinterpret_cast<const Part*>(src), reinterpret_cast<Part*>(dst), n, parameters);
}

template <template <class T> class Generator, class Window>
constexpr WindowSlots<Window> slots() {
    return {
        windowReal<Generator, Zvp16s, Window>, windowComplex<Generator, Zvp16sc, Window>,
        windowReal<Generator, Zvp32f, Window>, windowComplex<Generator, Zvp32fc, Window>,
        windowReal<Generator, Zvp64f, Window>, windowComplex<Generator, Zvp64fc, Window>,
    };
}

} // namespace

extern const WindowKernels windowKernels;
const WindowKernels windowKernels = {
    slots<BartlettOf, BartlettWindow>(),
    slots<RaisedCosineOf, CosineWindow>(),
    slots<BlackmanOf, CosineWindow>(),
    slots<KaiserOf, KaiserWindow>(),
};

} // namespace zvps::ZVPS_LEVEL
