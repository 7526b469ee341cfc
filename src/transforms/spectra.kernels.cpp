#include "transforms/spectra.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

template <class T>
void mirrored(const T* pairs, T* dst, T* mirror, size_t count) {
    mirrorVectors<kVectorBytes / sizeof(T)>(pairs, dst, mirror, 2 * count);
}

template <class T>
void mulConj(const T* src, T* srcDst, size_t n) {
    MulConj op;
    map<MulConj::kPeriod>(op, srcDst, n, Vector<T>{src}, Vector<T>{srcDst});
}

} // namespace

extern const SpectrumKernels spectrumKernels;
const SpectrumKernels spectrumKernels = {
    mirrored<Zvp16s>, mirrored<Zvp32f>, mirrored<Zvp64f>, mulConj<Zvp32f>, mulConj<Zvp64f>,
};

} // namespace zvps::ZVPS_LEVEL
