// VOLK as a peer: operands in its types, and its fastest implementations.
#pragma once

#include "bench.hpp"

#include <volk/volk.h>

#include <complex>

namespace bench {

// Times VOLK's implementations of each function and has its dispatcher take the fastest, as its own profiler would. To
// be called before any other call of VOLK.
void chooseVolkImplementations();

inline const std::complex<float>* raw(const Zvp32fc* p) {
    return reinterpret_cast<const std::complex<float>*>(p);
}
inline std::complex<float>* raw(Zvp32fc* p) {
    return reinterpret_cast<std::complex<float>*>(p);
}
template <class T>
T* raw(T* p) {
    return p;
}
inline std::complex<float> raw(Zvp32fc val) {
    return {val.re, val.im};
}
inline Zvp32f raw(Zvp32f val) {
    return val;
}

} // namespace bench
