#include "core/level.hpp"

#include <initializer_list>

namespace zvps {

#define ZVPS_DECLARE_TABLES(level)                                                                                     \
    namespace level {                                                                                                  \
    extern const CompandingKernels compandingKernels;                                                                  \
    extern const ConversionKernels conversionKernels;                                                                  \
    extern const FftKernels<float> fft32fKernels;                                                                      \
    extern const FftKernels<double> fft64fKernels;                                                                     \
    extern const FilterKernels filterKernels;                                                                          \
    extern const GoertzelKernels goertzelKernels;                                                                      \
    extern const InitialisationKernels initialisationKernels;                                                          \
    extern const ProductKernels productKernels;                                                                        \
    extern const QuotientKernels quotientKernels;                                                                      \
    extern const SpectrumKernels spectrumKernels;                                                                      \
    extern const SumKernels sumKernels;                                                                                \
    extern const ThresholdKernels thresholdKernels;                                                                    \
    extern const WindowKernels windowKernels;                                                                          \
    }
ZVPS_DECLARE_TABLES(v2)
ZVPS_DECLARE_TABLES(v3)
ZVPS_DECLARE_TABLES(v4)
#undef ZVPS_DECLARE_TABLES

namespace {

#define ZVPS_TABLES(level)                                                                                             \
    {                                                                                                                  \
        &level::compandingKernels, &level::conversionKernels, &level::fft32fKernels, &level::fft64fKernels,            \
            &level::filterKernels, &level::goertzelKernels, &level::initialisationKernels, &level::productKernels,     \
            &level::quotientKernels, &level::spectrumKernels, &level::sumKernels, &level::thresholdKernels,            \
            &level::windowKernels,                                                                                     \
    }
constexpr Kernels levels[] = {ZVPS_TABLES(v2), ZVPS_TABLES(v3), ZVPS_TABLES(v4)};
#undef ZVPS_TABLES

// Early among the constructors, so that those of a program that links statically find the level chosen.
[[gnu::constructor(101)]] void chooseLevel() {
    for (const Level level : {Level::v4, Level::v3}) {
        if (isSupported(level)) {
            useLevel(level);
            return;
        }
    }
}

} // namespace

const Kernels* activeKernels = &levels[static_cast<int>(Level::v2)];

bool isSupported(Level level) {
    __builtin_cpu_init();
    switch (level) {
    case Level::v2:
        return __builtin_cpu_supports("x86-64-v2");
    case Level::v3:
        return __builtin_cpu_supports("x86-64-v3");
    case Level::v4:
        return __builtin_cpu_supports("x86-64-v4");
    }
    return false;
}

void useLevel(Level level) {
    activeKernels = &levels[static_cast<int>(level)];
}

} // namespace zvps
