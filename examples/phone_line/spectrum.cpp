#include "spectrum.hpp"

#include <algorithm>
#include <cmath>

#include "short_spectrum.hpp"

namespace {
constexpr double kTelephoneBand = 4000; // Hz
constexpr int kLeastBins = 8;           // in a band
} // namespace

size_t Spectrum::strongest() const {
    return static_cast<size_t>(std::max_element(power.begin(), power.end()) - power.begin());
}

Spectrum measureSpectrum(const Signal& signal) {
    Spectrum spectrum{std::min(kTelephoneBand, signal.rate / 2.0) / Spectrum::kBands,
                      std::vector<double>(Spectrum::kBands)};
    const int order = static_cast<int>(std::ceil(std::log2(kLeastBins * signal.rate / spectrum.width)));
    ShortSpectrum block(order, kWindows.front());
    const int length = block.length();
    const auto top = static_cast<size_t>(spectrum.top() * length / signal.rate);
    int blocks = 0;
    int begin = std::min(0, (signal.length() - length) / 2);
    do {
        const std::vector<Zvp32f>& bins = block.measure(signal, begin);
        for (size_t k = 0; k < top; ++k) {
            const auto band = static_cast<size_t>(static_cast<double>(k) * signal.rate / length / spectrum.width);
            spectrum.power[band] += bins[k] / block.noiseBandwidth();
        }
        ++blocks;
        begin += length / 2;
    } while (begin <= signal.length() - length);
    for (double& power : spectrum.power)
        power /= blocks;
    return spectrum;
}
