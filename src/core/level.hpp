// The instruction-set levels, and the kernel tables of the one in use.
#pragma once

namespace zvps {

struct CompandingKernels;
struct ConversionKernels;
struct CorrelationKernels;
struct DotKernels;
struct ExtremesKernels;
struct FilterKernels;
struct GoertzelKernels;
struct InitialisationKernels;
struct LogKernels;
struct MultirateFilterKernels;
struct NormKernels;
struct ProductKernels;
struct QuotientKernels;
struct RampKernels;
struct RandomKernels;
struct RecursiveKernels;
struct SpectrumKernels;
struct SumKernels;
struct ThresholdKernels;
struct TotalKernels;
struct WaveKernels;
struct WindowKernels;
template <class T>
struct DctKernels;
template <class T>
struct DftKernels;
template <class T>
struct FftKernels;
template <class T>
struct RealFftKernels;

// One table of function pointers per family: its type, its slot, and its name in the namespace of a level.
#define ZVPS_KERNEL_TABLES(X)                                                                                          \
    X(CompandingKernels, companding, compandingKernels)                                                                \
    X(ConversionKernels, conversions, conversionKernels)                                                               \
    X(CorrelationKernels, correlation, correlationKernels)                                                             \
    X(DctKernels<float>, dct32f, dct32fKernels)                                                                        \
    X(DctKernels<double>, dct64f, dct64fKernels)                                                                       \
    X(DftKernels<float>, dft32f, dft32fKernels)                                                                        \
    X(DftKernels<double>, dft64f, dft64fKernels)                                                                       \
    X(DotKernels, dots, dotKernels)                                                                                    \
    X(ExtremesKernels, extremes, extremesKernels)                                                                      \
    X(FftKernels<float>, fft32f, fft32fKernels)                                                                        \
    X(FftKernels<double>, fft64f, fft64fKernels)                                                                       \
    X(FilterKernels, filters, filterKernels)                                                                           \
    X(GoertzelKernels, goertzel, goertzelKernels)                                                                      \
    X(InitialisationKernels, initialisation, initialisationKernels)                                                    \
    X(LogKernels, logarithms, logKernels)                                                                              \
    X(MultirateFilterKernels, multirateFilters, multirateFilterKernels)                                                \
    X(NormKernels, norms, normKernels)                                                                                 \
    X(ProductKernels, products, productKernels)                                                                        \
    X(QuotientKernels, quotients, quotientKernels)                                                                     \
    X(RampKernels, ramps, rampKernels)                                                                                 \
    X(RandomKernels, random, randomKernels)                                                                            \
    X(RealFftKernels<float>, realFft32f, realFft32fKernels)                                                            \
    X(RealFftKernels<double>, realFft64f, realFft64fKernels)                                                           \
    X(RecursiveKernels, recursive, recursiveKernels)                                                                   \
    X(SpectrumKernels, spectra, spectrumKernels)                                                                       \
    X(SumKernels, sums, sumKernels)                                                                                    \
    X(ThresholdKernels, thresholds, thresholdKernels)                                                                  \
    X(TotalKernels, totals, totalKernels)                                                                              \
    X(WaveKernels, waves, waveKernels)                                                                                 \
    X(WindowKernels, windows, windowKernels)

struct Kernels {
#define ZVPS_SLOT(type, slot, table) const type* slot;
    ZVPS_KERNEL_TABLES(ZVPS_SLOT)
#undef ZVPS_SLOT
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
