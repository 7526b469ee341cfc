#include "spectrum.hpp"

#include <algorithm>
#include <cmath>

namespace {
constexpr double kTelephoneBand = 4000; // Hz
}

size_t Spectrum::strongest() const {
    return static_cast<size_t>(std::max_element(power.begin(), power.end()) - power.begin());
}

Spectrum measureSpectrum(const Signal& signal) {
    Spectrum spectrum{std::min(kTelephoneBand, signal.rate / 2.0) / Spectrum::kBands,
                      std::vector<double>(Spectrum::kBands)};
    // A block as long as one period of a band's width: the window's main lobe then reaches over the next bands'
    // middles.
    const int length = static_cast<int>(std::lround(signal.rate / spectrum.width));
    const double windowSum = (length - 1) / 2.0;
    std::vector<Zvp32f> block(static_cast<size_t>(length));
    const int copied = std::min(length, signal.length());
    int blocks = 0;
    for (int begin = 0; begin == 0 || begin <= signal.length() - length; begin += length / 2) {
        check(zvpsCopy_32f(signal.samples.data() + begin, block.data() + (length - copied) / 2, copied));
        check(zvpsWinHann_32f_I(block.data(), length));
        for (size_t band = 0; band < spectrum.power.size(); band += 2) {
            const Zvp32f frequencies[2] = {static_cast<Zvp32f>(spectrum.centre(band) / signal.rate),
                                           static_cast<Zvp32f>(spectrum.centre(band + 1) / signal.rate)};
            Zvp32fc value[2];
            check(zvpsGoertzTwo_32f(block.data(), length, value, frequencies));
            for (size_t k = 0; k < 2; ++k) {
                const double re = value[k].re * 2 / windowSum, im = value[k].im * 2 / windowSum;
                spectrum.power[band + k] += re * re + im * im;
            }
        }
        ++blocks;
    }
    for (double& power : spectrum.power)
        power /= blocks;
    return spectrum;
}
