// The instruction-set levels, and the kernel tables of the one in use.
#pragma once

namespace zvps {

struct CompandingKernels;
struct ConversionKernels;
struct FilterKernels;
struct GoertzelKernels;
struct InitialisationKernels;
struct ProductKernels;
struct QuotientKernels;
struct SpectrumKernels;
struct SumKernels;
struct ThresholdKernels;
struct WindowKernels;
template <class T>
struct FftKernels;

// One table of function pointers per family.
struct Kernels {
    const CompandingKernels* companding;
    const ConversionKernels* conversions;
    const FftKernels<float>* fft32f;
    const FftKernels<double>* fft64f;
    const FilterKernels* filters;
    const GoertzelKernels* goertzel;
    const InitialisationKernels* initialisation;
    const ProductKernels* products;
    const QuotientKernels* quotients;
    const SpectrumKernels* spectra;
    const SumKernels* sums;
    const ThresholdKernels* thresholds;
    const WindowKernels* windows;
};

enum class Level { v2, v3, v4 };

// The tables in use; those of v2 until the library's constructor has run.
extern const Kernels* activeKernels;

inline const Kernels& kernels() {
    return *activeKernels;
}

// Whether this processor (and system) can run a level.
bool isSupported(Level level);

// Takes the level into use. For the library's start and for tests; not while other threads are in the library.
void useLevel(Level level);

} // namespace zvps
